// The machine's own EGL, OpenGL ES 1 and OpenGL ES 2, opened by soname at run time: nothing is linked, so
// that the reader's tools run where there is no driver, and so that a replay never lands in this project's
// front ends.
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

// The functions of OpenGL ES 2. Those that OpenGL ES 1 has as well have the same types there, so that
// handlers can serve both; in a table of OpenGL ES 1 the others are null.
struct GlFunctions
{
#define ES2 ENTRY
#define ES2_REPLAYED ENTRY_REPLAYED
#include "api/es2.def"
};

struct Es1Functions
{
#define ES1 ENTRY
#include "api/es1.def"
};

#undef ENTRY_REPLAYED
#undef ENTRY

class Driver
{
public:
    // Null if EGL or OpenGL ES 2 cannot be opened or lacks a core function; `error` says which.
    static std::unique_ptr<Driver> Open(std::string& error);

    bool HasEs1() const { return es1.glDrawElements != nullptr; }
    // The functions that a context of the version is to be called through.
    GlFunctions const& ForVersion(int version) const { return version == 1 ? sharedEs1 : es2; }

    EglFunctions egl;
    GlFunctions es2;
    Es1Functions es1;       // empty where there is no such library
    GlFunctions sharedEs1;  // those of `es1` that OpenGL ES 2 has as well
};
}  // namespace nebtrace::player
