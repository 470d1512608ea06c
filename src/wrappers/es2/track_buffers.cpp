// Tracking of buffers.
#include "state/buffer_object_list.h"
#include "wrappers/es2/track.h"
#include "wrappers/host_queries.h"
#include "wrappers/live_state.h"
#include <climits>
#include <cstring>

namespace
{

GLuint NameAt(GLenum target)
{
    GLenum const binding =
        target == GL_ARRAY_BUFFER ? GL_ARRAY_BUFFER_BINDING : GL_ELEMENT_ARRAY_BUFFER_BINDING;
    return static_cast<GLuint>(Es2::HostInteger(binding));
}

// The shadow counts in ints.
bool IsCountable(GLintptr offset, GLsizeiptr size)
{
    return size >= 0 && offset >= 0 && size <= INT_MAX && offset <= INT_MAX;
}

// Gives the record bytes of its own where it has none or shares them.
void MakePrivate(BufferDefinition& record)
{
    if (!record.externalData && record.bufferData)
        return;
    uint8_t const* const shared = record.bufferData;
    record.Allocate(record.bufferDataSize);
    if (shared && record.bufferData)
        std::memcpy(record.bufferData, shared, static_cast<std::size_t>(record.bufferDataSize));
}

// Puts bytes into the record at an offset. Bytes for which it has no room are left out: the host has taken
// them, so that the record is older than what the host holds.
void Update(BufferDefinition& record, GLintptr offset, GLsizeiptr size, void const* data)
{
    MakePrivate(record);
    if (!data || !IsCountable(offset, size))
        return;
    if (size > record.bufferDataSize)
    {
        record.bufferDataSize = static_cast<int>(size);
        record.Allocate(record.bufferDataSize);
    }
    GLsizeiptr const room = record.bufferDataSize - static_cast<GLsizeiptr>(offset);
    GLsizeiptr const copied = size < room ? size : room;
    record.Unshare();
    if (copied > 0)
        std::memcpy(record.bufferData + offset, data, static_cast<std::size_t>(copied));
}

}  // namespace

// Written into the array object: the buffer's own record is left alone.
void Es2::Track::BindBuffer(GLenum target, GLuint buffer)
{
    if (target == GL_ARRAY_BUFFER)
        LiveEs2State().BoundVertexArray().boundarraybuffer = buffer;
    else if (target == GL_ELEMENT_ARRAY_BUFFER)
        LiveEs2State().BoundVertexArray().boundelementbuffer = buffer;
}

void Es2::Track::BufferData(GLenum target, GLsizeiptr size, void const* data, GLenum usage)
{
    if (!IsCountable(0, size))
        return;
    GLuint const name = NameAt(target);
    BufferDefinition given;
    given.bufferName = name;
    given.bufferTarget = target;
    given.bufferDataSize = static_cast<int>(size);
    given.bufferUsage = usage;
    given.bufferData = const_cast<uint8_t*>(static_cast<uint8_t const*>(data));
    given.externalData = true;
    BufferDefinition& record = LiveEs2State().m_sBufferDatas[name];
    record.deepCopy = true;
    record = given;
    record.externalData = false;
}

void Es2::Track::BufferSubData(GLenum target, GLintptr offset, GLsizeiptr size, void const* data)
{
    Update(LiveEs2State().m_sBufferDatas[NameAt(target)], offset, size, data);
}

void Es2::Track::UnmapBuffer(GLuint name, void const* data, GLsizeiptr size)
{
    Update(LiveEs2State().m_sBufferDatas[name], 0, size, data);
}

void Es2::Track::ElementBufferData(GLenum target, GLsizeiptr size, void const* data)
{
    if (target == GL_ELEMENT_ARRAY_BUFFER && IsCountable(0, size))
        BufferList.AddObject(NameAt(target), static_cast<unsigned int>(size), static_cast<char const*>(data));
}

// An update past the end is lost from the copy.
void Es2::Track::ElementBufferSubData(GLenum target, GLintptr offset, GLsizeiptr size, void const* data)
{
    if (target != GL_ELEMENT_ARRAY_BUFFER || !data || !IsCountable(offset, size))
        return;
    CBufferObjectList::SBufferObject const* const object = BufferList.GetBufferObject(NameAt(target));
    if (object && object->data && offset + size <= static_cast<GLsizeiptr>(object->size))
        std::memcpy(object->data + offset, data, static_cast<std::size_t>(size));
}
