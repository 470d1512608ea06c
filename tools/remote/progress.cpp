#include "tools/remote/progress.h"
#include <cstdio>
#include <unistd.h>

namespace remote
{
namespace
{
constexpr std::chrono::milliseconds kTerminalPeriod{200};
constexpr std::chrono::milliseconds kLinePeriod{2000};
}  // namespace

std::string SizeText(double bytes)
{
    char const* const units[] = {"bytes", "kB", "MB", "GB"};
    size_t unit = 0;
    for (; unit + 1 < std::size(units) && bytes >= 1000; ++unit)
        bytes /= 1000;
    char text[32];
    std::snprintf(text, sizeof text, unit == 0 ? "%.0f %s" : "%.1f %s", bytes, units[unit]);
    return text;
}

Progress::Progress(std::string file, bool silent)
    : m_file(std::move(file)), m_silent(silent), m_out(silent ? stderr : stdout),
      m_terminal(isatty(fileno(m_out)) != 0), m_last(Clock::now())
{
}

Progress::~Progress()
{
    if (m_open)
        std::fprintf(m_out, "\n");
}

void Progress::Show(State state, TraceStream const& stream)
{
    Clock::time_point const now = Clock::now();
    auto const since = now - m_last;
    if (m_silent && !m_terminal)
        return;
    if (state == m_state && since < (m_terminal ? kTerminalPeriod : kLinePeriod))
        return;
    double const seconds = std::chrono::duration<double>(since).count();
    double const rate = seconds > 0 ? static_cast<double>(stream.Bytes() - m_lastBytes) / seconds : 0;
    m_state = state;
    m_last = now;
    m_lastBytes = stream.Bytes();
    Print(state, stream, rate);
}

void Progress::Print(State state, TraceStream const& stream, double rate)
{
    std::string const line = m_file + ": " + StateName(state) + ", " + std::to_string(stream.Frames()) +
                             " frames, " + SizeText(static_cast<double>(stream.Bytes())) + ", " +
                             SizeText(rate) + "/s";
    if (m_terminal)
        std::fprintf(m_out, "\r%s\033[K", line.c_str());
    else
        std::fprintf(m_out, "%s\n", line.c_str());
    m_open = m_terminal;
    std::fflush(m_out);
}
}  // namespace remote
