// Many threads, and what they do to each other: crowd WAY.
#include "scene.h"
#include <atomic>
#include <climits>
#include <cstdlib>
#include <cstring>
#include <mutex>
#include <pthread.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>
#include <vector>

namespace
{
constexpr int kMostCalls = 20000;  // of a thread that calls all the while
std::mutex s_egl;                  // contexts are made and made current by one thread at a time

// A thread with a context of its own. What it calls carries its number, and a blue that the scene never has.
class Worker
{
public:
    Worker(LinkedEgl const& egl, EGLDisplay display, int number) : m_egl(egl), m_number(number)
    {
        std::lock_guard<std::mutex> const lock(s_egl);
        m_pbuffer = MakePbuffer(egl, display, 2);
        MakeCurrent(egl, m_pbuffer);
    }
    ~Worker()
    {
        std::lock_guard<std::mutex> const lock(s_egl);
        MakeNothingCurrent(m_egl, m_pbuffer.display);
        eglDestroySurface(m_pbuffer.display, m_pbuffer.surface);
        eglDestroyContext(m_pbuffer.display, m_pbuffer.context);
    }
    Worker(Worker const&) = delete;
    Worker& operator=(Worker const&) = delete;

    void Call(int call) const
    {
        glClearColor(static_cast<float>(m_number), static_cast<float>(call), 0.5F, 0.0F);
    }

private:
    LinkedEgl const& m_egl;
    Pbuffer m_pbuffer;
    int m_number;
};

// crowd come_and_go THREADS CALLS: threads that live for a few calls, ten at a time, while two others go on
// calling. The two are numbers 0 and 1; each tells on standard error how often it called.
void ComeAndGo(int threads, int calls)
{
    Scene scene;
    std::atomic<bool> over{false};
    auto const goOn = [&](int number) {
        Worker const worker(scene.Egl(), scene.Surface().display, number);
        int call = 0;
        while (!over)
            if (call < kMostCalls)
                worker.Call(call++);
            else
                std::this_thread::yield();
        std::fprintf(stderr, "%d %d\n", number, call);
    };
    std::thread first(goOn, 0);
    std::thread second(goOn, 1);
    for (int begun = 0; begun < threads; begun += 10)
    {
        std::vector<std::thread> wave;
        for (int i = begun; i < begun + 10; ++i)
            wave.emplace_back([&, i] {
                Worker const worker(scene.Egl(), scene.Surface().display, i + 2);
                for (int call = 0; call < calls; ++call)
                    worker.Call(call);
            });
        for (std::thread& thread : wave)
            thread.join();
    }
    over = true;
    first.join();
    second.join();
    scene.DrawFrame();
}

// Starts threads that call for ever, and returns once each of them does.
void StartCalling(Scene const& scene, int threads)
{
    auto* const calling = new std::atomic<int>(0);  // outlives everything, as the threads do
    for (int i = 0; i < threads; ++i)
        std::thread([&scene, calling, i] {
            Worker const worker(scene.Egl(), scene.Surface().display, i);
            for (int call = 0;; ++call)
            {
                worker.Call(call);
                if (call == 100)
                    ++*calling;
            }
        }).detach();
    while (*calling < threads)
        std::this_thread::yield();
}

// crowd exit: the process ends while other threads are in the middle of their calls.
void Exit()
{
    auto* const scene = new Scene;
    scene->DrawFrame();
    StartCalling(*scene, 3);
    std::exit(7);
}

// crowd cancel THREADS: threads are cancelled in the middle of their calls, which must leave nothing locked.
void Cancel(int threads)
{
    Scene scene;
    scene.DrawFrame();
    for (int i = 0; i < threads; ++i)
    {
        std::atomic<bool> calling{false};
        std::thread thread([&] {
            Worker const worker(scene.Egl(), scene.Surface().display, i);
            for (int call = 0;; ++call)
            {
                worker.Call(call);
                calling = true;
                if (call % 100 == 99)
                    pthread_testcancel();
            }
        });
        while (!calling)
            std::this_thread::yield();
        CHECK(pthread_cancel(thread.native_handle()) == 0);
        thread.join();
    }
    scene.DrawFrame();
}

// crowd small_stacks THREADS: threads with no more stack than the system insists on.
void SmallStacks(int threads)
{
    Scene scene;
    scene.DrawFrame();
    pthread_attr_t attributes;
    CHECK(pthread_attr_init(&attributes) == 0);
    CHECK(pthread_attr_setstacksize(&attributes, static_cast<std::size_t>(PTHREAD_STACK_MIN)) == 0);
    for (int i = 0; i < threads; ++i)
    {
        pthread_t thread;
        auto const call = [](void*) -> void* {
            for (int n = 0; n < 100; ++n)
                eglGetCurrentContext();
            return nullptr;
        };
        CHECK(pthread_create(&thread, &attributes, call, nullptr) == 0);
        CHECK(pthread_join(thread, nullptr) == 0);
    }
    pthread_attr_destroy(&attributes);
    scene.DrawFrame();
}

// crowd fork CHILDREN: one thread forks, others are in the middle of their calls. Half of the children become
// another program, half make calls and end at once.
void Fork(int children)
{
    auto* const scene = new Scene;
    scene->DrawFrame();
    StartCalling(*scene, 2);
    for (int i = 0; i < children; ++i)
    {
        pid_t const child = fork();
        CHECK(child >= 0);
        if (child == 0)
        {
            glLineWidth(2.0F);
            glGetError();
            if (i % 2 == 0)
                execl("/bin/true", "true", nullptr);
            _exit(0);
        }
        int status = 0;
        CHECK(waitpid(child, &status, 0) == child && status == 0);
    }
    scene->DrawFrame();
    _exit(8);
}
}  // namespace

int main(int argc, char** argv)
{
    CHECK(argc > 1);
    char const* const way = argv[1];
    if (std::strcmp(way, "come_and_go") == 0 && argc == 4)
        return ComeAndGo(std::atoi(argv[2]), std::atoi(argv[3])), 0;
    if (std::strcmp(way, "exit") == 0)
        Exit();
    if (std::strcmp(way, "cancel") == 0 && argc == 3)
        return Cancel(std::atoi(argv[2])), 0;
    if (std::strcmp(way, "small_stacks") == 0 && argc == 3)
        return SmallStacks(std::atoi(argv[2])), 0;
    if (std::strcmp(way, "fork") == 0 && argc == 3)
        Fork(std::atoi(argv[2]));
    return 99;
}
