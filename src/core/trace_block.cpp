#include "core/trace_block.h"
#include "core/config.h"
#include "core/network_control.h"
#include "core/trace_record_manager.h"
#include "platform/platform.h"
#include "support/lasting_mutex.h"
#include "support/relaxed.h"
#include <cstring>
#include <new>
#include <pthread.h>

namespace
{

// Refuses a relock by its owner with an error instead of blocking: bBusy then tells that a thread came back
// in while it builds a record.
CLastingMutex& TraceMutex()
{
    static CLastingMutex mutex(PTHREAD_MUTEX_ERRORCHECK);
    return mutex;
}

// Cancellation is off inside the section: a thread cancelled in the middle of a write would leave it entered.
// Guarded by the section.
int s_cancelState = 0;

pthread_key_t s_threadBlockKey;
bool s_bKeyCreated = false;

// The capacity, doubled until it holds `needed`.
uint32_t GrownCapacity(uint32_t capacity, uint32_t needed)
{
    uint64_t grown = capacity ? capacity : 1;
    while (grown < needed)
        grown *= 2;
    return grown > UINT32_MAX ? needed : static_cast<uint32_t>(grown);
}

template <typename T>
void Reserve(T*& array, uint32_t& capacity, uint32_t used, uint32_t needed)
{
    if (needed <= capacity)
        return;
    uint32_t const grown = GrownCapacity(capacity, needed);
    T* const larger = new T[grown];
    if (used)
        std::memcpy(larger, array, used * sizeof(T));
    delete[] array;
    array = larger;
    capacity = grown;
}

void FreeBlock(STraceBlockImpl* block)
{
    if (!block)
        return;
    delete[] block->pValues;
    delete[] block->pDataRefs;
    delete block;
}

void Write(void const* data, uint32_t size) { CTraceRecordManager::WriteData(data, size, 1); }

// Writes a record where it stays: `fill` stores the payload. False, with nothing done, where it must be
// written in pieces.
template <typename Fill>
bool WriteInPlace(uint32_t length, uint16_t id, Fill fill)
{
    unsigned char head[sizeof length + sizeof id];
    unsigned char* const record = CTraceRecordManager::ClaimRecord(uint64_t{length} + sizeof head);
    if (!record)
        return false;
    std::memcpy(head, &length, sizeof length);
    std::memcpy(head + sizeof length, &id, sizeof id);
    fill(record + sizeof head);
    CTraceRecordManager::CommitRecord(head, length + static_cast<uint32_t>(sizeof head));
    return true;
}

// Record form: u32 payload length, u16 ID 1, u64 thread ID.
void WriteThreadChange(uint64_t threadId)
{
    uint32_t const length = sizeof threadId;
    uint16_t const id = 1;
    if (WriteInPlace(length, id, [&](unsigned char* to) { std::memcpy(to, &threadId, sizeof threadId); }))
        return;
    CTraceRecordManager::BeginRecord();
    Write(&length, sizeof length);
    Write(&id, sizeof id);
    Write(&threadId, sizeof threadId);
    CTraceRecordManager::EndRecord();
}

// The value bytes from `begin` on with the data between them, in the order of the appends.
template <typename Take>
void ForEachPiece(STraceBlockImpl const& block, uint32_t begin, Take take)
{
    uint8_t const* values = block.pValues + begin;
    uint32_t previousEnd = begin;
    for (uint32_t i = 0; i < block.dataRefCount; ++i)
    {
        STraceDataRef const& ref = block.pDataRefs[i];
        uint32_t const run = ref.position - previousEnd;
        if (run)
            take(values, run);
        values += run;
        take(ref.data, ref.size);
        previousEnd = ref.position + ref.size;
    }
    take(values, block.totalSize - previousEnd);
}

bool WriteCallInPlace(STraceBlockImpl const& block, uint32_t length)
{
    uint16_t id = 0;
    std::memcpy(&id, block.pValues, sizeof id);
    return WriteInPlace(length, id, [&](unsigned char* to) {
        ForEachPiece(block, sizeof id, [&](void const* data, uint32_t size) {
            if (size != 0)
                std::memcpy(to, data, size);
            to += size;
        });
    });
}

}  // namespace

bool CTraceBlock::IsCallRecursive() const { return m_pBlock == nullptr; }

CTraceBlock::CTraceBlock(unsigned short id) : m_pBlock(LockThreadTraceBlock())
{
    if (!m_pBlock)
        return;
    m_pBlock->dataRefCount = 0;
    m_pBlock->valueSize = 0;
    m_pBlock->totalSize = 0;
    Append(id);
}

CTraceBlock::~CTraceBlock()
{
    if (!m_pBlock)
        return;
    if (m_pBlock->threadId != CTraceRecordManager::m_u64LastThreadId)
    {
        CTraceRecordManager::m_u64LastThreadId = m_pBlock->threadId;
        WriteThreadChange(m_pBlock->threadId);
    }
    uint32_t const length = m_pBlock->totalSize - 2;  // the ID is not counted
    if (!WriteCallInPlace(*m_pBlock, length))
    {
        CTraceRecordManager::BeginRecord();
        Write(&length, sizeof length);
        ForEachPiece(*m_pBlock, 0, Write);
        CTraceRecordManager::EndRecord();
    }
    ReleaseThreadTraceBlock(m_pBlock);
}

void CTraceBlock::AppendValue(unsigned int size, void const* data)
{
    if (!m_pBlock || size == 0)
        return;
    STraceBlockImpl& block = *m_pBlock;
    Reserve(block.pValues, block.valueCapacity, block.valueSize, block.valueSize + size);
    std::memcpy(block.pValues + block.valueSize, data, size);
    block.valueSize += size;
    block.totalSize += size;
}

void CTraceBlock::AppendData(unsigned int size, void const* data)
{
    if (!m_pBlock || size == 0)
        return;
    STraceBlockImpl& block = *m_pBlock;
    Reserve(block.pDataRefs, block.dataRefCapacity, block.dataRefCount, block.dataRefCount + 1);
    STraceDataRef const ref{block.totalSize, data ? size : 0, data};
    block.pDataRefs[block.dataRefCount++] = ref;
    block.totalSize += ref.size;
}

void CTraceBlock::Cancel()
{
    ReleaseThreadTraceBlock(m_pBlock);
    m_pBlock = nullptr;
}

STraceBlockImpl* GetThreadTraceBlock()
{
    CreateThreadBlockKey();
    if (!s_bKeyCreated)
        return nullptr;
    auto* block = static_cast<STraceBlockImpl*>(pthread_getspecific(s_threadBlockKey));
    if (!block)
    {
        block = new (std::nothrow) STraceBlockImpl{};
        if (!block)
            return nullptr;
        block->threadId = get_id();
        // The key goes while the process ends, and other threads may be on their way here.
        if (pthread_setspecific(s_threadBlockKey, block) != 0)
        {
            delete block;
            return nullptr;
        }
    }
    return block;
}

STraceBlockImpl* LockThreadTraceBlock()
{
    STraceBlockImpl* const block = GetThreadTraceBlock();
    if (!block)
        return nullptr;
    TraceEnterCriticalSection();
    if (block->bBusy)
        return nullptr;
    block->bBusy = true;
    return block;
}

void ReleaseThreadTraceBlock(STraceBlockImpl* block)
{
    if (block)
        block->bBusy = false;
    TraceLeaveCriticalSection();
}

void releaseTraceBlock(void* block)
{
    if (!block && s_bKeyCreated)
    {
        block = pthread_getspecific(s_threadBlockKey);
        pthread_setspecific(s_threadBlockKey, nullptr);
    }
    FreeBlock(static_cast<STraceBlockImpl*>(block));
}

uint64_t get_id() { return Platform::ThreadId(); }

void TraceEnterCriticalSection()
{
    int previous = PTHREAD_CANCEL_ENABLE;
    pthread_setcancelstate(PTHREAD_CANCEL_DISABLE, &previous);
    if (TraceMutex().Lock())
        s_cancelState = previous;
}

void TraceLeaveCriticalSection()
{
    int const previous = s_cancelState;
    TraceMutex().Unlock();
    pthread_setcancelstate(previous, nullptr);
}

void CreateThreadBlockKey()
{
    static pthread_once_t once = PTHREAD_ONCE_INIT;
    pthread_once(&once,
                 [] { s_bKeyCreated = pthread_key_create(&s_threadBlockKey, releaseTraceBlock) == 0; });
}

void DeleteThreadBlockKey()
{
    releaseTraceBlock(nullptr);
    if (s_bKeyCreated)
        pthread_key_delete(s_threadBlockKey);
    s_bKeyCreated = false;
}

// The child has one thread, under a new ID, and a section that nobody will leave. It goes on recording only
// if there is nothing in the file yet: a program that forks itself into the background, say. Otherwise the
// file is the parent's, and two writers would ruin it.
static void AfterForkInChild()
{
    TraceMutex().Init();
    pthread_setcancelstate(s_cancelState, nullptr);
    if (CTraceRecordManager::m_u64LastThreadId != 0)
        STraceConfig::PreventSaving();
    // Another thread may have been writing a snapshot. It is not here to end it, and calls would never reach
    // the host.
    StoreRelaxed(STraceConfig::m_bDoNativeCall, true);
    STraceConfig::m_writingRenderState = false;
    if (STraceBlockImpl* const block = GetThreadTraceBlock())
        block->threadId = get_id();
    LeaveNetworkAfterFork();
    CProfiler::AbandonAfterFork();
}

static void BeforeFork()
{
    TraceEnterCriticalSection();
    CTraceRecordManager::LeaveFileWindow();
}

void WatchForks() { pthread_atfork(BeforeFork, TraceLeaveCriticalSection, AfterForkInChild); }
