// GLES2 wrappers: buffers.
#include "support/log.h"
#include "wrappers/calls.h"
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
