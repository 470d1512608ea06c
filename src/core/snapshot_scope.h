// The time in which a snapshot is being written.
#pragma once
#include "core/config.h"
#include "support/relaxed.h"

// While this lives, wrapper calls are a snapshot's: recorded, and kept from the host. Those of other threads
// too.
class CSnapshotScope
{
public:
    CSnapshotScope()
    {
        StoreRelaxed(STraceConfig::m_bDoNativeCall, false);
        STraceConfig::m_writingRenderState = true;
    }
    ~CSnapshotScope()
    {
        StoreRelaxed(STraceConfig::m_bDoNativeCall, true);
        STraceConfig::m_writingRenderState = false;
    }
    CSnapshotScope(CSnapshotScope const&) = delete;
    CSnapshotScope& operator=(CSnapshotScope const&) = delete;
};
