// A GLES1 snapshot as calls: textures, buffers, array objects and framebuffers.
#include "state/es1_names.h"
#include "wrappers/es1.h"
#include "wrappers/host_queries.h"
#include "wrappers/sizing.h"
#include <algorithm>
#include <vector>

namespace
{

using S = CEs1ContextState;

void BeginTexture(GLuint name, S::textureDefinition const& image)
{
    constexpr GLenum kParameters[4] = {GL_TEXTURE_MIN_FILTER, GL_TEXTURE_MAG_FILTER, GL_TEXTURE_WRAP_S,
                                       GL_TEXTURE_WRAP_T};
    Es1::_glGenTextures(1, &name);
    Es1::_glBindTexture(GL_TEXTURE_2D, name);
    for (int i = 0; i < 4; ++i)
        Es1::_glTexParameteri(GL_TEXTURE_2D, kParameters[i], image.params[i]);
}

// The wrapper measures the image by the host's unpack alignment of this moment, which can make it longer than
// the record's bytes are: the rest is zeros.
void WritePlainImage(GLint level, S::textureDefinition const& image)
{
    void const* pixels = image.pixels;
    std::vector<uint8_t> padded;
    std::size_t const read = GlImage2DSize(image.format, image.type, image.width, image.height,
                                           Es1::HostInteger(GL_UNPACK_ALIGNMENT), image.border);
    if (pixels && read > static_cast<std::size_t>(image.imageSize))
    {
        padded.assign(image.pixels, image.pixels + image.imageSize);
        padded.resize(read);
        pixels = padded.data();
    }
    Es1::_glTexImage2D(image.textureTarget, level, image.internalformat, image.width, image.height,
                       image.border, image.format, image.type, pixels);
}

void WriteImage(GLuint name, GLint level, S::textureDefinition const& image)
{
    if (level == 0)
        BeginTexture(name, image);
    if (image.isCompressed)
        Es1::_glCompressedTexImage2D(image.textureTarget, level, image.format, image.width, image.height,
                                     image.border, image.imageSize, image.pixels);
    else
        WritePlainImage(level, image);
}

void WriteArray(int which, S::clientArray const& array)
{
    Es1::_glBindBuffer(GL_ARRAY_BUFFER, array.boundarraybuffer);
    switch (which)
    {
    case S::kColorArray:
        return Es1::_glColorPointer(array.size, array.type, array.stride, array.pointer);
    case S::kVertexArray:
        return Es1::_glVertexPointer(array.size, array.type, array.stride, array.pointer);
    case S::kNormalArray:
        return Es1::_glNormalPointer(array.type, array.stride, array.pointer);
    case S::kPointSizeArray:
        return Es1::_glPointSizePointerOES(array.type, array.stride, array.pointer);
    case S::kMatrixIndexArray:
        return Es1::_glMatrixIndexPointerOES(array.size, array.type, array.stride, array.pointer);
    case S::kWeightArray:
        return Es1::_glWeightPointerOES(array.size, array.type, array.stride, array.pointer);
    default:
        return Es1::_glTexCoordPointer(array.size, array.type, array.stride, array.pointer);
    }
}

void WriteEnabled(GLenum array, bool enabled)
{
    if (enabled)
        Es1::_glEnableClientState(array);
    else
        Es1::_glDisableClientState(array);
}

void WriteArrayObject(S::vaoDefinition const& object, int units)
{
    for (int i = 0; i < S::kTexCoordArray0; ++i)
        WriteArray(i, object.arrays[i]);
    for (int unit = 0; unit < units; ++unit)
    {
        Es1::_glClientActiveTexture(Es1Names::Unit(unit));
        WriteArray(S::kTexCoordArray0 + unit, object.arrays[S::kTexCoordArray0 + unit]);
    }
    for (int i = 0; i < S::kTexCoordArray0; ++i)
        WriteEnabled(Es1Names::kClientArrays[i], object.enabled[i]);
    for (int unit = 0; unit < units; ++unit)
    {
        Es1::_glClientActiveTexture(Es1Names::Unit(unit));
        WriteEnabled(Es1Enum::kTextureCoordArray, object.enabled[S::kTexCoordArray0 + unit]);
    }
    Es1::_glBindBuffer(GL_ELEMENT_ARRAY_BUFFER, object.boundelementbuffer);
}

void WriteAttachment(GLenum point, FBOAttachmentDefinition const& attachment)
{
    GLenum const target = attachment.cubeface ? attachment.cubeface : static_cast<GLenum>(GL_TEXTURE_2D);
    if (attachment.type == GL_RENDERBUFFER)
        Es1::_glFramebufferRenderbufferOES(GL_FRAMEBUFFER, point, GL_RENDERBUFFER, attachment.name);
    else if (attachment.type == GL_TEXTURE)
        Es1::_glFramebufferTexture2DOES(GL_FRAMEBUFFER, point, target, attachment.name, attachment.lod);
}

void WriteRenderbuffer(RBODefinition const& renderbuffer)
{
    GLuint name = renderbuffer.name;
    if (name == 0)
        return;
    Es1::_glGenRenderbuffersOES(1, &name);
    if (!renderbuffer.firstBind)
        return;
    Es1::_glBindRenderbufferOES(GL_RENDERBUFFER, name);
    if (renderbuffer.internalformat != 0)
        Es1::_glRenderbufferStorageOES(GL_RENDERBUFFER, renderbuffer.internalformat, renderbuffer.width,
                                       renderbuffer.height);
}

void WriteFramebuffer(S::framebufferDefinition const& framebuffer)
{
    GLuint name = framebuffer.name;
    if (name == 0)
        return;
    Es1::_glGenFramebuffersOES(1, &name);
    if (!framebuffer.firstBind)
        return;
    Es1::_glBindFramebufferOES(GL_FRAMEBUFFER, name);
    WriteAttachment(GL_COLOR_ATTACHMENT0, framebuffer.ColorAttachment0);
    WriteAttachment(GL_DEPTH_ATTACHMENT, framebuffer.DepthAttachment);
    WriteAttachment(GL_STENCIL_ATTACHMENT, framebuffer.StencilAttachment);
}

}  // namespace

// On purpose: bound once ahead of its name's being generated, too.
void CEs1ContextState::WriteTextures()
{
    for (int slot = 0; slot < m_sTexImageTextures.Count(); ++slot)
    {
        GLuint const name = m_sTexImageTextures.KeyAt(slot);
        auto const& levels = m_sTexImageTextures.ValueAt(slot);
        Es1::_glBindTexture(GL_TEXTURE_2D, name);
        for (int level = 0; level < levels.Count(); ++level)
            WriteImage(name, levels.KeyAt(level), levels.ValueAt(level));
    }
}

// No names are generated: the bind brings a buffer into being.
void CEs1ContextState::WriteBuffers()
{
    constexpr GLenum kWriteOnly = GL_WRITE_ONLY_OES;
    for (int slot = 0; slot < m_sBufferDatas.Count(); ++slot)
    {
        bufferDefinition const& buffer = m_sBufferDatas.ValueAt(slot);
        Es1::_glBindBuffer(buffer.bufferTarget, buffer.bufferName);
        Es1::_glBufferData(buffer.bufferTarget, buffer.bufferDataSize, buffer.bufferData, buffer.bufferUsage);
        if (buffer.isMappedOES)
            Es1::_glMapBufferOES(buffer.bufferTarget, kWriteOnly);
    }
    Es1::_glBindBuffer(GL_ARRAY_BUFFER, m_uBoundArrayBuffer);
    Es1::_glBindBuffer(GL_ELEMENT_ARRAY_BUFFER, BoundVertexArray().boundelementbuffer);
}

// On purpose: the array buffer that is bound at the end is the one of the last array.
void CEs1ContextState::WriteArrayObjects()
{
    mVertexArrayObjects[0];  // the default array object is always written
    for (int slot = 0; slot < mVertexArrayObjects.Count(); ++slot)
    {
        auto name = static_cast<GLuint>(mVertexArrayObjects.KeyAt(slot));
        if (name != 0)
            Es1::_glGenVertexArraysOES(1, &name);
        Es1::_glBindVertexArrayOES(name);
        WriteArrayObject(mVertexArrayObjects.ValueAt(slot), TextureUnits());
    }
    Es1::_glBindVertexArrayOES(static_cast<GLuint>(mBoundVAO));
    Es1::_glClientActiveTexture(m_eClientActiveTexture);
}

void CEs1ContextState::WriteFramebuffers()
{
    for (int slot = 0; slot < m_sRenderbuffers.Count(); ++slot)
        WriteRenderbuffer(m_sRenderbuffers.ValueAt(slot));
    for (int slot = 0; slot < mFramebufferObjects.Count(); ++slot)
        WriteFramebuffer(mFramebufferObjects.ValueAt(slot));
    Es1::_glBindFramebufferOES(GL_FRAMEBUFFER, m_iBoundFBO);
}
