// GLES2 wrappers: draw calls.
#include "state/buffer_object_list.h"
#include "state/visit_by_key.h"
#include "support/log.h"
#include "wrappers/calls.h"
#include "wrappers/client_arrays.h"
#include "wrappers/host_queries.h"
#include "wrappers/live_state.h"
#include "wrappers/sizing.h"
#include <algorithm>
#include <climits>

namespace Es2
{

namespace
{

// Array objects that are bound while frames are recorded are not followed, nor do other contexts have a
// shadow of their own: a record can be another object's, its pointer an offset or memory that is long gone.
// The host's word counts before anything is read.
bool IsReadByHost(uint32_t index, VertexAttributeArray const& array)
{
    GLint enabled = GL_TRUE;
    GLint buffer = 0;
    auto* pointer = const_cast<void*>(array.pointer);
    Es2Host()->glGetVertexAttribiv(index, GL_VERTEX_ATTRIB_ARRAY_ENABLED, &enabled);
    Es2Host()->glGetVertexAttribiv(index, GL_VERTEX_ATTRIB_ARRAY_BUFFER_BINDING, &buffer);
    Es2Host()->glGetVertexAttribPointerv(index, GL_VERTEX_ATTRIB_ARRAY_POINTER, &pointer);
    return enabled && buffer == 0 && pointer == array.pointer;
}

// Appends each enabled client array's first `elements` elements. Data in a buffer object is captured by the
// buffer's own calls.
void AppendClientArrays(CTraceBlock& block, CClientArrayCapture& capture, uint64_t elements,
                        char const* withoutPointer)
{
    auto const append = [&](uint32_t index, VertexAttributeArray const& array) {
        if (!array.enabled || array.boundarraybuffer != 0)
            return;
        if (!array.pointer && withoutPointer)
            LogMessage("%s", withoutPointer);
        if (array.pointer && IsReadByHost(index, array))
            capture.Append(block, {index, array.size, array.type, array.stride, array.pointer}, elements);
    };
    VisitByKey(LiveEs2State().BoundVertexArray().vertexattributearrays, append);
}

struct SIndices
{
    GLsizei count;
    GLenum type;
    void const* argument;
};

// Indices in the application's memory: pointer, size, bytes, then the argument again.
uint32_t AppendClientIndices(CTraceBlock& block, SIndices const& indices)
{
    uint64_t const size = static_cast<uint64_t>(CountOf(indices.count)) * GlTypeSize(indices.type);
    AppendArray(block, indices.argument, size > UINT32_MAX ? 0 : static_cast<uint32_t>(size), 1);
    AppendPointer(block, indices.argument);
    return LargestIndex(indices.type, indices.count, indices.argument);
}

// Indices in a buffer object: nothing, then the argument, which is an offset. False when there is no copy of
// the buffer to find the largest in.
bool AppendBufferIndices(CTraceBlock& block, GLuint buffer, SIndices const& indices, uint32_t& largest)
{
    AppendArray(block, nullptr, 0, 1);
    AppendPointer(block, indices.argument);
    CBufferObjectList::SBufferObject const* const copy = BufferList.GetBufferObject(buffer);
    if (!copy || !copy->data)
    {
        LogMessage("Failed to get element buffer with ID %d\n", buffer);
        return false;
    }
    // On purpose: from the buffer's start, whatever offset the call gave; but not past its end.
    uint32_t const indexSize = std::max(GlTypeSize(indices.type), 1u);
    auto const held = static_cast<GLsizei>(std::min<uint32_t>(copy->size / indexSize, INT_MAX));
    largest = LargestIndex(indices.type, std::min(indices.count, held), copy->data);
    return true;
}

void AppendDrawElements(CTraceBlock& block, CClientArrayCapture& capture, SIndices const& indices)
{
    uint32_t largest = 0;
    auto const buffer = static_cast<GLuint>(HostInteger(GL_ELEMENT_ARRAY_BUFFER_BINDING));
    if (buffer == 0)
        largest = AppendClientIndices(block, indices);
    else if (!AppendBufferIndices(block, buffer, indices, largest))
        return;
    // On purpose: a draw of no elements keeps one of each array.
    AppendClientArrays(block, capture, uint64_t{largest} + 1,
                       "Es2Trace::_glDrawElements error trying to save VertexAttrib: No data pointer");
}

}  // namespace

void _glDrawArrays(GLenum mode, GLint first, GLsizei count)
{
    CFrame frame(Calls::glDrawArrays, mode, first, count);
    frame.CallHost();
    if (!frame.IsRecording())
        return;
    LiveEs2State().TrackData();
    if (!frame.RecordsData())
        return frame.Record(mode, first, count);
    CClientArrayCapture capture(HostInteger(GL_MAX_VERTEX_ATTRIBS));  // the block reads it at its end
    CTraceBlock block(Calls::glDrawArrays.id);
    frame.AppendHeadAndResult(block);
    AppendFields(block, frame.RecordState(), mode, first, count);
    // On purpose: `first` is not applied, the entries begin with the arrays' first element.
    AppendClientArrays(block, capture, CountOf(count), nullptr);
}

void _glDrawElements(GLenum mode, GLsizei count, GLenum type, const void* indices)
{
    CFrame frame(Calls::glDrawElements, mode, count, type, indices);
    frame.CallHost();
    if (!frame.IsRecording())
        return;
    LiveEs2State().TrackData();
    if (!frame.RecordsData())
        return frame.Record(mode, count, type, indices);
    CClientArrayCapture capture(HostInteger(GL_MAX_VERTEX_ATTRIBS));  // the block reads it at its end
    CTraceBlock block(Calls::glDrawElements.id);
    frame.AppendHeadAndResult(block);
    AppendFields(block, frame.RecordState(), mode, count, type);
    AppendDrawElements(block, capture, {count, type, indices});
}

void _glMultiDrawElementsEXT(GLenum mode, const GLsizei* count, GLenum type, const void* const* indices,
                             GLsizei primcount)
{
    Trace(Calls::glMultiDrawElementsEXT, mode, count, type, indices, primcount);
}

// On purpose: the first word behind count is taken for the number of firsts.
void _glMultiDrawArraysEXT(GLenum mode, const GLint* first, const GLsizei* count, GLsizei primcount)
{
    Trace(Calls::glMultiDrawArraysEXT, mode, InArrayBehind(first, count), InArray(count, 1u), primcount);
}

void _glDrawArraysInstancedANGLE(GLenum mode, GLint first, GLsizei count, GLsizei primcount)
{
    Trace(Calls::glDrawArraysInstancedANGLE, mode, first, count, primcount);
}

void _glDrawElementsInstancedANGLE(GLenum mode, GLsizei count, GLenum type, const void* indices,
                                   GLsizei primcount)
{
    Trace(Calls::glDrawElementsInstancedANGLE, mode, count, type, indices, primcount);
}

void _glDrawBuffersNV(GLsizei n, const GLenum* bufs) { Trace(Calls::glDrawBuffersNV, n, InArray(bufs, n)); }

void _glDrawBuffersIndexedEXT(GLint n, const GLenum* location, const GLint* indices)
{
    Trace(Calls::glDrawBuffersIndexedEXT, n, location, indices);
}

}  // namespace Es2
