// GLES1 wrappers: fixed stages of the pipeline.
#include "wrappers/calls.h"
#include "wrappers/control_code.h"
#include "wrappers/sizing.h"

namespace Es1
{

void _glAlphaFunc(GLenum func, GLfloat ref) { Trace(Calls::glAlphaFunc, func, ref); }

void _glAlphaFuncx(GLenum func, GLfixed ref) { Trace(Calls::glAlphaFuncx, func, ref); }

void _glBlendFunc(GLenum sfactor, GLenum dfactor) { Trace(Calls::glBlendFunc, sfactor, dfactor); }

void _glClear(GLbitfield mask) { Trace(Calls::glClear, mask); }

void _glClearColor(GLfloat red, GLfloat green, GLfloat blue, GLfloat alpha)
{
    Trace(Calls::glClearColor, red, green, blue, alpha);
}

void _glClearColorx(GLfixed red, GLfixed green, GLfixed blue, GLfixed alpha)
{
    Trace(Calls::glClearColorx, red, green, blue, alpha);
}

void _glClearDepthf(GLfloat d) { Trace(Calls::glClearDepthf, d); }

void _glClearDepthx(GLfixed depth) { Trace(Calls::glClearDepthx, depth); }

void _glClearStencil(GLint s) { Trace(Calls::glClearStencil, s); }

void _glClipPlanef(GLenum p, const GLfloat* eqn) { Trace(Calls::glClipPlanef, p, FixedArray(eqn, 4)); }

void _glClipPlanex(GLenum plane, const GLfixed* equation)
{
    Trace(Calls::glClipPlanex, plane, FixedArray(equation, 4));
}

void _glColorMask(GLboolean red, GLboolean green, GLboolean blue, GLboolean alpha)
{
    Trace(Calls::glColorMask, red, green, blue, alpha);
}

void _glCullFace(GLenum mode) { Trace(Calls::glCullFace, mode); }

void _glDepthFunc(GLenum func) { Trace(Calls::glDepthFunc, func); }

void _glDepthMask(GLboolean flag) { Trace(Calls::glDepthMask, flag); }

void _glDepthRangef(GLfloat n, GLfloat f) { Trace(Calls::glDepthRangef, n, f); }

void _glDepthRangex(GLfixed n, GLfixed f) { Trace(Calls::glDepthRangex, n, f); }

void _glDisable(GLenum cap)
{
    if (cap == kPreventSavingCode)
        return STraceConfig::PreventSaving();
    Trace(Calls::glDisable, cap);
}

void _glEnable(GLenum cap) { Trace(Calls::glEnable, cap); }

void _glFinish() { Trace(Calls::glFinish); }

void _glFlush() { Trace(Calls::glFlush); }

void _glFrontFace(GLenum mode) { Trace(Calls::glFrontFace, mode); }

void _glHint(GLenum target, GLenum mode) { Trace(Calls::glHint, target, mode); }

void _glLineWidth(GLfloat width) { Trace(Calls::glLineWidth, width); }

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

void _glPixelStorei(GLenum pname, GLint param) { Trace(Calls::glPixelStorei, pname, param); }

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

void _glPolygonOffset(GLfloat factor, GLfloat units) { Trace(Calls::glPolygonOffset, factor, units); }

void _glPolygonOffsetx(GLfixed factor, GLfixed units) { Trace(Calls::glPolygonOffsetx, factor, units); }

void _glSampleCoverage(GLfloat value, GLboolean invert) { Trace(Calls::glSampleCoverage, value, invert); }

void _glSampleCoveragex(GLfixed value, GLboolean invert) { Trace(Calls::glSampleCoveragex, value, invert); }

void _glScissor(GLint x, GLint y, GLsizei width, GLsizei height)
{
    Trace(Calls::glScissor, x, y, width, height);
}

void _glStencilFunc(GLenum func, GLint ref, GLuint mask) { Trace(Calls::glStencilFunc, func, ref, mask); }

void _glStencilMask(GLuint mask) { Trace(Calls::glStencilMask, mask); }

void _glStencilOp(GLenum fail, GLenum zfail, GLenum zpass) { Trace(Calls::glStencilOp, fail, zfail, zpass); }

void _glViewport(GLint x, GLint y, GLsizei width, GLsizei height)
{
    Trace(Calls::glViewport, x, y, width, height);
}

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
