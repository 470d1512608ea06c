// A snapshot as calls: framebuffers and their attachments.
#include "host/hosts.h"
#include "state/es2_context_state.h"
#include "support/log.h"
#include "wrappers/es2.h"
#include "wrappers/host_queries.h"
#include "wrappers/sizing.h"
#include <vector>

namespace
{

TextureDefinition const* FirstImage(CEs2ContextState::Textures const& textures, unsigned int name)
{
    auto const* const faces = textures.Find(name);
    if (!faces || faces->Count() == 0 || faces->ValueAt(0).Count() == 0)
        return nullptr;
    return &faces->ValueAt(0).ValueAt(0);
}

// Reads the render target's present image from the host and writes it into the texture. The one place where
// pixels are read while a snapshot is written.
void WritePresentImage(GLuint framebuffer, GLuint texture, TextureDefinition const& image)
{
    auto const bound = static_cast<GLuint>(Es2::HostInteger(GL_FRAMEBUFFER_BINDING));
    Es2Host()->glBindFramebuffer(GL_FRAMEBUFFER, framebuffer);
    // Room for rows that an alignment of 8 pads.
    std::vector<uint8_t> pixels(GlImage2DSize(GL_RGBA, GL_UNSIGNED_BYTE, image.width, image.height, 8, 0));
    if (!pixels.empty())
        Es2Host()->glReadPixels(0, 0, image.width, image.height, GL_RGBA, GL_UNSIGNED_BYTE, pixels.data());
    auto const boundTexture = static_cast<GLuint>(Es2::HostInteger(GL_TEXTURE_BINDING_2D));
    Es2::_glBindTexture(GL_TEXTURE_2D, texture);
    Es2::_glTexSubImage2D(GL_TEXTURE_2D, 0, 0, 0, image.width, image.height, GL_RGBA, GL_UNSIGNED_BYTE,
                          pixels.data());
    Es2::_glBindTexture(GL_TEXTURE_2D, boundTexture);
    Es2Host()->glBindFramebuffer(GL_FRAMEBUFFER, bound);
}

}  // namespace

void CEs2ContextState::WriteFBOState(bool optimize)
{
    for (int slot = 0; slot < mFramebufferObjects.Count(); ++slot)
    {
        FBODefinition& framebuffer = mFramebufferObjects.ValueAt(slot);
        if (framebuffer.name == 0)
            continue;
        Es2::_glGenFramebuffers(1, &framebuffer.name);
        if (!framebuffer.firstBind)
            continue;
        Es2::_glBindFramebuffer(GL_FRAMEBUFFER, framebuffer.name);
        WriteFBOAttachmentState(framebuffer, m_sUsedTextures, m_sTexImageTextures, optimize);
    }
}

void CEs2ContextState::WriteFBOAttachmentState(FBODefinition& framebuffer, UsedNames& used,
                                               Textures& textures, bool optimize)
{
    WriteFBOColorAttachmentState(framebuffer, used, textures, optimize);
    if (WriteFBODepthStencilAttachmentState(framebuffer, used, textures))
        return;
    WriteAttachmentState(framebuffer.name, GL_DEPTH_ATTACHMENT, framebuffer.DepthAttachment, used, textures,
                         false);
    WriteAttachmentState(framebuffer.name, GL_STENCIL_ATTACHMENT, framebuffer.StencilAttachment, used,
                         textures, false);
}

void CEs2ContextState::WriteFBOColorAttachmentState(FBODefinition& framebuffer, UsedNames& used,
                                                    Textures& textures, bool optimize)
{
    for (int i = 0; i < framebuffer.NumColorAttachments; ++i)
        WriteAttachmentState(framebuffer.name, GL_COLOR_ATTACHMENT0 + static_cast<GLenum>(i),
                             framebuffer.ColorAttachment(i), used, textures, optimize);
}

int CEs2ContextState::WriteFBODepthStencilAttachmentState(FBODefinition& /*framebuffer*/, UsedNames& /*used*/,
                                                          Textures& /*textures*/)
{
    return 0;
}

int CEs2ContextState::WriteAttachmentState(unsigned int framebuffer, unsigned int attachment,
                                           FBOAttachmentDefinition const& kept, UsedNames& used,
                                           Textures& textures, bool optimize)
{
    if (kept.type == GL_RENDERBUFFER)
    {
        Es2::_glFramebufferRenderbuffer(GL_FRAMEBUFFER, attachment, GL_RENDERBUFFER, kept.name);
        return 1;
    }
    if (kept.type != GL_TEXTURE)
        return 0;
    if (optimize && !used.Find(kept.name))
    {
        LogMessage("Unused texture: %d. Ignored glFramebufferTexture2D", kept.name);
        return 1;
    }
    GLenum const target = kept.cubeface ? kept.cubeface : static_cast<GLenum>(GL_TEXTURE_2D);
    Es2::_glFramebufferTexture2D(GL_FRAMEBUFFER, attachment, target, kept.name, kept.lod);
    // Without a record there is nothing that says how large the image is: it is left as it is.
    if (TextureDefinition const* const image = FirstImage(textures, kept.name))
        WritePresentImage(framebuffer, kept.name, *image);
    return 1;
}
