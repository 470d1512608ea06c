// GLES1 wrappers: state queries.
#include "wrappers/calls.h"
#include "wrappers/sizing.h"

namespace Es1
{

void _glGetBooleanv(GLenum pname, GLboolean* data)
{
    Trace(Calls::glGetBooleanv, pname, OutArray(data, GlStateSize(pname)));
}

void _glGetClipPlanef(GLenum plane, GLfloat* equation)
{
    Trace(Calls::glGetClipPlanef, plane, NeverCounted(equation));
}

void _glGetClipPlanex(GLenum plane, GLfixed* equation)
{
    Trace(Calls::glGetClipPlanex, plane, NeverCounted(equation));
}

GLenum _glGetError() { return Trace(Calls::glGetError); }

void _glGetFixedv(GLenum pname, GLfixed* params)
{
    Trace(Calls::glGetFixedv, pname, OutArray(params, GlStateSize(pname)));
}

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

void _glGetClipPlanexOES(GLenum plane, GLfixed* equation)
{
    Trace(Calls::glGetClipPlanexOES, plane, NeverCounted(equation));
}

void _glGetFixedvOES(GLenum pname, GLfixed* params)
{
    Trace(Calls::glGetFixedvOES, pname, OutArray(params, GlStateSize(pname)));
}

void _glGetClipPlanefOES(GLenum plane, GLfloat* equation)
{
    Trace(Calls::glGetClipPlanefOES, plane, NeverCounted(equation));
}

void _glGetInteger64vAPPLE(GLenum pname, GLint64* params)
{
    Trace(Calls::glGetInteger64vAPPLE, pname, OutArray(params, 1));
}

GLenum _glGetGraphicsResetStatusEXT() { return Trace(Calls::glGetGraphicsResetStatusEXT); }

}  // namespace Es1
