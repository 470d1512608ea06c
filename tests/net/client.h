// A client of the recorder in a test's own process: sends bytes and says what came. Whatever loopback carries
// is there as soon as it was sent, so that nothing here waits for long; what never comes is a failure after
// seconds.
#pragma once
#include "tests/wrappers/expected.h"
#include <cstdint>

class Client
{
public:
    Client() = default;
    explicit Client(uint16_t port) { Connect(port); }
    ~Client() { Close(); }
    Client(Client const&) = delete;
    Client& operator=(Client const&) = delete;

    // To a port of this machine; returns success.
    bool Connect(uint16_t port);
    void Send(Bytes const& bytes);
    // Exactly so many bytes; fewer if the connection ends, or after some seconds.
    Bytes Receive(size_t size);
    // What is there at the moment.
    Bytes Pending();
    // Whether the other side has ended the connection, and everything is read.
    bool AtEnd();
    // No more is sent, but everything is read.
    void EndSending();
    void Close();
    // Ends the connection as a killed machine does: the other side's next write fails.
    void Abort();
    // Leaves the other end of the connection, in this process too, room for about so much.
    void ShrinkOtherSide(int room);

private:
    int m_socket = -1;
};

// A connected pair of sockets of this machine.
struct SocketPair
{
    int ours = -1;    // as a server accepts it
    int theirs = -1;  // as a client has it
};
SocketPair ConnectedPair(int room = 0);

// A socket that listens on a free port.
int ListenOnFreePort(uint16_t& port);
