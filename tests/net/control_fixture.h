// The recorder in network mode, over the fake host, and a client that takes the stream apart.
#pragma once
#include "net/network_server.h"
#include "tests/net/client.h"
#include "tests/net/system_calls.h"
#include "tests/wrappers/recorder.h"
#include <fstream>
#include <sys/wait.h>
#include <thread>

inline Bytes Command(uint8_t command) { return {0x08, 0x44, command}; }
inline Bytes FlushRecord() { return Expected(2046, U32(0)); }

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
inline size_t PacketSize(Bytes const& wire, size_t at)
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

inline Stream TakenApart(Bytes const& wire)
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

inline Bytes FileBytes(std::string const& path)
{
    std::ifstream file(path, std::ios::binary);
    return Bytes((std::istreambuf_iterator<char>(file)), std::istreambuf_iterator<char>());
}

inline Bytes Slice(Bytes const& bytes, size_t from, size_t to)
{
    return from <= to && to <= bytes.size() ? Bytes(bytes.begin() + static_cast<std::ptrdiff_t>(from),
                                                    bytes.begin() + static_cast<std::ptrdiff_t>(to))
                                            : Bytes();
}

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
