// GLES1 wrappers: buffers.
#include "wrappers/calls.h"
#include "wrappers/element_buffers.h"
#include "wrappers/es1/track.h"
#include "wrappers/mapped_copy.h"

namespace Es1
{

void _glBindBuffer(GLenum target, GLuint buffer) { Trace(Calls::glBindBuffer, target, buffer); }

void _glBufferData(GLenum target, GLsizeiptr size, const void* data, GLenum usage)
{
    CFrame frame(Calls::glBufferData, target, size, data, usage);
    frame.CallHost();
    if (frame.MayTrackData())
        Track::BufferData(target, size, data, usage);
    if (frame.SucceededWithData())
        ElementBuffers.Define(target, size, data);
    frame.Record(target, size, Bytes(data, ByteCount(size)), usage);
}

void _glBufferSubData(GLenum target, GLintptr offset, GLsizeiptr size, const void* data)
{
    CFrame frame(Calls::glBufferSubData, target, offset, size, data);
    frame.CallHost();
    if (frame.MayTrackData())
        Track::BufferSubData(target, offset, size, data);
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

}  // namespace Es1
