#include "tools/perf/terminal.h"
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <poll.h>
#include <sys/ioctl.h>
#include <unistd.h>

namespace perf
{
namespace
{
constexpr int kEnding[] = {SIGINT, SIGTERM, SIGHUP, SIGQUIT};
constexpr char kOwnScreen[] = "\033[?1049h\033[?25l";
constexpr char kFormerScreen[] = "\033[?25h\033[?1049l";
volatile std::sig_atomic_t g_end = 0;
volatile std::sig_atomic_t g_stop = 0;

void AskForEnd(int signal) { g_end = signal; }
void AskForStop(int /*signal*/) { g_stop = 1; }

// Without SA_RESTART: a write that waits for the reader of a pipe must not hold the end up.
void Handle(int signal, void (*handler)(int))
{
    struct sigaction action = {};
    action.sa_handler = handler;
    sigemptyset(&action.sa_mask);
    sigaction(signal, &action, nullptr);
}

bool IsIgnored(int signal)
{
    struct sigaction action = {};
    return sigaction(signal, nullptr, &action) == 0 && action.sa_handler == SIG_IGN;
}

void Write(std::string const& text)
{
    std::fwrite(text.data(), 1, text.size(), stdout);
    std::fflush(stdout);
}
}  // namespace

// What the caller had ignored (nohup, or a shell that starts a program in the background) stays so. A pipe
// that is closed shows in the write.
SignalWatch::SignalWatch()
{
    for (int const signal : kEnding)
        if (!IsIgnored(signal))
            Handle(signal, AskForEnd);
    Handle(SIGPIPE, SIG_IGN);
}

SignalWatch::~SignalWatch()
{
    for (int const signal : kEnding)
        if (!IsIgnored(signal))
            Handle(signal, SIG_DFL);
    Handle(SIGPIPE, SIG_DFL);
}

int SignalWatch::EndAsked() { return g_end; }

bool SignalWatch::StopAsked()
{
    bool const asked = g_stop != 0;
    g_stop = 0;
    return asked;
}

// In the background of a shell the terminal belongs to another, and taking it would stop this process.
bool Terminal::IsThere()
{
    return isatty(STDIN_FILENO) != 0 && isatty(STDOUT_FILENO) != 0 && tcgetpgrp(STDIN_FILENO) == getpgrp();
}

Terminal::Terminal()
{
    tcgetattr(STDIN_FILENO, &m_before);
    Take();
}

Terminal::~Terminal()
{
    GiveBack();
    Handle(SIGTSTP, SIG_DFL);
}

// Keys come one by one and are not shown; Ctrl-C and Ctrl-Z stay signals.
void Terminal::Take()
{
    Handle(SIGTSTP, AskForStop);
    termios raw = m_before;
    raw.c_lflag &= ~static_cast<tcflag_t>(ICANON | ECHO);
    raw.c_cc[VMIN] = 1;
    raw.c_cc[VTIME] = 0;
    tcsetattr(STDIN_FILENO, TCSADRAIN, &raw);
    Write(kOwnScreen);
}

void Terminal::GiveBack() const
{
    Write(kFormerScreen);
    tcsetattr(STDIN_FILENO, TCSADRAIN, &m_before);
}

Size Terminal::GetSize() const
{
    winsize size{};
    if (ioctl(STDOUT_FILENO, TIOCGWINSZ, &size) != 0 || size.ws_col == 0 || size.ws_row == 0)
        return {};
    return {size.ws_col, size.ws_row};
}

void Terminal::Draw(std::vector<std::string> const& lines)
{
    std::string text = "\033[H";
    for (size_t i = 0; i < lines.size(); ++i)
        text += lines[i] + "\033[K" + (i + 1 < lines.size() ? "\r\n" : "");
    Write(text + "\033[J");
}

std::string Terminal::Keys()
{
    pollfd input{STDIN_FILENO, POLLIN, 0};
    char keys[64];
    ssize_t const count = poll(&input, 1, 0) > 0 ? read(STDIN_FILENO, keys, sizeof keys) : 0;
    return m_keys.Take(std::string(keys, count > 0 ? static_cast<size_t>(count) : 0),
                       std::chrono::steady_clock::now());
}

void Terminal::Stop()
{
    GiveBack();
    Handle(SIGTSTP, SIG_DFL);
    raise(SIGTSTP);
    Take();
}
}  // namespace perf
