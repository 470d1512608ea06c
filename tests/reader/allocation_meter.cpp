#include "allocation_meter.h"
#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <new>

// The tests that measure are single-threaded.
static size_t s_held = 0;
static size_t s_peak = 0;

// A block's size stands in front of it.
static constexpr size_t kPrefix = alignof(std::max_align_t);

AllocationMeter::AllocationMeter() : m_before(s_held) { s_peak = s_held; }

size_t AllocationMeter::Peak() const { return s_peak - m_before; }

void* operator new(size_t size, std::nothrow_t const&) noexcept
{
    void* const block = size <= SIZE_MAX - kPrefix ? std::malloc(size + kPrefix) : nullptr;
    if (!block)
        return nullptr;
    *static_cast<size_t*>(block) = size;
    s_held += size;
    s_peak = std::max(s_peak, s_held);
    return static_cast<char*>(block) + kPrefix;
}

void* operator new(size_t size)
{
    void* const block = operator new(size, std::nothrow);
    if (!block)
        throw std::bad_alloc();
    return block;
}

void operator delete(void* pointer) noexcept
{
    if (!pointer)
        return;
    void* const block = static_cast<char*>(pointer) - kPrefix;
    s_held -= *static_cast<size_t*>(block);
    std::free(block);
}

void operator delete(void* pointer, size_t) noexcept { operator delete(pointer); }

void operator delete(void* pointer, std::nothrow_t const&) noexcept { operator delete(pointer); }
