#include "tools/perf/view.h"
#include <algorithm>
#include <cstdio>

namespace perf
{
namespace
{
// Neither holds a key that means something else: 0, q and the tabulator.
constexpr char kSwitchKeys[] = "123456789abcdefghijkl";
constexpr char kListKeys[] = "mnop";
constexpr size_t kItemsWidth = 44;
constexpr size_t kMostApplications = 4;
constexpr char kHelp[] = "1-9, a-d: switch  m: culling mode  0: all off  Tab: next application  q: quit";

std::string StateText(Session const& session)
{
    switch (session.GetState())
    {
    case Session::State::Silent:
        return "connected, not profiling";
    case Session::State::Speaking:
        return "connected";
    default:
        break;
    }
    char text[128];
    std::snprintf(text, sizeof text, "frame %llu, %.1f frames/s, CPU driver time %.0f us a frame",
                  static_cast<unsigned long long>(session.Frames()), session.Rate().FramesPerSecond(),
                  session.Rate().CpuTimePerFrame());
    return text;
}

std::string Fitted(std::string text, size_t width)
{
    text.resize(width, ' ');
    return text;
}

// Name to the left, value to the right.
std::string Row(std::string const& name, std::string const& value, size_t width)
{
    size_t const left = width > value.size() + 1 ? width - value.size() - 1 : 0;
    return Fitted(Fitted(name, left) + " " + value, width);
}

std::vector<std::string> CounterRows(Session const& session, size_t width, size_t most)
{
    std::vector<std::string> const& names = session.CounterNames();
    std::optional<Frame> const& frame = session.LastFrame();
    bool const all = names.size() <= most;
    std::vector<std::string> rows;
    for (size_t i = 0; i < names.size() && rows.size() < most; ++i)
        if (all || (frame && frame->totals[i] != 0))
            rows.push_back(Row(Printable(names[i]), frame ? std::to_string(frame->counters[i]) : "-", width));
    return rows;
}

std::vector<std::string> ItemRows(Session const& session, size_t width)
{
    std::string const keys = KeysOf(session.Items());
    std::vector<std::string> rows;
    for (size_t i = 0; i < keys.size(); ++i)
        rows.push_back(Row(std::string(1, keys[i]) + "  " + ShortName(session.Items()[i]),
                           ValueText(session.Items()[i]), width));
    return rows;
}

// Side by side where the terminal is wide enough, else one below the other.
std::vector<std::string> Body(Session const& session, Size size)
{
    constexpr size_t kGap = 3;
    bool const beside = size.columns >= 2 * kItemsWidth - 8;
    size_t const itemsWidth = beside ? std::min(kItemsWidth, size.columns / 2) : size.columns;
    size_t const countersWidth = beside ? size.columns - itemsWidth - kGap : size.columns;
    std::vector<std::string> const items = ItemRows(session, itemsWidth);
    size_t const room = beside ? size.rows : size.rows - std::min(size.rows, items.size());
    std::vector<std::string> rows = CounterRows(session, countersWidth, room);
    if (!beside)
    {
        rows.insert(rows.end(), items.begin(), items.end());
        return rows;
    }
    rows.resize(std::max(rows.size(), items.size()));
    for (size_t i = 0; i < rows.size(); ++i)
        rows[i] = Fitted(rows[i], countersWidth + kGap) + (i < items.size() ? items[i] : std::string());
    return rows;
}
}  // namespace

std::string KeysOf(std::vector<Item> const& items)
{
    std::string keys;
    size_t switches = 0;
    size_t lists = 0;
    for (Item const& item : items)
    {
        char key = ' ';
        if (IsSwitch(item) && switches + 1 < sizeof kSwitchKeys)
            key = kSwitchKeys[switches++];
        else if (IsList(item) && lists + 1 < sizeof kListKeys)
            key = kListKeys[lists++];
        keys += key;
    }
    return keys;
}

std::vector<std::string> Compose(std::list<Session> const& sessions, Session const* shown,
                                 std::string const& message, Size size)
{
    std::vector<std::string> lines;
    for (Session const& session : sessions)
        if (lines.size() < kMostApplications || &session == shown)
            lines.push_back((&session == shown ? "> " : "  ") + session.Title() + ": " + StateText(session));
    if (sessions.empty())
        lines.emplace_back("waiting for an application");
    lines.emplace_back();
    size_t const below = 3;
    size_t const taken = lines.size() + below;
    if (shown && size.rows > taken)
    {
        std::vector<std::string> const body = Body(*shown, {size.columns, size.rows - taken});
        lines.insert(lines.end(), body.begin(), body.end());
    }
    lines.resize(std::min(lines.size(), size.rows - std::min(size.rows, below)));
    lines.emplace_back();
    lines.emplace_back(kHelp);
    lines.push_back(Printable(message));
    lines.resize(std::min(lines.size(), size.rows));
    for (std::string& line : lines)
        line.resize(std::min(line.size(), size.columns));
    return lines;
}
}  // namespace perf
