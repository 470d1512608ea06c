// Sizes of images. The sums are done in 64 bits: none of them can wrap to a size that looks valid.
#include "api/types.h"
#include "wrappers/sizing.h"
#include <cstdint>

namespace
{

bool IsPackedPair(unsigned int format, unsigned int type)
{
    switch (type)
    {
    case GL_UNSIGNED_SHORT_5_6_5:
        return format == GL_RGB;
    case GL_UNSIGNED_SHORT_5_5_5_1:
    case GL_UNSIGNED_SHORT_4_4_4_4:
        return format == GL_RGBA;
    case GL_UNSIGNED_SHORT_4_4_4_4_REV_EXT:
    case GL_UNSIGNED_SHORT_1_5_5_5_REV_EXT:
        return format == GL_BGRA_EXT;
    default:
        return false;
    }
}

int64_t WithBorder(int extent, int border) { return extent + 2 * static_cast<int64_t>(border); }

int64_t RowBytes(int width, unsigned int pixelSize, int alignment, int border)
{
    int64_t const row = WithBorder(width, border) * pixelSize;
    if (alignment <= 0 || row % alignment == 0)
        return row;
    return (row / alignment + 1) * alignment;
}

unsigned int AsSize(int64_t bytes)
{
    return bytes > 0 && bytes <= UINT32_MAX ? static_cast<unsigned int>(bytes) : 0;
}

}  // namespace

unsigned int GetPixelSizeImage2D(unsigned int format, unsigned int type)
{
    if (IsPackedPair(format, type))
        return 2;
    unsigned int const size = GlTypeSize(type);
    if (size == 0)
        return 0;
    switch (format)
    {
    case GL_ALPHA:
    case GL_LUMINANCE:
        return size;
    case GL_LUMINANCE_ALPHA:
        return 2 * size;
    case GL_RGB:
        return 3 * size;
    case GL_RGBA:
    case GL_BGRA_EXT:
        return 4 * size;
    default:
        return 0;
    }
}

bool GlTexTypeFormatValid(unsigned int type, unsigned int format)
{
    switch (type)
    {
    case GL_UNSIGNED_BYTE:
        return format >= GL_ALPHA && format <= GL_LUMINANCE_ALPHA;
    case GL_UNSIGNED_SHORT_4_4_4_4:
    case GL_UNSIGNED_SHORT_5_5_5_1:
        return format == GL_RGBA;
    case GL_UNSIGNED_SHORT_5_6_5:
        return format == GL_RGB;
    default:
        return false;
    }
}

unsigned int GetAligmentWidthImage2D(int width, unsigned int pixelSize, int alignment, int border)
{
    return AsSize(RowBytes(width, pixelSize, alignment, border));
}

unsigned int GlImage2DSize(unsigned int format, unsigned int type, int width, int height, int alignment,
                           int border)
{
    return GlImage3DSize(format, type, width, height, 1, alignment, border);
}

// The border is not applied to the depth.
unsigned int GlImage3DSize(unsigned int format, unsigned int type, int width, int height, int depth,
                           int alignment, int border)
{
    int64_t const rows = WithBorder(height, border);
    int64_t const row = GetAligmentWidthImage2D(width, GetPixelSizeImage2D(format, type), alignment, border);
    // row * rows fits: both are below 2^34.
    if (row <= 0 || rows <= 0 || depth <= 0 || row * rows > UINT32_MAX)
        return 0;
    return AsSize(row * rows * depth);
}
