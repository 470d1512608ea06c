// GLES2 wrappers: textures.
#include "wrappers/calls.h"
#include "wrappers/es2/track.h"
#include "wrappers/host_queries.h"
#include "wrappers/sizing.h"

namespace Es2
{

void _glGenerateMipmap(GLenum target)
{
    CFrame frame(Calls::glGenerateMipmap, target);
    frame.CallHost();
    if (frame.MayTrack())
        Track::GenerateMipmap(target);
    frame.Record(target);
}

void _glGetTexParameterfv(GLenum target, GLenum pname, GLfloat* params)
{
    Trace(Calls::glGetTexParameterfv, target, pname, OutArray(params, GlTexParamSize(pname)));
}

void _glTexImage2D(GLenum target, GLint level, GLint internalformat, GLsizei width, GLsizei height,
                   GLint border, GLenum format, GLenum type, const void* pixels, GLint alignment)
{
    CFrame frame(Calls::glTexImage2D, target, level, internalformat, width, height, border, format, type,
                 pixels);
    // On purpose: an upload measured with the pack alignment, and only when the call is not timed.
    frame.CallHost([&] {
        if (!frame.IsTimed())
            alignment = HostInteger(GL_PACK_ALIGNMENT);
    });
    // A snapshot's pixels are a record's own bytes, padding included: the host's alignment is not theirs.
    CPaddedImage const image(frame.UsesData() ? pixels : nullptr,
                             Layout2D(format, type, width, height, alignment, border),
                             frame.HostRan() ? HostInteger : nullptr, GL_UNPACK_ALIGNMENT);
    if (frame.MayTrackData())
        Track::TexImage2D({target, level, internalformat, width, height, border, format, type, alignment,
                           image.Data(), false, 0});
    frame.Record(target, level, internalformat, width, height, border, format, type,
                 ImageBytes(pixels, image), alignment);
}

void _glTexParameteri(GLenum target, GLenum pname, GLint param)
{
    CFrame frame(Calls::glTexParameteri, target, pname, param);
    frame.CallHost();
    if (frame.MayTrack())
        Track::TexParameteri(target, pname, param);
    frame.Record(target, pname, param);
}

void _glTexImage3DOES(GLenum target, GLint level, GLenum internalformat, GLsizei width, GLsizei height,
                      GLsizei depth, GLint border, GLenum format, GLenum type, const void* pixels)
{
    CFrame frame(Calls::glTexImage3DOES, target, level, internalformat, width, height, depth, border, format,
                 type, pixels);
    frame.CallHost();
    GLint const alignment = frame.IsRecording() ? HostInteger(GL_UNPACK_ALIGNMENT) : 0;
    CPaddedImage const image(frame.UsesData() ? pixels : nullptr,
                             Layout3D(format, type, width, height, depth, alignment, border), HostInteger,
                             GL_UNPACK_ALIGNMENT);
    frame.Record(target, level, internalformat, width, height, depth, border, format, type,
                 ImageBytes(pixels, image), alignment);
}

void _glTexSubImage3DOES(GLenum target, GLint level, GLint xoffset, GLint yoffset, GLint zoffset,
                         GLsizei width, GLsizei height, GLsizei depth, GLenum format, GLenum type,
                         const void* pixels)
{
    CFrame frame(Calls::glTexSubImage3DOES, target, level, xoffset, yoffset, zoffset, width, height, depth,
                 format, type, pixels);
    frame.CallHost();
    GLint const alignment = frame.IsRecording() ? HostInteger(GL_UNPACK_ALIGNMENT) : 0;
    CPaddedImage const image(frame.UsesData() ? pixels : nullptr,
                             Layout3D(format, type, width, height, depth, alignment, 0), HostInteger,
                             GL_UNPACK_ALIGNMENT);
    frame.Record(target, level, xoffset, yoffset, zoffset, width, height, depth, format, type,
                 ImageBytes(pixels, image), alignment);
}

void _glCopyTexSubImage3DOES(GLenum target, GLint level, GLint xoffset, GLint yoffset, GLint zoffset, GLint x,
                             GLint y, GLsizei width, GLsizei height)
{
    Trace(Calls::glCopyTexSubImage3DOES, target, level, xoffset, yoffset, zoffset, x, y, width, height);
}

void _glCompressedTexImage3DOES(GLenum target, GLint level, GLenum internalformat, GLsizei width,
                                GLsizei height, GLsizei depth, GLint border, GLsizei imageSize,
                                const void* data)
{
    Trace(Calls::glCompressedTexImage3DOES, target, level, internalformat, width, height, depth, border,
          imageSize, Bytes(data, imageSize));
}

void _glCompressedTexSubImage3DOES(GLenum target, GLint level, GLint xoffset, GLint yoffset, GLint zoffset,
                                   GLsizei width, GLsizei height, GLsizei depth, GLenum format,
                                   GLsizei imageSize, const void* data)
{
    Trace(Calls::glCompressedTexSubImage3DOES, target, level, xoffset, yoffset, zoffset, width, height, depth,
          format, imageSize, Bytes(data, imageSize));
}

}  // namespace Es2
