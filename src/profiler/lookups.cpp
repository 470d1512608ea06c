// Records of contexts, and of the contexts that they share objects with.
#include "profiler/profiler_context.h"
#include "profiler/profiler_mutex.h"

CProfiler::SProgram* CProfiler::GetProgram(SContext* /*context*/, unsigned int /*name*/, SContext** /*owner*/)
{
    return nullptr;
}
