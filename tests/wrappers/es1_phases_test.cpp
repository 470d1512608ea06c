// When a snapshot covers GLES1, and where in the file it stands.
#include "tests/wrappers/es1_snapshot.h"

class Es1Phases : public Es1Snapshot
{
protected:
    Es1Phases()
    {
        STraceConfig::m_ui32StartFrame = 1;
        STraceConfig::m_ui32EndFrame = 1;
        STraceConfig::m_writeRenderState = false;
        Written();
    }

    static void Swap() { Egl::_eglSwapBuffers(nullptr, nullptr); }
    static Bytes Footer(uint64_t position) { return Joined(U8(0x13), U8(0x10), U64(position)); }
    // What has been written, the footer at its end taken off.
    Lines WrittenBut(Bytes const& footer)
    {
        Bytes written = Written();
        EXPECT_LE(footer.size(), written.size());
        if (footer.size() > written.size())
            return {};
        auto const end = written.end() - static_cast<std::ptrdiff_t>(footer.size());
        EXPECT_EQ(footer, Bytes(end, written.end()));
        written.erase(end, written.end());
        return CallsIn(written, nebtrace::Api::Es1);
    }
    static Lines Markers(Lines const& lines) { return Only(lines, {"-- 2", "-- 3", "-- 4"}); }
};

// The state stands ahead of the first call of the range, which is made only behind the questions.
TEST_F(Es1Phases, TheStateStandsAheadOfTheRange)
{
    Swap();
    Es1::_glFlush();
    Swap();
    Es1::_glFinish();
    Lines const calls = WrittenBut(Footer(0));
    EXPECT_EQ(Lines({"-- 2", "-- 2", "-- 3", "-- 3"}), Markers(calls));
    ASSERT_LT(3u, calls.size());
    EXPECT_EQ(Lines({"-- 3", "glFlush()"}), Lines(calls.end() - 3, calls.end() - 1));
    std::vector<std::string> const host = Fake().Names();
    auto const flush = std::find(host.begin(), host.end(), "glFlush");
    ASSERT_NE(host.end(), flush);
    EXPECT_LT(std::find(host.begin(), host.end(), "glGetTexEnvfv"), flush);
}

// With the optimisation it stands behind the range, and its position in the footer. It is the state of the
// range's begin, and leaves nothing out.
TEST_F(Es1Phases, AnOptimisedStateStandsBehindTheRange)
{
    STraceConfig::m_optimizationRS = true;
    BindTexture(9);
    Image(0, 1);
    HostAnswers(0x0BC1, 0x0206);
    Swap();
    Es1::_glFlush();
    HostAnswers(0x0BC1, 0x0201);
    Image(1, 2);
    Swap();
    uint64_t const recorded = CTraceRecordManager::m_uBytesWritten;
    Printed([] { Es1::_glFinish(); });
    Lines const calls = WrittenBut(Footer(recorded));
    Lines const names = NamesOf(calls);
    ASSERT_LT(4u, names.size());
    EXPECT_EQ(Lines({"glFlush", "glTexImage2D", "eglSwapBuffers", "-- 2"}),
              Lines(names.begin(), names.begin() + 4));
    EXPECT_EQ("-- 3", names.back());
    EXPECT_EQ(Lines({"glAlphaFunc(func = GL_GEQUAL, ref = 0)"}), Only(calls, {"glAlphaFunc"}));
    EXPECT_EQ(2u, Only(calls, {"glTexImage2D"}).size());  // the recorded one, and that of the state
}

// An application that used GLES2 as well has no call of GLES1 in its state, nor is the GLES1 host asked.
TEST_F(Es1Phases, WithGles2NothingOfGles1IsInTheState)
{
    STraceConfig::m_bEGLUsed = false;
    BindTexture(9);
    Image(0, 1);
    Es2::_glFlush();
    EXPECT_TRUE(STraceConfig::m_bES1Used);
    EXPECT_TRUE(STraceConfig::m_bES2Used);
    Fake().Forget();
    Capture();
    for (Call const& call : Fake().Calls())
        EXPECT_NE("es1", call.api) << call.name;
    STraceConfig::m_bDoNativeCall = false;
    CTraceRecordManager::saveRenderStatePhase2(false, false);
    STraceConfig::m_bDoNativeCall = true;
    Lines const calls = CallsIn(Written(), nebtrace::Api::Es2);
    EXPECT_EQ(Lines({"-- 4", "-- 4"}), Markers(calls));
    EXPECT_EQ(Lines(), Only(calls, {"glMatrixMode", "glTexImage2D", "glAlphaFunc"}));
}

// GLES1 that was not used is not covered.
TEST_F(Es1Phases, WithoutGles1NothingOfItIsInTheState)
{
    STraceConfig::m_bES1Used = false;
    EXPECT_EQ(Lines(), Taken());
}

// The state is asked of EGL first, then of GLES1, and written in that order.
TEST_F(Es1Phases, EglComesFirst)
{
    STraceConfig::m_bEGLUsed = true;
    Fake().Forget();
    Lines const calls = Taken();
    std::vector<Call> const asked = Fake().Calls();
    ASSERT_LT(6u, asked.size());
    for (size_t i = 0; i < 6; ++i)
        EXPECT_EQ(i < 5 ? "egl" : "es1", asked[i].api) << asked[i].name;
    EXPECT_EQ(Lines({"-- 2", "-- 2", "-- 3", "-- 3"}), Markers(calls));
}

// A recording from the first frame on has no capture. With the optimisation the state is written behind it
// all the same, as it was made, and the footer's position is 0.
TEST_F(Es1Phases, AStateThatWasNeverCapturedIsThatOfANewContext)
{
    STraceConfig::m_ui32StartFrame = 0;
    STraceConfig::m_ui32EndFrame = 0;
    STraceConfig::m_optimizationRS = true;
    STraceConfig::m_bEGLUsed = false;
    HostAnswers(0x0BC1, 0x0206);
    Es1::_glFlush();
    Swap();
    Printed([] { Es1::_glFinish(); });
    Lines const calls = WrittenBut(Footer(0));
    EXPECT_EQ(Lines({"glFlush", "eglSwapBuffers", "-- 3"}), NamesOf(Lines(calls.begin(), calls.begin() + 3)));
    EXPECT_EQ(Lines({"glAlphaFunc(func = GL_ALWAYS, ref = 0)"}), Only(calls, {"glAlphaFunc"}));
    EXPECT_EQ(Lines({"glEnable(cap = GL_DITHER)", "glEnable(cap = GL_MULTISAMPLE)"}),
              Only(calls, {"glEnable"}));
    EXPECT_EQ("-- 3", calls.back());
}

// A second capture replaces the first.
TEST_F(Es1Phases, ASecondCaptureReplacesTheFirst)
{
    BindTexture(9);
    Image(0, 1);
    EXPECT_EQ(1u, Only(Taken(), {"glTexImage2D"}).size());
    State().m_sTexImageTextures.removeElement(9);
    EXPECT_EQ(0u, Only(Taken(), {"glTexImage2D"}).size());
}
