// GLES2 wrappers: framebuffers, renderbuffers and pixels read back.
#include "wrappers/calls.h"
#include "wrappers/es2/track.h"
#include "wrappers/host_queries.h"

namespace Es2
{

void _glBindFramebuffer(GLenum target, GLuint framebuffer)
{
    CFrame frame(Calls::glBindFramebuffer, target, framebuffer);
    frame.CallHost();
    if (frame.MayTrack())
        Track::BindFramebuffer(framebuffer);
    frame.Record(target, framebuffer);
}

void _glBindRenderbuffer(GLenum target, GLuint renderbuffer)
{
    CFrame frame(Calls::glBindRenderbuffer, target, renderbuffer);
    frame.CallHost();
    if (frame.MayTrack())
        Track::BindRenderbuffer(renderbuffer);
    frame.Record(target, renderbuffer);
}

GLenum _glCheckFramebufferStatus(GLenum target) { return Trace(Calls::glCheckFramebufferStatus, target); }

void _glDeleteFramebuffers(GLsizei n, const GLuint* framebuffers)
{
    CFrame frame(Calls::glDeleteFramebuffers, n, framebuffers);
    // The attachments cannot be read afterwards.
    if (frame.MayCallHost())
        Track::BeforeDeleteFramebuffers(n, framebuffers);
    frame.CallHost();
    if (frame.MayTrack())
        Track::DeleteFramebuffers(n, framebuffers);
    frame.Record(n, InArray(framebuffers, n));
}

void _glDeleteRenderbuffers(GLsizei n, const GLuint* renderbuffers)
{
    CFrame frame(Calls::glDeleteRenderbuffers, n, renderbuffers);
    frame.CallHost();
    if (frame.MayTrack())
        Track::DeleteRenderbuffers(n, renderbuffers);
    frame.Record(n, InArray(renderbuffers, n));
}

void _glFramebufferRenderbuffer(GLenum target, GLenum attachment, GLenum renderbuffertarget,
                                GLuint renderbuffer)
{
    CFrame frame(Calls::glFramebufferRenderbuffer, target, attachment, renderbuffertarget, renderbuffer);
    frame.CallHost();
    // On purpose: attachments are followed whatever the host said, here and in the two below.
    if (frame.HostChecked())
        Track::FramebufferRenderbuffer(attachment, renderbuffer);
    frame.Record(target, attachment, renderbuffertarget, renderbuffer);
}

void _glGenFramebuffers(GLsizei n, GLuint* framebuffers)
{
    CFrame frame(Calls::glGenFramebuffers, n, framebuffers);
    frame.CallHost();
    if (frame.MayTrack())
        Track::GenFramebuffers(n, framebuffers);
    frame.Record(n, InArray(framebuffers, n));
}

void _glGenRenderbuffers(GLsizei n, GLuint* renderbuffers)
{
    CFrame frame(Calls::glGenRenderbuffers, n, renderbuffers);
    frame.CallHost();
    if (frame.MayTrack())
        Track::GenRenderbuffers(n, renderbuffers);
    frame.Record(n, InArray(renderbuffers, n));
}

void _glGetFramebufferAttachmentParameteriv(GLenum target, GLenum attachment, GLenum pname, GLint* params)
{
    Trace(Calls::glGetFramebufferAttachmentParameteriv, target, attachment, pname, OutArray(params, 1));
}

void _glGetRenderbufferParameteriv(GLenum target, GLenum pname, GLint* params)
{
    Trace(Calls::glGetRenderbufferParameteriv, target, pname, OutArray(params, 1));
}

GLboolean _glIsFramebuffer(GLuint framebuffer) { return Trace(Calls::glIsFramebuffer, framebuffer); }

GLboolean _glIsRenderbuffer(GLuint renderbuffer) { return Trace(Calls::glIsRenderbuffer, renderbuffer); }

void _glRenderbufferStorage(GLenum target, GLenum internalformat, GLsizei width, GLsizei height)
{
    Trace(Calls::glRenderbufferStorage, target, internalformat, width, height);
}

void _glBlitFramebufferANGLE(GLint srcX0, GLint srcY0, GLint srcX1, GLint srcY1, GLint dstX0, GLint dstY0,
                             GLint dstX1, GLint dstY1, GLbitfield mask, GLenum filter)
{
    Trace(Calls::glBlitFramebufferANGLE, srcX0, srcY0, srcX1, srcY1, dstX0, dstY0, dstX1, dstY1, mask,
          filter);
}

void _glRenderbufferStorageMultisampleANGLE(GLenum target, GLsizei samples, GLenum internalformat,
                                            GLsizei width, GLsizei height)
{
    Trace(Calls::glRenderbufferStorageMultisampleANGLE, target, samples, internalformat, width, height);
}

void _glReadnPixelsEXT(GLint x, GLint y, GLsizei width, GLsizei height, GLenum format, GLenum type,
                       GLsizei bufSize, void* data)
{
    CFrame frame(Calls::glReadnPixelsEXT, x, y, width, height, format, type, bufSize, data);
    frame.CallHost();
    GLint const alignment = frame.IsRecording() ? HostInteger(GL_UNPACK_ALIGNMENT) : 0;
    // On purpose: bufSize does not bound the size.
    CPaddedImage const image(frame.UsesData() ? data : nullptr,
                             Layout2D(format, type, width, height, alignment, 0), HostInteger,
                             GL_PACK_ALIGNMENT);
    frame.Record(x, y, width, height, format, type, bufSize, ImageBytes(data, image), alignment);
}

void _glReadBufferNV(GLenum mode) { Trace(Calls::glReadBufferNV, mode); }

void _glReadBufferIndexedEXT(GLenum src, GLint index) { Trace(Calls::glReadBufferIndexedEXT, src, index); }

void _glFramebufferTexture2D(GLenum target, GLenum attachment, GLenum textarget, GLuint texture, GLint level)
{
    CFrame frame(Calls::glFramebufferTexture2D, target, attachment, textarget, texture, level);
    frame.CallHost();
    if (frame.HostChecked())
        Track::FramebufferTexture2D(attachment, textarget, texture, level);
    frame.Record(target, attachment, textarget, texture, level);
}

void _glFramebufferTexture2DMultisampleNBX(GLenum target, GLenum attachment, GLenum textarget, GLuint texture,
                                           GLint level, GLsizei samples)
{
    CFrame frame(Calls::glFramebufferTexture2DMultisampleNBX, target, attachment, textarget, texture, level,
                 samples);
    frame.CallHost();
    if (frame.HostChecked())
        Track::FramebufferTexture2D(attachment, textarget, texture, level);
    frame.Record(target, attachment, textarget, texture, level, samples);
}

void _glFramebufferTexture3DOES(GLenum target, GLenum attachment, GLenum textarget, GLuint texture,
                                GLint level, GLint zoffset)
{
    Trace(Calls::glFramebufferTexture3DOES, target, attachment, textarget, texture, level, zoffset);
}

}  // namespace Es2
