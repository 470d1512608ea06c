#include "tools/remote/connection.h"
#include <cerrno>
#include <cstring>
#include <memory>
#include <netdb.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

namespace remote
{
namespace
{
constexpr size_t kReceiveSize = 256 * 1024;

int ConnectTo(addrinfo const& to, std::string& error)
{
    int const made = socket(to.ai_family, to.ai_socktype | SOCK_CLOEXEC, to.ai_protocol);
    if (made >= 0 && connect(made, to.ai_addr, to.ai_addrlen) == 0)
        return made;
    error = std::strerror(errno);
    if (made >= 0)
        close(made);
    return -1;
}
}  // namespace

std::optional<Address> ParseAddress(std::string const& text)
{
    Address address;
    size_t const colon = text.find(':');
    address.host = text.substr(0, colon);
    if (address.host.empty())
        return std::nullopt;
    if (colon == std::string::npos)
        return address;
    std::string const port = text.substr(colon + 1);
    bool const number =
        !port.empty() && port.size() <= 5 && port.find_first_not_of("0123456789") == std::string::npos;
    address.port = number ? static_cast<unsigned>(std::stoul(port)) : 0;
    if (address.port < 1 || address.port > 65535)
        return std::nullopt;
    return address;
}

std::unique_ptr<Connection> Connection::Open(Address const& address, std::string& error)
{
    addrinfo hints{};
    hints.ai_family = AF_INET;
    hints.ai_socktype = SOCK_STREAM;
    addrinfo* found = nullptr;
    int const result =
        getaddrinfo(address.host.c_str(), std::to_string(address.port).c_str(), &hints, &found);
    if (result != 0)
    {
        error = gai_strerror(result);
        return nullptr;
    }
    int connected = -1;
    for (addrinfo const* to = found; to && connected < 0; to = to->ai_next)
        connected = ConnectTo(*to, error);
    freeaddrinfo(found);
    return connected < 0 ? nullptr : std::unique_ptr<Connection>(new Connection(connected));
}

Connection::~Connection() { close(m_socket); }

// A signal that ends the wait is no failure: its handler has left word for the caller.
bool Connection::Receive(int milliseconds)
{
    pollfd wait{m_socket, POLLIN, 0};
    int const ready = poll(&wait, 1, milliseconds);
    if (ready == 0 || (ready < 0 && errno == EINTR))
        return true;
    static thread_local std::vector<uint8_t> buffer(kReceiveSize);
    ssize_t const size = ready < 0 ? -1 : recv(m_socket, buffer.data(), buffer.size(), 0);
    if (size > 0)
        m_reader.Feed(buffer.data(), static_cast<size_t>(size));
    else if (size < 0 && errno == EINTR)
        return true;
    else
        m_error = size == 0 ? "the application closed the connection" : std::strerror(errno);
    return m_error.empty();
}

bool Connection::Send(Command command)
{
    uint8_t const bytes[] = {0x08, 0x44, static_cast<uint8_t>(command)};
    if (send(m_socket, bytes, sizeof bytes, MSG_NOSIGNAL) == static_cast<ssize_t>(sizeof bytes))
        return true;
    m_error = std::strerror(errno);
    return false;
}
}  // namespace remote
