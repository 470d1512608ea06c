// GLES1 wrappers: fixed stages of the pipeline.
#include "wrappers/calls.h"
#include "wrappers/control_code.h"
#include "wrappers/sizing.h"

namespace Es1
{

void _glAlphaFunc(GLenum func, GLfloat ref) { Trace(Calls::glAlphaFunc, func, ref); }

void _glAlphaFuncx(GLenum func, GLfixed ref) { Trace(Calls::glAlphaFuncx, func, ref); }

void _glClearColorx(GLfixed red, GLfixed green, GLfixed blue, GLfixed alpha)
{
    Trace(Calls::glClearColorx, red, green, blue, alpha);
}

void _glClearDepthx(GLfixed depth) { Trace(Calls::glClearDepthx, depth); }

void _glClipPlanef(GLenum p, const GLfloat* eqn) { Trace(Calls::glClipPlanef, p, FixedArray(eqn, 4)); }

void _glClipPlanex(GLenum plane, const GLfixed* equation)
{
    Trace(Calls::glClipPlanex, plane, FixedArray(equation, 4));
}

void _glDepthRangex(GLfixed n, GLfixed f) { Trace(Calls::glDepthRangex, n, f); }

void _glDisable(GLenum cap)
{
    if (cap == kPreventSavingCode)
        return STraceConfig::PreventSaving();
    Trace(Calls::glDisable, cap);
}

void _glLineWidthx(GLfixed width) { Trace(Calls::glLineWidthx, width); }

void _glLogicOp(GLenum opcode) { Trace(Calls::glLogicOp, opcode); }

void _glMultiTexCoord4f(GLenum target, GLfloat s, GLfloat t, GLfloat r, GLfloat q)
{
    Trace(Calls::glMultiTexCoord4f, target, s, t, r, q);
}

void _glMultiTexCoord4x(GLenum texture, GLfixed s, GLfixed t, GLfixed r, GLfixed q)
{
    Trace(Calls::glMultiTexCoord4x, texture, s, t, r, q);
}

void _glPointParameterf(GLenum pname, GLfloat param) { Trace(Calls::glPointParameterf, pname, param); }

void _glPointParameterfv(GLenum pname, const GLfloat* params)
{
    Trace(Calls::glPointParameterfv, pname, InArray(params, GlPointParamSize(pname)));
}

void _glPointParameterx(GLenum pname, GLfixed param) { Trace(Calls::glPointParameterx, pname, param); }

void _glPointParameterxv(GLenum pname, const GLfixed* params)
{
    Trace(Calls::glPointParameterxv, pname, InArray(params, GlPointParamSize(pname)));
}

void _glPointSize(GLfloat size) { Trace(Calls::glPointSize, size); }

void _glPointSizex(GLfixed size) { Trace(Calls::glPointSizex, size); }

void _glPolygonOffsetx(GLfixed factor, GLfixed units) { Trace(Calls::glPolygonOffsetx, factor, units); }

void _glSampleCoveragex(GLfixed value, GLboolean invert) { Trace(Calls::glSampleCoveragex, value, invert); }

void _glAlphaFuncxOES(GLenum func, GLfixed ref) { Trace(Calls::glAlphaFuncxOES, func, ref); }

void _glClearColorxOES(GLfixed red, GLfixed green, GLfixed blue, GLfixed alpha)
{
    Trace(Calls::glClearColorxOES, red, green, blue, alpha);
}

void _glClearDepthxOES(GLfixed depth) { Trace(Calls::glClearDepthxOES, depth); }

void _glClipPlanexOES(GLenum plane, const GLfixed* equation)
{
    Trace(Calls::glClipPlanexOES, plane, FixedArray(equation, 4));
}

void _glDepthRangexOES(GLfixed n, GLfixed f) { Trace(Calls::glDepthRangexOES, n, f); }

void _glLineWidthxOES(GLfixed width) { Trace(Calls::glLineWidthxOES, width); }

void _glMultiTexCoord4xOES(GLenum texture, GLfixed s, GLfixed t, GLfixed r, GLfixed q)
{
    Trace(Calls::glMultiTexCoord4xOES, texture, s, t, r, q);
}

void _glPointParameterxOES(GLenum pname, GLfixed param) { Trace(Calls::glPointParameterxOES, pname, param); }

void _glPointParameterxvOES(GLenum pname, const GLfixed* params)
{
    Trace(Calls::glPointParameterxvOES, pname, InArray(params, GlPointParamSize(pname)));
}

void _glPointSizexOES(GLfixed size) { Trace(Calls::glPointSizexOES, size); }

void _glPolygonOffsetxOES(GLfixed factor, GLfixed units) { Trace(Calls::glPolygonOffsetxOES, factor, units); }

void _glSampleCoveragexOES(GLfixed value, GLboolean invert)
{
    Trace(Calls::glSampleCoveragexOES, value, invert);
}

void _glBlendEquationSeparateOES(GLenum modeRGB, GLenum modeAlpha)
{
    Trace(Calls::glBlendEquationSeparateOES, modeRGB, modeAlpha);
}

void _glBlendFuncSeparateOES(GLenum srcRGB, GLenum dstRGB, GLenum srcAlpha, GLenum dstAlpha)
{
    Trace(Calls::glBlendFuncSeparateOES, srcRGB, dstRGB, srcAlpha, dstAlpha);
}

void _glBlendEquationOES(GLenum mode) { Trace(Calls::glBlendEquationOES, mode); }

void _glDepthRangefOES(GLclampf n, GLclampf f) { Trace(Calls::glDepthRangefOES, n, f); }

// On purpose: the equation is a bare pointer here, unlike in its kin.
void _glClipPlanefOES(GLenum plane, const GLfloat* equation)
{
    Trace(Calls::glClipPlanefOES, plane, equation);
}

void _glClearDepthfOES(GLclampf depth) { Trace(Calls::glClearDepthfOES, depth); }

void _glClipPlanefNBX(GLenum p, const GLfloat* eqn) { Trace(Calls::glClipPlanefNBX, p, FixedArray(eqn, 4)); }

void _glClipPlanexNBX(GLenum p, const GLfixed* eqn) { Trace(Calls::glClipPlanexNBX, p, FixedArray(eqn, 4)); }

}  // namespace Es1
