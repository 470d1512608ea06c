// The trace server by itself: its packets, its commands, its clock and what it does when nobody is there.
#include "net/network_server.h"
#include "tests/net/client.h"

#include "tests/net/system_calls.h"
#include "tests/wrappers/recorder.h"
#include <algorithm>
#include <gtest/gtest.h>
#include <memory>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

namespace
{

using SNetStatus = CNetworkServer::SNetStatus;

Bytes Pattern(size_t size)
{
    Bytes bytes;
    for (size_t i = 0; i < size; ++i)
        bytes.push_back(static_cast<uint8_t>(i * 7 + i / 251));
    return bytes;
}

Bytes Slice(Bytes const& bytes, size_t from, size_t size)
{
    auto const begin = bytes.begin() + static_cast<std::ptrdiff_t>(from);
    return Bytes(begin, begin + static_cast<std::ptrdiff_t>(size));
}

Bytes DataPacket(uint16_t lengthField, Bytes const& payload)
{
    return Joined(Bytes{0x08, 0x44, 0x31}, U16(lengthField), payload, Bytes{0x25});
}

Bytes Command(uint8_t command) { return {0x08, 0x44, command}; }
Bytes Acknowledge(uint8_t command) { return {0x08, 0x44, 0x21, command, 0x01, 0x00}; }
Bytes Status(uint8_t state) { return {0x08, 0x44, 0x32, state, 0x01, 0x00}; }

// How much lies between `at` and the next whole packet; at most as much as the packet has, or all there is.
size_t BytesAheadOf(Bytes const& packet, Bytes const& received, size_t at)
{
    auto const from = received.begin() + static_cast<std::ptrdiff_t>(std::min(at, received.size()));
    auto const found = std::search(from, received.end(), packet.begin(), packet.end());
    EXPECT_TRUE(found != received.end()) << "no whole packet behind " << at;
    return std::min(packet.size(), static_cast<size_t>(found - from));
}

class NetworkServer : public testing::Test
{
protected:
    NetworkServer()
    {
        systemcalls::Reset();
        m_log += Printed([this] {
            m_server = std::make_unique<CNetworkServer>();
            EXPECT_TRUE(m_server->InitializeServer());
        });
        m_port = systemcalls::BoundPort();
    }
    ~NetworkServer() override
    {
        m_client.Close();
        Printed([this] { m_server.reset(); });
    }

    SNetStatus Check()
    {
        SNetStatus status{};
        m_log += Printed([&] { status = m_server->CheckStatus(m_control); });
        return status;
    }
    // The next pass that looks at the socket.
    SNetStatus CheckLater()
    {
        systemcalls::Advance(1001);
        return Check();
    }
    void Connect()
    {
        ASSERT_TRUE(m_client.Connect(m_port));
        while (!Check().bConnected)
            systemcalls::Advance(1001);
        m_client.Pending();
    }
    // What the server made of these bytes: the first pass that received anything.
    SNetStatus After(Bytes const& bytes)
    {
        m_client.Send(bytes);
        for (;;)
        {
            SNetStatus const status = CheckLater();
            if (status.bError || status.bStartRecording || status.bStopRecording || status.bPause ||
                status.bResume || status.bCloseRequest || !status.bConnected)
                return status;
        }
    }
    bool Send(Bytes const& bytes)
    {
        return m_server->SendData(reinterpret_cast<char const*>(bytes.data()),
                                  static_cast<int>(bytes.size()));
    }
    std::string Log()
    {
        std::string const log = m_log;
        m_log.clear();
        return log;
    }

    std::unique_ptr<CNetworkServer> m_server;
    CNetworkServer::SNetControl m_control{false, true, false, false};
    Client m_client;
    uint16_t m_port = 0;
    std::string m_log;
};

}  // namespace

// The start is announced once; a second one has nothing to do.
TEST_F(NetworkServer, StartsOnce)
{
    EXPECT_EQ("NEBTRACE(M) \nInitialize Server\n\n", Log());
    EXPECT_EQ("", Printed([this] { EXPECT_TRUE(m_server->InitializeServer()); }));
}

// A port that is taken is a failure; a second call claims success all the same, and nothing crashes.
TEST_F(NetworkServer, ATakenPort)
{
    CNetworkServer second;
    systemcalls::BindNextTo(m_port);
    EXPECT_EQ("NEBTRACE(M) \nInitialize Server\n\n"
              "NEBTRACE(M) Error Inicializing Server, Abort.\n",
              Printed([&] { EXPECT_FALSE(second.InitializeServer()); }));
    EXPECT_TRUE(second.InitializeServer());
    systemcalls::Advance(2000);
    Printed([&] { EXPECT_FALSE(second.CheckStatus(m_control).bConnected); });
}

// A client is looked for when more than a second has passed, and each look is logged.
TEST_F(NetworkServer, LooksForAClientOnceASecond)
{
    CheckLater();
    Log();
    systemcalls::Advance(1000);
    EXPECT_FALSE(Check().bConnected);
    EXPECT_EQ("", Log());
    systemcalls::Advance(1);
    EXPECT_FALSE(Check().bConnected);
    EXPECT_EQ("NEBTRACE(M) Client Disconnected... try to connect\n"
              "NEBTRACE(M) Client Disconnected... fail to connect\n\n",
              Log());
    ASSERT_TRUE(m_client.Connect(m_port));
    EXPECT_FALSE(Check().bConnected);
    Log();
    while (!CheckLater().bConnected)
        Log();
    EXPECT_EQ("NEBTRACE(M) Client Disconnected... try to connect\n"
              "NEBTRACE(M) Client Disconnected... connected\n\n",
              Log());
}

// Below the threshold bytes gather, at it they go out in packets of its size, and the rest stays.
TEST_F(NetworkServer, SendsInPiecesOfTheBufferSize)
{
    Connect();
    Bytes const data = Pattern(2500);
    EXPECT_TRUE(Send(Slice(data, 0, 1023)));
    EXPECT_TRUE(Send(Slice(data, 1023, 1)));
    EXPECT_EQ(DataPacket(1024, Slice(data, 0, 1024)), m_client.Receive(1030));
    EXPECT_TRUE(Send(Slice(data, 1024, 1476)));
    EXPECT_EQ(DataPacket(1024, Slice(data, 1024, 1024)), m_client.Receive(1030));
    EXPECT_TRUE(m_server->SendDataFlush(true));
    EXPECT_EQ(DataPacket(452, Slice(data, 2048, 452)), m_client.Receive(458));
    EXPECT_TRUE(m_server->SendDataFlush(true)) << "nothing left is success";
}

// The sizes at the edges of the framing, flushed at once: one packet up to 65,536 bytes, whose length field
// is 0 there, and more behind it.
TEST_F(NetworkServer, SizesOfPackets)
{
    struct Case
    {
        size_t size;
        std::vector<std::pair<size_t, uint16_t>> packets;  // bytes, length field
    };
    Case const cases[] = {{1, {{1, 1}}},
                          {255, {{255, 255}}},
                          {256, {{256, 256}}},
                          {1023, {{1023, 1023}}},
                          {1024, {{1024, 1024}}},
                          {65535, {{65535, 65535}}},
                          {65536, {{65536, 0}}},
                          {65537, {{65536, 0}, {1, 1}}},
                          {150000, {{65536, 0}, {65536, 0}, {18928, 18928}}}};
    for (Case const& one : cases)
    {
        Bytes const data = Pattern(one.size);
        EXPECT_FALSE(Send(data)) << "there is no client yet";
        Connect();
        EXPECT_TRUE(m_server->SendDataFlush(true));
        size_t at = 0;
        for (auto const& packet : one.packets)
        {
            EXPECT_EQ(DataPacket(packet.second, Slice(data, at, packet.first)),
                      m_client.Receive(packet.first + 6))
                << one.size;
            at += packet.first;
        }
        m_client.Abort();
        while (CheckLater().bConnected)
        {
        }
        systemcalls::Advance(1001);
        Printed([this] { m_server->CheckClientConnection(); });
    }
}

// The threshold: 1 to 65,536; anything else is 65,536.
TEST_F(NetworkServer, BufferSizes)
{
    Connect();
    m_server->SetBufferSize(1);
    EXPECT_TRUE(Send({5, 6}));
    EXPECT_EQ(Joined(DataPacket(1, {5}), DataPacket(1, {6})), m_client.Receive(14));
    for (int const size : {0, -1, 65537, 65536})
    {
        m_server->SetBufferSize(1);
        m_server->SetBufferSize(size);
        Bytes const data = Pattern(65536);
        EXPECT_TRUE(Send(Slice(data, 0, 65535)));
        EXPECT_TRUE(Send(Slice(data, 65535, 1)));
        EXPECT_EQ(DataPacket(0, data), m_client.Receive(65542));
    }
    EXPECT_TRUE(m_client.Pending().empty());
}

// Without a client everything is kept, and goes to the first one in order.
TEST_F(NetworkServer, WithoutAClientBytesAreKept)
{
    Bytes const data = Pattern(5000);
    EXPECT_FALSE(Send(Slice(data, 0, 3000)));
    EXPECT_FALSE(m_server->SendDataFlush(true));
    EXPECT_FALSE(m_server->SendDataFlush(false));
    m_server->Close();
    Connect();
    EXPECT_TRUE(Send(Slice(data, 3000, 2000)));
    EXPECT_TRUE(m_server->SendDataFlush(true));
    Bytes received;
    for (size_t const size : {1024, 1024, 1024, 1024, 904})
    {
        EXPECT_EQ(DataPacket(static_cast<uint16_t>(size), Slice(data, received.size(), size)),
                  m_client.Receive(size + 6));
        received.resize(received.size() + size);
    }
    EXPECT_TRUE(systemcalls::Slept().empty());
}

// The state byte is the first that applies.
TEST_F(NetworkServer, StatesInTheirOrder)
{
    Connect();
    struct
    {
        bool running, recording, waiting;
        uint8_t state;
    } const cases[] = {{true, true, true, 0x50},   {false, false, true, 0x50}, {true, true, false, 0x51},
                       {false, true, false, 0x51}, {true, false, false, 0x52}, {false, false, false, 0x53}};
    for (auto const& one : cases)
    {
        m_control = {true, one.running, one.recording, one.waiting};
        Check();
        m_client.Pending();
        m_server->SendStatus();
        EXPECT_EQ(Status(one.state), m_client.Receive(6));
    }
}

// A status packet goes out once a second, in a pass that does not look for commands in vain.
TEST_F(NetworkServer, StatusOnceASecond)
{
    Connect();
    Check();
    m_client.Pending();
    systemcalls::Advance(1001);
    Check();  // looks for commands, finds none, says nothing
    Check();
    EXPECT_EQ(Status(0x52), m_client.Receive(6));
    systemcalls::Advance(1000);
    Check();
    Check();
    systemcalls::Advance(1);
    Check();
    Check();
    EXPECT_EQ(Status(0x52), m_client.Receive(6));
    EXPECT_TRUE(m_client.Pending().empty());
}

// Start and resume are acknowledged.
TEST_F(NetworkServer, StartAndResumeAreAcknowledged)
{
    Connect();
    EXPECT_TRUE(After(Command(0x40)).bStartRecording);
    EXPECT_EQ(Joined(Acknowledge(0x40), Status(0x52)), m_client.Receive(12));
    EXPECT_TRUE(After(Command(0x42)).bResume);
    EXPECT_EQ(Joined(Acknowledge(0x42), Status(0x52)), m_client.Receive(12));
}

// Stop sends what has gathered and is acknowledged behind it; pause is acknowledged ahead of it.
TEST_F(NetworkServer, AcknowledgementAndDataInTheirOrder)
{
    Connect();
    Send({1, 2, 3});
    EXPECT_TRUE(After(Command(0x41)).bStopRecording);
    EXPECT_EQ(Joined(DataPacket(3, {1, 2, 3}), Acknowledge(0x41)), m_client.Receive(15));
    m_client.Receive(6);
    Send({4});
    EXPECT_TRUE(After(Command(0x43)).bPause);
    EXPECT_EQ(Joined(Acknowledge(0x43), DataPacket(1, {4})), m_client.Receive(13));
}

// A close is acknowledged as a pause, and its field set in no other pass.
TEST_F(NetworkServer, CloseIsAcknowledgedAsAPause)
{
    Connect();
    Send({4});
    SNetStatus const status = After(Command(0x45));
    EXPECT_TRUE(status.bCloseRequest);
    EXPECT_FALSE(status.bPause);
    EXPECT_EQ(Joined(Acknowledge(0x43), DataPacket(1, {4})), m_client.Receive(13));
    EXPECT_FALSE(Check().bCloseRequest);
}

// A result has one field of a command set, and says that the client is there.
TEST_F(NetworkServer, ACommandSetsItsFieldAlone)
{
    Connect();
    SNetStatus const status = After(Command(0x40));
    EXPECT_TRUE(status.bConnected);
    EXPECT_FALSE(status.bError || status.bResume || status.bPause || status.bStopRecording ||
                 status.bCloseRequest);
}

// Commands are read once a second.
TEST_F(NetworkServer, CommandsAreReadOnceASecond)
{
    Connect();
    Check();
    CheckLater();
    m_client.Send(Command(0x40));
    systemcalls::Advance(1000);
    EXPECT_FALSE(Check().bStartRecording);
    SNetStatus status{};
    while (!status.bStartRecording)
        status = CheckLater();
}

// A part of a command waits for the rest.
TEST_F(NetworkServer, APartOfACommandWaits)
{
    Connect();
    Check();
    m_client.Send({0x08});
    // It has been read when the status follows in the same pass.
    m_client.Pending();
    do
    {
        SNetStatus const status = CheckLater();
        EXPECT_FALSE(status.bError);
    } while (m_client.Pending().empty());
    EXPECT_TRUE(After({0x44, 0x40}).bStartRecording);
}

// Garbage empties the buffer and is reported; no status goes out in that pass, and the next command counts.
TEST_F(NetworkServer, GarbageIsDropped)
{
    Connect();
    Check();
    m_client.Pending();
    EXPECT_TRUE(After({0x09, 0x44, 0x40}).bError);
    EXPECT_TRUE(m_client.Pending().empty());
    EXPECT_TRUE(After({0x08, 0x45, 0x40, 1, 2, 3, 4}).bError);
    EXPECT_TRUE(After(Command(0x40)).bStartRecording);
    EXPECT_EQ(Acknowledge(0x40), m_client.Receive(6));
}

// So does an unknown command, behind whose pass a status still goes out.
TEST_F(NetworkServer, AnUnknownCommandIsDropped)
{
    Connect();
    Check();
    m_client.Pending();
    SNetStatus const status = After(Command(0x44));
    EXPECT_TRUE(status.bError);
    EXPECT_TRUE(status.bConnected);
    EXPECT_EQ(Status(0x52), m_client.Receive(6));
    EXPECT_TRUE(After(Command(0x42)).bResume);
}

// Two commands in one receive: the first is followed twice, the second never.
TEST_F(NetworkServer, DoubledCommandsRepeatTheFirst)
{
    Connect();
    Check();
    m_client.Pending();
    EXPECT_TRUE(After(Joined(Command(0x40), Command(0x42))).bStartRecording);
    SNetStatus const status = After(Command(0x43));
    EXPECT_TRUE(status.bStartRecording);
    EXPECT_FALSE(status.bResume || status.bPause);
    EXPECT_EQ(Joined(Acknowledge(0x40), Status(0x52), Acknowledge(0x40), Status(0x52)), m_client.Receive(24));
}

// A flood of commands that the buffer cannot hold empties it.
TEST_F(NetworkServer, AFloodEmptiesTheBuffer)
{
    Connect();
    Bytes flood;
    while (flood.size() < 3 * 65536)
        for (uint8_t const byte : Command(0x42))
            flood.push_back(byte);
    bool error = false;
    size_t sent = 0;
    for (int i = 0; i < 200 && !error; ++i)
    {
        if (sent + 8192 <= flood.size())
            m_client.Send(Slice(flood, sent, 8192));
        sent += 8192;
        error = CheckLater().bError;
    }
    EXPECT_TRUE(error);
    EXPECT_TRUE(Check().bConnected);
}

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
