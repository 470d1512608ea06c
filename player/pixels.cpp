#include "player/pixels.h"

namespace nebtrace::player
{
namespace
{
unsigned ComponentsOf(GLenum format)
{
    switch (format)
    {
    case GL_ALPHA:
    case GL_LUMINANCE:
    case GL_DEPTH_COMPONENT:
    case GL_RED_EXT:
        return 1;
    case GL_LUMINANCE_ALPHA:
    case GL_RG_EXT:
        return 2;
    case GL_RGB:
    case GL_SRGB_EXT:
        return 3;
    case GL_RGBA:
    case GL_BGRA_EXT:
    case GL_SRGB_ALPHA_EXT:
        return 4;
    default:
        return 0;
    }
}
}  // namespace

unsigned PixelSize(GLenum format, GLenum type)
{
    switch (type)
    {
    case GL_UNSIGNED_BYTE:
    case GL_BYTE:
        return ComponentsOf(format);
    case GL_UNSIGNED_SHORT:
    case GL_SHORT:
    case GL_HALF_FLOAT_OES:
        return 2 * ComponentsOf(format);
    case GL_UNSIGNED_INT:
    case GL_INT:
    case GL_FLOAT:
        return 4 * ComponentsOf(format);
    case GL_UNSIGNED_SHORT_5_6_5:
    case GL_UNSIGNED_SHORT_4_4_4_4:
    case GL_UNSIGNED_SHORT_5_5_5_1:
    case GL_UNSIGNED_SHORT_4_4_4_4_REV_EXT:
    case GL_UNSIGNED_SHORT_1_5_5_5_REV_EXT:
        return 2;
    case GL_UNSIGNED_INT_24_8_OES:
    case GL_UNSIGNED_INT_2_10_10_10_REV_EXT:
        return 4;
    default:
        return 0;
    }
}

bool IsAlignment(int32_t value) { return value == 1 || value == 2 || value == 4 || value == 8; }

// The sizes are below 2^31 each: the row cannot overflow, and neither can what the caller bounds.
uint64_t ImageSize(ImageShape const& shape, int32_t alignment)
{
    bool const empty = shape.width <= 0 || shape.height <= 0 || shape.depth <= 0 || shape.pixelSize == 0;
    if (empty || !IsAlignment(alignment))
        return 0;
    auto const step = static_cast<uint64_t>(alignment);
    uint64_t const tight = uint64_t{shape.pixelSize} * static_cast<uint64_t>(shape.width);
    uint64_t const row = (tight + step - 1) / step * step;
    uint64_t const rows = static_cast<uint64_t>(shape.height) * static_cast<uint64_t>(shape.depth);
    if (rows > UINT64_MAX / row)
        return UINT64_MAX;
    return row * (rows - 1) + tight;
}

unsigned ComponentSize(GLenum type)
{
    switch (type)
    {
    case GL_BYTE:
    case GL_UNSIGNED_BYTE:
        return 1;
    case GL_SHORT:
    case GL_UNSIGNED_SHORT:
    case GL_HALF_FLOAT_OES:
        return 2;
    case GL_FLOAT:
    case GL_FIXED:
    case GL_INT:
    case GL_UNSIGNED_INT:
        return 4;
    default:
        return 0;
    }
}

unsigned IndexTypeSize(GLenum type)
{
    return type == GL_UNSIGNED_BYTE ? 1 : type == GL_UNSIGNED_SHORT ? 2 : type == GL_UNSIGNED_INT ? 4 : 0;
}
}  // namespace nebtrace::player
