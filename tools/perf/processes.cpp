#include "tools/perf/processes.h"
#include "profiler/data_path_shared_mem.h"
#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <sstream>
#include <sys/mman.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <unistd.h>
#include <utility>
#include <vector>

namespace fs = std::filesystem;

namespace perf
{
namespace
{
constexpr char kSharedMemory[] = "/dev/shm";

// "<ID> (<name>) <state> ...", in which the name may hold anything; the 22nd field is when it began.
struct Status
{
    std::string name;
    char state = 'X';
    uint64_t start = 0;
};

Status StatusOf(uint32_t id)
{
    std::ifstream file("/proc/" + std::to_string(id) + "/stat");
    std::string const text((std::istreambuf_iterator<char>(file)), std::istreambuf_iterator<char>());
    size_t const open = text.find('(');
    size_t const close = text.rfind(')');
    Status status;
    if (open == std::string::npos || close == std::string::npos || close < open)
        return status;
    status.name = text.substr(open + 1, close - open - 1);
    std::istringstream rest(text.substr(close + 1));
    rest >> status.state;
    std::string skipped;
    for (int field = 4; field < 22; ++field)
        rest >> skipped;
    rest >> status.start;
    return status;
}

bool IsRunning(Status const& status)
{
    return status.start != 0 && status.state != 'Z' && status.state != 'X' && status.state != 'x';
}

// The newest first, without this one.
std::vector<uint32_t> OtherProcesses()
{
    std::vector<uint32_t> ids;
    std::error_code error;
    for (fs::directory_iterator entry("/proc", error), end; !error && entry != end; entry.increment(error))
    {
        std::string const name = entry->path().filename().string();
        if (name.find_first_not_of("0123456789") == std::string::npos && name != std::to_string(getpid()))
            ids.push_back(static_cast<uint32_t>(std::strtoul(name.c_str(), nullptr, 10)));
    }
    std::sort(ids.begin(), ids.end(), std::greater<>());
    return ids;
}

// The ticket of a ring's object, by its file's name; 0 for another file.
uint32_t TicketOf(std::string const& name)
{
    unsigned int ticket = 0;
    char part = 0;
    char index = 0;
    char kind = 0;
    char const* const base = &kPerfServerName[1];
    size_t const length = sizeof kPerfServerName - 2;
    if (name.compare(0, length, base) != 0 ||
        std::sscanf(name.c_str() + length, "%u%c%c%c", &ticket, &part, &index, &kind) != 4)
        return 0;
    return SSharedName(base, ticket, part == 'U' ? "U" : "D", static_cast<unsigned>(index - '0') % 3,
                       kind == 'd' ? "d" : "m")
                       .text == name
               ? ticket
               : 0;
}

// An object as maps name it: device and number. The name alone does not tell: in another container it is
// another object's.
using Object = std::pair<dev_t, ino_t>;
using Rings = std::map<Object, uint32_t>;  // to the ticket

void AddRing(Rings& rings, std::string const& path, uint32_t ticket)
{
    struct stat status;
    if (stat(path.c_str(), &status) == 0)
        rings[{status.st_dev, status.st_ino}] = ticket;
}

// The tickets, of these, whose rings a process has mapped.
std::set<uint32_t> TicketsOf(uint32_t process, Rings const& rings)
{
    std::set<uint32_t> tickets;
    std::ifstream maps("/proc/" + std::to_string(process) + "/maps");
    for (std::string line; std::getline(maps, line);)
    {
        unsigned int deviceMajor = 0;
        unsigned int deviceMinor = 0;
        unsigned long number = 0;
        // "<from>-<to> <rights> <offset> <device> <number> <path>"
        if (std::sscanf(line.c_str(), "%*s %*s %*s %x:%x %lu", &deviceMajor, &deviceMinor, &number) != 3)
            continue;
        auto const ring = rings.find({makedev(deviceMajor, deviceMinor), number});
        if (ring != rings.end())
            tickets.insert(ring->second);
    }
    return tickets;
}
}  // namespace

Process::Process(uint32_t id) : m_id(id)
{
    Status const status = StatusOf(id);
    if (!IsRunning(status))
        return;
    m_start = status.start;
    m_name = status.name;
}

bool Process::IsGone() const
{
    if (!IsKnown())
        return false;
    Status const status = StatusOf(m_id);
    return !IsRunning(status) || status.start != m_start;
}

std::map<uint32_t, Process> FindProcessesWithRings(std::set<uint32_t> const& tickets)
{
    Rings rings;
    for (uint32_t const ticket : tickets)
        AddRing(rings, kSharedMemory + std::string(SSharedName(kPerfServerName, ticket, "U", 0, "d").text),
                ticket);
    std::map<uint32_t, Process> found;
    for (uint32_t const id : OtherProcesses())
    {
        if (found.size() == rings.size())
            break;
        for (uint32_t const ticket : TicketsOf(id, rings))
            found.emplace(ticket, id);
    }
    return found;
}

void UnlinkRings(uint32_t ticket)
{
    for (char const* const part : {"U", "D"})
        for (unsigned int i = 0; i < kRingBuffers; ++i)
            for (char const* const kind : {"d", "m"})
                shm_unlink(SSharedName(kPerfServerName, ticket, part, i, kind).text);
}

std::set<uint32_t> UnlinkDeadRings()
{
    Rings rings;
    std::set<uint32_t> tickets;
    std::error_code error;
    for (fs::directory_iterator entry(kSharedMemory, error), end; !error && entry != end;
         entry.increment(error))
        if (uint32_t const ticket = TicketOf(entry->path().filename().string()))
        {
            AddRing(rings, entry->path().string(), ticket);
            tickets.insert(ticket);
        }
    if (tickets.empty())
        return {};
    std::set<uint32_t> used;
    for (uint32_t const id : OtherProcesses())
        used.merge(TicketsOf(id, rings));
    for (uint32_t const ticket : tickets)
        if (used.count(ticket) == 0)
            UnlinkRings(ticket);
    return used;
}
}  // namespace perf
