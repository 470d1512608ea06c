// The decision for each call, with frame control: which calls are recorded, when the state is captured, and
// when the file ends. In one file, since each call of the application goes through it.
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

void STraceConfig::GetFunctionConfig(int id, SFunctionConfig& config, void const* const* args)
{
    // The order matters: GetSaveStatus can change m_bDoNativeCall and write a whole snapshot.
    config.bUpdateRenderState = UpdateRenderState();
    config.bGetErrors = m_getErrors;
    config.bSaveCall = GetSaveStatus();
    // On purpose: a comparison, so that m_noCallHost together with a cleared m_bDoNativeCall calls the host.
    config.bCallHost = LoadRelaxed(m_bDoNativeCall) == !m_noCallHost;
    config.bSaveFrameBuffer = m_saveFrameBuffer;
    config.bRecordData = m_bRecordData;
    if (m_bProfile)
    {
        static CStopwatch stopwatch;
        config.pStopwatch = &stopwatch;
        config.pProfiler = CProfiler::getInstance();
    }
    if (config.pProfiler && config.bCallHost)
        config.pProfiler->DoCall(id, args, config.bCallHost);
    if (m_debugInfo >= 2)
    {
        if (char const* const name = TranslateID(id))
            LogMessage("Calling function %s", name);
        else
            LogMessage("Calling function with unknown ID %i", id);
    }
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
