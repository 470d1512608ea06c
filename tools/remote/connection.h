// One TCP connection to a traced application.
#pragma once
#include "tools/remote/packets.h"
#include <memory>
#include <optional>
#include <string>

namespace remote
{
struct Address
{
    std::string host;
    unsigned port = kPort;

    std::string Text() const { return host + ":" + std::to_string(port); }
};

// HOST or HOST:PORT; nothing for anything else.
std::optional<Address> ParseAddress(std::string const& text);

class Connection
{
public:
    // Null when there is no connection to be had now; `error` says why.
    static std::unique_ptr<Connection> Open(Address const& address, std::string& error);
    ~Connection();
    Connection(Connection const&) = delete;
    Connection& operator=(Connection const&) = delete;

    // Waits up to the given time for something to come, and takes it. False when the connection is lost, for
    // the reason in Error().
    bool Receive(int milliseconds);
    bool Send(Command command);

    bool Next(Packet& packet) { return m_reader.Next(packet); }
    uint64_t Repeated() const { return m_reader.Repeated(); }
    std::string const& Fault() const { return m_reader.Fault(); }
    std::string const& Error() const { return m_error; }

private:
    explicit Connection(int socket) : m_socket(socket) {}

    int m_socket;
    PacketReader m_reader;
    std::string m_error;
};
}  // namespace remote
