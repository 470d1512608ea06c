// A server's rendezvous, as an application comes to it: this server's own, to see whether it is stuck, or one
// that a killed server has left.
#pragma once
#include "profiler/shared_mem.h"
#include <chrono>

namespace perf
{
// An application holds the rendezvous for as long as it takes to make a few objects.
constexpr std::chrono::milliseconds kLongestHold{1000};

// An object of another process for a scope.
class Mapping
{
public:
    Mapping() = default;
    Mapping(char const* name, uint32_t size) { Open(name, size); }
    ~Mapping() { Close(); }
    Mapping(Mapping const&) = delete;
    Mapping& operator=(Mapping const&) = delete;

    bool Open(char const* name, uint32_t size);
    void Close();
    explicit operator bool() const { return m_data != nullptr; }
    template <typename Record>
    Record& As() const
    {
        return *reinterpret_cast<Record*>(m_data);
    }

private:
    CSharedMem m_mem;
    char* m_data = nullptr;
};

class Rendezvous
{
public:
    enum class Closing
    {
        Closed,  // there is no ticket here any more: whoever comes to it goes on without one
        Taken,   // an application has come first, and its rings stand
        Held     // an application, or one that died, is at it
    };

    Rendezvous() = default;
    ~Rendezvous() { Close(); }
    Rendezvous(Rendezvous const&) = delete;
    Rendezvous& operator=(Rendezvous const&) = delete;

    // Takes the names away: nobody finds it from here on. Returns whether there was one.
    static bool Unlink();

    bool Open();
    void Close();
    bool IsFree();
    // Never waits.
    Closing TakeTicketAway();
    // What lies there; 0 for a ticket that was taken.
    uint32_t Ticket() const;

private:
    Mapping m_word;
    CMutex m_mutex;
};
}  // namespace perf
