// GLES1 wrappers: framebuffers, renderbuffers and pixels read back.
#include "wrappers/calls.h"
#include "wrappers/es1/track.h"
#include "wrappers/host_queries.h"

namespace Es1
{

GLboolean _glIsRenderbufferOES(GLuint renderbuffer)
{
    return Trace(Calls::glIsRenderbufferOES, renderbuffer);
}

void _glBindRenderbufferOES(GLenum target, GLuint renderbuffer)
{
    CFrame frame(Calls::glBindRenderbufferOES, target, renderbuffer);
    frame.CallHost();
    if (frame.MayTrack())
        Track::BindRenderbuffer(renderbuffer);
    frame.Record(target, renderbuffer);
}

void _glDeleteRenderbuffersOES(GLsizei n, const GLuint* renderbuffers)
{
    CFrame frame(Calls::glDeleteRenderbuffersOES, n, renderbuffers);
    frame.CallHost();
    if (frame.MayTrack())
        Track::DeleteRenderbuffers(n, renderbuffers);
    frame.Record(n, InArray(renderbuffers, n));
}

void _glGenRenderbuffersOES(GLsizei n, GLuint* renderbuffers)
{
    CFrame frame(Calls::glGenRenderbuffersOES, n, renderbuffers);
    frame.CallHost();
    if (frame.MayTrack())
        Track::GenRenderbuffers(n, renderbuffers);
    frame.Record(n, InArray(renderbuffers, n));
}

void _glRenderbufferStorageOES(GLenum target, GLenum internalformat, GLsizei width, GLsizei height)
{
    Trace(Calls::glRenderbufferStorageOES, target, internalformat, width, height);
}

void _glGetRenderbufferParameterivOES(GLenum target, GLenum pname, GLint* params)
{
    Trace(Calls::glGetRenderbufferParameterivOES, target, pname, OutArray(params, 1));
}

GLboolean _glIsFramebufferOES(GLuint framebuffer) { return Trace(Calls::glIsFramebufferOES, framebuffer); }

void _glBindFramebufferOES(GLenum target, GLuint framebuffer)
{
    CFrame frame(Calls::glBindFramebufferOES, target, framebuffer);
    frame.CallHost();
    if (frame.MayTrack())
        Track::BindFramebuffer(framebuffer);
    frame.Record(target, framebuffer);
}

void _glDeleteFramebuffersOES(GLsizei n, const GLuint* framebuffers)
{
    CFrame frame(Calls::glDeleteFramebuffersOES, n, framebuffers);
    frame.CallHost();
    if (frame.MayTrack())
        Track::DeleteFramebuffers(n, framebuffers);
    frame.Record(n, InArray(framebuffers, n));
}

void _glGenFramebuffersOES(GLsizei n, GLuint* framebuffers)
{
    CFrame frame(Calls::glGenFramebuffersOES, n, framebuffers);
    frame.CallHost();
    if (frame.MayTrack())
        Track::GenFramebuffers(n, framebuffers);
    frame.Record(n, InArray(framebuffers, n));
}

GLenum _glCheckFramebufferStatusOES(GLenum target)
{
    return Trace(Calls::glCheckFramebufferStatusOES, target);
}

void _glFramebufferRenderbufferOES(GLenum target, GLenum attachment, GLenum renderbuffertarget,
                                   GLuint renderbuffer)
{
    Trace(Calls::glFramebufferRenderbufferOES, target, attachment, renderbuffertarget, renderbuffer);
}

void _glGetFramebufferAttachmentParameterivOES(GLenum target, GLenum attachment, GLenum pname, GLint* params)
{
    Trace(Calls::glGetFramebufferAttachmentParameterivOES, target, attachment, pname, OutArray(params, 1));
}

void _glReadnPixelsEXT(GLint x, GLint y, GLsizei width, GLsizei height, GLenum format, GLenum type,
                       GLsizei bufSize, void* data)
{
    CFrame frame(Calls::glReadnPixelsEXT, x, y, width, height, format, type, bufSize, data);
    frame.CallHost();
    if (!frame.IsRecording())
        return;
    // On purpose: the one extension record without an API byte; it leaves bufSize out, and an error gives it
    // its short form.
    bool const withData = frame.RecordsData() && error == GL_NO_ERROR;
    GLint const alignment = HostInteger(GL_UNPACK_ALIGNMENT);
    CPaddedImage const image(withData ? data : nullptr, Layout2D(format, type, width, height, alignment, 0),
                             HostInteger, GL_PACK_ALIGNMENT);
    CTraceBlock block(frame.Id());
    AppendU32(block, error);
    AppendFields(block, {withData, false}, x, y, width, height, format, type, ImageBytes(data, image),
                 alignment);
}

void _glFramebufferTexture2DOES(GLenum target, GLenum attachment, GLenum textarget, GLuint texture,
                                GLint level)
{
    Trace(Calls::glFramebufferTexture2DOES, target, attachment, textarget, texture, level);
}

void _glFramebufferTexture2DMultisampleNBX(GLenum target, GLenum attachment, GLenum textarget, GLuint texture,
                                           GLint level, GLsizei samples)
{
    Trace(Calls::glFramebufferTexture2DMultisampleNBX, target, attachment, textarget, texture, level,
          samples);
}

}  // namespace Es1
