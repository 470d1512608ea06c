// libGLESv1_CM.so.1: the plain names of OpenGL ES 1.
#include "core/config.h"
#include "frontends/host_library.h"
#include "frontends/plain.h"
#include "host/hosts.h"
#include "wrappers/es1.h"

AnyFunction FindInHost(char const* name)
{
    static CHostLibrary const library(STraceConfig::Instance().m_es1LibraryPath.c_str());
    return library.Find(name);
}

template <class Function>
static bool FillHostEntry(Function host, char const* name)
{
    return host && Es1Host()->FunctionPtrExchange(name, reinterpret_cast<AnyFunction>(host));
}

namespace Plain
{
#define ES1(id, kind, defaultResult, result, name, parameters, arguments)                                    \
    NEBTRACE_PLAIN(result, name, parameters)                                                                 \
    {                                                                                                        \
        NEBTRACE_BEFORE_##kind(name, arguments) return Es1::_##name arguments;                               \
    }
#include "api/es1.def"
}  // namespace Plain
