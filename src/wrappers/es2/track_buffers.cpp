// Tracking of buffers.
#include "wrappers/es2/track.h"
#include "wrappers/host_queries.h"
#include "wrappers/live_state.h"

namespace
{

GLuint NameAt(GLenum target)
{
    GLenum const binding =
        target == GL_ARRAY_BUFFER ? GL_ARRAY_BUFFER_BINDING : GL_ELEMENT_ARRAY_BUFFER_BINDING;
    return static_cast<GLuint>(Es2::HostInteger(binding));
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
    if (!TrackContents::IsCountable(0, size))
        return;
    GLuint const name = NameAt(target);
    TrackContents::DefineBuffer(LiveEs2State().m_sBufferDatas[name], name, target, size, data, usage);
}

void Es2::Track::BufferSubData(GLenum target, GLintptr offset, GLsizeiptr size, void const* data)
{
    TrackContents::UpdateBuffer(LiveEs2State().m_sBufferDatas[NameAt(target)], offset, size, data);
}

void Es2::Track::UnmapBuffer(GLuint name, void const* data, GLsizeiptr size)
{
    TrackContents::UpdateBuffer(LiveEs2State().m_sBufferDatas[name], 0, size, data);
}
