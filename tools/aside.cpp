#include "aside.h"
#include "commands.h"
#include <cerrno>
#include <csignal>
#include <cstring>
#include <poll.h>
#include <sys/wait.h>
#include <unistd.h>

namespace
{
using Clock = std::chrono::steady_clock;

// Never returns to what the parent process was about to do.
[[noreturn]] void Work(std::function<std::string()> const& work, int to)
{
    std::string const answer = work();
    char const* text = answer.data();
    size_t left = answer.size();
    while (left != 0)
    {
        ssize_t const written = write(to, text, left);
        if (written <= 0)
            _exit(1);
        text += written;
        left -= static_cast<size_t>(written);
    }
    _exit(0);
}

// Everything up to the end of the pipe; false if that does not come in time.
bool ReadUntil(Clock::time_point last, int from, std::string& text)
{
    for (;;)
    {
        auto const left = std::chrono::duration_cast<std::chrono::milliseconds>(last - Clock::now()).count();
        pollfd wait{from, POLLIN, 0};
        int const ready = left > 0 ? poll(&wait, 1, static_cast<int>(left)) : 0;
        if (ready == 0)
            return false;
        char buffer[4096];
        ssize_t const size = ready < 0 ? -1 : read(from, buffer, sizeof buffer);
        if (size == 0)
            return true;
        if (size > 0)
            text.append(buffer, static_cast<size_t>(size));
        else if (errno != EINTR)
            return true;
    }
}

std::string FaultOf(int status, bool inTime, std::chrono::milliseconds longest)
{
    if (!inTime)
        return "no answer within " + std::to_string(longest.count() / 1000) + " s";
    if (WIFSIGNALED(status))
        return std::string("the process that tried it crashed: ") + strsignal(WTERMSIG(status));
    return WEXITSTATUS(status) == 0 ? std::string() : "it ended the process that tried it";
}
}  // namespace

Aside RunAside(std::function<std::string()> const& work, std::chrono::milliseconds longest)
{
    int ends[2];
    if (pipe(ends) != 0)
        throw CommandFailed(std::string("no pipe can be made: ") + std::strerror(errno));
    pid_t const child = fork();
    if (child < 0)
        throw CommandFailed(std::string("no process can be made: ") + std::strerror(errno));
    if (child == 0)
    {
        close(ends[0]);
        Work(work, ends[1]);
    }
    close(ends[1]);
    Aside aside;
    bool const inTime = ReadUntil(Clock::now() + longest, ends[0], aside.answer);
    close(ends[0]);
    if (!inTime)
        kill(child, SIGKILL);
    int status = 0;
    while (waitpid(child, &status, 0) < 0 && errno == EINTR)
    {
    }
    aside.fault = FaultOf(status, inTime, longest);
    return aside;
}
