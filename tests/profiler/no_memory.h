// A machine that has run out of memory.
#pragma once
#include <sys/resource.h>

// Leaves the process no further memory, but for what its heap has in reserve.
class NoMemory
{
public:
    NoMemory()
    {
        getrlimit(RLIMIT_AS, &m_before);
        rlimit const none{1, m_before.rlim_max};
        setrlimit(RLIMIT_AS, &none);
    }
    ~NoMemory() { setrlimit(RLIMIT_AS, &m_before); }
    NoMemory(NoMemory const&) = delete;
    NoMemory& operator=(NoMemory const&) = delete;

private:
    rlimit m_before{};
};
