// Network mode as a whole, in process: a client's commands, the application's calls over the fake host, and
// what comes over the wire and into the file.
#include "net/network_server.h"
#include "tests/net/client.h"
#include "tests/net/system_calls.h"
#include "tests/wrappers/recorder.h"
#include <fstream>
#include <sys/wait.h>
#include <thread>

namespace
{

Bytes Command(uint8_t command) { return {0x08, 0x44, command}; }
Bytes FlushRecord() { return Expected(2046, U32(0)); }

// The parts of the wire's stream, taken apart. What is still on its way may be cut anywhere.
struct Stream
{
    Bytes payload;
    Bytes acknowledged;           // the commands, in order
    std::vector<size_t> ackedAt;  // how much payload had come by then
    Bytes states;
    bool endsWithStatus = false;
};

// The size of the packet at `at`; 0 while it is not all there.
size_t PacketSize(Bytes const& wire, size_t at)
{
    size_t const there = wire.size() - at;
    if (there < 6)
        return 0;
    EXPECT_EQ(0x08, wire[at]);
    EXPECT_EQ(0x44, wire[at + 1]);
    if (wire[at + 2] != 0x31)
    {
        EXPECT_EQ(1, wire[at + 4]);
        EXPECT_EQ(0, wire[at + 5]);
        return 6;
    }
    size_t const field = wire[at + 3] + 256u * wire[at + 4];
    size_t const size = (field ? field : 65536) + 6;
    return size <= there ? size : 0;
}

Stream TakenApart(Bytes const& wire)
{
    Stream stream;
    size_t at = 0;
    for (size_t size = PacketSize(wire, at); size; size = PacketSize(wire, at))
    {
        auto const begin = wire.begin() + static_cast<std::ptrdiff_t>(at);
        if (wire[at + 2] == 0x31)
        {
            stream.payload.insert(stream.payload.end(), begin + 5,
                                  begin + static_cast<std::ptrdiff_t>(size) - 1);
            EXPECT_EQ(0x25, wire[at + size - 1]);
        }
        else if (wire[at + 2] == 0x21)
        {
            stream.acknowledged.push_back(wire[at + 3]);
            stream.ackedAt.push_back(stream.payload.size());
        }
        else
        {
            EXPECT_EQ(0x32, wire[at + 2]);
            stream.states.push_back(wire[at + 3]);
        }
        stream.endsWithStatus = wire[at + 2] == 0x32;
        at += size;
    }
    stream.endsWithStatus = stream.endsWithStatus && at == wire.size();
    return stream;
}

Bytes FileBytes(std::string const& path)
{
    std::ifstream file(path, std::ios::binary);
    return Bytes((std::istreambuf_iterator<char>(file)), std::istreambuf_iterator<char>());
}

Bytes Slice(Bytes const& bytes, size_t from, size_t to)
{
    return from <= to && to <= bytes.size() ? Bytes(bytes.begin() + static_cast<std::ptrdiff_t>(from),
                                                    bytes.begin() + static_cast<std::ptrdiff_t>(to))
                                            : Bytes();
}

}  // namespace

class NetworkControl : public Recorder
{
protected:
    NetworkControl()
    {
        systemcalls::Reset();
        // Each test begins with the process's server as a new process has it.
        CNetworkServer* const server = CNetworkServer::Instance();
        Printed([&] {
            server->~CNetworkServer();
            new (server) CNetworkServer;
            EXPECT_TRUE(server->InitializeServer());
        });
        STraceConfig::m_networkInstance = server;
        STraceConfig::m_bNetworkControl = true;
        STraceConfig::m_sendOverNetwork = true;
        STraceConfig::m_optimizationRS = true;
        STraceConfig::m_netControl = {false, true, false, false};
        STraceConfig::m_headerWrite = true;
    }
    ~NetworkControl() override
    {
        systemcalls::OnSleep(nullptr);
        m_client.Close();
        STraceConfig::m_networkInstance->SendDataFlush(true);
    }

    void Connect() { ASSERT_TRUE(m_client.Connect(systemcalls::BoundPort())); }
    // A call of the application's that no shadow follows, more than a second after the last.
    void CallLater()
    {
        systemcalls::Advance(1001);
        m_log += Printed([] { Es2::_glFlush(); });
    }
    void Swap()
    {
        m_log += Printed([] { Egl::_eglSwapBuffers(nullptr, nullptr); });
    }
    void Call()
    {
        m_log += Printed([] { Es2::_glFlush(); });
    }
    // Goes on calling until what has come over the wire has this state behind everything else.
    void CallUntilState(uint8_t state)
    {
        Stream stream;
        do
        {
            CallLater();
            Call();
            stream = Taken();
        } while (!stream.endsWithStatus || stream.states.back() != state);
    }
    // Waits for so many acknowledgements altogether, without a call.
    void AwaitAcknowledgements(size_t count)
    {
        while (TakenApart(m_wire).acknowledged.size() < count)
        {
            m_wire = Joined(m_wire, m_client.Receive(1));
            m_wire = Joined(m_wire, m_client.Pending());
        }
    }
    // Sends a command, calls until it is followed, and sees it acknowledged. No call is made behind that.
    template <typename Condition>
    void Give(uint8_t command, Condition followed)
    {
        size_t const before = Taken().acknowledged.size();
        m_client.Send(Command(command));
        while (!followed())
            CallLater();
        AwaitAcknowledgements(before + 1);
    }
    void Start()
    {
        Give(0x40, [] { return STraceConfig::m_netControl.bRecording; });
    }
    void Stop()
    {
        Give(0x41, [] { return !STraceConfig::m_netControl.bRecording; });
    }
    void Pause()
    {
        Give(0x43, [] { return !STraceConfig::m_netControl.bRunning; });
    }
    // The same for a command that changes nothing: calls until it is acknowledged.
    void GiveInVain(uint8_t command)
    {
        size_t const before = Taken().acknowledged.size();
        m_client.Send(Command(command));
        while (Taken().acknowledged.size() == before)
            CallLater();
    }
    void ConnectAndRun()
    {
        Connect();
        CallUntilState(0x52);
    }
    // Everything so far.
    Stream Taken()
    {
        m_wire = Joined(m_wire, m_client.Pending());
        return TakenApart(m_wire);
    }
    Bytes Footer(uint64_t position) { return Joined(U8(0x13), U8(0x10), U64(position)); }

    Client m_client;
    Bytes m_wire;
    std::string m_log;
};

// Without a client the application runs as if nothing were there.
TEST_F(NetworkControl, WithoutAClientNothingIsRecorded)
{
    for (int i = 0; i < 3; ++i)
    {
        CallLater();
        Swap();
    }
    EXPECT_EQ(3u, HostCalls("glFlush"));
    EXPECT_EQ(Bytes(), Written());
    EXPECT_TRUE(STraceConfig::m_netControl.bRunning);
    EXPECT_FALSE(STraceConfig::m_netControl.bConnected);
    EXPECT_FALSE(STraceConfig::m_headerWrite);
    EXPECT_TRUE(systemcalls::Slept().empty()) << "nobody was held";
}

// With one, and nothing said, the next recording is armed and nothing is recorded.
TEST_F(NetworkControl, AClientArmsTheRecorder)
{
    ConnectAndRun();
    EXPECT_TRUE(STraceConfig::m_netControl.bConnected);
    EXPECT_TRUE(STraceConfig::m_headerWrite);
    EXPECT_TRUE(STraceConfig::m_writeRenderState);
    EXPECT_EQ(Bytes(), Taken().payload);
}

// A recording begins with the header at once and its calls behind the next swap; it ends with snapshot and
// footer. What goes over the wire is what is in the file.
TEST_F(NetworkControl, ARecordingFromStartToStop)
{
    ConnectAndRun();
    Start();
    EXPECT_TRUE(STraceConfig::m_netControl.bRecording);
    Call();
    Call();
    Swap();  // closes the frame in which the recording was started: not recorded
    Call();
    Swap();
    Call();
    Stop();
    CallUntilState(0x52);
    Stream const stream = Taken();
    EXPECT_EQ((Bytes{0x40, 0x41}), stream.acknowledged);
    EXPECT_EQ(stream.payload, FileBytes(TracePath()));
    ASSERT_LE(72u, stream.payload.size());
    EXPECT_EQ(Chars("NEBTrace"), Slice(stream.payload, 0, 8));
    Bytes const swap =
        Expected(1022, U32(0x3000), U32(1), U32(0), U32(0), U32(1), U32(0), U32(0), U32(0), U32(0));
    Bytes const calls = Joined(FlushRecord(), swap, FlushRecord());
    // The calls of the test, behind them those that waited for the acknowledgement, then the state.
    EXPECT_EQ(calls, Slice(stream.payload, 62, 62 + calls.size()));
    size_t const snapshot = stream.ackedAt[1];
    EXPECT_EQ(0u, (snapshot - 62 - calls.size()) % FlushRecord().size());
    EXPECT_EQ(Expected(2), Slice(stream.payload, snapshot, snapshot + 6))
        << "the state begins with its marker";
    EXPECT_EQ(Footer(snapshot), Slice(stream.payload, stream.payload.size() - 10, stream.payload.size()));
    EXPECT_FALSE(STraceConfig::m_netControl.bRecording);
    EXPECT_EQ(nullptr, CTraceRecordManager::m_TraceFile);
}

// A start that is read in the pass that finds the client comes ahead of the arming: the recording has no
// header. A client waits for its first status.
TEST_F(NetworkControl, AStartAheadOfTheFirstStatusHasNoHeader)
{
    CallLater();
    Connect();
    m_client.Send(Command(0x40));
    while (!STraceConfig::m_netControl.bRecording)
        CallLater();
    Swap();
    Call();
    EXPECT_EQ(FlushRecord(), Written());
}

// The texts of the start, by level.
TEST_F(NetworkControl, TheStartIsLogged)
{
    STraceConfig::m_debugInfo = 1;
    ConnectAndRun();
    STraceConfig::m_ui32CurrentFrame = 7;
    Start();
    EXPECT_NE(std::string::npos,
              m_log.find("NEBTRACE(M) \n StarRecording <Action: WriteFileValidity> Frame(7)\n\n"));
    EXPECT_EQ(std::string::npos, m_log.find("Getting RenderState"));
}

// At level 2 the capture and the snapshot are told of as well.
TEST_F(NetworkControl, LevelTwoTellsOfTheState)
{
    STraceConfig::m_debugInfo = 2;
    ConnectAndRun();
    Start();
    EXPECT_NE(std::string::npos, m_log.find("NEBTRACE(M) \n Action: Getting RenderState\n\n"
                                            "NEBTRACE(M) \n Action: Getting RenderState..Done\n\n"));
    Stop();
    EXPECT_NE(std::string::npos, m_log.find("NEBTRACE(M) Saving Render State\n"));
}

// A second recording in the same connection is a second file, on the device and in the stream.
TEST_F(NetworkControl, TwoRecordingsInOneConnection)
{
    ConnectAndRun();
    std::string const second = TracePath().substr(0, TracePath().size() - 5) + "_1.nebt";
    size_t ends[2] = {};
    for (size_t& end : ends)
    {
        Start();
        Swap();
        Call();
        Stop();
        CallUntilState(0x52);
        end = Taken().payload.size();
    }
    Stream const stream = Taken();
    EXPECT_EQ((Bytes{0x40, 0x41, 0x40, 0x41}), stream.acknowledged);
    EXPECT_EQ(Slice(stream.payload, 0, ends[0]), FileBytes(TracePath()));
    EXPECT_EQ(Slice(stream.payload, ends[0], ends[1]), FileBytes(second));
    EXPECT_EQ(Chars("NEBTrace"), Slice(stream.payload, ends[0], ends[0] + 8));
    EXPECT_EQ(Footer(stream.ackedAt[3] - ends[0]), Slice(stream.payload, ends[1] - 10, ends[1]));
    std::remove(second.c_str());
}

// Without a file on the device every recording is on the stream all the same; its footer has no position,
// since the bytes of a file are what it counts.
TEST_F(NetworkControl, WithoutAFileTheStreamHasEverything)
{
    STraceConfig::m_saveFileToDisk = false;
    CTraceRecordManager::m_uBytesWritten = 0;
    ConnectAndRun();
    for (int i = 0; i < 2; ++i)
    {
        m_wire.clear();
        Start();
        Swap();
        Call();
        Stop();
        CallUntilState(0x52);
        Bytes const payload = Taken().payload;
        EXPECT_EQ(Chars("NEBTrace"), Slice(payload, 0, 8));
        EXPECT_EQ(Footer(0), Slice(payload, payload.size() - 10, payload.size()));
    }
    EXPECT_EQ(Bytes(), Written());
}

// Without sending, the client commands and the file is the device's alone.
TEST_F(NetworkControl, WithoutSendingTheClientOnlyCommands)
{
    STraceConfig::m_sendOverNetwork = false;
    ConnectAndRun();
    Start();
    Swap();
    Call();
    Stop();
    CallUntilState(0x52);
    EXPECT_EQ(Bytes(), Taken().payload);
    Bytes const file = FileBytes(TracePath());
    EXPECT_EQ(Chars("NEBTrace"), Slice(file, 0, 8));
    EXPECT_EQ(Bytes({0x13, 0x10}), Slice(file, file.size() - 10, file.size() - 8));
}

// A stop without a recording is acknowledged and does nothing.
TEST_F(NetworkControl, AStopWithoutARecordingDoesNothing)
{
    ConnectAndRun();
    GiveInVain(0x41);
    CallUntilState(0x52);
    EXPECT_EQ(Bytes(), Taken().payload);
    EXPECT_EQ(Bytes(), Written());
    EXPECT_NE(nullptr, CTraceRecordManager::m_TraceFile);
}

// A start in a recording leaves a gap up to the next swap, and no second header.
TEST_F(NetworkControl, ASecondStartPausesUpToTheNextSwap)
{
    ConnectAndRun();
    Start();
    Swap();
    Call();
    Give(0x40, [] { return !STraceConfig::m_isNewFrame; });
    Written();
    Call();
    EXPECT_EQ(Bytes(), Written());
    Swap();
    Call();
    EXPECT_EQ(FlushRecord(), Written());
}

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
