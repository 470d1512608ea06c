// GLES2 wrappers that record what the application passes: arrays, fixed arrays, texts and labels.
#include "tests/wrappers/recorder.h"

using Es2Inputs = Recorder;

// Names to delete stand in the record with their count.
TEST_F(Es2Inputs, ArraysHaveTheCountOfTheCall)
{
    Record();
    GLuint const names[] = {7, 8, 9};
    Es2::_glDeleteTextures(2, names);
    EXPECT_EQ(Expected(2031, U32(0), U32(2), Ptr(names), Words({2, 7, 8})), Written());
    RecordWithoutData();
    Es2::_glDeleteTextures(2, names);
    EXPECT_EQ(Expected(2031, U32(0), U32(2), Ptr(names)), Written());
}

// A null array has count 0 whatever the call counts; a negative count reads nothing.
TEST_F(Es2Inputs, NullAndNegativeArraysAreEmpty)
{
    Record();
    Es2::_glDeleteBuffers(2, nullptr);
    EXPECT_EQ(Expected(2029, U32(0), U32(2), U32(0), U32(0)), Written());
    GLuint const names[] = {7};
    Es2::_glDeleteBuffers(-1, names);
    EXPECT_EQ(Expected(2029, U32(0), I32(-1), Ptr(names), U32(0)), Written());
}

// Names that the host makes are read behind its call.
TEST_F(Es2Inputs, MadeNamesAreReadBehindTheHostCall)
{
    Record();
    GLuint names[2] = {};
    Fake().On("glGenTextures", [](Call const& call) {
        call.Pointer<GLuint>(1)[0] = 11;
        call.Pointer<GLuint>(1)[1] = 12;
    });
    Es2::_glGenTextures(2, names);
    EXPECT_EQ(Expected(2054, U32(0), U32(2), Ptr(names), Words({2, 11, 12})), Written());
}

// They are not gated: a host that fails leaves the record with whatever the array held.
TEST_F(Es2Inputs, FailedNamesAreWhatTheArrayHeld)
{
    Record();
    GLuint names[] = {0xAAAA, 0xBBBB};
    HostFails(GL_INVALID_VALUE);
    Printed([&] { Es2::_glGenTextures(2, names); });
    EXPECT_EQ(Expected(2054, U32(0x501), U32(2), Ptr(names), Words({2, 0xAAAA, 0xBBBB})), Written());
}

// The same of an extension, with the API byte.
TEST_F(Es2Inputs, ExtensionArraysStandBehindTheApiByte)
{
    Record();
    GLenum const attachments[] = {0x8CE0, 0x8D00};
    Es2::_glDiscardFramebufferEXT(GL_FRAMEBUFFER, 2, attachments);
    EXPECT_EQ(
        Expected(4001, U32(0), U8(2), U32(0x8D40), U32(2), Ptr(attachments), Words({2, 0x8CE0, 0x8D00})),
        Written());
}

// An input array of an extension that the host lacks is the application's all the same.
TEST_F(Es2Inputs, AMissingExtensionStillHasTheApplicationsArray)
{
    HostLacks("glDiscardFramebufferEXT");
    Record();
    GLenum const attachments[] = {0x8CE0};
    Es2::_glDiscardFramebufferEXT(GL_FRAMEBUFFER, 1, attachments);
    EXPECT_EQ(Expected(4001, U32(0), U8(2), U32(0x8D40), U32(1), Ptr(attachments), Words({1, 0x8CE0})),
              Written());
}

// The counters to select stand behind a truth value of one byte.
TEST_F(Es2Inputs, SelectedCountersFollowAByte)
{
    Record();
    GLuint counters[] = {5, 6};
    Es2::_glSelectPerfMonitorCountersAMD(1, GL_TRUE, 3, 2, counters);
    EXPECT_EQ(Expected(4098, U32(0), U8(2), U32(1), U8(1), U32(3), U32(2), Ptr(counters), Words({2, 5, 6})),
              Written());
}

// The array stands in its place among the arguments, the byte behind it.
TEST_F(Es2Inputs, MessageControlHasItsArrayInTheMiddle)
{
    Record();
    GLuint const ids[] = {9};
    Es2::_glDebugMessageControl(1, 2, 3, 1, ids, GL_FALSE);
    EXPECT_EQ(Expected(4177, U32(0), U8(2), U32(1), U32(2), U32(3), U32(1), Ptr(ids), Words({1, 9}), U8(0)),
              Written());
}

// A texture parameter is one element, whatever its name.
TEST_F(Es2Inputs, TextureParametersAreOneElement)
{
    Record();
    GLfloat const value[] = {1.5f, 2.5f};
    Es2::_glTexParameterfv(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, value);
    EXPECT_EQ(Expected(2108, U32(0), U32(0x0DE1), U32(0x2801), Ptr(value), U32(1), F32(1.5f)), Written());
}

// Vertex attributes have as many floats as their name says, and no count.
TEST_F(Es2Inputs, VertexAttributesHaveNoCountWord)
{
    Record();
    GLfloat const value[] = {1.5f, 2.5f, 3.5f, 4.5f};
    Es2::_glVertexAttrib1fv(1, value);
    EXPECT_EQ(Expected(2134, U32(0), U32(1), Ptr(value), F32(1.5f)), Written());
    Es2::_glVertexAttrib2fv(1, value);
    EXPECT_EQ(Expected(2136, U32(0), U32(1), Ptr(value), Raw(value, 8)), Written());
    Es2::_glVertexAttrib3fv(1, value);
    EXPECT_EQ(Expected(2138, U32(0), U32(1), Ptr(value), Raw(value, 12)), Written());
    Es2::_glVertexAttrib4fv(1, value);
    EXPECT_EQ(Expected(2140, U32(0), U32(1), Ptr(value), Raw(value, 16)), Written());
    Es2::_glVertexAttrib4fv(1, nullptr);
    EXPECT_EQ(Expected(2140, U32(0), U32(1), U32(0)), Written());
}

// A name is its characters up to the terminator.
TEST_F(Es2Inputs, NamesAreRecordedWithoutTerminator)
{
    Record();
    char const* const name = "position";
    Es2::_glBindAttribLocation(3, 1, name);
    EXPECT_EQ(Expected(2003, U32(0), U32(3), U32(1), Ptr(name), U32(8), Chars("position")), Written());
    Fake().Result("glGetAttribLocation", -1);
    EXPECT_EQ(-1, Es2::_glGetAttribLocation(3, name));
    EXPECT_EQ(Expected(2058, U32(0), I32(-1), U32(3), Ptr(name), U32(8), Chars("position")), Written());
}

// Whatever length the call passes, strlen decides.
TEST_F(Es2Inputs, MarkersIgnoreTheLengthOfTheCall)
{
    Record();
    char const* const marker = "longer than three";
    Es2::_glPushGroupMarkerEXT(3, marker);
    EXPECT_EQ(Expected(4195, U32(0), U8(2), U32(3), Ptr(marker), U32(17), Chars("longer than three")),
              Written());
    Es2::_glInsertEventMarkerEXT(0, nullptr);
    EXPECT_EQ(Expected(4194, U32(0), U8(2), U32(0), U32(0), U32(0)), Written());
}

// The same of the other labels and messages.
TEST_F(Es2Inputs, LabelsAndMessagesAreTexts)
{
    Record();
    char const* const text = "label";
    Bytes const asText = Joined(Ptr(text), U32(5), Chars("label"));
    Es2::_glObjectLabel(1, 2, 3, text);
    EXPECT_EQ(Expected(4183, U32(0), U8(2), U32(1), U32(2), U32(3), asText), Written());
    Es2::_glLabelObjectEXT(1, 2, 3, text);
    EXPECT_EQ(Expected(4192, U32(0), U8(2), U32(1), U32(2), U32(3), asText), Written());
    Es2::_glPushDebugGroup(1, 2, -1, text);
    EXPECT_EQ(Expected(4181, U32(0), U8(2), U32(1), U32(2), I32(-1), asText), Written());
    Es2::_glDebugMessageInsert(1, 2, 3, 4, 2, text);
    EXPECT_EQ(Expected(4178, U32(0), U8(2), U32(1), U32(2), U32(3), U32(4), U32(2), asText), Written());
}

// One label alone goes by the length of its call: 0 for null, strlen for a negative one.
TEST_F(Es2Inputs, AnObjectPointersLabelGoesByItsLength)
{
    Record();
    char const* const label = "label";
    void const* const object = &label;
    Es2::_glObjectPtrLabel(object, 3, label);
    EXPECT_EQ(Expected(4185, U32(0), U8(2), Ptr(object), U32(3), Ptr(label), U32(3), Chars("lab")),
              Written());
    Es2::_glObjectPtrLabel(object, -1, label);
    EXPECT_EQ(Expected(4185, U32(0), U8(2), Ptr(object), I32(-1), Ptr(label), U32(5), Chars("label")),
              Written());
    Es2::_glObjectPtrLabel(object, 3, nullptr);
    EXPECT_EQ(Expected(4185, U32(0), U8(2), Ptr(object), U32(3), U32(0), U32(0)), Written());
}

// Pointers whose size nobody knows are bare in both forms.
TEST_F(Es2Inputs, UnmeasuredPointersAreBare)
{
    GLfloat const values[] = {1.0f};
    GLuint data[1] = {};
    GLint written = 4;
    void* pointer = nullptr;
    for (bool withData : {true, false})
    {
        withData ? Record() : RecordWithoutData();
        Es2::_glProgramUniform1fvEXT(1, 2, 1, values);
        EXPECT_EQ(Expected(4225, U32(0), U8(2), U32(1), U32(2), U32(1), Ptr(values)), Written());
        Es2::_glGetPerfMonitorCounterDataAMD(1, 2, 4, data, &written);
        EXPECT_EQ(Expected(4101, U32(0), U8(2), U32(1), U32(2), U32(4), Ptr(data), Ptr(&written)), Written());
        Es2::_glGetPointerv(5, &pointer);
        EXPECT_EQ(Expected(4187, U32(0), U8(2), U32(5), Ptr(&pointer)), Written());
    }
}

// Truth values are one byte.
TEST_F(Es2Inputs, TruthValuesAreOneByte)
{
    Record();
    Es2::_glColorMask(1, 0, 1, 0);
    EXPECT_EQ(Expected(2020, U32(0), U8(1), U8(0), U8(1), U8(0)), Written());
    Es2::_glDepthMask(1);
    EXPECT_EQ(Expected(2037, U32(0), U8(1)), Written());
    Es2::_glSampleCoverage(0.5f, 1);
    EXPECT_EQ(Expected(2096, U32(0), F32(0.5f), U8(1)), Written());
    Es2::_glCoverageMaskNV(1);
    EXPECT_EQ(Expected(4106, U32(0), U8(2), U8(1)), Written());
    Fake().Result("glIsTexture", GLboolean(1));
    EXPECT_EQ(1, Es2::_glIsTexture(6));
    EXPECT_EQ(Expected(2088, U32(0), U8(1), U32(6)), Written());
}

// The timeouts alone are 8 bytes; the result of a wait is a word.
TEST_F(Es2Inputs, TimeoutsAreEightBytes)
{
    Record();
    GLsync const sync = reinterpret_cast<GLsync>(uintptr_t(0x44));
    Fake().Result("glClientWaitSyncAPPLE", 0x911Au);
    EXPECT_EQ(0x911Au, Es2::_glClientWaitSyncAPPLE(sync, 1, 0x0102030405060708));
    EXPECT_EQ(Expected(4159, U32(0), U8(2), U32(0x911A), U32(0x44), U32(1), U64(0x0102030405060708)),
              Written());
    Es2::_glWaitSyncAPPLE(sync, 0, 0xFFFFFFFFFFFFFFFF);
    EXPECT_EQ(Expected(4160, U32(0), U8(2), U32(0x44), U32(0), U64(0xFFFFFFFFFFFFFFFF)), Written());
}

// Objects that a snapshot makes anew take their names from the trailing arguments.
TEST_F(Es2Inputs, ReplayedObjectsKeepTheirNames)
{
    RecordWithHostOff();
    EXPECT_EQ(7u, Es2::_glCreateProgram(7));
    EXPECT_EQ(Expected(2026, U32(0), U32(7)), Written());
    EXPECT_EQ(8u, Es2::_glCreateShader(GL_VERTEX_SHADER, 8));
    EXPECT_EQ(Expected(2027, U32(0), U32(8), U32(0x8B31)), Written());
    char const* const name = "colour";
    EXPECT_EQ(9, Es2::_glGetUniformLocation(7, name, 9));
    EXPECT_EQ(Expected(2077, U32(0), U32(9), U32(7), Ptr(name), U32(6), Chars("colour")), Written());
}

// With the host on the trailing arguments say nothing.
TEST_F(Es2Inputs, LiveObjectsHaveTheHostsNames)
{
    Record();
    Fake().Result("glCreateProgram", 3u);
    EXPECT_EQ(3u, Es2::_glCreateProgram(7));
    EXPECT_EQ(Expected(2026, U32(0), U32(3)), Written());
}
