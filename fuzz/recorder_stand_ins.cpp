// What the settings reach of the recorder and has no part in reading them.
#include "core/config.h"
#include "core/trace_record_manager.h"

namespace
{
CTraceFileInit g_fileInit;
}

CTraceFileInit* CTraceRecordManager::m_FileInit = &g_fileInit;

CTraceFileInit::~CTraceFileInit() = default;
void CTraceRecordManager::CreateFileStructures() {}
bool STraceConfig::UpdateRenderState() { return false; }
bool STraceConfig::GetSaveStatus() { return false; }
CProfiler* CProfiler::getInstance() { return nullptr; }
bool CProfiler::OpenComms() { return false; }
void CProfiler::DoCall(int /*id*/, void const* const* /*args*/, bool& /*bCallHost*/) {}
