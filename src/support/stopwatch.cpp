#include "support/stopwatch.h"
#include <sys/time.h>

namespace
{

// The wall clock: a step of it shows up in the results as it stands.
uint32_t NowUS()
{
    timeval now{};
    gettimeofday(&now, nullptr);
    return static_cast<uint32_t>(now.tv_sec) * 1000000u + static_cast<uint32_t>(now.tv_usec);
}

}  // namespace

CStopwatch::CStopwatch() : m_start(0), m_stop(0) {}
CStopwatch::~CStopwatch() {}
void CStopwatch::Start() { m_start = NowUS(); }
void CStopwatch::Stop() { m_stop = NowUS(); }
uint32_t CStopwatch::ResultUS() const { return m_stop - m_start; }
uint32_t CStopwatch::CurrentUS() const { return NowUS() - m_start; }
