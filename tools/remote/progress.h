// What a remote recording shows while it runs: one line that changes on a terminal, plain lines elsewhere.
#pragma once
#include "tools/remote/session.h"
#include <cstdio>

namespace remote
{
class Progress
{
public:
    // `silent`: standard output is a program's, and the line goes to a terminal on standard error, or
    // nowhere.
    Progress(std::string file, bool silent);
    ~Progress();
    Progress(Progress const&) = delete;
    Progress& operator=(Progress const&) = delete;

    void Show(State state, TraceStream const& stream);

private:
    void Print(State state, TraceStream const& stream, double rate);

    std::string m_file;
    bool m_silent;
    std::FILE* m_out;
    bool m_terminal;
    bool m_open = false;  // a line on a terminal that is not ended
    State m_state{};
    Clock::time_point m_last;
    uint64_t m_lastBytes = 0;
};

// "12.3 MB"
std::string SizeText(double bytes);
}  // namespace remote
