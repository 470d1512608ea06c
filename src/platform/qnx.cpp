// QNX Neutrino. Untested: there is no such machine in the project; kept so small that it can be read.
#include "platform/platform.h"
#include <process.h>
#include <sys/slog.h>

namespace Platform
{

uint64_t ThreadId() { return static_cast<uint64_t>(static_cast<int64_t>(gettid())); }

void SystemLog(int code, int severity, char const* text) { slogf(code, severity, "%s", text); }

}  // namespace Platform
