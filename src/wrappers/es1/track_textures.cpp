// Tracking of textures.
#include "api/es1_enums.h"
#include "wrappers/es1/track.h"
#include "wrappers/host_queries.h"
#include "wrappers/live_state.h"
#include "wrappers/padded_image.h"
#include <algorithm>

namespace
{

GLuint BoundName() { return static_cast<GLuint>(Es1::HostInteger(GL_TEXTURE_BINDING_2D)); }

CEs1ContextState::textureDefinition& RecordOf(GLuint name, GLint level)
{
    return LiveEs1State().m_sTexImageTextures[name][level];
}

}  // namespace

// The record owns a copy, and keeps the parameters that it has already.
void Es1::Track::TexImage2D(SImage const& image)
{
    if (image.target != GL_TEXTURE_2D)
        return;
    GLuint const name = BoundName();
    CPaddedImage const padded(
        image.pixels,
        Layout2D(image.format, image.type, image.width, image.height, image.alignment, image.border),
        HostInteger, GL_UNPACK_ALIGNMENT);
    void const* const pixels = image.isCompressed ? image.pixels : padded.Data();
    CEs1ContextState::textureDefinition given(
        image.target, name, image.format, static_cast<unsigned int>(image.internalformat), image.width,
        image.height, image.border, image.type, const_cast<uint8_t*>(static_cast<uint8_t const*>(pixels)),
        static_cast<unsigned int>(image.compressedSize), image.isCompressed, true, image.alignment);
    given.textureLevel = image.level;
    CEs1ContextState::textureDefinition& record = RecordOf(name, image.level);
    record.deepCopy = true;
    record = given;
}

void Es1::Track::TexSubImage2D(SSubImage const& update)
{
    if (update.target == GL_TEXTURE_2D)
        TrackContents::MergeSubImage(RecordOf(BoundName(), update.level), update,
                                     HostInteger(GL_PACK_ALIGNMENT));
}

void Es1::Track::TexParameter(GLenum target, GLenum pname, GLint value)
{
    int const index = TrackContents::ParamIndex(pname);
    if (target != GL_TEXTURE_2D)
        return;
    if (pname == Es1Enum::kGenerateMipmap)
        RecordOf(BoundName(), 0).mipsGenerated = value != 0;
    else if (index >= 0)
        RecordOf(BoundName(), 0).params[index] = value;
}

void Es1::Track::TexParameterf(GLenum target, GLenum pname, GLfloat value)
{
    TexParameter(target, pname, TrackContents::Truncated(value));
}

void Es1::Track::TexParameterv(GLenum target, GLenum pname, GLint const* values)
{
    if (values)
        TexParameter(target, pname, *values);
}

void Es1::Track::TexParameterfv(GLenum target, GLenum pname, GLfloat const* values)
{
    if (values)
        TexParameterf(target, pname, *values);
}

void Es1::Track::TexParameteriv(GLenum target, GLenum pname, GLint const* values)
{
    if (values && target == GL_TEXTURE_2D && pname == Es1Enum::kTextureCropRect)
        std::copy(values, values + 4, RecordOf(BoundName(), 0).iTextureCropRectangleOES);
    else
        TexParameterv(target, pname, values);
}

void Es1::Track::GenerateMipmap(GLenum target)
{
    if (target == GL_TEXTURE_2D)
        RecordOf(BoundName(), 0).mipsGenerated = true;
}
