#include "progress_line.h"
#include <algorithm>
#include <cstdio>
#include <sys/ioctl.h>
#include <unistd.h>

namespace
{
constexpr std::chrono::milliseconds kPeriod{100};
constexpr size_t kUsualWidth = 80;

// A line that wraps could not be taken back.
std::string Fitting(std::string text)
{
    winsize size{};
    bool const known = ioctl(STDERR_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col != 0;
    size_t const width = known ? size.ws_col : kUsualWidth;
    std::replace_if(
        text.begin(), text.end(), [](char c) { return static_cast<unsigned char>(c) < ' '; }, ' ');
    return text.size() < width ? text : text.substr(0, width - 1);
}
}  // namespace

ProgressLine::ProgressLine() : m_terminal(isatty(STDERR_FILENO) != 0) {}

ProgressLine::~ProgressLine() { Clear(); }

bool ProgressLine::IsDue() const { return m_terminal && std::chrono::steady_clock::now() >= m_next; }

void ProgressLine::Show(std::string const& text)
{
    if (!IsDue())
        return;
    m_next = std::chrono::steady_clock::now() + kPeriod;
    m_open = true;
    std::fprintf(stderr, "\r%s\033[K", Fitting(text).c_str());
    std::fflush(stderr);
}

void ProgressLine::ShowReading(std::string const& file, uint64_t offset, uint64_t size)
{
    if (size == 0 || !IsDue())
        return;
    uint64_t const percent = std::min<uint64_t>(100, size >= 100 ? offset / (size / 100) : 100);
    Show("reading " + file + ": " + std::to_string(percent) + " %");
}

void ProgressLine::Clear()
{
    if (!m_open)
        return;
    std::fflush(stdout);
    std::fprintf(stderr, "\r\033[K");
    std::fflush(stderr);
    m_open = false;
}
