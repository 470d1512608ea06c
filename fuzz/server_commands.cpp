// The server of a remote recording and a client that sends it anything: commands whole, cut and run together,
// that comes and goes, and takes the server's bytes or leaves them. What the server sends has to be a stream
// that its client understands.
//
// An input is a row of steps: a byte for what happens, then what that needs.
#include "fuzz/input.h"
#include "net/network_server.h"
#include "tools/remote/packets.h"
#include <memory>
#include <poll.h>
#include <sys/socket.h>
#include <sys/time.h>
#include <unistd.h>

namespace
{
enum class Step : uint8_t
{
    Say,      // u8 count, bytes: the client sends them
    Record,   // u16 count: so many bytes of trace come to the server
    Leave,    // the client closes
    Come,     // a client connects
    Wait,     // u16 milliseconds
    Flush,    // everything
    SetSize,  // u32 size of the server's packets
    Stop,     // u8 waits: so many of the server's waits for room are in vain
    Count
};

constexpr int kNone = -1;
constexpr size_t kMostTrace = 100000;

int g_listener = kNone;
int g_waiting = kNone;  // the server's end of a connection that it has not accepted
uint64_t g_now = 1700000000000;
int g_vainWaits = 0;

class Client
{
public:
    ~Client() { Leave(); }

    void Come()
    {
        Leave();
        int ends[2];
        fuzz::Require(socketpair(AF_UNIX, SOCK_STREAM, 0, ends) == 0, "a connection");
        m_socket = ends[0];
        int const room = 4096;
        setsockopt(ends[1], SOL_SOCKET, SO_SNDBUF, &room, sizeof room);
        if (g_waiting != kNone)
            close(g_waiting);
        g_waiting = ends[1];
        m_reader = remote::PacketReader();
    }
    void Leave()
    {
        if (m_socket != kNone)
            close(m_socket);
        m_socket = kNone;
    }
    void Say(std::string const& bytes) const
    {
        if (m_socket != kNone)
            (void)!send(m_socket, bytes.data(), bytes.size(), MSG_DONTWAIT | MSG_NOSIGNAL);
    }
    void Read()
    {
        uint8_t bytes[8192];
        ssize_t count = 0;
        while (m_socket != kNone && (count = recv(m_socket, bytes, sizeof bytes, MSG_DONTWAIT)) > 0)
            m_reader.Feed(bytes, static_cast<size_t>(count));
        for (remote::Packet packet; m_reader.Next(packet);)
            fuzz::Require(remote::StateName(static_cast<remote::State>(packet.value)) != nullptr, "a state");
        fuzz::Require(m_reader.Fault().empty(), "the client understands the server");
    }

private:
    int m_socket = kNone;
    remote::PacketReader m_reader;
};

Client* g_client = nullptr;

// Bytes that look like no packet.
std::string Trace(size_t size)
{
    std::string bytes(size, 'x');
    for (size_t i = 0; i < size; ++i)
        bytes[i] = static_cast<char>('a' + (i * 7 + i / 251) % 26);
    return bytes;
}

void Look(CNetworkServer& server, CNetworkServer::SNetControl& control)
{
    CNetworkServer::SNetStatus const status = server.CheckStatus(control);
    int const commands = status.bStartRecording + status.bStopRecording + status.bResume + status.bPause +
                         status.bCloseRequest;
    fuzz::Require(commands <= 1, "one command at a time");
    fuzz::Require(commands == 0 || (status.bConnected && !status.bError), "a command has a client");
    control.bConnected = status.bConnected;
    control.bRecording = (control.bRecording || status.bStartRecording) && !status.bStopRecording;
    control.bRunning = (control.bRunning || status.bResume) && !status.bPause;
}

class Session
{
public:
    Session()
    {
        fuzz::Require(m_server->InitializeServer(), "the server starts");
        g_client = &m_client;
        g_vainWaits = 0;
    }
    ~Session()
    {
        // What is queued goes out as long as there is a client.
        m_server.reset();
        g_client = nullptr;
        if (g_waiting != kNone)
            close(g_waiting);
        g_waiting = kNone;
    }

    void Take(fuzz::Input& input)
    {
        switch (static_cast<Step>(input.Byte() % static_cast<uint8_t>(Step::Count)))
        {
        case Step::Say:
            m_client.Say(input.Take(input.Byte()));
            break;
        case Step::Record:
            Record(input.Short());
            break;
        case Step::Leave:
            m_client.Leave();
            break;
        case Step::Come:
            m_client.Come();
            break;
        case Step::Wait:
            g_now += input.Short();
            break;
        case Step::Flush:
            m_server->SendDataFlush(true);
            break;
        case Step::SetSize:
            m_server->SetBufferSize(static_cast<int>(input.Word()));
            break;
        default:
            g_vainWaits = input.Byte();
            break;
        }
        Look(*m_server, m_control);
    }

private:
    void Record(size_t size)
    {
        if (m_recorded + size > kMostTrace)
            return;
        m_recorded += size;
        std::string const trace = Trace(size);
        m_server->SendData(trace.data(), static_cast<int>(trace.size()));
    }

    std::unique_ptr<CNetworkServer> m_server = std::make_unique<CNetworkServer>();
    Client m_client;
    CNetworkServer::SNetControl m_control{false, true, false, false};
    size_t m_recorded = 0;
};
}  // namespace

// The clock, the waits and the port of the server are the fuzzer's.
extern "C"
{
    int __real_poll(pollfd* polled, nfds_t count, int milliseconds);

    int __wrap_gettimeofday(timeval* now, void* /*zone*/)
    {
        now->tv_sec = static_cast<time_t>(g_now / 1000);
        now->tv_usec = static_cast<suseconds_t>(g_now % 1000 * 1000);
        return 0;
    }
    int __wrap_usleep(useconds_t /*microseconds*/) { return 0; }
    int __wrap_poll(pollfd* polled, nfds_t count, int /*milliseconds*/)
    {
        if (polled->fd == g_listener)
        {
            polled->revents = g_waiting == kNone ? 0 : POLLIN;
            return g_waiting == kNone ? 0 : 1;
        }
        // Within any wait the client takes what there is, or it takes nothing.
        bool const forRoom = (polled->events & POLLOUT) != 0;
        if (forRoom && g_client && g_vainWaits == 0)
            g_client->Read();
        g_vainWaits -= forRoom && g_vainWaits > 0 ? 1 : 0;
        return __real_poll(polled, count, 0);
    }
    int __wrap_bind(int socket, sockaddr const* /*address*/, socklen_t /*size*/)
    {
        g_listener = socket;
        return 0;
    }
    int __wrap_listen(int /*socket*/, int /*backlog*/) { return 0; }
    int __wrap_accept(int /*socket*/, sockaddr* /*address*/, socklen_t* /*size*/)
    {
        int const accepted = g_waiting;
        g_waiting = kNone;
        return accepted;
    }
}

int LLVMFuzzerTestOneInput(uint8_t const* data, size_t size)
{
    fuzz::Input input(data, size);
    Session session;
    while (input.Left() != 0)
        session.Take(input);
    return 0;
}
