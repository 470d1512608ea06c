// The fake GLES1 driver.
#include "tests/fakehost/entry.h"

using fakehost::Entry;
using fakehost::Fake;

#define ES1(id, kind, defaultResult, result, name, parameters, arguments)                                    \
    FAKE_ENTRY result name parameters { return Entry<result>{"es1", #name, defaultResult} arguments; }
#include "api/es1.def"

// A variant that lacks an entry stays out of what eglGetProcAddress answers.
#ifndef FAKE_VARIANT
namespace
{

struct Registration
{
    Registration()
    {
#define ES1(id, kind, defaultResult, result, name, parameters, arguments)                                    \
    Fake().Register("es1", #name, reinterpret_cast<fakehost::AnyFunction>(&name));
#include "api/es1.def"
    }
};

Registration const g_registration;

}  // namespace
#endif
