// What passes between one block of counters and the next.
#include "tools/perf/frames.h"
#include <gtest/gtest.h>

using namespace perf;

// The first block is the base; frames are numbered from 1 behind it.
TEST(FrameCounter, TheFirstBlockIsNoFrame)
{
    FrameCounter counter;
    EXPECT_FALSE(counter.Add({1000, {5, 7}}));
    auto const frame = counter.Add({1016, {8, 7}});
    ASSERT_TRUE(frame);
    EXPECT_EQ(1u, frame->number);
    EXPECT_EQ(16u, frame->time);
    EXPECT_EQ(16u, frame->duration);
    EXPECT_EQ((std::vector<uint32_t>{3, 0}), frame->counters);
    EXPECT_EQ((std::vector<uint32_t>{8, 7}), frame->totals);
}

// Counters and clock wrap; differences and the time of a long run do not show it.
TEST(FrameCounter, CountersAndClockWrap)
{
    FrameCounter counter;
    counter.Add({0xFFFFFFF0, {0xFFFFFFFF}});
    auto const first = counter.Add({0x00000010, {2}});
    EXPECT_EQ(0x20u, first->duration);
    EXPECT_EQ((std::vector<uint32_t>{3}), first->counters);
    uint64_t time = first->time;
    // Three turns of the clock.
    uint32_t clock = 0x10;
    for (int i = 0; i < 12; ++i)
    {
        clock += 0x40000000;
        time = counter.Add({clock, {2}})->time;
    }
    EXPECT_EQ(0x300000020u, time);
}

// A clock that is set back must not make a frame of an hour, nor the time of the run go back.
TEST(FrameCounter, AClockSetBackIsNoTime)
{
    FrameCounter counter;
    counter.Add({5000, {1}});
    counter.Add({6000, {1}});
    auto const back = counter.Add({2000, {2}});
    EXPECT_EQ(0u, back->duration);
    EXPECT_EQ(1000u, back->time);
    EXPECT_EQ(1100u, counter.Add({2100, {2}})->time);
}

// Other counters than before have no differences to them.
TEST(FrameCounter, AnotherNumberOfCountersBeginsAnew)
{
    FrameCounter counter;
    counter.Add({1, {1, 2}});
    EXPECT_FALSE(counter.Add({2, {1, 2, 3}}));
    EXPECT_EQ(1u, counter.Add({3, {1, 2, 4}})->number);
}

// As many counters under other names are others all the same.
TEST(FrameCounter, OtherCountersBeginAnew)
{
    FrameCounter counter;
    counter.Add({1000, {5, 7}});
    counter.Add({1016, {8, 7}});
    counter.Restart();
    EXPECT_FALSE(counter.Add({1032, {100, 100}}));
    auto const frame = counter.Add({1050, {101, 100}});
    ASSERT_TRUE(frame);
    EXPECT_EQ(2u, frame->number);
    EXPECT_EQ((std::vector<uint32_t>{1, 0}), frame->counters);
}

// Means over the last second of the application's clock.
TEST(FrameRate, LooksAtTheLastSecond)
{
    FrameRate rate;
    EXPECT_EQ(0, rate.FramesPerSecond());
    EXPECT_EQ(0, rate.CpuTimePerFrame());
    for (int i = 0; i < 10; ++i)
        rate.Add(500000, 90);
    EXPECT_DOUBLE_EQ(2, rate.FramesPerSecond());
    for (int i = 0; i < 200; ++i)
        rate.Add(10000, 30);
    EXPECT_DOUBLE_EQ(100, rate.FramesPerSecond());
    EXPECT_DOUBLE_EQ(30, rate.CpuTimePerFrame());
}

// Frames without a time (a clock set back) are no reason to divide by nothing, nor to keep them for ever.
TEST(FrameRate, FramesWithoutTime)
{
    FrameRate rate;
    for (int i = 0; i < 100000; ++i)
        rate.Add(0, 8);
    EXPECT_EQ(0, rate.FramesPerSecond());
    EXPECT_DOUBLE_EQ(8, rate.CpuTimePerFrame());
}
