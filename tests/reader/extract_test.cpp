// `nebtrace dump --extract`: the files that it leaves.
#include "run_command.h"
#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <png.h>

namespace
{
constexpr unsigned kTexImage = 2106;
constexpr uint32_t kTexture2D = 0x0DE1;
constexpr uint32_t kUnsignedByte = 0x1401;
constexpr uint32_t kAlpha = 0x1906;
constexpr uint32_t kRgb = 0x1907;
constexpr uint32_t kRgba = 0x1908;
constexpr uint32_t kLuminance = 0x1909;
constexpr uint32_t kLuminanceAlpha = 0x190A;
constexpr uint32_t kFloat = 0x1406;
constexpr uint32_t kPointer = 0x7000;

using Names = std::vector<std::string>;
using Channels = std::vector<unsigned>;

class ExtractTest : public CommandTest
{
protected:
    ExtractTest() { std::filesystem::remove_all(Folder()); }
    ~ExtractTest() override { std::filesystem::remove_all(Folder()); }

    static std::string Folder()
    {
        return testing::TempDir() + "nebtrace_extract_" +
               testing::UnitTest::GetInstance()->current_test_info()->name();
    }
    Outcome Extract(std::string const& options = "") const
    {
        return Run("dump --extract " + Folder() + " " + options + " FILE");
    }
    static Names Files()
    {
        Names names;
        for (auto const& entry : std::filesystem::directory_iterator(Folder()))
            names.push_back(entry.path().filename());
        std::sort(names.begin(), names.end());
        return names;
    }
    static std::string Content(std::string const& name)
    {
        std::ifstream file(Folder() + "/" + name, std::ios::binary);
        return {std::istreambuf_iterator<char>(file), {}};
    }

    // Width, height, then the channels of the pixels, the picture's top row first.
    static Channels Pixels(std::string const& name)
    {
        png_image image{};
        image.version = PNG_IMAGE_VERSION;
        if (!png_image_begin_read_from_file(&image, (Folder() + "/" + name).c_str()))
            return {};
        image.format = PNG_FORMAT_RGBA;
        std::vector<uint8_t> pixels(PNG_IMAGE_SIZE(image));
        if (!png_image_finish_read(&image, nullptr, pixels.data(), 0, nullptr))
            return {};
        Channels channels = {image.width, image.height};
        channels.insert(channels.end(), pixels.begin(), pixels.end());
        return channels;
    }

    // error, target, level, internalformat, width, height, border, format, type, pointer, size, bytes,
    // alignment
    static Payload TexImage(uint32_t width, uint32_t height, uint32_t format, uint32_t type,
                            std::vector<unsigned> const& bytes, uint32_t alignment)
    {
        Payload payload;
        payload.Words({0, kTexture2D, 0, format, width, height, 0, format, type, kPointer});
        payload.U32(static_cast<uint32_t>(bytes.size()));
        for (unsigned const byte : bytes)
            payload.U8(byte);
        return payload.U32(alignment);
    }
    // The pixels of a texture of one row.
    Channels Texture(uint32_t width, uint32_t format, uint32_t type, std::vector<unsigned> const& bytes) const
    {
        Write(Trace().Record(kTexImage, TexImage(width, 1, format, type, bytes, 1)).Footer(0));
        EXPECT_EQ(0, Extract().code);
        return Pixels("000000-glTexImage2D.png");
    }
};
}  // namespace

// Rows are walked with the alignment, and stand in the picture as they were uploaded.
TEST_F(ExtractTest, RowsAreWalkedWithTheAlignment)
{
    std::vector<unsigned> const bytes = {1,  2,  3,  4,  5,  6,  99, 99,   // two pixels, the gap
                                         11, 12, 13, 14, 15, 16, 99, 99};  // the second row
    Write(Trace().Flush().Record(kTexImage, TexImage(2, 2, kRgb, kUnsignedByte, bytes, 4)).Footer(0));
    Outcome const outcome = Extract();
    EXPECT_EQ(0, outcome.code);
    EXPECT_EQ("", outcome.err);
    EXPECT_EQ(Run("dump FILE").out, outcome.out);
    EXPECT_EQ((Names{"000001-glTexImage2D.png"}), Files());
    EXPECT_EQ((Channels{2, 2, 1, 2, 3, 255, 4, 5, 6, 255, 11, 12, 13, 255, 14, 15, 16, 255}),
              Pixels("000001-glTexImage2D.png"));
}

// Without alignment, 0, rows are dense; the gap behind the last row may be missing.
TEST_F(ExtractTest, AlignmentMayBeNoneAndTheLastGapMissing)
{
    Trace trace;
    trace.Record(kTexImage, TexImage(1, 2, kLuminance, kUnsignedByte, {7, 8}, 0));
    trace.Record(kTexImage, TexImage(1, 2, kLuminance, kUnsignedByte, {7, 99, 99, 99, 8}, 4));
    Write(trace.Footer(0));
    EXPECT_EQ("", Extract().err);
    EXPECT_EQ((Channels{1, 2, 7, 7, 7, 255, 8, 8, 8, 255}), Pixels("000000-glTexImage2D.png"));
    EXPECT_EQ((Channels{1, 2, 7, 7, 7, 255, 8, 8, 8, 255}), Pixels("000001-glTexImage2D.png"));
}

// Formats of eight bits a channel keep their values; what a format has not is as GL samples it.
TEST_F(ExtractTest, ByteFormatsKeepTheirValues)
{
    EXPECT_EQ((Channels{1, 1, 1, 2, 3, 4}), Texture(1, kRgba, kUnsignedByte, {1, 2, 3, 4}));
    EXPECT_EQ((Channels{1, 1, 3, 2, 1, 4}), Texture(1, 0x80E1, kUnsignedByte, {1, 2, 3, 4}));  // BGRA
    EXPECT_EQ((Channels{1, 1, 1, 2, 3, 255}), Texture(1, kRgb, kUnsignedByte, {1, 2, 3}));
    EXPECT_EQ((Channels{1, 1, 9, 9, 9, 255}), Texture(1, kLuminance, kUnsignedByte, {9}));
    EXPECT_EQ((Channels{1, 1, 9, 9, 9, 50}), Texture(1, kLuminanceAlpha, kUnsignedByte, {9, 50}));
    EXPECT_EQ((Channels{1, 1, 0, 0, 0, 50}), Texture(1, kAlpha, kUnsignedByte, {50}));
}

// Packed pixels are spread over eight bits, so that their full value is 255.
TEST_F(ExtractTest, PackedFormatsAreSpread)
{
    // red 31, green 0, blue 16; red 0, green 63, blue 31
    EXPECT_EQ((Channels{2, 1, 255, 0, 132, 255, 0, 255, 255, 255}),
              Texture(2, kRgb, 0x8363, {0x10, 0xF8, 0xFF, 0x07}));
    // red 15, green 0, blue 1, alpha 8
    EXPECT_EQ((Channels{1, 1, 255, 0, 17, 136}), Texture(1, kRgba, 0x8033, {0x18, 0xF0}));
    // red 31, green 1, blue 0, alpha 1; red 0, green 0, blue 31, alpha 0
    EXPECT_EQ((Channels{2, 1, 255, 8, 0, 255, 0, 0, 255, 0}),
              Texture(2, kRgba, 0x8034, {0x41, 0xF8, 0x3E, 0x00}));
}

// The layers of a deep image stand below each other in one picture.
TEST_F(ExtractTest, LayersStandBelowEachOther)
{
    // error, API, target, level, internalformat, width, height, depth, border, format, type, pointer, size
    Payload payload;
    payload.U32(0).U8(2).Words({0x806F, 0, kLuminance, 1, 1, 2, 0, kLuminance, kUnsignedByte, kPointer, 2});
    payload.U8(7).U8(8).U32(1);
    Write(Trace().Record(4128, payload).Footer(0));
    EXPECT_EQ("", Extract().err);
    EXPECT_EQ((Channels{1, 2, 7, 7, 7, 255, 8, 8, 8, 255}), Pixels("000000-glTexImage3DOES.png"));
}

// What no PNG holds is written as it is, and a line says why.
TEST_F(ExtractTest, OtherFormatsAreWrittenAsTheyAre)
{
    Write(Trace().Record(kTexImage, TexImage(1, 1, kAlpha, kFloat, {1, 2, 3, 4}, 1)).Footer(0));
    Outcome const outcome = Extract();
    EXPECT_EQ(0, outcome.code);
    EXPECT_EQ("nebtrace: call 0, glTexImage2D: no PNG holds GL_ALPHA of GL_FLOAT: written as they are\n",
              outcome.err);
    EXPECT_EQ((Names{"000000-glTexImage2D.bin"}), Files());
    EXPECT_EQ("\1\2\3\4", Content("000000-glTexImage2D.bin"));
}

// A size that does not fit the bytes, however large or negative, is not believed.
TEST_F(ExtractTest, SizesAreNotTrusted)
{
    std::vector<std::pair<uint32_t, uint32_t>> const sizes = {
        {2, 1}, {1, 2}, {0, 1}, {1, 0}, {0xFFFFFFFF, 1}, {0x7FFFFFFF, 0x7FFFFFFF}, {1, 0x7FFFFFFF}};
    Trace trace;
    for (auto const& [width, height] : sizes)
        trace.Record(kTexImage, TexImage(width, height, kRgba, kUnsignedByte, {1, 2, 3, 4}, 1));
    trace.Record(kTexImage, TexImage(1, 1, kRgba, kUnsignedByte, {1, 2, 3, 4, 5}, 4));
    trace.Record(kTexImage, TexImage(1, 2, kRgba, kUnsignedByte, {1, 2, 3, 4}, 0xFFFFFFFF));
    Write(trace.Footer(0));
    Outcome const outcome = Extract();
    EXPECT_EQ(0, outcome.code);
    EXPECT_EQ(0u, outcome.err.find("nebtrace: call 0, glTexImage2D: 4 bytes are not 2 x 1 pixels: written "
                                   "as they are\n"))
        << outcome.err;
    EXPECT_EQ(9, std::count(outcome.err.begin(), outcome.err.end(), '\n')) << outcome.err;
    ASSERT_EQ(9u, Files().size());
    for (std::string const& name : Files())
        EXPECT_EQ(".bin", name.substr(name.size() - 4));
    EXPECT_EQ("\1\2\3\4", Content("000005-glTexImage2D.bin"));
}

// A row that libpng would refuse does not end the dump.
TEST_F(ExtractTest, TooWideAnImageIsWrittenAsItIs)
{
    std::vector<unsigned> const bytes(1000001, 5);
    Write(Trace().Record(kTexImage, TexImage(1000001, 1, kAlpha, kUnsignedByte, bytes, 1)).Footer(0));
    Outcome const outcome = Extract();
    EXPECT_EQ(0, outcome.code);
    EXPECT_EQ("nebtrace: call 0, glTexImage2D: 1000001 x 1 pixels are too many for a PNG: written as they "
              "are\n",
              outcome.err);
    EXPECT_EQ(std::string(1000001, '\5'), Content("000000-glTexImage2D.bin"));
}

// Frames, and pixels read back, begin with the lowest row; the picture is turned upright.
TEST_F(ExtractTest, FramesAreTurnedUpright)
{
    Payload swap;  // error, result, display, surface, frame, width, height, pointer, size
    swap.Words({0x3000, 1, 0x10, 0x30, 0, 1, 2, kPointer, 8}).Words({0x04030201, 0x08070605});
    Payload read;  // error, x, y, width, height, format, type, pointer, size
    read.Words({0, 0, 0, 1, 2, kRgba, kUnsignedByte, kPointer, 8}).Words({0x04030201, 0x08070605, 4});
    Write(Trace().Record(1022, swap).Record(2093, read).Footer(0));
    EXPECT_EQ("", Extract().err);
    Channels const upright = {1, 2, 5, 6, 7, 8, 1, 2, 3, 4};
    EXPECT_EQ((Names{"000000-eglSwapBuffers.png", "000001-glReadPixels.png"}), Files());
    EXPECT_EQ(upright, Pixels("000000-eglSwapBuffers.png"));
    EXPECT_EQ(upright, Pixels("000001-glReadPixels.png"));
}

// A compressed image's bytes are of use only together with its format, which its name gives.
TEST_F(ExtractTest, CompressedImagesAreNamedByFormat)
{
    Trace trace;
    // error, target, level, internalformat, width, height, border, imageSize, pointer, size
    trace.Record(2022, Payload().Words({0, kTexture2D, 0, 0x8D64, 4, 4, 0, 3, kPointer, 3}).Text("abc"));
    trace.Record(2022, Payload().Words({0, kTexture2D, 0, 0xABCDE, 4, 4, 0, 3, kPointer, 3}).Text("def"));
    Write(trace.Footer(0));
    EXPECT_EQ("", Extract().err);
    EXPECT_EQ((Names{"000000-glCompressedTexImage2D-GL_ETC1_RGB8_OES.bin",
                     "000001-glCompressedTexImage2D-0xABCDE.bin"}),
              Files());
    EXPECT_EQ("abc", Content(Files()[0]));
    EXPECT_EQ("def", Content(Files()[1]));
}

// A source is one text, named after what its shader was created as, even if the creation is not printed.
TEST_F(ExtractTest, SourcesAreNamedByTheTypeOfTheirShader)
{
    Trace trace;
    trace.Record(2027, Payload().Words({0, 5, 0x8B31}));  // error, result, GL_VERTEX_SHADER
    trace.Record(2027, Payload().Words({0, 6, 0x8B30}));  // GL_FRAGMENT_SHADER
    for (uint32_t const shader : {5u, 6u, 7u})
    {
        Payload payload;  // error, shader, count, pointer, count, two texts, pointer, count of lengths
        payload.Words({0, shader, 2, kPointer, 2, kPointer, 5}).Text("void ");
        payload.Words({kPointer, 6}).Text("main()").Words({0, 0});
        trace.Record(2099, payload);
    }
    Write(trace.Footer(0));
    EXPECT_EQ("", Extract("--calls 2-4").err);
    EXPECT_EQ(
        (Names{"000002-glShaderSource.vert", "000003-glShaderSource.frag", "000004-glShaderSource.glsl"}),
        Files());
    for (std::string const& name : Files())
        EXPECT_EQ("void main()", Content(name));
}

// Whatever way contents got into a buffer, they are written.
TEST_F(ExtractTest, BufferContentsAreWritten)
{
    Trace trace;
    // error, target, size, pointer, count, bytes, usage
    trace.Record(2013, Payload().Words({0, 0x8892, 3, kPointer, 3}).Text("abc").U32(0x88E4));
    // error, target, offset, size, pointer, count, bytes
    trace.Record(2014, Payload().Words({0, 0x8892, 1, 2, kPointer, 2}).Text("de"));
    // error, API, result, target, pointer, size, bytes
    trace.Record(4005, Payload().U32(0).U8(2).U8(1).Words({0x8892, kPointer, 4}).Text("fghi"));
    // A null pointer reserves memory and carries nothing.
    trace.Record(2013, Payload().Words({0, 0x8892, 3, 0, 0, 0x88E4}));
    Write(trace.Footer(0));
    EXPECT_EQ("", Extract().err);
    EXPECT_EQ((Names{"000000-glBufferData.bin", "000001-glBufferSubData.bin", "000002-glUnmapBufferOES.bin"}),
              Files());
    EXPECT_EQ("abc", Content("000000-glBufferData.bin"));
    EXPECT_EQ("de", Content("000001-glBufferSubData.bin"));
    EXPECT_EQ("fghi", Content("000002-glUnmapBufferOES.bin"));
}

// A draw's indices and each of its arrays are files of their own.
TEST_F(ExtractTest, TheArraysOfADrawAreFilesOfTheirOwn)
{
    Payload payload;  // error, mode, count, type, pointer, size, index bytes, indices
    payload.Words({0, 4, 3, kUnsignedByte, kPointer, 3}).U8(1).U8(2).U8(3).U32(kPointer);
    payload.Words({0, kPointer, 2}).Text("ab").Words({12, kPointer, 3}).Text("cde");
    Write(Trace().Record(2042, payload).Footer(0));
    EXPECT_EQ("", Extract().err);
    EXPECT_EQ((Names{"000000-glDrawElements-array0.bin", "000000-glDrawElements-array12.bin",
                     "000000-glDrawElements-indices.bin"}),
              Files());
    EXPECT_EQ("ab", Content("000000-glDrawElements-array0.bin"));
    EXPECT_EQ("cde", Content("000000-glDrawElements-array12.bin"));
    EXPECT_EQ("\1\2\3", Content("000000-glDrawElements-indices.bin"));
}

// Only what is printed is extracted, by any way of choosing; and what stands there is overwritten.
TEST_F(ExtractTest, OnlyChosenCallsAreExtracted)
{
    Trace trace;
    for (char const* const text : {"abc", "def"})
        trace.Record(2013, Payload().Words({0, 0x8892, 3, kPointer, 3}).Text(text).U32(0x88E4));
    Write(trace.Footer(0));
    std::filesystem::create_directories(Folder());
    std::ofstream(Folder() + "/000001-glBufferData.bin") << "older and longer";
    EXPECT_EQ(0, Extract("--json --grep '^ *1 '").code);
    EXPECT_EQ((Names{"000001-glBufferData.bin"}), Files());
    EXPECT_EQ("def", Content("000001-glBufferData.bin"));
}

// A folder that cannot be made, or takes no files, is told in one line.
TEST_F(ExtractTest, AFolderThatCannotBeWrittenIsAFailure)
{
    Write(Trace().Record(2013, Payload().Words({0, 0x8892, 1, kPointer, 1}).Text("a").U32(0)).Footer(0));
    Outcome const noFolder = Run("dump --extract FILE/below FILE");
    EXPECT_EQ(1, noFolder.code);
    EXPECT_EQ("nebtrace: FILE/below: Not a directory\n", noFolder.err);
    Outcome const noFile = Run("dump --extract /proc FILE");
    EXPECT_EQ(1, noFile.code);
    EXPECT_EQ(0u, noFile.err.find("nebtrace: /proc")) << noFile.err;
    EXPECT_EQ(1, std::count(noFile.err.begin(), noFile.err.end(), '\n')) << noFile.err;
}
