// libGLESv2.so.2: the plain names of OpenGL ES 2, and OpenGL ES 3 passed through.
#include "core/config.h"
#include "frontends/host_library.h"
#include "frontends/plain.h"
#include "host/hosts.h"
#include "wrappers/es2.h"

AnyFunction FindInHost(char const* name)
{
    static CHostLibrary const library(STraceConfig::Instance().m_es2LibraryPath.c_str());
    return library.Find(name);
}

template <class Function>
static bool FillHostEntry(Function host, char const* name)
{
    return host && Es2Host()->FunctionPtrExchange(name, reinterpret_cast<AnyFunction>(host));
}

namespace Plain
{
#define ES2(id, kind, defaultResult, result, name, parameters, arguments)                                    \
    NEBTRACE_PLAIN(result, name, parameters)                                                                 \
    {                                                                                                        \
        NEBTRACE_BEFORE_##kind(name, arguments) return Es2::_##name arguments;                               \
    }
#define ES2_REPLAYED(id, kind, defaultResult, result, name, parameters, arguments, wrapperParameters)        \
    NEBTRACE_PLAIN(result, name, parameters) { return WithZeros{&Es2::_##name} arguments; }
#include "api/es2.def"

#define PASSTHROUGH(result, name, parameters, arguments)                                                     \
    NEBTRACE_PASSTHROUGH(result, name, parameters, arguments)
#include "api/passthrough_es2.def"
}  // namespace Plain
