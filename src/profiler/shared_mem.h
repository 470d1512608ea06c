// Objects in POSIX shared memory: plain bytes, and mutexes that two processes share.
#pragma once
#include "support/export.h"
#include <cstdint>
#include <pthread.h>

// Default members are those of an object that is not open; closing one of these does nothing.
struct CSharedMem
{
    char* pName = nullptr;  // owned
    bool bCreator = false;
    int32_t fd = -1;
    uint32_t size = 0;
};

struct CMutex
{
    CSharedMem mem;
    pthread_mutex_t* pMutex = nullptr;
};

// Bytes with the mutex beside them.
struct SSharedBuffer
{
    CSharedMem mem;
    char* pData = nullptr;
    CMutex mutex;
};

// A mutex object holds one of these and nothing else: 8 bytes on the target, more elsewhere. Both ends must
// be built for the same kind of machine.
constexpr uint32_t kMutexSize = sizeof(pthread_mutex_t);

// "<base><number><part><index modulo 10><kind>", with at most 512 characters of each text.
struct SSharedName
{
    SSharedName(char const* base, unsigned int number, char const* part, unsigned int index,
                char const* kind);

    char text[3 * 512 + 16];
};

// Return success. After a failure the record is closed like any other: it may hold a part of what was asked
// for.
NEBTRACE_API bool bufOpenOrCreateMem(CSharedMem& mem, char*& data, bool create, char const* name,
                                     unsigned int size);
NEBTRACE_API bool bufOpenOrCreateMutex(CMutex& mutex, bool create, char const* name);
// With `block` clear it never waits. False for anything but a mutex taken.
NEBTRACE_API bool bufLockMutex(CMutex& mutex, bool block);
NEBTRACE_API bool bufUnlockMutex(CMutex& mutex);
// Never waits. What is neither taken nor busy can't be had any more: its maker has destroyed it.
enum EMutexTry
{
    eMutexTaken,
    eMutexBusy,
    eMutexUseless
};
EMutexTry bufTryMutex(CMutex& mutex);
// Close the object, and unlink it if this side created it; the record is free for another one.
NEBTRACE_API void bufDestMem(CSharedMem& mem, char* data);
NEBTRACE_API void bufDestMutex(CMutex& mutex);
// The mapping stays.
void bufCloseFile(CSharedMem& mem);

// The data object and then its mutex.
bool OpenOrCreateBuffer(SSharedBuffer& buffer, bool create, char const* base, unsigned int number,
                        char const* part, unsigned int index, unsigned int size);
void CloseBuffer(SSharedBuffer& buffer);
