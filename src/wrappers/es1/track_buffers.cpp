// Tracking of buffers.
#include "wrappers/es1/track.h"
#include "wrappers/host_queries.h"
#include "wrappers/live_state.h"

static GLuint NameAt(GLenum target)
{
    GLenum const binding =
        target == GL_ARRAY_BUFFER ? GL_ARRAY_BUFFER_BINDING : GL_ELEMENT_ARRAY_BUFFER_BINDING;
    return static_cast<GLuint>(Es1::HostInteger(binding));
}

void Es1::Track::BufferData(GLenum target, GLsizeiptr size, void const* data, GLenum usage)
{
    if (!TrackContents::IsCountable(0, size))
        return;
    GLuint const name = NameAt(target);
    TrackContents::DefineBuffer(LiveEs1State().m_sBufferDatas[name], name, target, size, data, usage);
}

void Es1::Track::BufferSubData(GLenum target, GLintptr offset, GLsizeiptr size, void const* data)
{
    TrackContents::UpdateBuffer(LiveEs1State().m_sBufferDatas[NameAt(target)], offset, size, data);
}
