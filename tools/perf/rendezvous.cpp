#include "tools/perf/rendezvous.h"
#include "profiler/data_path_shared_mem.h"
#include <sys/mman.h>

namespace perf
{
namespace
{
SSharedName NameOf(char const* kind) { return {kPerfServerName, 0, "N", 0, kind}; }
}  // namespace

bool Mapping::Open(char const* name, uint32_t size)
{
    Close();
    if (!bufOpenOrCreateMem(m_mem, m_data, false, name, size))
        m_data = nullptr;
    return m_data != nullptr;
}

void Mapping::Close()
{
    bufDestMem(m_mem, m_data);
    m_data = nullptr;
}

bool Rendezvous::Unlink()
{
    bool const was = shm_unlink(NameOf("d").text) == 0;
    shm_unlink(NameOf("m").text);
    return was;
}

bool Rendezvous::Open()
{
    Close();
    return m_word.Open(NameOf("d").text, kRendezvousSize) &&
           bufOpenOrCreateMutex(m_mutex, false, NameOf("m").text);
}

void Rendezvous::Close()
{
    m_word.Close();
    bufDestMutex(m_mutex);
}

bool Rendezvous::IsFree() { return bufLockMutex(m_mutex, false) && bufUnlockMutex(m_mutex); }

Rendezvous::Closing Rendezvous::TakeTicketAway()
{
    if (!m_word || !m_mutex.pMutex)
        return Closing::Closed;
    if (!bufLockMutex(m_mutex, false))
        return Closing::Held;
    bool const taken = Ticket() == 0;
    __atomic_store_n(&m_word.As<uint32_t>(), 0, __ATOMIC_RELEASE);
    bufUnlockMutex(m_mutex);
    return taken ? Closing::Taken : Closing::Closed;
}

uint32_t Rendezvous::Ticket() const
{
    return m_word ? __atomic_load_n(&m_word.As<uint32_t>(), __ATOMIC_ACQUIRE) : 0;
}
}  // namespace perf
