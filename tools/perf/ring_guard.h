// Shared memory that its maker cuts short while it is mapped here raises SIGBUS at the next access, and so
// does a first write where the system has no room left. Neither may end this process.
#pragma once

namespace perf
{
// While one lives, this thread's accesses to such memory find a page of zeroes of their own.
class RingGuard
{
public:
    RingGuard();
    ~RingGuard();
    RingGuard(RingGuard const&) = delete;
    RingGuard& operator=(RingGuard const&) = delete;

    // Whether that was needed since this guard was made. What was read since is worth nothing.
    bool Tripped() const;

private:
    int m_before;
};
}  // namespace perf
