// What the performance server shows on a terminal, as lines of text.
#pragma once
#include "tools/perf/session.h"
#include <list>

namespace perf
{
struct Size
{
    size_t columns = 80;
    size_t rows = 24;
};

// The key of each item: one letter or digit, or a blank for those that have none.
std::string KeysOf(std::vector<Item> const& items);

// The applications, and of the one shown its counters beside its items; the last message at the bottom. No
// line is longer than the terminal is wide, and there are at most as many as it is high. Where room is short,
// counters that never counted anything are left out.
std::vector<std::string> Compose(std::list<Session> const& sessions, Session const* shown,
                                 std::string const& message, Size size);
}  // namespace perf
