// The overrides of textures: private ones of 2x2 pixels in place of the application's, and no filtering.
#pragma once
#include "profiler/profiler_context.h"

// Both act on what is bound at that moment: filters set behind the private textures reach those.
void BindPrivateTextures(CProfiler::SContext& context);
void SetNearestFilters(CProfiler& profiler, CProfiler::SContext& context);
// The records of each slot that has a texture are the host's again.
void RestoreTextures(CProfiler::SContext& context);
void RestoreFilters(CProfiler::SContext& context);
