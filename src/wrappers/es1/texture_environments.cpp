// GLES1 wrappers: texture environments and coordinate generation.
#include "wrappers/calls.h"
#include "wrappers/sizing.h"

namespace Es1
{

void _glGetTexEnvfv(GLenum target, GLenum pname, GLfloat* params)
{
    Trace(Calls::glGetTexEnvfv, target, pname, OutArray(params, GlTexEnvParamSize(pname)));
}

void _glGetTexEnviv(GLenum target, GLenum pname, GLint* params)
{
    Trace(Calls::glGetTexEnviv, target, pname, OutArray(params, GlTexEnvParamSize(pname)));
}

void _glGetTexEnvxv(GLenum target, GLenum pname, GLfixed* params)
{
    Trace(Calls::glGetTexEnvxv, target, pname, OutArray(params, GlTexEnvParamSize(pname)));
}

void _glTexEnvf(GLenum target, GLenum pname, GLfloat param) { Trace(Calls::glTexEnvf, target, pname, param); }

void _glTexEnvfv(GLenum target, GLenum pname, const GLfloat* params)
{
    Trace(Calls::glTexEnvfv, target, pname, InArray(params, GlTexEnvParamSize(pname)));
}

void _glTexEnvi(GLenum target, GLenum pname, GLint param) { Trace(Calls::glTexEnvi, target, pname, param); }

void _glTexEnviv(GLenum target, GLenum pname, const GLint* params)
{
    Trace(Calls::glTexEnviv, target, pname, InArray(params, GlTexEnvParamSize(pname)));
}

void _glTexEnvx(GLenum target, GLenum pname, GLfixed param) { Trace(Calls::glTexEnvx, target, pname, param); }

void _glTexEnvxv(GLenum target, GLenum pname, const GLfixed* params)
{
    Trace(Calls::glTexEnvxv, target, pname, InArray(params, GlTexEnvParamSize(pname)));
}

void _glGetTexEnvxvOES(GLenum target, GLenum pname, GLfixed* params)
{
    Trace(Calls::glGetTexEnvxvOES, target, pname, OutArray(params, GlTexEnvParamSize(pname)));
}

void _glTexEnvxOES(GLenum target, GLenum pname, GLfixed param)
{
    Trace(Calls::glTexEnvxOES, target, pname, param);
}

void _glTexEnvxvOES(GLenum target, GLenum pname, const GLfixed* params)
{
    Trace(Calls::glTexEnvxvOES, target, pname, InArray(params, GlTexEnvParamSize(pname)));
}

void _glTexGenfOES(GLenum coord, GLenum pname, GLfloat param)
{
    Trace(Calls::glTexGenfOES, coord, pname, param);
}

void _glTexGenfvOES(GLenum coord, GLenum pname, const GLfloat* params)
{
    Trace(Calls::glTexGenfvOES, coord, pname, InArray(params, GlTexGenParamSize(pname)));
}

void _glTexGeniOES(GLenum coord, GLenum pname, GLint param)
{
    Trace(Calls::glTexGeniOES, coord, pname, param);
}

void _glTexGenivOES(GLenum coord, GLenum pname, const GLint* params)
{
    Trace(Calls::glTexGenivOES, coord, pname, InArray(params, GlTexGenParamSize(pname)));
}

void _glTexGenxOES(GLenum coord, GLenum pname, GLfixed param)
{
    Trace(Calls::glTexGenxOES, coord, pname, param);
}

void _glTexGenxvOES(GLenum coord, GLenum pname, const GLfixed* params)
{
    Trace(Calls::glTexGenxvOES, coord, pname, InArray(params, GlTexGenParamSize(pname)));
}

void _glGetTexGenfvOES(GLenum coord, GLenum pname, GLfloat* params)
{
    Trace(Calls::glGetTexGenfvOES, coord, pname, OutArray(params, GlTexGenParamSize(pname)));
}

void _glGetTexGenivOES(GLenum coord, GLenum pname, GLint* params)
{
    Trace(Calls::glGetTexGenivOES, coord, pname, OutArray(params, GlTexGenParamSize(pname)));
}

void _glGetTexGenxvOES(GLenum coord, GLenum pname, GLfixed* params)
{
    Trace(Calls::glGetTexGenxvOES, coord, pname, OutArray(params, GlTexGenParamSize(pname)));
}

}  // namespace Es1
