// What differs in GLES1: fixed arrays, sizes by enumerant, outputs that are never filled, odd records.
#include "tests/wrappers/recorder.h"

class Es1Records : public Recorder
{
protected:
    static void UnpackAlignmentIs(int alignment)
    {
        Fake().On("glGetIntegerv", [=](Call const& call) {
            *call.Pointer<GLint>(1) = call.Argument<GLenum>(0) == GL_UNPACK_ALIGNMENT ? alignment : 0;
        });
    }
    Es1Records()
    {
        for (int i = 0; i < 16; ++i)
            m_floats[i] = static_cast<GLfloat>(i) + 0.5f;
    }
    GLfloat m_floats[16];
};

// Matrices, planes and rectangles have no count word.
TEST_F(Es1Records, FixedArraysHaveNoCount)
{
    Record();
    Es1::_glLoadMatrixf(m_floats);
    EXPECT_EQ(Expected(3086, U32(0), Ptr(m_floats), Raw(m_floats, 64)), Written());
    Es1::_glClipPlanef(0x3000, m_floats);
    EXPECT_EQ(Expected(3016, U32(0), U32(0x3000), Ptr(m_floats), Raw(m_floats, 16)), Written());
    Es1::_glDrawTexfvOES(m_floats);
    EXPECT_EQ(Expected(4082, U32(0), U8(1), Ptr(m_floats), Raw(m_floats, 20)), Written());
    GLshort const shorts[] = {1, 2, 3, 4, 5};
    Es1::_glDrawTexsvOES(shorts);
    EXPECT_EQ(Expected(4086, U32(0), U8(1), Ptr(shorts), Raw(shorts, 10)), Written());
    Es1::_glLoadMatrixf(nullptr);
    EXPECT_EQ(Expected(3086, U32(0), U32(0)), Written());
}

// On purpose: one plane's equation is bare, unlike its kin.
TEST_F(Es1Records, OneClipPlaneIsBare)
{
    Record();
    Es1::_glClipPlanefOES(0x3000, m_floats);
    EXPECT_EQ(Expected(4141, U32(0), U8(1), U32(0x3000), Ptr(m_floats)), Written());
    Es1::_glClipPlanefNBX(0x3000, m_floats);
    EXPECT_EQ(Expected(4153, U32(0), U8(1), U32(0x3000), Ptr(m_floats), Raw(m_floats, 16)), Written());
}

// Shorts are two bytes each, behind the API byte.
TEST_F(Es1Records, ShortsAreTwoBytes)
{
    Record();
    Es1::_glDrawTexsOES(1, -2, 3, 4, 5);
    EXPECT_EQ(Expected(4085, U32(0), U8(1), U16(1), U16(0xFFFE), U16(3), U16(4), U16(5)), Written());
}

// Parameters have the size of their name.
TEST_F(Es1Records, ParametersHaveTheSizeOfTheirName)
{
    Record();
    Es1::_glFogfv(0x0B66, m_floats);
    EXPECT_EQ(Expected(3043, U32(0), U32(0x0B66), Ptr(m_floats), U32(4), Raw(m_floats, 16)), Written());
    Es1::_glFogfv(0x0B62, m_floats);
    EXPECT_EQ(Expected(3043, U32(0), U32(0x0B62), Ptr(m_floats), U32(1), Raw(m_floats, 4)), Written());
    Es1::_glLightfv(0x4000, 0x1204, m_floats);
    EXPECT_EQ(Expected(3080, U32(0), U32(0x4000), U32(0x1204), Ptr(m_floats), U32(3), Raw(m_floats, 12)),
              Written());
    Es1::_glMaterialfv(0x0408, 0x1602, m_floats);
    EXPECT_EQ(Expected(3090, U32(0), U32(0x0408), U32(0x1602), Ptr(m_floats), U32(4), Raw(m_floats, 16)),
              Written());
    Es1::_glPointParameterfv(0x8129, m_floats);
    EXPECT_EQ(Expected(3105, U32(0), U32(0x8129), Ptr(m_floats), U32(3), Raw(m_floats, 12)), Written());
    Es1::_glTexGenfvOES(1, 2, m_floats);
    EXPECT_EQ(Expected(4145, U32(0), U8(1), U32(1), U32(2), Ptr(m_floats), U32(4), Raw(m_floats, 16)),
              Written());
}

// On purpose: one texture query is sized as an environment, which shows for the environment's colour alone.
TEST_F(Es1Records, OneTextureQueryIsSizedAsAnEnvironment)
{
    Record();
    Es1::_glGetTexParameterfv(1, 8705, m_floats);
    EXPECT_EQ(Expected(3068, U32(0), U32(1), U32(8705), Ptr(m_floats), U32(4), Raw(m_floats, 16)), Written());
    GLint value[] = {7};
    Es1::_glGetTexParameteriv(1, 8705, value);
    EXPECT_EQ(Expected(3069, U32(0), U32(1), U32(8705), Ptr(value), Words({1, 7})), Written());
}

// On purpose: some outputs are never filled, on success neither.
TEST_F(Es1Records, SomeOutputsAreNeverFilled)
{
    Record();
    Es1::_glGetClipPlanef(0x3000, m_floats);
    EXPECT_EQ(Expected(3051, U32(0), U32(0x3000), Ptr(m_floats), U32(0)), Written());
    GLfixed mantissa[16] = {};
    GLint exponent[16] = {};
    Fake().Result("glQueryMatrixxOES", 3u);
    EXPECT_EQ(3u, Es1::_glQueryMatrixxOES(mantissa, exponent));
    EXPECT_EQ(Expected(4137, U32(0), U8(1), U32(3), Ptr(mantissa), U32(0), Ptr(exponent), U32(0)), Written());
}

// Truth values and colours of one byte.
TEST_F(Es1Records, BytesAreOneByte)
{
    Record();
    Es1::_glColor4ub(1, 2, 3, 4);
    EXPECT_EQ(Expected(3019, U32(0), U8(1), U8(2), U8(3), U8(4)), Written());
    Es1::_glSampleCoveragex(0x8000, 1);
    EXPECT_EQ(Expected(3118, U32(0), U32(0x8000), U8(1)), Written());
}

// The alignment of an image is asked for when its record is written, and is the unpack alignment.
TEST_F(Es1Records, ImagesEndWithTheUnpackAlignment)
{
    UnpackAlignmentIs(4);
    Record();
    uint8_t const pixels[8] = {1, 2, 3, 4, 5, 6, 7, 0};  // the last row ends with its last pixel
    Es1::_glTexImage2D(GL_TEXTURE_2D, 0, GL_ALPHA, 3, 2, 0, GL_ALPHA, GL_UNSIGNED_BYTE, pixels);
    EXPECT_EQ(Expected(3133, U32(0), U32(0x0DE1), U32(0), U32(0x1906), U32(3), U32(2), U32(0), U32(0x1906),
                       U32(0x1401), Ptr(pixels), U32(8), Raw(pixels, 8), U32(4)),
              Written());
}

// On purpose: the one extension record without API byte and without the size of the buffer; a failure, unlike
// its GLES2 twin's, makes it short.
TEST_F(Es1Records, ReadnPixelsIsOdd)
{
    UnpackAlignmentIs(1);
    Record();
    uint8_t pixels[4] = {1, 2, 3, 4};
    Es1::_glReadnPixelsEXT(1, 2, 2, 2, GL_ALPHA, GL_UNSIGNED_BYTE, 4, pixels);
    EXPECT_EQ(Expected(4168, U32(0), U32(1), U32(2), U32(2), U32(2), U32(0x1906), U32(0x1401), Ptr(pixels),
                       U32(4), Raw(pixels, 4), U32(1)),
              Written());
    HostFails(GL_INVALID_VALUE);
    Printed([&] { Es1::_glReadnPixelsEXT(1, 2, 2, 2, GL_ALPHA, GL_UNSIGNED_BYTE, 4, pixels); });
    EXPECT_EQ(Expected(4168, U32(0x501), U32(1), U32(2), U32(2), U32(2), U32(0x1906), U32(0x1401),
                       Ptr(pixels), U32(1)),
              Written());
}

// A mapped buffer is recorded at unmap as in GLES2, without a line in the log.
TEST_F(Es1Records, UnmapRecordsWhatWasMappedInSilence)
{
    Record();
    uint8_t mapped[] = {1, 2, 3};
    Fake().On("glGetBufferParameteriv",
              [](Call const& call) { *call.Pointer<GLint>(2) = call.Argument<GLenum>(1) == 0x88BC ? 1 : 3; });
    Fake().On("glGetBufferPointervOES", [&](Call const& call) { *call.Pointer<void*>(2) = mapped; });
    Fake().Result("glUnmapBufferOES", GLboolean(1));
    EXPECT_EQ("", Printed([] { EXPECT_EQ(1, Es1::_glUnmapBufferOES(GL_ARRAY_BUFFER)); }));
    Bytes record = Written();
    ASSERT_EQ(6u + 4 + 1 + 1 + 4 + 4 + 4 + 3, record.size());
    record.erase(record.begin() + 16, record.begin() + 20);
    EXPECT_EQ(Joined(U32(21), U16(4005), U32(0), U8(1), U8(1), U32(0x8892), U32(3), Bytes{1, 2, 3}), record);
}

// The firsts of several draws are sized by the first of their counts, and the counts themselves have one
// element.
TEST_F(Es1Records, MultiDrawsAreSizedByTheirFirstCount)
{
    Record();
    GLint const firsts[] = {4, 5, 6};
    GLsizei const counts[] = {2, 9, 9};
    Es1::_glMultiDrawArraysEXT(GL_TRIANGLES, firsts, counts, 3);
    EXPECT_EQ(Expected(4003, U32(0), U8(1), U32(4), Ptr(firsts), Words({2, 4, 5}), Ptr(counts), Words({1, 2}),
                       U32(3)),
              Written());
    Es2::_glMultiDrawArraysEXT(GL_TRIANGLES, firsts, counts, 3);
    EXPECT_EQ(Expected(4003, U32(0), U8(2), U32(4), Ptr(firsts), Words({2, 4, 5}), Ptr(counts), Words({1, 2}),
                       U32(3)),
              Written());
}
