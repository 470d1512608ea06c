// An end of the link that must outlive the other waits for it nowhere, and reads what it left.
#include "tests/profiler/link.h"
#include <filesystem>

namespace
{
class NeverWaits : public Link
{
protected:
    void SetUp() override { Connect(); }
    CDataPathSharedMem& Server() { return static_cast<CDataPathSharedMem&>(*server); }
    CDataPathSharedMem& Client() { return static_cast<CDataPathSharedMem&>(*client); }
};

constexpr unsigned kHello = 5;
constexpr unsigned kRoom = 32760;
}  // namespace

// A reader at the end of a buffer that the writer has not left finds nothing, and what comes then.
TEST_F(NeverWaits, AReceive)
{
    Server().OutliveOther();
    EXPECT_EQ(std::make_pair(1, Bytes()), Receive(*server, kRoom)) << "nothing is used up";
    ASSERT_EQ(1, Send(*client, Bytes(kRoom - kHello)));
    ASSERT_EQ(kRoom - kHello, Receive(*server, kRoom).second.size());
    EXPECT_EQ(std::make_pair(1, Bytes()), Receive(*server, kRoom));
    ASSERT_EQ(1, Send(*client, Bytes{1}));
    EXPECT_EQ(std::make_pair(2, Bytes{1}), Receive(*server, kRoom));
}

// A writer that closes in order destroys the mutexes that the reader would take next: all that it wrote
// arrives all the same, wherever the reader stands.
TEST_F(NeverWaits, TheLastBytesOfOneThatClosed)
{
    Server().OutliveOther();
    ASSERT_EQ(1, Send(*client, Bytes(kRoom - kHello)));
    ASSERT_EQ(kRoom - kHello, Receive(*server, kRoom).second.size());
    ASSERT_EQ(1, Send(*client, Pattern(kRoom)));
    EXPECT_FALSE(Server().IsUnlinked());
    client.reset();
    EXPECT_TRUE(Server().IsUnlinked());
    EXPECT_EQ(std::make_pair(2, Pattern(kRoom)), Receive(*server, kRoom));
    EXPECT_EQ(std::make_pair(1, Bytes()), Receive(*server, kRoom));
    EXPECT_EQ(std::make_pair(1, Bytes()), Receive(*server, kRoom));
}

// Of a connection it needs one file: what is mapped stays so.
TEST_F(NeverWaits, OneFileStaysOpen)
{
    auto const files = [] {
        std::filesystem::directory_iterator const all("/proc/self/fd");
        return std::distance(begin(all), end(all));
    };
    auto const before = files();
    Server().OutliveOther();
    EXPECT_EQ(before - 11, files());
    EXPECT_EQ(1, Send(*client, Bytes{1}));
    EXPECT_EQ(std::make_pair(2, Bytes{1}), Receive(*server, kRoom));
}

// Who stands where the other end can move its positions is not led into a wait by them.
TEST_F(NeverWaits, PositionsThatTheOtherMoves)
{
    Server().OutliveOther();
    sharedmemory::Write(OfFirst("D0d"), 4, {0xF8, 0x7F, 0, 0});  // write: the buffer is full
    sharedmemory::Write(OfFirst("U0d"), 0, {0xF8, 0x7F, 0, 0});  // read: it is used up
    EXPECT_EQ(std::make_pair(1, Bytes()), Receive(*server, 1));
    EXPECT_EQ(1, Send(*server, Bytes{1})) << "the next one is free";
    sharedmemory::Write(OfFirst("D1d"), 4, {0xF8, 0x7F, 0, 0});
    EXPECT_EQ(0, Send(*server, Bytes{1})) << "the client holds the third";
}

// A writer has the room of its buffer and of the next, until the reader has come that far.
TEST_F(NeverWaits, ASend)
{
    ASSERT_EQ(1, Send(*server, Bytes(kRoom - kHello - 10)));
    EXPECT_TRUE(Server().CanSendAtOnce(10));
    EXPECT_TRUE(Server().CanSendAtOnce(11)) << "the next buffer is empty";
    ASSERT_EQ(1, Send(*server, Bytes(10 + kRoom - 10)));
    EXPECT_TRUE(Server().CanSendAtOnce(10));
    EXPECT_FALSE(Server().CanSendAtOnce(11)) << "the third is not";
    ASSERT_EQ(kRoom - kHello, Receive(*client, kRoom).second.size());
    EXPECT_FALSE(Server().CanSendAtOnce(11));
    ASSERT_EQ(kRoom - 10, Receive(*client, kRoom).second.size());
    EXPECT_TRUE(Server().CanSendAtOnce(11));
    EXPECT_EQ(1, Send(*server, Bytes(11)));
}

// Without a link there is nothing to wait for: receive and send fail by themselves.
TEST(NeverWaitsUnconnected, FailsAtOnce)
{
    CDataPathSharedMem path(nullptr);
    path.OutliveOther();
    EXPECT_FALSE(path.IsUnlinked());
    EXPECT_EQ(std::make_pair(0, Bytes()), Receive(path, 1));
    EXPECT_TRUE(path.CanSendAtOnce(1));
    EXPECT_EQ(0, path.DataSendBytes("x", 1));
}
