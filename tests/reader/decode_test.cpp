// Payloads as calls: both forms, every kind of field.
#include "trace/decode.h"
#include "trace_builder.h"
#include <gtest/gtest.h>

using namespace nebtrace;

namespace
{
class DecodeTest : public testing::Test
{
protected:
    // Decodes and tells the form: 'L', 'S', or '-' for none.
    char Form(unsigned id, Payload const& payload, Api hint = Api::Any)
    {
        m_payload = payload;
        if (!Decode(static_cast<uint16_t>(id), hint, m_payload.View(), call))
            return '-';
        return call.form == nebtrace::Form::Long ? 'L' : 'S';
    }
    DecodedField const& Field(char const* name)
    {
        DecodedField const* const field = call.Find(name);
        static DecodedField const none;
        EXPECT_TRUE(field) << name;
        return field ? *field : none;
    }
    std::vector<uint64_t> Values(char const* name)
    {
        DecodedField const& field = Field(name);
        size_t const each = field.spec->components;
        std::vector<uint64_t> values;
        for (size_t i = 0; i < field.count * each; ++i)
            values.push_back(ValueAt(field, i / each, i % each));
        return values;
    }

    DecodedCall call;

private:
    Payload m_payload;
};

using Words = std::vector<uint64_t>;
}  // namespace

// A call without arguments is its error word.
TEST_F(DecodeTest, ACallWithoutArgumentsIsItsErrorWord)
{
    ASSERT_EQ('L', Form(2046, Payload().U32(0)));
    EXPECT_EQ("glFlush", call.Name());
    EXPECT_EQ(Api::Es2, call.GetApi());
    EXPECT_TRUE(call.fields.empty());
    EXPECT_FALSE(call.Failed());
    EXPECT_EQ('-', Form(2046, Payload()));
    EXPECT_EQ('-', Form(2046, Payload().Fill(3, 0)));
    EXPECT_EQ('-', Form(2046, Payload().Fill(5, 0)));
}

// What no error is differs between the APIs.
TEST_F(DecodeTest, TheErrorWordIsTheApis)
{
    ASSERT_EQ('L', Form(3041, Payload().U32(0x502)));
    EXPECT_TRUE(call.Failed());
    EXPECT_EQ(0x502u, call.error);
    ASSERT_EQ('L', Form(1034, Payload().U32(0x3000).U32(1)));
    EXPECT_FALSE(call.Failed());
    ASSERT_EQ('L', Form(1034, Payload().U32(0x3008).U32(0)));
    EXPECT_TRUE(call.Failed());
}

// Scalars of each width stand at their places, with their bits.
TEST_F(DecodeTest, ScalarsOfEachWidth)
{
    // glSampleCoverage: float, 1 byte
    ASSERT_EQ('L', Form(2096, Payload().U32(0).U32(0x3F800000).U8(1)));
    EXPECT_EQ(0x3F800000u, Field("value").value);
    EXPECT_EQ(1u, Field("invert").value);
    EXPECT_EQ(8u, Field("invert").offset);
    EXPECT_EQ(1u, Field("invert").bytes.size);
    // glDrawTexsOES: five of 2 bytes behind the API byte
    ASSERT_EQ('L', Form(4085, Payload().U32(0).U8(1).U16(1).U16(2).U16(3).U16(4).U16(0xFFFF)));
    EXPECT_EQ(0xFFFFu, Field("height").value);
    EXPECT_EQ(Kind::Short, Field("height").spec->kind);
    // eglClientWaitSyncKHR: timeout of 8 bytes
    ASSERT_EQ('L', Form(1108, Payload().Words({0x3000, 0x30F6, 1, 2, 3}).U64(0x1122334455667788ULL)));
    EXPECT_EQ(0x1122334455667788ULL, Field("timeout").value);
    EXPECT_EQ(0x30F6u, call.Result()->value);
    // glWaitSyncAPPLE: timeout of 8 bytes behind the API byte
    ASSERT_EQ('L', Form(4160, Payload().U32(0).U8(2).Words({5, 6}).U64(7)));
    EXPECT_EQ(7u, Field("timeout").value);
    // glColorMask: four of 1 byte; glVertexAttribPointer: one in the middle
    ASSERT_EQ('L', Form(2020, Payload().U32(0).U8(1).U8(0).U8(1).U8(0)));
    ASSERT_EQ('L', Form(2141, Payload().Words({0, 1, 4, 0x1406}).U8(1).Words({16, 0x99})));
    EXPECT_EQ(0x99u, Field("pointer").value);
}

// Truth values are bytes as results of GL, and words as results of EGL.
TEST_F(DecodeTest, ResultsHaveTheirWidths)
{
    ASSERT_EQ('L', Form(2088, Payload().U32(0).U8(1).U32(7)));
    EXPECT_EQ(1u, call.Result()->value);
    EXPECT_EQ(7u, Field("texture").value);
    ASSERT_EQ('L', Form(1023, Payload().Words({0x3000, 1, 0x10})));
    EXPECT_EQ(1u, call.Result()->value);
    ASSERT_EQ('L', Form(4199, Payload().U32(0).U8(2).U8(1).U32(9)));
    EXPECT_EQ(1u, call.Result()->value);
}

// An array is pointer, count, elements; without data its pointer.
TEST_F(DecodeTest, AnArrayHasTwoForms)
{
    ASSERT_EQ('L', Form(2054, Payload().Words({0, 2, 0x99, 2, 5, 6})));
    EXPECT_EQ(0x99u, Field("textures").value);
    EXPECT_EQ(2u, Field("textures").count);
    EXPECT_TRUE(Field("textures").hasData);
    EXPECT_EQ((Words{5, 6}), Values("textures"));
    EXPECT_EQ("texture", Field("textures").spec->domain);
    ASSERT_EQ('S', Form(2054, Payload().Words({0, 2, 0x99})));
    EXPECT_EQ(0x99u, Field("textures").value);
    EXPECT_FALSE(Field("textures").hasData);
    EXPECT_EQ(0u, Field("textures").bytes.size);
    EXPECT_EQ('-', Form(2054, Payload().Words({0, 2, 0x99, 2, 5})));
    EXPECT_EQ('-', Form(2054, Payload().Words({0, 2, 0x99, 2, 5, 6, 7})));
}

// What follows an array stands behind its elements in the one form, behind its pointer in the other.
TEST_F(DecodeTest, ScalarsBehindAnArray)
{
    Payload const data = Payload().Words({0, 0x8892, 3, 0x99, 3}).Text("abc").U32(0x88E4);
    ASSERT_EQ('L', Form(2013, data));
    EXPECT_EQ("abc", Field("data").Text());
    EXPECT_EQ(0x88E4u, Field("usage").value);
    ASSERT_EQ('S', Form(2013, Payload().Words({0, 0x8892, 3, 0x99, 0x88E4})));
    EXPECT_EQ(0x88E4u, Field("usage").value);
}

// Vectors and matrices are elements of several values.
TEST_F(DecodeTest, VectorsAreElements)
{
    ASSERT_EQ('L', Form(2121, Payload().Words({0, 1, 2, 0x99, 2, 1, 2, 3, 4, 5, 6})));
    EXPECT_EQ(2u, Field("value").count);
    EXPECT_EQ((Words{1, 2, 3, 4, 5, 6}), Values("value"));
    Payload matrix = Payload().Words({0, 1, 1}).U8(1).Words({0x99, 1, 1, 2, 3, 4, 5, 6, 7, 8, 9});
    ASSERT_EQ('L', Form(2129, matrix));
    EXPECT_EQ(36u, Field("value").bytes.size);
    EXPECT_EQ(1u, Field("transpose").value);
    ASSERT_EQ('S', Form(2129, Payload().Words({0, 1, 1}).U8(1).U32(0x99)));
}

// Elements of one byte: truth values, and the low byte of a pointer; of eight bytes: 64-bit state.
TEST_F(DecodeTest, ElementsOfOtherWidths)
{
    ASSERT_EQ('L', Form(2059, Payload().Words({0, 0x0C23, 0x99, 4}).U8(1).U8(0).U8(1).U8(1)));
    EXPECT_EQ((Words{1, 0, 1, 1}), Values("data"));
    ASSERT_EQ('L', Form(2080, Payload().Words({0, 1, 0x8645, 0x99, 1}).U8(0x40)));
    EXPECT_EQ((Words{0x40}), Values("pointer"));
    ASSERT_EQ('L', Form(4006, Payload().U32(0).U8(1).Words({0x8892, 0x88BD, 0x99, 1}).U8(0x41)));
    EXPECT_EQ(Api::Es1, call.GetApi());
    ASSERT_EQ('L', Form(4161, Payload().U32(0).U8(2).Words({0x9111, 0x99, 1}).U64(0xFFFFFFFFFFFFFFFFULL)));
    EXPECT_EQ((Words{0xFFFFFFFFFFFFFFFFULL}), Values("params"));
}

// A closed output gate leaves the count 0 behind the pointer, which is not the short form.
TEST_F(DecodeTest, AnUnfilledOutputIsEmptyNotShort)
{
    ASSERT_EQ('L', Form(2064, Payload().Words({0, 0x0D33, 0x99, 0})));
    EXPECT_TRUE(Field("data").hasData);
    EXPECT_EQ(0u, Field("data").count);
    ASSERT_EQ('S', Form(2064, Payload().Words({0, 0x0D33, 0x99})));
}

// The clip plane and matrix queries have elements of 16 and 64 bytes, of which there are none.
TEST_F(DecodeTest, TheUncountedQueriesAreEmpty)
{
    ASSERT_EQ('L', Form(3051, Payload().Words({0, 0x3000, 0x99, 0})));
    EXPECT_EQ(16u, Field("equation").spec->ElementSize());
    ASSERT_EQ('L', Form(4137, Payload().U32(0).U8(1).Words({0, 0x98, 0, 0x99, 0})));
    EXPECT_EQ(64u, Field("mantissa").spec->ElementSize());
    EXPECT_EQ(64u, Field("exponent").spec->ElementSize());
}

// A fixed array has no count word; a null pointer has no bytes, so that it looks like the short form.
TEST_F(DecodeTest, AFixedArrayHasNoCount)
{
    Payload matrix = Payload().Words({0, 0x99});
    for (uint32_t i = 0; i < 16; ++i)
        matrix.U32(i);
    ASSERT_EQ('L', Form(3086, matrix));
    EXPECT_EQ(1u, Field("m").count);
    EXPECT_EQ(64u, Field("m").bytes.size);
    EXPECT_EQ(15u, ValueAt(Field("m"), 0, 15));
    ASSERT_EQ('L', Form(3086, Payload().Words({0, 0})));
    EXPECT_EQ(0u, Field("m").count);
    EXPECT_EQ('-', Form(3086, Payload().Words({0, 0x99, 1, 2, 3})));
    ASSERT_EQ('L', Form(4086, Payload().U32(0).U8(1).U32(0x99).U16(1).U16(2).U16(3).U16(4).U16(5)));
    EXPECT_EQ(5u, ValueAt(Field("coords"), 0, 4));
    ASSERT_EQ('L', Form(2138, Payload().Words({0, 3, 0x99, 7, 8, 9})));
    EXPECT_EQ(9u, ValueAt(Field("v"), 0, 2));
}

// A text is pointer, length, characters; without data its pointer.
TEST_F(DecodeTest, ATextHasTwoForms)
{
    ASSERT_EQ('L', Form(2077, Payload().Words({0, 5, 7, 0x99, 4}).Text("uMVP")));
    EXPECT_EQ(5u, call.Result()->value);
    EXPECT_EQ("uMVP", Field("name").Text());
    ASSERT_EQ('S', Form(2077, Payload().Words({0, 5, 7, 0x99})));
    EXPECT_FALSE(Field("name").hasData);
    ASSERT_EQ('L', Form(2077, Payload().Words({0, 5, 7, 0, 0})));
    EXPECT_EQ("", Field("name").Text());
}

// Where the result is a text, the text stands in its place.
TEST_F(DecodeTest, AResultCanBeAText)
{
    ASSERT_EQ('L', Form(2072, Payload().Words({0, 0x99, 4}).Text("Mesa").U32(0x1F00)));
    EXPECT_EQ("Mesa", call.Result()->Text());
    EXPECT_EQ(0x1F00u, Field("name").value);
    ASSERT_EQ('L', Form(1020, Payload().Words({0x3000, 0x99, 3}).Text("1.5").Words({0x10, 0x3054})));
    EXPECT_EQ("1.5", call.Result()->Text());
    EXPECT_EQ(0x3054u, Field("name").value);
    ASSERT_EQ('L', Form(4032, Payload().U32(0).U8(1).Words({0x99, 3}).Text("cam").U32(2)));
    EXPECT_EQ("cam", call.Result()->Text());
}

// A list of texts has each with pointer and length.
TEST_F(DecodeTest, AListOfTexts)
{
    Payload source = Payload().Words({0, 7, 2, 0x90, 2, 0x91, 4}).Text("void").Words({0x92, 0});
    ASSERT_EQ('L', Form(2099, source.Words({0x93, 2, 4, 0xFFFFFFFF})));
    EXPECT_EQ(2u, Field("string").count);
    ItemReader items(Field("string"));
    ItemReader::Item item;
    ASSERT_TRUE(items.Next(item));
    EXPECT_EQ(0x91u, item.pointer);
    EXPECT_EQ("void", std::string(item.bytes.begin(), item.bytes.end()));
    ASSERT_TRUE(items.Next(item));
    EXPECT_EQ(0x92u, item.pointer);
    EXPECT_EQ(0u, item.bytes.size);
    EXPECT_FALSE(items.Next(item));
    EXPECT_EQ((Words{4, 0xFFFFFFFF}), Values("length"));
    ASSERT_EQ('S', Form(2099, Payload().Words({0, 7, 2, 0x90, 0x93})));
}

// The strings of a separable program are never in its record.
TEST_F(DecodeTest, AShaderProgramHasAnEmptyList)
{
    ASSERT_EQ('L', Form(4206, Payload().U32(0).U8(2).Words({3, 0x8B31, 1, 0x90, 0})));
    EXPECT_EQ(0u, Field("strings").count);
    EXPECT_EQ(3u, call.Result()->value);
}

// An image is pointer, size, bytes; the alignment behind it stays in both forms.
TEST_F(DecodeTest, AnImageHasTwoForms)
{
    Payload scalars = Payload().Words({0, 0xDE1, 0, 0x1907, 3, 1, 0, 0x1907, 0x1401});
    Payload data = scalars;
    ASSERT_EQ('L', Form(2106, data.Words({0x99, 9}).Text("RGBRGBRGB").U32(1)));
    EXPECT_EQ("RGBRGBRGB", Field("pixels").Text());
    EXPECT_EQ(1u, Field("alignment").value);
    EXPECT_FALSE(Field("alignment").spec->isArgument);
    Payload bare = scalars;
    ASSERT_EQ('S', Form(2106, bare.Words({0x99, 4})));
    EXPECT_EQ(4u, Field("alignment").value);
    EXPECT_FALSE(Field("pixels").hasData);
}

// Compressed data has the form of an image, without alignment.
TEST_F(DecodeTest, CompressedData)
{
    Payload const scalars = Payload().Words({0, 0xDE1, 0, 0x8D64, 4, 4, 0, 8});
    ASSERT_EQ('L', Form(2022, Payload(scalars).Words({0x99, 8}).Text("12345678")));
    EXPECT_EQ("12345678", Field("data").Text());
    ASSERT_EQ('S', Form(2022, Payload(scalars).U32(0x99)));
}

// An EGL attribute list is pointer, count of ints with the terminator, ints.
TEST_F(DecodeTest, AnAttributeList)
{
    ASSERT_EQ('L', Form(1106, Payload().Words({0x3000, 9, 0x10, 0x30F9, 0x99, 1, 0x3038})));
    EXPECT_EQ((Words{0x3038}), Values("attrib_list"));
    ASSERT_EQ('S', Form(1106, Payload().Words({0x3000, 9, 0x10, 0x30F9, 0x99})));
    ASSERT_EQ('L', Form(1106, Payload().Words({0x3000, 9, 0x10, 0x30F9, 0, 0})));
}

// Draws of client arrays carry index data, then the indices argument again, then the arrays to the record's
// end.
TEST_F(DecodeTest, DrawElementsWithClientArrays)
{
    Payload draw = Payload().Words({0, 4, 3, 0x1403, 0x99, 6}).U16(0).U16(7).U16(3).U32(0x99);
    draw.Words({0, 0x50, 4, 0x11}).Words({2, 0x60, 8, 0x22, 0x33});
    ASSERT_EQ('L', Form(2042, draw));
    EXPECT_EQ(6u, Field("index_data").bytes.size);
    EXPECT_EQ(0x99u, Field("indices").value);
    DecodedField const& arrays = Field("arrays");
    EXPECT_EQ(2u, arrays.count);
    ItemReader items(arrays);
    ItemReader::Item item;
    ASSERT_TRUE(items.Next(item));
    EXPECT_EQ(0u, item.index);
    EXPECT_EQ(4u, item.bytes.size);
    ASSERT_TRUE(items.Next(item));
    EXPECT_EQ(2u, item.index);
    EXPECT_EQ(0x60u, item.pointer);
    EXPECT_EQ(8u, item.bytes.size);
    EXPECT_FALSE(items.Next(item));
}

// A draw from buffers has no index data and an offset; a record that broke off has no arrays; the short one
// neither.
TEST_F(DecodeTest, DrawElementsFromBuffers)
{
    ASSERT_EQ('L', Form(2042, Payload().Words({0, 4, 3, 0x1403, 0, 0, 1024})));
    EXPECT_EQ(1024u, Field("indices").value);
    EXPECT_EQ(0u, Field("index_data").count);
    EXPECT_EQ(0u, Field("arrays").count);
    ASSERT_EQ('S', Form(2042, Payload().Words({0, 4, 3, 0x1403, 1024})));
    EXPECT_EQ(1024u, Field("indices").value);
    EXPECT_FALSE(call.Find("arrays"));
    EXPECT_EQ('-', Form(2042, Payload().Words({0, 4, 3, 0x1403, 0, 0, 1024, 1})));
}

// Without client arrays the two forms of glDrawArrays are the same bytes.
TEST_F(DecodeTest, DrawArrays)
{
    ASSERT_EQ('L', Form(2041, Payload().Words({0, 4, 10, 20})));
    EXPECT_EQ(0u, Field("arrays").count);
    ASSERT_EQ('L', Form(3036, Payload().Words({0, 4, 0, 1, 2, 0x50, 4, 0x11})));
    EXPECT_EQ(1u, Field("arrays").count);
    EXPECT_EQ(10u, (Form(2041, Payload().Words({0, 4, 10, 20})), Field("first").value));
}

// The creators' long forms have what a replay needs; their short forms have the API's arguments.
TEST_F(DecodeTest, SurfacesAndContexts)
{
    // error, result, display, config, window, fields 1 and 2, attributes, saved attributes, config,
    // attributes
    ASSERT_EQ('L', Form(1006, Payload()
                                  .Words({0x3000, 9, 1, 2, 3, 4, 5})
                                  .Words({6, 1, 0x3038})
                                  .Words({7, 1, 0x3038})
                                  .U32(2)
                                  .Words({8, 3, 0x3024, 8, 0x3038})));
    EXPECT_EQ(4u, Field("window_width").value);
    EXPECT_EQ(5u, Field("window_height").value);
    EXPECT_EQ(3u, Field("config_attribs").count);
    ASSERT_EQ('S', Form(1006, Payload().Words({0x3000, 9, 1, 2, 3, 6})));
    EXPECT_EQ(6u, Field("attrib_list").value);
    ASSERT_EQ('L', Form(1004, Payload().Words({0x3000, 9, 1, 2, 6, 1, 0x3038, 2, 8, 1, 0x3038})));
    EXPECT_EQ(2u, Field("config_again").value);
    ASSERT_EQ('S', Form(1004, Payload().Words({0x3000, 9, 1, 2, 6})));
    ASSERT_EQ('L', Form(1005, Payload().Words({0x3000, 9, 1, 2, 3, 0, 6, 1, 0x3038, 8, 1, 0x3038})));
    ASSERT_EQ('S', Form(1005, Payload().Words({0x3000, 9, 1, 2, 3, 6})));
    EXPECT_FALSE(call.Find("zero"));
    ASSERT_EQ('L', Form(1003, Payload().Words({0x3000, 9, 1, 2, 0, 0, 0, 8, 1, 0x3038})));
    ASSERT_EQ('S', Form(1003, Payload().Words({0x3000, 9, 1, 2, 0, 6})));
    ASSERT_EQ('L', Form(1031, Payload().Words({0x3000, 9, 1, 0x3099, 3, 2, 6, 1, 0x3038, 8, 1, 0x3038})));
    ASSERT_EQ('S', Form(1031, Payload().Words({0x3000, 9, 1, 0x3099, 3, 2, 6})));
}

// The records of one form have no short one.
TEST_F(DecodeTest, RecordsOfOneForm)
{
    ASSERT_EQ('L', Form(1018, Payload().Words({0x3000, 1, 1, 2, 2, 3, 4, 8, 1, 0x3038})));
    EXPECT_EQ('-', Form(1018, Payload().Words({0x3000, 1, 1, 2, 2, 3, 4, 8})));
    ASSERT_EQ('L', Form(1022, Payload().Words({0x3000, 1, 1, 2, 77, 1, 1, 0x99, 4, 0xFF00FF00})));
    EXPECT_EQ(77u, Field("frame").value);
    EXPECT_EQ(4u, Field("pixels").bytes.size);
    EXPECT_EQ('-', Form(1022, Payload().Words({0x3000, 1, 1, 2, 77, 1, 1, 0x99})));
    ASSERT_EQ('L', Form(1016, Payload().Words({0x3000, 0x77, 0x99, 2}).Text("gl")));
    EXPECT_EQ('-', Form(1016, Payload().Words({0x3000, 0x77, 0x99})));
    ASSERT_EQ('L', Form(4005, Payload().U32(0).U8(2).U8(1).Words({0x8892, 0x99, 2}).Text("ab")));
    EXPECT_EQ("ab", Field("data").Text());
    EXPECT_EQ('-', Form(4005, Payload().U32(0).U8(2).U8(1).Words({0x8892, 0x99})));
}

// The order of outputs is the record's: text ahead of length here, behind it elsewhere; range ahead of
// precision.
TEST_F(DecodeTest, TheOrderOfOutputs)
{
    ASSERT_EQ('L',
              Form(4123, Payload().U32(0).U8(2).Words({7, 0x8B31, 0x98, 2}).Text("vs").Words({0x99, 1, 2})));
    EXPECT_EQ("vs", Field("source").Text());
    EXPECT_EQ((Words{2}), Values("length"));
    ASSERT_EQ('L', Form(2066, Payload().Words({0, 7, 100, 0x98, 1, 3, 0x99, 3}).Text("log")));
    EXPECT_EQ("log", Field("infoLog").Text());
    ASSERT_EQ('L', Form(2070, Payload().Words({0, 0x8B30, 0x8DF2, 0x98, 2, 127, 127, 0x99, 1, 23})));
    EXPECT_EQ((Words{127, 127}), Values("range"));
    EXPECT_EQ((Words{23}), Values("precision"));
}

// One ID, two APIs: the API byte tells whose record it is, whatever the hint.
TEST_F(DecodeTest, TheApiByteDecides)
{
    ASSERT_EQ('L', Form(4007, Payload().U32(0).U8(1).U32(5), Api::Es2));
    EXPECT_EQ(Api::Es1, call.GetApi());
    ASSERT_EQ('L', Form(4007, Payload().U32(0).U8(2).U32(5), Api::Es1));
    EXPECT_EQ(Api::Es2, call.GetApi());
    EXPECT_EQ('-', Form(4007, Payload().U32(0).U8(3).U32(5)));
    // glDrawTexfOES is of ES 1 only
    EXPECT_EQ('-', Form(4081, Payload().U32(0).U8(2).Words({1, 2, 3, 4, 5})));
}

// The one extension record without API byte: nothing in front of x, and no bufSize.
TEST_F(DecodeTest, ReadnPixelsOfEs1HasNoApiByte)
{
    Payload const es1 = Payload().Words({0, 2, 0, 1, 1, 0x1908, 0x1401, 0x99, 4, 0xAABBCCDD, 4});
    for (Api const hint : {Api::Any, Api::Es1, Api::Es2})
    {
        ASSERT_EQ('L', Form(4168, es1, hint));
        EXPECT_EQ(Api::Es1, call.GetApi());
        EXPECT_EQ(2u, Field("x").value);
        EXPECT_EQ(4u, Field("data").bytes.size);
    }
    Payload const es2 = Payload().U32(0).U8(2).Words({0, 0, 1, 1, 0x1908, 0x1401, 4, 0x99, 4, 0xAABBCCDD, 4});
    for (Api const hint : {Api::Any, Api::Es1, Api::Es2})
    {
        ASSERT_EQ('L', Form(4168, es2, hint));
        EXPECT_EQ(Api::Es2, call.GetApi());
        EXPECT_EQ(4u, Field("bufSize").value);
    }
    ASSERT_EQ('S', Form(4168, Payload().Words({0, 1, 0, 1, 1, 0x1908, 0x1401, 0x99, 4})));
    EXPECT_EQ(Api::Es1, call.GetApi());
    ASSERT_EQ('S', Form(4168, Payload().U32(0).U8(2).Words({0, 0, 1, 1, 0x1908, 0x1401, 4, 0x99, 4})));
    EXPECT_EQ(Api::Es2, call.GetApi());
}

// Pointers of which nothing is known are bare in both forms.
TEST_F(DecodeTest, BarePointers)
{
    // glProgramUniform4fvEXT, glClipPlanefOES, glMultiDrawElementsEXT, glObjectPtrLabel
    ASSERT_EQ('L', Form(4228, Payload().U32(0).U8(2).Words({7, 1, 1, 0x99})));
    EXPECT_EQ(0x99u, Field("value").value);
    EXPECT_EQ('-', Form(4228, Payload().U32(0).U8(2).Words({7, 1, 1, 0x99, 1, 1, 2, 3, 4})));
    ASSERT_EQ('L', Form(4141, Payload().U32(0).U8(1).Words({0x3000, 0x99})));
    ASSERT_EQ('L', Form(4002, Payload().U32(0).U8(2).Words({4, 0x98, 0x1403, 0x99, 2})));
    ASSERT_EQ('L', Form(4185, Payload().U32(0).U8(2).Words({0x98, 3, 0x99, 3}).Text("tag")));
    EXPECT_EQ(0x98u, Field("ptr").value);
    EXPECT_EQ("tag", Field("label").Text());
}

// Any ID decodes to nothing rather than to something else.
TEST_F(DecodeTest, UnknownIdsDoNotDecode)
{
    for (unsigned const id : {0u, 1u, 2u, 1000u, 2143u, 4000u, 4240u, 65535u})
        EXPECT_EQ('-', Form(id, Payload().U32(0))) << id;
}
