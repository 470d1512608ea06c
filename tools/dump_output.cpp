#include "dump_output.h"
#include "commands.h"
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstring>

// With the signal ignored a closed pipe is an error of the write, whatever the parent process had set.
Output::Output() { std::signal(SIGPIPE, SIG_IGN); }

bool Output::Check(bool written)
{
    if (written)
        return true;
    if (errno == EPIPE)
        return false;
    throw CommandFailed(std::string("standard output: ") + std::strerror(errno));
}

bool Output::Line(std::string const& text)
{
    bool const written = std::fwrite(text.data(), 1, text.size(), stdout) == text.size();
    return Check(written && std::fputc('\n', stdout) != EOF);
}

bool Output::Flush() { return Check(std::fflush(stdout) == 0); }
