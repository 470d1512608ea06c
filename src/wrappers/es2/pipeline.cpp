// GLES2 wrappers: fixed stages of the pipeline.
#include "wrappers/calls.h"

namespace Es2
{

void _glBlendColor(GLfloat red, GLfloat green, GLfloat blue, GLfloat alpha)
{
    Trace(Calls::glBlendColor, red, green, blue, alpha);
}

void _glBlendEquation(GLenum mode) { Trace(Calls::glBlendEquation, mode); }

void _glBlendEquationSeparate(GLenum modeRGB, GLenum modeAlpha)
{
    Trace(Calls::glBlendEquationSeparate, modeRGB, modeAlpha);
}

void _glBlendFunc(GLenum sfactor, GLenum dfactor) { Trace(Calls::glBlendFunc, sfactor, dfactor); }

void _glBlendFuncSeparate(GLenum sfactorRGB, GLenum dfactorRGB, GLenum sfactorAlpha, GLenum dfactorAlpha)
{
    Trace(Calls::glBlendFuncSeparate, sfactorRGB, dfactorRGB, sfactorAlpha, dfactorAlpha);
}

void _glClear(GLbitfield mask) { Trace(Calls::glClear, mask); }

void _glClearColor(GLfloat red, GLfloat green, GLfloat blue, GLfloat alpha)
{
    Trace(Calls::glClearColor, red, green, blue, alpha);
}

void _glClearDepthf(GLfloat d) { Trace(Calls::glClearDepthf, d); }

void _glClearStencil(GLint s) { Trace(Calls::glClearStencil, s); }

void _glColorMask(GLboolean red, GLboolean green, GLboolean blue, GLboolean alpha)
{
    Trace(Calls::glColorMask, red, green, blue, alpha);
}

void _glCullFace(GLenum mode) { Trace(Calls::glCullFace, mode); }

void _glDepthFunc(GLenum func) { Trace(Calls::glDepthFunc, func); }

void _glDepthMask(GLboolean flag) { Trace(Calls::glDepthMask, flag); }

void _glDepthRangef(GLfloat n, GLfloat f) { Trace(Calls::glDepthRangef, n, f); }

void _glDisable(GLenum cap) { Trace(Calls::glDisable, cap); }

void _glEnable(GLenum cap) { Trace(Calls::glEnable, cap); }

void _glFinish() { Trace(Calls::glFinish); }

void _glFlush() { Trace(Calls::glFlush); }

void _glFrontFace(GLenum mode) { Trace(Calls::glFrontFace, mode); }

void _glHint(GLenum target, GLenum mode) { Trace(Calls::glHint, target, mode); }

void _glLineWidth(GLfloat width) { Trace(Calls::glLineWidth, width); }

void _glPixelStorei(GLenum pname, GLint param) { Trace(Calls::glPixelStorei, pname, param); }

void _glPolygonOffset(GLfloat factor, GLfloat units) { Trace(Calls::glPolygonOffset, factor, units); }

void _glSampleCoverage(GLfloat value, GLboolean invert) { Trace(Calls::glSampleCoverage, value, invert); }

void _glScissor(GLint x, GLint y, GLsizei width, GLsizei height)
{
    Trace(Calls::glScissor, x, y, width, height);
}

void _glStencilFunc(GLenum func, GLint ref, GLuint mask) { Trace(Calls::glStencilFunc, func, ref, mask); }

void _glStencilFuncSeparate(GLenum face, GLenum func, GLint ref, GLuint mask)
{
    Trace(Calls::glStencilFuncSeparate, face, func, ref, mask);
}

void _glStencilMask(GLuint mask) { Trace(Calls::glStencilMask, mask); }

void _glStencilMaskSeparate(GLenum face, GLuint mask) { Trace(Calls::glStencilMaskSeparate, face, mask); }

void _glStencilOp(GLenum fail, GLenum zfail, GLenum zpass) { Trace(Calls::glStencilOp, fail, zfail, zpass); }

void _glStencilOpSeparate(GLenum face, GLenum sfail, GLenum dpfail, GLenum dppass)
{
    Trace(Calls::glStencilOpSeparate, face, sfail, dpfail, dppass);
}

void _glViewport(GLint x, GLint y, GLsizei width, GLsizei height)
{
    Trace(Calls::glViewport, x, y, width, height);
}

void _glCoverageMaskNV(GLboolean mask) { Trace(Calls::glCoverageMaskNV, mask); }

void _glCoverageOperationNV(GLenum operation) { Trace(Calls::glCoverageOperationNV, operation); }

}  // namespace Es2
