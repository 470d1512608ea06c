// The ports of a remote recording: where the recorder listens, and where `nebtrace discover` does.
#include "../port_owner.h"
#include "checks.h"
#include "tools/remote/packets.h"
#include <arpa/inet.h>
#include <cerrno>
#include <cstring>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

namespace doctor
{
namespace
{
// As both of them bind. Nothing if the port is to be had, else the error's number.
int TryPort(PortKind kind, uint16_t port)
{
    int const made = socket(AF_INET, (kind == PortKind::Tcp ? SOCK_STREAM : SOCK_DGRAM) | SOCK_CLOEXEC, 0);
    if (made < 0)
        return errno;
    int const on = 1;
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(port);
    address.sin_addr.s_addr = htonl(INADDR_ANY);
    setsockopt(made, SOL_SOCKET, SO_REUSEADDR, &on, sizeof on);
    bool const bound = bind(made, reinterpret_cast<sockaddr const*>(&address), sizeof address) == 0;
    int const error = bound ? 0 : errno;
    close(made);
    return error;
}

Finding CheckPort(PortKind kind, uint16_t port, char const* use, char const* next)
{
    std::string const name = (kind == PortKind::Tcp ? "TCP port " : "UDP port ") + std::to_string(port);
    Finding finding{name, Verdict::Ok, std::string("free for ") + use, {}, {{"port", std::to_string(port)}}};
    int const error = TryPort(kind, port);
    if (error == 0)
        return finding;
    std::string const owner = PortOwner(kind, port);
    finding.verdict = Verdict::Warning;
    finding.found = error != EADDRINUSE ? std::string(std::strerror(error))
                    : owner.empty()     ? "taken by a process that cannot be told"
                                        : "taken by process " + owner;
    finding.next = next;
    if (!owner.empty())
        finding.details.emplace_back("owner", owner);
    return finding;
}
}  // namespace

Findings CheckPorts()
{
    return {CheckPort(PortKind::Tcp, remote::kPort, "applications under nebtrace record --network",
                      "end that process before another application is to be recorded over the network"),
            CheckPort(PortKind::Udp, remote::kAnnouncementPort, "nebtrace discover",
                      "end that process before nebtrace discover is to listen")};
}
}  // namespace doctor
