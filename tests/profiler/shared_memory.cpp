#include "tests/profiler/shared_memory.h"
#include <algorithm>
#include <dlfcn.h>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <pthread.h>
#include <sched.h>
#include <stdexcept>
#include <sys/mman.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>
#include <utility>

namespace
{

// Made ahead of all tests, so that it is the same in their children; and of the same length in each run,
// since a name has 255 bytes at most.
std::string const g_prefix = "nebtest." + std::to_string(10000000 + getpid()) + ".";

std::string g_awaited;
std::function<void()> g_action;

std::string Prefixed(char const* name) { return "/" + g_prefix + (*name == '/' ? name + 1 : name); }

template <typename Function>
Function Real(char const* name)
{
    return reinterpret_cast<Function>(dlsym(RTLD_NEXT, name));
}

// A mapping of an object for a scope.
class Mapping
{
public:
    Mapping(std::string const& name, size_t size) : m_size(size)
    {
        int const fd = shm_open(name.c_str(), O_RDWR, 0);
        m_bytes = mmap(nullptr, size, PROT_READ | PROT_WRITE, MAP_SHARED, fd, 0);
        close(fd);
        if (fd == -1 || m_bytes == MAP_FAILED)
            throw std::runtime_error("no object " + name);
    }
    ~Mapping() { munmap(m_bytes, m_size); }
    Mapping(Mapping const&) = delete;
    Mapping& operator=(Mapping const&) = delete;

    uint8_t* Bytes() const { return static_cast<uint8_t*>(m_bytes); }

private:
    void* m_bytes;
    size_t m_size;
};

struct stat StatusOf(std::string const& name)
{
    struct stat status
    {
    };
    status.st_size = -1;
    if (int const fd = shm_open(name.c_str(), O_RDWR, 0); fd != -1)
    {
        fstat(fd, &status);
        close(fd);
    }
    return status;
}

}  // namespace

extern "C" int shm_open(char const* name, int flags, mode_t mode)
{
    static auto const real = Real<int (*)(char const*, int, mode_t)>("shm_open");
    if (g_action && g_awaited == name)
        std::exchange(g_action, nullptr)();
    return real(Prefixed(name).c_str(), flags, mode);
}

extern "C" int shm_unlink(char const* name)
{
    static auto const real = Real<int (*)(char const*)>("shm_unlink");
    return real(Prefixed(name).c_str());
}

namespace sharedmemory
{

std::vector<std::string> Objects()
{
    std::vector<std::string> names;
    for (auto const& entry : std::filesystem::directory_iterator("/dev/shm"))
        if (std::string const name = entry.path().filename(); name.compare(0, g_prefix.size(), g_prefix) == 0)
            names.push_back("/" + name.substr(g_prefix.size()));
    std::sort(names.begin(), names.end());
    return names;
}

long SizeOf(std::string const& name) { return StatusOf(name).st_size; }

mode_t ModeOf(std::string const& name) { return StatusOf(name).st_mode & 0777; }

std::vector<uint8_t> ContentOf(std::string const& name, size_t size)
{
    Mapping const mapping(name, size);
    return {mapping.Bytes(), mapping.Bytes() + size};
}

void Write(std::string const& name, size_t offset, std::vector<uint8_t> const& bytes)
{
    Mapping const mapping(name, offset + bytes.size());
    std::copy(bytes.begin(), bytes.end(), mapping.Bytes() + offset);
}

bool IsLocked(std::string const& name)
{
    Mapping const mapping(name, sizeof(pthread_mutex_t));
    auto* const mutex = reinterpret_cast<pthread_mutex_t*>(mapping.Bytes());
    if (pthread_mutex_trylock(mutex) != 0)
        return true;
    pthread_mutex_unlock(mutex);
    return false;
}

void BeforeOpening(std::string const& name, std::function<void()> action)
{
    g_awaited = name;
    g_action = std::move(action);
}

void Clear()
{
    for (std::string const& name : Objects())
        shm_unlink(name.c_str());
}

}  // namespace sharedmemory

pid_t ThisThread() { return static_cast<pid_t>(syscall(SYS_gettid)); }

void AwaitSleepOf(pid_t thread)
{
    for (;;)
    {
        std::ifstream file("/proc/self/task/" + std::to_string(thread) + "/stat");
        std::string line;
        std::getline(file, line);
        // "<ID> (<name>) <state> ...", in which the name may hold anything.
        size_t const name = line.rfind(')');
        if (name != std::string::npos && line.compare(name, 4, ") S ") == 0)
            return;
        sched_yield();
    }
}
