// Counter and override engine. The wrappers talk to it through a pointer that is null unless profiling is on.
#pragma once
#include "support/export.h"

class NEBTRACE_API CProfiler
{
public:
    // The one instance, made on first use and destroyed at process exit.
    static CProfiler* getInstance();
    static void Destroy();

    // Opens the link to the performance server; returns success.
    bool OpenComms();
    // Publishes the counters, once a frame.
    bool SendCounters();

    // Before the host call; may clear `bCallHost`.
    void DoCall(int id, void const* const* args, bool& bCallHost);
    // A timed host call took this long.
    void DidCall(int id, unsigned long microseconds);
    // A host call succeeded. `result` points at the wrapper's result, or is null.
    void DidCall(int id, void const* const* args);
    void TrackState(int id, void const* const* args, void* result);
    // Around a draw's host call.
    void PreDrawCall();
    void PostDrawCall();

    static CProfiler* m_pInstance;
};
