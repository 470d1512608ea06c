// The fake EGL driver.
#include "tests/fakehost/entry.h"

using fakehost::Entry;
using fakehost::Fake;

#define EGL(id, kind, defaultResult, result, name, parameters, arguments)                                    \
    FAKE_ENTRY result name parameters { return Entry<result>{"egl", #name, defaultResult} arguments; }
#define EGL_REPLAYED(id, kind, defaultResult, result, name, parameters, arguments, wrapperParameters)        \
    EGL(id, kind, defaultResult, result, name, parameters, arguments)
#include "api/egl.def"

// A variant that lacks an entry stays out of what eglGetProcAddress answers.
#ifndef FAKE_VARIANT
namespace
{

struct Registration
{
    Registration()
    {
#define EGL(id, kind, defaultResult, result, name, parameters, arguments)                                    \
    Fake().Register("egl", #name, reinterpret_cast<fakehost::AnyFunction>(&name));
#define EGL_REPLAYED(id, kind, defaultResult, result, name, parameters, arguments, wrapperParameters)        \
    EGL(id, kind, defaultResult, result, name, parameters, arguments)
#include "api/egl.def"
    }
};

Registration const g_registration;

}  // namespace
#endif
