// Tracking of framebuffers and renderbuffers.
#include "wrappers/es1/track.h"
#include "wrappers/live_state.h"

using TrackContents::ForEachName;

// A record of a framebuffer or a renderbuffer that has been bound. A name need not have been generated.
template <typename Map>
static void MarkBound(Map& records, GLuint name)
{
    if (name == 0)
        return;
    auto& record = records[name];
    record.firstBind = true;
    record.name = name;
}

void Es1::Track::GenFramebuffers(GLsizei n, GLuint const* names)
{
    ForEachName(n, names, [](GLuint name) { LiveEs1State().mFramebufferObjects[name].name = name; });
}

void Es1::Track::BindFramebuffer(GLuint name) { MarkBound(LiveEs1State().mFramebufferObjects, name); }

void Es1::Track::DeleteFramebuffers(GLsizei n, GLuint const* names)
{
    ForEachName(n, names, [](GLuint name) { LiveEs1State().mFramebufferObjects.removeElement(name); });
}

void Es1::Track::GenRenderbuffers(GLsizei n, GLuint const* names)
{
    ForEachName(n, names, [](GLuint name) { LiveEs1State().m_sRenderbuffers[name].name = name; });
}

void Es1::Track::BindRenderbuffer(GLuint name) { MarkBound(LiveEs1State().m_sRenderbuffers, name); }

void Es1::Track::DeleteRenderbuffers(GLsizei n, GLuint const* names)
{
    ForEachName(n, names, [](GLuint name) { LiveEs1State().m_sRenderbuffers.removeElement(name); });
}
