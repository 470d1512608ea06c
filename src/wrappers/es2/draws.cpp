// GLES2 wrappers: draw calls.
#include "wrappers/draws.h"
#include "state/visit_by_key.h"
#include "wrappers/calls.h"
#include "wrappers/host_queries.h"
#include "wrappers/live_state.h"

namespace Es2
{

namespace
{

// The client arrays of the current array object. Array objects that are bound while frames are recorded are
// not followed.
struct SArrays
{
    static constexpr char const* kNoPointer =
        "Es2Trace::_glDrawElements error trying to save VertexAttrib: No data pointer";

    static GLint Most() { return HostInteger(GL_MAX_VERTEX_ATTRIBS); }
    static SElementBuffers const& Elements() { return ElementBuffers; }

    template <typename Visit>
    static void ForEach(Visit visit)
    {
        VisitByKey(LiveEs2State().BoundVertexArray().vertexattributearrays,
                   [&](uint32_t index, VertexAttributeArray const& array) {
                       if (array.enabled && array.boundarraybuffer == 0)
                           visit({index, array.size, array.type, array.stride, array.pointer});
                   });
    }

    static bool IsReadByHost(SClientArray const& array)
    {
        GLint enabled = GL_TRUE;
        GLint buffer = 0;
        auto* pointer = const_cast<void*>(array.pointer);
        Es2Host()->glGetVertexAttribiv(array.index, GL_VERTEX_ATTRIB_ARRAY_ENABLED, &enabled);
        Es2Host()->glGetVertexAttribiv(array.index, GL_VERTEX_ATTRIB_ARRAY_BUFFER_BINDING, &buffer);
        Es2Host()->glGetVertexAttribPointerv(array.index, GL_VERTEX_ATTRIB_ARRAY_POINTER, &pointer);
        return enabled && buffer == 0 && pointer == array.pointer;
    }
};

}  // namespace

void _glDrawArrays(GLenum mode, GLint first, GLsizei count)
{
    CFrame frame(Calls::glDrawArrays, mode, first, count);
    frame.CallHost();
    if (frame.IsRecording())
        LiveEs2State().TrackData();
    RecordDrawArrays<SArrays>(frame, mode, first, count);
}

void _glDrawElements(GLenum mode, GLsizei count, GLenum type, const void* indices)
{
    CFrame frame(Calls::glDrawElements, mode, count, type, indices);
    frame.CallHost();
    if (frame.IsRecording())
        LiveEs2State().TrackData();
    RecordDrawElements<SArrays>(frame, mode, {count, type, indices});
}

void _glDrawArraysInstancedANGLE(GLenum mode, GLint first, GLsizei count, GLsizei primcount)
{
    Trace(Calls::glDrawArraysInstancedANGLE, mode, first, count, primcount);
}

void _glDrawElementsInstancedANGLE(GLenum mode, GLsizei count, GLenum type, const void* indices,
                                   GLsizei primcount)
{
    Trace(Calls::glDrawElementsInstancedANGLE, mode, count, type, indices, primcount);
}

void _glDrawBuffersNV(GLsizei n, const GLenum* bufs) { Trace(Calls::glDrawBuffersNV, n, InArray(bufs, n)); }

void _glDrawBuffersIndexedEXT(GLint n, const GLenum* location, const GLint* indices)
{
    Trace(Calls::glDrawBuffersIndexedEXT, n, location, indices);
}

}  // namespace Es2
