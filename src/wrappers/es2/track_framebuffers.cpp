// Tracking of framebuffers and renderbuffers.
#include "wrappers/es2/track.h"
#include "wrappers/live_state.h"

namespace
{

// The attachment of the bound framebuffer that a record keeps, or null.
FBOAttachmentDefinition* DepthOrStencil(GLenum attachment)
{
    FBODefinition& framebuffer = LiveEs2State().mFramebufferObjects[LiveEs2State().m_iBoundFBO];
    if (attachment == GL_DEPTH_ATTACHMENT)
        return &framebuffer.DepthAttachment;
    return attachment == GL_STENCIL_ATTACHMENT ? &framebuffer.StencilAttachment : nullptr;
}

}  // namespace

void Es2::Track::GenFramebuffers(GLsizei n, GLuint const* names)
{
    TrackContents::ForEachName(n, names,
                               [](GLuint name) { LiveEs2State().mFramebufferObjects[name].name = name; });
}

void Es2::Track::BindFramebuffer(GLuint name)
{
    LiveEs2State().m_iBoundFBO = name;
    if (name == 0)
        return;
    FBODefinition& framebuffer = LiveEs2State().mFramebufferObjects[name];
    framebuffer.firstBind = true;
    framebuffer.name = name;
}

void Es2::Track::BeforeDeleteFramebuffers(GLsizei n, GLuint const* names)
{
    TrackContents::ForEachName(n, names, [](GLuint name) { LiveEs2State().SaveFBOTexture(name); });
}

void Es2::Track::DeleteFramebuffers(GLsizei n, GLuint const* names)
{
    TrackContents::ForEachName(n, names,
                               [](GLuint name) { LiveEs2State().mFramebufferObjects.removeElement(name); });
}

// On purpose: a texture as colour attachment is not kept, and a plain one leaves the face as it was.
void Es2::Track::FramebufferTexture2D(GLenum attachment, GLenum target, GLuint texture, GLint level)
{
    FBOAttachmentDefinition* const kept = DepthOrStencil(attachment);
    if (!kept)
        return;
    kept->type = GL_TEXTURE;
    kept->name = texture;
    kept->lod = level;
    if (target != GL_TEXTURE_2D)
        kept->cubeface = target;
}

void Es2::Track::FramebufferRenderbuffer(GLenum attachment, GLuint renderbuffer)
{
    FBOAttachmentDefinition* kept = DepthOrStencil(attachment);
    if (attachment == GL_COLOR_ATTACHMENT0)
        kept = &LiveEs2State().mFramebufferObjects[LiveEs2State().m_iBoundFBO].ColorAttachment(0);
    if (!kept)
        return;
    kept->type = GL_RENDERBUFFER;
    kept->name = renderbuffer;
}

void Es2::Track::GenRenderbuffers(GLsizei n, GLuint const* names)
{
    TrackContents::ForEachName(n, names,
                               [](GLuint name) { LiveEs2State().m_sRenderbuffers[name].name = name; });
}

void Es2::Track::BindRenderbuffer(GLuint name)
{
    LiveEs2State().m_iBoundRB = name;
    LiveEs2State().m_sRenderbuffers[name].firstBind = true;
}

void Es2::Track::DeleteRenderbuffers(GLsizei n, GLuint const* names)
{
    TrackContents::ForEachName(n, names,
                               [](GLuint name) { LiveEs2State().m_sRenderbuffers.removeElement(name); });
}
