// The library's side of the link to the performance server: describe items and counters once, then publish
// counters and ask for changed items. One handle, no lock: all of it runs on the application's calling
// thread.
//
// There is no timer and no thread. Each function but nplInitialise begins by moving the link on by at most
// one block, and the application's calls are what drives it.
#pragma once
#include "profiler/data_path.h"
#include "support/export.h"
#include <cstdint>

// An item that the server may change, as its owner describes it.
struct SLibraryItem
{
    char const* pszName;
    uint32_t nameLength;
    uint32_t type;
    void* pData;
    uint32_t dataSize;
};

static_assert(sizeof(void*) != 4 || sizeof(SLibraryItem) == 20, "20 bytes on the target");

// An item as the handle keeps it.
struct SCommsItem
{
    bool bDirty;
    SCommsItem* pNextDirty;
    char* pName;  // owned, not terminated
    uint32_t nameLength;
    uint32_t type;
    char* pData;  // owned: the current value
    uint32_t dataSize;
};

struct SCommsCounter
{
    char const* pName;  // the handle owns those of its own table
    uint32_t nameLength;
};

struct SSPSCommsData
{
    char* pName;           // owned, not terminated
    uint32_t nameLength;   // 0 when the copy failed
    CDataPath* pDataPath;  // owned
    uint32_t bConnected;   // 0 until the handshake has finished
    SCommsItem* pItems;    // owned
    uint32_t itemCount;
    SCommsItem* pDirtyHead;    // the change that came last, of those not fetched yet
    SCommsCounter* pCounters;  // owned
    uint32_t counterCount;
};

// The word in front of the process ID at the beginning of each connection.
constexpr uint32_t kCommsGreeting = 14;

// Null when there is no memory for it. A server is looked for later, by every function below.
NEBTRACE_API SSPSCommsData* nplInitialise(char const* name, unsigned int length);
// Sends the notice of the end to a server that is there, and frees everything. Accepts null.
NEBTRACE_API void nplShutdown(SSPSCommsData* comms);

// Take the place of an earlier table, with copies of all names and values. 0: no memory, and the table is
// empty.
NEBTRACE_API int nplLibraryCreate(SSPSCommsData* comms, SLibraryItem const* items, unsigned int count);
NEBTRACE_API int nplCountersCreate(SSPSCommsData* comms, SCommsCounter const* counters, unsigned int count);

// As many values as there are counters. Returns non-zero when the block went out.
NEBTRACE_API int nplCountersUpdate(SSPSCommsData* comms, unsigned int const* values);
// 1: an item has been changed; its value stays the handle's, and is valid until the next call. 0: none, or no
// server.
NEBTRACE_API int nplLibraryDirtyGetFirst(SSPSCommsData* comms, unsigned int* index, unsigned int* size,
                                         char const** data);
NEBTRACE_API int nplSendMark(SSPSCommsData* comms, char const* text, unsigned int length);
NEBTRACE_API int nplSendFlush(SSPSCommsData* comms);

// The wall clock in microseconds, which wraps about every 71.6 minutes.
NEBTRACE_API unsigned int nplGetTimeUS(SSPSCommsData* comms);
// The clock needs no preparation.
NEBTRACE_API void nplTimeInitialise(SSPSCommsData& comms);
