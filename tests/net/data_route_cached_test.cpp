// The buffered layer of a data route, over a raw layer that the test plays.
#include "net/data_route.h"
#include "tests/wrappers/expected.h"
#include <deque>
#include <gtest/gtest.h>

namespace
{

// Takes what is sent as long as it has turns left, and gives what the test has put in.
class PlayedRoute : public CDataRouteCached
{
public:
    int DataOpenServerTryAccept() override { return 1; }
    int DataOpenClientTryAccept() override { return 3; }
    bool DataSendData(char const* data, unsigned int size) override
    {
        if (turns == 0)
            return false;
        --turns;
        sends.push_back(Raw(data, size));
        return true;
    }
    int DataReceiveData(char* buffer, unsigned int size, unsigned int* count) override
    {
        asked.push_back(size);
        *count = 0;
        if (arrivals.empty())
            return resultWithout;
        Bytes& arrival = arrivals.front();
        size_t const taken = std::min<size_t>(size, arrival.size());
        std::memcpy(buffer, arrival.data(), taken);
        arrival.erase(arrival.begin(), arrival.begin() + static_cast<std::ptrdiff_t>(taken));
        if (arrival.empty())
            arrivals.pop_front();
        *count = static_cast<unsigned int>(taken);
        return 3;
    }

    bool Send(Bytes const& bytes, bool flush)
    {
        return DataSendBytes(reinterpret_cast<char const*>(bytes.data()),
                             static_cast<unsigned int>(bytes.size()), flush);
    }

    unsigned int turns = 1000;
    std::vector<Bytes> sends;
    std::deque<Bytes> arrivals;
    std::vector<unsigned int> asked;
    int resultWithout = 1;
};

Bytes Counted(size_t size, uint8_t first = 1)
{
    Bytes bytes;
    for (size_t i = 0; i < size; ++i)
        bytes.push_back(static_cast<uint8_t>(first + i));
    return bytes;
}

Bytes Slice(Bytes const& bytes, size_t from, size_t to)
{
    return Bytes(bytes.begin() + static_cast<std::ptrdiff_t>(from),
                 bytes.begin() + static_cast<std::ptrdiff_t>(to));
}

std::vector<Bytes> Received(PlayedRoute& route, unsigned int size)
{
    Bytes buffer(size);
    unsigned int count = 0;
    EXPECT_EQ(3, route.DataReceiveBytes(reinterpret_cast<char*>(buffer.data()), size, &count));
    buffer.resize(count);
    return {buffer};
}

}  // namespace

// Small pieces gather until they are flushed, and go out as one.
TEST(DataRouteCached, PiecesGatherUntilTheFlush)
{
    PlayedRoute route;
    EXPECT_TRUE(route.Send({1, 2}, false));
    EXPECT_TRUE(route.Send({3}, false));
    EXPECT_TRUE(route.sends.empty());
    EXPECT_TRUE(route.Send({4}, true));
    EXPECT_EQ((std::vector<Bytes>{{1, 2, 3, 4}}), route.sends);
}

// A full ring is sent ahead of the next piece.
TEST(DataRouteCached, AFullRingIsSentFirst)
{
    PlayedRoute route;
    Bytes const first = Counted(4048);
    EXPECT_TRUE(route.Send(first, false));
    EXPECT_TRUE(route.sends.empty());
    EXPECT_TRUE(route.Send({7}, false));
    EXPECT_EQ((std::vector<Bytes>{first}), route.sends);
}

// A request that does not fit is begun again behind its first piece, at full length: what it takes from
// behind its end is zeros.
TEST(DataRouteCached, ARequestThatDoesNotFitIsBegunAgain)
{
    PlayedRoute route;
    Bytes const first = Counted(4000);
    Bytes const second = Counted(100, 101);
    EXPECT_TRUE(route.Send(first, false));
    EXPECT_TRUE(route.Send(second, true));
    ASSERT_EQ(2u, route.sends.size());
    EXPECT_EQ(Joined(first, Slice(second, 0, 48)), route.sends[0]);
    EXPECT_EQ(Joined(Slice(second, 48, 100), Bytes(48, 0)), route.sends[1]);
}

// A request that is longer than the ring goes on until the peer takes no more.
TEST(DataRouteCached, ARequestLongerThanTheRingEndsOnlyWithAFailure)
{
    PlayedRoute route;
    route.turns = 5;
    EXPECT_FALSE(route.Send(Counted(4049), false));
    EXPECT_EQ(5u, route.sends.size());
    EXPECT_EQ(4048u, route.sends[4].size());
}

// A failed flush keeps what is in the ring, and is the caller's failure only where it asked for a flush
// itself.
TEST(DataRouteCached, AFailedFlushKeepsTheBytes)
{
    PlayedRoute route;
    route.turns = 0;
    EXPECT_TRUE(route.Send({1, 2}, true));
    EXPECT_FALSE(route.DataSendFlush());
    route.turns = 1;
    EXPECT_TRUE(route.DataSendFlush());
    EXPECT_EQ((std::vector<Bytes>{{1, 2}}), route.sends);
}

// A ring that is full and cannot be sent refuses more.
TEST(DataRouteCached, AFullRingThatCannotBeSentRefuses)
{
    PlayedRoute route;
    route.turns = 0;
    EXPECT_TRUE(route.Send(Counted(4048), false));
    EXPECT_FALSE(route.Send({1}, false));
}

// With a count, what is there is given, however little.
TEST(DataRouteCached, WithACountLessWillDo)
{
    PlayedRoute route;
    route.arrivals = {{1, 2, 3}};
    EXPECT_EQ((std::vector<Bytes>{{1, 2, 3}}), Received(route, 10));
}

// Without one, only the whole request is; what came early waits.
TEST(DataRouteCached, WithoutACountOnlyTheWholeIsGiven)
{
    PlayedRoute route;
    route.arrivals = {{1, 2}, {3, 4, 5}};
    Bytes buffer(4);
    char* const target = reinterpret_cast<char*>(buffer.data());
    EXPECT_EQ(1, route.DataReceiveBytes(target, 4, nullptr));
    EXPECT_EQ(3, route.DataReceiveBytes(target, 4, nullptr));
    EXPECT_EQ((Bytes{1, 2, 3, 4}), buffer);
    EXPECT_EQ((std::vector<unsigned int>{4, 2}), route.asked);
}

// Nothing, an error and a request that no ring holds.
TEST(DataRouteCached, ReceivingNothing)
{
    PlayedRoute route;
    char byte = 0;
    unsigned int count = 0;
    EXPECT_EQ(1, route.DataReceiveBytes(&byte, 1, &count));
    route.resultWithout = 2;
    EXPECT_EQ(1, route.DataReceiveBytes(&byte, 1, &count));
    route.resultWithout = 0;
    EXPECT_EQ(0, route.DataReceiveBytes(&byte, 1, &count));
    EXPECT_EQ(0, route.DataReceiveBytes(&byte, 4049, nullptr));
}

// The ring goes round: a request over its end comes in order, read up to the end first.
TEST(DataRouteCached, TheReceiveRingGoesRound)
{
    PlayedRoute route;
    Bytes const first = Counted(4040);
    Bytes const second = Counted(20, 50);
    route.arrivals = {first};
    EXPECT_EQ((std::vector<Bytes>{first}), Received(route, 4040));
    route.arrivals = {second};
    EXPECT_EQ((std::vector<Bytes>{Slice(second, 0, 8)}), Received(route, 20));
    EXPECT_EQ((std::vector<Bytes>{Slice(second, 8, 20)}), Received(route, 12));
    EXPECT_EQ((std::vector<unsigned int>{4040, 8, 12}), route.asked);
}

// A request longer than the ring gets as much as the ring holds.
TEST(DataRouteCached, ALongRequestGetsARing)
{
    PlayedRoute route;
    Bytes const all = Counted(5000);
    route.arrivals = {all};
    EXPECT_EQ((std::vector<Bytes>{Slice(all, 0, 4048)}), Received(route, 5000));
    EXPECT_EQ((std::vector<Bytes>{Slice(all, 4048, 5000)}), Received(route, 5000));
}
