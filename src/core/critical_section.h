// The trace critical section for a scope. Not to be entered again inside.
#pragma once
#include "core/trace_block.h"

class CCriticalSection
{
public:
    CCriticalSection() { TraceEnterCriticalSection(); }
    ~CCriticalSection() { TraceLeaveCriticalSection(); }
    CCriticalSection(CCriticalSection const&) = delete;
    CCriticalSection& operator=(CCriticalSection const&) = delete;
};
