// libEGL.so.1: the plain names of EGL.
#include "core/config.h"
#include "frontends/host_library.h"
#include "frontends/plain.h"
#include "host/hosts.h"
#include "wrappers/egl.h"

AnyFunction FindInHost(char const* name)
{
    static CHostLibrary const library(STraceConfig::Instance().m_eglLibraryPath.c_str());
    return library.Find(name);
}

template <class Function>
static bool FillHostEntry(Function host, char const* name)
{
    return host && EglHost()->FunctionPtrExchange(name, reinterpret_cast<AnyFunction>(host));
}

namespace Plain
{
#define EGL(id, kind, defaultResult, result, name, parameters, arguments)                                    \
    NEBTRACE_PLAIN(result, name, parameters)                                                                 \
    {                                                                                                        \
        NEBTRACE_BEFORE_##kind(name, arguments) return Egl::_##name arguments;                               \
    }
#define EGL_REPLAYED(id, kind, defaultResult, result, name, parameters, arguments, wrapperParameters)        \
    NEBTRACE_PLAIN(result, name, parameters) { return WithZeros{&Egl::_##name} arguments; }
#include "api/egl.def"

#define PASSTHROUGH(result, name, parameters, arguments)                                                     \
    NEBTRACE_PASSTHROUGH(result, name, parameters, arguments)
#include "api/passthrough_egl.def"
}  // namespace Plain
