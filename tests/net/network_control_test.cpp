// Network mode as a whole, in process: a client's commands, the application's calls over the fake host, and
// what comes over the wire and into the file.
#include "tests/net/control_fixture.h"

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
