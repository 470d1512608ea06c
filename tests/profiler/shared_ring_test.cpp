// The rings: three buffers each way, handed on by their mutexes.
#include "tests/profiler/link.h"
#include <atomic>
#include <thread>

namespace
{

using Ring = Link;

// What a buffer begins with: read and write position.
Bytes Positions(char const* name) { return sharedmemory::ContentOf(OfFirst(name), 8); }

Bytes Data(char const* name, size_t size)
{
    Bytes const all = sharedmemory::ContentOf(OfFirst(name), 8 + size);
    return {all.begin() + 8, all.end()};
}

bool IsLocked(char const* name) { return sharedmemory::IsLocked(OfFirst(name)); }

// A thread, and whether it is still at it.
class Worker
{
public:
    template <typename Action>
    explicit Worker(Action action)
        : m_thread([this, action] {
              m_id = ThisThread();
              action();
              m_bDone = true;
          })
    {
    }
    ~Worker() { Join(); }
    Worker(Worker const&) = delete;
    Worker& operator=(Worker const&) = delete;

    void Join()
    {
        if (m_thread.joinable())
            m_thread.join();
    }
    // Until it waits in the kernel, which it does nowhere but in a mutex.
    void AwaitSleep() const
    {
        while (m_id == 0)
            std::this_thread::yield();
        AwaitSleepOf(m_id);
    }
    bool IsDone() const { return m_bDone; }

private:
    std::atomic<pid_t> m_id{0};
    std::atomic<bool> m_bDone{false};
    std::thread m_thread;
};

Bytes ReceiveAll(CDataPath& path, size_t size)
{
    Bytes all;
    while (all.size() < size)
    {
        Bytes const some = Receive(path, 5000).second;
        all.insert(all.end(), some.begin(), some.end());
    }
    return all;
}

}  // namespace

// Six buffers and six mutexes, of the sizes that both ends know.
TEST_F(Ring, AConnectionHasTwelveObjects)
{
    Connect();
    std::vector<std::string> names;
    for (char const* part : {"D", "U"})
        for (char const* index : {"0", "1", "2"})
            for (char const* kind : {"d", "m"})
                names.push_back(OfFirst(part) + index + kind);
    names.insert(names.begin(), {Named("0N0d"), Named("0N0m")});
    EXPECT_EQ(names, sharedmemory::Objects());
    for (size_t i = 2; i < names.size(); ++i)
        EXPECT_EQ(i % 2 ? static_cast<long>(sizeof(pthread_mutex_t)) : 32768, sharedmemory::SizeOf(names[i]));
}

// Each end holds the buffer that it fills and the one behind which it reads.
TEST_F(Ring, TheFirstLocks)
{
    Connect();
    for (char const* held : {"U0m", "D2m", "D0m", "U2m"})
        EXPECT_TRUE(IsLocked(held)) << held;
    for (char const* free : {"U1m", "D1m"})
        EXPECT_FALSE(IsLocked(free)) << free;
}

// The client sends on U and the server on D: positions, then data, byte for byte.
TEST_F(Ring, BytesLieBehindThePositions)
{
    Connect();
    ASSERT_EQ(1, Send(*client, {1, 2, 3}));
    ASSERT_EQ(1, Send(*server, {4, 5}));
    EXPECT_EQ((Bytes{5, 0, 0, 0,    // read: the greeting
                     8, 0, 0, 0}),  // write
              Positions("U0d"));
    EXPECT_EQ((Bytes{'H', 'E', 'L', 'L', 'O', 1, 2, 3}), Data("U0d", 8));
    EXPECT_EQ((Bytes{'H', 'E', 'L', 'L', 'O', 4, 5}), Data("D0d", 7));
    EXPECT_EQ(std::make_pair(2, Bytes{1, 2, 3}), Receive(*server, 10));
    EXPECT_EQ(std::make_pair(2, Bytes{4, 5}), Receive(*client, 10));
    EXPECT_EQ((Bytes{8, 0, 0, 0, 8, 0, 0, 0}), Positions("U0d"));
    EXPECT_EQ(8u, client->BytesSent());
    EXPECT_EQ(7u, client->BytesReceived());
    EXPECT_EQ(7u, server->BytesSent());
    EXPECT_EQ(8u, server->BytesReceived());
}

// A word goes out in the machine's byte order; a flush has nothing to do.
TEST_F(Ring, WordsAreNative)
{
    Connect();
    EXPECT_EQ(1, client->DataSend(0x04030201));
    EXPECT_EQ(1, client->DataSendFlush());
    EXPECT_EQ(std::make_pair(2, Bytes{1, 2, 3, 4}), Receive(*server, 4));
}

// Nothing to read is no failure, and with a null count a short read is a success.
TEST_F(Ring, ReceiveTakesWhatIsThere)
{
    Connect();
    EXPECT_EQ(std::make_pair(1, Bytes()), Receive(*server, 4));
    char bytes[4] = {'-', '-', '-', '-'};
    EXPECT_EQ(1, server->DataReceiveBytes(bytes, 4, nullptr));
    ASSERT_EQ(1, Send(*client, {'a', 'b', 'c'}));
    EXPECT_EQ(std::make_pair(2, Bytes{'a'}), Receive(*server, 1));
    EXPECT_EQ(2, server->DataReceiveBytes(bytes, 4, nullptr));
    EXPECT_EQ("bc--", std::string(bytes, 4));
}

// A write that fills the buffer to its last byte stays in it; the next byte moves on.
TEST_F(Ring, ExactlyABufferFillsIt)
{
    Meet();
    ASSERT_EQ(std::make_pair(2, Bytes{'H', 'E', 'L', 'L', 'O'}), Receive(*server, 5));
    Bytes const much = Pattern(32760);
    // On the other ring nothing has been written yet.
    ASSERT_EQ(1, Send(*server, much));
    EXPECT_EQ((Bytes{0, 0, 0, 0, 0xF8, 0x7F, 0, 0}), Positions("D0d"));
    EXPECT_EQ(much, Data("D0d", 32760));
    EXPECT_TRUE(IsLocked("D0m"));
    EXPECT_FALSE(IsLocked("D1m"));
    ASSERT_EQ(1, Send(*server, {0xAB}));
    EXPECT_EQ((Bytes{0, 0, 0, 0, 0xF8, 0x7F, 0, 0}), Positions("D0d"));
    EXPECT_EQ((Bytes{0, 0, 0, 0, 1, 0, 0, 0}), Positions("D1d"));
    EXPECT_EQ((Bytes{0xAB}), Data("D1d", 1));
    EXPECT_FALSE(IsLocked("D0m"));
    EXPECT_TRUE(IsLocked("D1m"));
}

// The buffer in front of a used-up one is emptied, and only then open to the sender.
TEST_F(Ring, AUsedUpBufferFreesTheOneInFront)
{
    Meet();
    ASSERT_EQ(1, Send(*server, Pattern(32761)));
    EXPECT_EQ(32760u, Receive(*client, 40000).second.size());
    EXPECT_TRUE(IsLocked("D2m")) << "not before the next receive";
    EXPECT_EQ(1u, Receive(*client, 40000).second.size());
    EXPECT_FALSE(IsLocked("D2m"));
    EXPECT_TRUE(IsLocked("D0m")) << "the used-up buffer";
    EXPECT_EQ((Bytes{0xF8, 0x7F, 0, 0, 0xF8, 0x7F, 0, 0}), Positions("D0d"))
        << "it is emptied one step later";
    ASSERT_EQ(1, Send(*server, Pattern(32760)));
    EXPECT_EQ(32759u, Receive(*client, 40000).second.size());
    EXPECT_EQ(1u, Receive(*client, 40000).second.size());
    EXPECT_EQ((Bytes{0, 0, 0, 0, 0, 0, 0, 0}), Positions("D0d"));
    EXPECT_FALSE(IsLocked("D0m"));
}

// A reader that has used up a buffer in which the sender still is waits for it to move on.
TEST_F(Ring, TheReaderWaitsForTheSenderToMoveOn)
{
    Meet();
    ASSERT_EQ(1, Send(*server, Pattern(32760)));
    ASSERT_EQ(32760u, Receive(*client, 32760).second.size());
    int result = 0;
    Worker reader([&] { result = Receive(*client, 1).first; });
    reader.AwaitSleep();
    EXPECT_FALSE(reader.IsDone());
    ASSERT_EQ(1, Send(*server, {7}));
    reader.Join();
    // The byte itself may have come before or after its look.
    EXPECT_TRUE(result == 1 || (result == 2 && client->BytesReceived() == 32761)) << result;
    if (result == 1)
    {
        EXPECT_EQ(std::make_pair(2, Bytes{7}), Receive(*client, 1));
    }
}

// The flow control: two buffers ahead of a reader that does not read, the sender waits, and nothing is lost.
TEST_F(Ring, TheSenderWaitsForASlowReader)
{
    Meet();
    Bytes const much = Pattern(5 * 32760 + 17);
    int result = 0;
    Worker sender([&] { result = Send(*server, much); });
    sender.AwaitSleep();
    EXPECT_FALSE(sender.IsDone());
    EXPECT_EQ((Bytes{0, 0, 0, 0, 0xF8, 0x7F, 0, 0}), Positions("D1d"));
    EXPECT_EQ((Bytes{0, 0, 0, 0, 0, 0, 0, 0}), Positions("D2d"));
    EXPECT_EQ(much, ReceiveAll(*client, much.size()));
    sender.Join();
    EXPECT_EQ(1, result);
    EXPECT_EQ(much.size(), server->BytesSent());
}

// Both ways at once, through many turns of the rings, in pieces that never fit a buffer.
TEST_F(Ring, NothingIsLostOverManyTurns)
{
    Connect();
    constexpr size_t kSize = 40 * 32760;
    Bytes const much = Pattern(kSize, 5);
    Worker echo([&] {
        for (size_t done = 0; done < kSize;)
        {
            Bytes const some = Receive(*server, 777).second;
            Send(*server, some);
            done += some.size();
        }
    });
    Bytes back;
    for (size_t sent = 0; sent < kSize; sent += 1170)
    {
        Send(*client,
             {much.begin() + static_cast<long>(sent), much.begin() + static_cast<long>(sent + 1170)});
        Bytes const some = Receive(*client, 4000).second;
        back.insert(back.end(), some.begin(), some.end());
    }
    Bytes const rest = ReceiveAll(*client, kSize - back.size());
    back.insert(back.end(), rest.begin(), rest.end());
    EXPECT_EQ(much, back);
}

// A sender that comes round to a buffer that is not empty has met a broken peer.
TEST_F(Ring, ABufferThatIsNotEmptyEndsTheLink)
{
    Meet();
    sharedmemory::Write(OfFirst("D1d"), 0, {1, 0, 0, 0});
    EXPECT_EQ(0, Send(*server, Pattern(32761)));
    EXPECT_EQ("\nConnection attempt on 1\nConnection error\n", messages.text);
}

// Positions that no peer of ours writes lead nobody out of the buffer.
TEST_F(Ring, ImpossiblePositionsFail)
{
    Connect();
    sharedmemory::Write(OfFirst("U0d"), 4, {0xF9, 0x7F, 0, 0});  // write, past the end
    EXPECT_EQ(0, Receive(*server, 4).first);
    EXPECT_EQ(0, Send(*client, {1}));
    sharedmemory::Write(OfFirst("U0d"), 0, {9, 0, 0, 0, 8, 0, 0, 0});  // read, ahead of write
    EXPECT_EQ(0, Receive(*server, 4).first);
}

// A path that was never opened, or has lost its peer, fails and does no harm.
TEST_F(Ring, APathWithoutRingsFails)
{
    EXPECT_EQ(0, Send(*client, {1}));
    EXPECT_EQ(std::make_pair(0, Bytes()), Receive(*client, 1));
    EXPECT_EQ(1, client->DataSendFlush());
}

// A client that goes frees what its peer may wait in, and takes all objects with it.
TEST_F(Ring, AClientThatGoesWakesTheServer)
{
    Connect();
    ASSERT_EQ(1, Send(*client, Pattern(32755)));
    ASSERT_EQ(32755u, Receive(*server, 40000).second.size());
    Worker reader([&] { Receive(*server, 1); });
    reader.AwaitSleep();
    client.reset();
    reader.Join();
    EXPECT_EQ((std::vector<std::string>{Named("0N0d"), Named("0N0m")}), sharedmemory::Objects());
}
