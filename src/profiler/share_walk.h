// The walk from a context through those that it shares objects with.
#pragma once
#include "profiler/profiler_context.h"

// Ends early when `visit` returns true. A context that was made before profiling began is not in the walk.
// Handles are used again, so that the chain may close into a ring: the walk is no longer than all contexts.
template <typename Visit>
void VisitShared(CProfiler& profiler, CProfiler::SContext* context, Visit visit)
{
    for (int left = profiler.m_Contexts.Count() + 1; context && left > 0; --left)
    {
        if (visit(*context))
            return;
        context = context->shareContext ? profiler.m_Contexts.Find(context->shareContext) : nullptr;
    }
}
