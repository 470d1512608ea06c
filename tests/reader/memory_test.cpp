// No length in a trace costs memory that its bytes do not justify, and no damage costs a crash.
#include "allocation_meter.h"
#include "reader_fixture.h"
#include "trace/decode.h"
#include "trace/print.h"
#include <random>

using namespace nebtrace;

using MemoryTest = ReaderTest;
INSTANTIATE_TEST_SUITE_P(Each, MemoryTest, testing::Values(Input::File, Input::Pipe), InputName);

static constexpr size_t kSmall = 256 * 1024;

// Tables are made at first use; they are not what these tests measure.
static void MakeTables()
{
    DecodedCall call;
    ASSERT_TRUE(Decode(2046, Api::Any, Payload().U32(0).View(), call));
}

// The largest length there is, with nothing behind it, allocates nothing of that size.
TEST_P(MemoryTest, AHostileRecordLengthAllocatesNothing)
{
    MakeTables();
    std::string const bytes = Trace().Flush().Raw(Payload().U32(0xFFFFFFFF).U16(2046).U32(0)).All();
    AllocationMeter const meter;
    Reader& reader = Read(bytes);
    EXPECT_EQ(1u, Walk(reader));
    EXPECT_EQ(EndState::Truncated, reader.End());
    EXPECT_EQ(72u, reader.EndOffset());
    EXPECT_LT(meter.Peak(), kSmall);
}

// Every count inside a record is as little trusted: none of these layouts fits, and nothing is allocated for
// them.
TEST_P(MemoryTest, AHostileCountInsideARecordAllocatesNothing)
{
    MakeTables();
    DecodedCall call;
    AllocationMeter const meter;
    uint32_t const most = 0xFFFFFFFF;
    // glGenTextures, glShaderSource, glGetUniformLocation, glTexImage2D, glUniformMatrix4fv, glDrawElements
    EXPECT_FALSE(Decode(2054, Api::Any, Payload().Words({0, 1, 2, most, 3, 4}).View(), call));
    EXPECT_FALSE(Decode(2099, Api::Any, Payload().Words({0, 1, 2, 3, most, 5, 0, 6, 0}).View(), call));
    EXPECT_FALSE(Decode(2077, Api::Any, Payload().Words({0, 0, 1, 2, most, 3}).View(), call));
    EXPECT_FALSE(
        Decode(2106, Api::Any, Payload().Words({0, 1, 2, 3, 4, 5, 6, 7, 8, 9, most, 4}).View(), call));
    EXPECT_FALSE(
        Decode(2130, Api::Any, Payload().Words({0, 1, 2}).U8(0).Words({3, 0x10000000, 5}).View(), call));
    EXPECT_FALSE(Decode(2042, Api::Any, Payload().Words({0, 4, 3, 0x1403, 5, most, 6}).View(), call));
    EXPECT_FALSE(
        Decode(2042, Api::Any, Payload().Words({0, 4, 3, 0x1403, 0, 0, 6, 0, 1, most, 5}).View(), call));
    EXPECT_LT(meter.Peak(), kSmall);
}

// An element count whose size in bytes overflows 32 bits does not come back as a small one.
TEST_P(MemoryTest, ACountThatOverflowsIsRefused)
{
    DecodedCall call;
    // 0x40000000 elements of 4 bytes are 0 bytes modulo 2^32, and no bytes follow.
    EXPECT_FALSE(Decode(2054, Api::Any, Payload().Words({0, 1, 2, 0x40000000}).View(), call));
    // 0x04000000 elements of 64 bytes likewise.
    EXPECT_FALSE(
        Decode(2130, Api::Any, Payload().Words({0, 1, 2}).U8(0).Words({3, 0x04000000}).View(), call));
}

// A record of a megabyte costs about that, and a list of many empty texts no more than its bytes.
TEST_P(MemoryTest, AWholeRecordCostsItsBytes)
{
    MakeTables();
    uint32_t const texts = 100000;
    Payload payload;
    payload.Words({0, 7, texts, 1, texts});
    for (uint32_t i = 0; i < texts; ++i)
        payload.Words({i, 0});
    payload.Words({0, 0});
    std::string const bytes = Trace().Record(2099, payload).Footer(0).All();
    Reader& reader = Read(bytes);
    AllocationMeter const meter;
    Record record;
    ASSERT_TRUE(reader.Next(record));
    DecodedCall call;
    ASSERT_TRUE(Decode(record.id, Api::Any, record.payload, call));
    EXPECT_EQ(texts, call.Find("string")->count);
    EXPECT_LT(CallText(call).size(), 200u);
    EXPECT_LT(meter.Peak(), GetParam() == Input::File ? bytes.size() + kSmall : 3 * bytes.size());
}

static Trace AnyTrace()
{
    Trace trace;
    trace.Thread(4711);
    trace.Record(1003, Payload().Words({0x3000, 9, 1, 2, 0, 5, 3, 0x3098, 2, 0x3038, 6, 1, 0x3038}));
    trace.Record(2099,
                 Payload().Words({0, 7, 2, 1, 2, 3, 2}).Text("ab").Words({4, 1}).Text("c").Words({0, 0}));
    trace.Record(4, {});
    trace.Record(2042, Payload().Words({0, 4, 3, 0x1403, 9, 6}).U16(0).U16(1).U16(2).Words({9, 0, 8, 4, 7}));
    trace.Record(2106, Payload().Words({0, 0xDE1, 0, 0x1908, 2, 1, 0, 0x1908, 0x1401, 5, 8, 1, 2, 4}));
    trace.Record(2130, Payload().Words({0, 1, 1}).U8(0).Words({3, 1}).Fill(64, 0));
    trace.Record(4197, Payload().U32(0).U8(2).Words({2, 3, 2, 8, 9}));
    trace.Record(4168, Payload().Words({0, 1, 2, 3, 4, 5, 6, 7, 2}).U16(0x1234).U32(4));
    trace.Record(4086, Payload().U32(0).U8(1).U32(9).Fill(10, 3));
    trace.SwapBuffers(3);
    trace.Record(2041, Payload().Words({0, 4, 0, 3, 1, 2, 4, 0}));
    return trace.Footer(62);
}

// Reads, decodes and prints all there is.
static void Exhaust(Reader& reader)
{
    Record record;
    DecodedCall call;
    while (reader.Next(record))
    {
        bool const decoded =
            record.type == RecordType::Call && Decode(record.id, Api::Any, record.payload, call);
        std::string const text = decoded ? CallText(call) : RawText(record.payload);
        ASSERT_FALSE(text.empty());
    }
    ASSERT_NE(EndState::Reading, reader.End());
}

// The trace that is damaged below is whole, and each of its calls is decoded.
TEST_P(MemoryTest, TheTraceToDamageIsWhole)
{
    Reader& reader = Read(AnyTrace());
    Record record;
    DecodedCall call;
    size_t calls = 0;
    while (reader.Next(record))
        if (record.type == RecordType::Call)
        {
            ASSERT_TRUE(Decode(record.id, Api::Any, record.payload, call)) << record.id;
            ++calls;
        }
    EXPECT_EQ(10u, calls);
    EXPECT_EQ(EndState::Footer, reader.End());
}

// Cut at every byte, a trace delivers its whole records and says that it is cut.
TEST_P(MemoryTest, EveryTruncationEndsCleanly)
{
    Trace const trace = AnyTrace();
    for (size_t size = 0; size < trace.Size(); ++size)
    {
        Reader& reader = Read(trace.Cut(size));
        Exhaust(reader);
        EXPECT_NE(EndState::Footer, reader.End()) << size;
        EXPECT_LE(reader.EndOffset(), size);
    }
}

// Thousands of random damages end cleanly, with no more memory than the trace is long and a constant.
TEST_P(MemoryTest, RandomDamageEndsCleanly)
{
    MakeTables();
    std::string const whole = AnyTrace().All();
    std::mt19937 random(20240501);
    auto const below = [&random](size_t limit) { return static_cast<size_t>(random() % limit); };
    AllocationMeter const meter;
    for (int round = 0; round < 4000; ++round)
    {
        std::string bytes = whole;
        for (size_t flips = 1 + below(8); flips > 0; --flips)
        {
            size_t const at = below(2) ? 62 + below(bytes.size() - 62) : below(bytes.size());
            bytes[at] =
                static_cast<char>(below(2) ? bytes[at] ^ (1 << below(8)) : static_cast<int>(random()));
        }
        bytes.resize(below(4) ? bytes.size() : below(bytes.size()));
        Exhaust(Read(bytes));
    }
    EXPECT_LT(meter.Peak(), kSmall);
}
