#include "tools/perf/ring_guard.h"
#include <csignal>
#include <cstdint>
#include <sys/mman.h>
#include <unistd.h>

namespace perf
{
namespace
{
volatile std::sig_atomic_t g_guards = 0;
volatile std::sig_atomic_t g_trips = 0;
uintptr_t g_pageSize = 0;

// The access is made again when this returns. Without a guard or a page it ends the process, as ever.
void PutPage(int /*signal*/, siginfo_t* info, void* /*context*/)
{
    uintptr_t const at = reinterpret_cast<uintptr_t>(info->si_addr) & ~(g_pageSize - 1);
    bool const mapped = g_guards != 0 && info->si_code == BUS_ADRERR &&
                        // NOLINTNEXTLINE(performance-no-int-to-ptr): the page's address is computed
                        mmap(reinterpret_cast<void*>(at), g_pageSize, PROT_READ | PROT_WRITE,
                             MAP_PRIVATE | MAP_ANONYMOUS | MAP_FIXED, -1, 0) != MAP_FAILED;
    if (mapped)
        g_trips = g_trips + 1;
    else
        std::signal(SIGBUS, SIG_DFL);
}

void Watch()
{
    g_pageSize = static_cast<uintptr_t>(sysconf(_SC_PAGESIZE));
    struct sigaction action = {};
    action.sa_sigaction = PutPage;
    action.sa_flags = SA_SIGINFO;
    sigemptyset(&action.sa_mask);
    sigaction(SIGBUS, &action, nullptr);
}
}  // namespace

RingGuard::RingGuard() : m_before(g_trips)
{
    if (g_pageSize == 0)
        Watch();
    g_guards = g_guards + 1;
}

RingGuard::~RingGuard() { g_guards = g_guards - 1; }

bool RingGuard::Tripped() const { return g_trips != m_before; }
}  // namespace perf
