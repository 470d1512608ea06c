#include "profiler/profiler.h"
#include <cstdlib>

CProfiler* CProfiler::m_pInstance = nullptr;

CProfiler* CProfiler::getInstance()
{
    static bool bAtExitSet = false;
    if (!m_pInstance)
    {
        m_pInstance = new CProfiler;
        if (!bAtExitSet)
        {
            std::atexit(&CProfiler::Destroy);
            bAtExitSet = true;
        }
    }
    return m_pInstance;
}

void CProfiler::Destroy()
{
    delete m_pInstance;
    m_pInstance = nullptr;
}

// There is no link to a server in this build: nothing is counted and no call is held back.
bool CProfiler::OpenComms() { return false; }

bool CProfiler::SendCounters() { return false; }

void CProfiler::DoCall(int /*id*/, void const* const* /*args*/, bool& /*bCallHost*/) {}

void CProfiler::DidCall(int /*id*/, unsigned long /*microseconds*/) {}

void CProfiler::DidCall(int /*id*/, void const* const* /*args*/) {}

void CProfiler::TrackState(int /*id*/, void const* const* /*args*/, void* /*result*/) {}

void CProfiler::PreDrawCall() {}

void CProfiler::PostDrawCall() {}
