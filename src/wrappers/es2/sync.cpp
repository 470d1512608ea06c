// GLES2 wrappers: fences, sync objects and queries.
#include "wrappers/calls.h"

namespace Es2
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
        Es2Host()->glGetSyncivAPPLE(sync, pname, count, &recorded, values);
    frame.Record(sync, pname, count, OutArray(length, 1), OutArray(values, CountOf(recorded)));
}

GLboolean _glIsQueryEXT(GLuint id) { return Trace(Calls::glIsQueryEXT, id); }

void _glBeginQueryEXT(GLenum target, GLuint id) { Trace(Calls::glBeginQueryEXT, target, id); }

void _glEndQueryEXT(GLenum target) { Trace(Calls::glEndQueryEXT, target); }

void _glGetQueryivEXT(GLenum target, GLenum pname, GLint* params)
{
    Trace(Calls::glGetQueryivEXT, target, pname, OutArray(params, 1));
}

void _glGetQueryObjectuivEXT(GLuint id, GLenum pname, GLuint* params)
{
    Trace(Calls::glGetQueryObjectuivEXT, id, pname, OutArray(params, 1));
}

void _glGenQueriesEXT(GLsizei n, GLuint* ids) { Trace(Calls::glGenQueriesEXT, n, InArray(ids, n)); }

void _glDeleteQueriesEXT(GLsizei n, const GLuint* ids)
{
    Trace(Calls::glDeleteQueriesEXT, n, InArray(ids, n));
}

}  // namespace Es2
