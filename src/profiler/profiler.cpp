#include "profiler/profiler.h"
#include "profiler/call_arguments.h"
#include "profiler/profiler_context.h"
#include "profiler/profiler_mutex.h"
#include "profiler/remove_discard.h"
#include "support/log.h"
#include "support/relaxed.h"
#include "wrappers/calls.h"
#include <cstdlib>
#include <cstring>
#include <unistd.h>

CProfiler* CProfiler::m_pInstance = nullptr;

char const* const CProfiler::m_aszCounterNames[eCounterCount] = {
    "Indexed draw calls",
    "Non-indexed draw calls",
    "Points no.",
    "Line no. (list)",
    "Line no. (loop)",
    "Line no. (strip)",
    "Total line no.",
    "Triangle no. (list)",
    "Triangle no. (strip)",
    "Triangle no. (fan)",
    "Total triangle no.",
    "Texture uploads",
    "Texture modifications",
    "Scissor calls",
    "Viewport calls",
    "Frame buffer accesses",
    "Vertex shader compiles",
    "Fragment shader compiles",
    "Program links",
    "CPU driver time (us)",
    "Framebuffer access (bytes)",
    "Texture uploads (bytes)",
    "Texture modifications (bytes)",
    "Buffer object uploads (bytes)",
    "Buffer object modifications (bytes)",
    "Uniform uploads",
    "Context binds",
};

CLastingMutex& ProfilerMutex()
{
    static CLastingMutex mutex(PTHREAD_MUTEX_RECURSIVE);
    return mutex;
}

CProfiler::CProfiler() : m_pComms(nullptr), m_swapInterval(1), m_pCurrentContext(nullptr) { ResetCounters(); }

CProfiler::~CProfiler() { CloseComms(); }

CProfiler* CProfiler::getInstance()
{
    if (CProfiler* const instance = LoadRelaxed(m_pInstance))
        return instance;
    CLastingLock const lock(ProfilerMutex());
    static bool bAtExitSet = false;
    if (!m_pInstance)
        StoreRelaxed(m_pInstance, new CProfiler);
    if (!bAtExitSet)
    {
        std::atexit(&CProfiler::Destroy);
        bAtExitSet = true;
    }
    return m_pInstance;
}

void CProfiler::Destroy()
{
    // A thread that waits for a server which has stopped reading may hold the lock for ever, and the process
    // must end all the same.
    constexpr int kTries = 1000;
    constexpr unsigned int kPauseUS = 1000;
    for (int i = 0; i < kTries; ++i)
    {
        CLastingLock const lock(ProfilerMutex(), CLastingLock::EMode::Try);
        if (lock.Entered())
        {
            delete m_pInstance;
            StoreRelaxed<CProfiler*>(m_pInstance, nullptr);
            return;
        }
        usleep(kPauseUS);
    }
}

void CProfiler::AbandonAfterFork()
{
    ProfilerMutex().Init();
    // Not freed: the shared memory behind it is the parent's. This process looks for a server of its own at
    // its next swap.
    if (m_pInstance)
        m_pInstance->m_pComms = nullptr;
}

bool CProfiler::OpenComms()
{
    CLastingLock const lock(ProfilerMutex());
    if (m_pComms)
        return true;
    static constexpr char kName[] = "NEBTrace";
    m_pComms = nplInitialise(kName, sizeof kName - 1);
    if (!m_pComms)
        return false;
    if (!nplLibraryCreate(m_pComms, m_aLibraryItems, eItemCount))
    {
        LogMessage("NEBTrace: nplLibraryCreate() failed\n");
        CloseComms();
        return false;
    }
    SCommsCounter counters[eCounterCount];
    for (int i = 0; i < eCounterCount; ++i)
        counters[i] = {m_aszCounterNames[i], static_cast<uint32_t>(std::strlen(m_aszCounterNames[i]))};
    if (!nplCountersCreate(m_pComms, counters, eCounterCount))
    {
        LogMessage("NEBTrace: nplCountersCreate() failed\n");
        CloseComms();
        return false;
    }
    ResetCounters();
    SendCounters();
    return m_pComms != nullptr;
}

void CProfiler::CloseComms()
{
    CLastingLock const lock(ProfilerMutex());
    nplShutdown(m_pComms);
    m_pComms = nullptr;
}

bool CProfiler::SendCounters()
{
    CLastingLock const lock(ProfilerMutex());
    return !HasEnded() && OpenComms() && nplCountersUpdate(m_pComms, m_aCounters) != 0;
}

void CProfiler::IncrementCounter(ECounters counter, unsigned int amount)
{
    StoreRelaxed(m_aCounters[counter], LoadRelaxed(m_aCounters[counter]) + amount);
}

void CProfiler::ResetCounters() { std::memset(m_aCounters, 0, sizeof m_aCounters); }

CProfiler::SContext* CProfiler::CurrentContext() { return m_Contexts.Find(m_pCurrentContext); }

void CProfiler::DoCall(int id, void const* const* args, bool& bCallHost)
{
    CLastingLock const lock(ProfilerMutex());
    if (HasEnded())
        return;
    TakeChanges();
    bool suppressed = false;
    switch (id)
    {
    case Es1::Calls::glDrawArrays.id:
    case Es1::Calls::glDrawElements.id:
    case Es2::Calls::glDrawArrays.id:
    case Es2::Calls::glDrawElements.id:
    case Es2::Calls::glMultiDrawElementsEXT.id:  // GLES1's, too
    case Es2::Calls::glMultiDrawArraysEXT.id:
    case Es2::Calls::glDrawArraysInstancedANGLE.id:
    case Es2::Calls::glDrawElementsInstancedANGLE.id:
        suppressed = IsOn(m_DisableDrawCalls);
        break;
    case Es1::Calls::glTexSubImage2D.id:
    case Es2::Calls::glTexSubImage2D.id:
    case Es2::Calls::glTexSubImage3DOES.id:
        suppressed = IsOn(m_DisableTextureModifications);
        break;
    case Es1::Calls::glReadPixels.id:
    case Es2::Calls::glReadPixels.id:
        suppressed = IsOn(m_DisableFBAccess);
        break;
    case Es1::Calls::glFlush.id:
    case Es1::Calls::glFinish.id:
    case Es2::Calls::glFlush.id:
    case Es2::Calls::glFinish.id:
        suppressed = IsOn(m_DisableFlushNFinish);
        break;
    case Es1::Calls::glBindTexture.id:
    case Es2::Calls::glBindTexture.id:
        GiveUpPrivateTexture(CallArgument<GLuint>(args, 2));
        break;
    default:
        break;
    }
    if (suppressed)
        bCallHost = false;
}

// On purpose: one texture a bind, in this order whichever API binds. Two libraries may give the same name.
void CProfiler::GiveUpPrivateTexture(unsigned int texture)
{
    SContext* const context = CurrentContext();
    if (!context || texture == 0)
        return;
    if (context->tex2x2Es1 == texture)
    {
        Es1Host()->glDeleteTextures(1, &texture);
        context->tex2x2Es1 = 0;
    }
    else if (context->tex2x2Es2 == texture)
    {
        Es2Host()->glDeleteTextures(1, &texture);
        context->tex2x2Es2 = 0;
    }
    else if (context->texCube2x2Es2 == texture)
    {
        Es2Host()->glDeleteTextures(1, &texture);
        context->texCube2x2Es2 = 0;
    }
}

void CProfiler::DidCall(int /*id*/, unsigned long microseconds)
{
    CLastingLock const lock(ProfilerMutex());
    if (!HasEnded())
        IncrementCounter(eDriverTime, static_cast<unsigned int>(microseconds));
}

bool CProfiler::RemoveDiscard(CNEBTString& source) { return ::RemoveDiscard(source); }
