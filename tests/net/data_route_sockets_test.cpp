// Data routes over TCP, on loopback.
#include "net/data_route_sockets.h"
#include "tests/net/client.h"

#include "tests/net/system_calls.h"
#include "tests/wrappers/recorder.h"
#include <arpa/inet.h>
#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/time.h>
#include <unistd.h>

namespace
{

// A route over one end of a connection, and the other end as a bare socket.
class Route : public testing::Test
{
protected:
    void Open(int room = 0)
    {
        SocketPair const pair = ConnectedPair(room);
        m_peer = pair.theirs;
        ASSERT_TRUE(m_route.DataOpenServer(new SSocket{pair.ours}));
    }
    ~Route() override { ClosePeer(); }
    void ClosePeer()
    {
        if (m_peer != -1)
            close(m_peer);
        m_peer = -1;
    }
    void ResetPeer()
    {
        linger const reset{1, 0};
        setsockopt(m_peer, SOL_SOCKET, SO_LINGER, &reset, sizeof reset);
        ClosePeer();
    }
    bool Send(Bytes const& bytes)
    {
        return m_route.DataSendData(reinterpret_cast<char const*>(bytes.data()),
                                    static_cast<unsigned int>(bytes.size()));
    }
    // The result, and what came with it.
    std::pair<int, Bytes> Receive()
    {
        Bytes buffer(64);
        unsigned int count = 99;
        int const result = m_route.DataReceiveData(reinterpret_cast<char*>(buffer.data()), 64, &count);
        buffer.resize(count);
        return {result, buffer};
    }
    // The result of the first receive that finds anything at all.
    int ReceiveAnything()
    {
        for (;;)
            if (int const result = Receive().first; result != 1)
                return result;
    }

    CDataRouteSockets m_route;
    int m_peer = -1;
};

int64_t MonotonicMS()
{
    timespec now{};
    clock_gettime(CLOCK_MONOTONIC, &now);
    return static_cast<int64_t>(now.tv_sec) * 1000 + now.tv_nsec / 1000000;
}

}  // namespace

// What is sent arrives, and nothing is no failure.
TEST_F(Route, SendsBytes)
{
    Open();
    EXPECT_TRUE(Send({}));
    EXPECT_TRUE(Send({1, 2, 3}));
    uint8_t bytes[4] = {};
    EXPECT_EQ(3, recv(m_peer, bytes, 3, MSG_WAITALL));
    EXPECT_EQ((Bytes{1, 2, 3}), Raw(bytes, 3));
}

// The four results of a receive: data, none yet, the end of the connection, an error.
TEST_F(Route, ReceiveTellsDataFromNoneFromTheEnd)
{
    Open();
    int64_t const before = MonotonicMS();
    EXPECT_EQ(std::make_pair(1, Bytes()), Receive());
    EXPECT_LE(9, MonotonicMS() - before) << "the wait is 10 ms, not the route's 200";
    ASSERT_EQ(2, send(m_peer, "ab", 2, 0));
    EXPECT_EQ(3, ReceiveAnything());
    ClosePeer();
    EXPECT_EQ(2, ReceiveAnything());
    EXPECT_EQ(std::make_pair(0, Bytes()), (m_route.Abandon(), Receive()));
}

// A connection that was reset is an error.
TEST_F(Route, AResetConnectionIsAnError)
{
    Open();
    ResetPeer();
    EXPECT_EQ(0, ReceiveAnything());
}

// A peer that stops reading fails the send after 200 ms, with part of the data gone; the application is not
// held in a write that never ends.
TEST_F(Route, APeerThatStopsReadingFailsTheSend)
{
    Open(8192);
    Bytes const much(16 << 20, 7);
    int64_t const before = MonotonicMS();
    EXPECT_FALSE(Send(much));
    EXPECT_LE(195, MonotonicMS() - before);
    uint8_t byte = 0;
    EXPECT_EQ(1, recv(m_peer, &byte, 1, 0));
    EXPECT_EQ(7, byte);
    EXPECT_TRUE(m_route.ClientConnected());
}

// A peer that closed in order is still taken for connected: only a receive sees the end.
TEST_F(Route, AnOrderlyCloseIsSeenByAReceiveAlone)
{
    Open();
    ClosePeer();
    EXPECT_EQ(2, ReceiveAnything());
    EXPECT_TRUE(m_route.ClientConnected());
    EXPECT_TRUE(m_route.IsOpen());
}

// A connection that was reset is found, and closed for good; no use of it ends the program.
TEST_F(Route, AResetConnectionIsClosed)
{
    Open();
    ResetPeer();
    EXPECT_EQ(0, ReceiveAnything());
    EXPECT_FALSE(m_route.ClientConnected());
    EXPECT_FALSE(m_route.IsOpen());
    EXPECT_FALSE(Send({1}));
    EXPECT_FALSE(m_route.ClientConnected());
    EXPECT_EQ(std::make_pair(0, Bytes()), Receive());
}

// Writing to a peer that has gone is a failure and no SIGPIPE.
TEST_F(Route, WritingToAPeerThatHasGoneIsNoSignal)
{
    Open();
    ASSERT_NE(SIG_ERR, signal(SIGPIPE, SIG_DFL));
    ResetPeer();
    EXPECT_EQ(0, ReceiveAnything());
    EXPECT_FALSE(Send({1}));
    EXPECT_FALSE(Send({1}));
}

// A signal of the application's breaks off no wait: the connection outlives a profiling timer.
TEST_F(Route, SignalsBreakNothingOff)
{
    Open();
    struct sigaction action
    {
    };
    action.sa_handler = [](int) {};
    struct sigaction before
    {
    };
    ASSERT_EQ(0, sigaction(SIGALRM, &action, &before));
    itimerval const often{{0, 500}, {0, 500}};
    itimerval const never{};
    ASSERT_EQ(0, setitimer(ITIMER_REAL, &often, nullptr));
    for (int i = 0; i < 20; ++i)
    {
        EXPECT_EQ(1, Receive().first);
        EXPECT_TRUE(m_route.ClientConnected());
    }
    setitimer(ITIMER_REAL, &never, nullptr);
    sigaction(SIGALRM, &before, nullptr);
}

// The end of a route is the end of the connection, in order even if the peer's last words were never read.
TEST_F(Route, TheEndOfARouteIsOrderly)
{
    SocketPair const pair = ConnectedPair();
    {
        CDataRouteSockets route;
        ASSERT_TRUE(route.DataOpenServer(new SSocket{pair.ours}));
        ASSERT_EQ(1, send(pair.theirs, "x", 1, 0));
        uint8_t seen = 0;
        ASSERT_EQ(1, recv(pair.ours, &seen, 1, MSG_PEEK));
        ASSERT_TRUE(route.DataSendData("last", 4));
    }
    char bytes[5] = {};
    EXPECT_EQ(4, recv(pair.theirs, bytes, 4, MSG_WAITALL));
    EXPECT_EQ(0, recv(pair.theirs, bytes, 1, 0));
    close(pair.theirs);
}

// What is no connection is refused, and stays the caller's.
TEST_F(Route, OpensOnlyWhatIsOpen)
{
    SSocket closed{-1};
    EXPECT_FALSE(m_route.DataOpenServer(nullptr));
    EXPECT_FALSE(m_route.DataOpenServer(&closed));
    EXPECT_FALSE(m_route.IsOpen());
    EXPECT_EQ(1, m_route.DataOpenServerTryAccept());
}

// A descriptor past the room of a descriptor set is served like any other.
TEST_F(Route, ManyDescriptorsAreNoProblem)
{
    rlimit limit{};
    ASSERT_EQ(0, getrlimit(RLIMIT_NOFILE, &limit));
    limit.rlim_cur = std::min<rlim_t>(limit.rlim_max, 4096);
    ASSERT_EQ(0, setrlimit(RLIMIT_NOFILE, &limit));
    SocketPair const pair = ConnectedPair();
    int const high = fcntl(pair.ours, F_DUPFD, 2000);
    ASSERT_LE(2000, high);
    close(pair.ours);
    m_peer = pair.theirs;
    ASSERT_TRUE(m_route.DataOpenServer(new SSocket{high}));
    EXPECT_EQ(1, Receive().first);
    EXPECT_TRUE(Send({1}));
    EXPECT_TRUE(m_route.ClientConnected());
}

// Listening: nobody, then somebody, then nobody again.
TEST(DataRouteHerd, HandsOutARouteForEachClient)
{
    systemcalls::Reset();
    CDataRouteHerdSockets herd;
    EXPECT_EQ(nullptr, herd.poll());
    ASSERT_TRUE(herd.initialise(54321));
    EXPECT_EQ(nullptr, herd.poll());
    Client client(systemcalls::BoundPort());
    CDataRouteSockets* route = nullptr;
    while (!route)
        route = herd.poll();
    EXPECT_TRUE(route->IsOpen());
    EXPECT_TRUE(route->DataSendData("ab", 2));
    EXPECT_EQ(Chars("ab"), client.Receive(2));
    EXPECT_EQ(nullptr, herd.poll());
    delete route;
    EXPECT_TRUE(client.AtEnd());
    herd.shutdown();
    EXPECT_EQ(nullptr, herd.poll());
}

// A port that is taken is a failure, and leaves nothing open.
TEST(DataRouteHerd, ATakenPortIsRefused)
{
    systemcalls::Reset();
    uint16_t taken = 0;
    int const other = ListenOnFreePort(taken);
    int const next = dup(other);
    close(next);
    systemcalls::BindNextTo(taken);
    CDataRouteHerdSockets herd;
    EXPECT_FALSE(herd.initialise(54321));
    EXPECT_EQ(nullptr, herd.poll());
    int const after = dup(other);
    EXPECT_EQ(next, after) << "a descriptor was left open";
    close(after);
    close(other);
}

// A port is free again at once, though connections of its last owner linger.
TEST(DataRouteHerd, APortIsFreeAgainAtOnce)
{
    systemcalls::Reset();
    CDataRouteHerdSockets first;
    ASSERT_TRUE(first.initialise(54321));
    uint16_t const port = systemcalls::BoundPort();
    Client client(port);
    CDataRouteSockets* route = nullptr;
    while (!route)
        route = first.poll();
    delete route;
    first.shutdown();
    systemcalls::BindNextTo(port);
    CDataRouteHerdSockets second;
    EXPECT_TRUE(second.initialise(54321));
    second.shutdown();
}

// Neither the listener nor a connection gets into the programs that the application starts.
TEST(DataRouteHerd, ProgramsThatAreStartedInheritNothing)
{
    systemcalls::Reset();
    uint16_t unused = 0;
    int const lowest = ListenOnFreePort(unused);
    close(lowest);
    CDataRouteHerdSockets herd;
    ASSERT_TRUE(herd.initialise(54321));
    Client client(systemcalls::BoundPort());
    CDataRouteSockets* route = nullptr;
    while (!route)
        route = herd.poll();
    // The listener took the lowest free descriptor, the client the next one, the accepted connection the
    // third.
    EXPECT_EQ(FD_CLOEXEC, fcntl(lowest, F_GETFD));
    EXPECT_EQ(FD_CLOEXEC, fcntl(lowest + 2, F_GETFD));
    delete route;
    herd.shutdown();
}

// The client side connects in steps, and says what it looked up.
TEST(DataRouteClient, ConnectsInSteps)
{
    uint16_t port = 0;
    int const listener = ListenOnFreePort(port);
    CDataRouteSockets route;
    EXPECT_TRUE(route.DataOpenClient("127.0.0.1", port));
    int state = 0;
    std::string const log = Printed([&] { state = route.DataOpenClientTryAccept(); });
    EXPECT_NE(0, state);
    EXPECT_NE(std::string::npos, log.find("(127.0.0.1)...\n")) << log;
    while (state == 1)
        state = route.DataOpenClientTryAccept();
    EXPECT_EQ(3, state);
    int const accepted = accept(listener, nullptr, nullptr);
    EXPECT_TRUE(route.DataSendData("x", 1));
    char byte = 0;
    EXPECT_EQ(1, recv(accepted, &byte, 1, 0));
    close(accepted);
    close(listener);
}

// Where nobody listens no connection comes about, now or later.
TEST(DataRouteClient, NobodyListens)
{
    uint16_t port = 0;
    close(ListenOnFreePort(port));
    CDataRouteSockets route;
    route.DataOpenClient("127.0.0.1", port);
    Printed([&] {
        for (int i = 0; i < 5; ++i)
            EXPECT_NE(3, route.DataOpenClientTryAccept());
    });
}

// Without a host it is this one, and the line about it lists the machine's interfaces.
TEST(DataRouteClient, WithoutAHostItIsThisOne)
{
    int descriptor = -1;
    addrinfo* address = nullptr;
    char host[256] = {};
    ASSERT_EQ(0, gethostname(host, sizeof host - 1));
    std::string const log = Printed([&] { EXPECT_TRUE(OpenInitRc(descriptor, &address, nullptr, 7)); });
    EXPECT_NE(-1, descriptor);
    EXPECT_EQ(0u, log.find("This server is " + std::string(host) + ":7 ")) << log;
    EXPECT_NE(std::string::npos, log.find("lo:127.0.0.1")) << log;
    EXPECT_NE(std::string::npos, log.find(")...\n")) << log;
    if (address)
        freeaddrinfo(address);
    close(descriptor);
}

// A host that nobody knows is told of, and is no address.
TEST(DataRouteClient, AnUnknownHostIsToldOf)
{
    int descriptor = -1;
    addrinfo* address = nullptr;
    std::string const log = Printed([&] { EXPECT_TRUE(OpenInitRc(descriptor, &address, "not a host", 7)); });
    EXPECT_EQ(nullptr, address);
    EXPECT_NE(std::string::npos, log.find("Error at getaddrinfo(): ")) << log;
    close(descriptor);
    CDataRouteSockets route;
    route.DataOpenClient("not a host", 7);
    Printed([&] { EXPECT_EQ(0, route.DataOpenClientTryAccept()); });
}

// The server's path looks nothing up and says nothing.
TEST(DataRouteClient, TheServersSocketIsSilent)
{
    int descriptor = -1;
    EXPECT_EQ("", Printed([&] { EXPECT_TRUE(OpenInitRc(descriptor, nullptr, nullptr, 7)); }));
    EXPECT_NE(-1, descriptor);
    close(descriptor);
}
