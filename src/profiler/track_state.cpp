// The state that overrides need, kept from the calls that change it.
#include "profiler/profiler_context.h"
#include "profiler/profiler_mutex.h"

void CProfiler::TrackState(int /*id*/, void const* const* /*args*/, void* /*result*/) {}
