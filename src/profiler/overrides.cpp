// The overrides around a draw.
#include "profiler/profiler_context.h"
#include "profiler/profiler_mutex.h"

void CProfiler::PreDrawCall() {}

void CProfiler::PostDrawCall() {}
