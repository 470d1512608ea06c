// A mutex for a library whose calls can arrive after static destruction, from any thread of the application.
#pragma once
#include <pthread.h>

// Has no destructor on purpose: what locks it may outlive every object.
class CLastingMutex
{
public:
    // `type`: PTHREAD_MUTEX_ERRORCHECK refuses a relock by its owner, PTHREAD_MUTEX_RECURSIVE counts it.
    explicit CLastingMutex(int type) : m_type(type) { Init(); }
    CLastingMutex(CLastingMutex const&) = delete;
    CLastingMutex& operator=(CLastingMutex const&) = delete;

    // Free again, whoever held it: for the child of a fork, in which the holder does not exist.
    void Init()
    {
        pthread_mutexattr_t attributes;
        pthread_mutexattr_init(&attributes);
        pthread_mutexattr_settype(&attributes, m_type);
        pthread_mutex_init(&m_mutex, &attributes);
        pthread_mutexattr_destroy(&attributes);
    }
    bool Lock() { return WaitAwake() || pthread_mutex_lock(&m_mutex) == 0; }
    bool TryLock() { return pthread_mutex_trylock(&m_mutex) == 0; }
    void Unlock() { pthread_mutex_unlock(&m_mutex); }

private:
    // What is done under the mutex is most often done sooner than a thread falls asleep and wakes. It asks
    // seldom: each time takes the mutex's memory away from its holder, who is quicker when left alone for a
    // few rounds.
    bool WaitAwake()
    {
        constexpr int kFirstPause = 32;
        constexpr int kLongestPause = 128;
        for (int pause = kFirstPause; pause <= kLongestPause; pause *= 2)
        {
            if (TryLock())
                return true;
            for (int i = 0; i < pause; ++i)
                Relax();
        }
        return false;
    }

    static void Relax()
    {
#if defined(__x86_64__) || defined(__i386__)
        __builtin_ia32_pause();
#elif defined(__arm__) || defined(__aarch64__)
        __asm__ volatile("yield");
#endif
    }

    int m_type;
    pthread_mutex_t m_mutex;
};

// Holds the mutex for a scope, in which the thread cannot be cancelled: it would leave the mutex locked.
class CLastingLock
{
public:
    enum class EMode
    {
        Wait,
        Try
    };

    explicit CLastingLock(CLastingMutex& mutex, EMode mode = EMode::Wait) : m_mutex(mutex)
    {
        pthread_setcancelstate(PTHREAD_CANCEL_DISABLE, &m_cancelState);
        m_bEntered = mode == EMode::Wait ? m_mutex.Lock() : m_mutex.TryLock();
    }
    ~CLastingLock()
    {
        if (m_bEntered)
            m_mutex.Unlock();
        pthread_setcancelstate(m_cancelState, nullptr);
    }
    CLastingLock(CLastingLock const&) = delete;
    CLastingLock& operator=(CLastingLock const&) = delete;

    bool Entered() const { return m_bEntered; }

private:
    CLastingMutex& m_mutex;
    int m_cancelState = PTHREAD_CANCEL_ENABLE;
    bool m_bEntered = false;
};
