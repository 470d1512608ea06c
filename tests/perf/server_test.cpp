// The rendezvous of `nebtrace perf` in the moments that two processes rarely come to.
#include "tests/perf/nobody.h"
#include "tests/profiler/link.h"
#include "tools/perf/server.h"
#include <sched.h>
#include <thread>

using Clock = std::chrono::steady_clock;

namespace
{
Clock::time_point g_now{std::chrono::hours(1)};
}  // namespace

// Stands in front of std::chrono::steady_clock::now: time passes when a test says so, and not otherwise.
Clock::time_point Now() __asm__("__wrap__ZNSt6chrono3_V212steady_clock3nowEv");
Clock::time_point Now() { return g_now; }

namespace
{
char const* const kMutex = "/NEBPerfServerVsAppLib0N0m";

Bytes Ticket() { return sharedmemory::ContentOf(Named("0N0d"), 4); }

bool IsThere() { return sharedmemory::SizeOf(Named("0N0d")) != -1; }

// The name of an object of the rings that the next application makes.
std::string OfNext(char const* part) { return Named(std::to_string(Ticket()[0]).c_str()) + part; }

class ServerAlone : public InSharedMemory
{
protected:
    void TearDown() override
    {
        server.reset();
        client.reset();
        InSharedMemory::TearDown();
    }
    void Turn(std::chrono::milliseconds later)
    {
        g_now += later;
        server->Turn(nobody);
    }
    // Until the client has been answered.
    void Meet()
    {
        int answer = 0;
        while ((answer = client->DataOpenClientTryAccept()) != 2)
        {
            ASSERT_EQ(1, answer);
            Turn(std::chrono::milliseconds(1));
        }
    }
    size_t Sessions() { return server->Sessions().size(); }

    Nobody nobody;
    std::optional<perf::Server> server{std::in_place};
    std::unique_ptr<CDataPath> client = std::make_unique<CDataPathSharedMem>(nullptr);
};
}  // namespace

// One that holds the rendezvous for long is taken for dead, and others have another one. It is answered all
// the same when it comes out of it.
TEST_F(ServerAlone, ASlowApplicationIsNotLost)
{
    client->DataOpenClient(kPerfServerName);
    bool renewed = false;
    sharedmemory::BeforeOpening(OfNext("U1d"), [&] {
        EXPECT_EQ(Bytes(4), Ticket()) << "it has taken the first";
        while (Ticket() == Bytes(4))
            Turn(std::chrono::milliseconds(90));
        renewed = true;
    });
    ASSERT_EQ(1, client->DataOpenClientTryAccept());
    EXPECT_TRUE(renewed);
    while (Sessions() == 0)
        Turn(std::chrono::milliseconds(100));
    Meet();
}

// Of one that has not spoken, and whose process cannot be seen, nobody knows whether it lives. After some
// searches it is bidden farewell, and may come again.
TEST_F(ServerAlone, AnUnseenApplicationIsGivenUp)
{
    client->DataOpenClient(kPerfServerName);
    Meet();
    for (int search = 1; search <= 3; ++search)
        Turn(std::chrono::hours(1));
    EXPECT_EQ(1u, Sessions());
    Turn(std::chrono::hours(1));
    EXPECT_EQ(0u, Sessions());
    EXPECT_EQ(std::make_pair(2, Bytes{0, 0, 0, 144}), Receive(*client, 100));
    client = std::make_unique<CDataPathSharedMem>(nullptr);
    client->DataOpenClient(kPerfServerName);
    Meet();
}

// One that speaks at the last moment is an application like any other.
TEST_F(ServerAlone, AnUnseenApplicationThatSpeaks)
{
    client->DataOpenClient(kPerfServerName);
    Meet();
    for (int search = 1; search <= 3; ++search)
        Turn(std::chrono::hours(1));
    Send(*client, {14, 0, 0, 0, 0xFF, 0xFF, 0xFF, 0x7F});
    for (int turn = 1; turn <= 3; ++turn)
        Turn(std::chrono::hours(1));
    ASSERT_EQ(1u, Sessions());
    EXPECT_EQ(perf::Session::State::Speaking, server->Sessions().front().GetState());
}

// A server that was put aside, or had much to do, knows nothing about the time that passed.
TEST_F(ServerAlone, ALongTurnIsNoLongHold)
{
    client->DataOpenClient(kPerfServerName);
    sharedmemory::BeforeOpening(OfNext("U1d"), [&] {
        Turn(std::chrono::milliseconds(1));
        Turn(std::chrono::hours(1));
        Turn(std::chrono::hours(1));
        EXPECT_EQ(Bytes(4), Ticket()) << "the rendezvous is the same";
    });
    ASSERT_EQ(1, client->DataOpenClientTryAccept());
    Meet();
}

// An application that has its ticket, but not yet its rings, when the server ends is answered, and told of
// the end.
TEST_F(ServerAlone, WhoComesAtTheEndIsTold)
{
    client->DataOpenClient(kPerfServerName);
    std::thread end;
    sharedmemory::BeforeOpening(OfNext("U1d"), [&] {
        end = std::thread([&] { server.reset(); });
        while (IsThere())
            sched_yield();
    });
    EXPECT_EQ(1, client->DataOpenClientTryAccept());
    end.join();
    EXPECT_EQ(2, client->DataOpenClientTryAccept());
    EXPECT_EQ(std::make_pair(2, Bytes{0, 0, 0, 144}), Receive(*client, 100));
}

// Whoever has found the rendezvous before the end finds no ticket there afterwards.
TEST_F(ServerAlone, NoTicketIsLeftBehind)
{
    perf::Rendezvous found;
    ASSERT_TRUE(found.Open());
    EXPECT_NE(0u, found.Ticket());
    server.reset();
    EXPECT_EQ(0u, found.Ticket());
}

// A ticket can be taken away unless an application has come first, or is at it.
TEST_F(ServerAlone, TakingTheTicketAway)
{
    using Closing = perf::Rendezvous::Closing;
    perf::Rendezvous rendezvous;
    ASSERT_TRUE(rendezvous.Open());
    CMutex mutex;
    ASSERT_TRUE(bufOpenOrCreateMutex(mutex, false, kMutex));
    ASSERT_TRUE(bufLockMutex(mutex, true));
    EXPECT_FALSE(rendezvous.IsFree());
    EXPECT_EQ(Closing::Held, rendezvous.TakeTicketAway());
    EXPECT_TRUE(bufUnlockMutex(mutex));
    bufDestMutex(mutex);
    EXPECT_TRUE(rendezvous.IsFree());
    EXPECT_EQ(Closing::Closed, rendezvous.TakeTicketAway());
    client->DataOpenClient(kPerfServerName);
    EXPECT_EQ(0, client->DataOpenClientTryAccept());
    EXPECT_EQ(Closing::Taken, rendezvous.TakeTicketAway());
}
