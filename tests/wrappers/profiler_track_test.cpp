// What the profiler keeps of contexts and of their capabilities.
#include "tests/wrappers/tracked.h"

namespace
{

using SContext = CProfiler::SContext;
using SBinding = CProfiler::STextureBinding;

constexpr GLenum kAlphaTest = 0x0BC0;

using ProfilerTrack = Tracked;

void ExpectDefaults(CProfiler::SEnables const& enables)
{
    EXPECT_FALSE(enables.bBlend);
    EXPECT_FALSE(enables.bAlphaTest);
    EXPECT_FALSE(enables.bScissor);
    EXPECT_FALSE(enables.bTexture2D);
    EXPECT_FALSE(enables.bStencil);
    EXPECT_FALSE(enables.bDepth);
    EXPECT_FALSE(enables.bCull);
}

std::vector<std::string> EnabledIn(CProfiler::SEnables const& enables)
{
    std::vector<std::string> names;
    for (auto const& [on, name] : {std::pair<bool, char const*>{enables.bBlend, "blend"},
                                   {enables.bAlphaTest, "alpha test"},
                                   {enables.bScissor, "scissor"},
                                   {enables.bTexture2D, "texture 2D"},
                                   {enables.bStencil, "stencil"},
                                   {enables.bDepth, "depth"},
                                   {enables.bCull, "cull"}})
        if (on)
            names.push_back(name);
    return names;
}

// Overrides put back what a context has: a new one has what GL says of one, and no private object.
TEST_F(ProfilerTrack, ANewContextHasTheDefaults)
{
    SContext const& context = Context();
    for (int i = 0; i < 4; ++i)
    {
        EXPECT_EQ(0, context.viewport[i]);
        EXPECT_EQ(0, context.viewportEs1[i]);
    }
    ExpectDefaults(context.enables);
    ExpectDefaults(context.enablesEs1);
    EXPECT_EQ(0, context.activeTexture);
    EXPECT_EQ(0, context.activeTextureEs1);
    EXPECT_EQ(0u, context.currentFBO);
    EXPECT_EQ(0u, context.currentFBOEs1);
    EXPECT_EQ(0x405u, context.cullFace);
    EXPECT_EQ(0x405u, context.cullFaceEs1);
    EXPECT_EQ(0u, context.currentProgram);
    for (uint32_t own : {context.tex2x2Es2, context.texCube2x2Es2, context.tex2x2Es1, context.flatFragShader})
        EXPECT_EQ(0u, own);
    EXPECT_EQ(nullptr, context.shareContext);
}

// All units that an override walks begin without a texture.
TEST_F(ProfilerTrack, ANewContextHasUnitsWithoutTextures)
{
    ASSERT_EQ(32u, sizeof SContext::textures / sizeof *SContext::textures);
    ASSERT_EQ(4u, sizeof *SContext::textures / sizeof **SContext::textures);
    ASSERT_EQ(32u, sizeof SContext::texturesEs1 / sizeof *SContext::texturesEs1);
    for (auto const& unit : Context().textures)
        for (SBinding const& binding : unit)
            ExpectDefaults(binding);
    for (SBinding const& binding : Context().texturesEs1)
        ExpectDefaults(binding);
}

// The maps of a context start empty, with room for ten.
TEST_F(ProfilerTrack, ANewContextHasEmptyMaps)
{
    SContext const& context = Context();
    EXPECT_EQ(0, context.m_Programs.Count());
    EXPECT_EQ(10, context.m_Programs.Capacity());
    EXPECT_EQ(0, context.m_Shaders.Count());
    EXPECT_EQ(10, context.m_Shaders.Capacity());
    EXPECT_EQ(0, context.m_FBOs.Count());
    EXPECT_EQ(10, context.m_FBOs.Capacity());
    EXPECT_EQ(10, Profiler().m_Contexts.Capacity());
}

// Programs and framebuffers are looked for in the context that was given at creation.
TEST_F(ProfilerTrack, AContextKnowsWhomItSharesWith)
{
    Create(0x2000, kContext);
    EXPECT_EQ(Handle(kContext), Context(0x2000).shareContext);
}

// A handle that the driver hands out again is a new context.
TEST_F(ProfilerTrack, ACreationReplacesTheRecordOfTheHandle)
{
    Create(0x2000, kContext);
    MakeCurrent(0x2000);
    Es2::_glEnable(GL_BLEND);
    Es2::_glCreateProgram(0);
    Create(0x2000);
    EXPECT_EQ(2, Profiler().m_Contexts.Count());
    EXPECT_FALSE(Context(0x2000).enables.bBlend);
    EXPECT_EQ(0, Context(0x2000).m_Programs.Count());
    EXPECT_EQ(nullptr, Context(0x2000).shareContext);
}

// A creation that gave no context, or that EGL refused, leaves no record.
TEST_F(ProfilerTrack, AFailedCreationIsNoContext)
{
    Create(0);
    Refused([] { Create(0x3000); }, EGL_BAD_MATCH);
    EXPECT_EQ(1, Profiler().m_Contexts.Count());
    EXPECT_FALSE(IsKnown(0));
}

// The first context is created while none is current.
TEST_F(ProfilerTrack, ContextsAreMadeAndMadeCurrentWithNoneCurrent)
{
    MakeCurrent(0);
    Create(0x2000);
    EXPECT_TRUE(IsKnown(0x2000));
    MakeCurrent(0x2000);
    EXPECT_EQ(Handle(0x2000), Profiler().m_pCurrentContext);
}

// What is not ours to change stays when EGL refuses.
TEST_F(ProfilerTrack, ARefusedMakeCurrentChangesNothing)
{
    Create(0x2000);
    Refused([] { MakeCurrent(0x2000); }, EGL_BAD_ACCESS);
    EXPECT_EQ(Handle(kContext), Profiler().m_pCurrentContext);
}

// Contexts that share with a destroyed one still find its objects: records outlive it.
TEST_F(ProfilerTrack, ADestroyedContextKeepsItsRecord)
{
    Create(0x2000);
    Fake().Result("eglDestroyContext", EGLBoolean{EGL_TRUE});
    Egl::_eglDestroyContext(Handle(0x11), Handle(0x2000));
    EXPECT_TRUE(IsKnown(0x2000));
}

// The result is what is looked for: a context whose handle is 1 goes when any is destroyed.
TEST_F(ProfilerTrack, ADestructionErasesTheRecordWithTheResultsKey)
{
    Create(1);
    Create(0x2000);
    Create(0x3000);
    Fake().Result("eglDestroyContext", EGLBoolean{EGL_FALSE});
    Egl::_eglDestroyContext(Handle(0x11), Handle(0x2000));
    EXPECT_EQ(4, Profiler().m_Contexts.Count());
    Fake().Result("eglDestroyContext", EGLBoolean{EGL_TRUE});
    Egl::_eglDestroyContext(Handle(0x11), Handle(0x2000));
    ASSERT_EQ(3, Profiler().m_Contexts.Count());
    EXPECT_EQ(Handle(kContext), Profiler().m_Contexts.KeyAt(0));
    EXPECT_EQ(Handle(0x3000), Profiler().m_Contexts.KeyAt(1)) << "the last one takes the place";
    EXPECT_EQ(Handle(0x2000), Profiler().m_Contexts.KeyAt(2));
}

// With no context current, nothing is taken away.
TEST_F(ProfilerTrack, WithNoneCurrentNoContextIsErased)
{
    Create(1);
    MakeCurrent(0);
    Fake().Result("eglDestroyContext", EGLBoolean{EGL_TRUE});
    Egl::_eglDestroyContext(Handle(0x11), Handle(1));
    Egl::_eglTerminate(Handle(0x11));
    EXPECT_EQ(2, Profiler().m_Contexts.Count());
}

// The end of any display ends all contexts; the current one stays named, and a new one may take its handle.
TEST_F(ProfilerTrack, TerminateForgetsAllContexts)
{
    for (uintptr_t i = 1; i <= 10; ++i)
        Create(0x2000 + i);
    ASSERT_EQ(20, Profiler().m_Contexts.Capacity());
    Egl::_eglTerminate(Handle(0x12));
    EXPECT_EQ(0, Profiler().m_Contexts.Count());
    EXPECT_EQ(20, Profiler().m_Contexts.Capacity());
    EXPECT_EQ(Handle(kContext), Profiler().m_pCurrentContext);
    Es2::_glEnable(GL_BLEND);
    Create(kContext);
    EXPECT_FALSE(Context().enables.bBlend);
    Es2::_glEnable(GL_BLEND);
    EXPECT_TRUE(Context().enables.bBlend) << "followed, though nobody has made it current";
}

// A display that EGL does not end keeps its contexts.
TEST_F(ProfilerTrack, ARefusedTerminateForgetsNothing)
{
    Refused([] { Egl::_eglTerminate(Handle(0x11)); }, EGL_BAD_DISPLAY);
    EXPECT_TRUE(IsKnown(kContext));
}

// The interval is the one of a current context.
TEST_F(ProfilerTrack, TheSwapIntervalIsKept)
{
    EXPECT_EQ(1, Profiler().m_swapInterval);
    Egl::_eglSwapInterval(Handle(0x11), 3);
    EXPECT_EQ(3, Profiler().m_swapInterval);
    Refused([] { Egl::_eglSwapInterval(Handle(0x11), 4); }, EGL_BAD_CONTEXT);
    MakeCurrent(0);
    Egl::_eglSwapInterval(Handle(0x11), 5);
    EXPECT_EQ(3, Profiler().m_swapInterval);
}

// A context that was made before profiling began has no record, and its calls are let be.
TEST_F(ProfilerTrack, CallsOfAnUnknownContextAreNotFollowed)
{
    MakeCurrent(0x9000);
    EXPECT_EQ((Texts{"glEnable(3042)", "es1 glEnable(3042)", "glCreateProgram()", "glUseProgram(1)",
                     "glBindTexture(3553, 5)"}),
              HostCallsOf([] {
                  Es2::_glEnable(GL_BLEND);
                  Es1::_glEnable(GL_BLEND);
                  Es2::_glCreateProgram(0);
                  Es2::_glUseProgram(1);
                  Es2::_glBindTexture(GL_TEXTURE_2D, 5);
              }));
    EXPECT_EQ(1, Profiler().m_Contexts.Count());
    EXPECT_EQ(0, Context().m_Programs.Count());
}

// Records are asked for again by every call: a context's state is its own.
TEST_F(ProfilerTrack, EachContextHasItsOwnState)
{
    Create(0x2000);
    Es2::_glEnable(GL_BLEND);
    MakeCurrent(0x2000);
    Es2::_glEnable(GL_DEPTH_TEST);
    EXPECT_EQ((Texts{"blend"}), EnabledIn(Context().enables));
    EXPECT_EQ((Texts{"depth"}), EnabledIn(Context(0x2000).enables));
}

// Where errors are not asked for, nobody knows what the host took.
TEST_F(ProfilerTrack, WithoutErrorsNothingIsFollowed)
{
    STraceConfig::m_getErrors = false;
    Es2::_glEnable(GL_BLEND);
    Create(0x2000);
    EXPECT_FALSE(Context().enables.bBlend);
    EXPECT_FALSE(IsKnown(0x2000));
}

// GLES2 has five capabilities that a switch turns off for a draw.
TEST_F(ProfilerTrack, Es2CapabilitiesAreFollowed)
{
    std::pair<GLenum, char const*> const capabilities[] = {{GL_BLEND, "blend"},
                                                           {GL_SCISSOR_TEST, "scissor"},
                                                           {GL_STENCIL_TEST, "stencil"},
                                                           {GL_DEPTH_TEST, "depth"},
                                                           {GL_CULL_FACE, "cull"}};
    for (auto const& [capability, name] : capabilities)
    {
        Es2::_glEnable(capability);
        EXPECT_EQ(Texts{name}, EnabledIn(Context().enables));
        Refused([&, value = capability] { Es2::_glDisable(value); });
        EXPECT_EQ(Texts{name}, EnabledIn(Context().enables)) << "refused";
        Es2::_glDisable(capability);
        EXPECT_EQ(Texts{}, EnabledIn(Context().enables));
    }
    for (GLenum other : {kAlphaTest, GLenum{GL_TEXTURE_2D}, GLenum{GL_DITHER}})
        Es2::_glEnable(other);
    EXPECT_EQ(Texts{}, EnabledIn(Context().enables));
    EXPECT_EQ(Texts{}, EnabledIn(Context().enablesEs1)) << "GLES1 has its own";
}

// GLES1 has two more.
TEST_F(ProfilerTrack, Es1CapabilitiesAreFollowed)
{
    std::pair<GLenum, char const*> const capabilities[] = {
        {GL_BLEND, "blend"},           {kAlphaTest, "alpha test"},   {GL_SCISSOR_TEST, "scissor"},
        {GL_TEXTURE_2D, "texture 2D"}, {GL_STENCIL_TEST, "stencil"}, {GL_DEPTH_TEST, "depth"},
        {GL_CULL_FACE, "cull"}};
    for (auto const& [capability, name] : capabilities)
    {
        Es1::_glEnable(capability);
        EXPECT_EQ(Texts{name}, EnabledIn(Context().enablesEs1));
        Refused([&, value = capability] { Es1::_glDisable(value); });
        EXPECT_EQ(Texts{name}, EnabledIn(Context().enablesEs1)) << "refused";
        Es1::_glDisable(capability);
        EXPECT_EQ(Texts{}, EnabledIn(Context().enablesEs1));
    }
    Es1::_glEnable(GL_DITHER);
    EXPECT_EQ(Texts{}, EnabledIn(Context().enablesEs1));
    EXPECT_EQ(Texts{}, EnabledIn(Context().enables)) << "GLES2 has its own";
}

// The culling override puts the application's face back.
TEST_F(ProfilerTrack, TheCulledFaceIsFollowed)
{
    Es2::_glCullFace(GL_FRONT);
    EXPECT_EQ(GLenum{GL_FRONT}, Context().cullFace);
    EXPECT_EQ(GLenum{GL_BACK}, Context().cullFaceEs1);
    Es1::_glCullFace(GL_FRONT_AND_BACK);
    Refused([] { Es1::_glCullFace(1); });
    Refused([] { Es2::_glCullFace(1); });
    EXPECT_EQ(GLenum{GL_FRONT}, Context().cullFace);
    EXPECT_EQ(GLenum{GL_FRONT_AND_BACK}, Context().cullFaceEs1);
}

}  // namespace
