// The shared memory through which applications under the profiler and `nebtrace perf` speak.
#include "checks.h"
#include "profiler/data_path.h"
#include "tools/perf/server.h"
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <filesystem>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

namespace fs = std::filesystem;

namespace doctor
{
namespace
{
constexpr char kFolder[] = "/dev/shm";

// Makes an object and takes it away; the error's number, or nothing.
int TryObject()
{
    std::string const name = "/nebtrace-doctor-" + std::to_string(getpid());
    int const made = shm_open(name.c_str(), O_RDWR | O_CREAT | O_EXCL, S_IRUSR | S_IWUSR);
    if (made == -1)
        return errno;
    int const error = ftruncate(made, 4096) == 0 ? 0 : errno;
    close(made);
    shm_unlink(name.c_str());
    return error;
}

unsigned CountObjects()
{
    std::string const base = &kPerfServerName[1];
    unsigned count = 0;
    std::error_code error;
    for (fs::directory_iterator entry(kFolder, error), end; !error && entry != end; entry.increment(error))
        count += entry->path().filename().string().compare(0, base.size(), base) == 0 ? 1 : 0;
    return count;
}

Finding CheckObjects()
{
    Finding finding{"performance server"};
    unsigned const count = CountObjects();
    uint32_t const server = perf::RunningServer();
    finding.details = {{"objects", std::to_string(count)}};
    if (server != 0)
    {
        finding.found = "process " + std::to_string(server) + " is one, with " + std::to_string(count) +
                        " objects in shared memory";
        finding.details.emplace_back("process", std::to_string(server));
    }
    else if (count == 0)
        finding.found = "none runs, and none has left anything";
    else
    {
        finding.verdict = Verdict::Warning;
        finding.found = std::to_string(count) + " objects of one are in shared memory, and none runs";
        finding.next = "start and end nebtrace perf once, which takes away what nobody uses";
    }
    return finding;
}
}  // namespace

Findings CheckSharedMemory()
{
    if (int const error = TryObject())
        return {{"shared memory", Verdict::Problem,
                 std::string("no object can be made in ") + kFolder + ": " + std::strerror(error),
                 std::string("mount a tmpfs at ") + kFolder +
                     " that you may write to, and with room: profiling needs it"}};
    return {{"shared memory", Verdict::Ok, std::string(kFolder) + " takes objects"}, CheckObjects()};
}
}  // namespace doctor
