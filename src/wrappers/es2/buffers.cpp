// GLES2 wrappers: buffers.
#include "support/log.h"
#include "wrappers/calls.h"
#include "wrappers/element_buffers.h"
#include "wrappers/es2/track.h"
#include "wrappers/mapped_copy.h"

namespace Es2
{

void _glBindBuffer(GLenum target, GLuint buffer)
{
    CFrame frame(Calls::glBindBuffer, target, buffer);
    frame.CallHost();
    // On purpose: in the recorded frames too, where draws have to know what is bound.
    if (frame.Succeeded())
        Track::BindBuffer(target, buffer);
    frame.Record(target, buffer);
}

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
    Trace(Calls::glDeleteBuffers, n, InArray(buffers, n));
}

GLboolean _glUnmapBufferOES(GLenum target)
{
    CFrame frame(Calls::glUnmapBufferOES, target);
    // The host call ends the mapping: what lies behind it is copied ahead.
    CMappedCopy copy;
    if (frame.IsRecording() && frame.MayCallHost() && copy.Take(*Es2Host(), target))
        LogMessage("Size UnMapBuffer: %d", copy.BufferSize());
    frame.CallHost();
    if (frame.HostRan())
        ForgetMappedRange(*Es2Host(), target);
    frame.Record(target, Always(Bytes(copy.Data(), copy.Size())));
    // The record goes ahead of the tracking here.
    if (copy.Data() && frame.MayTrack())
        Track::UnmapBuffer(copy.Name(), copy.Data(), copy.Size());
    return frame.Result();
}

}  // namespace Es2
