#include "dump_options.h"
#include <cstdlib>

// More digits than these might not fit into 64 bits.
static constexpr size_t kMostDigits = 18;

Pattern::Pattern(std::string const& text)
    : m_valid(regcomp(&m_compiled, text.c_str(), REG_EXTENDED | REG_NOSUB) == 0)
{
}

Pattern::~Pattern()
{
    if (m_valid)
        regfree(&m_compiled);
}

bool Pattern::Matches(std::string const& line) const
{
    return m_valid && regexec(&m_compiled, line.c_str(), 0, nullptr, 0) == 0;
}

static bool ParseNumber(std::string const& text, uint64_t& number)
{
    bool const digits = text.find_first_not_of("0123456789") == std::string::npos;
    if (!digits || text.empty() || text.size() > kMostDigits)
        return false;
    number = std::strtoull(text.c_str(), nullptr, 10);
    return true;
}

bool ParseRange(std::string const& text, Range& range)
{
    if (text.empty())
        return true;
    size_t const dash = text.find('-');
    if (!ParseNumber(text.substr(0, dash), range.first))
        return false;
    if (dash == std::string::npos)
        range.last = range.first;
    else if (dash + 1 < text.size() && !ParseNumber(text.substr(dash + 1), range.last))
        return false;
    return range.first <= range.last;
}

std::string CheckRange(std::string const& text)
{
    Range range;
    bool const good = !text.empty() && ParseRange(text, range);
    return good ? "" : "a range is A-B, A- or A, counted from 0: " + text;
}

std::string CheckPattern(std::string const& text)
{
    return Pattern(text).IsValid() ? "" : "this is no regular expression: " + text;
}
