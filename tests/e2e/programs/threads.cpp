// Several threads, each with a context of its own, make calls at the same time: threads THREADS CALLS. Each
// call carries its thread's number and its own, so that a reader of the recording can tell whose it was.
#include "linked_egl.h"
#include <GLES2/gl2.h>
#include <condition_variable>
#include <cstdlib>
#include <mutex>
#include <thread>
#include <vector>

static std::mutex startAndEnd;

// Lets nobody through until all have come, so that the threads' calls mix.
class Barrier
{
public:
    explicit Barrier(int missing) : m_missing(missing) {}
    void Wait()
    {
        std::unique_lock<std::mutex> lock(m_mutex);
        --m_missing;
        m_changed.notify_all();
        m_changed.wait(lock, [this] { return m_missing == 0; });
    }

private:
    std::mutex m_mutex;
    std::condition_variable m_changed;
    int m_missing;
};

static void MakeCalls(LinkedEgl const& egl, Pbuffer const& pbuffer, Barrier& barrier, int thread, int calls)
{
    {
        std::lock_guard<std::mutex> const lock(startAndEnd);
        MakeCurrent(egl, pbuffer);
    }
    barrier.Wait();
    for (int call = 0; call < calls; ++call)
    {
        // Two calls of different lengths; the first has the payload, an array, beside the numbers.
        GLuint const names[] = {0, 0, 0};
        glDeleteTextures(3, names);
        glClearColor(static_cast<float>(thread), static_cast<float>(call), 0.0F, 0.0F);
    }
    std::lock_guard<std::mutex> const lock(startAndEnd);
    MakeNothingCurrent(egl, pbuffer.display);
}

int main(int argc, char** argv)
{
    CHECK(argc == 3);
    int const threadCount = std::atoi(argv[1]);
    int const calls = std::atoi(argv[2]);
    LinkedEgl const egl;
    EGLDisplay const display = OpenDisplay(egl);
    std::vector<Pbuffer> pbuffers;
    for (int i = 0; i <= threadCount; ++i)
    {
        pbuffers.push_back(MakePbuffer(egl, display, 2));
        MakeCurrent(egl, pbuffers.back());
        glFinish();
    }
    Barrier barrier(threadCount);
    std::vector<std::thread> threads;
    for (int i = 0; i < threadCount; ++i)
        threads.emplace_back(
            [&, i] { MakeCalls(egl, pbuffers[static_cast<std::size_t>(i)], barrier, i, calls); });
    for (std::thread& thread : threads)
        thread.join();
    CHECK(egl.SwapBuffers(display, pbuffers.back().surface));
    MakeNothingCurrent(egl, display);
}
