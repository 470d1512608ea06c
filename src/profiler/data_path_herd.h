// The performance server's end of the rendezvous: where applications find it, in two forms.
#pragma once
#include "profiler/data_path_shared_mem.h"
#include "support/export.h"
#include <cstdint>

// First form: an object of two words, in which a client leaves its process ID, an even one in the first and
// an odd one in the second. The rings bear the process ID.
class NEBTRACE_API CDataPathHerdSharedMem : public CDataPathHerd
{
public:
    explicit CDataPathHerdSharedMem(SToPrintf* sink) : pPrintf(sink) {}
    ~CDataPathHerdSharedMem() override;

    // Creates the object under this very name; returns success.
    bool initialise(char const* name);
    void shutdown() override;
    CDataPath* poll() override;

private:
    SToPrintf* pPrintf;
    CSharedMem m_mem;
    char* m_pData = nullptr;
    uint32_t m_lastSeen[2] = {0, 0};
};

// Second form, which the library knows: the server leaves a ticket under a mutex, and the client that takes
// it creates rings that bear its number.
class NEBTRACE_API CDataPathHerdSharedMem2 : public CDataPathHerd
{
public:
    explicit CDataPathHerdSharedMem2(SToPrintf* sink) : pPrintf(sink) {}
    ~CDataPathHerdSharedMem2() override;

    // Creates the rendezvous below this base name, and leaves the first ticket there; returns success.
    bool initialise(char const* name);
    void shutdown() override;
    CDataPath* poll() override;

    // The ticket that lies in the rendezvous, or that was taken there last and not yet looked for.
    uint32_t Ticket() const { return m_ticket; }
    // Before it is initialised: no ticket up to this one is given out, since there are rings of that number.
    void PassOver(uint32_t ticket) { m_ticket = ticket; }

private:
    bool TakeTaken(uint32_t& ticket);

    SToPrintf* pPrintf;
    SSharedBuffer m_rendezvous;
    uint32_t m_ticket = 0;
};
