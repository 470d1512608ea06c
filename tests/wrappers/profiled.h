// An application that is profiled, over the fake host: a fresh profiler, whose counters a test looks at.
//
//     EXPECT_EQ((Changes{{CProfiler::eScissorCalls, 1}}), Counted([] { Es2::_glScissor(1, 2, 3, 4); }));
#pragma once
#include "profiler/profiler_context.h"
#include "tests/profiler/shared_memory.h"
#include "tests/wrappers/recorder.h"
#include <cstring>
#include <map>

// By how much each counter has grown, but for the driver's time; those that stood still are left out.
using Changes = std::map<int, uint32_t>;

class Profiled : public Recorder
{
protected:
    // As with the configuration key: nothing is recorded, and the link has been open since the start.
    Profiled()
    {
        SwitchesOff();
        CProfiler::Destroy();
        Profiler().OpenComms();
        STraceConfig::m_bProfile = true;
        STraceConfig::m_recordEnable = false;
        Fake().Forget();
    }
    ~Profiled() override
    {
        STraceConfig::m_bProfile = false;
        SwitchesOff();
        CProfiler::Destroy();
        sharedmemory::Clear();
    }

    static CProfiler& Profiler() { return *CProfiler::getInstance(); }

    template <typename Action>
    static Changes Counted(Action action)
    {
        uint32_t before[CProfiler::eCounterCount];
        std::memcpy(before, Profiler().m_aCounters, sizeof before);
        action();
        Changes changes;
        for (int i = 0; i < CProfiler::eCounterCount; ++i)
            if (i != CProfiler::eDriverTime && Profiler().m_aCounters[i] != before[i])
                changes[i] = Profiler().m_aCounters[i] - before[i];
        return changes;
    }

    // Makes a record of a context, and the context current, as far as the profiler knows.
    static CProfiler::SContext& MakeContextCurrent(uintptr_t handle = 0x77)
    {
        auto* const context = reinterpret_cast<void*>(handle);
        Profiler().m_pCurrentContext = context;
        return Profiler().m_Contexts[context];
    }

    // What the host gives for a state of one word.
    static void HostHas(GLenum pname, GLint value)
    {
        Fake().On("glGetIntegerv", [=](Call const& call) {
            if (call.Argument<GLenum>(0) == pname)
                *call.Pointer<GLint>(1) = value;
        });
    }

private:
    static void SwitchesOff()
    {
        for (int item = 0; item < CProfiler::eItemCullingMode; ++item)
            *static_cast<char*>(CProfiler::m_aLibraryItems[item].pData) = 0;
        CProfiler::m_CullingModeSelection = CProfiler::eCullAppDefined;
    }
};
