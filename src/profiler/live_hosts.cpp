#include "profiler/live_hosts.h"
#include "host/hosts.h"

// The tables say it with their library's handle, and not with LoadFailed, which GLES2's never reports. A
// library without one of its core entries is closed again, and its other entries point at nothing.
SEs1Host* LiveEs1Host()
{
    if (!Es1IsInit())
        return nullptr;
    SEs1Host* const host = Es1Host();
    return host->IsOpen() ? host : nullptr;
}

SEs2Host* LiveEs2Host()
{
    if (!Es2IsInit())
        return nullptr;
    SEs2Host* const host = Es2Host();
    return host->IsOpen() ? host : nullptr;
}
