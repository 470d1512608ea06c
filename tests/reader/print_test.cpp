// Calls as text.
#include "trace/print.h"
#include "trace_builder.h"
#include <gtest/gtest.h>

using namespace nebtrace;

static std::string Text(unsigned id, Payload const& payload)
{
    DecodedCall call;
    bool const decoded = Decode(static_cast<uint16_t>(id), Api::Any, payload.View(), call);
    return decoded ? CallText(call) : "undecoded";
}

// Names of arguments, enumerants by name, plain numbers.
TEST(Print, ArgumentsHaveNames)
{
    EXPECT_EQ("glFlush()", Text(2046, Payload().U32(0)));
    EXPECT_EQ("glBindBuffer(target = GL_ARRAY_BUFFER, buffer = 3)",
              Text(2004, Payload().Words({0, 0x8892, 3})));
    EXPECT_EQ("glScissor(x = -1, y = 2, width = 3, height = 4)",
              Text(2097, Payload().Words({0, 0xFFFFFFFF, 2, 3, 4})));
    EXPECT_EQ("glStencilMask(mask = 4294967295)", Text(2102, Payload().Words({0, 0xFFFFFFFF})));
}

// Results and errors follow the call.
TEST(Print, ResultsAndErrorsFollow)
{
    EXPECT_EQ("glIsTexture(texture = 4) = GL_TRUE", Text(2088, Payload().U32(0).U8(1).U32(4)));
    EXPECT_EQ("glEnable(cap = 0x1) -> error GL_INVALID_ENUM", Text(2043, Payload().Words({0x500, 1})));
    EXPECT_EQ("eglWaitGL() = EGL_FALSE -> error EGL_BAD_ACCESS", Text(1024, Payload().Words({0x3002, 0})));
    EXPECT_EQ("glGetError() = GL_NO_ERROR -> error 0x1234", Text(2061, Payload().Words({0x1234, 0})));
}

// Floats are shown by their shortest text, fixed point numbers by their value.
TEST(Print, RealNumbers)
{
    EXPECT_EQ("glClearColor(red = 0.1, green = 1, blue = -0.5, alpha = inf)",
              Text(2017, Payload().Words({0, 0x3DCCCCCD, 0x3F800000, 0xBF000000, 0x7F800000})));
    EXPECT_EQ("glScalex(x = 1, y = -0.5, z = 0.25)",
              Text(3120, Payload().Words({0, 0x10000, 0xFFFF8000, 0x4000})));
}

// A parameter that can be an enumerant is one where the group has its value, in each type of number.
TEST(Print, NumbersThatAreEnumerants)
{
    EXPECT_EQ("glTexParameteri(target = GL_TEXTURE_2D, pname = GL_TEXTURE_MIN_FILTER, param = GL_LINEAR)",
              Text(2109, Payload().Words({0, 0xDE1, 0x2801, 0x2601})));
    EXPECT_EQ("glTexParameterf(target = GL_TEXTURE_2D, pname = GL_TEXTURE_WRAP_S, param = GL_REPEAT)",
              Text(2107, Payload().Words({0, 0xDE1, 0x2802, 0x46240400})));
    EXPECT_EQ("glTexParameterx(target = GL_TEXTURE_2D, pname = GL_TEXTURE_WRAP_S, param = GL_REPEAT)",
              Text(3138, Payload().Words({0, 0xDE1, 0x2802, 0x2901})));
    EXPECT_EQ("glTexParameteri(target = GL_TEXTURE_2D, pname = GL_TEXTURE_MIN_FILTER, param = 3)",
              Text(2109, Payload().Words({0, 0xDE1, 0x2801, 3})));
}

// Bits by name.
TEST(Print, Bits)
{
    EXPECT_EQ("glClear(mask = GL_DEPTH_BUFFER_BIT | GL_COLOR_BUFFER_BIT)",
              Text(2016, Payload().Words({0, 0x4100})));
}

// Pointers and handles are in hexadecimal, GL's names are not.
TEST(Print, PointersAndHandles)
{
    EXPECT_EQ("eglGetCurrentContext() = 0xbeef", Text(1011, Payload().Words({0x3000, 0xBEEF})));
    EXPECT_EQ("eglCopyBuffers(dpy = 0x1, surface = 0x2, target = NULL) = EGL_TRUE",
              Text(1002, Payload().Words({0x3000, 1, 1, 2, 0})));
    EXPECT_EQ("glDeleteSyncAPPLE(sync = 0x99)", Text(4158, Payload().U32(0).U8(2).U32(0x99)));
}

// Arrays show their first values and how many there are.
TEST(Print, ArraysAreShort)
{
    EXPECT_EQ("glGenTextures(n = 2, textures = {5, 6})", Text(2054, Payload().Words({0, 2, 0x99, 2, 5, 6})));
    EXPECT_EQ("glGenTextures(n = 9, textures = {1, 2, 3, 4, 5, 6, 7, 8, ... 9 in all})",
              Text(2054, Payload().Words({0, 9, 0x99, 9, 1, 2, 3, 4, 5, 6, 7, 8, 9})));
    EXPECT_EQ("glUniform2iv(location = 1, count = 2, value = {{1, 2}, {3, 4}})",
              Text(2119, Payload().Words({0, 1, 2, 0x99, 2, 1, 2, 3, 4})));
    EXPECT_EQ("glGetBooleanv(pname = GL_COLOR_WRITEMASK, data = {GL_TRUE, GL_FALSE, GL_TRUE, 2})",
              Text(2059, Payload().Words({0, 0x0C23, 0x99, 4}).U8(1).U8(0).U8(1).U8(2)));
    EXPECT_EQ("glVertexAttrib2fv(index = 3, v = {1, 0.5})",
              Text(2136, Payload().Words({0, 3, 0x99, 0x3F800000, 0x3F000000})));
}

// An output that was not recorded, a null pointer and the form without data are told apart.
TEST(Print, WhatIsNotThere)
{
    EXPECT_EQ("glGetIntegerv(pname = GL_MAX_TEXTURE_SIZE, data = 0x99 {})",
              Text(2064, Payload().Words({0, 0x0D33, 0x99, 0})));
    EXPECT_EQ("glGetIntegerv(pname = GL_MAX_TEXTURE_SIZE, data = 0x99)",
              Text(2064, Payload().Words({0, 0x0D33, 0x99})));
    EXPECT_EQ("glGetIntegerv(pname = GL_MAX_TEXTURE_SIZE, data = NULL)",
              Text(2064, Payload().Words({0, 0x0D33, 0, 0})));
}

// Texts are quoted, with nothing in them that a terminal would obey, and cut.
TEST(Print, TextsAreQuotedAndCut)
{
    EXPECT_EQ("glGetUniformLocation(program = 7, name = \"a\\n\\t\\\"\\\\\\x1b\\xff\") = -1",
              Text(2077, Payload().Words({0, 0xFFFFFFFF, 7, 0x99, 7}).Text("a\n\t\"\\\x1b\xff")));
    std::string const sixtyFour(64, 'x');
    EXPECT_EQ("glGetUniformLocation(program = 7, name = \"" + sixtyFour + "\"... 65 bytes) = 0",
              Text(2077, Payload().Words({0, 0, 7, 0x99, 65}).Text(sixtyFour + "y")));
    EXPECT_EQ("glGetUniformLocation(program = 7, name = \"\") = 0",
              Text(2077, Payload().Words({0, 0, 7, 0x99, 0})));
}

// Lists of texts, attributes with their values' meaning, images, indices, client arrays.
TEST(Print, OtherComposites)
{
    EXPECT_EQ("glShaderSource(shader = 7, count = 1, string = {\"ab\"}, length = NULL)",
              Text(2099, Payload().Words({0, 7, 1, 1, 1, 2, 2}).Text("ab").Words({0, 0})));
    EXPECT_EQ(
        "eglCreateContext(dpy = 0x1, config = 0x2, share_context = 0x0, attrib_list = "
        "{EGL_CONTEXT_CLIENT_VERSION = 2, EGL_NONE}, config_attribs = {EGL_SURFACE_TYPE = EGL_PBUFFER_BIT | "
        "EGL_WINDOW_BIT, EGL_CONFIG_CAVEAT = EGL_NONE, EGL_RED_SIZE = 8, EGL_NONE}) = 0x9",
        Text(1003, Payload()
                       .Words({0x3000, 9, 1, 2, 0, 5, 3, 0x3098, 2, 0x3038})
                       .Words({6, 7, 0x3033, 5, 0x3027, 0x3038, 0x3024, 8, 0x3038})));
    EXPECT_EQ(
        "glDrawElements(mode = GL_TRIANGLES, count = 3, type = GL_UNSIGNED_SHORT, index_data = {0, 7, 3}, "
        "indices = 0x99, arrays = {0: [4 bytes], 2: [8 bytes]})",
        Text(2042, Payload()
                       .Words({0, 4, 3, 0x1403, 0x99, 6})
                       .U16(0)
                       .U16(7)
                       .U16(3)
                       .U32(0x99)
                       .Words({0, 0x50, 4, 1, 2, 0x60, 8, 1, 2})));
    EXPECT_EQ("glUnmapBufferOES(target = GL_ARRAY_BUFFER, data = [2 bytes]) = GL_TRUE",
              Text(4005, Payload().U32(0).U8(2).U8(1).Words({0x8892, 0x99, 2}).Text("ab")));
}

// A record that no layout fits is shown by its first bytes.
TEST(Print, RawBytes)
{
    EXPECT_EQ("[3 bytes] 00 7f ff", RawText(Payload().U8(0).U8(0x7F).U8(0xFF).View()));
    EXPECT_EQ(
        "[40 bytes]" +
            [] {
                std::string text;
                for (int i = 0; i < 32; ++i)
                    text += " 11";
                return text;
            }() +
            " ...",
        RawText(Payload().Fill(40, 0x11).View()));
    EXPECT_EQ("[0 bytes]", RawText({}));
}
