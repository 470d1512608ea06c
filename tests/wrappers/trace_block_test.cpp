// The builder of records, byte by byte.
#include "tests/wrappers/recorder.h"
#include <thread>

using TraceBlock = Recorder;

namespace
{

// A thread's first record stands behind this: u32 8, u16 1, u64 thread ID.
Bytes ThreadChange(uint64_t thread) { return Joined(U32(8), U16(1), U64(thread)); }

void Mark(unsigned short id) { CTraceBlock const marker(id); }

}  // namespace

// The markers of a state's synthetic calls are records without payload: six bytes.
TEST_F(TraceBlock, AMarkerHasNoPayload)
{
    Mark(4);
    EXPECT_EQ((Bytes{0, 0, 0, 0, 4, 0}), Written());
}

// Values and data stand in the order in which they were appended.
TEST_F(TraceBlock, ValuesAndDataKeepTheirOrder)
{
    {
        CTraceBlock block(2046);
        uint32_t const first = 0x04030201;
        uint8_t const second = 5;
        block.AppendValue(4, &first);
        block.AppendData(3, "abc");
        block.AppendData(2, "de");  // adjacent: no value bytes between
        block.AppendValue(1, &second);
        block.AppendData(1, "f");
    }
    EXPECT_EQ((Bytes{11, 0, 0, 0, 0xFE, 7, 1, 2, 3, 4, 'a', 'b', 'c', 'd', 'e', 5, 'f'}), Written());
}

// Data is referenced, not copied: what counts is what it holds when the record is written.
TEST_F(TraceBlock, DataIsReadWhenTheBlockEnds)
{
    char data[] = {'a', 'b'};
    {
        CTraceBlock block(2046);
        block.AppendData(2, data);
        data[0] = 'X';
    }
    EXPECT_EQ((Bytes{2, 0, 0, 0, 0xFE, 7, 'X', 'b'}), Written());
}

// Data of size 0, and data behind a null pointer, leave the record as it is; the values around stay
// contiguous.
TEST_F(TraceBlock, EmptyDataChangesNothing)
{
    {
        CTraceBlock block(2046);
        block.AppendValue(1, "a");
        block.AppendData(0, "zzz");
        block.AppendData(5, nullptr);
        block.AppendValue(1, "b");
    }
    EXPECT_EQ((Bytes{2, 0, 0, 0, 0xFE, 7, 'a', 'b'}), Written());
}

// A record may be far larger than any before it: the buffers grow, and serve the next record again.
TEST_F(TraceBlock, BuffersGrowAndAreUsedAgain)
{
    std::vector<uint8_t> const large(100000, 7);
    {
        CTraceBlock block(2046);
        for (uint8_t const byte : large)
            block.AppendValue(1, &byte);
        for (int i = 0; i < 1000; ++i)
            block.AppendData(1, "x");
    }
    EXPECT_EQ(Joined(U32(101000), U16(2046), large, Bytes(1000, 'x')), Written());
    STraceBlockImpl const* const buffer = GetThreadTraceBlock();
    uint32_t const capacity = buffer->valueCapacity;
    EXPECT_EQ(131072u, capacity);
    Mark(4);
    EXPECT_EQ((Bytes{0, 0, 0, 0, 4, 0}), Written());
    EXPECT_EQ(capacity, GetThreadTraceBlock()->valueCapacity);
}

// A thread's record that follows another thread's has a thread change in front; the next one has none.
TEST_F(TraceBlock, AThreadChangeStandsInFrontOfTheFirstRecord)
{
    CTraceRecordManager::m_u64LastThreadId = 0;
    Mark(4);
    Mark(4);
    Bytes const marker = {0, 0, 0, 0, 4, 0};
    EXPECT_EQ(Joined(ThreadChange(get_id()), marker, marker), Written());
}

// Alternating threads have one in front of every record.
TEST_F(TraceBlock, AlternatingThreadsHaveOneInFrontOfEveryRecord)
{
    Bytes expected;
    uint64_t other = 0;
    for (unsigned short id = 2; id <= 4; ++id)
    {
        std::thread([&] {
            other = get_id();
            Mark(id);
        }).join();
        Mark(id);
        Bytes const marker = Joined(U32(0), U16(id));
        expected = Joined(expected, ThreadChange(other), marker, ThreadChange(get_id()), marker);
    }
    EXPECT_EQ(expected, Written());
}

// A cancelled block writes nothing and lets the next one in.
TEST_F(TraceBlock, ACancelledBlockWritesNothing)
{
    {
        CTraceBlock block(2046);
        EXPECT_FALSE(block.IsCallRecursive());
        block.AppendValue(1, "a");
        block.Cancel();
        EXPECT_TRUE(block.IsCallRecursive());
    }
    EXPECT_EQ(Bytes(), Written());
    Mark(4);
    EXPECT_EQ((Bytes{0, 0, 0, 0, 4, 0}), Written());
}

// A block inside a live block of its own thread is told so, holds nothing, and leaves the outer one whole.
TEST_F(TraceBlock, ANestedBlockIsRefused)
{
    {
        CTraceBlock outer(2046);
        outer.AppendValue(1, "a");
        {
            CTraceBlock inner(2045);
            EXPECT_TRUE(inner.IsCallRecursive());
            inner.AppendValue(1, "i");
            inner.AppendData(1, "i");
        }
        outer.AppendValue(1, "b");
    }
    EXPECT_EQ((Bytes{2, 0, 0, 0, 0xFE, 7, 'a', 'b'}), Written());
}

// A wrapper's arguments are written as they are in memory: pointers by their low 32 bits, on every machine.
TEST_F(TraceBlock, PointersAreRecordedByTheirLowWord)
{
    Record();
    Es2::_glVertexAttribPointer(1, 3, GL_FLOAT, GL_TRUE, 12,
                                reinterpret_cast<void*>(uintptr_t(0x123456789A)));
    EXPECT_EQ(Expected(2141, U32(0), U32(1), U32(3), U32(0x1406), U8(1), U32(12), U32(0x3456789A)),
              Written());
}
