// The profiler under calls of several threads. What it keeps is one state for all of them; it must stay
// whole.
#include "tests/wrappers/profiled.h"
#include <atomic>
#include <thread>
#include <vector>

namespace
{

class ProfilerThreads : public Profiled
{
protected:
    static constexpr uint32_t kThreads = 4;

    template <typename Action>
    static void InThreads(Action action)
    {
        std::vector<std::thread> threads;
        for (uint32_t i = 0; i < kThreads; ++i)
            threads.emplace_back(action);
        for (std::thread& thread : threads)
            thread.join();
    }
};

}  // namespace

// Calls of several threads are counted each.
TEST_F(ProfilerThreads, LoseNoCount)
{
    constexpr uint32_t kCalls = 500;
    InThreads([] {
        for (uint32_t call = 0; call < kCalls; ++call)
            Es2::_glDrawArrays(GL_TRIANGLES, 0, 9);
    });
    EXPECT_EQ(kThreads * kCalls, Profiler().m_aCounters[CProfiler::eNonIndexedDraws]);
    EXPECT_EQ(3 * kThreads * kCalls, Profiler().m_aCounters[CProfiler::eTriangleList]);
}

// Records of programs, shaders and framebuffers come and go from all threads while draws walk them.
TEST_F(ProfilerThreads, KeepTheRecordsWhole)
{
    CProfiler::SContext& context = MakeContextCurrent();
    for (bool* const item : {&CProfiler::m_Force2x2Textures, &CProfiler::m_DisableAlphaTest})
        *item = true;
    static std::atomic<GLuint> next{0};
    next = 0;
    Fake().On("glGetShaderiv", [](Call const& call) { *call.Pointer<GLint>(2) = GL_FRAGMENT_SHADER; });
    Fake().Result("glCreateProgram", GLuint{7});
    Fake().Result("glCreateShader", GLuint{8});
    InThreads([] {
        for (int i = 0; i < 40; ++i)
        {
            GLuint const name = ++next;
            char const* const source = "void main() { discard; }";
            Es2::_glCreateProgram(0);
            Es2::_glShaderSource(name, 1, &source, nullptr);
            Es2::_glAttachShader(name, name);
            Es2::_glLinkProgram(name);
            Es2::_glBindTexture(GL_TEXTURE_2D, name);
            Es2::_glBindFramebuffer(GL_FRAMEBUFFER, name);
            Es2::_glFramebufferTexture2D(GL_FRAMEBUFFER, GL_COLOR_ATTACHMENT0, GL_TEXTURE_2D, name, 0);
            Es2::_glUseProgram(name);
            Es2::_glDrawArrays(GL_TRIANGLES, 0, 3);
            if (i % 2)
                Es2::_glDeleteProgram(name);
            Es2::_glDeleteShader(name);
        }
    });
    EXPECT_EQ(160u, Profiler().m_aCounters[CProfiler::eNonIndexedDraws]);
    EXPECT_EQ(160, context.m_FBOs.Count());
    EXPECT_EQ(0, context.m_Shaders.Count());
}
