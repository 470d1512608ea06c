#include "api/types.h"
#include "wrappers/sizing.h"
#include <gtest/gtest.h>

// Rows of the common upload are padded to the unpack alignment.
TEST(ImageSizing, RowsArePaddedToTheAlignment)
{
    EXPECT_EQ(80u, GlImage2DSize(GL_RGB, GL_UNSIGNED_BYTE, 5, 5, 4, 0));
    EXPECT_EQ(75u, GlImage2DSize(GL_RGB, GL_UNSIGNED_BYTE, 5, 5, 1, 0));
    EXPECT_EQ(16u, GetAligmentWidthImage2D(5, 3, 4, 0));
    EXPECT_EQ(15u, GetAligmentWidthImage2D(5, 3, 0, 0));
    EXPECT_EQ(16u, GetAligmentWidthImage2D(4, 4, 8, 0));
}

// A border counts on both sides of width and height.
TEST(ImageSizing, BordersCountTwice)
{
    EXPECT_EQ(24u, GetAligmentWidthImage2D(4, 4, 4, 1));
    EXPECT_EQ(144u, GlImage2DSize(GL_RGBA, GL_UNSIGNED_BYTE, 4, 4, 4, 1));
}

// The border of a 3D image is not applied to its depth.
TEST(ImageSizing, BordersDoNotCountInDepth)
{
    EXPECT_EQ(144u * 5, GlImage3DSize(GL_RGBA, GL_UNSIGNED_BYTE, 4, 4, 5, 4, 1));
    EXPECT_EQ(80u * 3, GlImage3DSize(GL_RGB, GL_UNSIGNED_BYTE, 5, 5, 3, 4, 0));
}

// Packed types are two bytes a pixel with their own format only.
TEST(ImageSizing, PackedPairsAreTwoBytes)
{
    EXPECT_EQ(2u, GetPixelSizeImage2D(GL_RGB, 33635));
    EXPECT_EQ(2u, GetPixelSizeImage2D(GL_RGBA, 32820));
    EXPECT_EQ(2u, GetPixelSizeImage2D(GL_RGBA, 32819));
    EXPECT_EQ(2u, GetPixelSizeImage2D(32993, 33637));
    EXPECT_EQ(2u, GetPixelSizeImage2D(32993, 33638));
    EXPECT_EQ(8u, GetPixelSizeImage2D(GL_RGBA, 33635));
    EXPECT_EQ(6u, GetPixelSizeImage2D(GL_RGB, 32819));
    EXPECT_EQ(0u, GetPixelSizeImage2D(GL_RGBA, 33637));
}

// The other pairs are components times their size.
TEST(ImageSizing, PlainPairsAreComponentsTimesSize)
{
    EXPECT_EQ(1u, GetPixelSizeImage2D(6406, GL_UNSIGNED_BYTE));
    EXPECT_EQ(2u, GetPixelSizeImage2D(6409, GL_HALF_FLOAT_OES));
    EXPECT_EQ(8u, GetPixelSizeImage2D(6410, GL_FLOAT));
    EXPECT_EQ(6u, GetPixelSizeImage2D(6407, GL_UNSIGNED_SHORT));
    EXPECT_EQ(16u, GetPixelSizeImage2D(6408, GL_FLOAT));
    EXPECT_EQ(4u, GetPixelSizeImage2D(32993, GL_UNSIGNED_BYTE));
    EXPECT_EQ(0u, GetPixelSizeImage2D(GL_DEPTH_COMPONENT, GL_UNSIGNED_SHORT));
}

// Type 0 has no size whatever the format: such a call records no payload.
TEST(ImageSizing, TypeZeroHasNoSize)
{
    EXPECT_EQ(0u, GetPixelSizeImage2D(GL_RGBA, 0));
    EXPECT_EQ(0u, GetPixelSizeImage2D(GL_ALPHA, 0));
    EXPECT_EQ(0u, GlImage2DSize(GL_RGBA, 0, 16, 16, 4, 0));
    EXPECT_EQ(0u, GlImage3DSize(GL_RGB, 0, 16, 16, 16, 4, 1));
}

// Dimensions that the host refuses must not make the recorder read gigabytes behind the application's
// pointer.
TEST(ImageSizing, ImpossibleDimensionsHaveNoSize)
{
    EXPECT_EQ(0u, GlImage2DSize(GL_RGBA, GL_UNSIGNED_BYTE, -1, 16, 4, 0));
    EXPECT_EQ(0u, GlImage2DSize(GL_RGBA, GL_UNSIGNED_BYTE, 16, -1, 4, 0));
    EXPECT_EQ(0u, GlImage2DSize(GL_RGBA, GL_UNSIGNED_BYTE, -4, -4, 4, 0));
    EXPECT_EQ(0u, GlImage2DSize(GL_RGBA, GL_UNSIGNED_BYTE, 40000, 40000, 4, 0));
    EXPECT_EQ(0u, GlImage3DSize(GL_RGBA, GL_UNSIGNED_BYTE, 4096, 4096, 4096, 4, 0));
    EXPECT_EQ(0u, GlImage3DSize(GL_RGBA, GL_UNSIGNED_BYTE, 4, 4, -4, 4, 0));
    EXPECT_EQ(0u, GlImage2DSize(GL_RGBA, GL_FLOAT, 0x7FFFFFFF, 0x7FFFFFFF, 4, 0x7FFFFFFF));
}

// The pairs that conversion admits.
TEST(ImageSizing, ValidPairsOfTypeAndFormat)
{
    for (unsigned int format = 6405; format <= 6411; ++format)
        EXPECT_EQ(format >= 6406 && format <= 6410, GlTexTypeFormatValid(5121, format)) << format;
    EXPECT_TRUE(GlTexTypeFormatValid(32819, 6408));
    EXPECT_TRUE(GlTexTypeFormatValid(32820, 6408));
    EXPECT_TRUE(GlTexTypeFormatValid(33635, 6407));
    EXPECT_FALSE(GlTexTypeFormatValid(33635, 6408));
    EXPECT_FALSE(GlTexTypeFormatValid(32819, 6407));
    EXPECT_FALSE(GlTexTypeFormatValid(5120, 6408));
}
