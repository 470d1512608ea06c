// Loaded ahead of libc into a program under the recorder: the recorder's port becomes a free one, whose
// number goes to the pipe that the environment names, and the recorder's clock runs ten times as fast.
#include <arpa/inet.h>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <sys/syscall.h>
#include <sys/time.h>
#include <time.h>
#include <unistd.h>

namespace
{

constexpr uint16_t kServerPort = 54321;
constexpr long kFaster = 10;

int g_redirected = -1;

void Tell(int socket)
{
    char const* const pipe = std::getenv("NEBTRACE_TEST_PORT_PIPE");
    sockaddr_in address{};
    socklen_t size = sizeof address;
    getsockname(socket, reinterpret_cast<sockaddr*>(&address), &size);
    int const to = pipe ? open(pipe, O_WRONLY) : -1;
    if (to != -1)
        dprintf(to, "%u\n", static_cast<unsigned int>(ntohs(address.sin_port)));
    close(to);
}

}  // namespace

extern "C"
{

    __attribute__((visibility("default"))) int bind(int socket, sockaddr const* address,
                                                    socklen_t size) noexcept
    {
        sockaddr_in wanted{};
        if (size == sizeof wanted)
            std::memcpy(&wanted, address, sizeof wanted);
        if (wanted.sin_family != AF_INET || ntohs(wanted.sin_port) != kServerPort)
            return static_cast<int>(syscall(SYS_bind, socket, address, size));
        wanted.sin_port = 0;
        int const result = static_cast<int>(syscall(SYS_bind, socket, &wanted, sizeof wanted));
        if (result == 0)
            g_redirected = socket;
        return result;
    }

    __attribute__((visibility("default"))) int listen(int socket, int backlog) noexcept
    {
        int const result = static_cast<int>(syscall(SYS_listen, socket, backlog));
        if (result == 0 && socket == g_redirected)
            Tell(socket);
        return result;
    }

    __attribute__((visibility("default"))) int gettimeofday(timeval* now, void*) noexcept
    {
        timespec real{};
        clock_gettime(CLOCK_MONOTONIC, &real);
        long const microseconds = (real.tv_sec % 100000 * 1000000 + real.tv_nsec / 1000) * kFaster;
        now->tv_sec = microseconds / 1000000;
        now->tv_usec = microseconds % 1000000;
        return 0;
    }

    __attribute__((visibility("default"))) int usleep(useconds_t microseconds)
    {
        timespec const shorter{0, static_cast<long>(microseconds) * 1000 / kFaster};
        return nanosleep(&shorter, nullptr);
    }
}
