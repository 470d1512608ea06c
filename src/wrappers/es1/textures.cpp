// GLES1 wrappers: textures.
#include "wrappers/calls.h"
#include "wrappers/host_queries.h"
#include "wrappers/sizing.h"

namespace Es1
{

void _glCompressedTexImage2D(GLenum target, GLint level, GLenum internalformat, GLsizei width, GLsizei height,
                             GLint border, GLsizei imageSize, const void* data)
{
    Trace(Calls::glCompressedTexImage2D, target, level, internalformat, width, height, border, imageSize,
          Bytes(data, imageSize));
}

// On purpose: sized as a texture environment, unlike its iv and xv kin.
void _glGetTexParameterfv(GLenum target, GLenum pname, GLfloat* params)
{
    Trace(Calls::glGetTexParameterfv, target, pname, OutArray(params, GlTexEnvParamSize(pname)));
}

void _glGetTexParameterxv(GLenum target, GLenum pname, GLfixed* params)
{
    Trace(Calls::glGetTexParameterxv, target, pname, OutArray(params, GlTexParamSize(pname)));
}

void _glTexImage2D(GLenum target, GLint level, GLint internalformat, GLsizei width, GLsizei height,
                   GLint border, GLenum format, GLenum type, const void* pixels)
{
    CFrame frame(Calls::glTexImage2D, target, level, internalformat, width, height, border, format, type,
                 pixels);
    frame.CallHost();
    // A snapshot's pixels are a record's own bytes, as many as this alignment makes of its image.
    GLint const alignment = frame.IsRecording() ? HostInteger(GL_UNPACK_ALIGNMENT) : 0;
    CPaddedImage const image(frame.UsesData() ? pixels : nullptr,
                             Layout2D(format, type, width, height, alignment, border),
                             frame.HostRan() ? HostInteger : nullptr, GL_UNPACK_ALIGNMENT);
    frame.Record(target, level, internalformat, width, height, border, format, type,
                 ImageBytes(pixels, image), alignment);
}

void _glTexParameterf(GLenum target, GLenum pname, GLfloat param)
{
    Trace(Calls::glTexParameterf, target, pname, param);
}

void _glTexParameterfv(GLenum target, GLenum pname, const GLfloat* params)
{
    Trace(Calls::glTexParameterfv, target, pname, InArray(params, GlTexParamSize(pname)));
}

void _glTexParameteri(GLenum target, GLenum pname, GLint param)
{
    Trace(Calls::glTexParameteri, target, pname, param);
}

void _glTexParameteriv(GLenum target, GLenum pname, const GLint* params)
{
    Trace(Calls::glTexParameteriv, target, pname, InArray(params, GlTexParamSize(pname)));
}

void _glTexParameterx(GLenum target, GLenum pname, GLfixed param)
{
    Trace(Calls::glTexParameterx, target, pname, param);
}

void _glTexParameterxv(GLenum target, GLenum pname, const GLfixed* params)
{
    Trace(Calls::glTexParameterxv, target, pname, InArray(params, GlTexParamSize(pname)));
}

void _glTexSubImage2D(GLenum target, GLint level, GLint xoffset, GLint yoffset, GLsizei width, GLsizei height,
                      GLenum format, GLenum type, const void* pixels)
{
    CFrame frame(Calls::glTexSubImage2D, target, level, xoffset, yoffset, width, height, format, type,
                 pixels);
    frame.CallHost();
    // The tracker copies rows as the application has them, the record measures them as the driver reads them.
    GLint const alignment = frame.UsesData() || frame.IsRecording() ? HostInteger(GL_UNPACK_ALIGNMENT) : 0;
    CPaddedImage const image(frame.UsesData() ? pixels : nullptr,
                             Layout2D(format, type, width, height, alignment, 0),
                             frame.HostRan() ? HostInteger : nullptr, GL_UNPACK_ALIGNMENT);
    frame.Record(target, level, xoffset, yoffset, width, height, format, type, ImageBytes(pixels, image),
                 alignment);
}

void _glGenerateMipmapOES(GLenum target) { Trace(Calls::glGenerateMipmapOES, target); }

void _glGetTexParameterxvOES(GLenum target, GLenum pname, GLfixed* params)
{
    Trace(Calls::glGetTexParameterxvOES, target, pname, OutArray(params, GlTexParamSize(pname)));
}

void _glTexParameterxOES(GLenum target, GLenum pname, GLfixed param)
{
    Trace(Calls::glTexParameterxOES, target, pname, param);
}

void _glTexParameterxvOES(GLenum target, GLenum pname, const GLfixed* params)
{
    Trace(Calls::glTexParameterxvOES, target, pname, InArray(params, GlTexParamSize(pname)));
}

}  // namespace Es1
