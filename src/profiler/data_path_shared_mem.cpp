#include "profiler/data_path_shared_mem.h"
#include <cstdlib>
#include <cstring>
#include <sys/stat.h>

namespace
{

constexpr char kHello[] = {'H', 'E', 'L', 'L', 'O'};

SRingPositions& PositionsOf(SSharedBuffer const& buffer)
{
    return *reinterpret_cast<SRingPositions*>(buffer.pData);
}

char* DataOf(SSharedBuffer const& buffer) { return buffer.pData + sizeof(SRingPositions); }

SSharedBuffer& CurrentOf(SSharedRing& ring) { return ring.buffers[ring.index]; }

uint32_t Behind(uint32_t index, uint32_t steps) { return (index + steps) % kRingBuffers; }

// The bytes that lie in front of a position must be whole before the other process can see the position.
void Publish(uint32_t& position, uint32_t value) { __atomic_store_n(&position, value, __ATOMIC_RELEASE); }

uint32_t Published(uint32_t const& position) { return __atomic_load_n(&position, __ATOMIC_ACQUIRE); }

uint32_t Smaller(uint32_t a, uint32_t b) { return a < b ? a : b; }

// The two rings in the order in which both ends open and close them: U0, D0, U1, D1, U2, D2.
template <typename Action>
bool ForEachBuffer(SSharedRing& u, SSharedRing& d, Action action)
{
    for (unsigned int i = 0; i < kRingBuffers; ++i)
        if (!action(u.buffers[i], "U", i) || !action(d.buffers[i], "D", i))
            return false;
    return true;
}

}  // namespace

CDataPathSharedMem::CDataPathSharedMem(SToPrintf* sink) : CDataPath(sink), pSendRing(&U), pReceiveRing(&D) {}

CDataPathSharedMem::~CDataPathSharedMem()
{
    CloseAll();
    std::free(pszName);
}

// The other end may wait in one of the two mutexes: it goes on, and finds out by itself.
void CDataPathSharedMem::CloseAll()
{
    bufUnlockMutex(CurrentOf(*pSendRing).mutex);
    bufUnlockMutex(pReceiveRing->buffers[Behind(pReceiveRing->index, 2)].mutex);
    ForEachBuffer(U, D, [](SSharedBuffer& buffer, char const* /*part*/, unsigned int /*index*/) {
        CloseBuffer(buffer);
        return true;
    });
}

void CDataPathSharedMem::KeepName(char const* name)
{
    std::free(pszName);
    pszName = name ? strdup(name) : nullptr;
}

bool CDataPathSharedMem::ConnectionError()
{
    ToPrintf(pPrintf, "Connection error\n");
    return false;
}

bool CDataPathSharedMem::bufOpenOrCreateAll(bool create)
{
    // An attempt that failed half way has left its objects open, under the names of another ticket.
    CloseAll();
    auto const open = [&](SSharedBuffer& buffer, char const* part, unsigned int index) {
        return OpenOrCreateBuffer(buffer, create, pszName, id, part, index, kRingBufferSize);
    };
    if (!pszName || !ForEachBuffer(U, D, open))
    {
        ToPrintf(pPrintf, "Mem %s error.\n", create ? "create" : "open");
        return false;
    }
    U.index = 0;
    D.index = 0;
    return bufLockMutex(pSendRing->buffers[0].mutex, false) &&
           bufLockMutex(pReceiveRing->buffers[2].mutex, false);
}

// True with the mutex of the next buffer, which the receiver has emptied.
bool CDataPathSharedMem::EnterNextSendBuffer()
{
    if (!bufUnlockMutex(CurrentOf(*pSendRing).mutex))
        return false;
    pSendRing->index = Behind(pSendRing->index, 1);
    if (!bufLockMutex(CurrentOf(*pSendRing).mutex, !Outlives()))
        return ConnectionError();
    SRingPositions const& positions = PositionsOf(CurrentOf(*pSendRing));
    if (Published(positions.read) != 0 || Published(positions.write) != 0)
        return ConnectionError();
    return true;
}

int CDataPathSharedMem::DataSendBytes(char const* data, unsigned int length)
{
    if (!CurrentOf(*pSendRing).pData)
        return 0;
    while (length != 0)
    {
        if (Published(PositionsOf(CurrentOf(*pSendRing)).write) == kRingRoom && !EnterNextSendBuffer())
            return 0;
        SSharedBuffer const& buffer = CurrentOf(*pSendRing);
        uint32_t& write = PositionsOf(buffer).write;
        uint32_t const position = Published(write);
        // The other process can write anywhere in the buffer; it must not lead this one out of it.
        if (position > kRingRoom)
            return ConnectionError();
        uint32_t const count = Smaller(kRingRoom - position, length);
        std::memcpy(DataOf(buffer) + position, data, count);
        Publish(write, position + count);
        bytesSent += count;
        data += count;
        length -= count;
    }
    return 1;
}

// On purpose: nothing is held back, so that there is nothing to flush.
int CDataPathSharedMem::DataSendFlush() { return 1; }

// Useless for a mutex that cannot be locked.
EMutexTry CDataPathSharedMem::AwaitSender(CMutex& mutex) const
{
    if (Outlives())
    {
        // A sender that has destroyed it has left the buffer, too.
        EMutexTry const tried = bufTryMutex(mutex);
        return tried == eMutexUseless ? eMutexTaken : tried;
    }
    // On purpose: this waits, with nothing to read, for as long as the sender stays in the buffer.
    return bufLockMutex(mutex, true) ? eMutexTaken : eMutexUseless;
}

// Waits until the sender has left the buffer, hands it the one before, and goes on to the one behind. Busy:
// it may not wait.
EMutexTry CDataPathSharedMem::LeaveUsedUpBuffer()
{
    SSharedRing& ring = *pReceiveRing;
    EMutexTry const awaited = AwaitSender(CurrentOf(ring).mutex);
    if (awaited != eMutexTaken)
        return awaited;
    SSharedBuffer& previous = ring.buffers[Behind(ring.index, 2)];
    Publish(PositionsOf(previous).read, 0);
    Publish(PositionsOf(previous).write, 0);
    if (!bufUnlockMutex(previous.mutex) && !Outlives())
        return eMutexUseless;
    ring.index = Behind(ring.index, 1);
    return eMutexTaken;
}

// On purpose: with a null count a part of what was asked for is a success like the whole.
int CDataPathSharedMem::DataReceiveBytes(char* buffer, unsigned int length, unsigned int* pCount)
{
    uint32_t total = 0;
    if (pCount)
        *pCount = 0;
    if (!CurrentOf(*pReceiveRing).pData)
        return 0;
    do
    {
        bool const usedUp = Published(PositionsOf(CurrentOf(*pReceiveRing)).read) == kRingRoom;
        EMutexTry const left = usedUp ? LeaveUsedUpBuffer() : eMutexTaken;
        if (left == eMutexUseless)
            return 0;
        if (left == eMutexBusy)
            break;
        SSharedBuffer const& source = CurrentOf(*pReceiveRing);
        SRingPositions& positions = PositionsOf(source);
        uint32_t const write = Published(positions.write);
        uint32_t const read = Published(positions.read);
        if (write > kRingRoom || read > write)
            return ConnectionError();
        uint32_t const count = Smaller(write - read, length - total);
        if (count == 0)
            break;
        std::memcpy(buffer + total, DataOf(source) + read, count);
        Publish(positions.read, read + count);
        bytesReceived += count;
        total += count;
    } while (!pCount && total < length);
    if (pCount)
        *pCount = total;
    return total != 0 ? 2 : 1;
}

void CDataPathSharedMem::OutliveOther()
{
    state = kOutlives;
    ForEachBuffer(U, D, [this](SSharedBuffer& buffer, char const* /*part*/, unsigned int /*index*/) {
        if (&buffer != &U.buffers[0])
            bufCloseFile(buffer.mem);
        bufCloseFile(buffer.mutex.mem);
        return true;
    });
}

bool CDataPathSharedMem::IsUnlinked() const
{
    struct stat status
    {
    };
    return fstat(U.buffers[0].mem.fd, &status) == 0 && status.st_nlink == 0;
}

// The mutex asked for is locked by no third party, and by the other end only behind what this end has yet to
// do: an answer stays true until this end acts on it.
bool CDataPathSharedMem::CanSendAtOnce(unsigned int length)
{
    SSharedBuffer const& buffer = CurrentOf(*pSendRing);
    if (!buffer.pData || Published(PositionsOf(buffer).write) <= kRingRoom - Smaller(length, kRingRoom))
        return true;
    CMutex& next = pSendRing->buffers[Behind(pSendRing->index, 1)].mutex;
    return bufLockMutex(next, false) && bufUnlockMutex(next);
}

int CDataPathSharedMem::DataOpenServer(char const* name, unsigned int ticket)
{
    pSendRing = &D;
    pReceiveRing = &U;
    KeepName(name);
    id = ticket;
    return bufOpenOrCreateAll(false);
}

int CDataPathSharedMem::DataOpenClient(char const* name)
{
    KeepName(name);
    pSendRing = &U;
    pReceiveRing = &D;
    state = 0;
    return 1;
}

bool CDataPathSharedMem::SendHello() { return DataSendBytes(kHello, sizeof kHello) == 1; }

int CDataPathSharedMem::DataOpenServerTryAccept()
{
    char answer[sizeof kHello] = {};
    if (DataReceiveBytes(answer, sizeof answer, nullptr) != 2)
        return 0;
    if (std::memcmp(answer, kHello, sizeof kHello) != 0)
        return ConnectionError();
    return SendHello();
}

int CDataPathSharedMem::DataOpenClientTryAccept()
{
    if (state == 0)
        return LookForTicket();
    return state == 1 ? AwaitHello() : 0;
}

// Asks without ever waiting, since it runs inside every call of the application.
int CDataPathSharedMem::LookForTicket()
{
    SSharedBuffer rendezvous;
    bool const taken = pszName &&
                       OpenOrCreateBuffer(rendezvous, false, pszName, 0, "N", 0, kRendezvousSize) &&
                       bufLockMutex(rendezvous.mutex, false) && TakeTicket(rendezvous);
    CloseBuffer(rendezvous);
    if (!taken)
        return 0;
    state = 1;
    return 1;
}

// With the mutex of the rendezvous, which it gives back: the server looks at the word only under it, and so
// finds the rings whole.
bool CDataPathSharedMem::TakeTicket(SSharedBuffer& rendezvous)
{
    auto& ticket = *reinterpret_cast<uint32_t*>(rendezvous.pData);
    id = Published(ticket);
    Publish(ticket, 0);
    if (id != 0 && !(bufOpenOrCreateAll(true) && SendHello()))
        id = 0;
    bufUnlockMutex(rendezvous.mutex);
    return id != 0;
}

int CDataPathSharedMem::AwaitHello()
{
    char answer[sizeof kHello] = {};
    int const received = DataReceiveBytes(answer, sizeof answer, nullptr);
    if (received != 2)
        return received;
    if (std::memcmp(answer, kHello, sizeof kHello) != 0)
        return ConnectionError();
    return 2;
}
