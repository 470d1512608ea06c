// GLES1 wrappers: textures.
#include "wrappers/calls.h"
#include "wrappers/es1/track.h"
#include "wrappers/host_queries.h"
#include "wrappers/sizing.h"

namespace Es1
{

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
    if (frame.MayTrackData())
        Track::TexImage2D({target, level, internalformat, width, height, border, format, type,
                           HostInteger(GL_PACK_ALIGNMENT), pixels, false, 0});
    // A snapshot's pixels are a record's own bytes, as many as this alignment makes of its image.
    GLint const alignment = frame.IsRecording() ? HostInteger(GL_UNPACK_ALIGNMENT) : 0;
    CPaddedImage const image(frame.UsesData() ? pixels : nullptr,
                             Layout2D(format, type, width, height, alignment, border),
                             frame.HostRan() ? HostInteger : nullptr, GL_UNPACK_ALIGNMENT);
    frame.Record(target, level, internalformat, width, height, border, format, type,
                 ImageBytes(pixels, image), alignment);
}

void _glTexParameteri(GLenum target, GLenum pname, GLint param)
{
    CFrame frame(Calls::glTexParameteri, target, pname, param);
    frame.CallHost();
    if (frame.MayTrack())
        Track::TexParameter(target, pname, param);
    frame.Record(target, pname, param);
}

void _glTexParameterx(GLenum target, GLenum pname, GLfixed param)
{
    CFrame frame(Calls::glTexParameterx, target, pname, param);
    frame.CallHost();
    if (frame.MayTrack())
        Track::TexParameter(target, pname, param);
    frame.Record(target, pname, param);
}

void _glTexParameterxv(GLenum target, GLenum pname, const GLfixed* params)
{
    CFrame frame(Calls::glTexParameterxv, target, pname, params);
    frame.CallHost();
    if (frame.MayTrack())
        Track::TexParameterv(target, pname, params);
    frame.Record(target, pname, InArray(params, GlTexParamSize(pname)));
}

void _glGenerateMipmapOES(GLenum target)
{
    CFrame frame(Calls::glGenerateMipmapOES, target);
    frame.CallHost();
    if (frame.MayTrack())
        Track::GenerateMipmap(target);
    frame.Record(target);
}

void _glGetTexParameterxvOES(GLenum target, GLenum pname, GLfixed* params)
{
    Trace(Calls::glGetTexParameterxvOES, target, pname, OutArray(params, GlTexParamSize(pname)));
}

void _glTexParameterxOES(GLenum target, GLenum pname, GLfixed param)
{
    CFrame frame(Calls::glTexParameterxOES, target, pname, param);
    frame.CallHost();
    if (frame.MayTrack())
        Track::TexParameter(target, pname, param);
    frame.Record(target, pname, param);
}

void _glTexParameterxvOES(GLenum target, GLenum pname, const GLfixed* params)
{
    CFrame frame(Calls::glTexParameterxvOES, target, pname, params);
    frame.CallHost();
    if (frame.MayTrack())
        Track::TexParameterv(target, pname, params);
    frame.Record(target, pname, InArray(params, GlTexParamSize(pname)));
}

}  // namespace Es1
