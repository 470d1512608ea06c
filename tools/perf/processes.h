// The other processes on this machine, as the performance server needs to know them.
#pragma once
#include <cstdint>
#include <map>
#include <set>
#include <string>

namespace perf
{
// A process, so that it is told from a later one of the same number. One that has ended and is not waited for
// is gone, although its number is still taken.
class Process
{
public:
    Process() = default;
    explicit Process(uint32_t id);

    uint32_t Id() const { return m_id; }
    // What its executable is called; empty where the system does not tell.
    std::string const& Name() const { return m_name; }
    // Whether there was such a process to begin with. A number from another container says nothing here.
    bool IsKnown() const { return m_start != 0; }
    // Only for a known one; of another nobody can tell.
    bool IsGone() const;

private:
    uint32_t m_id = 0;
    uint64_t m_start = 0;  // when it began, in the system's own unit
    std::string m_name;
};

// The processes that share the rings of these tickets with this one, as far as they are found.
std::map<uint32_t, Process> FindProcessesWithRings(std::set<uint32_t> const& tickets);

// Removes the names of the rings of a ticket from shared memory. Only where one end is gone for good: nobody
// else can come to them any more.
void UnlinkRings(uint32_t ticket);

// Removes the rings of all tickets that no running process has in use; returns the other tickets.
std::set<uint32_t> UnlinkDeadRings();
}  // namespace perf
