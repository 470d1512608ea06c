// Opens a library, uses it, closes it, and does so again: reload front_ends | library RECORDER.
#include "../../e2e/programs/reach.h"
#include <cstring>
#include <dlfcn.h>
#include <initializer_list>
#include <string>
#include <thread>

// In a build that looks for leaks: libraries that are closed leave behind what they kept, drivers as well as
// recorders.
extern "C" __attribute__((visibility("default"))) int __lsan_is_turned_off() { return 1; }

static void* Load(char const* name)
{
    void* const library = dlopen(name, RTLD_NOW | RTLD_LOCAL);
    if (!library)
        std::fprintf(stderr, "%s\n", dlerror());
    CHECK(library);
    return library;
}

// A frame through the libraries that any program opens.
static void DrawThroughFrontEnds()
{
    void* const eglLibrary = Load("libEGL.so.1");
    void* const glLibrary = Load("libGLESv2.so.2");
    Egl egl{};
    Gl gl{};
    FindAll(egl, gl, [&](auto& function, char const* name) {
        using Function = std::remove_reference_t<decltype(function)>;
        function = reinterpret_cast<Function>(dlsym(name[0] == 'e' ? eglLibrary : glLibrary, name));
        CHECK(function);
    });
    DrawFrame(egl, gl);
    CHECK(dlclose(glLibrary) == 0);
    CHECK(dlclose(eglLibrary) == 0);
}

// Calls of the recorder's own wrappers, as a front end of somebody else's makes them, on two threads. One of
// them outlives the library.
static void CallAndUnload(char const* recorder)
{
    void* const library = Load(recorder);
    auto const getError = reinterpret_cast<GLenum (*)()>(dlsym(library, "_ZN3Es211_glGetErrorEv"));
    CHECK(getError);
    getError();
    pthread_barrier_t barrier;
    CHECK(pthread_barrier_init(&barrier, nullptr, 2) == 0);
    std::thread other([&] {
        getError();
        pthread_barrier_wait(&barrier);  // the call is made
        pthread_barrier_wait(&barrier);  // the library is gone
    });
    pthread_barrier_wait(&barrier);
    CHECK(dlclose(library) == 0);
    CHECK(!dlopen(recorder, RTLD_NOW | RTLD_NOLOAD));
    pthread_barrier_wait(&barrier);
    other.join();
    pthread_barrier_destroy(&barrier);
}

int main(int argc, char** argv)
{
    CHECK(argc > 1);
    for (int round = 0; round < 3; ++round)
        if (std::strcmp(argv[1], "front_ends") == 0)
            DrawThroughFrontEnds();
        else
            CallAndUnload(argv[2]);
}
