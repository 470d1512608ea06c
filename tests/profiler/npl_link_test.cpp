// The npl interface and a performance server, through shared memory.
#include "profiler/npl.h"
#include "tests/profiler/server.h"
#include <atomic>
#include <csignal>
#include <cstdlib>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

namespace
{

// An application with one switch and two counters.
class Application
{
public:
    Application()
    {
        SLibraryItem const item{"Switch", 6, 4, m_switch, 1};
        nplLibraryCreate(m_pComms, &item, 1);
        SCommsCounter const counters[] = {{"Draws", 5}, {"CPU", 3}};
        nplCountersCreate(m_pComms, counters, 2);
    }
    ~Application() { nplShutdown(m_pComms); }
    Application(Application const&) = delete;
    Application& operator=(Application const&) = delete;

    bool Call()
    {
        unsigned int index = 0;
        unsigned int size = 0;
        char const* data = nullptr;
        if (!nplLibraryDirtyGetFirst(m_pComms, &index, &size, &data))
            return false;
        m_switch[0] = data[0];
        return true;
    }
    bool Frame(unsigned int draws, unsigned int cpu)
    {
        unsigned int const values[] = {draws, cpu};
        return nplCountersUpdate(m_pComms, values) != 0;
    }
    char Switch() const { return m_switch[0]; }
    bool IsConnected() const { return m_pComms->bConnected != 0; }

private:
    char m_switch[1] = {0};
    SSPSCommsData* m_pComms = nplInitialise("App", 3);
};

class NplLink : public InSharedMemory
{
protected:
    void Meet(Server& server, Application& application)
    {
        ASSERT_TRUE(server.Listen());
        server.Accept([&] { application.Call(); });
        while (!application.IsConnected())
            application.Call();
        EXPECT_EQ(14u, server.ReadWord());
        EXPECT_EQ(static_cast<uint32_t>(getpid()), server.ReadWord());
    }
    void ReadDescription(Server& server)
    {
        Block const name = server.ReadBlock();
        EXPECT_EQ(80u, name.identifier);
        EXPECT_EQ((Bytes{3, 0, 0, 0, 'A', 'p', 'p'}), name.payload);
        Block const items = server.ReadBlock();
        EXPECT_EQ(100u, items.identifier);
        EXPECT_EQ(4u + 12 + 6 + 1, items.payload.size());
        Block const counters = server.ReadBlock();
        EXPECT_EQ(132u, counters.identifier);
        EXPECT_EQ(8u + 9 + 7, counters.payload.size());
    }
};

}  // namespace

// A whole session: the description, a frame, a change, and the application's end.
TEST_F(NplLink, ASession)
{
    Server server;
    auto application = std::make_unique<Application>();
    EXPECT_FALSE(application->Frame(1, 2)) << "no server yet";
    Meet(server, *application);
    server.AskForDescription();
    EXPECT_FALSE(application->Call());
    ReadDescription(server);
    EXPECT_TRUE(application->Frame(7, 300));
    Block const frame = server.ReadBlock();
    EXPECT_EQ(136u, frame.identifier);
    ASSERT_EQ(12u, frame.payload.size());
    EXPECT_EQ((Bytes{7, 0, 0, 0, 0x2C, 1, 0, 0}), Bytes(frame.payload.begin() + 4, frame.payload.end()));
    EXPECT_TRUE(server.Change(0, "\1"));
    EXPECT_TRUE(application->Call());
    EXPECT_EQ(1, application->Switch());
    application.reset();
    Block const end = server.ReadBlock();
    EXPECT_EQ(144u, end.identifier);
    EXPECT_EQ(Bytes(), end.payload);
}

// One server after another: the application finds each, and describes itself anew.
TEST_F(NplLink, OneServerAfterAnother)
{
    Application application;
    for (int i = 0; i < 3; ++i)
    {
        Server server;
        Meet(server, application);
        server.AskForDescription();
        application.Call();
        ReadDescription(server);
        DataPathSendBlockDescription(server.Path(), eRcShutdown, 0);
        EXPECT_FALSE(application.Frame(0, 0));
        EXPECT_FALSE(application.IsConnected());
    }
    EXPECT_EQ(std::vector<std::string>(), sharedmemory::Objects());
}

// Changes of odd sizes lay words across the edges of buffers; each arrives whole, however the two ends run.
TEST_F(NplLink, ThousandsOfChanges)
{
    Server server;
    Application application;
    Meet(server, application);
    constexpr int kChanges = 20000;
    std::atomic<int> sent{0};
    std::thread writer([&] {
        for (int i = 0; i < kChanges; ++i)
        {
            if (!server.Change(0, std::string(1, static_cast<char>(i & 0x7F))))
                return;
            ++sent;
        }
    });
    int fetched = 0;
    int wrong = 0;
    while (fetched < kChanges)
        if (application.Call())
            wrong += application.Switch() != (fetched++ & 0x7F);
    writer.join();
    EXPECT_EQ(kChanges, sent);
    EXPECT_EQ(0, wrong);
}

// Another process, which is killed in mid-session: what it has written can be read to the end, and its
// leavings give way to the next application under that number.
TEST_F(NplLink, AnApplicationThatIsKilled)
{
    Server server;
    ASSERT_TRUE(server.Listen());
    pid_t const child = fork();
    if (child == 0)
    {
        Application application;
        while (!application.Frame(11, 12))
        {
        }
        kill(getpid(), SIGKILL);
        std::abort();
    }
    server.Accept([] {});
    EXPECT_EQ(14u, server.ReadWord());
    EXPECT_EQ(static_cast<uint32_t>(child), server.ReadWord());
    Block const frame = server.ReadBlock();
    EXPECT_EQ((Bytes{11, 0, 0, 0, 12, 0, 0, 0}), Bytes(frame.payload.begin() + 4, frame.payload.end()));
    int status = 0;
    ASSERT_EQ(child, waitpid(child, &status, 0));
    EXPECT_EQ(std::make_pair(1, Bytes()), Receive(server.Path(), 4));
    // The killed one's twelve objects, and the rendezvous.
    EXPECT_EQ(14u, sharedmemory::Objects().size());
    sharedmemory::Clear();
}
