// GLES1 wrappers: lights, materials, fog and colours.
#include "wrappers/calls.h"
#include "wrappers/sizing.h"

namespace Es1
{

void _glColor4f(GLfloat red, GLfloat green, GLfloat blue, GLfloat alpha)
{
    Trace(Calls::glColor4f, red, green, blue, alpha);
}

void _glColor4ub(GLubyte red, GLubyte green, GLubyte blue, GLubyte alpha)
{
    Trace(Calls::glColor4ub, red, green, blue, alpha);
}

void _glColor4x(GLfixed red, GLfixed green, GLfixed blue, GLfixed alpha)
{
    Trace(Calls::glColor4x, red, green, blue, alpha);
}

void _glFogf(GLenum pname, GLfloat param) { Trace(Calls::glFogf, pname, param); }

void _glFogfv(GLenum pname, const GLfloat* params)
{
    Trace(Calls::glFogfv, pname, InArray(params, GlFogParamSize(pname)));
}

void _glFogx(GLenum pname, GLfixed param) { Trace(Calls::glFogx, pname, param); }

void _glFogxv(GLenum pname, const GLfixed* param)
{
    Trace(Calls::glFogxv, pname, InArray(param, GlFogParamSize(pname)));
}

void _glGetLightfv(GLenum light, GLenum pname, GLfloat* params)
{
    Trace(Calls::glGetLightfv, light, pname, OutArray(params, GlLightParamSize(pname)));
}

void _glGetLightxv(GLenum light, GLenum pname, GLfixed* params)
{
    Trace(Calls::glGetLightxv, light, pname, OutArray(params, GlLightParamSize(pname)));
}

void _glGetMaterialfv(GLenum face, GLenum pname, GLfloat* params)
{
    Trace(Calls::glGetMaterialfv, face, pname, OutArray(params, GlMaterialParamSize(pname)));
}

void _glGetMaterialxv(GLenum face, GLenum pname, GLfixed* params)
{
    Trace(Calls::glGetMaterialxv, face, pname, OutArray(params, GlMaterialParamSize(pname)));
}

void _glLightModelf(GLenum pname, GLfloat param) { Trace(Calls::glLightModelf, pname, param); }

void _glLightModelfv(GLenum pname, const GLfloat* params)
{
    Trace(Calls::glLightModelfv, pname, InArray(params, GlLightModelParamSize(pname)));
}

void _glLightModelx(GLenum pname, GLfixed param) { Trace(Calls::glLightModelx, pname, param); }

void _glLightModelxv(GLenum pname, const GLfixed* param)
{
    Trace(Calls::glLightModelxv, pname, InArray(param, GlLightModelParamSize(pname)));
}

void _glLightf(GLenum light, GLenum pname, GLfloat param) { Trace(Calls::glLightf, light, pname, param); }

void _glLightfv(GLenum light, GLenum pname, const GLfloat* params)
{
    Trace(Calls::glLightfv, light, pname, InArray(params, GlLightParamSize(pname)));
}

void _glLightx(GLenum light, GLenum pname, GLfixed param) { Trace(Calls::glLightx, light, pname, param); }

void _glLightxv(GLenum light, GLenum pname, const GLfixed* params)
{
    Trace(Calls::glLightxv, light, pname, InArray(params, GlLightParamSize(pname)));
}

void _glMaterialf(GLenum face, GLenum pname, GLfloat param) { Trace(Calls::glMaterialf, face, pname, param); }

void _glMaterialfv(GLenum face, GLenum pname, const GLfloat* params)
{
    Trace(Calls::glMaterialfv, face, pname, InArray(params, GlMaterialParamSize(pname)));
}

void _glMaterialx(GLenum face, GLenum pname, GLfixed param) { Trace(Calls::glMaterialx, face, pname, param); }

void _glMaterialxv(GLenum face, GLenum pname, const GLfixed* param)
{
    Trace(Calls::glMaterialxv, face, pname, InArray(param, GlMaterialParamSize(pname)));
}

void _glNormal3f(GLfloat nx, GLfloat ny, GLfloat nz) { Trace(Calls::glNormal3f, nx, ny, nz); }

void _glNormal3x(GLfixed nx, GLfixed ny, GLfixed nz) { Trace(Calls::glNormal3x, nx, ny, nz); }

void _glShadeModel(GLenum mode) { Trace(Calls::glShadeModel, mode); }

void _glColor4xOES(GLfixed red, GLfixed green, GLfixed blue, GLfixed alpha)
{
    Trace(Calls::glColor4xOES, red, green, blue, alpha);
}

void _glFogxOES(GLenum pname, GLfixed param) { Trace(Calls::glFogxOES, pname, param); }

void _glFogxvOES(GLenum pname, const GLfixed* param)
{
    Trace(Calls::glFogxvOES, pname, InArray(param, GlFogParamSize(pname)));
}

void _glGetLightxvOES(GLenum light, GLenum pname, GLfixed* params)
{
    Trace(Calls::glGetLightxvOES, light, pname, OutArray(params, GlLightParamSize(pname)));
}

void _glGetMaterialxvOES(GLenum face, GLenum pname, GLfixed* params)
{
    Trace(Calls::glGetMaterialxvOES, face, pname, OutArray(params, GlMaterialParamSize(pname)));
}

void _glLightModelxOES(GLenum pname, GLfixed param) { Trace(Calls::glLightModelxOES, pname, param); }

void _glLightModelxvOES(GLenum pname, const GLfixed* param)
{
    Trace(Calls::glLightModelxvOES, pname, InArray(param, GlLightModelParamSize(pname)));
}

void _glLightxOES(GLenum light, GLenum pname, GLfixed param)
{
    Trace(Calls::glLightxOES, light, pname, param);
}

void _glLightxvOES(GLenum light, GLenum pname, const GLfixed* params)
{
    Trace(Calls::glLightxvOES, light, pname, InArray(params, GlLightParamSize(pname)));
}

void _glMaterialxOES(GLenum face, GLenum pname, GLfixed param)
{
    Trace(Calls::glMaterialxOES, face, pname, param);
}

void _glMaterialxvOES(GLenum face, GLenum pname, const GLfixed* param)
{
    Trace(Calls::glMaterialxvOES, face, pname, InArray(param, GlMaterialParamSize(pname)));
}

void _glNormal3xOES(GLfixed nx, GLfixed ny, GLfixed nz) { Trace(Calls::glNormal3xOES, nx, ny, nz); }

}  // namespace Es1
