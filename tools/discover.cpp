// `nebtrace discover`: prints the addresses of applications that announce themselves on the local network.
#include "commands.h"
#include "port_owner.h"
#include "remote/session.h"
#include <CLI/CLI.hpp>
#include <arpa/inet.h>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <netinet/in.h>
#include <nlohmann/json.hpp>
#include <poll.h>
#include <set>
#include <sys/socket.h>
#include <unistd.h>

using Json = nlohmann::ordered_json;

namespace
{
constexpr char kAnnouncement[] = "hello";

struct Options
{
    double seconds = 0;  // 0: until Ctrl-C
    unsigned count = 0;  // 0: no limit
    bool json = false;
};

std::string Reason(int error)
{
    std::string const owner = error == EADDRINUSE ? PortOwner(PortKind::Udp, remote::kAnnouncementPort) : "";
    return std::strerror(error) + (owner.empty() ? std::string() : "; end process " + owner + " first");
}

class AnnouncementSocket
{
public:
    AnnouncementSocket() : m_socket(socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, IPPROTO_UDP))
    {
        int const on = 1;
        sockaddr_in address{};
        address.sin_family = AF_INET;
        address.sin_port = htons(remote::kAnnouncementPort);
        address.sin_addr.s_addr = htonl(INADDR_ANY);
        setsockopt(m_socket, SOL_SOCKET, SO_REUSEADDR, &on, sizeof on);
        if (m_socket < 0 || bind(m_socket, reinterpret_cast<sockaddr const*>(&address), sizeof address) != 0)
            throw CommandFailed("cannot listen on UDP port " + std::to_string(remote::kAnnouncementPort) +
                                ": " + Reason(errno));
    }
    ~AnnouncementSocket()
    {
        if (m_socket >= 0)
            close(m_socket);
    }
    AnnouncementSocket(AnnouncementSocket const&) = delete;
    AnnouncementSocket& operator=(AnnouncementSocket const&) = delete;

    // The sender of an announcement, if one comes within the time. Other datagrams are not looked at.
    std::string Receive(int milliseconds) const
    {
        pollfd wait{m_socket, POLLIN, 0};
        if (poll(&wait, 1, milliseconds) <= 0)
            return {};
        char text[64];
        sockaddr_in from{};
        socklen_t length = sizeof from;
        ssize_t const size =
            recvfrom(m_socket, text, sizeof text, 0, reinterpret_cast<sockaddr*>(&from), &length);
        bool const known = size == static_cast<ssize_t>(std::strlen(kAnnouncement)) &&
                           std::memcmp(text, kAnnouncement, std::strlen(kAnnouncement)) == 0;
        char address[INET_ADDRSTRLEN] = "";
        if (known)
            inet_ntop(AF_INET, &from.sin_addr, address, sizeof address);
        return address;
    }

private:
    int m_socket;
};

void Discover(Options const& options)
{
    AnnouncementSocket const announcements;
    remote::InterruptWatch const watch;
    std::set<std::string> known;
    auto const began = remote::Clock::now();
    auto const isOver = [&] {
        std::chrono::duration<double> const since = remote::Clock::now() - began;
        bool const late = options.seconds != 0 && since.count() >= options.seconds;
        return late || (options.count != 0 && known.size() >= options.count) || remote::Interrupted();
    };
    while (!isOver())
    {
        std::string const address = announcements.Receive(static_cast<int>(remote::kSlice.count()));
        if (!address.empty() && known.insert(address).second)
        {
            std::string const line = options.json ? Json{{"address", address}}.dump() : address;
            std::printf("%s\n", line.c_str());
            std::fflush(stdout);
        }
    }
    if (known.empty())
        throw CommandFailed("nobody announced itself; nebtrace remote takes an address that you know");
}
}  // namespace

void AddDiscoverCommand(CLI::App& app)
{
    auto const options = std::make_shared<Options>();
    CLI::App* const command =
        app.add_subcommand("discover", "Print the addresses of devices that announce themselves");
    command->add_option("--seconds", options->seconds, "Listen for this time (default: until Ctrl-C)")
        ->type_name("SECONDS")
        ->check(CLI::PositiveNumber);
    command->add_option("--count", options->count, "Stop after as many addresses")
        ->type_name("N")
        ->check(CLI::PositiveNumber);
    command->add_flag("--json", options->json, "Print an object for each address, one a line");
    command->callback([options] { Discover(*options); });
}
