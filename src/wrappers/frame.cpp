#include "wrappers/frame.h"

void CFrameCore::AppendHead(CTraceBlock& block) const
{
    AppendU32(block, m_api.error);
    if (IsExtension() && m_api.extensionByte)
        block.AppendValue(1, &m_api.extensionByte);
}

void CFrameCore::ReportTime()
{
    m_config.pStopwatch->Stop();
    if (m_config.pProfiler)
        m_config.pProfiler->DidCall(m_call.id, static_cast<unsigned long>(m_config.pStopwatch->ResultUS()));
}

void CFrameCore::ReportCall(void const* const* args, void* result)
{
    if (Succeeded())
    {
        m_config.pProfiler->DidCall(m_call.id, args);
        m_config.pProfiler->TrackState(m_call.id, args, result);
    }
    if (m_call.kind & kDraw)
        m_config.pProfiler->PostDrawCall();
}
