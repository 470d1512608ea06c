// How a sub-image is merged into the shadow's copy of an image.
#include "tests/wrappers/shadow.h"

class SubImages : public Shadow
{
protected:
    // Texture 5 is bound, and both alignments are this.
    static void AlignmentIs(GLint alignment) { AlignmentsAre(alignment, alignment); }
    static void AlignmentsAre(GLint pack, GLint unpack)
    {
        HostAnswers({{GL_TEXTURE_BINDING_2D, 5},
                     {GL_TEXTURE_BINDING_CUBE_MAP, 9},
                     {GL_PACK_ALIGNMENT, pack},
                     {GL_UNPACK_ALIGNMENT, unpack}});
    }
    // An image of one byte a pixel, all of them 0xAA, or without pixels.
    void Define(GLsizei width, GLsizei height, bool withPixels = true)
    {
        Bytes const pixels(256, 0xAA);
        Es2::_glTexImage2D(GL_TEXTURE_2D, 0, GL_LUMINANCE, width, height, 0, GL_LUMINANCE, GL_UNSIGNED_BYTE,
                           withPixels ? pixels.data() : nullptr, 0);
    }
    // An update whose pixels are 1, 2, 3 and so on.
    void Update(GLint x, GLint y, GLsizei width, GLsizei height)
    {
        Es2::_glTexSubImage2D(GL_TEXTURE_2D, 0, x, y, width, height, GL_LUMINANCE, GL_UNSIGNED_BYTE,
                              m_pixels);
    }
    static TextureDefinition& Image() { return State().m_sTexImageTextures[5][0][0]; }
    static Bytes Kept() { return Raw(Image().pixels, static_cast<size_t>(Image().imageSize)); }

    uint8_t m_pixels[32] = {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16};
};

// An update of the whole image is one copy.
TEST_F(SubImages, AWholeUpdateReplacesAll)
{
    AlignmentIs(1);
    Define(4, 2);
    Update(0, 0, 4, 2);
    EXPECT_EQ((Bytes{1, 2, 3, 4, 5, 6, 7, 8}), Kept());
}

// That copy takes the rows' padding along, but reads no further than the driver does: the last row's padding
// need not be the application's memory.
TEST_F(SubImages, AWholeUpdateEndsWithTheLastPixel)
{
    AlignmentIs(4);
    Define(3, 2);
    Update(0, 0, 3, 2);
    EXPECT_EQ((Bytes{1, 2, 3, 4, 5, 6, 7, 0}), Kept());
}

// A part goes in row by row.
TEST_F(SubImages, APartGoesInByRows)
{
    AlignmentIs(1);
    Define(4, 4);
    Update(1, 2, 2, 2);
    EXPECT_EQ((Bytes{0xAA, 0xAA, 0xAA, 0xAA, 0xAA, 0xAA, 0xAA, 0xAA, 0xAA, 1, 2, 0xAA, 0xAA, 3, 4, 0xAA}),
              Kept());
}

// A part as wide as the image, and one that begins at its corner, are parts as well.
TEST_F(SubImages, AFullWidthIsNotAWhole)
{
    AlignmentIs(1);
    Define(2, 3);
    Update(0, 1, 2, 2);
    EXPECT_EQ((Bytes{0xAA, 0xAA, 1, 2, 3, 4}), Kept());
    Update(0, 0, 1, 2);
    EXPECT_EQ((Bytes{1, 0xAA, 2, 2, 3, 4}), Kept());
}

// On purpose: parts are placed as if rows had no padding, whatever the alignment.
TEST_F(SubImages, PartsIgnoreTheRowAlignment)
{
    AlignmentIs(4);
    Define(3, 2);
    Update(0, 1, 3, 1);
    EXPECT_EQ((Bytes{0xAA, 0xAA, 0xAA, 1, 2, 3, 0xAA, 0}), Kept());
}

// Pixels of more bytes are moved whole.
TEST_F(SubImages, PixelsAreMovedWhole)
{
    AlignmentIs(1);
    Bytes const pixels(12, 0xAA);
    Es2::_glTexImage2D(GL_TEXTURE_2D, 0, GL_RGB, 2, 2, 0, GL_RGB, GL_UNSIGNED_BYTE, pixels.data(), 0);
    Es2::_glTexSubImage2D(GL_TEXTURE_2D, 0, 1, 1, 1, 1, GL_RGB, GL_UNSIGNED_BYTE, m_pixels);
    EXPECT_EQ((Bytes{0xAA, 0xAA, 0xAA, 0xAA, 0xAA, 0xAA, 0xAA, 0xAA, 0xAA, 1, 2, 3}), Kept());
}

// An update that is higher or wider than the image is reported and left out.
TEST_F(SubImages, TooLargeAnUpdateIsReported)
{
    char const* const message =
        "NEBTRACE(W) ERROR: glTexSubImage2D: trying to update a texture out of limits.\n";
    AlignmentIs(1);
    Define(4, 2);
    Bytes const before = Kept();
    EXPECT_EQ(message, Printed([this] { Update(0, 0, 5, 1); }));
    EXPECT_EQ(message, Printed([this] { Update(0, 0, 1, 3); }));
    EXPECT_EQ(before, Kept());
}

// On purpose: a record's height of 0 limits nothing, while a width of 0 does.
TEST_F(SubImages, AHeightOfZeroLimitsNothing)
{
    AlignmentIs(1);
    Define(4, 0);
    EXPECT_EQ("", Printed([this] { Update(0, 0, 4, 2); }));
    EXPECT_EQ(nullptr, Image().pixels);
    Define(0, 4);
    EXPECT_NE("", Printed([this] { Update(0, 0, 1, 1); }));
}

// An image that was defined without pixels begins as zeros; its own alignment then stands for the update's.
TEST_F(SubImages, AnImageWithoutPixelsBeginsAsZeros)
{
    AlignmentIs(1);
    Define(4, 2, false);
    AlignmentIs(8);
    Update(1, 0, 2, 2);
    EXPECT_EQ((Bytes{0, 1, 2, 0, 0, 3, 4, 0}), Kept());
    EXPECT_EQ(1, Image().alignment);
    EXPECT_FALSE(Image().externalData);
}

// Pixels that belong to somebody else are copied before they change.
TEST_F(SubImages, SharedPixelsAreCopiedFirst)
{
    AlignmentIs(1);
    uint8_t shared[] = {21, 22, 23, 24};
    TextureDefinition& image = Image();
    image = TextureDefinition(GL_TEXTURE_2D, 5, 0, GL_LUMINANCE, GL_LUMINANCE, 2, 2, 0, GL_UNSIGNED_BYTE,
                              shared, 4, false, true, 1, 0);
    ASSERT_EQ(shared, image.pixels);
    Update(0, 1, 1, 1);
    EXPECT_EQ((Bytes{21, 22, 1, 24}), Kept());
    EXPECT_EQ(23, shared[2]);
}

// A record without an image takes format, type, width and alignment from the update. It has no height, so
// that it gets no pixels.
TEST_F(SubImages, ARecordWithoutImageTakesTheFormat)
{
    AlignmentIs(2);
    Es2::_glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_S, GL_REPEAT);
    Update(0, 0, 0, 0);
    EXPECT_EQ(0x1909u, Image().format);
    EXPECT_EQ(0x1401u, Image().type);
    EXPECT_EQ(0, Image().width);
    EXPECT_EQ(0, Image().height);
    EXPECT_EQ(2, Image().alignment);
    EXPECT_EQ(nullptr, Image().pixels);
}

// On purpose: an update of another format, type or alignment leaves the image as it is.
TEST_F(SubImages, AnotherFormatChangesNothing)
{
    AlignmentIs(1);
    uint16_t const pixels[] = {0xFFFF, 0xFFFF};
    Es2::_glTexImage2D(GL_TEXTURE_2D, 0, GL_RGB, 2, 1, 0, GL_RGB, GL_UNSIGNED_SHORT_5_6_5, pixels, 0);
    Es2::_glTexSubImage2D(GL_TEXTURE_2D, 0, 0, 0, 2, 1, GL_RGB, GL_UNSIGNED_BYTE, m_pixels);
    Es2::_glTexSubImage2D(GL_TEXTURE_2D, 0, 0, 0, 2, 1, GL_RGBA, GL_UNSIGNED_SHORT_4_4_4_4, m_pixels);
    EXPECT_EQ((Bytes{0xFF, 0xFF, 0xFF, 0xFF}), Kept());
    EXPECT_EQ(0x1907u, Image().format);
    AlignmentsAre(2, 1);
    Es2::_glTexSubImage2D(GL_TEXTURE_2D, 0, 0, 0, 2, 1, GL_RGB, GL_UNSIGNED_SHORT_5_6_5, m_pixels);
    EXPECT_EQ((Bytes{0xFF, 0xFF, 0xFF, 0xFF}), Kept());
    AlignmentIs(1);
    Es2::_glTexSubImage2D(GL_TEXTURE_2D, 0, 0, 0, 2, 1, GL_RGB, GL_UNSIGNED_SHORT_5_6_5, m_pixels);
    EXPECT_EQ((Bytes{1, 2, 3, 4}), Kept());
}

// A compressed image is not updated, nor is anything said of its limits.
TEST_F(SubImages, ACompressedImageIsLeftAlone)
{
    AlignmentIs(1);
    Es2::_glCompressedTexImage2D(GL_TEXTURE_2D, 0, 0x8D64, 4, 4, 0, 8, m_pixels);
    EXPECT_EQ("", Printed([this] { Update(0, 0, 9, 9); }));
    Update(0, 0, 1, 1);
    EXPECT_EQ((Bytes{1, 2, 3, 4, 5, 6, 7, 8}), Kept());
}

// The record is that of the bound texture, the face and the level.
TEST_F(SubImages, TheRecordIsThatOfTheFace)
{
    AlignmentIs(1);
    Bytes const pixels(4, 0xAA);
    Es2::_glTexImage2D(GL_TEXTURE_CUBE_MAP_NEGATIVE_X, 2, GL_LUMINANCE, 2, 2, 0, GL_LUMINANCE,
                       GL_UNSIGNED_BYTE, pixels.data(), 0);
    EXPECT_EQ((std::vector<GLenum>{0x0CF5, 0x0D05, 0x8514}), AskedBy([this] {
                  Es2::_glTexSubImage2D(GL_TEXTURE_CUBE_MAP_NEGATIVE_X, 2, 0, 0, 1, 1, GL_LUMINANCE,
                                        GL_UNSIGNED_BYTE, m_pixels);
              }));
    EXPECT_EQ((Bytes{1, 0xAA, 0xAA, 0xAA}), Raw(State().m_sTexImageTextures[9][1][2].pixels, 4));
}

// Updates pass the data gate.
TEST_F(SubImages, UpdatesPassTheDataGate)
{
    AlignmentIs(1);
    Define(2, 1);
    ExpectDataGate([this] { Update(0, 0, 2, 1); }, [] { return Image().pixels[0] == 1; });
}

// Offsets and sizes that only a host without errors takes harm nothing.
TEST_F(SubImages, ImpossibleUpdatesAreLeftOut)
{
    AlignmentIs(1);
    Define(4, 2);
    Bytes const before = Kept();
    Update(0, -1, 4, 1);
    Update(-4, 0, 4, 1);
    Update(0, 0, -1, 1);
    Update(0, 0, 1, -1);
    EXPECT_EQ(before, Kept());
}

// What would fall behind the image's last byte is left out.
TEST_F(SubImages, NothingIsWrittenBehindTheImage)
{
    AlignmentIs(1);
    Define(4, 2);
    Bytes const before = Kept();
    Update(2, 1, 3, 1);
    Update(0, 2, 4, 2);
    Update(0x7FFFFFFF, 0x7FFFFFFF, 1, 1);
    EXPECT_EQ(before, Kept());
}

// Null pixels leave the image as it is.
TEST_F(SubImages, NullPixelsChangeNothing)
{
    AlignmentIs(1);
    Define(2, 1);
    Es2::_glTexSubImage2D(GL_TEXTURE_2D, 0, 0, 0, 2, 1, GL_LUMINANCE, GL_UNSIGNED_BYTE, nullptr);
    EXPECT_EQ((Bytes{0xAA, 0xAA}), Kept());
}
