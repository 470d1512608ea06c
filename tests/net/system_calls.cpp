#include "tests/net/system_calls.h"
#include <arpa/inet.h>
#include <atomic>
#include <cstring>
#include <mutex>
#include <netinet/in.h>
#include <sys/socket.h>
#include <sys/syscall.h>
#include <sys/time.h>
#include <unistd.h>

namespace
{

constexpr uint16_t kServerPort = 54321;
constexpr uint16_t kDiscoveryPort = 6522;

// The wall clock of a machine in use: far enough from 0 that seconds times 1000 wrap.
std::atomic<uint64_t> g_now{1700000000000};
std::atomic<uint32_t> g_step{0};
std::atomic<uint16_t> g_boundPort{0};
std::atomic<uint16_t> g_nextPort{0};

struct Log
{
    std::mutex mutex;
    std::vector<unsigned int> slept;
    std::function<void()> onSleep;
    std::vector<systemcalls::Datagram> sent;
};

Log& TheLog()
{
    static Log log;
    return log;
}

int SystemBind(int socket, void const* address, socklen_t size)
{
    return static_cast<int>(syscall(SYS_bind, socket, address, size));
}

uint16_t PortOf(int socket)
{
    sockaddr_in address{};
    socklen_t size = sizeof address;
    getsockname(socket, reinterpret_cast<sockaddr*>(&address), &size);
    return ntohs(address.sin_port);
}

}  // namespace

namespace systemcalls
{

void Reset()
{
    g_step = 0;
    g_boundPort = 0;
    g_nextPort = 0;
    std::lock_guard<std::mutex> const lock(TheLog().mutex);
    TheLog().slept.clear();
    TheLog().onSleep = nullptr;
    TheLog().sent.clear();
}

void Advance(uint32_t milliseconds) { g_now += milliseconds; }
void AdvanceAtEachLook(uint32_t milliseconds) { g_step = milliseconds; }

std::vector<unsigned int> Slept()
{
    std::lock_guard<std::mutex> const lock(TheLog().mutex);
    return TheLog().slept;
}

void OnSleep(std::function<void()> action)
{
    std::lock_guard<std::mutex> const lock(TheLog().mutex);
    TheLog().onSleep = std::move(action);
}

uint16_t BoundPort() { return g_boundPort; }
void BindNextTo(uint16_t port) { g_nextPort = port; }

std::vector<Datagram> Sent()
{
    std::lock_guard<std::mutex> const lock(TheLog().mutex);
    return TheLog().sent;
}

}  // namespace systemcalls

extern "C"
{

    int gettimeofday(timeval* now, void*) noexcept
    {
        uint64_t const milliseconds = g_now += g_step;
        now->tv_sec = static_cast<time_t>(milliseconds / 1000);
        now->tv_usec = static_cast<suseconds_t>(milliseconds % 1000 * 1000);
        return 0;
    }

    int usleep(useconds_t microseconds)
    {
        std::function<void()> action;
        {
            std::lock_guard<std::mutex> const lock(TheLog().mutex);
            TheLog().slept.push_back(microseconds);
            action = TheLog().onSleep;
        }
        if (action)
            action();
        return 0;
    }

    int bind(int socket, sockaddr const* address, socklen_t size) noexcept
    {
        sockaddr_in wanted{};
        if (size != sizeof wanted)
            return SystemBind(socket, address, size);
        std::memcpy(&wanted, address, sizeof wanted);
        uint16_t const port = ntohs(wanted.sin_port);
        if (wanted.sin_family != AF_INET || (port != kServerPort && port != kDiscoveryPort))
            return SystemBind(socket, address, size);
        wanted.sin_port = htons(g_nextPort.exchange(0));
        int const result = SystemBind(socket, &wanted, sizeof wanted);
        if (result == 0)
            g_boundPort = PortOf(socket);
        return result;
    }

    ssize_t sendto(int socket, void const* data, size_t size, int flags, sockaddr const* address,
                   socklen_t addressSize)
    {
        sockaddr_in to{};
        if (addressSize == sizeof to)
            std::memcpy(&to, address, sizeof to);
        int mayBroadcast = 0;
        socklen_t optionSize = sizeof mayBroadcast;
        getsockopt(socket, SOL_SOCKET, SO_BROADCAST, &mayBroadcast, &optionSize);
        {
            std::lock_guard<std::mutex> const lock(TheLog().mutex);
            TheLog().sent.push_back({inet_ntoa(to.sin_addr), ntohs(to.sin_port),
                                     std::string(static_cast<char const*>(data), size), mayBroadcast != 0});
        }
        to.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        to.sin_port = htons(g_boundPort);
        return syscall(SYS_sendto, socket, data, size, flags, &to, sizeof to);
    }
}
