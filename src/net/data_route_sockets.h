// Data routes over TCP: one object for each connection, and the listening side that hands them out.
#pragma once
#include "net/data_route.h"
#include "net/socket.h"
#include "support/export.h"
#include <netdb.h>

// A new TCP socket in `descriptor`; false and -1 when there is none to be had. With `result`, also looks up
// `host`, or this machine for a null one, and logs where it stands; `*result` is null when that failed, else
// for the caller to free.
NEBTRACE_API bool OpenInitRc(int& descriptor, addrinfo** result, char const* host, unsigned short port);

class NEBTRACE_API CDataRouteSockets : public CDataRouteCached
{
public:
    // The longest wait of one write for room, in milliseconds.
    explicit CDataRouteSockets(unsigned int timeout = 200);
    ~CDataRouteSockets() override;

    int DataOpenServerTryAccept() override;
    int DataOpenClientTryAccept() override;
    bool DataSendData(char const* data, unsigned int size) override;
    int DataReceiveData(char* buffer, unsigned int size, unsigned int* count) override;
    // Takes over an accepted connection; false, and the record stays the caller's, when it is none.
    virtual bool DataOpenServer(SSocket* socket);
    // Says where DataOpenClientTryAccept is to connect to.
    virtual bool DataOpenClient(char const* host, unsigned short port);

    // Whether the connection stands; closes the socket when it is broken. A peer that has closed in order is
    // not seen here, only by a receive.
    bool ClientConnected();
    bool IsOpen() const { return m_pSocket != nullptr; }
    // Closes this process's descriptor and leaves the connection to those who share it.
    void Abandon();

private:
    int Descriptor() const { return m_pSocket ? m_pSocket->descriptor : -1; }
    void KeepHost(char const* host, unsigned short port);
    void ClearCounters();

    SSocket* m_pSocket;  // null once closed
    uint32_t m_timeout;
    char* m_pHost;
    uint16_t m_port;
};

class NEBTRACE_API CDataRouteHerdSockets : public CDataRouteHerd
{
public:
    // Listens on the port, on all addresses; returns success.
    bool initialise(unsigned short port);
    // On purpose: the destructor does not do this. Who made the listener ends it.
    void shutdown() override;
    CDataRouteSockets* poll() override;

private:
    SSocket* m_pSocket = nullptr;
};
