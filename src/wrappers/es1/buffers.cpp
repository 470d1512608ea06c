// GLES1 wrappers: buffers.
#include "state/buffer_object_list.h"
#include "wrappers/calls.h"
#include "wrappers/mapped_copy.h"
#include "wrappers/track_contents.h"

namespace Es1
{

void _glBindBuffer(GLenum target, GLuint buffer) { Trace(Calls::glBindBuffer, target, buffer); }

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
