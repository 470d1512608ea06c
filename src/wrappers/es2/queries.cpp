// GLES2 wrappers: state queries.
#include "wrappers/calls.h"
#include "wrappers/sizing.h"

namespace Es2
{

void _glGetBooleanv(GLenum pname, GLboolean* data)
{
    Trace(Calls::glGetBooleanv, pname, OutArray(data, GlStateSize(pname)));
}

GLenum _glGetError() { return Trace(Calls::glGetError); }

void _glGetFloatv(GLenum pname, GLfloat* data)
{
    Trace(Calls::glGetFloatv, pname, OutArray(data, GlStateSize(pname)));
}

void _glGetIntegerv(GLenum pname, GLint* data)
{
    Trace(Calls::glGetIntegerv, pname, OutArray(data, GlStateSize(pname)));
}

const GLubyte* _glGetString(GLenum name) { return Trace(Calls::glGetString, name); }

GLboolean _glIsEnabled(GLenum cap) { return Trace(Calls::glIsEnabled, cap); }

void _glGetInteger64vAPPLE(GLenum pname, GLint64* params)
{
    Trace(Calls::glGetInteger64vAPPLE, pname, OutArray(params, 1));
}

void _glGetIntegeri_vEXT(GLenum target, GLuint index, GLint* data)
{
    Trace(Calls::glGetIntegeri_vEXT, target, index, OutArray(data, 2));
}

GLenum _glGetGraphicsResetStatusEXT() { return Trace(Calls::glGetGraphicsResetStatusEXT); }

}  // namespace Es2
