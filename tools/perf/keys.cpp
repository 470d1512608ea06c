#include "tools/perf/keys.h"

namespace perf
{
namespace
{
constexpr char kEscape = '\033';
constexpr std::chrono::milliseconds kLongestGap{50};

// Of ESC [ and what follows. The console of Linux has one more for F1 to F5: ESC [ [ A.
bool IsEnd(char c) { return c >= '@' && c <= '~'; }
}  // namespace

KeyReader::Place KeyReader::Behind(Place place, char c)
{
    if (c == kEscape)
        return Place::Escape;
    if (place == Place::Escape && c == '[')
        return Place::Sequence;
    if ((place == Place::Escape && c == 'O') || (place == Place::Sequence && c == '['))
        return Place::Last;
    return place == Place::Sequence && !IsEnd(c) ? place : Place::Outside;
}

std::string KeyReader::Take(std::string const& bytes, Time now)
{
    if (bytes.empty())
        return {};
    if (now - m_last > kLongestGap)
        m_place = Place::Outside;
    m_last = now;
    std::string keys;
    for (char const c : bytes)
    {
        if (m_place == Place::Outside && c != kEscape)
            keys += c;
        m_place = Behind(m_place, c);
    }
    return keys;
}
}  // namespace perf
