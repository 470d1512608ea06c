// The live shadow states that the wrappers write into.
#pragma once
#include "core/trace_record_manager.h"

// A call can arrive after the library has been closed and its states deleted: it gets a spare one, which
// nobody reads.
inline CEglRenderState& LiveEglState()
{
    if (CTraceRecordManager::m_EglFileState)
        return *CTraceRecordManager::m_EglFileState;
    static auto* const spare = new CEglRenderState;
    return *spare;
}

inline CEs2ContextState& LiveEs2State()
{
    if (CTraceRecordManager::m_Es2FileState)
        return *CTraceRecordManager::m_Es2FileState;
    static auto* const spare = new CEs2ContextState;
    return *spare;
}

inline CEs1ContextState& LiveEs1State()
{
    if (CTraceRecordManager::m_Es1FileState)
        return *CTraceRecordManager::m_Es1FileState;
    static auto* const spare = new CEs1ContextState;
    return *spare;
}
