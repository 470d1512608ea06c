// What `nebtrace dump` is asked to print.
#pragma once
#include <cstdint>
#include <regex.h>
#include <string>

struct Options
{
    std::string file;
    std::string frames;
    std::string calls;
    std::string grep;
    std::string extract;
    bool json = false;
};

struct Range
{
    uint64_t first = 0;
    uint64_t last = UINT64_MAX;

    bool Holds(uint64_t number) const { return number >= first && number <= last; }
};

// A POSIX extended regular expression. The C library's matcher, unlike the standard library's, takes lines of
// any length.
class Pattern
{
public:
    explicit Pattern(std::string const& text);
    ~Pattern();
    Pattern(Pattern const&) = delete;
    Pattern& operator=(Pattern const&) = delete;

    bool IsValid() const { return m_valid; }
    bool Matches(std::string const& line) const;

private:
    regex_t m_compiled;
    bool m_valid;
};

// "A-B", "A-" or "A". The empty text leaves the range that holds everything.
bool ParseRange(std::string const& text, Range& range);

// For the command line: empty if the text is good, else what is wrong with it.
std::string CheckRange(std::string const& text);
std::string CheckPattern(std::string const& text);
