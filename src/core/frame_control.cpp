// Frame control: which calls are recorded, when the state is captured, and when the file ends.
#include "core/config.h"
#include "core/snapshot_scope.h"
#include "core/trace_record_manager.h"
#include "support/log.h"
#include "support/relaxed.h"
#include <atomic>
#include <cstdlib>
#include <unistd.h>

namespace
{

// Logs a line about the current frame, the first time that the frame is seen at this debug level.
void LogFrameOnce(int level, char const* format)
{
    if (STraceConfig::m_debugInfo < level ||
        STraceConfig::m_ui32CurrentFrame == STraceConfig::m_ui32LastFrame)
        return;
    STraceConfig::m_ui32LastFrame = STraceConfig::m_ui32CurrentFrame;
    LogMessage(format, STraceConfig::m_ui32CurrentFrame);
}

void CaptureRenderState()
{
    if (STraceConfig::m_debugInfo >= 2)
        LogMessage("Getting Render State");
    CTraceRecordManager::saveRenderStatePhase1();
    if (!STraceConfig::m_optimizationRS)
    {
        CSnapshotScope const snapshot;
        CTraceRecordManager::saveRenderStatePhase2(false, false);
    }
    STraceConfig::m_writeRenderState = false;
    STraceConfig::m_renderStateWritten = true;
}

void CloseRecording()
{
    CSnapshotScope const snapshot;
    if (STraceConfig::m_debugInfo >= 2)
        LogMessage("Saving Render State");
    if (STraceConfig::m_optimizationRS)
        CTraceRecordManager::saveRenderStatePhase2(STraceConfig::m_renderStateWritten, true);
    else
        CTraceRecordManager::WriteFileFooter(0);
}

// The process ends once: what calls here later does so from the application's exit handlers, which are to
// come to their end, or from another thread, while it is ending.
void ExitAfterLastFrame()
{
    static std::atomic<bool> s_bEnding{false};
    if (s_bEnding.exchange(true))
        return;
    if (STraceConfig::m_debugInfo >= 1)
        LogMessage("Exit. Last frame has been reached, nebtrace.cfg file ExitOnLastFrame=True");
    CTraceRecordManager::TraceClose(false);
    std::exit(1);
}

}  // namespace

bool STraceConfig::UpdateRenderState()
{
    return m_bNetworkControl ? LoadRelaxed(m_bDoNativeCall) : m_ui32CurrentFrame < m_ui32StartFrame;
}

bool STraceConfig::GetSaveStatus()
{
    if (!m_recordEnable || m_bPreventSaving)
        return false;
    if (!LoadRelaxed(m_bDoNativeCall))
        return true;  // a snapshot's own call; also keeps frame control from re-entering itself
    return m_bNetworkControl ? NetworkControl() : OffLineControl();
}

bool STraceConfig::OffLineControl()
{
    if (m_ui32CurrentFrame < m_ui32StartFrame)
    {
        LogFrameOnce(2, "Playing... Current Frame: %d");
        m_writeRenderState = true;
        return false;
    }
    if (m_ui32CurrentFrame <= m_ui32EndFrame)
    {
        LogFrameOnce(1, "Recording... Current Frame: %d");
        if (m_writeRenderState)
            CaptureRenderState();
        // On purpose: the progress line has stored the frame already, so this is never logged.
        if (m_ui32CurrentFrame == m_ui32EndFrame)
            LogFrameOnce(1, "Recording Last Frame");
        return true;
    }
    if (!m_fileClosed)
    {
        if (m_writingRenderState)
            return true;
        CloseRecording();
        m_fileClosed = true;
    }
    if (m_exitAfterLastFrame)
        ExitAfterLastFrame();
    return false;
}

void STraceConfig::DoSwapBuffer() { StoreRelaxed(m_isNewFrame, true); }

void STraceConfig::PreventSaving() { m_bPreventSaving = true; }

void STraceConfig::Wait()
{
    constexpr useconds_t kHalfASecond = 500000;
    usleep(kHalfASecond);
}

void STraceConfig::Close()
{
    if (m_bNetworkControl && m_networkInstance)
        m_networkInstance->Close();
}
