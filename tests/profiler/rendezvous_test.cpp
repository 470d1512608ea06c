// How a performance server and the applications find each other.
#include "tests/profiler/link.h"
#include <sys/wait.h>
#include <unistd.h>

namespace
{

using Rendezvous = Link;

Bytes Ticket() { return sharedmemory::ContentOf(Named("0N0d"), 4); }

}  // namespace

// The rendezvous object holds the first ticket, 1, and nothing else.
TEST_F(Rendezvous, TheServerOffersATicket)
{
    ASSERT_TRUE(herd.initialise("/NEBPerfServerVsAppLib"));
    Bytes expected(256);
    expected[0] = 1;
    EXPECT_EQ(256, sharedmemory::SizeOf(Named("0N0d")));
    EXPECT_EQ(expected, sharedmemory::ContentOf(Named("0N0d"), 256));
    EXPECT_EQ(static_cast<long>(sizeof(pthread_mutex_t)), sharedmemory::SizeOf(Named("0N0m")));
    EXPECT_FALSE(sharedmemory::IsLocked(Named("0N0m")));
    EXPECT_EQ(nullptr, herd.poll());
    EXPECT_EQ("", messages.text);
}

// A server without a name is refused, in both forms.
TEST_F(Rendezvous, AServerNeedsAName)
{
    CDataPathHerdSharedMem first(nullptr);
    EXPECT_FALSE(herd.initialise(nullptr));
    EXPECT_FALSE(herd.initialise(""));
    EXPECT_FALSE(first.initialise(nullptr));
    EXPECT_FALSE(first.initialise(""));
    EXPECT_EQ(nullptr, herd.poll());
    EXPECT_EQ(nullptr, first.poll());
}

// Without a server each attempt is just a failure, and the next one may succeed.
TEST_F(Rendezvous, AClientLooksForAServerAgainAndAgain)
{
    EXPECT_EQ(1, client->DataOpenClient("/NEBPerfServerVsAppLib"));
    EXPECT_EQ(0, client->DataOpenClientTryAccept());
    EXPECT_EQ(0, client->DataOpenClientTryAccept());
    Connect();
}

// The handshake step by step: the client takes the ticket, makes the rings and greets; the server answers.
TEST_F(Rendezvous, TheHandshake)
{
    Knock();
    EXPECT_EQ((Bytes{0, 0, 0, 0}), Ticket());
    EXPECT_EQ((Bytes{0, 0, 0, 0, 5, 0, 0, 0, 'H', 'E', 'L', 'L', 'O'}),
              sharedmemory::ContentOf(OfFirst("U0d"), 13));
    EXPECT_EQ(1, client->DataOpenClientTryAccept()) << "no answer yet";
    server.reset(herd.poll());
    ASSERT_TRUE(server);
    EXPECT_EQ("\nConnection attempt on 1\n", messages.text);
    EXPECT_EQ((Bytes{2, 0, 0, 0}), Ticket());
    EXPECT_EQ(1, client->DataOpenClientTryAccept()) << "no answer yet";
    EXPECT_EQ(1, server->DataOpenServerTryAccept());
    EXPECT_EQ((Bytes{0, 0, 0, 0, 5, 0, 0, 0, 'H', 'E', 'L', 'L', 'O'}),
              sharedmemory::ContentOf(OfFirst("D0d"), 13));
    EXPECT_EQ(2, client->DataOpenClientTryAccept());
    EXPECT_EQ(0, server->DataOpenServerTryAccept()) << "nothing more to read";
}

// A client that comes while the ticket is out gets nothing, until the server has left the next one.
TEST_F(Rendezvous, ASecondClientWaitsForTheNextTicket)
{
    Knock();
    CDataPathSharedMem second(nullptr);
    second.DataOpenClient("/NEBPerfServerVsAppLib");
    EXPECT_EQ(0, second.DataOpenClientTryAccept());
    EXPECT_EQ(14u, sharedmemory::Objects().size());
    server.reset(herd.poll());
    ASSERT_TRUE(server);
    EXPECT_EQ(1, second.DataOpenClientTryAccept());
    EXPECT_EQ(26u, sharedmemory::Objects().size());
    EXPECT_EQ(32768, sharedmemory::SizeOf(Named("2U0d")));
    std::unique_ptr<CDataPath> const other(herd.poll());
    ASSERT_TRUE(other);
    EXPECT_EQ((Bytes{3, 0, 0, 0}), Ticket());
    // Each of the two servers answers its own client.
    EXPECT_EQ(1, other->DataOpenServerTryAccept());
    EXPECT_EQ(1, client->DataOpenClientTryAccept());
    EXPECT_EQ(2, second.DataOpenClientTryAccept());
    EXPECT_EQ(1, server->DataOpenServerTryAccept());
    EXPECT_EQ(2, client->DataOpenClientTryAccept());
    EXPECT_EQ("\nConnection attempt on 1\n\nConnection attempt on 2\n", messages.text);
}

// While somebody holds the rendezvous neither end waits for it.
TEST_F(Rendezvous, NobodyWaitsForTheRendezvous)
{
    ASSERT_TRUE(herd.initialise("/NEBPerfServerVsAppLib"));
    CMutex mutex;
    ASSERT_TRUE(bufOpenOrCreateMutex(mutex, false, Named("0N0m").c_str()));
    ASSERT_TRUE(bufLockMutex(mutex, false));
    client->DataOpenClient("/NEBPerfServerVsAppLib");
    EXPECT_EQ(0, client->DataOpenClientTryAccept());
    EXPECT_EQ(nullptr, herd.poll());
    EXPECT_EQ((Bytes{1, 0, 0, 0}), Ticket());
    bufUnlockMutex(mutex);
    EXPECT_EQ(1, client->DataOpenClientTryAccept());
    bufDestMutex(mutex);
}

// A ticket whose taker has made no rings is spent, and the next one is out.
TEST_F(Rendezvous, ATakerWithoutRingsIsForgotten)
{
    ASSERT_TRUE(herd.initialise("/NEBPerfServerVsAppLib"));
    sharedmemory::Write(Named("0N0d"), 0, {0, 0, 0, 0});
    EXPECT_EQ(nullptr, herd.poll());
    EXPECT_EQ("\nConnection attempt on 1\nMem open error.\n", messages.text);
    EXPECT_EQ((Bytes{2, 0, 0, 0}), Ticket());
}

// Whatever name the rendezvous has, the server looks for rings under the one base name.
TEST_F(Rendezvous, TheServersRingsHaveTheOneBaseName)
{
    ASSERT_TRUE(herd.initialise("/other"));
    client->DataOpenClient("/other");
    ASSERT_EQ(1, client->DataOpenClientTryAccept());
    EXPECT_EQ(32768, sharedmemory::SizeOf("/other1U0d"));
    EXPECT_EQ(nullptr, herd.poll());
    EXPECT_EQ("\nConnection attempt on 1\nMem open error.\n", messages.text);
}

// A client whose rings cannot be made puts nothing in the way of its next attempt.
TEST_F(Rendezvous, AFailedAttemptIsCleanedUpByTheNext)
{
    ASSERT_TRUE(herd.initialise("/NEBPerfServerVsAppLib"));
    std::string const base(230, 'n');
    CDataPathHerdSharedMem2 other(nullptr);
    CDataPathSharedMem path(&messages);
    // A file name has 255 bytes at most: the rendezvous fits, the rings of a long ticket do not.
    path.DataOpenClient(("/" + base).c_str());
    ASSERT_TRUE(other.initialise(("/" + base).c_str()));
    std::string const rendezvous = "/" + base + "0N0d";
    sharedmemory::Write(rendezvous, 0, {0xFF, 0xFF, 0xFF, 0xFF});
    size_t const before = sharedmemory::Objects().size();
    EXPECT_EQ(0, path.DataOpenClientTryAccept());
    EXPECT_EQ("Mem create error.\n", messages.text);
    EXPECT_EQ(before, sharedmemory::Objects().size());
    EXPECT_FALSE(sharedmemory::IsLocked("/" + base + "0N0m"));
    sharedmemory::Write(rendezvous, 0, {1, 0, 0, 0});
    EXPECT_EQ(1, path.DataOpenClientTryAccept());
}

// Five bytes that are no greeting end the handshake at the server.
TEST_F(Rendezvous, TheServerRefusesAnotherGreeting)
{
    Meet();
    sharedmemory::Write(OfFirst("U0d"), 8, {'h', 'e', 'l', 'l', 'o'});
    EXPECT_EQ(0, server->DataOpenServerTryAccept());
    EXPECT_EQ("\nConnection attempt on 1\nConnection error\n", messages.text);
    EXPECT_EQ((Bytes{0, 0, 0, 0, 0, 0, 0, 0}), sharedmemory::ContentOf(OfFirst("D0d"), 8)) << "no answer";
}

// And at the client.
TEST_F(Rendezvous, TheClientRefusesAnotherAnswer)
{
    Meet();
    ASSERT_EQ(1, Send(*server, {'H', 'E', 'L', 'L', '0'}));
    EXPECT_EQ(0, client->DataOpenClientTryAccept());
    EXPECT_EQ("\nConnection attempt on 1\nConnection error\n", messages.text);
}

// Two processes that really are two: the child is the application.
TEST_F(Rendezvous, BetweenTwoProcesses)
{
    ASSERT_TRUE(herd.initialise("/NEBPerfServerVsAppLib"));
    pid_t const child = fork();
    if (child == 0)
    {
        CDataPathSharedMem path(nullptr);
        path.DataOpenClient("/NEBPerfServerVsAppLib");
        while (path.DataOpenClientTryAccept() != 2)
        {
        }
        Send(path, Pattern(100000));
        unsigned int count = 0;
        char byte = 0;
        while (count == 0)
            path.DataReceiveBytes(&byte, 1, &count);
        path.~CDataPathSharedMem();
        _exit(byte);
    }
    while (!server)
        server.reset(herd.poll());
    while (server->DataOpenServerTryAccept() == 0)
    {
    }
    Bytes all;
    while (all.size() < 100000)
    {
        Bytes const some = Receive(*server, 6000).second;
        all.insert(all.end(), some.begin(), some.end());
    }
    EXPECT_EQ(Pattern(100000), all);
    Send(*server, {42});
    int status = 0;
    ASSERT_EQ(child, waitpid(child, &status, 0));
    EXPECT_EQ(42, WEXITSTATUS(status));
}

// The first form: eight bytes, one slot for even process IDs and one for odd ones.
TEST_F(Rendezvous, ProcessIdsInTwoSlots)
{
    CDataPathHerdSharedMem first(&messages);
    ASSERT_TRUE(first.initialise("/slots"));
    EXPECT_EQ((std::vector<std::string>{"/slots"}), sharedmemory::Objects());
    EXPECT_EQ(8, sharedmemory::SizeOf("/slots"));
    EXPECT_EQ(nullptr, first.poll());
    sharedmemory::Write("/slots", 0, {3, 0, 0, 0, 4, 0, 0, 0});
    EXPECT_EQ(nullptr, first.poll()) << "an odd one in the even slot, and the other way round";
    EXPECT_EQ("", messages.text);
    sharedmemory::Write("/slots", 0, {6, 0, 0, 0, 5, 0, 0, 0});
    EXPECT_EQ(nullptr, first.poll());
    EXPECT_EQ("\nConnection attempt from PID 6\nMem open error.\n", messages.text);
    EXPECT_EQ(nullptr, first.poll());
    EXPECT_EQ(nullptr, first.poll()) << "nothing has changed";
    EXPECT_EQ("\nConnection attempt from PID 6\nMem open error.\n\nConnection attempt from PID 5\nMem open "
              "error.\n",
              messages.text);
    first.shutdown();
    EXPECT_EQ(nullptr, first.poll());
}

// A client of the first form has made its rings under its process ID.
TEST_F(Rendezvous, RingsUnderAProcessId)
{
    Knock();
    CDataPathHerdSharedMem first(nullptr);
    ASSERT_TRUE(first.initialise("/slots"));
    // The rings that stand there are those of number 1, which is odd.
    sharedmemory::Write("/slots", 4, {1, 0, 0, 0});
    server.reset(first.poll());
    ASSERT_TRUE(server);
    EXPECT_EQ(1, server->DataOpenServerTryAccept());
    EXPECT_EQ(2, client->DataOpenClientTryAccept());
}
