// What differs in GLES1: fixed arrays, sizes by enumerant, outputs that are never filled, odd records.
#include "tests/wrappers/recorder.h"
#include <map>

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

// On purpose: some outputs are never filled, on success neither, and have a count all the same.
TEST_F(Es1Records, SomeOutputsAreNeverFilled)
{
    Record();
    GLfixed fixed[16] = {};
    Es1::_glGetClipPlanef(0x3000, m_floats);
    EXPECT_EQ(Expected(3051, U32(0), U32(0x3000), Ptr(m_floats), U32(0)), Written());
    Es1::_glGetClipPlanex(0x3000, fixed);
    EXPECT_EQ(Expected(3052, U32(0), U32(0x3000), Ptr(fixed), U32(0)), Written());
    Es1::_glGetClipPlanefOES(0x3000, m_floats);
    EXPECT_EQ(Expected(4144, U32(0), U8(1), U32(0x3000), Ptr(m_floats), U32(0)), Written());
    Es1::_glGetClipPlanexOES(0x3000, fixed);
    EXPECT_EQ(Expected(4051, U32(0), U8(1), U32(0x3000), Ptr(fixed), U32(0)), Written());
    GLint exponent[16] = {};
    Fake().Result("glQueryMatrixxOES", 3u);
    EXPECT_EQ(3u, Es1::_glQueryMatrixxOES(fixed, exponent));
    EXPECT_EQ(Expected(4137, U32(0), U8(1), U32(3), Ptr(fixed), U32(0), Ptr(exponent), U32(0)), Written());
    RecordWithoutData();
    Es1::_glGetClipPlanef(0x3000, m_floats);
    EXPECT_EQ(Expected(3051, U32(0), U32(0x3000), Ptr(m_floats)), Written());
}

// The number that the host stores sizes the names; both are gated.
TEST_F(Es1Records, TheStoredNumberSizesTheNames)
{
    using Query = void (*)(GLuint*, GLint, GLint*);
    std::map<uint16_t, Query> const queries = {
        {4112, Es1::_glExtGetTexturesQCOM},      {4113, Es1::_glExtGetBuffersQCOM},
        {4114, Es1::_glExtGetRenderbuffersQCOM}, {4115, Es1::_glExtGetFramebuffersQCOM},
        {4120, Es1::_glExtGetShadersQCOM},       {4121, Es1::_glExtGetProgramsQCOM}};
    GLuint names[] = {7, 8, 9, 10};
    GLint number = 3;
    for (auto const& [id, query] : queries)
    {
        Record();
        query(names, 4, &number);
        EXPECT_EQ(
            Expected(id, U32(0), U8(1), Ptr(names), Words({3, 7, 8, 9, 4}), Ptr(&number), Words({1, 3})),
            Written());
        HostFails(GL_INVALID_VALUE);
        Printed([&, query = query] { query(names, 4, &number); });
        EXPECT_EQ(Expected(id, U32(0x501), U8(1), Ptr(names), U32(0), U32(4), Ptr(&number), U32(0)),
                  Written());
    }
}

// On purpose: both arrays of the driver's controls have the size of the call.
TEST_F(Es1Records, DriverControlsReadTheSizeForBoth)
{
    Record();
    GLint numbers[] = {2, 3};
    GLuint controls[] = {8, 9};
    Es1::_glGetDriverControlsQCOM(numbers, 2, controls);
    EXPECT_EQ(
        Expected(4108, U32(0), U8(1), Ptr(numbers), Words({2, 2, 3, 2}), Ptr(controls), Words({2, 8, 9})),
        Written());
}

// Texts: the length first, but for a program's source. Texts are not gated, lengths are.
TEST_F(Es1Records, TextsStandWithTheirLengths)
{
    Record();
    char text[8] = "abc";
    GLsizei length = 3;
    Es1::_glGetDriverControlStringQCOM(5, 8, &length, text);
    EXPECT_EQ(Expected(4109, U32(0), U8(1), Words({5, 8}), Ptr(&length), Words({1, 3}), Ptr(text), U32(3),
                       Chars("abc")),
              Written());
    HostFails(GL_INVALID_VALUE);
    Printed([&] { Es1::_glExtGetProgramBinarySourceQCOM(5, 6, text, &length); });
    EXPECT_EQ(Expected(4123, U32(0x501), U8(1), Words({5, 6}), Ptr(text), U32(3), Chars("abc"), Ptr(&length),
                       U32(0)),
              Written());
    Fake().Result("glGetString", static_cast<char const*>(text));
    Es1::_glGetString(GL_VENDOR);
    EXPECT_EQ(Expected(3064, U32(0), Ptr(text), U32(3), Chars("abc"), U32(0x1F00)), Written());
    Fake().Result("glGetTexStreamDeviceNameNBX", static_cast<char const*>(text));
    Es1::_glGetTexStreamDeviceNameNBX(2);
    EXPECT_EQ(Expected(4032, U32(0), U8(1), Ptr(text), U32(3), Chars("abc"), U32(2)), Written());
}

// A second call of the host tells how many values there are, when the first one succeeded.
TEST_F(Es1Records, SyncValuesAreCountedByASecondCall)
{
    Record();
    GLsync const sync = reinterpret_cast<GLsync>(uintptr_t(0x99));
    GLint values[] = {4, 5, 6};
    Fake().On("glGetSyncivAPPLE", [](Call const& call) {
        if (auto* const length = call.Pointer<GLsizei>(3))
            *length = 2;
    });
    Es1::_glGetSyncivAPPLE(sync, 0x9112, 3, nullptr, values);
    EXPECT_EQ(Expected(4162, U32(0), U8(1), Words({0x99, 0x9112, 3, 0, 0}), Ptr(values), Words({2, 4, 5})),
              Written());
    EXPECT_EQ(2u, HostCalls("glGetSyncivAPPLE"));
    HostFails(GL_INVALID_VALUE);
    Printed([&] { Es1::_glGetSyncivAPPLE(sync, 0x9112, 3, nullptr, values); });
    EXPECT_EQ(Expected(4162, U32(0x501), U8(1), Words({0x99, 0x9112, 3, 0, 0}), Ptr(values), U32(0)),
              Written());
    EXPECT_EQ(3u, HostCalls("glGetSyncivAPPLE"));
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
