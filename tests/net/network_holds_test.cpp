// Network mode: how a client holds the application, goes away and comes back.
#include "tests/net/control_fixture.h"

// A pause holds the application in its next call, half a second at a time, until the client resumes.
TEST_F(NetworkControl, PauseHoldsUntilResume)
{
    ConnectAndRun();
    Pause();
    EXPECT_FALSE(STraceConfig::m_netControl.bRunning);
    size_t const hostCalls = HostCalls("glFlush");
    int looks = 0;
    systemcalls::OnSleep([&] {
        systemcalls::Advance(1001);
        EXPECT_EQ(hostCalls, HostCalls("glFlush")) << "the call is held";
        if (++looks == 3)
            m_client.Send(Command(0x42));
    });
    m_log.clear();
    Call();
    EXPECT_LE(3, looks);
    EXPECT_EQ(0u, m_log.find("NEBTRACE(M) Network Control: Waiting for the client (Pause)\n"));
    for (unsigned int const slept : systemcalls::Slept())
        EXPECT_EQ(500000u, slept);
    EXPECT_TRUE(STraceConfig::m_netControl.bRunning);
    EXPECT_FALSE(STraceConfig::m_netControl.bWaiting);
    AwaitAcknowledgements(2);
    EXPECT_EQ((Bytes{0x43, 0x42}), Taken().acknowledged);
}

// While the application is held the client is told so.
TEST_F(NetworkControl, AHeldApplicationIsWaiting)
{
    ConnectAndRun();
    Pause();
    bool told = false;
    systemcalls::OnSleep([&] {
        systemcalls::Advance(600);  // every other look is for commands; the status comes with the others
        if (told)
            return;
        Bytes const states = Taken().states;
        told = states.back() == 0x50;
        if (told)
            m_client.Send(Command(0x42));
    });
    Call();
    EXPECT_TRUE(told);
}

// A start that comes while the application is held is acknowledged and lost.
TEST_F(NetworkControl, AStartWhileHeldIsLost)
{
    ConnectAndRun();
    Pause();
    int sent = 0;
    systemcalls::OnSleep([&] {
        systemcalls::Advance(1001);
        if (sent == 0)
            m_client.Send(Command(0x40));
        else if (sent == 1 && Taken().acknowledged.back() == 0x40)
            m_client.Send(Command(0x42));
        else
            return;
        ++sent;
    });
    Call();
    AwaitAcknowledgements(3);
    EXPECT_EQ((Bytes{0x43, 0x40, 0x42}), Taken().acknowledged);
    EXPECT_FALSE(STraceConfig::m_netControl.bRecording);
    EXPECT_EQ(Bytes(), Written());
}

// A recording is paused and resumed, and has what was called in between the holds.
TEST_F(NetworkControl, ARecordingOutlivesAPause)
{
    ConnectAndRun();
    Start();
    Swap();
    Pause();
    Written();
    bool resumed = false;
    systemcalls::OnSleep([&] {
        systemcalls::Advance(1001);
        if (!resumed)
            m_client.Send(Command(0x42));
        resumed = true;
    });
    Call();
    EXPECT_EQ(FlushRecord(), Written()) << "the held call is recorded once it goes on";
    EXPECT_TRUE(STraceConfig::m_netControl.bRecording);
}

// A client that goes away while it holds the application lets it go.
TEST_F(NetworkControl, AClientThatGoesLetsTheApplicationGo)
{
    ConnectAndRun();
    Pause();
    systemcalls::OnSleep([&] {
        systemcalls::Advance(1001);
        m_client.Abort();
    });
    Call();
    EXPECT_TRUE(STraceConfig::m_netControl.bRunning);
    EXPECT_FALSE(STraceConfig::m_netControl.bConnected);
    // On purpose: the next client is told that the application waits, until it pauses and resumes.
    systemcalls::OnSleep(nullptr);
    m_wire.clear();
    Connect();
    CallUntilState(0x50);
}

// With NetworkWait the first call is held until a client has come and has sent a resume.
TEST_F(NetworkControl, NetworkWaitHoldsTheFirstCall)
{
    STraceConfig::m_bNetworkWait = true;
    int looks = 0;
    bool resumed = false;
    systemcalls::OnSleep([&] {
        EXPECT_EQ(0u, HostCalls("glFlush")) << "the call is held";
        EXPECT_TRUE(STraceConfig::m_netControl.bWaiting);
        EXPECT_FALSE(STraceConfig::m_netControl.bRunning);
        systemcalls::Advance(1001);
        if (++looks == 2)
            Connect();
        if (STraceConfig::m_netControl.bConnected && !resumed)
        {
            m_client.Send(Command(0x42));
            resumed = true;
        }
        systemcalls::Advance(1001);
    });
    Call();
    EXPECT_TRUE(resumed);
    EXPECT_EQ(1u, HostCalls("glFlush"));
    EXPECT_TRUE(STraceConfig::m_netControl.bRunning);
    EXPECT_TRUE(STraceConfig::m_headerWrite);
    std::string const waiting = "NEBTRACE(M) Waiting for Client...\n";
    size_t const first = m_log.find(waiting);
    size_t const held = m_log.find("NEBTRACE(M) Network Control: Waiting for the client (Pause)\n");
    EXPECT_LT(first, held);
    EXPECT_NE(std::string::npos, held);
    EXPECT_EQ(std::string::npos, m_log.find(waiting, held));
}

// A client that comes and goes while NetworkWait holds the application costs no stack: the call waits on.
TEST_F(NetworkControl, NetworkWaitOutlivesManyClients)
{
    STraceConfig::m_bNetworkWait = true;
    int clients = 0;
    bool there = false;
    bool resumed = false;
    systemcalls::OnSleep([&] {
        systemcalls::Advance(1001);
        if (!there)
        {
            Connect();
            there = true;
        }
        else if (STraceConfig::m_netControl.bConnected && clients < 20)
        {
            ++clients;
            there = false;
            m_client.Abort();
            STraceConfig::m_netControl.bConnected = false;
        }
        else if (STraceConfig::m_netControl.bConnected && !resumed)
        {
            m_client.Send(Command(0x42));
            resumed = true;
        }
    });
    Call();
    EXPECT_EQ(20, clients);
    EXPECT_EQ(1u, HostCalls("glFlush"));
}

// No client comes any more once the server has ended: calls on the process's way out are not held, and a
// thread that waits for a client is let go.
TEST_F(NetworkControl, TheEndOfTheServerHoldsNobody)
{
    STraceConfig::m_bNetworkWait = true;
    for (int const endInSleep : {0, 1})
    {
        pid_t const child = fork();
        if (child == 0)
        {
            STraceConfig::m_bPreventSaving = false;  // whatever a test before has recorded
            CNetworkServer* const server = STraceConfig::m_networkInstance;
            int slept = 0;
            systemcalls::OnSleep([&] {
                if (++slept > endInSleep)
                    _exit(1);
                server->~CNetworkServer();
            });
            if (endInSleep == 0)
                server->~CNetworkServer();
            Call();
            _exit(HostCalls("glFlush") == 1 && slept == endInSleep ? 0 : 2);
        }
        int result = -1;
        ASSERT_EQ(child, waitpid(child, &result, 0));
        EXPECT_EQ(0, result) << endInSleep;
    }
}

// A client killed in a recording: the application runs on unrecorded; the next client gets the rest of the
// recording without a header, and can end it.
TEST_F(NetworkControl, AClientKilledInARecordingAndBack)
{
    ConnectAndRun();
    Start();
    Swap();
    Call();
    m_client.Abort();
    while (STraceConfig::m_netControl.bConnected)
        CallLater();
    EXPECT_TRUE(STraceConfig::m_netControl.bRecording) << "the recording stays on";
    Written();
    Call();
    Swap();
    EXPECT_EQ(Bytes(), Written());
    m_wire.clear();
    Connect();
    CallUntilState(0x51);
    Bytes const rest = Taken().payload;
    EXPECT_NE(Chars("NEBTrace"), Slice(rest, 0, 8));
    Written();
    Call();
    EXPECT_EQ(FlushRecord(), Written());
    Stop();
    CallUntilState(0x52);
    Bytes const payload = Taken().payload;
    // No capture is known any more, so that the footer has no position.
    EXPECT_EQ(Footer(0), Slice(payload, payload.size() - 10, payload.size()));
    m_wire.clear();
    Start();
    Stop();
    EXPECT_EQ(Chars("NEBTrace"), Slice(Taken().payload, 0, 8));
    std::remove((TracePath().substr(0, TracePath().size() - 5) + "_1.nebt").c_str());
}

// In the child of a fork the client stays the parent's, and the child's calls just reach the host.
TEST_F(NetworkControl, AForkedChildRecordsNothing)
{
    static bool const watching = (WatchForks(), true);
    ASSERT_TRUE(watching);
    ConnectAndRun();
    Start();
    Swap();
    Call();
    pid_t const child = fork();
    if (child == 0)
    {
        size_t const before = HostCalls("glFlush");
        Es2::_glFlush();
        STraceConfig::Close();
        _exit(HostCalls("glFlush") == before + 1 && STraceConfig::m_bPreventSaving ? 0 : 1);
    }
    int result = -1;
    ASSERT_EQ(child, waitpid(child, &result, 0));
    EXPECT_EQ(0, result);
    Stop();
    CallUntilState(0x52);
    EXPECT_EQ(Taken().payload, FileBytes(TracePath()));
}

// Clearing the latch for good also ends frame control: the server is not asked any more.
TEST_F(NetworkControl, PreventSavingEndsNetworkControl)
{
    ConnectAndRun();
    m_log.clear();
    m_client.Abort();
    Egl::_eglBindAPI(0x433);
    for (int i = 0; i < 3; ++i)
        CallLater();
    EXPECT_EQ("", m_log);
}
