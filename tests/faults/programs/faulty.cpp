// An application that does what applications should not: faulty WAY [ARGUMENTS]. Each way draws a few frames,
// does its deed, and, where it survives that, draws on. Without the recorder it is the tests' control.
#include "scene.h"
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <sys/wait.h>
#include <unistd.h>

namespace
{
constexpr int kFrames = 5;
int s_argc;
char** s_argv;

int Argument(int index)
{
    CHECK(index < s_argc);
    return std::atoi(s_argv[index]);
}

void DrawFrames(Scene& scene, int count)
{
    for (int i = 0; i < count; ++i)
        scene.DrawFrame();
}

// faulty frames COUNT [REPORTS]: tells the number of each frame that it has finished to the descriptor.
void Frames()
{
    Scene scene;
    for (int i = 0; i < Argument(2); ++i)
    {
        scene.DrawFrame();
        int const finished = i;
        if (s_argc > 3)
            CHECK(write(Argument(3), &finished, sizeof finished) == sizeof finished);
    }
}

void Segv()
{
    Scene scene;
    DrawFrames(scene, kFrames);
    std::raise(SIGSEGV);
}

// The driver's own fault, inside a call: data that is not there.
void SegvInACall()
{
    Scene scene;
    DrawFrames(scene, kFrames);
    glBufferData(GL_ARRAY_BUFFER, 4096, reinterpret_cast<void const*>(16), GL_STATIC_DRAW);
}

void Abort()
{
    Scene scene;
    DrawFrames(scene, kFrames);
    std::abort();
}

void DrawAtExit()
{
    Scene scene;
    DrawFrames(scene, 2);
}

// Handlers that were registered last run first, while everything is still there.
void ExitAndDraw()
{
    Scene scene;
    DrawFrames(scene, kFrames);
    std::atexit(DrawAtExit);
    std::exit(4);
}

// A handler that ends the process with another code. C leaves this open; the C library goes on with the
// handlers that are left.
void ExitInAHandler()
{
    Scene scene;
    DrawFrames(scene, kFrames);
    std::atexit([] {
        DrawAtExit();
        std::exit(9);
    });
    std::exit(4);
}

void ExitFromMessage(GLenum, GLenum, GLuint, GLenum, GLsizei, GLchar const*, void const*) { std::exit(6); }

// The driver calls back inside a call, and the application ends there.
void ExitInACall()
{
    using Callback = decltype(&ExitFromMessage);
    using SetCallback = void (*)(Callback, void const*);
    using Insert = void (*)(GLenum, GLenum, GLuint, GLenum, GLsizei, GLchar const*);
    Scene scene;
    DrawFrames(scene, kFrames);
    auto const setCallback = reinterpret_cast<SetCallback>(eglGetProcAddress("glDebugMessageCallback"));
    auto const insert = reinterpret_cast<Insert>(eglGetProcAddress("glDebugMessageInsert"));
    CHECK(setCallback && insert);
    constexpr GLenum kDebugOutput = 0x92E0;
    constexpr GLenum kSynchronous = 0x8242;
    constexpr GLenum kApplication = 0x824A;
    constexpr GLenum kOther = 0x8251;
    constexpr GLenum kHigh = 0x9146;
    glEnable(kDebugOutput);
    glEnable(kSynchronous);
    setCallback(ExitFromMessage, nullptr);
    insert(kApplication, kOther, 1, kHigh, 3, "end");
    std::exit(1);  // the message must have ended the process
}

int Ended(pid_t child)
{
    int status = 0;
    CHECK(waitpid(child, &status, 0) == child);
    return WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
}

// The child makes calls of its own, ends like any process, and the parent draws on.
void Fork()
{
    Scene scene;
    DrawFrames(scene, kFrames);
    pid_t const child = fork();
    CHECK(child >= 0);
    if (child == 0)
    {
        for (int i = 0; i < 100; ++i)
            glLineWidth(2.0F);
        std::exit(glGetError() == GL_NO_ERROR ? 5 : 1);
    }
    CHECK(Ended(child) == 5);
    DrawFrames(scene, kFrames);
}

// A program that forks itself into the background ahead of everything.
void Daemon()
{
    pid_t const child = fork();
    CHECK(child >= 0);
    if (child != 0)
        std::exit(Ended(child));
    Scene scene;
    DrawFrames(scene, kFrames);
    std::exit(3);
}

// faulty fork_exec PROGRAM...: the child becomes another program.
void ForkExec()
{
    Scene scene;
    DrawFrames(scene, kFrames);
    pid_t const child = fork();
    CHECK(child >= 0);
    if (child == 0)
    {
        execv(s_argv[2], s_argv + 2);
        _exit(1);
    }
    CHECK(Ended(child) == 0);
    DrawFrames(scene, kFrames);
}

// What a program without a context gets to see must not change.
void NeverCurrent()
{
    LinkedEgl const egl;
    EGLDisplay const display = OpenDisplay(egl);
    Pbuffer const pbuffer = MakePbuffer(egl, display, 2);
    for (int i = 0; i < kFrames; ++i)
    {
        GLuint texture = 0;
        GLint size = -1;
        glGenTextures(1, &texture);
        glBindTexture(GL_TEXTURE_2D, texture);
        glTexImage2D(GL_TEXTURE_2D, 0, GL_RGBA, 1, 1, 0, GL_RGBA, GL_UNSIGNED_BYTE, "abcd");
        glGetIntegerv(GL_MAX_TEXTURE_SIZE, &size);
        GLuint const shader = glCreateShader(GL_VERTEX_SHADER);
        glClear(GL_COLOR_BUFFER_BIT);
        glDrawArrays(GL_TRIANGLES, 0, 3);
        EGLBoolean const swapped = egl.SwapBuffers(display, pbuffer.surface);
        std::fprintf(stderr, "%u %d %u %s %u\n", texture, size, shader,
                     glGetString(GL_VENDOR) ? "vendor" : "nothing", swapped);
    }
}

struct Way
{
    char const* name;
    void (*go)();
};

constexpr Way kWays[] = {{"frames", Frames},
                         {"segv", Segv},
                         {"segv_in_a_call", SegvInACall},
                         {"abort", Abort},
                         {"exit_and_draw", ExitAndDraw},
                         {"exit_in_a_handler", ExitInAHandler},
                         {"exit_in_a_call", ExitInACall},
                         {"fork", Fork},
                         {"daemon", Daemon},
                         {"fork_exec", ForkExec},
                         {"never_current", NeverCurrent}};
}  // namespace

int main(int argc, char** argv)
{
    s_argc = argc;
    s_argv = argv;
    CHECK(argc > 1);
    for (Way const& way : kWays)
        if (std::strcmp(way.name, argv[1]) == 0)
            return way.go(), 0;
    return 99;
}
