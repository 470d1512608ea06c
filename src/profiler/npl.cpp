#include "profiler/npl.h"
#include "profiler/comms_blocks.h"
#include "profiler/comms_pump.h"
#include "support/stopwatch.h"
#include <cstdlib>
#include <cstring>
#include <new>

namespace
{

// False without memory. An empty range has a copy, too.
bool Copy(void const* from, uint32_t length, char*& to)
{
    to = static_cast<char*>(std::malloc(length ? length : 1));
    if (to && from && length)
        std::memcpy(to, from, length);
    return to != nullptr;
}

void FreeItems(SSPSCommsData& comms)
{
    for (uint32_t i = 0; i < comms.itemCount; ++i)
    {
        std::free(comms.pItems[i].pName);
        std::free(comms.pItems[i].pData);
    }
    std::free(comms.pItems);
    comms.pItems = nullptr;
    comms.itemCount = 0;
    comms.pDirtyHead = nullptr;
}

void FreeCounters(SSPSCommsData& comms)
{
    for (uint32_t i = 0; i < comms.counterCount; ++i)
        std::free(const_cast<char*>(comms.pCounters[i].pName));
    std::free(comms.pCounters);
    comms.pCounters = nullptr;
    comms.counterCount = 0;
}

bool CopyItems(SSPSCommsData& comms, SLibraryItem const* items, unsigned int count)
{
    comms.pItems = static_cast<SCommsItem*>(std::calloc(count ? count : 1, sizeof(SCommsItem)));
    if (!comms.pItems)
        return false;
    comms.itemCount = count;
    for (unsigned int i = 0; i < count; ++i)
    {
        SCommsItem& item = comms.pItems[i];
        if (!Copy(items[i].pszName, items[i].nameLength, item.pName) ||
            !Copy(items[i].pData, items[i].dataSize, item.pData))
            return false;
        item.nameLength = items[i].nameLength;
        item.type = items[i].type;
        item.dataSize = items[i].dataSize;
    }
    return true;
}

bool CopyCounters(SSPSCommsData& comms, SCommsCounter const* counters, unsigned int count)
{
    comms.pCounters = static_cast<SCommsCounter*>(std::calloc(count ? count : 1, sizeof(SCommsCounter)));
    if (!comms.pCounters)
        return false;
    comms.counterCount = count;
    for (unsigned int i = 0; i < count; ++i)
    {
        char* name = nullptr;
        if (!Copy(counters[i].pName, counters[i].nameLength, name))
            return false;
        comms.pCounters[i].pName = name;
        comms.pCounters[i].nameLength = counters[i].nameLength;
    }
    return true;
}

}  // namespace

SSPSCommsData* nplInitialise(char const* name, unsigned int length)
{
    auto* const comms = new (std::nothrow) SSPSCommsData{};
    if (!comms)
        return nullptr;
    if (name && Copy(name, length, comms->pName))
        comms->nameLength = length;
    nplTimeInitialise(*comms);
    if (OpenTransport(*comms))
        return comms;
    nplShutdown(comms);
    return nullptr;
}

void nplShutdown(SSPSCommsData* comms)
{
    if (!comms)
        return;
    if (PumpComms(*comms) && DataPathSendBlockDescription(*comms->pDataPath, eRcShutdown, 0))
        comms->pDataPath->DataSendFlush();
    FreeItems(*comms);
    FreeCounters(*comms);
    std::free(comms->pName);
    delete comms->pDataPath;
    delete comms;
}

int nplLibraryCreate(SSPSCommsData* comms, SLibraryItem const* items, unsigned int count)
{
    uint32_t const connected = PumpComms(*comms);
    FreeItems(*comms);
    if (!CopyItems(*comms, items, count))
    {
        FreeItems(*comms);
        return 0;
    }
    // On purpose: a table that could not be sent is a table all the same. The server asks for it.
    if (connected)
        SendLibraryItems(*comms);
    return 1;
}

int nplCountersCreate(SSPSCommsData* comms, SCommsCounter const* counters, unsigned int count)
{
    uint32_t const connected = PumpComms(*comms);
    FreeCounters(*comms);
    if (!CopyCounters(*comms, counters, count))
    {
        FreeCounters(*comms);
        return 0;
    }
    if (connected)
        SendCounterDescription(*comms);
    return 1;
}

int nplCountersUpdate(SSPSCommsData* comms, unsigned int const* values)
{
    if (!PumpComms(*comms))
        return 0;
    // Ahead of the first write, which may wait for a slow server.
    unsigned int const now = nplGetTimeUS(comms);
    // The time and the values are the payload; there is no count, since both ends know it.
    uint64_t const size = (uint64_t{comms->counterCount} + 1) * sizeof *values;
    return DataPathSendPayloadDescription(*comms->pDataPath, eRcCounters, size) &&
           comms->pDataPath->DataSend(now) &&
           DataPathSendRaw(*comms->pDataPath, values, static_cast<unsigned int>(size - sizeof *values));
}

int nplLibraryDirtyGetFirst(SSPSCommsData* comms, unsigned int* index, unsigned int* size, char const** data)
{
    if (!PumpComms(*comms) || !comms->pDirtyHead)
        return 0;
    SCommsItem& item = *comms->pDirtyHead;
    comms->pDirtyHead = item.pNextDirty;
    item.pNextDirty = nullptr;
    item.bDirty = false;
    *index = static_cast<unsigned int>(&item - comms->pItems);
    *size = item.dataSize;
    *data = item.pData;
    return 1;
}

int nplSendMark(SSPSCommsData* comms, char const* text, unsigned int length)
{
    return PumpComms(*comms) && DataPathSendMark(*comms->pDataPath, nplGetTimeUS(comms), text, length);
}

int nplSendFlush(SSPSCommsData* comms)
{
    PumpComms(*comms);
    return comms->pDataPath ? comms->pDataPath->DataSendFlush() : 0;
}

// The time since 0, which is what a stopwatch shows that was never started.
unsigned int nplGetTimeUS(SSPSCommsData* /*comms*/) { return CStopwatch().CurrentUS(); }

void nplTimeInitialise(SSPSCommsData& /*comms*/) {}
