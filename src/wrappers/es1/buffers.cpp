// GLES1 wrappers: buffers.
#include "wrappers/calls.h"
#include "wrappers/element_buffers.h"
#include "wrappers/mapped_copy.h"
#include "wrappers/track_contents.h"

namespace Es1
{

void _glBindBuffer(GLenum target, GLuint buffer) { Trace(Calls::glBindBuffer, target, buffer); }

void _glBufferData(GLenum target, GLsizeiptr size, const void* data, GLenum usage)
{
    CFrame frame(Calls::glBufferData, target, size, data, usage);
    frame.CallHost();
    if (frame.SucceededWithData())
        ElementBuffers.Define(target, size, data);
    frame.Record(target, size, Bytes(data, ByteCount(size)), usage);
}

void _glBufferSubData(GLenum target, GLintptr offset, GLsizeiptr size, const void* data)
{
    CFrame frame(Calls::glBufferSubData, target, offset, size, data);
    frame.CallHost();
    if (frame.SucceededWithData())
        ElementBuffers.Update(target, offset, size, data);
    frame.Record(target, offset, size, Bytes(data, ByteCount(size)));
}

void _glDeleteBuffers(GLsizei n, const GLuint* buffers)
{
    CFrame frame(Calls::glDeleteBuffers, n, buffers);
    frame.CallHost();
    // On purpose: GLES2 keeps its copies, so that a name given out again has the old bytes until it is
    // filled.
    if (frame.Succeeded())
        TrackContents::ForEachName(n, buffers, [](GLuint name) { BufferList.RemoveObject(name); });
    frame.Record(n, InArray(buffers, n));
}

void _glGetBufferParameteriv(GLenum target, GLenum pname, GLint* params)
{
    Trace(Calls::glGetBufferParameteriv, target, pname, OutArray(params, 1));
}

void _glGenBuffers(GLsizei n, GLuint* buffers) { Trace(Calls::glGenBuffers, n, InArray(buffers, n)); }

GLboolean _glIsBuffer(GLuint buffer) { return Trace(Calls::glIsBuffer, buffer); }

void* _glMapBufferOES(GLenum target, GLenum access)
{
    CFrame frame(Calls::glMapBufferOES, target, access);
    frame.CallHost();
    // Deleting a buffer ends its mapping too, and its name is given out again.
    if (frame.Result())
        ForgetMappedRange(*Es1Host(), target);
    frame.Record(target, access);
    return frame.Result();
}

GLboolean _glUnmapBufferOES(GLenum target)
{
    CFrame frame(Calls::glUnmapBufferOES, target);
    // The host call ends the mapping: what lies behind it is copied ahead.
    CMappedCopy copy;
    if (frame.IsRecording() && frame.MayCallHost())
        copy.Take(*Es1Host(), target);
    frame.CallHost();
    if (frame.HostRan())
        ForgetMappedRange(*Es1Host(), target);
    frame.Record(target, Always(Bytes(copy.Data(), copy.Size())));
    return frame.Result();
}

void* _glMapBufferRangeEXT(GLenum target, GLintptr offset, GLsizeiptr length, GLbitfield access)
{
    CFrame frame(Calls::glMapBufferRangeEXT, target, offset, length, access);
    frame.CallHost();
    if (frame.Result())
        RememberMappedRange(*Es1Host(), target, length);
    frame.Record(target, offset, length, access);
    return frame.Result();
}

void _glFlushMappedBufferRangeEXT(GLenum target, GLintptr offset, GLsizeiptr length)
{
    Trace(Calls::glFlushMappedBufferRangeEXT, target, offset, length);
}

void _glGetBufferPointervOES(GLenum target, GLenum pname, void** params)
{
    Trace(Calls::glGetBufferPointervOES, target, pname, OutLowByte(params));
}

}  // namespace Es1
