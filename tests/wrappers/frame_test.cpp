// The frame that all wrappers share: when the host is called, when an error is read, when a record is
// written.
#include "host/hosts.h"
#include "tests/wrappers/recorder.h"

using Frame = Recorder;
using FunctionNames = Recorder;

// A function without arguments and result has a payload of four bytes: the error word.
TEST_F(Frame, TheSmallestRecordIsItsErrorWord)
{
    Record();
    Es2::_glFlush();
    Bytes const expected = {4,    0, 0, 0,   // payload length
                            0xFE, 7,         // ID 2046
                            0,    0, 0, 0};  // no error
    EXPECT_EQ(expected, Written());
}

// One argument behind the error word, in both GL APIs under the ID of each.
TEST_F(Frame, ArgumentsFollowTheErrorWord)
{
    Record();
    Es2::_glDisable(GL_BLEND);
    EXPECT_EQ(Expected(2039, U32(0), U32(0x0BE2)), Written());
    Es1::_glDisable(GL_BLEND);
    EXPECT_EQ(Expected(3034, U32(0), U32(0x0BE2)), Written());
}

// The host's error stands first in the record and is logged with its code.
TEST_F(Frame, AHostErrorStandsInTheRecordAndTheLog)
{
    Record();
    HostFails(GL_INVALID_ENUM);
    EXPECT_EQ("NEBTRACE(M) \n ES2 CheckHostError: ERROR!! 1280\n\n", Printed([] { Es2::_glDisable(7); }));
    EXPECT_EQ(Expected(2039, U32(0x500), U32(7)), Written());
    EXPECT_EQ(0x500u, Es2::error);
}

// GLES1 logs its errors without the code, EGL in hexadecimal.
TEST_F(Frame, TheApisLogErrorsEachInItsWay)
{
    Record();
    HostFails(GL_INVALID_ENUM);
    EXPECT_EQ("NEBTRACE(M) \n ES1 CheckHostError: ERROR!! \n\n", Printed([] { Es1::_glDisable(7); }));
    EXPECT_EQ(Expected(3034, U32(0x500), U32(7)), Written());
    HostFails(EGL_BAD_MATCH);
    EXPECT_EQ("NEBTRACE(M) EGL Error: 0x3009\n\n", Printed([] { Egl::_eglWaitGL(); }));
    EXPECT_EQ(Expected(1024, U32(0x3009), U32(1)), Written());
}

// The error of one call is gone with the next: the word is cleared first, whatever else happens.
TEST_F(Frame, TheErrorWordIsClearedByEveryCall)
{
    Record();
    HostFails(GL_INVALID_ENUM);
    Printed([] { Es2::_glDisable(7); });
    STraceConfig::m_recordEnable = false;
    STraceConfig::m_bDoNativeCall = false;
    Es2::_glDisable(7);
    EXPECT_EQ(0u, Es2::getError());
}

// The wrappers consume the host's errors, so that an application that polls sees none of earlier calls.
TEST_F(Frame, ApplicationsThatPollSeeNoErrorOfEarlierCalls)
{
    Record();
    HostFails(GL_INVALID_VALUE);
    Printed([] { Es2::_glLineWidth(-1.0f); });
    Written();
    EXPECT_EQ(0u, Es2::_glGetError());
    EXPECT_EQ(Expected(2061, U32(0), U32(0)), Written());
}

// The wrapper of glGetError asks once for the application and once for the frame.
TEST_F(Frame, GetErrorAsksTheHostTwice)
{
    Record();
    HostFails(GL_OUT_OF_MEMORY);
    EXPECT_EQ(0x505u, Es2::_glGetError());
    EXPECT_EQ(2u, HostCalls("glGetError"));
    EXPECT_EQ(Expected(2061, U32(0), U32(0x505)), Written());
}

// The host gets the call first and the question for its error second.
TEST_F(Frame, TheErrorIsReadBehindTheCall)
{
    Record();
    Fake().Forget();
    Es2::_glFlush();
    EXPECT_EQ((std::vector<std::string>{"glFlush", "glGetError"}), Fake().Names());
}

// With errors off the host is asked for none, and the record carries none.
TEST_F(Frame, ErrorsCanBeOff)
{
    Record();
    STraceConfig::m_getErrors = false;
    HostFails(GL_INVALID_ENUM);
    Es2::_glDisable(7);
    EXPECT_EQ(0u, HostCalls("glGetError"));
    EXPECT_EQ(Expected(2039, U32(0), U32(7)), Written());
}

// A call whose host is held back is recorded all the same and carries no error; no error is read.
TEST_F(Frame, ASuppressedCallIsRecordedWithoutError)
{
    Record();
    STraceConfig::m_noCallHost = true;
    HostFails(GL_INVALID_ENUM);
    Fake().Forget();
    EXPECT_EQ(0u, Es2::_glCreateProgram(0));
    EXPECT_EQ(Expected(2026, U32(0), U32(0)), Written());
    EXPECT_TRUE(Fake().Calls().empty());
}

// On purpose: the two switches are compared, so that both turned against the host call it.
TEST_F(Frame, BothSwitchesOffTheHostCallIt)
{
    Record();
    STraceConfig::m_noCallHost = true;
    STraceConfig::m_bDoNativeCall = false;
    Es2::_glFlush();
    EXPECT_EQ(1u, HostCalls("glFlush"));
}

// What is not recorded reaches the host, has its error read and is tracked, and leaves no byte.
TEST_F(Frame, UnrecordedCallsAreTrackedAndLeaveNoRecord)
{
    Play();
    int host = 0;
    void* const display = &host;
    Fake().Result("eglGetDisplay", display);
    EXPECT_EQ(display, Egl::_eglGetDisplay(5, nullptr));
    EXPECT_EQ(Bytes(), Written());
    EXPECT_EQ(1u, HostCalls("eglGetError"));
    ASSERT_NE(nullptr, CTraceRecordManager::m_EglFileState->m_sDisplays.Find(display));
    EXPECT_EQ(5, CTraceRecordManager::m_EglFileState->m_sDisplays.Find(display)->nativeDisplay);
}

// A refused call leaves no trace in the shadow state.
TEST_F(Frame, RefusedCallsAreNotTracked)
{
    Play();
    HostFails(EGL_BAD_ALLOC);
    Printed([] { Egl::_eglGetDisplay(5, nullptr); });
    EXPECT_EQ(0, CTraceRecordManager::m_EglFileState->m_sDisplays.Count());
}

// With errors off nothing is tracked at all: whether the call succeeded is then unknown.
TEST_F(Frame, WithErrorsOffNothingIsTracked)
{
    Play();
    STraceConfig::m_getErrors = false;
    Egl::_eglGetDisplay(5, nullptr);
    EXPECT_EQ(0, CTraceRecordManager::m_EglFileState->m_sDisplays.Count());
}

// The control entries stop recording for good and leave no other trace, neither in the file nor at the host.
TEST_F(Frame, TheControlValueStopsRecording)
{
    Record();
    Fake().Forget();
    EXPECT_EQ(1u, Egl::_eglBindAPI(0x433));
    EXPECT_TRUE(STraceConfig::m_bPreventSaving);
    STraceConfig::m_bPreventSaving = false;
    Es1::_glDisable(0x433);
    EXPECT_TRUE(STraceConfig::m_bPreventSaving);
    EXPECT_EQ(Bytes(), Written());
    EXPECT_TRUE(Fake().Calls().empty());
    Es1::_glFlush();
    EXPECT_EQ(Bytes(), Written());
    EXPECT_EQ(1u, HostCalls("glFlush"));
}

// In GLES2 the same value is a capability like any other.
TEST_F(Frame, TheControlValueMeansNothingToEs2)
{
    Record();
    Es2::_glDisable(0x433);
    EXPECT_FALSE(STraceConfig::m_bPreventSaving);
    EXPECT_EQ(Expected(2039, U32(0), U32(0x433)), Written());
}

// The extension IDs that both GL APIs share are told apart by the byte behind the error word.
TEST_F(Frame, ExtensionRecordsNameTheirApi)
{
    Record();
    Es1::_glSetFenceNV(7, 8);
    EXPECT_EQ(Expected(4038, U32(0), U8(1), U32(7), U32(8)), Written());
    Es2::_glSetFenceNV(7, 8);
    EXPECT_EQ(Expected(4038, U32(0), U8(2), U32(7), U32(8)), Written());
}

// EGL extension records have no such byte.
TEST_F(Frame, EglExtensionRecordsHaveNoApiByte)
{
    Record();
    Fake().Result("eglUnlockSurfaceKHR", 1u);
    Egl::_eglUnlockSurfaceKHR(reinterpret_cast<void*>(0x11), reinterpret_cast<void*>(0x22));
    EXPECT_EQ(Expected(1103, U32(0x3000), U32(1), U32(0x11), U32(0x22)), Written());
}

// A missing extension gives the default result and skips the host whole: its pending error stays unread.
TEST_F(Frame, AMissingExtensionSkipsTheHost)
{
    HostLacks("glIsFenceNV");
    Record();
    HostFails(GL_INVALID_VALUE);
    Fake().Forget();
    EXPECT_EQ(0, Es2::_glIsFenceNV(9));
    EXPECT_EQ(Expected(4037, U32(0), U8(2), U8(0), U32(9)), Written());
    EXPECT_TRUE(Fake().Calls().empty());
}

// At debug level 2 every call is named, before the host runs.
TEST_F(Frame, DebugLevelTwoNamesEveryCall)
{
    Record();
    STraceConfig::m_debugInfo = 2;
    EXPECT_EQ("NEBTRACE(M) Calling function glFlush\n", Printed([] { Es2::_glFlush(); }));
    STraceConfig::m_debugInfo = 1;
    EXPECT_EQ("", Printed([] { Es2::_glFlush(); }));
}

// The first slots of four ranges are empty names, not unknown ones; ID 1 is no function.
TEST_F(FunctionNames, TheFirstSlotsAreEmptyNames)
{
    for (int id : {1000, 2000, 3000, 4000})
        EXPECT_STREQ("", STraceConfig::TranslateID(id)) << id;
    EXPECT_STREQ("eglSetSwapRectangleANDROID", STraceConfig::TranslateID(1100));
    for (int id : {-1, 0, 1, 4, 999, 1035, 1099, 1111, 1999, 2143, 2999, 3146, 3999, 4240})
        EXPECT_EQ(nullptr, STraceConfig::TranslateID(id)) << id;
}

// The last names of the ranges stand at their ends, so that no name before them is missing or doubled.
TEST_F(FunctionNames, TheRangesEndWithTheirLastNames)
{
    EXPECT_STREQ("eglWaitClient", STraceConfig::TranslateID(1034));
    EXPECT_STREQ("eglGetSyncAttribKHR", STraceConfig::TranslateID(1110));
    EXPECT_STREQ("glViewport", STraceConfig::TranslateID(2142));
    EXPECT_STREQ("glPointSizePointerOES", STraceConfig::TranslateID(3145));
    EXPECT_STREQ("glGetIntegeri_vEXT", STraceConfig::TranslateID(4239));
    EXPECT_STREQ("glDiscardFramebufferEXT", STraceConfig::TranslateID(4001));
}

// An ID without a name has a line of its own, one with an empty name has nothing behind the text.
TEST_F(FunctionNames, UnknownIdsAreLoggedByNumber)
{
    Record();
    STraceConfig::m_debugInfo = 2;
    int const none = 0;
    void const* const arguments[] = {&none};
    auto const ask = [&](int id) {
        return Printed([&] {
            STraceConfig::SFunctionConfig config{};
            STraceConfig::GetFunctionConfig(id, config, arguments);
        });
    };
    EXPECT_EQ("NEBTRACE(M) Calling function with unknown ID 1\n", ask(1));
    EXPECT_EQ("NEBTRACE(M) Calling function \n", ask(4000));
}

// Without profiling a call knows neither profiler nor stopwatch, and the flags are the settings.
TEST_F(Frame, TheDecisionFollowsTheSettings)
{
    Record();
    int const none = 0;
    void const* const arguments[] = {&none};
    STraceConfig::SFunctionConfig config{};
    STraceConfig::GetFunctionConfig(2046, config, arguments);
    EXPECT_EQ(nullptr, config.pProfiler);
    EXPECT_EQ(nullptr, config.pStopwatch);
    EXPECT_TRUE(config.bCallHost);
    EXPECT_TRUE(config.bGetErrors);
    EXPECT_FALSE(config.bUpdateRenderState);
    EXPECT_TRUE(config.bSaveCall);
    EXPECT_TRUE(config.bRecordData);
    EXPECT_FALSE(config.bSaveFrameBuffer);
}

// Profiling gives every call the one stopwatch and the profiler; nothing of it stands in a record.
TEST_F(Frame, ProfilingAddsAStopwatchAndNothingToTheRecord)
{
    Record();
    STraceConfig::m_bProfile = true;
    int const none = 0;
    void const* const arguments[] = {&none};
    STraceConfig::SFunctionConfig first{};
    STraceConfig::SFunctionConfig second{};
    STraceConfig::GetFunctionConfig(2046, first, arguments);
    STraceConfig::GetFunctionConfig(2046, second, arguments);
    EXPECT_NE(nullptr, first.pStopwatch);
    EXPECT_EQ(first.pStopwatch, second.pStopwatch);
    EXPECT_EQ(CProfiler::getInstance(), first.pProfiler);
    Es2::_glFlush();
    EXPECT_EQ(Expected(2046, U32(0)), Written());
}
