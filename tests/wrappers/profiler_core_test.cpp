// What the profiler does with each call ahead of the host, the time that it adds, and its one instance.
#include "host/hosts.h"
#include "tests/unit/fake_clock.h"
#include "tests/wrappers/functions.h"
#include "tests/wrappers/profiled.h"
#include <set>

namespace
{

using Names = std::set<std::string>;

struct Suppression
{
    bool* item;
    Names calls;
};

std::vector<Suppression> const kSuppressions = {
    {&CProfiler::m_DisableDrawCalls,
     {"es1::glDrawArrays", "es1::glDrawElements", "es1::glMultiDrawArraysEXT", "es1::glMultiDrawElementsEXT",
      "es2::glDrawArrays", "es2::glDrawElements", "es2::glMultiDrawArraysEXT", "es2::glMultiDrawElementsEXT",
      "es2::glDrawArraysInstancedANGLE", "es2::glDrawElementsInstancedANGLE"}},
    {&CProfiler::m_DisableTextureModifications,
     {"es1::glTexSubImage2D", "es2::glTexSubImage2D", "es2::glTexSubImage3DOES"}},
    {&CProfiler::m_DisableFBAccess, {"es1::glReadPixels", "es2::glReadPixels"}},
    {&CProfiler::m_DisableFlushNFinish, {"es1::glFlush", "es1::glFinish", "es2::glFlush", "es2::glFinish"}},
};

class ProfilerCalls : public Profiled
{
protected:
    // What DoCall makes of a call whose arguments are all 0.
    static bool Decide(Function const& function, bool callHost)
    {
        int const count = static_cast<int>(function.ApiArguments());
        Word const zero = 0;
        std::vector<void const*> arguments{&count};
        arguments.resize(1 + function.ApiArguments(), &zero);
        Profiler().DoCall(function.id, arguments.data(), callHost);
        return callHost;
    }
    static Names Suppressed()
    {
        Names names;
        for (Function const& function : AllFunctions())
            if (!Decide(function, true))
                names.insert(function.Title());
        return names;
    }

    // The textures that were deleted on the host, each with the library that did so.
    static std::vector<std::pair<std::string, GLuint>> DeletionsIn(void (*action)())
    {
        std::vector<std::pair<std::string, GLuint>> deleted;
        Fake().On("glDeleteTextures", [&](Call const& call) {
            EXPECT_EQ(1, call.Argument<GLsizei>(0));
            deleted.emplace_back(call.api, *call.Pointer<GLuint>(1));
        });
        action();
        Fake().On("glDeleteTextures", [](Call const&) {});
        return deleted;
    }
    using Deletions = std::vector<std::pair<std::string, GLuint>>;

    static uint32_t DriverTime() { return Profiler().m_aCounters[19]; }
};

}  // namespace

// Each switch holds back its own calls and no other: whole images, compressed sub-images, other ways to read
// and other draws always reach the host.
TEST_F(ProfilerCalls, EachSwitchSuppressesItsOwnCalls)
{
    EXPECT_EQ(Names{}, Suppressed());
    for (Suppression const& suppression : kSuppressions)
    {
        *suppression.item = true;
        EXPECT_EQ(suppression.calls, Suppressed());
        *suppression.item = false;
    }
}

// Switches of state and programs let every call through.
TEST_F(ProfilerCalls, OtherSwitchesSuppressNothing)
{
    for (bool* item :
         {&CProfiler::m_ForceViewport, &CProfiler::m_DisableBlending, &CProfiler::m_Force2x2Textures,
          &CProfiler::m_ForceFlatColourFrag, &CProfiler::m_DisableStencilTest, &CProfiler::m_DisableDepthTest,
          &CProfiler::m_DisableScissorTest, &CProfiler::m_DisableTextureFiltering,
          &CProfiler::m_DisableAlphaTest})
        *item = true;
    CProfiler::m_CullingModeSelection = CProfiler::eCullFront;
    EXPECT_EQ(Names{}, Suppressed());
}

// A call that is not to reach the host does not, whatever the switches say.
TEST_F(ProfilerCalls, TheDecisionIsOnlyNarrowed)
{
    for (Function const& function : AllFunctions())
        EXPECT_FALSE(Decide(function, false)) << function.Title();
}

// A switch is on by any byte but 0.
TEST_F(ProfilerCalls, AnyByteSwitchesOn)
{
    char const byte = 2;
    std::memcpy(&CProfiler::m_DisableFlushNFinish, &byte, 1);
    Es2::_glFlush();
    EXPECT_EQ(0u, HostCalls("glFlush"));
}

// A suppressed call runs nothing on the host and adds to no counter, not even its time.
TEST_F(ProfilerCalls, ASuppressedCallCountsNothing)
{
    Es2Host();
    Fake().Forget();
    MakeContextCurrent();
    for (Suppression const& suppression : kSuppressions)
        *suppression.item = true;
    CProfiler::m_ForceViewport = true;
    long now = 100;
    Fake().On("glDrawArrays", [&](Call const&) { SetClock(++now, 0); });
    uint8_t pixels[64] = {7};
    EXPECT_EQ(Changes{}, Counted([&] {
                  Es2::_glDrawArrays(GL_TRIANGLES, 0, 3);
                  Es1::_glDrawElements(GL_TRIANGLES, 3, GL_UNSIGNED_BYTE, pixels);
                  Es2::_glTexSubImage2D(GL_TEXTURE_2D, 0, 0, 0, 1, 1, GL_RGBA, GL_UNSIGNED_BYTE, pixels);
                  Es1::_glReadPixels(0, 0, 1, 1, GL_RGBA, GL_UNSIGNED_BYTE, pixels);
                  Es2::_glFinish();
              }));
    EXPECT_EQ(0u, DriverTime());
    EXPECT_EQ(std::vector<std::string>{}, Fake().Names());
    EXPECT_EQ(7, pixels[0]);
}

// The time of each host call is added, whether it failed or not; what a host call takes ahead of the clock's
// start does not count.
TEST_F(ProfilerCalls, TheDriversTimeIsAdded)
{
    SetClock(50, 999000);
    Fake().On("glScissor", [](Call const&) { SetClock(51, 250); });
    Es2::_glScissor(1, 2, 3, 4);
    EXPECT_EQ(1250u, DriverTime());
    Fake().On("glClear", [](Call const&) { SetClock(51, 260); });
    HostFails(0x502);
    Printed([] { Es1::_glClear(0); });
    EXPECT_EQ(1260u, DriverTime());
    STraceConfig::m_getErrors = false;
    Fake().On("eglSwapBuffers", [](Call const&) { SetClock(51, 360); });
    Egl::_eglSwapBuffers(nullptr, nullptr);
    EXPECT_EQ(1360u, DriverTime());
    Fake().On("eglGetError", [](Call const&) { SetClock(51, 363); });
    Egl::_eglGetError();
    EXPECT_EQ(1363u, DriverTime()) << "the host is called for its time alone";
    Profiler().DidCall(99999, 5ul);
    EXPECT_EQ(1368u, DriverTime()) << "the ID does not matter";
}

// An application that binds a name which the driver once gave the profiler takes it over: one private texture
// of that name goes, with the API that made it, ahead of the bind.
TEST_F(ProfilerCalls, BindingAPrivateTexturesNameTakesIt)
{
    CProfiler::SContext& context = MakeContextCurrent();
    context.tex2x2Es1 = context.tex2x2Es2 = context.texCube2x2Es2 = 5;
    auto const bind = [] { Es2::_glBindTexture(GL_TEXTURE_2D, 5); };
    EXPECT_EQ((Deletions{{"es1", 5}}), DeletionsIn(bind));
    EXPECT_EQ(0u, context.tex2x2Es1);
    EXPECT_EQ(5u, context.tex2x2Es2);
    EXPECT_EQ(5u, context.texCube2x2Es2);
    EXPECT_EQ((Deletions{{"es2", 5}}), DeletionsIn([] { Es1::_glBindTexture(GL_TEXTURE_2D, 5); }));
    EXPECT_EQ(0u, context.tex2x2Es2);
    EXPECT_EQ(5u, context.texCube2x2Es2);
    EXPECT_EQ((Deletions{{"es2", 5}}), DeletionsIn(bind));
    EXPECT_EQ(0u, context.texCube2x2Es2);
    EXPECT_EQ(Deletions{}, DeletionsIn(bind));
    std::vector<std::string> names = Fake().Names();
    names.resize(2);
    EXPECT_EQ((std::vector<std::string>{"glDeleteTextures", "glBindTexture"}), names);
}

// The name 0, other names, and names of other contexts are nobody's.
TEST_F(ProfilerCalls, OtherBindsLeavePrivateTexturesAlone)
{
    CProfiler::SContext& context = MakeContextCurrent();
    EXPECT_EQ(Deletions{}, DeletionsIn([] { Es2::_glBindTexture(GL_TEXTURE_2D, 0); }))
        << "none has been made";
    context.tex2x2Es1 = 5;
    context.tex2x2Es2 = 6;
    context.texCube2x2Es2 = 7;
    EXPECT_EQ(Deletions{}, DeletionsIn([] {
                  Es2::_glBindTexture(GL_TEXTURE_2D, 0);
                  Es1::_glBindTexture(GL_TEXTURE_2D, 8);
              }));
    Profiler().m_pCurrentContext = nullptr;
    EXPECT_EQ(Deletions{}, DeletionsIn([] { Es2::_glBindTexture(GL_TEXTURE_2D, 6); }));
    MakeContextCurrent(0x78);
    EXPECT_EQ(Deletions{}, DeletionsIn([] { Es2::_glBindTexture(GL_TEXTURE_2D, 6); }));
    EXPECT_EQ(5u, context.tex2x2Es1);
    EXPECT_EQ(6u, context.tex2x2Es2);
    EXPECT_EQ(7u, context.texCube2x2Es2);
}

// A new profiler has no link, no context and nothing counted.
TEST_F(ProfilerCalls, ANewProfiler)
{
    CProfiler::Destroy();
    CProfiler const& profiler = Profiler();
    EXPECT_EQ(&profiler, CProfiler::getInstance());
    EXPECT_EQ(&profiler, CProfiler::m_pInstance);
    EXPECT_EQ(static_cast<void const*>(&profiler), profiler.m_aCounters) << "the counters come first";
    for (uint32_t const counter : profiler.m_aCounters)
        EXPECT_EQ(0u, counter);
    EXPECT_EQ(nullptr, profiler.m_pComms);
    EXPECT_EQ(1, profiler.m_swapInterval);
    EXPECT_EQ(0, profiler.m_Contexts.Count());
    EXPECT_EQ(10, profiler.m_Contexts.Capacity());
    EXPECT_EQ(nullptr, profiler.m_pCurrentContext);
}

// A context of which nothing is known yet.
TEST_F(ProfilerCalls, ANewContextsRecord)
{
    CProfiler::SContext const& context = MakeContextCurrent();
    EXPECT_EQ(0x405u, context.cullFace);
    EXPECT_EQ(0x405u, context.cullFaceEs1);
    for (auto const& unit : context.textures)
        for (CProfiler::STextureBinding const& binding : unit)
        {
            EXPECT_EQ(0u, binding.name);
            EXPECT_EQ(0x2702u, binding.minFilter);
            EXPECT_EQ(0x2601u, binding.magFilter);
            EXPECT_FALSE(binding.bIsAttachment);
        }
    EXPECT_EQ(0x2702u, context.texturesEs1[31].minFilter);
    EXPECT_EQ(0x2601u, context.texturesEs1[31].magFilter);
    EXPECT_EQ(10, context.m_Programs.Capacity());
    EXPECT_EQ(10, context.m_Shaders.Capacity());
    EXPECT_EQ(10, context.m_FBOs.Capacity());
    EXPECT_EQ(nullptr, context.shareContext);
}

// A profiled call makes the instance, and opens no link; without the setting there is none.
TEST_F(ProfilerCalls, AProfiledCallMakesTheInstance)
{
    CProfiler::Destroy();
    STraceConfig::m_bProfile = false;
    Es2::_glFlush();
    EXPECT_EQ(nullptr, CProfiler::m_pInstance);
    STraceConfig::m_bProfile = true;
    Es2::_glFlush();
    ASSERT_NE(nullptr, CProfiler::m_pInstance);
    EXPECT_EQ(nullptr, CProfiler::m_pInstance->m_pComms);
}

// A thread that is still inside a call when the process ends finds an instance that is gone: it is left
// alone. A later call has a new one.
TEST_F(ProfilerCalls, CallsAfterTheEnd)
{
    CProfiler* const ended = CProfiler::getInstance();
    CProfiler::Destroy();
    EXPECT_EQ(nullptr, CProfiler::m_pInstance);
    CProfiler::Destroy();
    int const count = 0;
    void const* const arguments[] = {&count};
    CProfiler::m_DisableFlushNFinish = true;
    bool callHost = true;
    ended->DoCall(2046, arguments, callHost);
    EXPECT_TRUE(callHost);
    ended->DidCall(2046, 5ul);
    ended->DidCall(2046, arguments);
    ended->TrackState(2046, arguments, nullptr);
    ended->PreDrawCall();
    ended->PostDrawCall();
    EXPECT_FALSE(ended->SendCounters());
    EXPECT_EQ(nullptr, CProfiler::m_pInstance);
    Es2::_glScissor(1, 2, 3, 4);
    ASSERT_NE(nullptr, CProfiler::m_pInstance);
    EXPECT_EQ(1u, CProfiler::m_pInstance->m_aCounters[13]);
}

// The counters are cleared on their own.
TEST_F(ProfilerCalls, CountersCanBeCleared)
{
    for (uint32_t& counter : Profiler().m_aCounters)
        counter = 7;
    Profiler().IncrementCounter(CProfiler::eContextBinds, 5);
    EXPECT_EQ(12u, Profiler().m_aCounters[26]);
    Profiler().ResetCounters();
    for (uint32_t const counter : Profiler().m_aCounters)
        EXPECT_EQ(0u, counter);
}
