#include "host/hosts.h"
#include "core/config.h"
#include "core/init_order.h"
#include "host/call_kind.h"
#include "support/log.h"
#include "support/relaxed.h"

SEglHost* SEglHost::s_pInstance = nullptr;
SEglHost* SEglHost::s_pInstancePlayback = nullptr;
SEs1Host* SEs1Host::s_pInstance = nullptr;
NEBTRACE_INIT_FIRST TraceScopedPtr<SEs2Host> SEs2Host::s_pInstance;

// Looks a core entry up; extension entries stay null.
#define LOOK_UP(kind, name)                                                                                  \
    if (!((kind)&kExtension))                                                                                \
        name = reinterpret_cast<decltype(name)>(GetFunction(#name));

SEglHost::SEglHost() : SHostLib(STraceConfig::Instance().m_eglLibraryPath)
{
#define EGL(id, kind, defaultResult, result, name, parameters, arguments) LOOK_UP(kind, name)
#define EGL_REPLAYED(id, kind, defaultResult, result, name, parameters, arguments, wrapperParameters)        \
    LOOK_UP(kind, name)
#include "api/egl.def"
    if (!LoadFailed())
        return;
    CloseLib();
    LogMessage("NEBTrace EGL - ERROR: failed to load entry points from host library\n"
               "Please check library paths in nebtrace.cfg\n");
    LogMessage("\nNEBTrace - aborting\n");  // nothing aborts
}

SEs1Host::SEs1Host() : SHostLib(STraceConfig::Instance().m_es1LibraryPath)
{
    if (LoadFailed())
        return;  // tolerated: a GLES2 application makes this table too, at its first eglGetProcAddress
#define ES1(id, kind, defaultResult, result, name, parameters, arguments) LOOK_UP(kind, name)
#include "api/es1.def"
    if (!LoadFailed())
        return;
    CloseLib();
    LogMessage("NEBTrace ES1 - ERROR: failed to load entry points from host library\n"
               "Please check library paths in nebtrace.cfg\n");
}

SEs2Host::SEs2Host() : SHostLib(STraceConfig::Instance().m_es2LibraryPath)
{
#define ES2(id, kind, defaultResult, result, name, parameters, arguments) LOOK_UP(kind, name)
#define ES2_REPLAYED(id, kind, defaultResult, result, name, parameters, arguments, wrapperParameters)        \
    LOOK_UP(kind, name)
#include "api/es2.def"
    if (LoadFailed())
    {
        CloseLib();
        LogMessage("NEBTrace ES2 - ERROR: failed to load entry points from host library\n"
                   "Please check library paths in nebtrace.cfg\n");
    }
    // On purpose: cleared after a failure too, so that Es2Host never reports one.
    m_bLoadFailed = false;
}

#undef LOOK_UP

// Not inline, where the compiler would take it for the common one.
__attribute__((noinline)) void* SEs2Host::operator new(std::size_t size) { return ::operator new(size); }

void SEs2Host::operator delete(void* table)
{
    static void* s_pLast = nullptr;
    *static_cast<void**>(table) = s_pLast;
    s_pLast = table;
}

SEglHost* EglHost()
{
    if (STraceConfig::UpdateRenderState())
        StoreRelaxed(STraceConfig::m_bEGLUsed, true);
    if (!SEglHost::s_pInstance)
        SEglHost::s_pInstance = new SEglHost;
    return SEglHost::s_pInstance;
}

SEs1Host* Es1Host()
{
    if (SEs1Host::s_pInstance)
        return SEs1Host::s_pInstance;
    // On purpose: marked at creation, whether shadow tracking is live or not, unlike its two kin.
    STraceConfig::m_bES1Used = true;
    SEs1Host::s_pInstance = new SEs1Host;
    if (SEs1Host::s_pInstance->LoadFailed())
    {
        LogMessage(
            "Could not load Host library OGLES1. Please check library paths in nebtrace.cfg if you are "
            "not using Extensions.Ignored..");
        STraceConfig::m_bES1Used = false;
    }
    return SEs1Host::s_pInstance;
}

SEs2Host* Es2Host()
{
    if (STraceConfig::UpdateRenderState())
        StoreRelaxed(STraceConfig::m_bES2Used, true);
    // Fetched once: at exit the instance goes while other threads are in calls.
    SEs2Host* host = SEs2Host::s_pInstance.Get();
    if (!host)
    {
        host = new SEs2Host;
        SEs2Host::s_pInstance.Reset(host);
        if (host->LoadFailed())
        {
            LogMessage("Could not load Host library OGLES2. Please check library paths in nebtrace.cfg");
            STraceConfig::m_bES2Used = false;
        }
    }
    return host;
}

bool EglIsInit() { return SEglHost::s_pInstance != nullptr; }

bool Es1IsInit() { return SEs1Host::s_pInstance != nullptr; }

bool Es2IsInit() { return SEs2Host::s_pInstance.Get() != nullptr; }
