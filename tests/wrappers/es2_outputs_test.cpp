// GLES2 wrappers that record what the host stores: the output gate, second host calls, texts.
#include "tests/wrappers/recorder.h"

class Es2Outputs : public Recorder
{
protected:
    // The host fills the ints behind its argument `index` with 1, 2, 3 and so on.
    static void HostStores(char const* name, size_t index, int count)
    {
        Fake().On(name, [=](Call const& call) {
            for (int i = 0; i < count; ++i)
                call.Pointer<int>(index)[i] = i + 1;
        });
    }
};

// State is recorded by the number of values that its enumerant has.
TEST_F(Es2Outputs, StateHasTheSizeOfItsName)
{
    Record();
    GLint values[16] = {};
    HostStores("glGetIntegerv", 1, 4);
    Es2::_glGetIntegerv(GL_VIEWPORT, values);
    EXPECT_EQ(Expected(2064, U32(0), U32(0x0BA2), Ptr(values), Words({4, 1, 2, 3, 4})), Written());
    Es2::_glGetIntegerv(GL_MAX_VIEWPORT_DIMS, values);
    EXPECT_EQ(Expected(2064, U32(0), U32(0x0D3A), Ptr(values), Words({2, 1, 2})), Written());
    // One element of a list whose length nobody knows, though the host may store more.
    Es2::_glGetIntegerv(GL_COMPRESSED_TEXTURE_FORMATS, values);
    EXPECT_EQ(Expected(2064, U32(0), U32(0x86A3), Ptr(values), Words({1, 1})), Written());
}

// Floats likewise, truth values with elements of one byte.
TEST_F(Es2Outputs, TruthStateHasElementsOfOneByte)
{
    Record();
    GLboolean mask[] = {1, 0, 1, 0};
    Es2::_glGetBooleanv(GL_COLOR_WRITEMASK, mask);
    EXPECT_EQ(Expected(2059, U32(0), U32(0x0C23), Ptr(mask), U32(4), Raw(mask, 4)), Written());
    GLfloat range[] = {0.25f, 0.75f};
    Es2::_glGetFloatv(GL_DEPTH_RANGE, range);
    EXPECT_EQ(Expected(2062, U32(0), U32(0x0B70), Ptr(range), U32(2), F32(0.25f), F32(0.75f)), Written());
}

// The gate: an error, errors off, or the host off, each leaves the pointer and a count of 0.
TEST_F(Es2Outputs, TheGateLeavesThePointer)
{
    GLint value[4] = {5, 6, 7, 8};
    Bytes const empty = Expected(2064, U32(0), U32(0x0BA2), Ptr(value), U32(0));
    Record();
    HostFails(GL_INVALID_ENUM);
    Printed([&] { Es2::_glGetIntegerv(GL_VIEWPORT, value); });
    EXPECT_EQ(Expected(2064, U32(0x500), U32(0x0BA2), Ptr(value), U32(0)), Written());
    STraceConfig::m_getErrors = false;
    Es2::_glGetIntegerv(GL_VIEWPORT, value);
    EXPECT_EQ(empty, Written());
    STraceConfig::m_getErrors = true;
    RecordWithHostOff();
    Es2::_glGetIntegerv(GL_VIEWPORT, value);
    EXPECT_EQ(empty, Written());
}

// A null output has count 0 on success too.
TEST_F(Es2Outputs, ANullOutputIsEmpty)
{
    Record();
    Es2::_glGetIntegerv(GL_VIEWPORT, nullptr);
    EXPECT_EQ(Expected(2064, U32(0), U32(0x0BA2), U32(0), U32(0)), Written());
}

// A current attribute has four values, any other fact of it one.
TEST_F(Es2Outputs, AttributesHaveOneValueOrFour)
{
    Record();
    GLfloat values[] = {1.0f, 2.0f, 3.0f, 4.0f};
    Es2::_glGetVertexAttribfv(2, GL_CURRENT_VERTEX_ATTRIB, values);
    EXPECT_EQ(Expected(2078, U32(0), U32(2), U32(0x8626), Ptr(values), U32(4), Raw(values, 16)), Written());
    Es2::_glGetVertexAttribfv(2, GL_VERTEX_ATTRIB_ARRAY_SIZE, values);
    EXPECT_EQ(Expected(2078, U32(0), U32(2), U32(0x8623), Ptr(values), U32(1), F32(1.0f)), Written());
}

// On purpose: of a pointer that the host stores only the low byte is recorded.
TEST_F(Es2Outputs, StoredPointersAreOneByte)
{
    Record();
    void* pointer = reinterpret_cast<void*>(uintptr_t(0x12345678));
    Es2::_glGetVertexAttribPointerv(2, GL_VERTEX_ATTRIB_ARRAY_POINTER, &pointer);
    EXPECT_EQ(Expected(2080, U32(0), U32(2), U32(0x8645), Ptr(&pointer), U32(1), U8(0x78)), Written());
    Es2::_glGetBufferPointervOES(GL_ARRAY_BUFFER, GL_BUFFER_MAP_POINTER_OES, &pointer);
    EXPECT_EQ(Expected(4006, U32(0), U8(2), U32(0x8892), U32(0x88BD), Ptr(&pointer), U32(1), U8(0x78)),
              Written());
    Es2::_glExtGetBufferPointervQCOM(GL_ARRAY_BUFFER, &pointer);
    EXPECT_EQ(Expected(4119, U32(0), U8(2), U32(0x8892), Ptr(&pointer), U32(1), U8(0x78)), Written());
}

// One value of 8 bytes, two of an indexed state, two and one of a precision.
TEST_F(Es2Outputs, OddSizes)
{
    Record();
    GLint64 wide = 0x1122334455667788;
    Es2::_glGetInteger64vAPPLE(0x9111, &wide);
    EXPECT_EQ(Expected(4161, U32(0), U8(2), U32(0x9111), Ptr(&wide), U32(1), U64(0x1122334455667788)),
              Written());
    GLint indexed[] = {3, 4};
    Es2::_glGetIntegeri_vEXT(0x0C01, 1, indexed);
    EXPECT_EQ(Expected(4239, U32(0), U8(2), U32(0x0C01), U32(1), Ptr(indexed), Words({2, 3, 4})), Written());
    GLint range[] = {127, 126};
    GLint precision = 23;
    Es2::_glGetShaderPrecisionFormat(GL_VERTEX_SHADER, GL_HIGH_FLOAT, range, &precision);
    EXPECT_EQ(Expected(2070, U32(0), U32(0x8B31), U32(0x8DF2), Ptr(range), Words({2, 127, 126}),
                       Ptr(&precision), Words({1, 23})),
              Written());
}

// The number that the host stores sizes the array; both are gated.
TEST_F(Es2Outputs, TheStoredNumberSizesTheArray)
{
    Record();
    GLuint textures[4] = {7, 8, 9, 10};
    GLint number = 3;
    Es2::_glExtGetTexturesQCOM(textures, 4, &number);
    EXPECT_EQ(Expected(4112, U32(0), U8(2), Ptr(textures), Words({3, 7, 8, 9}), U32(4), Ptr(&number),
                       Words({1, 3})),
              Written());
    HostFails(GL_INVALID_VALUE);
    Printed([&] { Es2::_glExtGetTexturesQCOM(textures, 4, &number); });
    EXPECT_EQ(Expected(4112, U32(0x501), U8(2), Ptr(textures), U32(0), U32(4), Ptr(&number), U32(0)),
              Written());
    Es2::_glExtGetTexturesQCOM(textures, 4, nullptr);
    EXPECT_EQ(Expected(4112, U32(0), U8(2), Ptr(textures), U32(0), U32(4), U32(0), U32(0)), Written());
}

// On purpose: the size argument counts both arrays, the number's own word included.
TEST_F(Es2Outputs, DriverControlsReadTheSizeForBoth)
{
    Record();
    GLint number[] = {2, 5};
    GLuint controls[] = {7, 8};
    Es2::_glGetDriverControlsQCOM(number, 2, controls);
    EXPECT_EQ(
        Expected(4108, U32(0), U8(2), Ptr(number), Words({2, 2, 5}), U32(2), Ptr(controls), Words({2, 7, 8})),
        Written());
}

// The groups are as many as a second question tells, at most as many as there is room for.
TEST_F(Es2Outputs, GroupsAreCountedByASecondCall)
{
    Record();
    GLint number = 0;
    GLuint groups[] = {7, 8, 9};
    Fake().On("glGetPerfMonitorGroupsAMD", [](Call const& call) { *call.Pointer<GLint>(0) = 2; });
    Es2::_glGetPerfMonitorGroupsAMD(&number, 3, groups);
    EXPECT_EQ(
        Expected(4091, U32(0), U8(2), Ptr(&number), Words({1, 2}), U32(3), Ptr(groups), Words({2, 7, 8})),
        Written());
    std::vector<Call> const calls = Fake().Calls("glGetPerfMonitorGroupsAMD");
    ASSERT_EQ(2u, calls.size());
    EXPECT_EQ(0, calls[1].Argument<GLsizei>(1));
    EXPECT_EQ(nullptr, calls[1].Pointer<GLuint>(2));
    Es2::_glGetPerfMonitorGroupsAMD(&number, 1, groups);
    EXPECT_EQ(Expected(4091, U32(0), U8(2), Ptr(&number), Words({1, 2}), U32(1), Ptr(groups), Words({1, 7})),
              Written());
}

// The counters of a group likewise.
TEST_F(Es2Outputs, CountersAreCountedByASecondCall)
{
    Record();
    GLint number = 0;
    GLint active = 0;
    GLuint counters[] = {7, 8, 9};
    Fake().On("glGetPerfMonitorCountersAMD", [](Call const& call) {
        *call.Pointer<GLint>(1) = 5;
        if (call.Pointer<GLint>(2))
            *call.Pointer<GLint>(2) = 6;
    });
    Es2::_glGetPerfMonitorCountersAMD(4, &number, &active, 3, counters);
    EXPECT_EQ(Expected(4092, U32(0), U8(2), U32(4), Ptr(&number), Words({1, 5}), Ptr(&active), Words({1, 6}),
                       U32(3), Ptr(counters), Words({3, 7, 8, 9})),
              Written());
    EXPECT_EQ(2u, HostCalls("glGetPerfMonitorCountersAMD"));
}

// Second calls are made only for a record, and only for one with contents on success.
TEST_F(Es2Outputs, SecondCallsAreMadeForTheRecordAlone)
{
    GLint number = 0;
    GLuint groups[1] = {};
    Play();
    Es2::_glGetPerfMonitorGroupsAMD(&number, 1, groups);
    RecordWithoutData();
    Es2::_glGetPerfMonitorGroupsAMD(&number, 1, groups);
    EXPECT_EQ(2u, HostCalls("glGetPerfMonitorGroupsAMD"));
    Record();
    HostFails(GL_INVALID_VALUE);
    Printed([&] { Es2::_glGetPerfMonitorGroupsAMD(&number, 1, groups); });
    EXPECT_EQ(3u, HostCalls("glGetPerfMonitorGroupsAMD"));
}

// The values of a sync object are counted by a second call with a length of the wrapper's own.
TEST_F(Es2Outputs, SyncValuesAreCountedByASecondCall)
{
    Record();
    GLsync const sync = reinterpret_cast<GLsync>(uintptr_t(0x44));
    GLint values[2] = {};
    Fake().On("glGetSyncivAPPLE", [](Call const& call) {
        if (call.Pointer<GLsizei>(3))
            *call.Pointer<GLsizei>(3) = 1;
        call.Pointer<GLint>(4)[0] = 0x9119;
    });
    Es2::_glGetSyncivAPPLE(sync, 0x9114, 2, nullptr, values);
    EXPECT_EQ(Expected(4162, U32(0), U8(2), U32(0x44), U32(0x9114), U32(2), U32(0), U32(0), Ptr(values),
                       Words({1, 0x9119})),
              Written());
    GLsizei length = 0;
    Es2::_glGetSyncivAPPLE(sync, 0x9114, 2, &length, values);
    EXPECT_EQ(Expected(4162, U32(0), U8(2), U32(0x44), U32(0x9114), U32(2), Ptr(&length), Words({1, 1}),
                       Ptr(values), Words({1, 0x9119})),
              Written());
}

// The host gets a count of the wrapper's own: the shaders are known also where the application asks for none.
TEST_F(Es2Outputs, AttachedShadersAreCountedByASubstitute)
{
    Record();
    GLuint shaders[4] = {};
    GLsizei count = 0;
    Fake().On("glGetAttachedShaders", [](Call const& call) {
        *call.Pointer<GLsizei>(2) = 2;
        call.Pointer<GLuint>(3)[0] = 5;
        call.Pointer<GLuint>(3)[1] = 6;
    });
    Es2::_glGetAttachedShaders(3, 4, &count, shaders);
    EXPECT_EQ(2, count);
    EXPECT_NE(&count, Fake().Calls("glGetAttachedShaders").front().Pointer<GLsizei>(2));
    EXPECT_EQ(
        Expected(2057, U32(0), U32(3), U32(4), Ptr(&count), Words({1, 2}), Ptr(shaders), Words({2, 5, 6})),
        Written());
    Es2::_glGetAttachedShaders(3, 4, nullptr, shaders);
    EXPECT_EQ(Expected(2057, U32(0), U32(3), U32(4), U32(0), U32(0), Ptr(shaders), Words({2, 5, 6})),
              Written());
}

// Length, then the text by its terminator; the text is not gated.
TEST_F(Es2Outputs, TextsAreNotGated)
{
    Record();
    GLsizei length = 3;
    char log[16] = "old";
    HostFails(GL_INVALID_VALUE);
    Printed([&] { Es2::_glGetShaderInfoLog(4, 16, &length, log); });
    EXPECT_EQ(
        Expected(2069, U32(0x501), U32(4), U32(16), Ptr(&length), U32(0), Ptr(log), U32(3), Chars("old")),
        Written());
    Es2::_glGetShaderInfoLog(4, 16, &length, log);
    EXPECT_EQ(
        Expected(2069, U32(0), U32(4), U32(16), Ptr(&length), Words({1, 3}), Ptr(log), U32(3), Chars("old")),
        Written());
}

// Every output text of the kind: an argument or three, the room, the length, the text.
TEST_F(Es2Outputs, EveryTextHasItsLengthInFront)
{
    Record();
    GLsizei length = 2;
    char text[8] = "ab";
    Bytes const tail = Joined(U32(8), Ptr(&length), Words({1, 2}), Ptr(text), U32(2), Chars("ab"));
    Es2::_glGetShaderSource(4, 8, &length, text);
    EXPECT_EQ(Expected(2071, U32(0), U32(4), tail), Written());
    Es2::_glGetProgramInfoLog(4, 8, &length, text);
    EXPECT_EQ(Expected(2066, U32(0), U32(4), tail), Written());
    Es2::_glGetProgramPipelineInfoLogEXT(4, 8, &length, text);
    EXPECT_EQ(Expected(4233, U32(0), U8(2), U32(4), tail), Written());
    Es2::_glGetTranslatedShaderSourceANGLE(4, 8, &length, text);
    EXPECT_EQ(Expected(4191, U32(0), U8(2), U32(4), tail), Written());
    Es2::_glGetDriverControlStringQCOM(4, 8, &length, text);
    EXPECT_EQ(Expected(4109, U32(0), U8(2), U32(4), tail), Written());
    Es2::_glGetPerfMonitorGroupStringAMD(4, 8, &length, text);
    EXPECT_EQ(Expected(4093, U32(0), U8(2), U32(4), tail), Written());
    Es2::_glGetPerfMonitorCounterStringAMD(4, 5, 8, &length, text);
    EXPECT_EQ(Expected(4094, U32(0), U8(2), U32(4), U32(5), tail), Written());
    Es2::_glGetObjectLabel(4, 5, 8, &length, text);
    EXPECT_EQ(Expected(4184, U32(0), U8(2), U32(4), U32(5), tail), Written());
    Es2::_glGetObjectLabelEXT(4, 5, 8, &length, text);
    EXPECT_EQ(Expected(4193, U32(0), U8(2), U32(4), U32(5), tail), Written());
    Es2::_glGetObjectPtrLabel(&length, 8, &length, text);
    EXPECT_EQ(Expected(4186, U32(0), U8(2), Ptr(&length), tail), Written());
}

// One has its text first.
TEST_F(Es2Outputs, TheBinarySourceHasItsTextFirst)
{
    Record();
    GLint length = 2;
    char text[8] = "ab";
    Es2::_glExtGetProgramBinarySourceQCOM(4, 0x8B31, text, &length);
    EXPECT_EQ(Expected(4123, U32(0), U8(2), U32(4), U32(0x8B31), Ptr(text), U32(2), Chars("ab"), Ptr(&length),
                       Words({1, 2})),
              Written());
}

// Active variables have three numbers ahead of their name.
TEST_F(Es2Outputs, ActiveVariablesHaveThreeNumbersAndAName)
{
    Record();
    GLsizei length = 3;
    GLint size = 1;
    GLenum type = GL_FLOAT_VEC3;
    char name[8] = "pos";
    Bytes const payload =
        Joined(U32(0), U32(4), U32(5), U32(8), Ptr(&length), Words({1, 3}), Ptr(&size), Words({1, 1}),
               Ptr(&type), Words({1, 0x8B51}), Ptr(name), U32(3), Chars("pos"));
    Es2::_glGetActiveAttrib(4, 5, 8, &length, &size, &type, name);
    EXPECT_EQ(Expected(2055, payload), Written());
    Es2::_glGetActiveUniform(4, 5, 8, &length, &size, &type, name);
    EXPECT_EQ(Expected(2056, payload), Written());
    Es2::_glGetActiveUniform(4, 5, 8, nullptr, &size, &type, name);
    EXPECT_EQ(Expected(2056, U32(0), U32(4), U32(5), U32(8), U32(0), U32(0), Ptr(&size), Words({1, 1}),
                       Ptr(&type), Words({1, 0x8B51}), Ptr(name), U32(3), Chars("pos")),
              Written());
}

// The number of messages that came back counts five arrays; the log is a text behind them.
TEST_F(Es2Outputs, TheMessageLogIsCountedByItsResult)
{
    Record();
    GLenum sources[] = {1, 2};
    GLenum types[] = {3, 4};
    GLuint ids[] = {5, 6};
    GLenum severities[] = {7, 8};
    GLsizei lengths[] = {9, 10};
    char log[8] = "m";
    Fake().Result("glGetDebugMessageLog", 1u);
    EXPECT_EQ(1u, Es2::_glGetDebugMessageLog(2, 8, sources, types, ids, severities, lengths, log));
    EXPECT_EQ(Expected(4180, U32(0), U8(2), U32(1), U32(2), U32(8), Ptr(sources), Words({1, 1}), Ptr(types),
                       Words({1, 3}), Ptr(ids), Words({1, 5}), Ptr(severities), Words({1, 7}), Ptr(lengths),
                       Words({1, 9}), Ptr(log), U32(1), Chars("m")),
              Written());
}

// The host's text stands in place of the result's word, in both forms; a null one is empty.
TEST_F(Es2Outputs, StringsStandInPlaceOfTheResult)
{
    char const* const text = "fake";
    Fake().Result("glGetString", text);
    Fake().Result("glGetTexStreamDeviceNameNBX", text);
    for (bool withData : {true, false})
    {
        withData ? Record() : RecordWithoutData();
        EXPECT_EQ(static_cast<void const*>(text), Es2::_glGetString(GL_VENDOR));
        EXPECT_EQ(Expected(2072, U32(0), Ptr(text), U32(4), Chars("fake"), U32(0x1F00)), Written());
        Es2::_glGetTexStreamDeviceNameNBX(1);
        EXPECT_EQ(Expected(4032, U32(0), U8(2), Ptr(text), U32(4), Chars("fake"), U32(1)), Written());
    }
    RecordWithHostOff();
    EXPECT_EQ(nullptr, Es2::_glGetString(GL_VENDOR));
    EXPECT_EQ(Expected(2072, U32(0), U32(0), U32(0), U32(0x1F00)), Written());
}
