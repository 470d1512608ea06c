// QNX Neutrino. Untested: there is no such machine in the project; kept so small that it can be read.
#include "platform/platform.h"
#include <cerrno>
#include <csignal>
#include <cstring>
#include <net/if.h>
#include <netinet/in.h>
#include <process.h>
#include <pthread.h>
#include <sys/ioctl.h>
#include <sys/slog.h>
#include <sys/socket.h>
#include <sys/sockio.h>

namespace Platform
{

uint64_t ThreadId() { return static_cast<uint64_t>(static_cast<int64_t>(gettid())); }

void SystemLog(int code, int severity, char const* text) { slogf(code, severity, "%s", text); }

// The table has one entry for each address, of whatever family; those of IPv4 are wanted.
int ListInterfaces(int socket, SInterface (&interfaces)[kMostInterfaces])
{
    ifreq table[kMostInterfaces];
    ifconf request;
    std::memset(&request, 0, sizeof request);
    request.ifc_len = sizeof table;
    request.ifc_req = table;
    if (ioctl(socket, SIOCGIFCONF, &request) == -1)
        return 0;
    int const entries = request.ifc_len / static_cast<int>(sizeof table[0]);
    int count = 0;
    for (int i = 0; i < entries; ++i)
    {
        if (table[i].ifr_addr.sa_family != AF_INET)
            continue;
        std::memset(interfaces[count].name, 0, sizeof interfaces[count].name);
        std::memcpy(interfaces[count].name, table[i].ifr_name, sizeof table[i].ifr_name);
        sockaddr_in address;
        std::memcpy(&address, &table[i].ifr_addr, sizeof address);
        std::memcpy(interfaces[count].address, &address.sin_addr, sizeof interfaces[count].address);
        ++count;
    }
    return count;
}

// There is no flag that every release knows against the signal, so it is blocked for the moment, and taken
// back if it came for this write.
long SendNow(int socket, void const* data, size_t size)
{
    sigset_t pipe, before, pending;
    sigemptyset(&pipe);
    sigaddset(&pipe, SIGPIPE);
    sigpending(&pending);
    bool const wasPending = sigismember(&pending, SIGPIPE) == 1;
    pthread_sigmask(SIG_BLOCK, &pipe, &before);
    long const sent = static_cast<long>(send(socket, data, size, MSG_DONTWAIT));
    int const error = errno;
    if (sent == -1 && error == EPIPE && !wasPending)
    {
        timespec const now = {0, 0};
        sigtimedwait(&pipe, NULL, &now);
    }
    pthread_sigmask(SIG_SETMASK, &before, NULL);
    errno = error;
    return sent;
}

}  // namespace Platform
