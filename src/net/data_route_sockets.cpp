#include "net/data_route_sockets.h"
#include "platform/platform.h"
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <netinet/in.h>
#include <new>
#include <sys/socket.h>
#include <unistd.h>

CDataRouteSockets::CDataRouteSockets(unsigned int timeout)
    : m_pSocket(nullptr), m_timeout(timeout), m_pHost(nullptr), m_port(0)
{
}

CDataRouteSockets::~CDataRouteSockets()
{
    SocketClose(m_pSocket);
    std::free(m_pHost);
}

int CDataRouteSockets::DataOpenServerTryAccept() { return 1; }

bool CDataRouteSockets::DataOpenServer(SSocket* socket)
{
    if (!socket || socket->descriptor == -1)
        return false;
    SocketClose(m_pSocket);
    m_pSocket = socket;
    ClearCounters();
    KeepHost(nullptr, 0);
    return true;
}

bool CDataRouteSockets::DataOpenClient(char const* host, unsigned short port)
{
    ClearCounters();
    KeepHost(host, port);
    return true;
}

void CDataRouteSockets::KeepHost(char const* host, unsigned short port)
{
    std::free(m_pHost);
    m_pHost = host ? strdup(host) : nullptr;
    m_port = port;
}

void CDataRouteSockets::ClearCounters()
{
    m_bytesSent = 0;
    m_bytesReceived = 0;
}

int CDataRouteSockets::DataOpenClientTryAccept()
{
    if (m_pSocket)
    {
        int const state = SocketCheckWritable(m_pSocket->descriptor, 0);
        if (state == 1)
            return 1;
        if (state == 2)
            return 3;
        SocketClose(m_pSocket);
    }
    int descriptor = -1;
    addrinfo* address = nullptr;
    OpenInitRc(descriptor, &address, m_pHost, m_port);
    if (descriptor == -1)
        return 1;
    bool const failed = !address || connect(descriptor, address->ai_addr, address->ai_addrlen) == -1;
    bool const pending = failed && address && errno == EINPROGRESS;
    if (address)
        freeaddrinfo(address);
    SSocket* const socket = failed && !pending ? nullptr : new (std::nothrow) SSocket{descriptor};
    if (!socket)
    {
        close(descriptor);
        return 0;
    }
    m_pSocket = socket;
    ClearCounters();
    return pending ? 1 : 3;
}

bool CDataRouteSockets::ClientConnected()
{
    if (m_pSocket && SocketCheckWritable(m_pSocket->descriptor, 1) != 0)
        return true;
    SocketClose(m_pSocket);
    return false;
}

void CDataRouteSockets::Abandon()
{
    if (m_pSocket)
        close(m_pSocket->descriptor);
    delete m_pSocket;
    m_pSocket = nullptr;
}

bool CDataRouteSockets::DataSendData(char const* data, unsigned int size)
{
    unsigned int sent = 0;
    while (sent < size)
    {
        if (SocketWaitWritable(Descriptor(), m_timeout) <= 0)
            return false;
        long const result = Platform::SendNow(Descriptor(), data + sent, size - sent);
        if (result >= 0)
            sent += static_cast<unsigned int>(result);
        else if (errno != EAGAIN && errno != EINTR)
            return false;
    }
    m_bytesSent += size;
    return true;
}

int CDataRouteSockets::DataReceiveData(char* buffer, unsigned int size, unsigned int* count)
{
    *count = 0;
    int const readable = SocketWaitReadable(Descriptor(), m_timeout);
    if (readable <= 0)
        return readable == 0 ? 1 : 0;
    ssize_t const received = recv(Descriptor(), buffer, size, MSG_DONTWAIT);
    if (received < 0)
        return errno == EAGAIN || errno == EINTR ? 1 : 0;
    if (received == 0)
        return 2;
    m_bytesReceived += static_cast<uint32_t>(received);
    *count = static_cast<unsigned int>(received);
    return 3;
}

bool CDataRouteHerdSockets::initialise(unsigned short port)
{
    int descriptor = -1;
    OpenInitRc(descriptor, nullptr, nullptr, port);
    if (descriptor == -1)
        return false;
    int const on = 1;
    setsockopt(descriptor, SOL_SOCKET, SO_REUSEADDR, &on, sizeof on);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_ANY);
    address.sin_port = htons(port);
    constexpr int kBacklog = 128;
    bool const listening = bind(descriptor, reinterpret_cast<sockaddr*>(&address), sizeof address) == 0 &&
                           listen(descriptor, kBacklog) == 0;
    SSocket* const socket = listening ? new (std::nothrow) SSocket{descriptor} : nullptr;
    if (!socket)
    {
        close(descriptor);
        return false;
    }
    shutdown();
    m_pSocket = socket;
    return true;
}

void CDataRouteHerdSockets::shutdown()
{
    if (!m_pSocket)
        return;
    close(m_pSocket->descriptor);
    delete m_pSocket;
    m_pSocket = nullptr;
}

CDataRouteSockets* CDataRouteHerdSockets::poll()
{
    if (!m_pSocket || SocketWaitReadable(m_pSocket->descriptor, 0) <= 0)
        return nullptr;
    // On purpose: the result is not tested. A client that has gone again leaves a route without a socket,
    // which the caller finds closed.
    int const descriptor = accept(m_pSocket->descriptor, nullptr, nullptr);
    if (descriptor != -1)
        SocketKeepFromChildren(descriptor);
    auto* const route = new (std::nothrow) CDataRouteSockets;
    auto* const socket = new (std::nothrow) SSocket{descriptor};
    if (route && route->DataOpenServer(socket))
        return route;
    if (descriptor != -1)
        close(descriptor);
    delete socket;
    return route;
}
