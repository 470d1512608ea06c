// An EGL library that loads, and brings its process down at the first question.
#include <cstdlib>

extern "C" __attribute__((visibility("default"))) void* eglGetProcAddress(char const*) { return nullptr; }

extern "C" __attribute__((visibility("default"))) unsigned eglMakeCurrent(void*, void*, void*, void*)
{
    return 0;
}

extern "C" __attribute__((visibility("default"))) char const* eglQueryString(void*, int) { std::abort(); }
