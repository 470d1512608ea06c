// When the state is captured and written, which APIs it covers, and where in the file it stands.
#include "tests/wrappers/es2_snapshot.h"

class RenderStatePhases : public Es2Snapshot
{
protected:
    RenderStatePhases() { STraceConfig::m_bES2Used = false; }

    static void Swap() { Egl::_eglSwapBuffers(nullptr, nullptr); }
    static void Range(uint32_t start, uint32_t end)
    {
        STraceConfig::m_ui32StartFrame = start;
        STraceConfig::m_ui32EndFrame = end;
    }
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
        return CallsIn(written, nebtrace::Api::Es2);
    }
    // The markers that both phases at once leave.
    Lines Markers()
    {
        Lines marks;
        for (std::string const& line : Taken())
            if (line == "-- 2" || line == "-- 4")
                marks.push_back(line);
        return marks;
    }
};

// A snapshot covers the APIs that were used, EGL ahead of GLES2.
TEST_F(RenderStatePhases, CoverTheApisThatWereUsed)
{
    STraceConfig::m_bEGLUsed = false;
    STraceConfig::m_bES2Used = false;
    EXPECT_EQ(Lines(), Markers());
    STraceConfig::m_bEGLUsed = true;
    EXPECT_EQ(Lines({"-- 2", "-- 2"}), Markers());
    STraceConfig::m_bES2Used = true;
    EXPECT_EQ(Lines({"-- 2", "-- 2", "-- 4", "-- 4"}), Markers());
    STraceConfig::m_bEGLUsed = false;
    EXPECT_EQ(Lines({"-- 4", "-- 4"}), Markers());
}

// GLES3, should it be used one day, is covered as GLES2 is.
TEST_F(RenderStatePhases, CoverGles3AsGles2)
{
    STraceConfig::m_bEGLUsed = false;
    STraceConfig::m_bES2Used = false;
    STraceConfig::m_bES3Used = true;
    EXPECT_EQ(Lines({"-- 4", "-- 4"}), Markers());
    STraceConfig::m_bES3Used = false;
}

// EGL is asked ahead of GLES2, whose state takes its version over.
TEST_F(RenderStatePhases, AskEglAheadOfGles2)
{
    STraceConfig::m_bEGLUsed = true;
    STraceConfig::m_bES2Used = true;
    Fake().On("eglQueryContext", [](Call const& call) { *call.Pointer<EGLint>(3) = 3; });
    Fake().Forget();
    Capture();
    std::vector<Call> const asked = Fake().Calls();
    ASSERT_LT(6u, asked.size());
    for (size_t i = 0; i < asked.size(); ++i)
        EXPECT_EQ(i < 5 ? "egl" : "es2", asked[i].api) << asked[i].name;
    EXPECT_EQ(3, CTraceRecordManager::m_Es2FileStateLastGet.m_usClientVersion);
}

// The position is that of the state's first byte; without being asked to keep it, it is 0.
TEST_F(RenderStatePhases, ThePositionIsWhereTheStateBegins)
{
    STraceConfig::m_bEGLUsed = true;
    STraceConfig::m_bES2Used = false;
    Record();
    Es2::_glFlush();  // 10 bytes
    Written();
    STraceConfig::m_bDoNativeCall = false;
    CTraceRecordManager::saveRenderStatePhase2(true, true);
    EXPECT_EQ(Lines({"-- 2", "eglMakeCurrent", "eglSwapInterval", "-- 2"}), NamesOf(WrittenBut(Footer(10))));
    CTraceRecordManager::saveRenderStatePhase2(false, true);
    EXPECT_EQ("-- 2", WrittenBut(Footer(0)).back());
    CTraceRecordManager::saveRenderStatePhase2(true, false);
    EXPECT_EQ("-- 2", WrittenBut(Bytes()).back());
}

// Without the optimisation the state stands ahead of the first call of the range, which is made only then:
// the host is asked ahead of it.
TEST_F(RenderStatePhases, TheStateStandsAheadOfTheRange)
{
    Range(1, 1);
    Swap();
    Fake().Forget();
    Es2::_glFlush();
    std::vector<std::string> const host = Fake().Names();
    ASSERT_LT(2u, host.size());
    EXPECT_EQ("eglGetCurrentContext", host.front());
    EXPECT_EQ("glFlush", host[host.size() - 2]);  // and the question for its error
    Swap();
    Swap();
    EXPECT_EQ(Lines({"-- 2", "eglMakeCurrent", "eglSwapInterval", "-- 2", "glFlush", "eglSwapBuffers"}),
              NamesOf(WrittenBut(Footer(0))));
}

// With it the state stands behind the range. It is that of the first frame: what was uploaded since is not in
// it; and it leaves out what no recorded draw used.
TEST_F(RenderStatePhases, AnOptimisedStateIsThatOfTheStartWithWhatWasUsed)
{
    Range(1, 1);
    STraceConfig::m_optimizationRS = true;
    STraceConfig::m_bES2Used = true;
    for (GLuint name : {8u, 9u})
    {
        BindTexture(name);
        Image(GL_TEXTURE_2D, 0, 1);
    }
    Buffer(GL_ARRAY_BUFFER, 11, {1, 2});
    Swap();
    Es2::_glDrawArrays(GL_POINTS, 0, 1);  // the host has texture 9 and buffer 11 bound
    GLubyte const later[] = {3, 4, 5};
    Es2::_glBufferData(GL_ARRAY_BUFFER, 3, later, GL_STATIC_DRAW);
    Swap();
    std::string const log = Printed([] { Swap(); });
    EXPECT_EQ("NEBTRACE(M) Texture not used: 8. Ignored\n", log);
    Bytes const written = Written();
    uint64_t const position = written[written.size() - 8] + 256u * written[written.size() - 7];
    ASSERT_LT(position, written.size());
    auto const state = written.begin() + static_cast<std::ptrdiff_t>(position);
    EXPECT_EQ(Joined(U32(0), U16(2)), Bytes(state, state + 6));
    Bytes const footer = Footer(position);
    EXPECT_EQ(footer, Bytes(written.end() - 10, written.end()));
    Lines const calls = CallsIn(Bytes(state, written.end() - 10), nebtrace::Api::Es2);
    EXPECT_EQ(Lines({"glGenTextures(n = 1, textures = {9})",
                     "glBufferData(target = GL_ARRAY_BUFFER, size = 2, data = {1, 2}, usage = "
                     "GL_STATIC_DRAW)"}),
              Only(calls, {"glGenTextures", "glBufferData"}));
}

// A range that ends before it begins writes the states as they were constructed, if at the end at all.
TEST_F(RenderStatePhases, AnInvertedRangeWritesConstructedStates)
{
    Range(2, 1);
    STraceConfig::m_optimizationRS = true;
    Fake().Result("eglGetDisplay", 1u);
    Egl::_eglGetDisplay(5, nullptr);
    Swap();
    Swap();
    Fake().Result("eglGetCurrentDisplay", 1u);
    Fake().Forget();
    Swap();
    EXPECT_EQ(0u, HostCalls("eglGetCurrentContext"));  // nothing was captured
    Lines const expected = {
        "-- 2",
        "eglMakeCurrent(dpy = 0x0, draw = 0x0, read = 0x0, ctx = 0x0, config = 0x0, config_attribs = ",
        "eglSwapInterval(dpy = 0x0, interval = 1) = EGL_TRUE", "-- 2"};
    Lines const calls = WrittenBut(Footer(0));
    ASSERT_EQ(expected.size(), calls.size());
    for (size_t i = 0; i < calls.size(); ++i)
        EXPECT_EQ(0u, calls[i].find(expected[i])) << calls[i];
}

// From frame 0 on nothing is ahead of the range: no API is marked, nothing is captured, and with the
// optimisation nothing but a footer stands behind it.
TEST_F(RenderStatePhases, AFileFromFrameZeroHasNoState)
{
    for (bool const optimise : {false, true})
    {
        ResetSettings();
        Range(0, 0);
        STraceConfig::m_optimizationRS = optimise;
        Fake().Forget();
        Es2::_glFlush();
        Swap();
        Es2::_glFlush();
        EXPECT_EQ(Lines({"glFlush", "eglSwapBuffers"}), NamesOf(WrittenBut(Footer(0))));
        EXPECT_FALSE(STraceConfig::m_bEGLUsed || STraceConfig::m_bES2Used);
        EXPECT_EQ(0u, HostCalls("eglGetCurrentContext"));
    }
}

// Calls behind the footer reach the host; neither the file nor the shadow hears of them.
TEST_F(RenderStatePhases, BehindTheFooterCallsGoOn)
{
    Range(1, 1);
    Swap();
    Swap();
    Es2::_glFlush();
    Written();
    Fake().Forget();
    Buffer(GL_ARRAY_BUFFER, 11, {1});
    Swap();
    Es2::_glFlush();
    EXPECT_EQ(1u, HostCalls("glBufferData"));
    EXPECT_EQ(1u, HostCalls("eglSwapBuffers"));
    EXPECT_EQ(1u, HostCalls("glFlush"));
    EXPECT_EQ(0u, HostCalls("eglGetCurrentContext"));
    EXPECT_EQ(Bytes(), Written());
    EXPECT_EQ(0, State().m_sBufferDatas.Count());
    EXPECT_TRUE(STraceConfig::m_bDoNativeCall);
    EXPECT_FALSE(STraceConfig::m_writingRenderState);
}

// Behind the range, while a snapshot is being written, a call is recorded and closes nothing.
TEST_F(RenderStatePhases, WhileTheStateIsWrittenNothingIsClosed)
{
    Range(0, 0);
    STraceConfig::m_ui32CurrentFrame = 1;
    STraceConfig::m_writingRenderState = true;
    EXPECT_TRUE(STraceConfig::OffLineControl());
    EXPECT_FALSE(STraceConfig::m_fileClosed);
    EXPECT_EQ(Bytes(), Written());
}

// With recording off, or prevented, no frame control runs: nothing becomes due and nothing is closed.
TEST_F(RenderStatePhases, WithoutRecordingThereIsNoFrameControl)
{
    for (bool* const off : {&STraceConfig::m_recordEnable, &STraceConfig::m_bPreventSaving})
    {
        ResetSettings();
        Range(1, 1);
        *off = !*off;
        Es2::_glFlush();
        EXPECT_FALSE(STraceConfig::m_writeRenderState);
        STraceConfig::m_ui32CurrentFrame = 2;
        Es2::_glFlush();
        EXPECT_FALSE(STraceConfig::m_fileClosed);
    }
    EXPECT_EQ(Bytes(), Written());
}

// The work on the state is told of at level 2 in both layouts, and never at level 1.
TEST_F(RenderStatePhases, TheWorkIsToldOfAtLevelTwo)
{
    for (int const level : {1, 2})
    {
        ResetSettings();
        Range(1, 1);
        STraceConfig::m_optimizationRS = true;
        STraceConfig::m_debugInfo = level;
        std::string const log = Printed([] {
            for (int frame = 0; frame < 3; ++frame)
                Swap();
        });
        EXPECT_EQ(level == 2, log.find("NEBTRACE(M) Getting Render State\n") != std::string::npos);
        EXPECT_EQ(level == 2, log.find("NEBTRACE(M) Saving Render State\n") != std::string::npos);
    }
}
