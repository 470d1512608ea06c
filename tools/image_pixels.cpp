#include "image_pixels.h"
#include "api/types.h"
#include "trace/enums.h"

using nebtrace::Bytes;
using nebtrace::player::Picture;

namespace
{
constexpr size_t kChannels = 4;
constexpr uint8_t kOpaque = 255;

// What libpng takes: its own limit for a side, and what a stride of a whole picture may reach.
constexpr uint64_t kLongestSide = 1000000;
constexpr uint64_t kMostBytes = INT32_MAX;

struct PixelFormat
{
    uint32_t format;
    uint32_t type;
    size_t size;
    void (*convert)(uint8_t const* from, uint8_t* to);
};

void Set(uint8_t* to, uint8_t red, uint8_t green, uint8_t blue, uint8_t alpha)
{
    to[0] = red;
    to[1] = green;
    to[2] = blue;
    to[3] = alpha;
}

// The field of `bits` bits that begins at `shift` in a packed pixel, spread over the eight bits of a channel.
uint8_t Channel(uint8_t const* from, unsigned shift, unsigned bits)
{
    unsigned const most = (1U << bits) - 1;
    unsigned const value = unsigned{nebtrace::LoadU16(from)} >> shift & most;
    return static_cast<uint8_t>((value * 255 + most / 2) / most);
}

void FromRgba(uint8_t const* from, uint8_t* to) { Set(to, from[0], from[1], from[2], from[3]); }
void FromBgra(uint8_t const* from, uint8_t* to) { Set(to, from[2], from[1], from[0], from[3]); }
void FromRgb(uint8_t const* from, uint8_t* to) { Set(to, from[0], from[1], from[2], kOpaque); }
void FromLuminance(uint8_t const* from, uint8_t* to) { Set(to, from[0], from[0], from[0], kOpaque); }
void FromLuminanceAlpha(uint8_t const* from, uint8_t* to) { Set(to, from[0], from[0], from[0], from[1]); }
// Black, as GL samples it: the picture differs in its transparency only.
void FromAlpha(uint8_t const* from, uint8_t* to) { Set(to, 0, 0, 0, from[0]); }

void From565(uint8_t const* from, uint8_t* to)
{
    Set(to, Channel(from, 11, 5), Channel(from, 5, 6), Channel(from, 0, 5), kOpaque);
}

void From4444(uint8_t const* from, uint8_t* to)
{
    Set(to, Channel(from, 12, 4), Channel(from, 8, 4), Channel(from, 4, 4), Channel(from, 0, 4));
}

void From5551(uint8_t const* from, uint8_t* to)
{
    Set(to, Channel(from, 11, 5), Channel(from, 6, 5), Channel(from, 1, 5), Channel(from, 0, 1));
}

constexpr PixelFormat kFormats[] = {
    {GL_RGBA, GL_UNSIGNED_BYTE, 4, FromRgba},
    {GL_BGRA_EXT, GL_UNSIGNED_BYTE, 4, FromBgra},
    {GL_RGB, GL_UNSIGNED_BYTE, 3, FromRgb},
    {GL_LUMINANCE, GL_UNSIGNED_BYTE, 1, FromLuminance},
    {GL_LUMINANCE_ALPHA, GL_UNSIGNED_BYTE, 2, FromLuminanceAlpha},
    {GL_ALPHA, GL_UNSIGNED_BYTE, 1, FromAlpha},
    {GL_RGB, GL_UNSIGNED_SHORT_5_6_5, 2, From565},
    {GL_RGBA, GL_UNSIGNED_SHORT_4_4_4_4, 2, From4444},
    {GL_RGBA, GL_UNSIGNED_SHORT_5_5_5_1, 2, From5551},
};

PixelFormat const* FindFormat(ImageLayout const& layout)
{
    for (PixelFormat const& format : kFormats)
        if (format.format == layout.format && format.type == layout.type)
            return &format;
    return nullptr;
}

std::string NameOf(char const* group, uint32_t value)
{
    char const* const name = nebtrace::EnumName(group, value);
    return name ? name : std::to_string(value);
}

std::string Sides(ImageLayout const& layout)
{
    std::string const sides = std::to_string(layout.width) + " x " + std::to_string(layout.height);
    return layout.depth == 1 ? sides : sides + " x " + std::to_string(layout.depth);
}

// The distance of the rows, or 0 when the bytes are not those of so many of them. The last row may lack its
// gap. The sides are above 0.
uint64_t RowDistance(ImageLayout const& layout, uint64_t rowSize, Bytes bytes)
{
    uint64_t const step = layout.alignment == 0 ? 1 : layout.alignment;
    uint64_t const distance = (rowSize + step - 1) / step * step;
    uint64_t const gaps = static_cast<uint64_t>(layout.height) * static_cast<uint64_t>(layout.depth) - 1;
    if (gaps > bytes.size / distance)
        return 0;
    uint64_t const last = bytes.size - gaps * distance;
    return last >= rowSize && last <= distance ? distance : 0;
}

void Convert(PixelFormat const& format, uint64_t distance, Bytes bytes, Picture& picture)
{
    auto const width = static_cast<size_t>(picture.width);
    auto const height = static_cast<size_t>(picture.height);
    picture.pixels.resize(width * height * kChannels);
    uint8_t* to = picture.pixels.data();
    for (size_t y = 0; y < height; ++y)
        for (size_t x = 0; x < width; ++x, to += kChannels)
            format.convert(bytes.data + y * distance + x * format.size, to);
}
}  // namespace

std::string ToPicture(ImageLayout const& layout, Bytes bytes, Picture& picture)
{
    PixelFormat const* const format = FindFormat(layout);
    if (!format)
        return "no PNG holds " + NameOf("PixelFormat", layout.format) + " of " +
               NameOf("PixelType", layout.type);
    std::string const misfit = std::to_string(bytes.size) + " bytes are not " + Sides(layout) + " pixels";
    if (layout.width <= 0 || layout.height <= 0 || layout.depth <= 0)
        return misfit;
    auto const width = static_cast<uint64_t>(layout.width);
    uint64_t const distance = RowDistance(layout, width * format->size, bytes);
    if (distance == 0)
        return misfit;
    // No overflow from here on: every row has its bytes.
    uint64_t const height = static_cast<uint64_t>(layout.height) * static_cast<uint64_t>(layout.depth);
    if (width > kLongestSide || height > kLongestSide || width * height * kChannels > kMostBytes)
        return Sides(layout) + " pixels are too many for a PNG";
    picture.width = static_cast<int>(width);
    picture.height = static_cast<int>(height);
    Convert(*format, distance, bytes, picture);
    return "";
}
