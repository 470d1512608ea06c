// What reaches the host around a draw, for each switch and in both APIs.
#include "tests/wrappers/profiler_overrides.h"

namespace
{

INSTANTIATE_TEST_SUITE_P(Gles, OverridesOfEach, testing::Values("es1", "es2"),
                         [](auto const& info) { return std::string(info.param); });

// Without a switch a draw is what the application made of it, whatever is recorded of the context.
TEST_P(OverridesOfEach, WithoutASwitchADrawGoesOutAlone)
{
    Enables() = {true, true, true, true, true, true, true};
    Context().textures[0][0].name = 5;
    Context().texturesEs1[0].name = 5;
    EXPECT_EQ(Bare(), Drawn());
}

// The viewport is asked for ahead of each draw, so that the application's is back behind it.
TEST_P(OverridesOfEach, TheViewportIsZeroWhileADrawRuns)
{
    CProfiler::m_ForceViewport = true;
    for (int const first : {10, 20})
    {
        Fake().On("glGetIntegerv", [=](Call const& call) {
            for (int i = 0; i < 4; ++i)
                call.Pointer<GLint>(1)[i] = first + i;
        });
        EXPECT_EQ(Around({Host("glGetIntegerv", GL_VIEWPORT, Viewport(api)), Host("glViewport", 0, 0, 0, 0)},
                         {Host("glViewport", first, first + 1, first + 2, first + 3)}),
                  Drawn());
    }
}

// A capability that the application has on is off for the draw alone; one that it has off is left alone.
TEST_P(OverridesOfEach, CapabilitiesGoByTheRecordedState)
{
    struct Case
    {
        bool& isSwitch;
        bool CProfiler::SEnables::*enable;
        int capability;
    };
    using Enable = CProfiler::SEnables;
    Case const cases[] = {
        {CProfiler::m_DisableBlending, &Enable::bBlend, GL_BLEND},
        {CProfiler::m_DisableStencilTest, &Enable::bStencil, GL_STENCIL_TEST},
        {CProfiler::m_DisableDepthTest, &Enable::bDepth, GL_DEPTH_TEST},
        {CProfiler::m_DisableScissorTest, &Enable::bScissor, GL_SCISSOR_TEST},
    };
    for (Case const& each : cases)
    {
        SCOPED_TRACE(each.capability);
        each.isSwitch = true;
        Enables() = {true, true, true, true, true, true, true};
        EXPECT_EQ(Around({Host("glDisable", each.capability)}, {Host("glEnable", each.capability)}), Drawn());
        Enables().*each.enable = false;
        EXPECT_EQ(Bare(), Drawn());
        each.isSwitch = false;
    }
}

// Without culling nothing is culled, and an application that culls nothing sees no call.
TEST_P(OverridesOfEach, CullingIsOffForOneDraw)
{
    CProfiler::m_CullingModeSelection = CProfiler::eCullNone;
    EXPECT_EQ(Bare(), Drawn());
    Enables().bCull = true;
    EXPECT_EQ(Around({Host("glDisable", GL_CULL_FACE)}, {Host("glEnable", GL_CULL_FACE)}), Drawn());
}

// One face is culled whether the application culls or not; the face that it last named is back behind it.
TEST_P(OverridesOfEach, OneFaceIsCulledForOneDraw)
{
    Context().cullFace = Context().cullFaceEs1 = GL_FRONT_AND_BACK;
    std::map<int, GLenum> const faces = {{CProfiler::eCullBack, GL_BACK}, {CProfiler::eCullFront, GL_FRONT}};
    for (auto const& [mode, face] : faces)
    {
        CProfiler::m_CullingModeSelection = mode;
        Enables().bCull = false;
        EXPECT_EQ(Around({Host("glEnable", GL_CULL_FACE), Host("glCullFace", face)},
                         {Host("glDisable", GL_CULL_FACE), Host("glCullFace", GL_FRONT_AND_BACK)}),
                  Drawn());
        Enables().bCull = true;
        EXPECT_EQ(Around({Host("glCullFace", face)}, {Host("glCullFace", GL_FRONT_AND_BACK)}), Drawn());
    }
}

// GLES1 knows no programs: the alpha test is what discards there.
TEST_F(Overrides, AlphaTestIsOffForOneDrawOfGles1)
{
    OnlyHas("es1");
    CProfiler::m_DisableAlphaTest = true;
    EXPECT_EQ(Bare("es1"), Drawn("es1"));
    Context().enables.bAlphaTest = true;
    EXPECT_EQ(Bare("es1"), Drawn("es1"));
    Context().enablesEs1.bAlphaTest = true;
    EXPECT_EQ(Around("es1", {"es1 glDisable bc0"}, {"es1 glEnable bc0"}), Drawn("es1"));
}

// GLES1 draws as ever where GLES2 would draw in one colour.
TEST_F(Overrides, Gles1HasNoFlatColour)
{
    OnlyHas("es1");
    CProfiler::m_ForceFlatColourFrag = true;
    Context().m_Programs[3].flatProgram = 103;
    Context().currentProgram = 3;
    EXPECT_EQ(Bare("es1"), Drawn("es1"));
}

// The program's own alternate draws, and the application's program is in use again behind it.
TEST_F(Overrides, AlternateProgramsDraw)
{
    OnlyHas("es2");
    Context().enables.bAlphaTest = true;
    Context().currentProgram = 3;
    CProfiler::SProgram& program = Context().m_Programs[3];
    program.flatProgram = 0x67;
    program.noDiscardProgram = 0x68;
    CProfiler::m_DisableAlphaTest = true;
    EXPECT_EQ(Around("es2", {"es2 glUseProgram 68"}, {"es2 glUseProgram 3"}), Drawn("es2"));
    CProfiler::m_ForceFlatColourFrag = true;
    EXPECT_EQ(Around("es2", {"es2 glUseProgram 68", "es2 glUseProgram 67"}, {"es2 glUseProgram 3"}),
              Drawn("es2"));
    CProfiler::m_DisableAlphaTest = false;
    EXPECT_EQ(Around("es2", {"es2 glUseProgram 67"}, {"es2 glUseProgram 3"}), Drawn("es2"));
}

// A program of a context that objects are shared with has its alternates there.
TEST_F(Overrides, AlternatesOfASharedContextDraw)
{
    OnlyHas("es2");
    int other = 0;
    Context().shareContext = &other;
    Context().currentProgram = 3;
    Profiler().m_Contexts[&other].m_Programs[3].flatProgram = 0x67;
    CProfiler::m_ForceFlatColourFrag = true;
    EXPECT_EQ(Around("es2", {"es2 glUseProgram 67"}, {"es2 glUseProgram 3"}), Drawn("es2"));
}

// A program without alternates draws itself, and is put in use again all the same.
TEST_F(Overrides, AProgramWithoutAlternatesIsUsedAgain)
{
    OnlyHas("es2");
    Context().currentProgram = 3;
    Context().m_Programs[4].flatProgram = 0x67;
    for (bool* const item : {&CProfiler::m_DisableAlphaTest, &CProfiler::m_ForceFlatColourFrag})
    {
        *item = true;
        EXPECT_EQ(Around("es2", {}, {"es2 glUseProgram 3"}), Drawn("es2"));
        *item = false;
    }
    CProfiler::m_DisableAlphaTest = CProfiler::m_ForceFlatColourFrag = true;
    Context().currentProgram = 0;
    EXPECT_EQ(Around("es2", {}, {"es2 glUseProgram 0"}), Drawn("es2"));
}

// With every switch on the steps have one order ahead of the draw, and the same behind it; a process that has
// both libraries has each step in both, GLES2 first, whichever of them draws.
TEST_F(Overrides, AllStepsHaveOneOrder)
{
    for (int item = 0; item < CProfiler::eItemCullingMode; ++item)
        if (item != CProfiler::eItemDisableDrawCalls)
            *static_cast<bool*>(CProfiler::m_aLibraryItems[item].pData) = true;
    CProfiler::m_CullingModeSelection = CProfiler::eCullNone;
    Context().enables = Context().enablesEs1 = {true, true, true, true, true, true, true};
    Context().tex2x2Es2 = 0x21;
    Context().texCube2x2Es2 = 0x22;
    Context().tex2x2Es1 = 0x11;
    Context().textures[0][0] = {5, GL_LINEAR, GL_NEAREST, false};
    Context().texturesEs1[0] = {6, GL_LINEAR, GL_NEAREST, false};
    Context().currentProgram = 3;
    Context().m_Programs[3].flatProgram = 0x67;
    Context().m_Programs[3].noDiscardProgram = 0x68;
    Lines const before = {
        Line("es2", "glGetIntegerv", GL_VIEWPORT, Viewport("es2")),
        "es2 glViewport 0 0 0 0",
        Line("es1", "glGetIntegerv", GL_VIEWPORT, Viewport("es1")),
        "es1 glViewport 0 0 0 0",
        "es2 glDisable be2",  // GL_BLEND
        "es1 glDisable be2",
        "es2 glDisable b90",  // GL_STENCIL_TEST
        "es1 glDisable b90",
        "es2 glDisable b71",  // GL_DEPTH_TEST
        "es1 glDisable b71",
        "es2 glDisable c11",  // GL_SCISSOR_TEST
        "es1 glDisable c11",
        "es2 glDisable b44",  // GL_CULL_FACE
        "es1 glDisable b44",
        "es2 glActiveTexture 84c0",
        "es2 glBindTexture de1 21",
        "es2 glTexParameteri de1 2801 2601",
        "es2 glTexParameteri de1 2800 2600",
        "es2 glActiveTexture 84c0",
        "es1 glActiveTexture 84c0",
        "es1 glBindTexture de1 11",
        "es1 glTexParameteri de1 2801 2601",
        "es1 glTexParameteri de1 2800 2600",
        "es1 glActiveTexture 84c0",
        "es2 glActiveTexture 84c0",
        "es2 glTexParameteri de1 2801 2600",
        "es2 glTexParameteri de1 2800 2600",
        "es2 glActiveTexture 84c0",
        "es1 glActiveTexture 84c0",
        "es1 glTexParameteri de1 2801 2600",
        "es1 glTexParameteri de1 2800 2600",
        "es1 glActiveTexture 84c0",
        "es2 glUseProgram 68",
        "es1 glDisable bc0",  // the alpha test
        "es2 glUseProgram 67",
    };
    Lines const behind = {
        "es2 glViewport 0 0 0 0",
        "es1 glViewport 0 0 0 0",
        "es2 glEnable be2",
        "es1 glEnable be2",
        "es2 glEnable b90",
        "es1 glEnable b90",
        "es2 glEnable b71",
        "es1 glEnable b71",
        "es2 glEnable c11",
        "es1 glEnable c11",
        "es2 glEnable b44",
        "es1 glEnable b44",
        "es2 glActiveTexture 84c0",
        "es2 glBindTexture de1 5",
        "es2 glActiveTexture 84c0",
        "es1 glActiveTexture 84c0",
        "es1 glBindTexture de1 6",
        "es1 glActiveTexture 84c0",
        "es2 glActiveTexture 84c0",
        "es2 glTexParameteri de1 2801 2601",
        "es2 glTexParameteri de1 2800 2600",
        "es2 glActiveTexture 84c0",
        "es1 glActiveTexture 84c0",
        "es1 glTexParameteri de1 2801 2601",
        "es1 glTexParameteri de1 2800 2600",
        "es1 glActiveTexture 84c0",
        "es1 glEnable bc0",
        "es2 glUseProgram 3",
    };
    EXPECT_EQ(Around("es2", before, behind), Drawn("es2"));
    EXPECT_EQ(Around("es1", before, behind), Drawn("es1"));
}

// The two libraries of one driver may act on one and the same context. What GLES1 finds there is then what
// the override has just set, and what it has recorded is what it puts back last.
TEST_F(Overrides, OneContextBehindBothLibrariesKeepsTheZeroViewport)
{
    CProfiler::m_ForceViewport = true;
    GLint viewport[4] = {0, 0, 640, 480};
    Fake().On("glGetIntegerv",
              [&](Call const& call) { std::memcpy(call.Pointer<GLint>(1), viewport, sizeof viewport); });
    Fake().On("glViewport", [&](Call const& call) {
        for (size_t i = 0; i < 4; ++i)
            viewport[i] = call.Argument<GLint>(i);
    });
    EXPECT_EQ(Around("es2",
                     {Line("es2", "glGetIntegerv", GL_VIEWPORT, Viewport("es2")), "es2 glViewport 0 0 0 0",
                      Line("es1", "glGetIntegerv", GL_VIEWPORT, Viewport("es1")), "es1 glViewport 0 0 0 0"},
                     {"es2 glViewport 0 0 280 1e0", "es1 glViewport 0 0 0 0"}),
              Drawn("es2"));
}

// A context that was made before profiling began has no record, and nothing to go by.
TEST_F(Overrides, WithoutAKnownContextNothingIsChanged)
{
    CProfiler::m_ForceViewport = CProfiler::m_ForceFlatColourFrag = true;
    int unknown = 0;
    for (void* const current : {static_cast<void*>(&unknown), static_cast<void*>(nullptr)})
    {
        Profiler().m_pCurrentContext = current;
        EXPECT_EQ(Bare("es2"), Drawn("es2"));
    }
    EXPECT_EQ(1, Profiler().m_Contexts.Count());
}

// A profiler that has been destroyed, while a thread was inside a draw, does nothing any more.
TEST_F(Overrides, AnEndedProfilerChangesNothing)
{
    CProfiler::m_ForceViewport = true;
    CProfiler ended;
    ended.m_pCurrentContext = &ended;
    ended.m_Contexts[&ended];
    ended.PreDrawCall();
    ended.PostDrawCall();
    EXPECT_TRUE(Fake().Calls().empty());
}

// A library that could not be loaded, or lacks an entry and was closed again, has nothing to call.
TEST_F(Overrides, LibrariesThatAreNotThereAreLeftOut)
{
    CProfiler::m_ForceViewport = CProfiler::m_ForceFlatColourFrag = true;
    OnlyHas("es2");
    STraceConfig::Instance().m_es1LibraryPath = "none.so";
    Printed(&Es1Host);
    EXPECT_TRUE(Es1IsInit());
    EXPECT_EQ(Around("es2",
                     {Line("es2", "glGetIntegerv", GL_VIEWPORT, Viewport("es2")), "es2 glViewport 0 0 0 0"},
                     {"es2 glViewport 0 0 0 0", "es2 glUseProgram 0"}),
              Drawn("es2"));
    ForgetHosts();
    STraceConfig::Instance().m_es1LibraryPath = FakeLibrary("fakeGLESv1").c_str();
    STraceConfig::Instance().m_es2LibraryPath = FakeLibrary("fakeGLESv2_without_glViewport").c_str();
    Printed([] {
        Es1Host();
        Es2Host();
    });
    EXPECT_TRUE(Es2IsInit());
    EXPECT_EQ(Around("es1",
                     {Line("es1", "glGetIntegerv", GL_VIEWPORT, Viewport("es1")), "es1 glViewport 0 0 0 0"},
                     {"es1 glViewport 0 0 0 0"}),
              Drawn("es1"));
}

}  // namespace
