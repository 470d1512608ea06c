// Several threads make calls while a client starts, holds and stops recordings. Part of the threaded tests,
// which ThreadSanitizer watches as well.
#include "net/network_server.h"
#include "tests/net/client.h"
#include "tests/net/system_calls.h"
#include "tests/wrappers/recorder.h"
#include <atomic>
#include <thread>

namespace
{

// What a client does all the time that it is there: reads, so that nobody is held up, and answers.
class Reader
{
public:
    explicit Reader(Client& client) : m_client(client), m_thread([this] { Run(); }) {}
    ~Reader() { m_thread.join(); }

    // Sends a command and waits until it is acknowledged, or until there is nobody left to do so.
    template <typename Deserted>
    void Give(uint8_t command, Deserted const& deserted)
    {
        unsigned int const before = m_acknowledged;
        m_client.Send({0x08, 0x44, command});
        while (m_acknowledged == before && !m_ended && !deserted())
            std::this_thread::yield();
    }
    void Give(uint8_t command)
    {
        Give(command, [] { return false; });
    }
    // The state that the second status from now on gives: the first may have been on its way.
    uint8_t StateFromNow()
    {
        unsigned int const before = m_states;
        while (m_states < before + 2 && !m_ended)
            std::this_thread::yield();
        return m_state;
    }
    void AwaitEnd()
    {
        while (!m_ended)
            std::this_thread::yield();
    }
    bool IsWhole() const { return m_bWhole; }
    size_t PayloadSize() const { return m_payload; }

private:
    // Packet by packet up to the end of the connection.
    void Run()
    {
        for (;;)
        {
            Bytes const head = m_client.Receive(5);
            if (head.size() < 5)
                break;
            bool const isData = head[2] == 0x31;
            size_t const field = head[3] + 256u * head[4];
            size_t const rest = isData ? (field ? field : 65536) + 1 : 1;
            Bytes const tail = m_client.Receive(rest);
            if (head[0] != 0x08 || head[1] != 0x44 || tail.size() != rest ||
                tail.back() != (isData ? 0x25 : 0))
            {
                m_bWhole = false;
                break;
            }
            m_payload += isData ? rest - 1 : 0;
            m_acknowledged += head[2] == 0x21;
            if (head[2] == 0x32)
                m_state = head[3];
            m_states += head[2] == 0x32;
        }
        m_ended = true;
    }

    Client& m_client;
    std::atomic<unsigned int> m_acknowledged{0};
    std::atomic<unsigned int> m_states{0};
    std::atomic<uint8_t> m_state{0};
    std::atomic<size_t> m_payload{0};
    std::atomic<bool> m_bWhole{true};
    std::atomic<bool> m_ended{false};
    std::thread m_thread;
};

}  // namespace

using Threads = Recorder;

// Every packet stays whole, every thread is let go again, and no thread disturbs another in the server.
TEST_F(Threads, AClientRecordsFromThreads)
{
    systemcalls::Reset();
    CNetworkServer* const server = CNetworkServer::Instance();
    Printed([&] { ASSERT_TRUE(server->InitializeServer()); });
    STraceConfig::m_networkInstance = server;
    STraceConfig::m_netControl = {false, true, false, false};
    STraceConfig::m_headerWrite = true;
    STraceConfig::m_sendOverNetwork = true;
    STraceConfig::m_bNetworkControl = true;
    systemcalls::AdvanceAtEachLook(40);
    Client client;
    ASSERT_TRUE(client.Connect(systemcalls::BoundPort()));
    testing::internal::CaptureStdout();
    constexpr int kThreads = 3;
    std::atomic<bool> done{false};
    std::atomic<int> left{0};
    std::vector<std::thread> threads;
    for (int i = 0; i < kThreads; ++i)
        threads.emplace_back([&] {
            while (!done)
            {
                Es2::_glScissor(1, 2, 3, 4);
                STraceConfig::DoSwapBuffer();  // what a swap does to the recorder
            }
            ++left;
        });
    {
        Reader reader(client);
        for (int recording = 0; recording < 3; ++recording)
        {
            reader.Give(0x40);
            reader.Give(0x43);
            // A resume that comes to a thread on its way into the hold is lost, so that a client looks at the
            // state.
            do
                reader.Give(0x42);
            while (reader.StateFromNow() == 0x50);
            reader.Give(0x41);
        }
        done = true;
        // A thread that went into the hold late, behind the states that were looked at, is there still.
        while (left != kThreads)
            reader.Give(0x42, [&] { return left == kThreads; });
        for (std::thread& thread : threads)
            thread.join();
        STraceConfig::m_bNetworkControl = false;
        server->~CNetworkServer();
        new (server) CNetworkServer;
        reader.AwaitEnd();
        EXPECT_TRUE(reader.IsWhole());
        EXPECT_LT(3u * 72, reader.PayloadSize()) << "three recordings, each with header and footer";
    }
    testing::internal::GetCapturedStdout();
    for (int number = 1; number < 3; ++number)
        std::remove(
            (TracePath().substr(0, TracePath().size() - 5) + "_" + std::to_string(number) + ".nebt").c_str());
}
