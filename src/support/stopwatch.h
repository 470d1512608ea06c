// The timer that wrappers put around a host call while profiling.
#pragma once
#include "support/export.h"
#include <cstdint>

// A 32-bit count of microseconds wraps about every 71.6 minutes; the unsigned differences stay right across
// a wrap as long as the interval is shorter than that.
class NEBTRACE_API CStopwatch
{
public:
    CStopwatch();
    ~CStopwatch();
    void Start();
    void Stop();
    // Stop minus start.
    uint32_t ResultUS() const;
    // Now minus start, without stopping.
    uint32_t CurrentUS() const;

private:
    uint32_t m_start;
    uint32_t m_stop;
};
