// The exchange of extension pointers: which entry to fill for a name, and which wrapper to hand out.
#include "host/call_kind.h"
#include "host/hosts.h"
#include "wrappers/egl.h"
#include "wrappers/es1.h"
#include "wrappers/es2.h"
#include "wrappers/with_zeros.h"
#include <cstring>

// Wrappers with trailing arguments are handed out under the API's own signature: the application does not
// pass those, and what happens to lie in their place is not the 0 that they must be.
namespace
{
namespace EglPlain
{
#define EGL(id, kind, defaultResult, result, call, parameters, arguments)
#define EGL_REPLAYED(id, kind, defaultResult, result, call, parameters, arguments, wrapperParameters)        \
    result call parameters { return WithZeros{&Egl::_##call} arguments; }
#include "api/egl.def"
}  // namespace EglPlain
namespace Es2Plain
{
#define ES2(id, kind, defaultResult, result, call, parameters, arguments)
#define ES2_REPLAYED(id, kind, defaultResult, result, call, parameters, arguments, wrapperParameters)        \
    result call parameters { return WithZeros{&Es2::_##call} arguments; }
#include "api/es2.def"
}  // namespace Es2Plain
}  // namespace

// `call`'s wrapper when the name is the call's; an extension's entry takes the host's pointer first.
#define EXCHANGE(kind, call, wrapper)                                                                        \
    if (!((kind)&kNotExchanged) && std::strcmp(name, #call) == 0)                                            \
    {                                                                                                        \
        if ((kind)&kExtension)                                                                               \
            call = reinterpret_cast<decltype(call)>(pointer);                                                \
        return reinterpret_cast<AnyFunction>(&wrapper);                                                      \
    }

AnyFunction SEglHost::FunctionPtrExchange(char const* name, AnyFunction pointer)
{
#define EGL(id, kind, defaultResult, result, call, parameters, arguments) EXCHANGE(kind, call, Egl::_##call)
#define EGL_REPLAYED(id, kind, defaultResult, result, call, parameters, arguments, wrapperParameters)        \
    EXCHANGE(kind, call, EglPlain::call)
#include "api/egl.def"
    return nullptr;
}

AnyFunction SEs1Host::FunctionPtrExchange(char const* name, AnyFunction pointer)
{
    if (LoadFailed())
        return nullptr;
#define ES1(id, kind, defaultResult, result, call, parameters, arguments) EXCHANGE(kind, call, Es1::_##call)
#include "api/es1.def"
    return nullptr;
}

AnyFunction SEs2Host::FunctionPtrExchange(char const* name, AnyFunction pointer)
{
#define ES2(id, kind, defaultResult, result, call, parameters, arguments) EXCHANGE(kind, call, Es2::_##call)
#define ES2_REPLAYED(id, kind, defaultResult, result, call, parameters, arguments, wrapperParameters)        \
    EXCHANGE(kind, call, Es2Plain::call)
#include "api/es2.def"
    return nullptr;
}

#undef EXCHANGE
