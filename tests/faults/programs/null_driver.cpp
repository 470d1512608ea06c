// A driver that does nothing, for tests that make far more objects than a real one could in time: every
// function of EGL and of OpenGL ES 2 gives its default result. Those that make something are in
// null_names.cpp, and win.
#define EGL_EGL_PROTOTYPES 0
#define GL_GLES_PROTOTYPES 0
#include "api/types.h"
#include <type_traits>

template <typename Result, typename... Arguments>
static Result DoNothing(unsigned int result, Arguments...)
{
    if constexpr (std::is_pointer_v<Result>)
        return reinterpret_cast<Result>(static_cast<uintptr_t>(result));
    else if constexpr (!std::is_void_v<Result>)
        return static_cast<Result>(result);
}

// The arguments of a table's line come with their parentheses.
template <typename Result>
struct Entry
{
    unsigned int result;

    template <typename... Arguments>
    Result operator()(Arguments... arguments) const
    {
        return DoNothing<Result>(result, arguments...);
    }
};

#define NULL_ENTRY(defaultResult, result, name, parameters, arguments)                                       \
    extern "C" __attribute__((visibility("default"), weak)) result name parameters                           \
    {                                                                                                        \
        return Entry<result>{defaultResult} arguments;                                                       \
    }
#define EGL(id, kind, defaultResult, result, name, parameters, arguments)                                    \
    NULL_ENTRY(defaultResult, result, name, parameters, arguments)
#define EGL_REPLAYED(id, kind, defaultResult, result, name, parameters, arguments, wrapperParameters)        \
    NULL_ENTRY(defaultResult, result, name, parameters, arguments)
#include "api/egl.def"
#define ES2(id, kind, defaultResult, result, name, parameters, arguments)                                    \
    NULL_ENTRY(defaultResult, result, name, parameters, arguments)
#define ES2_REPLAYED(id, kind, defaultResult, result, name, parameters, arguments, wrapperParameters)        \
    NULL_ENTRY(defaultResult, result, name, parameters, arguments)
#include "api/es2.def"
