// Stands between an application and the front ends, and counts the application's calls by function: what a
// recording is held against. Serves as libEGL and libGLESv2 in one. Counting ends with the swap whose number
// is in COUNT_SWAPS; the counts are then written to the file that COUNT_FILE names.
//
// A function that an application asks eglGetProcAddress for is counted too: it gets the counting function of
// that name, which calls on to what the front end gave.
#include "api/types.h"
#include "frontends/plain.h"
#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <dlfcn.h>
#include <map>
#include <string>

namespace
{
struct Function
{
    std::atomic<long> calls{0};
    AnyFunction counting = nullptr;  // the function below
    AnyFunction next = nullptr;      // the front end's
};

std::map<std::string, Function>& Functions()
{
    static std::map<std::string, Function> functions;
    return functions;
}

std::atomic<bool> counting{true};

AnyFunction InFrontEnd(char const* library, char const* name)
{
    std::string const path = std::string(std::getenv("COUNT_FRONT_ENDS")) + "/" + library;
    return reinterpret_cast<AnyFunction>(dlsym(dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL), name));
}

void WriteCounts()
{
    std::FILE* const file = std::fopen(std::getenv("COUNT_FILE"), "w");
    for (auto const& [name, function] : Functions())
        if (function.calls > 0)
            std::fprintf(file, "%s %ld\n", name.c_str(), function.calls.load());
    std::fclose(file);
}

// Stands in for the front end's eglGetProcAddress.
AnyFunction AnswerWithCounting(char const* name)
{
    using GetProcAddress = AnyFunction (*)(char const*);
    static auto const next = reinterpret_cast<GetProcAddress>(InFrontEnd("libEGL.so.1", "eglGetProcAddress"));
    AnyFunction const found = next(name);
    auto const known = Functions().find(name);
    if (!found || known == Functions().end())
        return found;
    known->second.next = found;
    return known->second.counting;
}

// Stands in for the front end's eglSwapBuffers.
EGLBoolean SwapAndCount(EGLDisplay display, EGLSurface surface)
{
    using SwapBuffers = EGLBoolean (*)(EGLDisplay, EGLSurface);
    static auto const next = reinterpret_cast<SwapBuffers>(InFrontEnd("libEGL.so.1", "eglSwapBuffers"));
    static long const limit = std::atol(std::getenv("COUNT_SWAPS"));
    static long swaps = 0;
    EGLBoolean const swapped = next(display, surface);
    if (++swaps == limit)
    {
        counting = false;
        WriteCounts();
    }
    return swapped;
}

AnyFunction Next(char const* library, char const* name)
{
    if (std::strcmp(name, "eglGetProcAddress") == 0)
        return reinterpret_cast<AnyFunction>(&AnswerWithCounting);
    if (std::strcmp(name, "eglSwapBuffers") == 0)
        return reinterpret_cast<AnyFunction>(&SwapAndCount);
    return InFrontEnd(library, name);
}

// Counts a call and returns the function to call on to.
AnyFunction Count(char const* library, char const* name)
{
    Function& function = Functions()[name];
    if (!function.next)
        function.next = Next(library, name);
    if (counting)
        ++function.calls;
    return function.next;
}

// Makes a function known to eglGetProcAddress at load.
struct Known
{
    Known(char const* name, AnyFunction function) { Functions()[name].counting = function; }
};
}  // namespace

namespace Plain
{
#define COUNTED(library, result, name, parameters, arguments)                                                \
    NEBTRACE_PLAIN(result, name, parameters)                                                                 \
    {                                                                                                        \
        return reinterpret_cast<decltype(&name)>(Count(library, #name)) arguments;                           \
    }                                                                                                        \
    static Known const known_##name(#name, reinterpret_cast<AnyFunction>(&name));

#define EGL(id, kind, defaultResult, result, name, parameters, arguments)                                    \
    COUNTED("libEGL.so.1", result, name, parameters, arguments)
#define EGL_REPLAYED(id, kind, defaultResult, result, name, parameters, arguments, wrapperParameters)        \
    COUNTED("libEGL.so.1", result, name, parameters, arguments)
#include "api/egl.def"

#define ES2(id, kind, defaultResult, result, name, parameters, arguments)                                    \
    COUNTED("libGLESv2.so.2", result, name, parameters, arguments)
#define ES2_REPLAYED(id, kind, defaultResult, result, name, parameters, arguments, wrapperParameters)        \
    COUNTED("libGLESv2.so.2", result, name, parameters, arguments)
#include "api/es2.def"

#define PASSTHROUGH(result, name, parameters, arguments)                                                     \
    COUNTED("libEGL.so.1", result, name, parameters, arguments)
#include "api/passthrough_egl.def"
#define PASSTHROUGH(result, name, parameters, arguments)                                                     \
    COUNTED("libGLESv2.so.2", result, name, parameters, arguments)
#include "api/passthrough_es2.def"
}  // namespace Plain
