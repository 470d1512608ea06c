#include "profiler/shared_mem.h"
#include "support/log.h"
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

namespace
{

// An object that its creator has not given its size yet would raise SIGBUS at the first access.
bool HoldsAsMuch(int fd, unsigned int size)
{
    struct stat status
    {
    };
    return fstat(fd, &status) == 0 && status.st_size >= static_cast<off_t>(size);
}

// A descriptor of the object with the wanted size; false with the record as far as it came.
bool OpenObject(CSharedMem& mem, bool create, unsigned int size)
{
    if (create && shm_unlink(mem.pName) == 0)
        LogRaw("Cleaned up after previous run.\n");
    mem.fd = shm_open(mem.pName, create ? O_RDWR | O_CREAT | O_EXCL : O_RDWR, S_IRUSR | S_IWUSR);
    if (mem.fd == -1)
        return false;
    mem.bCreator = create;
    mem.size = size;
    return create ? ftruncate(mem.fd, static_cast<off_t>(size)) == 0 : HoldsAsMuch(mem.fd, size);
}

bool InitShared(pthread_mutex_t* mutex)
{
    pthread_mutexattr_t attributes;
    if (pthread_mutexattr_init(&attributes) != 0)
        return false;
    // Not robust: who dies with the mutex leaves it locked, and the other end waits.
    bool const made = pthread_mutexattr_setpshared(&attributes, PTHREAD_PROCESS_SHARED) == 0 &&
                      pthread_mutex_init(mutex, &attributes) == 0;
    pthread_mutexattr_destroy(&attributes);
    return made;
}

}  // namespace

SSharedName::SSharedName(char const* base, unsigned int number, char const* part, unsigned int index,
                         char const* kind)
{
    snprintf(text, sizeof text, "%.512s%u%.512s%u%.512s", base, number, part, index % 10, kind);
}

bool bufOpenOrCreateMem(CSharedMem& mem, char*& data, bool create, char const* name, unsigned int size)
{
    data = nullptr;
    mem = CSharedMem();
    mem.pName = name ? strdup(name) : nullptr;
    if (!mem.pName || !OpenObject(mem, create, size))
        return false;
    void* const mapped = mmap(nullptr, size, PROT_READ | PROT_WRITE, MAP_SHARED, mem.fd, 0);
    if (mapped == MAP_FAILED)
        return false;
    data = static_cast<char*>(mapped);
    return true;
}

bool bufOpenOrCreateMutex(CMutex& mutex, bool create, char const* name)
{
    char* data = nullptr;
    mutex.pMutex = nullptr;
    if (!bufOpenOrCreateMem(mutex.mem, data, create, name, kMutexSize))
        return false;
    mutex.pMutex = reinterpret_cast<pthread_mutex_t*>(data);
    return !create || InitShared(mutex.pMutex);
}

bool bufLockMutex(CMutex& mutex, bool block)
{
    if (!mutex.pMutex)
        return false;
    return (block ? pthread_mutex_lock(mutex.pMutex) : pthread_mutex_trylock(mutex.pMutex)) == 0;
}

EMutexTry bufTryMutex(CMutex& mutex)
{
    int const result = mutex.pMutex ? pthread_mutex_trylock(mutex.pMutex) : EINVAL;
    if (result == 0)
        return eMutexTaken;
    return result == EBUSY ? eMutexBusy : eMutexUseless;
}

bool bufUnlockMutex(CMutex& mutex) { return mutex.pMutex && pthread_mutex_unlock(mutex.pMutex) == 0; }

void bufCloseFile(CSharedMem& mem)
{
    if (mem.fd != -1)
        close(mem.fd);
    mem.fd = -1;
}

void bufDestMem(CSharedMem& mem, char* data)
{
    if (data)
        munmap(data, mem.size);
    bufCloseFile(mem);
    if (mem.bCreator)
        shm_unlink(mem.pName);
    std::free(mem.pName);
    mem = CSharedMem();
}

void bufDestMutex(CMutex& mutex)
{
    if (mutex.pMutex && mutex.mem.bCreator)
        pthread_mutex_destroy(mutex.pMutex);
    bufDestMem(mutex.mem, reinterpret_cast<char*>(mutex.pMutex));
    mutex.pMutex = nullptr;
}

bool OpenOrCreateBuffer(SSharedBuffer& buffer, bool create, char const* base, unsigned int number,
                        char const* part, unsigned int index, unsigned int size)
{
    // Each name is made when it is asked for: without a server, every call of the application comes here, and
    // no further than to the first.
    auto const name = [&](char const* kind) { return SSharedName(base, number, part, index, kind); };
    return bufOpenOrCreateMem(buffer.mem, buffer.pData, create, name("d").text, size) &&
           bufOpenOrCreateMutex(buffer.mutex, create, name("m").text);
}

void CloseBuffer(SSharedBuffer& buffer)
{
    bufDestMem(buffer.mem, buffer.pData);
    buffer.pData = nullptr;
    bufDestMutex(buffer.mutex);
}
