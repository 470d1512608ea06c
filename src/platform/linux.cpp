#include "platform/platform.h"
#include <cstring>
#include <net/if.h>
#include <netinet/in.h>
#include <sys/ioctl.h>
#include <sys/socket.h>
#include <sys/syscall.h>
#include <syslog.h>
#include <unistd.h>

namespace Platform
{

uint64_t ThreadId() { return static_cast<uint64_t>(static_cast<int64_t>(syscall(SYS_gettid))); }

void SystemLog(int /*code*/, int severity, char const* text) { syslog(severity, "%s", text); }

int ListInterfaces(int socket, SInterface (&interfaces)[kMostInterfaces])
{
    ifreq table[kMostInterfaces];
    ifconf request{};
    request.ifc_len = sizeof table;
    request.ifc_req = table;
    if (ioctl(socket, SIOCGIFCONF, &request) == -1)
        return 0;
    int const count = request.ifc_len / static_cast<int>(sizeof table[0]);
    for (int i = 0; i < count; ++i)
    {
        static_assert(sizeof interfaces[i].name > sizeof table[i].ifr_name, "a name and its terminator");
        std::memset(interfaces[i].name, 0, sizeof interfaces[i].name);
        std::memcpy(interfaces[i].name, table[i].ifr_name, sizeof table[i].ifr_name);
        sockaddr_in address{};
        std::memcpy(&address, &table[i].ifr_addr, sizeof address);
        std::memcpy(interfaces[i].address, &address.sin_addr, sizeof interfaces[i].address);
    }
    return count;
}

long SendNow(int socket, void const* data, size_t size)
{
    return static_cast<long>(send(socket, data, size, MSG_NOSIGNAL | MSG_DONTWAIT));
}

}  // namespace Platform
