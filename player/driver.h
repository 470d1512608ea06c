// The machine's own EGL and OpenGL ES 2, opened by soname at run time: nothing is linked, so that the
// reader's tools run where there is no driver, and so that a replay never lands in this project's front ends.
#pragma once
#include "api/types.h"
#include <memory>
#include <string>

namespace nebtrace::player
{
#define ENTRY(id, kind, fallback, result, name, parameters, arguments) result(*name) parameters = nullptr;
#define ENTRY_REPLAYED(id, kind, fallback, result, name, parameters, arguments, wrapperParameters)           \
    result(*name) parameters = nullptr;

struct EglFunctions
{
#define EGL ENTRY
#define EGL_REPLAYED ENTRY_REPLAYED
#include "api/egl.def"
    EGLDisplay (*eglGetPlatformDisplayEXT)(EGLenum, void*, EGLint const*) = nullptr;
};

struct GlFunctions
{
#define ES2 ENTRY
#define ES2_REPLAYED ENTRY_REPLAYED
#include "api/es2.def"
};

#undef ENTRY_REPLAYED
#undef ENTRY

class Driver
{
public:
    // Null if a library cannot be opened or lacks a core function; `error` says which.
    static std::unique_ptr<Driver> Open(std::string& error);

    EglFunctions egl;
    GlFunctions es2;
};
}  // namespace nebtrace::player
