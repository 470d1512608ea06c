#include "fake_clock.h"
#include "support/stopwatch.h"
#include <gtest/gtest.h>

// The result is the difference of two readings of the wall clock, in microseconds.
TEST(Stopwatch, MeasuresMicroseconds)
{
    CStopwatch watch;
    EXPECT_EQ(0u, watch.ResultUS());
    SetClock(10, 999999);
    watch.Start();
    SetClock(12, 3);
    watch.Stop();
    EXPECT_EQ(1000004u, watch.ResultUS());
}

// CurrentUS looks at the time since Start without stopping.
TEST(Stopwatch, CurrentReadsWithoutStopping)
{
    CStopwatch watch;
    SetClock(100, 0);
    watch.Start();
    SetClock(100, 250);
    watch.Stop();
    SetClock(101, 0);
    EXPECT_EQ(1000000u, watch.CurrentUS());
    EXPECT_EQ(250u, watch.ResultUS());
}

// The count is 32 bits wide and wraps after 4294967296 microseconds; a short interval across the wrap is
// right.
TEST(Stopwatch, SurvivesTheWrapOfItsCount)
{
    CStopwatch watch;
    SetClock(4294, 967290);
    watch.Start();
    SetClock(4294, 967301);
    watch.Stop();
    EXPECT_EQ(11u, watch.ResultUS());
    SetClock(4295, 0);
    EXPECT_EQ(32710u, watch.CurrentUS());
}

// A step of the wall clock shows as it stands: here one microsecond back.
TEST(Stopwatch, ShowsAClockStepAsItStands)
{
    CStopwatch watch;
    SetClock(50, 1);
    watch.Start();
    SetClock(50, 0);
    watch.Stop();
    EXPECT_EQ(0xFFFFFFFFu, watch.ResultUS());
}

// Two counts and nothing else.
TEST(Stopwatch, HoldsTwoCounts) { EXPECT_EQ(8u, sizeof(CStopwatch)); }
