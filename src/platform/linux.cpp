#include "platform/platform.h"
#include <sys/syscall.h>
#include <syslog.h>
#include <unistd.h>

namespace Platform
{

uint64_t ThreadId() { return static_cast<uint64_t>(static_cast<int64_t>(syscall(SYS_gettid))); }

void SystemLog(int /*code*/, int severity, char const* text) { syslog(severity, "%s", text); }

}  // namespace Platform
