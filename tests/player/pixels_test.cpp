// How much the driver reads of an image, which no record is trusted to hold.
#include "player/pixels.h"
#include <gtest/gtest.h>

using namespace nebtrace::player;

// Three RGB texels take nine bytes; the second row begins at twelve and ends with its last texel.
TEST(Pixels, TheLastRowEndsWithItsLastPixel)
{
    ImageShape const shape{3, 2, 1, PixelSize(GL_RGB, GL_UNSIGNED_BYTE)};
    EXPECT_EQ(ImageSize(shape, 4), 12u + 9u);
    EXPECT_EQ(ImageSize(shape, 1), 18u);
}

// Packed types have one size whatever the format.
TEST(Pixels, PackedTypesHaveTheirOwnSize)
{
    EXPECT_EQ(PixelSize(GL_RGB, GL_UNSIGNED_SHORT_5_6_5), 2u);
    EXPECT_EQ(PixelSize(GL_RGBA, GL_UNSIGNED_SHORT_4_4_4_4), 2u);
    EXPECT_EQ(PixelSize(GL_LUMINANCE_ALPHA, GL_FLOAT), 8u);
    EXPECT_EQ(PixelSize(GL_RGBA, 0x1234), 0u);
}

// Dimensions from a damaged record must not overflow into a small size.
TEST(Pixels, TheLargestDimensionsDoNotOverflow)
{
    ImageShape const shape{INT32_MAX, INT32_MAX, INT32_MAX, 16};
    EXPECT_EQ(ImageSize(shape, 8), UINT64_MAX);
    EXPECT_EQ(ImageSize({-1, 4, 1, 4}, 4), 0u);
    EXPECT_EQ(ImageSize({4, 4, 1, 4}, 0), 0u);
}

// Indices of any other type are refused before they are looked at.
TEST(Pixels, OnlyUnsignedIntegersAreIndices)
{
    EXPECT_EQ(IndexTypeSize(GL_UNSIGNED_BYTE), 1u);
    EXPECT_EQ(IndexTypeSize(GL_UNSIGNED_SHORT), 2u);
    EXPECT_EQ(IndexTypeSize(GL_UNSIGNED_INT), 4u);
    EXPECT_EQ(IndexTypeSize(GL_FLOAT), 0u);
}
