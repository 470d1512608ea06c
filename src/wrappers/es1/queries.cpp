// GLES1 wrappers: state queries.
#include "wrappers/calls.h"
#include "wrappers/sizing.h"

namespace Es1
{

void _glGetClipPlanef(GLenum plane, GLfloat* equation)
{
    Trace(Calls::glGetClipPlanef, plane, NeverCounted(equation));
}

void _glGetClipPlanex(GLenum plane, GLfixed* equation)
{
    Trace(Calls::glGetClipPlanex, plane, NeverCounted(equation));
}

void _glGetFixedv(GLenum pname, GLfixed* params)
{
    Trace(Calls::glGetFixedv, pname, OutArray(params, GlStateSize(pname)));
}

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

}  // namespace Es1
