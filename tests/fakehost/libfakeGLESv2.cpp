// The fake GLES2 driver.
#include "tests/fakehost/entry.h"

using fakehost::Entry;
using fakehost::Fake;

#define ES2(id, kind, defaultResult, result, name, parameters, arguments)                                    \
    FAKE_ENTRY result name parameters { return Entry<result>{"es2", #name, defaultResult} arguments; }
#define ES2_REPLAYED(id, kind, defaultResult, result, name, parameters, arguments, wrapperParameters)        \
    ES2(id, kind, defaultResult, result, name, parameters, arguments)
#include "api/es2.def"

// A variant that lacks an entry stays out of what eglGetProcAddress answers.
#ifndef FAKE_VARIANT
namespace
{

struct Registration
{
    Registration()
    {
#define ES2(id, kind, defaultResult, result, name, parameters, arguments)                                    \
    Fake().Register("es2", #name, reinterpret_cast<fakehost::AnyFunction>(&name));
#define ES2_REPLAYED(id, kind, defaultResult, result, name, parameters, arguments, wrapperParameters)        \
    ES2(id, kind, defaultResult, result, name, parameters, arguments)
#include "api/es2.def"
    }
};

Registration const g_registration;

}  // namespace
#endif
