// Which calls are recorded in file mode, and how a recording ends.
#include "tests/wrappers/recorder.h"

class FrameControl : public Recorder
{
protected:
    void Range(uint32_t start, uint32_t end)
    {
        STraceConfig::m_ui32StartFrame = start;
        STraceConfig::m_ui32EndFrame = end;
    }
    static void Swap() { Egl::_eglSwapBuffers(nullptr, nullptr); }

    static Bytes Flush() { return Expected(2046, U32(0)); }
    // Display 0, surface 0, frame, width 0, height 0, and no pixels.
    static Bytes SwapOf(uint32_t frame)
    {
        return Expected(1022, U32(0x3000), U32(1), U32(0), U32(0), U32(frame), U32(0), U32(0), U32(0),
                        U32(0));
    }
    static Bytes Footer(uint64_t position) { return Joined(U8(0x13), U8(0x10), U64(position)); }

    // Where the record at `at` ends; the end of all where there is none.
    static size_t EndOfRecord(Bytes const& written, size_t at)
    {
        return at + 6 > written.size() ? written.size() : at + 6 + written[at] + written[at + 1] * 256u;
    }
    static int IdAt(Bytes const& written, size_t at)
    {
        return at + 6 > written.size() ? -1 : written[at + 4] + written[at + 5] * 256;
    }

    // What is left of `written` without the states that begin at `position`: for each API the records from
    // one empty record with its ID, 2 or 4, to the next.
    static Bytes WithoutState(Bytes const& written, size_t position)
    {
        EXPECT_EQ(2, IdAt(written, position)) << "no state at " << position;
        size_t end = position;
        for (int id = IdAt(written, end); id == 2 || id == 4; id = IdAt(written, end))
        {
            do
                end = EndOfRecord(written, end);
            while (IdAt(written, end) != id && end < written.size());
            end = EndOfRecord(written, end);
        }
        Bytes rest(written.begin(), written.begin() + static_cast<std::ptrdiff_t>(position));
        rest.insert(rest.end(), written.begin() + static_cast<std::ptrdiff_t>(end), written.end());
        return rest;
    }
};

// Frame N is everything behind the N-th swap, its own closing swap included; the state stands ahead of it,
// and the closing steps run at the next call, which is not recorded.
TEST_F(FrameControl, ARangeIsRecordedWithItsLastSwap)
{
    Range(1, 2);
    for (int frame = 0; frame < 4; ++frame)
    {
        Es2::_glFlush();
        Swap();
    }
    EXPECT_EQ(Joined(Flush(), SwapOf(1), Flush(), SwapOf(2), Footer(0)), WithoutState(Written(), 0));
    EXPECT_EQ(4u, HostCalls("glFlush"));
    EXPECT_EQ(4u, HostCalls("eglSwapBuffers"));
}

// With both ends at 0, all calls up to and including the first swap are recorded.
TEST_F(FrameControl, FrameZeroEndsWithTheFirstSwap)
{
    Range(0, 0);
    Es2::_glFlush();
    Swap();
    EXPECT_EQ(Joined(Flush(), SwapOf(0)), Written());
    Es2::_glFlush();
    EXPECT_EQ(Footer(0), Written());
    Es2::_glFlush();
    Swap();
    EXPECT_EQ(Bytes(), Written());
}

// A swap counts its frame whether the host swapped or not.
TEST_F(FrameControl, AFailedSwapCountsItsFrame)
{
    Range(0, 9);
    HostFails(EGL_BAD_SURFACE);
    Printed([] { Swap(); });
    EXPECT_EQ(1u, STraceConfig::m_ui32CurrentFrame);
    EXPECT_TRUE(STraceConfig::m_isNewFrame);
    STraceConfig::m_bDoNativeCall = false;
    Swap();
    EXPECT_EQ(2u, STraceConfig::m_ui32CurrentFrame);
}

// A range that ends before it begins holds nothing: the file is a header and a footer.
TEST_F(FrameControl, AnInvertedRangeIsEmpty)
{
    Range(2, 1);
    for (int frame = 0; frame < 4; ++frame)
        Swap();
    EXPECT_EQ(Footer(0), Written());
}

// The same with the state at the end: nothing was captured, so that the position is 0.
TEST_F(FrameControl, AnInvertedRangeHasNoPosition)
{
    Range(2, 1);
    STraceConfig::m_optimizationRS = true;
    for (int frame = 0; frame < 4; ++frame)
        Swap();
    Bytes const written = Written();
    ASSERT_LE(10u, written.size());
    EXPECT_EQ(Footer(0), Bytes(written.end() - 10, written.end()));
    EXPECT_FALSE(STraceConfig::m_renderStateWritten);
}

// With the state at the end of the file, the footer gives the position at which it begins.
TEST_F(FrameControl, TheFooterPointsAtAStateAtTheEnd)
{
    Range(1, 1);
    STraceConfig::m_optimizationRS = true;
    Swap();
    Es2::_glFlush();
    Swap();
    Es2::_glFlush();
    // Two records: a flush of 10 bytes, a swap of 42.
    EXPECT_EQ(Joined(Flush(), SwapOf(1), Footer(52)), WithoutState(Written(), 52));
}

// Without a capture the position is 0, also with the state at the end.
TEST_F(FrameControl, WithoutACaptureThePositionIsZero)
{
    Range(0, 0);
    STraceConfig::m_optimizationRS = true;
    Swap();
    Swap();
    EXPECT_EQ(Joined(SwapOf(0), Footer(0)), Written());
    EXPECT_FALSE(STraceConfig::m_renderStateWritten);
}

// The shadow state follows the calls only ahead of the range.
TEST_F(FrameControl, TheShadowFollowsAheadOfTheRange)
{
    Range(1, 1);
    EXPECT_TRUE(STraceConfig::UpdateRenderState());
    Swap();
    EXPECT_FALSE(STraceConfig::UpdateRenderState());
}

// In network mode it follows whenever calls reach the host.
TEST_F(FrameControl, InNetworkModeTheShadowFollowsTheHost)
{
    Range(0, 0);
    STraceConfig::m_bNetworkControl = true;
    EXPECT_TRUE(STraceConfig::UpdateRenderState());
    STraceConfig::m_bDoNativeCall = false;
    EXPECT_FALSE(STraceConfig::UpdateRenderState());
    STraceConfig::m_bNetworkControl = false;
}

// While a snapshot is written its calls are recorded, wherever the frame stands, and run no frame control.
TEST_F(FrameControl, ASnapshotsCallsAreRecorded)
{
    Range(5, 6);
    STraceConfig::m_bDoNativeCall = false;
    Es2::_glFlush();
    EXPECT_EQ(Flush(), Written());
    EXPECT_FALSE(STraceConfig::m_writeRenderState);
}

// The latch has no way back, and a range in progress is left without a footer.
TEST_F(FrameControl, PreventSavingLeavesNoFooter)
{
    Range(0, 0);
    Es2::_glFlush();
    Egl::_eglBindAPI(0x433);
    Swap();
    Es2::_glFlush();
    EXPECT_EQ(Flush(), Written());
}

// The progress lines of the levels. On purpose: the line of the last frame is never logged.
TEST_F(FrameControl, ProgressIsLoggedOncePerFrame)
{
    Range(2, 3);
    STraceConfig::m_debugInfo = 1;
    EXPECT_EQ("NEBTRACE(M) Recording... Current Frame: 2\n"
              "NEBTRACE(M) Recording... Current Frame: 3\n",
              Printed([] {
                  for (int frame = 0; frame < 5; ++frame)
                  {
                      Es2::_glFlush();
                      Swap();
                  }
              }));
}

// At level 0 there are none.
TEST_F(FrameControl, LevelZeroIsSilent)
{
    Range(1, 1);
    EXPECT_EQ("", Printed([] {
                  for (int frame = 0; frame < 4; ++frame)
                      Swap();
              }));
}

// At level 2 the frames ahead of the range and the work on the state are told of as well. Frame 0 has no
// line: it is what the last logged frame starts as.
TEST_F(FrameControl, LevelTwoTellsOfTheState)
{
    Range(2, 2);
    STraceConfig::m_debugInfo = 2;
    std::string const log = Printed([] {
        for (int frame = 0; frame < 4; ++frame)
            Swap();
    });
    std::string const call = "NEBTRACE(M) Calling function eglSwapBuffers\n";
    EXPECT_EQ(call +                                             // frame 0
                  "NEBTRACE(M) Playing... Current Frame: 1\n" +  //
                  call +                                         //
                  "NEBTRACE(M) Recording... Current Frame: 2\n"  //
                  "NEBTRACE(M) Getting Render State\n"           //
                  "NEBTRACE(M) Calling function eglMakeCurrent\n"
                  "NEBTRACE(M) Calling function eglSwapInterval\n" +
                  call +  //
                  "NEBTRACE(M) Saving Render State\n" + call,
              log);
}

// With ExitOnLastFrame the first call behind the range ends the process, with the file closed in order.
TEST_F(FrameControl, TheLastFrameCanEndTheProcess)
{
    Range(0, 0);
    STraceConfig::m_exitAfterLastFrame = true;
    STraceConfig::m_debugInfo = 1;
    Swap();
    EXPECT_EXIT(Es2::_glFlush(), testing::ExitedWithCode(1), "");
    EXPECT_EQ(Joined(SwapOf(0), Footer(0)), Written());
}

// Calls that an application's exit handler makes then do not end the process once more: they reach the host,
// and the handler comes to its end.
TEST_F(FrameControl, ExitHandlersComeToTheirEnd)
{
    Range(0, 0);
    STraceConfig::m_exitAfterLastFrame = true;
    Swap();
    auto const lastCall = [] {
        std::atexit([] {
            size_t const before = fakehost::Fake().Calls("glFlush").size();
            Es2::_glFlush();
            _exit(fakehost::Fake().Calls("glFlush").size() == before + 1 ? 42 : 43);
        });
        Es2::_glFlush();
    };
    EXPECT_EXIT(lastCall(), testing::ExitedWithCode(42), "");
}

// The text with which it does.
TEST_F(FrameControl, TheEndOfTheProcessIsAnnounced)
{
    Range(0, 0);
    STraceConfig::m_exitAfterLastFrame = true;
    STraceConfig::m_debugInfo = 1;
    Swap();
    auto const lastCall = [] {
        dup2(2, 1);  // what is printed is matched on the error stream
        Es2::_glFlush();
    };
    EXPECT_EXIT(lastCall(), testing::ExitedWithCode(1),
                "Exit. Last frame has been reached, nebtrace.cfg file ExitOnLastFrame=True");
}

// A capture is due when the range is reached from below, and never again.
TEST_F(FrameControl, TheCaptureIsTakenOnce)
{
    Range(1, 2);
    Swap();
    EXPECT_TRUE(STraceConfig::m_writeRenderState);
    Es2::_glFlush();
    EXPECT_FALSE(STraceConfig::m_writeRenderState);
    EXPECT_TRUE(STraceConfig::m_renderStateWritten);
    EXPECT_TRUE(STraceConfig::m_bDoNativeCall);
    EXPECT_FALSE(STraceConfig::m_writingRenderState);
}
