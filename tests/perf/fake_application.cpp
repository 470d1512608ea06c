// Plays an application under the profiler, without GL: does what it is told on standard input, line by line,
// and says on standard output what came of it. Between two lines it makes no call, as a stopped one.
//
//   connect             calls until a server knows its items and counters: "connected"
//   knock               one call, in which it may take a ticket, and no more: "knocked"
//   frame A B C         a block of these counters: "sent", or "lost" without a server
//   frames N            N blocks, each counter one more in each: "sent N"
//   change              calls until the server has changed an item
//   mark TEXT           a mark
//   fill                a mark that ends exactly where a buffer of the ring does
//   nonsense            a block of counters that contradicts their description
//   pid N               ahead of "connect": it says that it is process N
//   items N             ahead of "connect": it has the first N items only
//   long                ahead of "connect": the choices of its last item are 40000 bytes long
//   end                 the end of the program, in order
//
// Whatever it does, an item that the server has changed is told: "change INDEX VALUE", with the bytes of the
// value as \xNN where they are not printable.
#include "profiler/comms_blocks.h"
#include "profiler/data_path_shared_mem.h"
#include "profiler/npl.h"
#include <cstdio>
#include <cstdlib>
#include <iostream>
#include <sched.h>
#include <sstream>
#include <string>
#include <sys/syscall.h>
#include <unistd.h>
#include <vector>

namespace
{
pid_t g_pid = 0;
char g_switches[3] = {};
char g_culling[] = "0\nApp defined\nNone\nBack\nFront";
SLibraryItem const kItems[] = {
    {"NEBTrace.Force zero viewport", 28, 4, &g_switches[0], 1},
    {"NEBTrace.Disable blending", 25, 4, &g_switches[1], 1},
    {"NEBTrace.Disable draw calls", 27, 4, &g_switches[2], 1},
    {"NEBTrace.Culling mode", 21, 3, g_culling, sizeof g_culling - 1},
};
SCommsCounter const kCounters[] = {{"Draws", 5}, {"CPU driver time (us)", 20}, {"Uploads (bytes)", 15}};
constexpr unsigned kAsked = 5 + 4;  // of the server: HELLO, and the question for the tables
constexpr unsigned kMarkHead = 8;
constexpr unsigned kLong = 40000;

std::string Escaped(char const* data, unsigned size)
{
    std::string text;
    for (unsigned i = 0; i < size; ++i)
    {
        char escape[8];
        std::snprintf(escape, sizeof escape, "\\x%02x", static_cast<unsigned char>(data[i]));
        text += data[i] >= ' ' && data[i] <= '~' ? std::string(1, data[i]) : std::string(escape);
    }
    return text;
}

class Application
{
public:
    Application()
    {
        MakeItems(kItems, 4);
        nplCountersCreate(m_comms, kCounters, 3);
    }
    ~Application() { nplShutdown(m_comms); }
    Application(Application const&) = delete;
    Application& operator=(Application const&) = delete;

    void Do(std::string const& command, std::istringstream& arguments);

private:
    bool Call();
    bool Frame(std::vector<unsigned> const& values);
    void Mark(std::string const& text);
    void MakeItems(SLibraryItem const* items, unsigned count) { nplLibraryCreate(m_comms, items, count); }
    void MakeLongItem();

    SSPSCommsData* m_comms = nplInitialise("Fake", 4);
};

// Whether the server has changed something.
bool Application::Call()
{
    unsigned index = 0;
    unsigned size = 0;
    char const* data = nullptr;
    if (nplLibraryDirtyGetFirst(m_comms, &index, &size, &data) == 0)
        return false;
    std::printf("change %u %s\n", index, Escaped(data, size).c_str());
    return true;
}

bool Application::Frame(std::vector<unsigned> const& values)
{
    Call();
    return nplCountersUpdate(m_comms, values.data()) != 0;
}

void Application::Mark(std::string const& text)
{
    nplSendMark(m_comms, text.data(), static_cast<unsigned>(text.size()));
}

void Application::MakeLongItem()
{
    std::string value = g_culling;
    value.resize(kLong, '.');
    SLibraryItem const items[] = {
        kItems[0], kItems[1], kItems[2], {kItems[3].pszName, kItems[3].nameLength, 3, value.data(), kLong}};
    MakeItems(items, 4);
}

void Application::Do(std::string const& command, std::istringstream& arguments)
{
    if (command == "connect")
    {
        // What it has sent does not tell: a table made after the answer to HELLO is sent unasked.
        while (m_comms->bConnected == 0 || m_comms->pDataPath->BytesReceived() < kAsked)
        {
            Call();
            sched_yield();
        }
        std::puts("connected");
    }
    else if (command == "knock")
    {
        Call();
        std::puts("knocked");
    }
    else if (command == "frame")
    {
        std::vector<unsigned> values(3);
        arguments >> values[0] >> values[1] >> values[2];
        std::puts(Frame(values) ? "sent" : "lost");
    }
    else if (command == "frames")
    {
        unsigned count = 0;
        arguments >> count;
        unsigned sent = 0;
        for (unsigned i = 1; i <= count; ++i)
            sent += Frame({i, i, i}) ? 1 : 0;
        std::printf("sent %u\n", sent);
    }
    else if (command == "change")
        while (!Call())
            sched_yield();
    else if (command == "mark")
        Mark(arguments.str().substr(5));
    else if (command == "fill")
    {
        unsigned const room = kRingRoom - m_comms->pDataPath->BytesSent() % kRingRoom;
        Mark(std::string(room - kMarkHead, '.'));
        std::puts(m_comms->pDataPath->BytesSent() % kRingRoom == 0 ? "filled" : "missed");
    }
    else if (command == "nonsense")
        DataPathSend2uint(*m_comms->pDataPath, eRcCounters, 0, 0);
    else if (command == "pid")
        arguments >> g_pid;
    else if (command == "items")
    {
        unsigned count = 0;
        arguments >> count;
        MakeItems(kItems, count);
    }
    else if (command == "long")
        MakeLongItem();
}
}  // namespace

// Stands in front of libc's.
extern "C" pid_t getpid() noexcept { return g_pid != 0 ? g_pid : static_cast<pid_t>(syscall(SYS_getpid)); }

int main()
{
    Application application;
    for (std::string line; std::getline(std::cin, line);)
    {
        std::istringstream arguments(line);
        std::string command;
        arguments >> command;
        if (command == "end")
            break;
        application.Do(command, arguments);
        std::fflush(stdout);
    }
    return 0;
}
