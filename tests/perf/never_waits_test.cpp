// An end of the link can ask whether it would have to wait for the other.
#include "tests/profiler/link.h"

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

// A reader at the end of a buffer that the writer has not left would wait for it.
TEST_F(NeverWaits, AReceive)
{
    EXPECT_TRUE(Server().CanReceiveAtOnce()) << "nothing is there, and nothing is used up";
    ASSERT_EQ(1, Send(*client, Bytes(kRoom - kHello)));
    ASSERT_EQ(kRoom - kHello, Receive(*server, kRoom).second.size());
    EXPECT_FALSE(Server().CanReceiveAtOnce());
    ASSERT_EQ(1, Send(*client, Bytes{1}));
    EXPECT_TRUE(Server().CanReceiveAtOnce());
    EXPECT_EQ(std::make_pair(2, Bytes{1}), Receive(*server, kRoom));
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
    EXPECT_TRUE(path.CanReceiveAtOnce());
    EXPECT_TRUE(path.CanSendAtOnce(1));
    EXPECT_EQ(0, path.DataSendBytes("x", 1));
}
