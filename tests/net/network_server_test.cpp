// The trace server by itself: its packets, its commands, its clock and what it does when nobody is there.
#include "tests/net/server_fixture.h"

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
    for (size_t const size : {1024U, 1024U, 1024U, 1024U, 904U})
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
