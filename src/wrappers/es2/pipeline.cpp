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

void _glBlendFuncSeparate(GLenum sfactorRGB, GLenum dfactorRGB, GLenum sfactorAlpha, GLenum dfactorAlpha)
{
    Trace(Calls::glBlendFuncSeparate, sfactorRGB, dfactorRGB, sfactorAlpha, dfactorAlpha);
}

void _glDisable(GLenum cap) { Trace(Calls::glDisable, cap); }

void _glStencilFuncSeparate(GLenum face, GLenum func, GLint ref, GLuint mask)
{
    Trace(Calls::glStencilFuncSeparate, face, func, ref, mask);
}

void _glStencilMaskSeparate(GLenum face, GLuint mask) { Trace(Calls::glStencilMaskSeparate, face, mask); }

void _glStencilOpSeparate(GLenum face, GLenum sfail, GLenum dpfail, GLenum dppass)
{
    Trace(Calls::glStencilOpSeparate, face, sfail, dpfail, dppass);
}

void _glCoverageMaskNV(GLboolean mask) { Trace(Calls::glCoverageMaskNV, mask); }

void _glCoverageOperationNV(GLenum operation) { Trace(Calls::glCoverageOperationNV, operation); }

void _glAlphaFuncQCOM(GLenum func, GLclampf ref) { Trace(Calls::glAlphaFuncQCOM, func, ref); }

}  // namespace Es2
