#include "core/trace_block.h"
#include "core/trace_record_manager.h"
#include "platform/platform.h"
#include <cstring>
#include <pthread.h>

namespace
{

// Refuses a relock by its owner with an error instead of blocking: bBusy then tells that a thread came back
// in while it builds a record. Never destroyed, since calls can arrive after static destruction.
struct SErrorCheckMutex
{
    pthread_mutex_t mutex;
    SErrorCheckMutex()
    {
        pthread_mutexattr_t attributes;
        pthread_mutexattr_init(&attributes);
        pthread_mutexattr_settype(&attributes, PTHREAD_MUTEX_ERRORCHECK);
        pthread_mutex_init(&mutex, &attributes);
        pthread_mutexattr_destroy(&attributes);
    }
};

SErrorCheckMutex& TraceMutex()
{
    static SErrorCheckMutex mutex;
    return mutex;
}

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
    uint32_t const grown = GrownCapacity(capacity, needed);
    if (grown <= capacity)
        return;
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

// Record form: u32 payload length, u16 ID 1, u64 thread ID.
void WriteThreadChange(uint64_t threadId)
{
    uint32_t const length = sizeof threadId;
    uint16_t const id = 1;
    Write(&length, sizeof length);
    Write(&id, sizeof id);
    Write(&threadId, sizeof threadId);
}

// The value bytes with the data between them, in the order of the appends.
void WriteValuesAndData(STraceBlockImpl const& block)
{
    uint8_t const* values = block.pValues;
    uint32_t previousEnd = 0;
    for (uint32_t i = 0; i < block.dataRefCount; ++i)
    {
        STraceDataRef const& ref = block.pDataRefs[i];
        uint32_t const run = ref.position - previousEnd;
        if (run)
            Write(values, run);
        values += run;
        Write(ref.data, ref.size);
        previousEnd = ref.position + ref.size;
    }
    Write(values, block.totalSize - previousEnd);
}

}  // namespace

CTraceBlock::CTraceBlock(unsigned short id) : m_pBlock(LockThreadTraceBlock())
{
    if (!m_pBlock)
        return;
    m_pBlock->dataRefCount = 0;
    m_pBlock->valueSize = 0;
    m_pBlock->totalSize = 0;
    AppendValue(sizeof id, &id);
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
    Write(&length, sizeof length);
    WriteValuesAndData(*m_pBlock);
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
    if (!s_bKeyCreated)
        CreateThreadBlockKey();
    auto* block = static_cast<STraceBlockImpl*>(pthread_getspecific(s_threadBlockKey));
    if (!block)
    {
        block = new STraceBlockImpl{};
        block->threadId = get_id();
        pthread_setspecific(s_threadBlockKey, block);
    }
    return block;
}

STraceBlockImpl* LockThreadTraceBlock()
{
    STraceBlockImpl* const block = GetThreadTraceBlock();
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

void releaseTraceBlock(void* block) { FreeBlock(static_cast<STraceBlockImpl*>(block)); }

uint64_t get_id() { return Platform::ThreadId(); }

void TraceEnterCriticalSection() { pthread_mutex_lock(&TraceMutex().mutex); }

void TraceLeaveCriticalSection() { pthread_mutex_unlock(&TraceMutex().mutex); }

void CreateThreadBlockKey()
{
    pthread_key_create(&s_threadBlockKey, releaseTraceBlock);
    s_bKeyCreated = true;
}

void ReleaseCurrentThreadBlock()
{
    if (!s_bKeyCreated)
        return;
    FreeBlock(static_cast<STraceBlockImpl*>(pthread_getspecific(s_threadBlockKey)));
    pthread_setspecific(s_threadBlockKey, nullptr);
}
