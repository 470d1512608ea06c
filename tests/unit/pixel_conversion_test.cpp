#include "api/types.h"
#include "wrappers/pixel_conversion.h"
#include <gtest/gtest.h>
#include <vector>

namespace
{

unsigned int const k4444 = GL_UNSIGNED_SHORT_4_4_4_4;
unsigned int const k5551 = GL_UNSIGNED_SHORT_5_5_5_1;
unsigned int const k565 = GL_UNSIGNED_SHORT_5_6_5;

unsigned int FormatOf(unsigned int type) { return type == k565 ? GL_RGB : GL_RGBA; }

unsigned int Converted(unsigned int from, unsigned int to, uint16_t pixel)
{
    unsigned char const src[] = {static_cast<unsigned char>(pixel & 0xFF),
                                 static_cast<unsigned char>(pixel >> 8)};
    unsigned char dst[] = {0xEE, 0xEE};
    EXPECT_TRUE(GlPixelConversion(from, FormatOf(from), src, to, FormatOf(to), dst));
    return dst[0] | static_cast<unsigned int>(dst[1]) << 8;
}

}  // namespace

// Narrow channels are widened by repeating their top bits, so that white stays white and black black.
TEST(PixelConversion, PackedTypesConvert)
{
    EXPECT_EQ(0xFFFFu, Converted(k565, k4444, 0xFFFF));
    EXPECT_EQ(0x000Fu, Converted(k565, k4444, 0x0000));
    EXPECT_EQ(0xFFFFu, Converted(k565, k5551, 0xFFFF));
    EXPECT_EQ(0xFFFFu, Converted(k5551, k4444, 0xFFFF));
    EXPECT_EQ(0xFFF0u, Converted(k5551, k4444, 0xFFFE));
    EXPECT_EQ(0xFFFFu, Converted(k5551, k565, 0xFFFF));
}

// Each channel of 4444 0x8888 is widened to 0x88 and cut to 5, 6 and 5 bits: 10001 100010 10001.
TEST(PixelConversion, ChannelsAreCutFromTheWidenedByte)
{
    EXPECT_EQ(0x8C51u, Converted(k4444, k565, 0x8888));
}

// The channels stand in their places: red high, blue low, alpha behind it.
TEST(PixelConversion, ChannelsKeepTheirPlaces)
{
    EXPECT_EQ(0xF00Fu, Converted(k565, k4444, 0xF800));  // red
    EXPECT_EQ(0x0F0Fu, Converted(k565, k4444, 0x07E0));  // green
    EXPECT_EQ(0x00FFu, Converted(k565, k4444, 0x001F));  // blue
    EXPECT_EQ(0x07E0u, Converted(k5551, k565, 0x07C0));
    EXPECT_EQ(0xF801u, Converted(k4444, k5551, 0xF001));  // any alpha sets the bit
    EXPECT_EQ(0x07C0u, Converted(k4444, k5551, 0x0F00));
    EXPECT_EQ(0x003Eu, Converted(k4444, k5551, 0x00F0));
}

// Equal types are refused, though a copy would do: the caller must have excluded them.
TEST(PixelConversion, EqualTypesAreRefused)
{
    unsigned char const src[] = {1, 2};
    unsigned char dst[] = {0xEE, 0xEE};
    EXPECT_FALSE(GlPixelConversion(k565, GL_RGB, src, k565, GL_RGB, dst));
    EXPECT_EQ(0xEE, dst[0]);
}

// A pair of type and format that no texture has is refused.
TEST(PixelConversion, InvalidPairsAreRefused)
{
    unsigned char const src[] = {1, 2};
    unsigned char dst[] = {0xEE, 0xEE};
    EXPECT_FALSE(GlPixelConversion(k565, GL_RGBA, src, k4444, GL_RGBA, dst));
    EXPECT_FALSE(GlPixelConversion(k565, GL_RGB, src, k4444, GL_RGB, dst));
    EXPECT_FALSE(GlPixelConversion(GL_BYTE, GL_RGBA, src, k4444, GL_RGBA, dst));
    EXPECT_FALSE(GlPixelConversion(k565, GL_RGB, src, GL_FLOAT, GL_RGBA, dst));
}

// Bytes are admitted as a source and decode to zeros in all four channels.
TEST(PixelConversion, AByteSourceDecodesToZeros)
{
    unsigned char const src[] = {0xFF, 0xFF, 0xFF, 0xFF};
    unsigned char dst[] = {0xEE, 0xEE};
    EXPECT_TRUE(GlPixelConversion(GL_UNSIGNED_BYTE, GL_RGBA, src, k4444, GL_RGBA, dst));
    EXPECT_EQ(0x00, dst[0]);
    EXPECT_EQ(0x00, dst[1]);
}

// Bytes are admitted as a target and nothing is written.
TEST(PixelConversion, AByteTargetIsNotWritten)
{
    unsigned char const src[] = {0xFF, 0xFF};
    unsigned char dst[] = {0xEE, 0xEE, 0xEE, 0xEE};
    EXPECT_TRUE(GlPixelConversion(k565, GL_RGB, src, GL_UNSIGNED_BYTE, GL_RGBA, dst));
    for (unsigned char byte : dst)
        EXPECT_EQ(0xEE, byte);
}

// Rows go by the alignment of each side: 3 pixels are 6 bytes here, 8 there.
TEST(PixelConversion, ImagesGoByTheAlignmentOfEachSide)
{
    std::vector<unsigned char> src = {0xFF, 0xFF, 0x00, 0xF8, 0xE0, 0x07,   // white, red, green
                                      0x1F, 0x00, 0x00, 0x00, 0xFF, 0xFF};  // blue, black, white
    std::vector<unsigned char> dst(16, 0xEE);
    EXPECT_TRUE(GlTextureConversion(3, 2, 0, k565, GL_RGB, 1, src.data(), k4444, GL_RGBA, 4, dst.data()));
    std::vector<unsigned char> const expected = {0xFF, 0xFF, 0x0F, 0xF0, 0x0F, 0x0F, 0xEE, 0xEE,
                                                 0xFF, 0x00, 0x0F, 0x00, 0xFF, 0xFF, 0xEE, 0xEE};
    EXPECT_EQ(expected, dst);
}

// A border is stepped over on both sides and not converted.
TEST(PixelConversion, BordersAreSteppedOver)
{
    std::vector<unsigned char> src(18, 0xFF);  // 1 x 1 with a border of 1: 3 x 3 pixels
    std::vector<unsigned char> dst(18, 0x11);
    EXPECT_TRUE(GlTextureConversion(1, 1, 1, k565, GL_RGB, 1, src.data(), k4444, GL_RGBA, 1, dst.data()));
    std::vector<unsigned char> expected(18, 0x11);
    expected[8] = 0xFF;
    expected[9] = 0xFF;
    EXPECT_EQ(expected, dst);
}

// The walk stops with the first pixel that fails; an empty image has none.
TEST(PixelConversion, AFailureStopsTheWalk)
{
    std::vector<unsigned char> src(8, 0xFF);
    std::vector<unsigned char> dst(8, 0x11);
    EXPECT_FALSE(GlTextureConversion(2, 2, 0, k565, GL_RGB, 1, src.data(), k565, GL_RGB, 1, dst.data()));
    EXPECT_EQ(std::vector<unsigned char>(8, 0x11), dst);
    EXPECT_TRUE(GlTextureConversion(0, 2, 0, k565, GL_RGB, 1, src.data(), k565, GL_RGB, 1, dst.data()));
}
