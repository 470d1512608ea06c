// GLES2 wrappers: draw calls.
#include "wrappers/calls.h"
#include "wrappers/host_queries.h"
#include "wrappers/index_data.h"

namespace Es2
{

void _glDrawArrays(GLenum mode, GLint first, GLsizei count)
{
    Trace(Calls::glDrawArrays, mode, first, count);
}

void _glDrawElements(GLenum mode, GLsizei count, GLenum type, const void* indices)
{
    CFrame frame(Calls::glDrawElements, mode, count, type, indices);
    frame.CallHost();
    bool const inBuffer =
        frame.IsRecording() && frame.RecordsData() && HostInteger(GL_ELEMENT_ARRAY_BUFFER_BINDING) != 0;
    frame.Record(mode, count, type, IndexData(indices, count, type, inBuffer));
}

void _glMultiDrawElementsEXT(GLenum mode, const GLsizei* count, GLenum type, const void* const* indices,
                             GLsizei primcount)
{
    Trace(Calls::glMultiDrawElementsEXT, mode, count, type, indices, primcount);
}

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

void _glReadBufferNV(GLenum mode) { Trace(Calls::glReadBufferNV, mode); }

void _glDrawBuffersNV(GLsizei n, const GLenum* bufs) { Trace(Calls::glDrawBuffersNV, n, InArray(bufs, n)); }

void _glReadBufferIndexedEXT(GLenum src, GLint index) { Trace(Calls::glReadBufferIndexedEXT, src, index); }

void _glDrawBuffersIndexedEXT(GLint n, const GLenum* location, const GLint* indices)
{
    Trace(Calls::glDrawBuffersIndexedEXT, n, location, indices);
}

}  // namespace Es2
