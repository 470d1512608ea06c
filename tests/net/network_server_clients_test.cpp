// The trace server with clients that go away, stop reading or were never there.
#include "tests/net/server_fixture.h"

// A client that closes in order is gone at the next receive; the next one takes its place.
TEST_F(NetworkServer, AClientThatCloses)
{
    Connect();
    Check();
    m_client.EndSending();
    SNetStatus status{};
    do
        status = CheckLater();
    while (status.bConnected);
    EXPECT_FALSE(status.bError);
    Connect();
    EXPECT_TRUE(After(Command(0x40)).bStartRecording);
}

// One that was killed is an error.
TEST_F(NetworkServer, AClientThatIsReset)
{
    Connect();
    Check();
    m_client.Abort();
    SNetStatus status{};
    do
        status = CheckLater();
    while (status.bConnected);
    EXPECT_TRUE(status.bError);
}

// Clients that come and go cost the application no descriptors.
TEST_F(NetworkServer, ComingAndGoingCostsNothing)
{
    auto const lowestFree = [] {
        int const descriptor = dup(0);
        close(descriptor);
        return descriptor;
    };
    int const before = lowestFree();
    for (int i = 0; i < 10; ++i)
    {
        Connect();
        m_client.Close();
        while (CheckLater().bConnected)
        {
        }
    }
    Log();
    while (Log().find("fail to connect") == std::string::npos)
        CheckLater();
    EXPECT_EQ(before, lowestFree());
}

// A client killed while data is sent: what was not sent is kept, the application goes on after one pause, and
// the next client gets the rest.
TEST_F(NetworkServer, AClientKilledWhileSending)
{
    Connect();
    m_client.Abort();
    Bytes const data = Pattern(1024);
    EXPECT_TRUE(Send(data));
    while (m_server->SendDataFlush(true))
        Send(data);
    EXPECT_EQ(std::vector<unsigned int>{100000}, systemcalls::Slept());
    EXPECT_FALSE(m_server->SendDataFlush(true)) << "a closed route blocks nobody";
    EXPECT_EQ(1u, systemcalls::Slept().size());
    Connect();
    EXPECT_TRUE(m_server->SendDataFlush(true));
    EXPECT_EQ(DataPacket(1024, data), m_client.Receive(1030));
}

// A client that stops reading blocks the sender, which looks again every 100 ms. Small packets go out whole
// or not at all, so that the stream is whole in the end.
TEST_F(NetworkServer, AClientThatReadsNowAndThen)
{
    Connect();
    Bytes const data = Pattern(8 << 20);
    Bytes received;
    systemcalls::OnSleep([&] { received = Joined(received, m_client.Pending()); });
    EXPECT_TRUE(Send(data));
    ASSERT_FALSE(systemcalls::Slept().empty()) << "the system kept it all: nothing was tested";
    for (unsigned int const slept : systemcalls::Slept())
        EXPECT_EQ(100000u, slept);
    size_t const packets = data.size() / 1024;
    received = Joined(received, m_client.Receive(packets * 1030 - received.size()));
    for (size_t i = 0; i < packets; ++i)
        ASSERT_EQ(DataPacket(1024, Slice(data, i * 1024, 1024)), Slice(received, i * 1030, 1030)) << i;
}

// A packet that went out in part is sent again from its first byte, which breaks the stream: a client must
// not stop reading. Where a packet breaks is the system's choice, so that several sizes are tried.
TEST_F(NetworkServer, APacketThatWentOutInPartIsSentAgain)
{
    size_t parts = 0;
    for (unsigned int const size : {61000u, 50000u, 40000u})
    {
        Connect();
        m_client.ShrinkOtherSide(8192);
        m_server->SetBufferSize(static_cast<int>(size));
        Bytes const data = Pattern(6u * size);
        Bytes received;
        systemcalls::OnSleep([&] { received = Joined(received, m_client.Pending()); });
        EXPECT_TRUE(Send(data));
        systemcalls::OnSleep(nullptr);
        Bytes const last = DataPacket(static_cast<uint16_t>(size), Slice(data, 5u * size, size));
        while (received.size() < last.size() ||
               Slice(received, received.size() - last.size(), last.size()) != last)
            received = Joined(received, m_client.Pending());
        size_t at = 0;
        for (size_t i = 0; i < 6; ++i)
        {
            Bytes const packet = DataPacket(static_cast<uint16_t>(size), Slice(data, i * size, size));
            size_t const part = BytesAheadOf(packet, received, at);
            EXPECT_EQ(Slice(packet, 0, part), Slice(received, at, part))
                << "what went out first is its beginning";
            parts += part > 0;
            at += part + packet.size();
        }
        EXPECT_EQ(at, received.size());
        m_client.Abort();
        while (CheckLater().bConnected)
        {
        }
    }
    EXPECT_LE(1u, parts);
}

// One that reads slowly but steadily gets the stream whole.
TEST_F(NetworkServer, AClientThatReadsSteadily)
{
    Connect();
    Bytes const data = Pattern(6 << 20);
    Bytes received;
    std::thread reader([&] {
        size_t const packets = data.size() / 1024;
        for (size_t i = 0; i < packets; ++i)
        {
            Bytes const packet = m_client.Receive(1030);
            ASSERT_EQ(1030u, packet.size());
            received.insert(received.end(), packet.begin() + 5, packet.end() - 1);
        }
    });
    EXPECT_TRUE(Send(data));
    reader.join();
    EXPECT_TRUE(data == received);
    EXPECT_TRUE(systemcalls::Slept().empty());
}

// The end of the server sends the rest, and closes the connection in order, though a command was never read.
TEST_F(NetworkServer, TheEndSendsTheRest)
{
    Connect();
    Send({1, 2, 3});
    m_client.Send(Command(0x43));
    Printed([this] { m_server.reset(); });
    EXPECT_EQ(DataPacket(3, {1, 2, 3}), m_client.Receive(9));
    EXPECT_TRUE(m_client.AtEnd());
}

// Calls that arrive after the end, as threads make them while a process ends, touch nothing.
TEST_F(NetworkServer, CallsAfterTheEndDoNothing)
{
    Connect();
    alignas(CNetworkServer) static char room[sizeof(CNetworkServer)];
    auto* const server = new (room) CNetworkServer;
    server->~CNetworkServer();
    EXPECT_FALSE(server->SendData("a", 1));
    EXPECT_FALSE(server->SendDataFlush(true));
    EXPECT_FALSE(server->CheckStatus(m_control).bConnected);
    EXPECT_FALSE(server->CheckClientConnection());
    EXPECT_FALSE(server->InitializeServer());
    server->SendStatus();
    server->SendAckCommand(0x40);
    server->SetBufferSize(1);
    server->Close();
}

// A size that is none is refused.
TEST_F(NetworkServer, ANegativeSizeIsRefused)
{
    Connect();
    EXPECT_FALSE(m_server->SendData("a", -1));
    EXPECT_TRUE(m_server->SendData("a", 0));
}

// The child of a fork leaves the client to its parent: its end sends nothing and closes nothing.
TEST_F(NetworkServer, AForkedChildLeavesTheClientAlone)
{
    Connect();
    Send({1, 2, 3});
    pid_t const child = fork();
    if (child == 0)
    {
        bool const left = m_server->AbandonAfterFork();
        bool const sent = m_server->SendData("x", 1) || m_server->SendDataFlush(true);
        m_server.reset();
        _exit(left && !sent ? 0 : 1);
    }
    int result = -1;
    ASSERT_EQ(child, waitpid(child, &result, 0));
    EXPECT_EQ(0, result);
    EXPECT_TRUE(After(Command(0x41)).bStopRecording);
    EXPECT_EQ(Joined(DataPacket(3, {1, 2, 3}), Acknowledge(0x41)), m_client.Receive(15));
}

// A child of a process that had no client yet goes on as if it were the first: a program that puts itself
// into the background.
TEST_F(NetworkServer, AForkedChildWithoutAClientGoesOn)
{
    pid_t const child = fork();
    if (child == 0)
        _exit(m_server->AbandonAfterFork() ? 1 : 0);
    int result = -1;
    ASSERT_EQ(child, waitpid(child, &result, 0));
    EXPECT_EQ(0, result);
}

// The clock counts milliseconds from its first look, and outlives the wrap of its 32 bits.
TEST_F(NetworkServer, TimeIsCountedFromTheFirstLook)
{
    uint32_t const first = CNetworkServer::GetTime();
    systemcalls::Advance(1234);
    EXPECT_EQ(1234u, CNetworkServer::GetTime() - first);
    systemcalls::Advance(0xFFFFFFFF);
    EXPECT_EQ(1233u, CNetworkServer::GetTime() - first);
}

// The two calls that are there for later do nothing.
TEST_F(NetworkServer, AnnouncementsAreEmpty)
{
    EXPECT_EQ("", Printed([this] {
                  m_server->BroadCastIp();
                  m_server->SendWaitingPlayClient();
              }));
    EXPECT_TRUE(systemcalls::Sent().empty());
}
