// Discovery by broadcast. The datagrams stay on this machine: see system_calls.h.
#include "net/broadcast.h"

#include "tests/net/system_calls.h"
#include "tests/wrappers/recorder.h"
#include <cstring>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <unistd.h>

namespace
{

class Broadcast : public testing::Test
{
protected:
    Broadcast() { systemcalls::Reset(); }
    ~Broadcast() override
    {
        Printed([this] {
            m_server.shutdown();
            m_client.shutdown();
        });
    }

    // Polls until a datagram is there; `addressRoom` counts the terminator, like the buffer's.
    std::string Poll(unsigned int room, unsigned int addressRoom = 32)
    {
        char buffer[32];
        char address[32];
        std::memset(buffer, '#', sizeof buffer);
        std::memset(address, '#', sizeof address);
        while (!m_client.poll(buffer, room, address, addressRoom))
        {
        }
        EXPECT_EQ('#', buffer[room]) << "written past the room";
        EXPECT_EQ('#', address[addressRoom < 32 ? addressRoom : 31]) << "written past the room";
        return std::string(buffer) + " from " + address;
    }

    CDataRouteSocketsBroadcastServer m_server;
    CDataRouteSocketsBroadcastClient m_client;
};

// No descriptor is to be had for as long as this lives.
class NoDescriptors
{
public:
    NoDescriptors()
    {
        getrlimit(RLIMIT_NOFILE, &m_before);
        rlimit const none{0, m_before.rlim_max};
        setrlimit(RLIMIT_NOFILE, &none);
    }
    ~NoDescriptors() { setrlimit(RLIMIT_NOFILE, &m_before); }

private:
    rlimit m_before{};
};

}  // namespace

// The announcement is one datagram to everybody's port 6522, "hello" without a terminator.
TEST_F(Broadcast, TheAnnouncementIsHello)
{
    ASSERT_TRUE(m_client.initialise());
    ASSERT_TRUE(m_server.initialise());
    EXPECT_EQ("", Printed([this] { m_server.broadcast(); }));
    ASSERT_EQ(1u, systemcalls::Sent().size());
    systemcalls::Datagram const sent = systemcalls::Sent()[0];
    EXPECT_EQ("255.255.255.255", sent.host);
    EXPECT_EQ(6522, sent.port);
    EXPECT_EQ("hello", sent.bytes);
    EXPECT_TRUE(sent.mayBroadcast);
}

// Who receives it learns the sender's address; without one there is nothing.
TEST_F(Broadcast, TheReceiverLearnsTheAddress)
{
    ASSERT_TRUE(m_client.initialise());
    char buffer[8];
    char address[16];
    EXPECT_FALSE(m_client.poll(buffer, sizeof buffer, address, sizeof address));
    ASSERT_TRUE(m_server.initialise());
    m_server.broadcast();
    EXPECT_EQ("hello from 127.0.0.1", Poll(16, 31));
}

// What is longer than the room is cut, and terminated.
TEST_F(Broadcast, WhatIsTooLongIsCut)
{
    ASSERT_TRUE(m_client.initialise());
    ASSERT_TRUE(m_server.initialise());
    m_server.broadcast();
    EXPECT_EQ("hel from 127.0.", Poll(4, 7));
    m_server.broadcast();
    EXPECT_EQ(" from ", Poll(1, 1));
}

// The texts of failures: no socket to be had, and the end of one that never was.
TEST_F(Broadcast, WithoutASocket)
{
    std::string const why = std::strerror(EMFILE);
    EXPECT_EQ("NEBTRACE(M) \nsocket whoops: " + why + "\n\n", Printed([this] {
                  NoDescriptors const none;
                  EXPECT_FALSE(m_server.initialise());
              }));
    EXPECT_EQ("NEBTRACE(M) \nsend whoops: " + why + "\n\n", Printed([this] {
                  NoDescriptors const none;
                  EXPECT_FALSE(m_client.initialise());
              }));
    std::string const bad = std::string(std::strerror(EBADF)) + "\n\n";
    char byte[2];
    EXPECT_EQ("NEBTRACE(M) \nsend whoops: " + bad, Printed([this] { m_server.broadcast(); }));
    EXPECT_EQ("NEBTRACE(M) \nrecvfrom whoops: " + bad,
              Printed([&] { EXPECT_FALSE(m_client.poll(byte, 2, byte, 2)); }));
    EXPECT_EQ("NEBTRACE(M) \nclosesocket whoops: " + bad, Printed([this] { m_server.shutdown(); }));
    EXPECT_EQ("NEBTRACE(M) \nclosesocket whoops: " + bad, Printed([this] { m_client.shutdown(); }));
    EXPECT_EQ("", Printed([this] { m_server.shutdown(); }));
}

// A port that is taken.
TEST_F(Broadcast, ATakenPort)
{
    CDataRouteSocketsBroadcastClient first;
    ASSERT_TRUE(first.initialise());
    systemcalls::BindNextTo(systemcalls::BoundPort());
    EXPECT_EQ("NEBTRACE(M) \nbind whoops: " + std::string(std::strerror(EADDRINUSE)) + "\n\n",
              Printed([this] { EXPECT_FALSE(m_client.initialise()); }));
    first.shutdown();
}
