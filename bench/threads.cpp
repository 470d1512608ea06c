// What a call costs while several threads make calls at once, each with a context of its own. Prints the
// nanoseconds per call on each thread, by the wall clock.
//
//   --threads=N  how many
//   --rounds=N   rounds of calls that each of them makes
#include "gles.h"
#include <array>
#include <atomic>
#include <chrono>
#include <cstdio>
#include <thread>
#include <vector>

namespace
{

using Clock = std::chrono::steady_clock;

constexpr int kCallsPerRound = 8;

void MakeRound(GLint location)
{
    static std::array<GLfloat, 4> const s_values{};
    glDepthFunc(GL_LESS);
    glUniform4fv(location, 1, s_values.data());
    glDrawArrays(GL_TRIANGLE_STRIP, 0, bench::kVertices);
    glDepthFunc(GL_LEQUAL);
    glBlendFunc(GL_ONE, GL_ZERO);
    glUniform4fv(location, 1, s_values.data());
    glScissor(0, 0, 64, 64);
    glDrawArrays(GL_TRIANGLE_STRIP, 0, bench::kVertices);
}

void MakeVertices()
{
    std::array<GLfloat, bench::kVertices * bench::kFloatsPerVertex> const vertices{};
    GLuint buffer = 0;
    glGenBuffers(1, &buffer);
    glBindBuffer(GL_ARRAY_BUFFER, buffer);
    glBufferData(GL_ARRAY_BUFFER, sizeof vertices, vertices.data(), GL_STATIC_DRAW);
    bench::SetArrays(nullptr);
}

// Counts the threads that are ready; they begin together.
void MakeCalls(std::atomic<int>& waiting, int rounds, double& nanoseconds)
{
    bench::MakeContext();
    GLint const location = bench::MakeProgram();
    MakeVertices();
    --waiting;
    while (waiting > 0)
        std::this_thread::yield();
    Clock::time_point const begin = Clock::now();
    for (int i = 0; i < rounds; ++i)
        MakeRound(location);
    std::chrono::duration<double, std::nano> const passed = Clock::now() - begin;
    nanoseconds = passed.count() / (static_cast<double>(rounds) * kCallsPerRound);
    eglMakeCurrent(bench::Display(), EGL_NO_SURFACE, EGL_NO_SURFACE, EGL_NO_CONTEXT);
}

}  // namespace

int main(int argc, char** argv)
{
    int count = 1;
    int rounds = 20000;
    for (int i = 1; i < argc; ++i)
    {
        count = bench::NumberOption(argv[i], "--threads", count);
        rounds = bench::NumberOption(argv[i], "--rounds", rounds);
    }
    bench::Display();
    std::atomic<int> waiting{count};
    std::vector<double> times(static_cast<std::size_t>(count));
    std::vector<std::thread> threads;
    for (double& time : times)
        threads.emplace_back([&waiting, rounds, &time] { MakeCalls(waiting, rounds, time); });
    for (std::thread& thread : threads)
        thread.join();
    for (double const time : times)
        std::printf("nanoseconds per call: %.1f\n", time);
    return 0;
}
