// Scoped builder of one call record.
#pragma once
#include "support/export.h"
#include <cstdint>
#include <cstring>
#include <type_traits>

// A piece of bulk data inside a record. The bytes belong to the caller and must stay valid until the block's
// destructor has run.
struct STraceDataRef
{
    uint32_t position;  // totalSize at the moment of the append
    uint32_t size;      // 0 for a null pointer
    void const* data;
};

// A thread's record buffer. Made by the thread's first record and reused: its two arrays only grow.
struct STraceBlockImpl
{
    uint64_t threadId;
    uint32_t totalSize;  // bytes of the record so far: the 2-byte ID, all values and all data
    bool bBusy;          // a CTraceBlock of this thread is live
    STraceDataRef* pDataRefs;
    uint32_t dataRefCount;
    uint32_t dataRefCapacity;
    uint8_t* pValues;  // the record's value bytes, the ID first
    uint32_t valueSize;
    uint32_t valueCapacity;
};

// Holds the trace critical section from constructor to destructor, so that a record's bytes are contiguous in
// the output. Values are copied, data is referenced; the destructor writes everything.
class NEBTRACE_API CTraceBlock
{
public:
    explicit CTraceBlock(unsigned short id);
    ~CTraceBlock();
    CTraceBlock(CTraceBlock const&) = delete;
    CTraceBlock& operator=(CTraceBlock const&) = delete;

    // Copies `size` bytes into the record.
    void AppendValue(unsigned int size, void const* data);
    // The same for a value whose size is known: what most records are made of, and without a call.
    template <typename T>
    void Append(T const& value)
    {
        static_assert(std::is_trivially_copyable_v<T>);
        if (!m_pBlock || m_pBlock->valueCapacity - m_pBlock->valueSize < sizeof value)
            return AppendValue(sizeof value, &value);
        std::memcpy(m_pBlock->pValues + m_pBlock->valueSize, &value, sizeof value);
        m_pBlock->valueSize += static_cast<uint32_t>(sizeof value);
        m_pBlock->totalSize += static_cast<uint32_t>(sizeof value);
    }
    // References `size` bytes, which go to the output in place when the block is destroyed. A null pointer
    // leaves a reference of size 0.
    void AppendData(unsigned int size, void const* data);
    // True when this thread already has a live block: this one then holds nothing and writes nothing.
    bool IsCallRecursive() const;
    // Drops the record and releases the lock.
    void Cancel();

private:
    STraceBlockImpl* m_pBlock;
};

// The calling thread's record buffer, made on first use; null if the system has no room for one.
NEBTRACE_API STraceBlockImpl* GetThreadTraceBlock();
// Enters the trace critical section. Null when the thread's buffer is in use, and the section stays entered
// then; null also where there is no buffer.
NEBTRACE_API STraceBlockImpl* LockThreadTraceBlock();
NEBTRACE_API void ReleaseThreadTraceBlock(STraceBlockImpl* block);
// Destructor of the thread key: frees an ending thread's buffer. Null means the calling thread's own.
NEBTRACE_API void releaseTraceBlock(void* block);
NEBTRACE_API uint64_t get_id();
NEBTRACE_API void TraceEnterCriticalSection();
NEBTRACE_API void TraceLeaveCriticalSection();

// Used by the load and unload hooks. The key goes with the library: a thread that ends later must not look
// for its destructor in code that is no longer there.
void CreateThreadBlockKey();
void DeleteThreadBlockKey();
// Keeps the section usable in the child of a fork.
void WatchForks();
