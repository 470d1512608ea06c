// GLES1 wrappers: fences and sync objects.
#include "wrappers/calls.h"

namespace Es1
{

void _glDeleteFencesNV(GLsizei n, const GLuint* fences)
{
    Trace(Calls::glDeleteFencesNV, n, InArray(fences, n));
}

void _glGenFencesNV(GLsizei n, GLuint* fences) { Trace(Calls::glGenFencesNV, n, InArray(fences, n)); }

GLboolean _glIsFenceNV(GLuint fence) { return Trace(Calls::glIsFenceNV, fence); }

GLboolean _glTestFenceNV(GLuint fence) { return Trace(Calls::glTestFenceNV, fence); }

void _glGetFenceivNV(GLuint fence, GLenum pname, GLint* params)
{
    Trace(Calls::glGetFenceivNV, fence, pname, OutArray(params, 1));
}

void _glFinishFenceNV(GLuint fence) { Trace(Calls::glFinishFenceNV, fence); }

void _glSetFenceNV(GLuint fence, GLenum condition) { Trace(Calls::glSetFenceNV, fence, condition); }

GLsync _glFenceSyncAPPLE(GLenum condition, GLbitfield flags)
{
    return Trace(Calls::glFenceSyncAPPLE, condition, flags);
}

GLboolean _glIsSyncAPPLE(GLsync sync) { return Trace(Calls::glIsSyncAPPLE, sync); }

void _glDeleteSyncAPPLE(GLsync sync) { Trace(Calls::glDeleteSyncAPPLE, sync); }

GLenum _glClientWaitSyncAPPLE(GLsync sync, GLbitfield flags, GLuint64 timeout)
{
    return Trace(Calls::glClientWaitSyncAPPLE, sync, flags, Wide(timeout));
}

void _glWaitSyncAPPLE(GLsync sync, GLbitfield flags, GLuint64 timeout)
{
    Trace(Calls::glWaitSyncAPPLE, sync, flags, Wide(timeout));
}

void _glGetSyncivAPPLE(GLsync sync, GLenum pname, GLsizei count, GLsizei* length, GLint* values)
{
    CFrame frame(Calls::glGetSyncivAPPLE, sync, pname, count, length, values);
    frame.CallHost();
    GLsizei recorded = 0;
    if (frame.RecordsOutput())  // length may be null: only a second call tells how many values there are
        Es1Host()->glGetSyncivAPPLE(sync, pname, count, &recorded, values);
    frame.Record(sync, pname, count, OutArray(length, 1), OutArray(values, CountOf(recorded)));
}

}  // namespace Es1
