#include "profiler/comms_pump.h"
#include "profiler/comms_blocks.h"
#include "profiler/data_path_shared_mem.h"
#include <cstdlib>
#include <new>
#include <unistd.h>

namespace
{

constexpr unsigned int kWord = 4;
constexpr unsigned int kMostThrownAway = 512;

// Waits without sleeping for bytes that the server has begun to write.
bool ReceiveAll(CDataPath& path, void* buffer, unsigned int length)
{
    char* to = static_cast<char*>(buffer);
    while (length != 0)
    {
        unsigned int count = 0;
        if (path.DataReceiveBytes(to, length, &count) == 0)
            return false;
        to += count;
        length -= count;
    }
    return true;
}

// 2: a word; 1: nothing there; 0: the link failed. The server writes a word that ends in another buffer than
// it begins in two steps, and this can fall between them: what was there is then only a part.
int ReceiveWord(CDataPath& path, uint32_t& word)
{
    auto* const bytes = reinterpret_cast<char*>(&word);
    unsigned int const before = path.BytesReceived();
    int const received = path.DataReceiveBytes(bytes, kWord, nullptr);
    unsigned int const count = path.BytesReceived() - before;
    if (received == 2 && count != 0 && count < kWord && !ReceiveAll(path, bytes + count, kWord - count))
        return 0;
    return received;
}

// On purpose: neither word has a description. The server reads them ahead of the first block.
bool Greet(SSPSCommsData& comms)
{
    CDataPath& path = *comms.pDataPath;
    return path.DataSend(kCommsGreeting) != 0 && path.DataSend(static_cast<uint32_t>(getpid())) != 0 &&
           path.DataSendFlush() != 0;
}

// False while there is no server, and when the link to a new one failed at once.
bool IsConnected(SSPSCommsData& comms)
{
    if (comms.bConnected)
        return true;
    if (!comms.pDataPath || comms.pDataPath->DataOpenClientTryAccept() != 2)
        return false;
    comms.bConnected = 1;
    return Greet(comms);
}

// On purpose: what came last is fetched first, but an item keeps the place of its first change.
void MarkDirty(SSPSCommsData& comms, SCommsItem& item)
{
    if (item.bDirty)
        return;
    item.bDirty = true;
    item.pNextDirty = comms.pDirtyHead;
    comms.pDirtyHead = &item;
}

bool ChangeItem(SSPSCommsData& comms, unsigned int info)
{
    CDataPath& path = *comms.pDataPath;
    uint32_t index = 0;
    // A block too short for its own index has no value either.
    if (info < kWord || !ReceiveAll(path, &index, kWord))
        return false;
    // On purpose: the value stays in the stream, and its bytes are taken for the blocks that follow.
    if (index >= comms.itemCount)
        return false;
    SCommsItem& item = comms.pItems[index];
    uint32_t const size = info - kWord;
    std::free(item.pData);
    item.pData = static_cast<char*>(std::calloc(size ? size : 1, 1));
    item.dataSize = item.pData ? size : 0;
    if (!item.pData || !ReceiveAll(path, item.pData, size))
        return false;
    MarkDirty(comms, item);
    return true;
}

bool Describe(SSPSCommsData& comms)
{
    return DataPathSend1uintNbytes(*comms.pDataPath, eRcLibraryName, comms.nameLength, comms.pName,
                                   comms.nameLength) &&
           SendLibraryItems(comms) && SendCounterDescription(comms) && comms.pDataPath->DataSendFlush() != 0;
}

// The server has gone: look for another one. The tables stay, for it to ask for.
bool StartAnew(SSPSCommsData& comms)
{
    delete comms.pDataPath;
    comms.bConnected = 0;
    return OpenTransport(comms);
}

bool ThrowAway(CDataPath& path, unsigned int length)
{
    char bytes[kMostThrownAway];
    while (length != 0)
    {
        unsigned int const count = length < kMostThrownAway ? length : kMostThrownAway;
        if (!ReceiveAll(path, bytes, count))
            return false;
        length -= count;
    }
    return true;
}

bool HandleBlock(SSPSCommsData& comms, uint32_t description)
{
    unsigned int const info = DataPathBlockDescriptionUnpackInfo(description);
    switch (DataPathBlockDescriptionUnpackID(description))
    {
    case eRcChangeItem:
        return ChangeItem(comms, info);
    case eRcSendDescription:
        return Describe(comms);
    case eRcShutdown:
        return StartAnew(comms);
    default:
        return ThrowAway(*comms.pDataPath, info);
    }
}

}  // namespace

bool OpenTransport(SSPSCommsData& comms)
{
    comms.pDataPath = new (std::nothrow) CDataPathSharedMem(nullptr);
    return comms.pDataPath && comms.pDataPath->DataOpenClient(kPerfServerName) != 0;
}

uint32_t PumpComms(SSPSCommsData& comms)
{
    if (!IsConnected(comms))
        return 0;
    uint32_t description = 0;
    int const received = ReceiveWord(*comms.pDataPath, description);
    if (received == 0)
        return 0;
    if (received == 2 && !HandleBlock(comms, description))
        return 0;
    return comms.bConnected;
}

bool SendLibraryItems(SSPSCommsData& comms)
{
    CDataPath& path = *comms.pDataPath;
    uint64_t size = kWord;
    for (uint32_t i = 0; i < comms.itemCount; ++i)
        size += uint64_t{3 * kWord} + comms.pItems[i].nameLength + comms.pItems[i].dataSize;
    if (!DataPathSendPayloadDescription(path, eRcLibraryItems, size) || !path.DataSend(comms.itemCount))
        return false;
    for (uint32_t i = 0; i < comms.itemCount; ++i)
    {
        SCommsItem const& item = comms.pItems[i];
        if (!DataPathSendText(path, item.pName, item.nameLength) || !path.DataSend(item.type) ||
            !DataPathSendText(path, item.pData, item.dataSize))
            return false;
    }
    return true;
}

bool SendCounterDescription(SSPSCommsData& comms)
{
    CDataPath& path = *comms.pDataPath;
    uint64_t size = 2 * kWord;
    for (uint32_t i = 0; i < comms.counterCount; ++i)
        size += uint64_t{kWord} + comms.pCounters[i].nameLength;
    if (!DataPathSendPayloadDescription(path, eRcCounterDescription, size) ||
        !path.DataSend(nplGetTimeUS(&comms)) || !path.DataSend(comms.counterCount))
        return false;
    for (uint32_t i = 0; i < comms.counterCount; ++i)
        if (!DataPathSendText(path, comms.pCounters[i].pName, comms.pCounters[i].nameLength))
            return false;
    return true;
}
