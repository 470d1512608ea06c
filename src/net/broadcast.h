// Discovery on the local network: one datagram, "hello" without terminator, to UDP port 6522 of
// 255.255.255.255. Who receives it learns the address from the datagram itself. When to announce is the
// caller's business; the library has none.
#pragma once
#include "net/socket.h"
#include "support/export.h"

class NEBTRACE_API CDataRouteSocketsBroadcastServer
{
public:
    bool initialise();
    void broadcast();
    void shutdown();

private:
    SSocket* m_pSocket = nullptr;
};

class NEBTRACE_API CDataRouteSocketsBroadcastClient
{
public:
    bool initialise();
    // Waits 10 ms for a datagram, whatever it says. True: its contents and its sender's address, both cut to
    // what fits and terminated.
    bool poll(char* buffer, unsigned int bufferSize, char* address, unsigned int addressSize);
    void shutdown();

private:
    SSocket* m_pSocket = nullptr;
};
