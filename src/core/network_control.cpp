// Network mode: a remote client decides what is recorded, and may hold the application.
#include "core/network_control.h"
#include "core/config.h"
#include "core/snapshot_scope.h"
#include "core/trace_record_manager.h"
#include "support/lasting_mutex.h"
#include "support/log.h"
#include "support/relaxed.h"

namespace
{

using SNetStatus = CNetworkServer::SNetStatus;

enum class EDecision
{
    Drop,
    Record,
    AskAgain
};

// Guards the flags of network mode, and keeps two threads from both beginning or both ending a recording. No
// thread holds it while it waits or talks to the client, but for what a recording begins and ends with. A
// thread that comes back in, from a host that calls the application out of a capture, is refused.
CLastingMutex& ControlMutex()
{
    static CLastingMutex mutex(PTHREAD_MUTEX_ERRORCHECK);
    return mutex;
}

SNetStatus AskServer()
{
    CNetworkServer::SNetControl control{};
    {
        CLastingLock const lock(ControlMutex());
        control = STraceConfig::m_netControl;
    }
    return STraceConfig::m_networkInstance->CheckStatus(control);
}

// Without a client, and not to wait for one. The next client finds a recording that was on without its
// header: the stream goes on where it broke off.
void GoOnUnrecorded()
{
    CLastingLock const lock(ControlMutex());
    STraceConfig::m_netControl.bConnected = false;
    STraceConfig::m_headerWrite = false;
    STraceConfig::m_netControl.bRunning = true;
    STraceConfig::m_writeRenderState = true;
    STraceConfig::m_renderStateWritten = false;
}

// Without a client only when the server has ended meanwhile, and none will come.
SNetStatus WaitForClient()
{
    SNetStatus status{};
    while (!status.bConnected && !STraceConfig::m_networkInstance->HasEnded())
    {
        {
            CLastingLock const lock(ControlMutex());
            STraceConfig::m_netControl.bRunning = false;
            STraceConfig::m_netControl.bWaiting = true;
            STraceConfig::m_headerWrite = true;
        }
        LogMessage("Waiting for Client...");
        STraceConfig::Wait();
        status = AskServer();
    }
    return status;
}

void SetWaiting()
{
    CLastingLock const lock(ControlMutex());
    STraceConfig::m_netControl.bWaiting = true;
}

// Whether the client has let the application go on. One thread gets the command; the others that are held see
// that it has been followed.
bool IsResumed(SNetStatus const& status)
{
    CLastingLock const lock(ControlMutex());
    if (!status.bResume && !STraceConfig::m_netControl.bRunning)
        return false;
    STraceConfig::m_netControl.bWaiting = false;
    return true;
}

// Holds the thread until the client resumes; false when the client has gone. On purpose: of the commands that
// come meanwhile, only those that come with the resume are followed.
bool WaitForResume(SNetStatus& status)
{
    do
    {
        LogMessage("Network Control: Waiting for the client (Pause)");
        SetWaiting();
        STraceConfig::Wait();
        status = AskServer();
        if (!status.bConnected)
        {
            // On purpose: bWaiting stays set, and the next client is told so until it pauses and resumes.
            SetWaiting();
            AskServer();
            return false;
        }
    } while (!IsResumed(status));
    return true;
}

bool ClientHoldsTheApplication()
{
    CLastingLock const lock(ControlMutex());
    STraceConfig::m_netControl.bConnected = true;
    return !STraceConfig::m_netControl.bRunning;
}

void EndRecording()
{
    {
        CSnapshotScope const snapshot;
        if (STraceConfig::m_debugInfo >= 2)
            LogMessage("Saving Render State");
        CTraceRecordManager::saveRenderStatePhase2(STraceConfig::m_renderStateWritten, true);
        CTraceRecordManager::TraceClose(false);
        STraceConfig::m_networkInstance->SendDataFlush(true);
        STraceConfig::m_renderStateWritten = false;
    }
    STraceConfig::m_netControl.bRecording = false;
}

void FollowCommands(SNetStatus const& status)
{
    if (status.bPause)
        STraceConfig::m_netControl.bRunning = false;
    if (status.bResume)  // second: it wins over a pause
        STraceConfig::m_netControl.bRunning = true;
    if (status.bStartRecording)
    {
        STraceConfig::m_netControl.bRecording = true;
        StoreRelaxed(STraceConfig::m_isNewFrame, false);
    }
    if (status.bStopRecording && STraceConfig::m_netControl.bRecording)
        EndRecording();
}

void BeginRecording()
{
    STraceConfig::m_headerWrite = false;
    CTraceRecordManager::WriteFileHeader();
    if (STraceConfig::m_debugInfo >= 1)
        LogMessage("\n StarRecording <Action: WriteFileValidity> Frame(%d)\n",
                   static_cast<int>(LoadRelaxed(STraceConfig::m_ui32CurrentFrame)));
    if (!STraceConfig::m_writeRenderState)
        return;
    STraceConfig::m_writeRenderState = false;
    if (STraceConfig::m_debugInfo >= 2)
        LogMessage("\n Action: Getting RenderState\n");
    CTraceRecordManager::saveRenderStatePhase1();
    if (STraceConfig::m_debugInfo >= 2)
        LogMessage("\n Action: Getting RenderState..Done\n");
    STraceConfig::m_renderStateWritten = true;
}

// Whether to record, with the commands followed. A recording has its header and its capture at once, in
// mid-frame, and its calls from the next frame on.
bool IsRecorded()
{
    CNetworkServer::SNetControl const& control = STraceConfig::m_netControl;
    if (!control.bRecording)
    {
        if (!control.bRunning)
            return STraceConfig::m_writingRenderState;
        STraceConfig::m_headerWrite = true;
        STraceConfig::m_writeRenderState = true;
        return false;
    }
    if (!STraceConfig::m_headerWrite)
        return LoadRelaxed(STraceConfig::m_isNewFrame);
    BeginRecording();
    return false;
}

bool IsReentered()
{
    CLastingLock const lock(ControlMutex());
    return !lock.Entered();
}

EDecision Decide()
{
    if (IsReentered() || STraceConfig::m_networkInstance->HasEnded())
        return EDecision::Drop;
    SNetStatus status = AskServer();
    if (!status.bConnected && !STraceConfig::m_bNetworkWait)
    {
        GoOnUnrecorded();
        return EDecision::Drop;
    }
    if (!status.bConnected)
        status = WaitForClient();
    if (!status.bConnected)
        return EDecision::Drop;
    if (ClientHoldsTheApplication() && !WaitForResume(status))
        return EDecision::AskAgain;
    CLastingLock const lock(ControlMutex());
    FollowCommands(status);
    return IsRecorded() ? EDecision::Record : EDecision::Drop;
}

}  // namespace

bool STraceConfig::NetworkControl()
{
    EDecision decision = Decide();
    // The decision is made afresh once a client has gone. A loop and not a call of itself: clients that come
    // and go all day must not use up the application's stack.
    while (decision == EDecision::AskAgain)
    {
        if (!m_recordEnable || m_bPreventSaving || !LoadRelaxed(m_bDoNativeCall))
            return GetSaveStatus();
        decision = Decide();
    }
    return decision == EDecision::Record;
}

void LeaveNetworkAfterFork()
{
    ControlMutex().Init();
    if (STraceConfig::m_networkInstance && STraceConfig::m_networkInstance->AbandonAfterFork())
        STraceConfig::PreventSaving();
}
