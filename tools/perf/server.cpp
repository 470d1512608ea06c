#include "tools/perf/server.h"
#include "tools/commands.h"
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
// An application holds the rendezvous for as long as it takes to make a few objects.
constexpr std::chrono::milliseconds kLongestHold{1000};
constexpr std::chrono::milliseconds kLateArrivals{5};
constexpr uint32_t kHelloSize = 5;
constexpr uint32_t kMostPassedOver = 10000;

SSharedName RendezvousName(char const* kind) { return {kPerfServerName, 0, "N", 0, kind}; }

// Returns whether there was one.
bool UnlinkRendezvous()
{
    bool const was = shm_unlink(RendezvousName("d").text) == 0;
    shm_unlink(RendezvousName("m").text);
    return was;
}

// An object of another process for a scope.
class Mapping
{
public:
    Mapping(char const* name, uint32_t size)
    {
        if (!bufOpenOrCreateMem(m_mem, m_data, false, name, size))
            m_data = nullptr;
    }
    ~Mapping() { bufDestMem(m_mem, m_data); }
    Mapping(Mapping const&) = delete;
    Mapping& operator=(Mapping const&) = delete;

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

// Whether an application has said HELLO in these rings, and no server has touched them.
bool IsUnanswered(uint32_t ticket)
{
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

// An application takes twelve descriptors.
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
    // What a killed server left. The herd would remove it as well, but say so on standard output.
    if (UnlinkRendezvous())
        std::this_thread::sleep_for(kLateArrivals);
    std::set<uint32_t> const tickets = UnlinkDeadRings();
    Listen();
    TakeOver(tickets);
}

// An application that found the rendezvous of a killed server waits for an answer to its HELLO, and is given
// one. Those that the killed server had answered are lost to this one. New tickets begin behind all of
// theirs: an application that comes to names in use takes them away.
void Server::TakeOver(std::set<uint32_t> const& tickets)
{
    for (uint32_t const ticket : tickets)
        if (!IsUnanswered(ticket))
            UnlinkRings(ticket);
    uint32_t const last = tickets.empty() ? 0 : std::min(*tickets.rbegin(), kMostPassedOver);
    for (uint32_t ticket = 1; ticket <= last; ++ticket)
    {
        TakeOwnTicket();
        TakeIn();
    }
}

// As an application does, so that the herd looks for the rings of that ticket, and goes on to the next.
void Server::TakeOwnTicket()
{
    Mapping const rendezvous(RendezvousName("d").text, kRendezvousSize);
    if (!rendezvous || !bufLockMutex(m_rendezvous, false))
        return;
    __atomic_store_n(&rendezvous.As<uint32_t>(), 0, __ATOMIC_RELEASE);
    bufUnlockMutex(m_rendezvous);
}

void Server::Listen()
{
    if (!m_herd.initialise(kPerfServerName) ||
        !bufOpenOrCreateMutex(m_rendezvous, false, RendezvousName("m").text))
    {
        bufDestMutex(m_rendezvous);
        throw CommandFailed("no room for the rendezvous in shared memory; make some in /dev/shm");
    }
    m_lastFree = std::chrono::steady_clock::now();
}

void Server::TakeIn()
{
    while (CDataPath* const path = m_herd.poll())
        // The herd gives no other kind.
        m_sessions.emplace_back(std::unique_ptr<CDataPathSharedMem>(static_cast<CDataPathSharedMem*>(path)));
}

// An application that died while it held the rendezvous would be the last one: make another.
void Server::FreeRendezvous()
{
    auto const now = std::chrono::steady_clock::now();
    if (bufLockMutex(m_rendezvous, false))
    {
        bufUnlockMutex(m_rendezvous);
        m_lastFree = now;
    }
    else if (now - m_lastFree > kLongestHold)
    {
        bufDestMutex(m_rendezvous);
        m_herd.shutdown();
        Listen();
    }
}

bool Server::Turn(Listener& listener)
{
    FreeRendezvous();
    TakeIn();
    bool came = false;
    for (auto session = m_sessions.begin(); session != m_sessions.end();)
    {
        came = session->Turn(listener) || came;
        session = session->IsOver() ? m_sessions.erase(session) : std::next(session);
    }
    return came;
}

// Nobody finds the rendezvous from here on. Who had found it and just took a ticket is still taken in, or
// would wait for an answer for ever.
Server::~Server()
{
    UnlinkRendezvous();
    TakeIn();
    std::this_thread::sleep_for(kLateArrivals);
    TakeIn();
    for (Session& session : m_sessions)
        session.Close();
    m_sessions.clear();
    bufDestMutex(m_rendezvous);
    m_herd.shutdown();
    UnlinkDeadRings();
}
}  // namespace perf
