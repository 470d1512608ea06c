// GLES2 wrappers: state queries and query objects.
#include "wrappers/calls.h"

namespace Es2
{

void _glGetIntegeri_vEXT(GLenum target, GLuint index, GLint* data)
{
    Trace(Calls::glGetIntegeri_vEXT, target, index, OutArray(data, 2));
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
