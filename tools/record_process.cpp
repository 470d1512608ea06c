// Runs the application and stands in for it: its signals and its exit code pass through.
#include "commands.h"
#include "exit_codes.h"
#include "record.h"
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <iostream>
#include <sys/wait.h>
#include <unistd.h>

namespace record
{
namespace
{
// All that a process can hold back, but for the faults, which must end it, and for job control: a stop from
// the terminal stops the application and this process alike.
sigset_t HeldSet()
{
    sigset_t set;
    sigfillset(&set);
    for (int const signal :
         {SIGSEGV, SIGBUS, SIGFPE, SIGILL, SIGABRT, SIGTRAP, SIGSYS, SIGTSTP, SIGTTIN, SIGTTOU, SIGCONT})
        sigdelset(&set, signal);
    return set;
}

void PutInFront(std::filesystem::path const& frontEnds)
{
    char const* const old = std::getenv("LD_LIBRARY_PATH");
    // An empty entry would mean the working directory.
    std::string const path = frontEnds.string() + (old && *old ? std::string(":") + old : std::string());
    setenv("LD_LIBRARY_PATH", path.c_str(), 1);
}

// In the new process. Returns only if the application can't be started.
void BecomeApplication(std::vector<std::string> const& command, std::filesystem::path const& frontEnds)
{
    PutInFront(frontEnds);
    std::vector<char*> arguments;
    for (std::string const& argument : command)
        arguments.push_back(const_cast<char*>(argument.c_str()));
    arguments.push_back(nullptr);
    execvp(arguments[0], arguments.data());
}

// Waits for the end of the application, and passes on what was sent to this process alone. What the terminal
// sends, the kernel sends to the whole group: the application has it already, and would get it twice.
int WaitPassingSignals(pid_t child, sigset_t const& held)
{
    int status = 0;
    while (waitpid(child, &status, WNOHANG) == 0)
    {
        siginfo_t info;
        int const signal = sigwaitinfo(&held, &info);
        if (signal > 0 && signal != SIGCHLD && info.si_code != SI_KERNEL)
            kill(child, signal);
    }
    return WIFSIGNALED(status) ? kExitSignal + WTERMSIG(status) : WEXITSTATUS(status);
}
}  // namespace

HeldSignals::HeldSignals()
{
    struct sigaction standard = {};
    standard.sa_handler = SIG_DFL;
    // A parent may have left it ignored; then no child could be waited for.
    sigaction(SIGCHLD, &standard, &m_savedChildAction);
    sigset_t const held = HeldSet();
    sigprocmask(SIG_BLOCK, &held, &m_savedMask);
}

HeldSignals::~HeldSignals() { Release(); }

void HeldSignals::Release() const
{
    sigaction(SIGCHLD, &m_savedChildAction, nullptr);
    sigprocmask(SIG_SETMASK, &m_savedMask, nullptr);
}

// Starts the application. The pipe closes by itself when it runs; otherwise it brings the reason why not.
int HeldSignals::Start(std::vector<std::string> const& command, std::filesystem::path const& frontEnds,
                       int& failure) const
{
    int ends[2];
    if (pipe2(ends, O_CLOEXEC) != 0)
        throw CommandFailed(std::string("no pipe can be made: ") + std::strerror(errno));
    pid_t const child = fork();
    if (child < 0)
        throw CommandFailed(std::string("no process can be made: ") + std::strerror(errno));
    if (child == 0)
    {
        Release();
        BecomeApplication(command, frontEnds);
        int const reason = errno;
        ssize_t const written = write(ends[1], &reason, sizeof reason);
        _exit(written < 0 ? 1 : 0);
    }
    close(ends[1]);
    if (read(ends[0], &failure, sizeof failure) != static_cast<ssize_t>(sizeof failure))
        failure = 0;
    close(ends[0]);
    return child;
}

int HeldSignals::RunApplication(std::vector<std::string> const& command,
                                std::filesystem::path const& frontEnds, int& pid) const
{
    int failure = 0;
    pid_t const child = Start(command, frontEnds, failure);
    int const code = WaitPassingSignals(child, HeldSet());
    if (failure == 0)
    {
        pid = child;
        return code;
    }
    std::cerr << "nebtrace: cannot run " << command[0] << ": " << std::strerror(failure) << "\n";
    return failure == ENOENT ? kExitNotFound : kExitNotRunnable;
}
}  // namespace record
