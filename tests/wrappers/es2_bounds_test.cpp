// Sizes that come from the application or the host: nothing is read that cannot be there.
#include "tests/wrappers/shadow.h"

class Bounds : public Shadow
{
protected:
    Bounds() { RecordFromHere(); }

    uint8_t m_bytes[64] = {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16};
};

// A snapshot's image is a record's own bytes. It is recorded whole, whatever alignment the host has by then.
TEST_F(Bounds, ASnapshotsImageIsWhole)
{
    HostAnswers({{GL_UNPACK_ALIGNMENT, 1}});
    Fake().Forget();
    WithoutHost([this] {
        Es2::_glTexImage2D(GL_TEXTURE_2D, 0, GL_RGB, 3, 2, 0, GL_RGB, GL_UNSIGNED_BYTE, m_bytes, 4);
    });
    EXPECT_EQ(Expected(2106, U32(0), U32(0x0DE1), U32(0), U32(0x1907), U32(3), U32(2), U32(0), U32(0x1907),
                       U32(0x1401), Ptr(m_bytes), U32(24), Raw(m_bytes, 24), U32(4)),
              Written());
    EXPECT_TRUE(Fake().Calls().empty());
}

// A host that reports a longer binary than the application has room for is not believed.
TEST_F(Bounds, AProgramsBinaryEndsWithItsRoom)
{
    GLenum format = 0x8740;
    GLsizei length = 0;
    Fake().On("glGetProgramBinaryOES", [](Call const& call) { *call.Pointer<GLsizei>(2) = 1000; });
    Es2::_glGetProgramBinaryOES(4, 3, &length, &format, m_bytes);
    EXPECT_EQ(Expected(4126, U32(0), U8(2), U32(4), U32(3), Ptr(&length), Words({1, 1000}), Ptr(&format),
                       Words({1, 0x8740}), Ptr(m_bytes), U32(3), Bytes{1, 2, 3}),
              Written());
}

// Nor is one that reports more shaders; and what the application's count held before is no count.
TEST_F(Bounds, AttachedShadersEndWithTheirRoom)
{
    GLuint shaders[] = {7, 8};
    GLsizei count = 1000;
    Es2::_glGetAttachedShaders(4, 2, &count, shaders);
    EXPECT_EQ(
        Expected(2057, U32(0), U32(4), U32(2), Ptr(&count), Words({1, 1000}), Ptr(shaders), Words({2, 7, 8})),
        Written());
}

// Sizes below 0 and beyond what a record counts have no bytes; the size itself is recorded as it was given.
TEST_F(Bounds, ImpossibleSizesHaveNoBytes)
{
    Es2::_glBufferData(GL_ARRAY_BUFFER, -1, m_bytes, GL_STATIC_DRAW);
    EXPECT_EQ(Expected(2013, U32(0), Words({0x8892, 0xFFFFFFFF}), Ptr(m_bytes), Words({0, 0x88E4})),
              Written());
    Es2::_glBufferSubData(GL_ARRAY_BUFFER, 0, -1, m_bytes);
    EXPECT_EQ(Expected(2014, U32(0), Words({0x8892, 0, 0xFFFFFFFF}), Ptr(m_bytes), U32(0)), Written());
    Es2::_glCompressedTexImage2D(GL_TEXTURE_2D, 0, 0x8D64, 4, 4, 0, -8, m_bytes);
    EXPECT_EQ(Expected(2022, U32(0), Words({0x0DE1, 0, 0x8D64, 4, 4, 0, 0xFFFFFFF8}), Ptr(m_bytes), U32(0)),
              Written());
    Es2::_glTexImage2D(GL_TEXTURE_2D, 0, GL_RGBA, -1, 4, 0, GL_RGBA, GL_UNSIGNED_BYTE, m_bytes, 0);
    EXPECT_EQ(Expected(2106, U32(0), Words({0x0DE1, 0, 0x1908, 0xFFFFFFFF, 4, 0, 0x1908, 0x1401}),
                       Ptr(m_bytes), Words({0, 0})),
              Written());
}

// Lengths of shader sources that are no lengths, and a count below 0.
TEST_F(Bounds, SourcesWithoutCountAreEmpty)
{
    char const* const text = "void main";
    Es2::_glShaderSource(7, -1, &text, nullptr);
    EXPECT_EQ(Expected(2099, U32(0), Words({7, 0xFFFFFFFF}), Ptr(&text), Words({0, 0, 0})), Written());
}
