// Where applications find the performance server, and all that have.
#pragma once
#include "profiler/data_path_herd.h"
#include "tools/perf/rendezvous.h"
#include "tools/perf/session.h"
#include <list>

namespace perf
{
// Held for as long as a server runs, so that there is one at a time. Goes with the process, however it ends.
class ServerLock
{
public:
    // Throws CommandFailed when there is a server already.
    ServerLock();
    ~ServerLock();
    ServerLock(ServerLock const&) = delete;
    ServerLock& operator=(ServerLock const&) = delete;

private:
    bool Take();

    int m_file = -1;
};

// The process that is one now, by its number; 0 if there is none.
uint32_t RunningServer();

class Server
{
public:
    // Throws CommandFailed.
    Server();
    // Leaves nothing in shared memory, and every application free to look for another server.
    ~Server();
    Server(Server const&) = delete;
    Server& operator=(Server const&) = delete;

    // Takes in whoever has come, and what all of them have sent. Returns whether anything came.
    bool Turn(Listener& listener);
    std::list<Session>& Sessions() { return m_sessions; }

private:
    using Clock = std::chrono::steady_clock;

    bool RemoveLeftRendezvous();
    void TakeOver(std::set<uint32_t> tickets);
    void Listen();
    void TakeIn();
    void TakeInLate();
    void LookAtRendezvous();
    void FreeRendezvous();
    void Relocate();
    void LookForProcesses();
    void CloseRendezvous();

    ServerLock m_lock;
    CDataPathHerdSharedMem2 m_herd{nullptr};
    Rendezvous m_rendezvous;    // the herd's own
    std::set<uint32_t> m_late;  // tickets that may have been taken of one that is gone
    Clock::time_point m_lastTurn;
    Clock::time_point m_lastLook;
    Clock::duration m_held{};  // for so long the rendezvous was never seen free
    std::list<Session> m_sessions;
};
}  // namespace perf
