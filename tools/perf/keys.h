// Keys, as a terminal sends them.
#pragma once
#include <chrono>
#include <string>

namespace perf
{
// Tells the keys that are one character from those that are several: arrows, function keys and the like begin
// with ESC, and none of what follows is a key by itself.
class KeyReader
{
public:
    using Time = std::chrono::steady_clock::time_point;

    // The keys in these bytes. A sequence may come in two parts, but soon one after the other: what comes
    // later is not of it.
    std::string Take(std::string const& bytes, Time now);

private:
    enum class Place
    {
        Outside,
        Escape,    // behind ESC
        Sequence,  // behind ESC [
        Last       // one more belongs to it
    };

    static Place Behind(Place place, char c);

    Place m_place = Place::Outside;
    Time m_last;
};
}  // namespace perf
