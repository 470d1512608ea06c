#include "net/broadcast.h"
#include "support/log.h"
#include <arpa/inet.h>
#include <cerrno>
#include <cstring>
#include <netinet/in.h>
#include <new>
#include <sys/socket.h>
#include <unistd.h>

namespace
{

constexpr unsigned short kPort = 6522;
constexpr char kHello[] = {'h', 'e', 'l', 'l', 'o'};

// Behind `what`, the system's text.
void LogFailure(char const* what) { LogMessage("\n%s whoops: %s\n", what, std::strerror(errno)); }

sockaddr_in AddressOf(in_addr_t host)
{
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(kPort);
    address.sin_addr.s_addr = htonl(host);
    return address;
}

// A new datagram socket in `pSocket`. The record is there also after a failure.
bool Open(SSocket*& pSocket, char const* nameOfFailure)
{
    if (pSocket && pSocket->descriptor != -1)
        close(pSocket->descriptor);
    if (!pSocket)
        pSocket = new (std::nothrow) SSocket{-1};
    if (!pSocket)
        return false;
    pSocket->descriptor = socket(AF_INET, SOCK_DGRAM, IPPROTO_UDP);
    if (pSocket->descriptor == -1)
    {
        LogFailure(nameOfFailure);
        return false;
    }
    SocketKeepFromChildren(pSocket->descriptor);
    return true;
}

void Close(SSocket*& pSocket)
{
    if (!pSocket)
        return;
    if (close(pSocket->descriptor) != 0)
        LogFailure("closesocket");
    delete pSocket;
    pSocket = nullptr;
}

int DescriptorOf(SSocket const* pSocket) { return pSocket ? pSocket->descriptor : -1; }

}  // namespace

bool CDataRouteSocketsBroadcastServer::initialise()
{
    if (!Open(m_pSocket, "socket"))
        return false;
    int const on = 1;
    if (setsockopt(m_pSocket->descriptor, SOL_SOCKET, SO_BROADCAST, &on, sizeof on) != 0)
    {
        LogFailure("setsockopt");
        return false;
    }
    return true;
}

void CDataRouteSocketsBroadcastServer::broadcast()
{
    sockaddr_in const everyone = AddressOf(INADDR_BROADCAST);
    ssize_t const sent = sendto(DescriptorOf(m_pSocket), kHello, sizeof kHello, MSG_DONTWAIT,
                                reinterpret_cast<sockaddr const*>(&everyone), sizeof everyone);
    if (sent != static_cast<ssize_t>(sizeof kHello))
        LogFailure("send");
}

void CDataRouteSocketsBroadcastServer::shutdown() { Close(m_pSocket); }

bool CDataRouteSocketsBroadcastClient::initialise()
{
    // On purpose: the sender's text, though nothing is sent here.
    if (!Open(m_pSocket, "send"))
        return false;
    sockaddr_in const any = AddressOf(INADDR_ANY);
    if (bind(m_pSocket->descriptor, reinterpret_cast<sockaddr const*>(&any), sizeof any) != 0)
    {
        LogFailure("bind");
        return false;
    }
    return true;
}

bool CDataRouteSocketsBroadcastClient::poll(char* buffer, unsigned int bufferSize, char* address,
                                            unsigned int addressSize)
{
    if (bufferSize == 0 || addressSize == 0)
        return false;
    int const descriptor = DescriptorOf(m_pSocket);
    // On purpose: a wait that fails goes on to the receive, which logs why.
    if (SocketWaitReadable(descriptor, 0) == 0)
        return false;
    sockaddr_in sender{};
    socklen_t senderSize = sizeof sender;
    ssize_t const received = recvfrom(descriptor, buffer, bufferSize - 1, MSG_DONTWAIT,
                                      reinterpret_cast<sockaddr*>(&sender), &senderSize);
    if (received == -1)
    {
        LogFailure("recvfrom");
        return false;
    }
    buffer[received] = 0;
    std::strncpy(address, inet_ntoa(sender.sin_addr), addressSize - 1);
    address[addressSize - 1] = 0;
    return true;
}

void CDataRouteSocketsBroadcastClient::shutdown() { Close(m_pSocket); }
