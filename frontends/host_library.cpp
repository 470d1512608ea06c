#include "frontends/host_library.h"
#include "core/config.h"
#include <dlfcn.h>

static AnyFunction Symbol(void* library, char const* name)
{
    return library ? reinterpret_cast<AnyFunction>(dlsym(library, name)) : nullptr;
}

static AnyFunction HostProcAddress(char const* name)
{
    using GetProcAddress = AnyFunction (*)(char const*);
    static void* const egl =
        dlopen(STraceConfig::Instance().m_eglLibraryPath.c_str(), RTLD_LAZY | RTLD_LOCAL);
    static auto const get = reinterpret_cast<GetProcAddress>(Symbol(egl, "eglGetProcAddress"));
    return get ? get(name) : nullptr;
}

// The handle is kept for the life of the process: plain functions hold addresses from it.
CHostLibrary::CHostLibrary(char const* path) : m_handle(dlopen(path, RTLD_LAZY | RTLD_LOCAL)) {}

AnyFunction CHostLibrary::Find(char const* name) const
{
    AnyFunction const symbol = Symbol(m_handle, name);
    return symbol ? symbol : HostProcAddress(name);
}
