// What a scene knows that its frame has done, by the names of a profiler's counters.
#pragma once
#include <map>
#include <string>

namespace examples
{
class Tally
{
public:
    void Begin() { m_counts.clear(); }
    void Add(std::string const& counter, long amount) { m_counts[counter] += amount; }
    // A call of glDrawArrays or glDrawElements, and its primitives.
    void Draw(unsigned mode, int count);
    void DrawIndexed(unsigned mode, int count);
    // Prints a line for each counter where that was asked for.
    void End() const;

    bool print = false;

private:
    void AddPrimitives(unsigned mode, int count);

    std::map<std::string, long> m_counts;
};
}  // namespace examples
