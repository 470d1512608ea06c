// What a recorded draw uses, and the images of render targets that are about to go.
#include "host/hosts.h"
#include "state/es2_context_state.h"
#include "support/log.h"
#include "wrappers/host_queries.h"
#include "wrappers/sizing.h"
#include <algorithm>

namespace
{

using NameSet = TraceMap<unsigned int, unsigned int>;

void Enter(NameSet& used, unsigned int name) { used[name] = name; }

void EnterBinding(NameSet& used, GLenum binding)
{
    Enter(used, static_cast<unsigned int>(Es2::HostInteger(binding)));
}

unsigned int AttributeBuffer(unsigned int index)
{
    GLint name = 0;
    Es2Host()->glGetVertexAttribiv(index, GL_VERTEX_ATTRIB_ARRAY_BUFFER_BINDING, &name);
    return static_cast<unsigned int>(name);
}

void TrackTextureUnits(NameSet& used, int units)
{
    auto const active = static_cast<GLenum>(Es2::HostInteger(GL_ACTIVE_TEXTURE));
    for (int unit = 0; unit < units; ++unit)
    {
        Es2Host()->glActiveTexture(GL_TEXTURE0 + static_cast<GLenum>(unit));
        EnterBinding(used, GL_TEXTURE_BINDING_2D);
        EnterBinding(used, GL_TEXTURE_BINDING_CUBE_MAP);
    }
    Es2Host()->glActiveTexture(active);
}

void TrackVertexArrays(NameSet& used, VAODefinition& vertexArray)
{
    auto const& arrays = vertexArray.vertexattributearrays;
    for (int slot = 0; slot < arrays.Count(); ++slot)
    {
        Enter(used, AttributeBuffer(static_cast<unsigned int>(slot)));
        // On purpose: the record in that slot of the map, not the one with that key.
        VertexAttributeArray const& array = arrays.ValueAt(slot);
        if (array.enabled)
            Enter(used, array.boundarraybuffer);
    }
}

}  // namespace

void TrackFBOAttachment(unsigned int attachment, NameSet* used)
{
    GLint type = 0;
    Es2Host()->glGetFramebufferAttachmentParameteriv(GL_FRAMEBUFFER, attachment,
                                                     GL_FRAMEBUFFER_ATTACHMENT_OBJECT_TYPE, &type);
    if (type != GL_TEXTURE)
        return;
    GLint name = 0;
    Es2Host()->glGetFramebufferAttachmentParameteriv(GL_FRAMEBUFFER, attachment,
                                                     GL_FRAMEBUFFER_ATTACHMENT_OBJECT_NAME, &name);
    Enter(*used, static_cast<unsigned int>(name));
}

void CEs2ContextState::TrackFBOColorAttachments(int count)
{
    for (int i = 0; i < count; ++i)
        TrackFBOAttachment(GL_COLOR_ATTACHMENT0 + static_cast<unsigned int>(i), &m_sUsedTextures);
}

void CEs2ContextState::TrackFBODepthStencilAttachment() {}

void CEs2ContextState::TrackFBOData()
{
    auto const bound = static_cast<GLuint>(Es2::HostInteger(GL_FRAMEBUFFER_BINDING));
    for (int slot = 0; slot < mFramebufferObjects.Count(); ++slot)
    {
        FBODefinition const& framebuffer = mFramebufferObjects.ValueAt(slot);
        if (framebuffer.name == 0)
            continue;
        Es2Host()->glBindFramebuffer(GL_FRAMEBUFFER, framebuffer.name);
        TrackFBOColorAttachments(framebuffer.NumColorAttachments);
        TrackFBODepthStencilAttachment();
        TrackFBOAttachment(GL_DEPTH_ATTACHMENT, &m_sUsedTextures);
        TrackFBOAttachment(GL_STENCIL_ATTACHMENT, &m_sUsedTextures);
    }
    Es2Host()->glBindFramebuffer(GL_FRAMEBUFFER, bound);
}

void CEs2ContextState::TrackData()
{
    TrackTextureUnits(m_sUsedTextures, std::min(m_iMaxTextureUnits, kTextureUnits));
    TrackFBOData();
    TrackVertexArrays(m_sUsedBuffers, BoundVertexArray());
    EnterBinding(m_sUsedBuffers, GL_ARRAY_BUFFER_BINDING);
    EnterBinding(m_sUsedBuffers, GL_ELEMENT_ARRAY_BUFFER_BINDING);
    Es2Host()->glGetError();  // swallows what the queries may have raised
}

// On purpose: the record's format, type and size of the image stay as they were, although its bytes are now
// RGBA.
static void ReadIntoImage(TextureDefinition& image)
{
    // Room for rows that a pack alignment of 8 pads, and for all that imageSize promises.
    auto const read =
        static_cast<int>(GlImage2DSize(GL_RGBA, GL_UNSIGNED_BYTE, image.width, image.height, 8, 0));
    image.Allocate(std::max(read, image.imageSize));
    if (read > 0)
        Es2Host()->glReadPixels(0, 0, image.width, image.height, GL_RGBA, GL_UNSIGNED_BYTE, image.pixels);
}

// The first level of the first face, or null.
static TextureDefinition* FirstImage(CEs2ContextState& state, unsigned int texture)
{
    auto* const faces = state.m_sTexImageTextures.Find(texture);
    if (!faces || faces->Count() == 0 || faces->ValueAt(0).Count() == 0)
        return nullptr;
    return &faces->ValueAt(0).ValueAt(0);
}

void CEs2ContextState::SaveFBOTexture(unsigned int name)
{
    FBODefinition* const framebuffer = mFramebufferObjects.Find(name);
    if (!framebuffer || framebuffer->name == 0)
        return;
    for (int i = 0; i < GetMaxColorAttachments(); ++i)
    {
        FBOAttachmentDefinition const attachment = framebuffer->ColorAttachment(i);
        if (attachment.type != GL_TEXTURE)
            continue;
        Es2Host()->glBindFramebuffer(GL_FRAMEBUFFER, name);
        LogMessage("Saving FBO Target Texture\n");
        TextureDefinition* const image = FirstImage(*this, attachment.name);
        LogMessage("Saving FBO(%d) Target:%d TexturePointer:0x%x", name, attachment.name,
                   static_cast<unsigned int>(reinterpret_cast<uintptr_t>(image)));
        if (image)
            ReadIntoImage(*image);
        Es2Host()->glBindFramebuffer(GL_FRAMEBUFFER, m_iBoundFBO);
    }
}
