#include "tools/perf/frames.h"

namespace perf
{
namespace
{
constexpr uint32_t kSecond = 1000000;
constexpr size_t kMostEntries = 10000;
// No frame takes 36 minutes: a longer one is a clock that was set back.
constexpr uint32_t kLongestFrame = 0x7FFFFFFF;
}  // namespace

std::optional<Frame> FrameCounter::Add(Sample sample)
{
    std::optional<Frame> frame;
    if (m_last && m_last->values.size() == sample.values.size())
    {
        frame.emplace();
        uint32_t const duration = sample.time - m_last->time;
        frame->duration = duration > kLongestFrame ? 0 : duration;
        m_time += frame->duration;
        frame->time = m_time;
        frame->number = ++m_frames;
        // Counters wrap, and so do their differences.
        for (size_t i = 0; i < sample.values.size(); ++i)
            frame->counters.push_back(sample.values[i] - m_last->values[i]);
        frame->totals = sample.values;
    }
    m_last = std::move(sample);
    return frame;
}

void FrameRate::Add(uint32_t duration, uint32_t cpuTime)
{
    m_entries.push_back({duration, cpuTime});
    m_duration += duration;
    m_cpuTime += cpuTime;
    while (m_entries.size() > 1 &&
           (m_duration - m_entries.front().duration >= kSecond || m_entries.size() > kMostEntries))
    {
        m_duration -= m_entries.front().duration;
        m_cpuTime -= m_entries.front().cpuTime;
        m_entries.pop_front();
    }
}

double FrameRate::FramesPerSecond() const
{
    return m_duration == 0
               ? 0
               : static_cast<double>(m_entries.size()) * kSecond / static_cast<double>(m_duration);
}

double FrameRate::CpuTimePerFrame() const
{
    return m_entries.empty() ? 0 : static_cast<double>(m_cpuTime) / static_cast<double>(m_entries.size());
}
}  // namespace perf
