#include "tests/net/client.h"
#include <arpa/inet.h>
#include <cerrno>
#include <gtest/gtest.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <sys/time.h>
#include <unistd.h>

namespace
{

sockaddr_in Loopback(uint16_t port)
{
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    address.sin_port = htons(port);
    return address;
}

// A socket that keeps at most about so much in each direction.
int NewSocket(int room)
{
    int const made = socket(AF_INET, SOCK_STREAM, 0);
    timeval const patience{30, 0};
    setsockopt(made, SOL_SOCKET, SO_RCVTIMEO, &patience, sizeof patience);
    if (room)
    {
        setsockopt(made, SOL_SOCKET, SO_RCVBUF, &room, sizeof room);
        setsockopt(made, SOL_SOCKET, SO_SNDBUF, &room, sizeof room);
    }
    return made;
}

}  // namespace

bool Client::Connect(uint16_t port)
{
    Close();
    m_socket = NewSocket(0);
    sockaddr_in const address = Loopback(port);
    return connect(m_socket, reinterpret_cast<sockaddr const*>(&address), sizeof address) == 0;
}

void Client::Send(Bytes const& bytes)
{
    EXPECT_EQ(static_cast<ssize_t>(bytes.size()), send(m_socket, bytes.data(), bytes.size(), MSG_NOSIGNAL));
}

Bytes Client::Receive(size_t size)
{
    Bytes bytes(size);
    size_t received = 0;
    while (received < size)
    {
        ssize_t const count = recv(m_socket, bytes.data() + received, size - received, 0);
        if (count <= 0)
            break;
        received += static_cast<size_t>(count);
    }
    bytes.resize(received);
    return bytes;
}

Bytes Client::Pending()
{
    Bytes all;
    uint8_t piece[4096];
    for (;;)
    {
        ssize_t const count = recv(m_socket, piece, sizeof piece, MSG_DONTWAIT);
        if (count <= 0)
            return all;
        all.insert(all.end(), piece, piece + count);
    }
}

bool Client::AtEnd()
{
    uint8_t byte = 0;
    return recv(m_socket, &byte, 1, 0) == 0;
}

void Client::EndSending() { shutdown(m_socket, SHUT_WR); }

void Client::Close()
{
    if (m_socket != -1)
        close(m_socket);
    m_socket = -1;
}

void Client::Abort()
{
    linger const reset{1, 0};
    setsockopt(m_socket, SOL_SOCKET, SO_LINGER, &reset, sizeof reset);
    Close();
}

void Client::ShrinkOtherSide(int room)
{
    sockaddr_in ours{};
    socklen_t size = sizeof ours;
    ASSERT_EQ(0, getsockname(m_socket, reinterpret_cast<sockaddr*>(&ours), &size));
    for (int other = 0; other < 1024; ++other)
    {
        sockaddr_in peer{};
        size = sizeof peer;
        if (getpeername(other, reinterpret_cast<sockaddr*>(&peer), &size) == 0 &&
            peer.sin_port == ours.sin_port)
        {
            ASSERT_EQ(0, setsockopt(other, SOL_SOCKET, SO_SNDBUF, &room, sizeof room));
            return;
        }
    }
    FAIL() << "the other end is not here";
}

int ListenOnFreePort(uint16_t& port)
{
    int const listener = NewSocket(0);
    sockaddr_in address = Loopback(0);
    socklen_t size = sizeof address;
    EXPECT_EQ(0, bind(listener, reinterpret_cast<sockaddr*>(&address), size));
    EXPECT_EQ(0, listen(listener, 5));
    getsockname(listener, reinterpret_cast<sockaddr*>(&address), &size);
    port = ntohs(address.sin_port);
    return listener;
}

SocketPair ConnectedPair(int room)
{
    uint16_t port = 0;
    int const listener = ListenOnFreePort(port);
    SocketPair pair;
    pair.theirs = NewSocket(room);
    sockaddr_in const address = Loopback(port);
    EXPECT_EQ(0, connect(pair.theirs, reinterpret_cast<sockaddr const*>(&address), sizeof address));
    pair.ours = accept(listener, nullptr, nullptr);
    if (room)
        setsockopt(pair.ours, SOL_SOCKET, SO_SNDBUF, &room, sizeof room);
    close(listener);
    return pair;
}
