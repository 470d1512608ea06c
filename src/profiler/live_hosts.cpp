#include "profiler/live_hosts.h"
#include "host/hosts.h"

SEs1Host* LiveEs1Host()
{
    if (!Es1IsInit())
        return nullptr;
    SEs1Host* const host = Es1Host();
    return host->LoadFailed() ? nullptr : host;
}

SEs2Host* LiveEs2Host()
{
    if (!Es2IsInit())
        return nullptr;
    // This table reports no failure: without a library it has no entries.
    SEs2Host* const host = Es2Host();
    return host->glGetError ? host : nullptr;
}
