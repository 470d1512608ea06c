// What long work shows while it lasts: a line on standard error that changes, where that is a terminal, and
// nothing where it is not.
#pragma once
#include <chrono>
#include <cstdint>
#include <string>

class ProgressLine
{
public:
    ProgressLine();
    // Leaves nothing on the screen.
    ~ProgressLine();
    ProgressLine(ProgressLine const&) = delete;
    ProgressLine& operator=(ProgressLine const&) = delete;

    // Whether a text would be shown now: it is not worth making one that would not.
    bool IsDue() const;
    void Show(std::string const& text);
    // "reading FILE: 42 %"
    void ShowReading(std::string const& file, uint64_t offset, uint64_t size);
    // Takes the line away, so that other output can begin in its place.
    void Clear();

private:
    bool m_terminal;
    bool m_open = false;
    std::chrono::steady_clock::time_point m_next;
};
