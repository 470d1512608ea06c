#include "tools/perf/server.h"
#include "tools/commands.h"
#include "tools/perf/ring_guard.h"
#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <fstream>
#include <iterator>
#include <sys/file.h>
#include <sys/mman.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <thread>
#include <unistd.h>

namespace perf
{
namespace
{
constexpr char kLockName[] = "/NEBPerfServerVsAppLib.server";
constexpr uint32_t kHelloSize = 5;
constexpr std::chrono::milliseconds kWhileHeld{1};
// A longer turn, or a stop, says nothing about the applications.
constexpr std::chrono::milliseconds kLongestTurn{100};
constexpr std::chrono::milliseconds kLookPeriod{100};
// No server comes so far by itself.
constexpr uint32_t kLastTicket = 0x7FFFFFFF;

// Whether an application has said HELLO in these rings, and no server has touched them.
bool IsUnanswered(uint32_t ticket)
{
    RingGuard const guard;
    Mapping const up(SSharedName(kPerfServerName, ticket, "U", 0, "d").text, kRingBufferSize);
    Mapping const down(SSharedName(kPerfServerName, ticket, "D", 0, "d").text, kRingBufferSize);
    if (!up || !down)
        return false;
    auto const& sent = up.As<SRingPositions>();
    auto const& answered = down.As<SRingPositions>();
    return sent.read == 0 && sent.write == kHelloSize && answered.read == 0 && answered.write == 0;
}

bool IsSameFile(int file, int other)
{
    struct stat a;
    struct stat b;
    return fstat(file, &a) == 0 && fstat(other, &b) == 0 && a.st_dev == b.st_dev && a.st_ino == b.st_ino;
}

// An application takes one descriptor, and twelve for a moment.
void AllowManyFiles()
{
    rlimit limit{};
    if (getrlimit(RLIMIT_NOFILE, &limit) != 0)
        return;
    limit.rlim_cur = limit.rlim_max;
    setrlimit(RLIMIT_NOFILE, &limit);
}
}  // namespace

// Asks the system's list of locks, not the lock: trying that would hold off a server that begins just now.
uint32_t RunningServer()
{
    struct stat object;
    if (stat((std::string("/dev/shm") + kLockName).c_str(), &object) != 0)
        return 0;
    std::ifstream locks("/proc/locks");
    for (std::string line; std::getline(locks, line);)
    {
        unsigned process = 0;
        unsigned deviceMajor = 0;
        unsigned deviceMinor = 0;
        unsigned long number = 0;
        // "<n>: FLOCK ADVISORY WRITE <process> <device>:<number> 0 EOF"
        if (std::sscanf(line.c_str(), "%*s FLOCK %*s WRITE %u %x:%x:%lu", &process, &deviceMajor,
                        &deviceMinor, &number) == 4 &&
            makedev(deviceMajor, deviceMinor) == object.st_dev && number == object.st_ino)
            return process;
    }
    return 0;
}

ServerLock::ServerLock()
{
    while (!Take())
    {
    }
}

// False for one that a server removed at its end, between the two calls here: the name stands for another
// object then, or for none.
bool ServerLock::Take()
{
    m_file = shm_open(kLockName, O_RDWR | O_CREAT, S_IRUSR | S_IWUSR);
    if (m_file == -1)
        throw CommandFailed(std::string("shared memory: ") + std::strerror(errno) +
                            "; nebtrace doctor tells more");
    if (flock(m_file, LOCK_EX | LOCK_NB) != 0)
    {
        close(m_file);
        uint32_t const other = RunningServer();
        throw CommandFailed(
            "a performance server is running already" +
            (other != 0 ? ": end process " + std::to_string(other) + " first" : std::string()));
    }
    int const named = shm_open(kLockName, O_RDWR, 0);
    bool const held = named != -1 && IsSameFile(m_file, named);
    if (named != -1)
        close(named);
    if (!held)
        close(m_file);
    return held;
}

ServerLock::~ServerLock()
{
    shm_unlink(kLockName);
    close(m_file);
}

Server::Server()
{
    AllowManyFiles();
    bool const held = RemoveLeftRendezvous();
    std::set<uint32_t> tickets = UnlinkDeadRings();
    // Who holds it may be making the rings of the last one.
    if (held && !tickets.empty())
        m_late.insert(*tickets.rbegin());
    TakeOver(tickets);
}

// Nobody comes to the rendezvous of a killed server from here on. Returns whether somebody is still at it.
bool Server::RemoveLeftRendezvous()
{
    RingGuard const guard;
    Rendezvous left;
    left.Open();
    Rendezvous::Unlink();
    auto const until = Clock::now() + kLongestHold;
    bool held = left.TakeTicketAway() == Rendezvous::Closing::Held;
    while (held && Clock::now() < until)
    {
        std::this_thread::sleep_for(kWhileHeld);
        held = left.TakeTicketAway() == Rendezvous::Closing::Held;
    }
    if (held && left.Ticket() != 0)
        m_late.insert(left.Ticket());
    return held;
}

// An application that found the rendezvous of a killed server waits for an answer to its HELLO, and is given
// one. Those that the killed server had answered are lost to this one. New tickets begin behind all of
// theirs: an application that comes to names in use takes them away.
void Server::TakeOver(std::set<uint32_t> tickets)
{
    for (uint32_t const ticket : tickets)
        if (IsUnanswered(ticket))
            m_late.insert(ticket);
        else if (m_late.count(ticket) == 0)
            UnlinkRings(ticket);
    tickets.insert(m_late.begin(), m_late.end());
    auto const behind = tickets.upper_bound(kLastTicket);
    m_herd.PassOver(behind == tickets.begin() ? 0 : *std::prev(behind));
    Listen();
    TakeInLate();
}

void Server::Listen()
{
    if (!m_herd.initialise(kPerfServerName) || !m_rendezvous.Open())
        throw CommandFailed("no room for the rendezvous in shared memory; make some in /dev/shm");
    m_lastTurn = Clock::now();
    m_held = {};
}

void Server::TakeIn()
{
    while (CDataPath* const path = m_herd.poll())
        // The herd gives no other kind.
        m_sessions.emplace_back(std::unique_ptr<CDataPathSharedMem>(static_cast<CDataPathSharedMem*>(path)));
}

// Those that were at the rendezvous when it was taken away, and have come out of it since.
void Server::TakeInLate()
{
    RingGuard const guard;
    for (auto ticket = m_late.begin(); ticket != m_late.end();)
    {
        auto path = std::make_unique<CDataPathSharedMem>(nullptr);
        bool const there = IsUnanswered(*ticket) && path->DataOpenServer(kPerfServerName, *ticket) != 0;
        if (there)
            m_sessions.emplace_back(std::move(path));
        ticket = there ? m_late.erase(ticket) : std::next(ticket);
    }
}

// An application that died while it held the rendezvous would be the last one: make another.
void Server::FreeRendezvous()
{
    auto const now = Clock::now();
    auto const turn = std::min<Clock::duration>(now - m_lastTurn, kLongestTurn);
    m_lastTurn = now;
    m_held = m_rendezvous.IsFree() ? Clock::duration() : m_held + turn;
    if (m_held > kLongestHold)
        Relocate();
}

// Who is at the old one may live, and has or takes this ticket.
void Server::Relocate()
{
    m_late.insert(m_herd.Ticket());
    TakeInLate();
    m_rendezvous.Close();
    m_herd.shutdown();
    Listen();
}

void Server::LookAtRendezvous()
{
    RingGuard const guard;
    FreeRendezvous();
    TakeIn();
    if (guard.Tripped())
        Relocate();
}

// To tell who somebody is that has not spoken takes a look at all processes: one for all of them.
void Server::LookForProcesses()
{
    auto const now = Clock::now();
    if (now - m_lastLook < kLookPeriod)
        return;
    m_lastLook = now;
    TakeInLate();
    std::set<uint32_t> tickets;
    for (Session const& session : m_sessions)
        if (session.WantsToBeFound())
            tickets.insert(session.Ticket());
    if (tickets.empty())
        return;
    std::map<uint32_t, Process> const found = FindProcessesWithRings(tickets);
    for (Session& session : m_sessions)
        if (tickets.count(session.Ticket()) != 0)
            session.TakeFound(found.count(session.Ticket()) != 0 ? found.at(session.Ticket()) : Process());
}

bool Server::Turn(Listener& listener)
{
    LookAtRendezvous();
    LookForProcesses();
    bool came = false;
    for (auto session = m_sessions.begin(); session != m_sessions.end();)
    {
        came = session->Turn(listener) || came;
        session = session->IsOver() ? m_sessions.erase(session) : std::next(session);
    }
    return came;
}

// Nobody finds the rendezvous from here on, and who had found it finds no ticket. Who just took one is still
// taken in, or would wait for an answer for ever.
void Server::CloseRendezvous()
{
    Rendezvous::Unlink();
    auto const until = Clock::now() + kLongestHold;
    for (;;)
    {
        TakeIn();
        Rendezvous::Closing const closing = m_rendezvous.TakeTicketAway();
        if (closing == Rendezvous::Closing::Closed)
            return;
        if (closing == Rendezvous::Closing::Taken || Clock::now() > until)
            break;
        std::this_thread::sleep_for(kWhileHeld);
    }
    // Taken since, or about to be.
    m_late.insert(m_herd.Ticket());
}

Server::~Server()
{
    RingGuard const guard;
    CloseRendezvous();
    TakeInLate();
    for (Session& session : m_sessions)
        session.Close();
    m_sessions.clear();
    m_rendezvous.Close();
    m_herd.shutdown();
    UnlinkDeadRings();
}
}  // namespace perf
