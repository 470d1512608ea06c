#include "net/socket.h"
#include <cerrno>
#include <cstdint>
#include <fcntl.h>
#include <poll.h>
#include <sys/socket.h>
#include <time.h>
#include <unistd.h>

namespace
{

constexpr unsigned int kReadWait = 10;  // ms
constexpr short kFaults = POLLERR | POLLHUP;

int64_t NowMS()
{
    timespec now{};
    clock_gettime(CLOCK_MONOTONIC, &now);
    return static_cast<int64_t>(now.tv_sec) * 1000 + now.tv_nsec / 1000000;
}

// What of `events`, and which faults, a socket signals within the wait: 0 for nothing, -1 for no such
// descriptor. A signal of the application's does not shorten the wait.
//
// poll and not select: an application may have more descriptors open than a set has room for, and only poll
// tells a broken connection from one that takes data.
int Signalled(int socket, short events, unsigned int milliseconds)
{
    if (socket < 0)
        return -1;
    int64_t const end = NowMS() + milliseconds;
    pollfd polled{socket, events, 0};
    int64_t left = milliseconds;
    while (poll(&polled, 1, static_cast<int>(left)) < 0)
    {
        if (errno != EINTR)
            return -1;
        left = end - NowMS();
        if (left < 0)
            left = 0;
    }
    return polled.revents & POLLNVAL ? -1 : polled.revents;
}

int IsReady(int signalled) { return signalled > 0 ? 1 : signalled; }

int PendingError(int socket)
{
    int error = 0;
    socklen_t size = sizeof error;
    getsockopt(socket, SOL_SOCKET, SO_ERROR, &error, &size);
    return error;
}

}  // namespace

int SocketWaitReadable(int socket, unsigned int /*milliseconds*/)
{
    // On purpose: the wait is fixed. It is the longest that a call of the application is held for a command.
    return IsReady(Signalled(socket, POLLIN, kReadWait));
}

int SocketWaitWritable(int socket, unsigned int milliseconds)
{
    return IsReady(Signalled(socket, POLLOUT, milliseconds));
}

int SocketCheckWritable(int socket, unsigned int milliseconds)
{
    int const signalled = Signalled(socket, POLLOUT, milliseconds);
    if (signalled == 0)
        return 1;
    if (signalled < 0)
        return 0;
    if (signalled & kFaults)
        return PendingError(socket) == EINPROGRESS ? 1 : 0;
    return signalled & POLLOUT ? 2 : 0;
}

void SocketClose(SSocket*& socket)
{
    SSocket* const closing = socket;
    socket = nullptr;
    if (!closing)
        return;
    if (closing->descriptor != -1)
    {
        ::shutdown(closing->descriptor, SHUT_WR);
        // What the peer has sent is read first: a socket closed with unread data resets the connection, and
        // with it goes what is still on its way to the peer. What has not arrived yet is not waited for.
        char unread[1024];
        while (recv(closing->descriptor, unread, sizeof unread, MSG_DONTWAIT) > 0)
        {
        }
        close(closing->descriptor);
    }
    delete closing;
}

void SocketKeepFromChildren(int socket) { fcntl(socket, F_SETFD, fcntl(socket, F_GETFD) | FD_CLOEXEC); }
