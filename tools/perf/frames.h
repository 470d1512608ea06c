// What passes between one block of counters and the next.
#pragma once
#include "tools/perf/blocks.h"
#include <deque>

namespace perf
{
struct Frame
{
    uint64_t number = 0;    // from 1, within a connection
    uint64_t time = 0;      // microseconds since the connection's first block
    uint32_t duration = 0;  // microseconds; 0 where the application's clock was set back
    std::vector<uint32_t> counters;
    std::vector<uint32_t> totals;  // as the application counts them
};

// The first block is what the others are counted from, and no frame by itself: what it holds can be the work
// of any number of frames.
class FrameCounter
{
public:
    std::optional<Frame> Add(Sample sample);
    // The next block is counted from anew: the application counts other things from here on.
    void Restart() { m_last.reset(); }
    uint64_t Frames() const { return m_frames; }

private:
    std::optional<Sample> m_last;
    uint64_t m_frames = 0;
    uint64_t m_time = 0;
};

// Means over the last second.
class FrameRate
{
public:
    void Add(uint32_t duration, uint32_t cpuTime);
    double FramesPerSecond() const;
    double CpuTimePerFrame() const;  // microseconds

private:
    struct Entry
    {
        uint32_t duration;
        uint32_t cpuTime;
    };
    std::deque<Entry> m_entries;
    uint64_t m_duration = 0;
    uint64_t m_cpuTime = 0;
};
}  // namespace perf
