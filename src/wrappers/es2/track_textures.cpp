// Tracking of textures.
#include "support/log.h"
#include "wrappers/es2/track.h"
#include "wrappers/host_queries.h"
#include "wrappers/live_state.h"
#include "wrappers/sizing.h"
#include <algorithm>
#include <cstring>
#include <iterator>

namespace
{

GLuint BoundName(GLenum binding) { return static_cast<GLuint>(Es2::HostInteger(binding)); }

TextureDefinition& RecordOf(GLuint name, int face, GLint level)
{
    return LiveEs2State().m_sTexImageTextures[name][face][level];
}

GLuint NameAt(GLenum target)
{
    return BoundName(target == GL_TEXTURE_2D ? GL_TEXTURE_BINDING_2D : GL_TEXTURE_BINDING_CUBE_MAP);
}

int FaceOf(GLenum target)
{
    return target == GL_TEXTURE_2D ? 0 : static_cast<int>(target - GL_TEXTURE_CUBE_MAP_POSITIVE_X);
}

// Index into params, or -1 for a parameter that is not kept.
int ParamIndex(GLenum pname)
{
    constexpr GLenum kKept[] = {GL_TEXTURE_MIN_FILTER, GL_TEXTURE_MAG_FILTER, GL_TEXTURE_WRAP_S,
                                GL_TEXTURE_WRAP_T};
    GLenum const* const found = std::find(std::begin(kKept), std::end(kKept), pname);
    return found == std::end(kKept) ? -1 : static_cast<int>(found - kKept);
}

// The name that a parameter goes to. On purpose: what is compared with the target is, in all but one of the
// wrappers, the enumerant of the binding, so that a cube map's parameters go to name 0 there.
GLuint NameForParameter(GLenum target, GLenum cubeMap)
{
    if (target == GL_TEXTURE_2D)
        return BoundName(GL_TEXTURE_BINDING_2D);
    if (target == GL_TEXTURE_3D_OES)
        return BoundName(GL_TEXTURE_BINDING_3D_OES);
    return target == cubeMap ? BoundName(GL_TEXTURE_BINDING_CUBE_MAP) : 0;
}

void SetParameter(GLenum target, GLenum cubeMap, GLenum pname, int value)
{
    int const index = ParamIndex(pname);
    if (index >= 0)
        RecordOf(NameForParameter(target, cubeMap), 0, 0).params[index] = value;
}

// Truncated to an unsigned integer, as far as one holds it.
int Truncated(GLfloat value)
{
    if (!(value > 0.0f))
        return 0;
    return value < 4294967296.0f ? static_cast<int>(static_cast<uint32_t>(value)) : -1;
}

// No host takes it, but one that reports no errors does not say so.
bool IsImpossible(Es2::Track::SSubImage const& update)
{
    return update.xoffset < 0 || update.yoffset < 0 || update.width < 0 || update.height < 0;
}

// On purpose: a height of 0 limits nothing.
bool IsOutOfLimits(TextureDefinition const& image, Es2::Track::SSubImage const& update)
{
    return (image.height != 0 && update.height > image.height) || update.width > image.width;
}

// Gives an image that was defined without pixels the bytes that the update goes into. Returns the alignment
// that counts as the update's.
GLint MakePrivate(TextureDefinition& image, Es2::Track::SSubImage const& update, GLint alignment)
{
    if (image.externalData)
    {
        uint8_t const* const shared = image.pixels;
        image.Allocate(image.imageSize);
        if (shared && image.pixels)
            std::memcpy(image.pixels, shared, static_cast<std::size_t>(image.imageSize));
        return shared ? alignment : image.alignment;
    }
    if (!image.pixels)
    {
        image.format = update.format;
        image.type = update.type;
        image.width = update.width;
        image.alignment = alignment;
        image.imageSize = static_cast<int>(
            GlImage2DSize(image.format, image.type, image.width, image.height, alignment, image.border));
        image.Allocate(image.imageSize);
    }
    return alignment;
}

// On purpose: row by row as if rows had no padding, with the record's width as the length of a row. What
// would fall outside the image's bytes is left out.
void CopyRows(TextureDefinition& image, Es2::Track::SSubImage const& update, uint8_t const* source)
{
    auto const pixel = static_cast<std::size_t>(GetPixelSizeImage2D(update.format, update.type));
    std::size_t const sourceRow = pixel * static_cast<std::size_t>(update.width);
    std::size_t const imageRow = pixel * static_cast<std::size_t>(image.width);
    auto const imageSize = static_cast<std::size_t>(image.imageSize);
    for (std::size_t row = 0; row < static_cast<std::size_t>(update.height); ++row)
    {
        std::size_t const at = (row + static_cast<std::size_t>(update.yoffset)) * imageRow +
                               static_cast<std::size_t>(update.xoffset) * pixel;
        if (at + sourceRow <= imageSize)
            std::memcpy(image.pixels + at, source + row * sourceRow, sourceRow);
    }
}

}  // namespace

// The record owns a copy, and keeps the parameters that it has already.
void Es2::Track::TexImage2D(SImage const& image)
{
    GLuint const name = NameAt(image.target);
    auto* const pixels = const_cast<uint8_t*>(static_cast<uint8_t const*>(image.pixels));
    TextureDefinition const given(static_cast<int>(image.target), name, image.level, image.format,
                                  image.internalformat, image.width, image.height, image.border, image.type,
                                  pixels, image.compressedSize, image.isCompressed, true, image.alignment, 0);
    TextureDefinition& record = RecordOf(name, FaceOf(image.target), image.level);
    record.deepCopy = true;
    record = given;
}

void Es2::Track::TexSubImage2D(SSubImage const& update)
{
    GLint alignment = HostInteger(GL_PACK_ALIGNMENT);
    TextureDefinition& record = RecordOf(NameAt(update.target), FaceOf(update.target), update.level);
    if (record.isCompressed || IsImpossible(update))
        return;
    if (IsOutOfLimits(record, update))
    {
        LogError("glTexSubImage2D: trying to update a texture out of limits.");
        return;
    }
    alignment = MakePrivate(record, update, alignment);
    // On purpose: an update in another format leaves the image as it is.
    bool const differs =
        record.format != update.format || record.type != update.type || record.alignment != alignment;
    if ((record.format != 0 && differs) || !record.pixels || !update.pixels)
        return;
    record.Unshare();
    bool const whole = update.xoffset == 0 && update.yoffset == 0 && update.width == record.width &&
                       update.height == record.height;
    auto const* const source = static_cast<uint8_t const*>(update.pixels);
    if (whole)
        std::memcpy(record.pixels, source,
                    std::min(static_cast<uint32_t>(record.imageSize), update.readable));
    else
        CopyRows(record, update, source);
}

void Es2::Track::TexParameteri(GLenum target, GLenum pname, GLint value)
{
    SetParameter(target, GL_TEXTURE_CUBE_MAP, pname, value);
}

void Es2::Track::TexParameterf(GLenum target, GLenum pname, GLfloat value)
{
    SetParameter(target, GL_TEXTURE_BINDING_CUBE_MAP, pname, Truncated(value));
}

void Es2::Track::TexParameterfv(GLenum target, GLenum pname, GLfloat const* values)
{
    if (values)
        SetParameter(target, GL_TEXTURE_BINDING_CUBE_MAP, pname, Truncated(*values));
}

void Es2::Track::TexParameteriv(GLenum target, GLenum pname, GLint const* values)
{
    if (values)
        SetParameter(target, GL_TEXTURE_BINDING_CUBE_MAP, pname, *values);
}

// Any target but these two marks the record of name 0.
void Es2::Track::GenerateMipmap(GLenum target)
{
    GLuint name = 0;
    if (target == GL_TEXTURE_2D || target == GL_TEXTURE_CUBE_MAP)
        name = NameAt(target);
    RecordOf(name, 0, 0).mipsGenerated = true;
}
