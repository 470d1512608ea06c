#include "port_owner.h"
#include "perf/processes.h"
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <set>

namespace fs = std::filesystem;

namespace
{
constexpr unsigned kListening = 0x0a;  // the state of a TCP socket

// The sockets on the port, as the links in /proc/<ID>/fd name them.
std::set<std::string> SocketsOn(PortKind kind, uint16_t port)
{
    std::set<std::string> sockets;
    for (char const* const version : {"", "6"})
    {
        std::ifstream table(std::string("/proc/net/") + (kind == PortKind::Tcp ? "tcp" : "udp") + version);
        for (std::string line; std::getline(table, line);)
        {
            unsigned local = 0;
            unsigned state = 0;
            unsigned long number = 0;
            // "<n>: <address>:<port> <address>:<port> <state> <queues> <timer> <again> <user> <timeout>
            // <number>"
            if (std::sscanf(line.c_str(), "%*s %*[^:]:%x %*s %x %*s %*s %*s %*s %*s %lu", &local, &state,
                            &number) == 3 &&
                local == port && (kind == PortKind::Udp || state == kListening))
                sockets.insert("socket:[" + std::to_string(number) + "]");
        }
    }
    return sockets;
}

bool HasOneOf(fs::path const& process, std::set<std::string> const& sockets)
{
    std::error_code error;
    for (fs::directory_iterator entry(process / "fd", error), end; !error && entry != end;
         entry.increment(error))
    {
        std::error_code unreadable;
        if (sockets.count(fs::read_symlink(entry->path(), unreadable).string()) != 0)
            return true;
    }
    return false;
}
}  // namespace

std::string PortOwner(PortKind kind, uint16_t port)
{
    std::set<std::string> const sockets = SocketsOn(kind, port);
    std::error_code error;
    if (sockets.empty())
        return {};
    for (fs::directory_iterator entry("/proc", error), end; !error && entry != end; entry.increment(error))
    {
        std::string const name = entry->path().filename().string();
        if (name.find_first_not_of("0123456789") == std::string::npos && HasOneOf(entry->path(), sockets))
            return name + " (" +
                   perf::Process(static_cast<uint32_t>(std::strtoul(name.c_str(), nullptr, 10))).Name() + ")";
    }
    return {};
}
