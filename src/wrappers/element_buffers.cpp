#include "wrappers/element_buffers.h"
#include "support/log.h"
#include "wrappers/client_arrays.h"
#include "wrappers/host_queries.h"
#include "wrappers/record_forms.h"
#include "wrappers/sizing.h"
#include "wrappers/track_contents.h"
#include <algorithm>
#include <climits>
#include <cstring>

namespace
{

// On purpose: GLES1 knows 32-bit indices by an extension alone, and does not look through them: a draw with
// them keeps one element of each array.
uint32_t LargestOfEs1(GLenum type, GLsizei count, void const* indices)
{
    return type == GL_UNSIGNED_INT ? 0 : LargestIndex(type, count, indices);
}

// On purpose: the one line that stands without the prefix.
void LogMissingOfEs1(GLuint buffer)
{
    LogRaw("Failed to get element buffer with ID %i\n", static_cast<int>(buffer));
}

void LogMissingOfEs2(GLuint buffer) { LogMessage("Failed to get element buffer with ID %d\n", buffer); }

// Indices in the application's memory: pointer, size, bytes.
void AppendClientIndices(CTraceBlock& block, SIndices const& indices)
{
    uint64_t const size = static_cast<uint64_t>(CountOf(indices.count)) * GlTypeSize(indices.type);
    AppendArray(block, indices.argument, size > UINT32_MAX ? 0 : static_cast<uint32_t>(size), 1);
}

}  // namespace

SElementBuffers const Es1::ElementBuffers = {Es1::BufferList, Es1::HostInteger, LargestOfEs1,
                                             LogMissingOfEs1};
SElementBuffers const Es2::ElementBuffers = {Es2::BufferList, Es2::HostInteger, LargestIndex,
                                             LogMissingOfEs2};

GLuint SElementBuffers::BoundName() const
{
    return static_cast<GLuint>(hostInteger(GL_ELEMENT_ARRAY_BUFFER_BINDING));
}

void SElementBuffers::Define(GLenum target, GLsizeiptr size, void const* data) const
{
    if (target == GL_ELEMENT_ARRAY_BUFFER && TrackContents::IsCountable(0, size))
        copies.AddObject(BoundName(), static_cast<unsigned int>(size), static_cast<char const*>(data));
}

void SElementBuffers::Update(GLenum target, GLintptr offset, GLsizeiptr size, void const* data) const
{
    if (target != GL_ELEMENT_ARRAY_BUFFER || !data || !TrackContents::IsCountable(offset, size))
        return;
    CBufferObjectList::SBufferObject const* const object = copies.GetBufferObject(BoundName());
    if (object && object->data && offset + size <= static_cast<GLsizeiptr>(object->size))
        std::memcpy(object->data + offset, data, static_cast<std::size_t>(size));
}

bool SElementBuffers::AppendIndices(CTraceBlock& block, SIndices const& indices, uint32_t& largest) const
{
    GLuint const buffer = BoundName();
    if (buffer == 0)
        AppendClientIndices(block, indices);
    else
        AppendArray(block, nullptr, 0, 1);
    AppendPointer(block, indices.argument);  // an offset, for indices in a buffer
    if (buffer != 0)
        return FindInCopy(buffer, indices, largest);
    largest = largestIndex(indices.type, indices.count, indices.argument);
    return true;
}

bool SElementBuffers::FindInCopy(GLuint buffer, SIndices const& indices, uint32_t& largest) const
{
    CBufferObjectList::SBufferObject const* const copy = copies.GetBufferObject(buffer);
    if (!copy || !copy->data)
    {
        logMissingCopy(buffer);
        return false;
    }
    // On purpose: from the buffer's start, whatever offset the call gave; but not past its end.
    uint32_t const indexSize = std::max(GlTypeSize(indices.type), 1u);
    auto const held = static_cast<GLsizei>(std::min<uint32_t>(copy->size / indexSize, INT_MAX));
    largest = largestIndex(indices.type, std::min(indices.count, held), copy->data);
    return true;
}
