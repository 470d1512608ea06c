#include "profiler/data_path_herd.h"
#include <new>

namespace
{

uint32_t& WordAt(char* data, unsigned int index) { return reinterpret_cast<uint32_t*>(data)[index]; }

uint32_t Load(uint32_t const& word) { return __atomic_load_n(&word, __ATOMIC_ACQUIRE); }

void Store(uint32_t& word, uint32_t value) { __atomic_store_n(&word, value, __ATOMIC_RELEASE); }

// On purpose: the rings have the one base name, whatever name the rendezvous was given.
CDataPath* OpenServer(SToPrintf* sink, uint32_t id)
{
    auto* const path = new (std::nothrow) CDataPathSharedMem(sink);
    if (path && path->DataOpenServer(kPerfServerName, id))
        return path;
    delete path;
    return nullptr;
}

}  // namespace

CDataPathHerdSharedMem::~CDataPathHerdSharedMem() { CDataPathHerdSharedMem::shutdown(); }

bool CDataPathHerdSharedMem::initialise(char const* name)
{
    if (!name || !*name)
        return false;
    shutdown();
    return bufOpenOrCreateMem(m_mem, m_pData, true, name, sizeof m_lastSeen);
}

void CDataPathHerdSharedMem::shutdown()
{
    bufDestMem(m_mem, m_pData);
    m_pData = nullptr;
    m_lastSeen[0] = 0;
    m_lastSeen[1] = 0;
}

CDataPath* CDataPathHerdSharedMem::poll()
{
    for (unsigned int odd = 0; m_pData && odd < 2; ++odd)
    {
        uint32_t const process = Load(WordAt(m_pData, odd));
        if (process == m_lastSeen[odd])
            continue;
        m_lastSeen[odd] = process;
        if (process % 2 != odd)
            continue;
        ToPrintf(pPrintf, "\nConnection attempt from PID %u\n", process);
        return OpenServer(pPrintf, process);
    }
    return nullptr;
}

CDataPathHerdSharedMem2::~CDataPathHerdSharedMem2() { CDataPathHerdSharedMem2::shutdown(); }

bool CDataPathHerdSharedMem2::initialise(char const* name)
{
    if (!name || !*name)
        return false;
    shutdown();
    if (!OpenOrCreateBuffer(m_rendezvous, true, name, 0, "N", 0, kRendezvousSize) ||
        !bufLockMutex(m_rendezvous.mutex, true))
        return false;
    Store(WordAt(m_rendezvous.pData, 0), ++m_ticket);
    return bufUnlockMutex(m_rendezvous.mutex);
}

void CDataPathHerdSharedMem2::shutdown() { CloseBuffer(m_rendezvous); }

// Whether a client has taken the ticket; if so, leaves the next one. Without the mutex the answer is no.
bool CDataPathHerdSharedMem2::TakeTaken(uint32_t& ticket)
{
    if (!bufLockMutex(m_rendezvous.mutex, false))
        return false;
    uint32_t& word = WordAt(m_rendezvous.pData, 0);
    bool const taken = Load(word) == 0;
    if (taken)
    {
        ticket = m_ticket++;
        Store(word, m_ticket);
    }
    bufUnlockMutex(m_rendezvous.mutex);
    return taken;
}

CDataPath* CDataPathHerdSharedMem2::poll()
{
    uint32_t ticket = 0;
    if (!TakeTaken(ticket))
        return nullptr;
    ToPrintf(pPrintf, "\nConnection attempt on %u\n", ticket);
    return OpenServer(pPrintf, ticket);
}
