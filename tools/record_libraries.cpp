// Finds the front ends and the machine's libraries.
#include "commands.h"
#include "record.h"
#include <cstdlib>
#include <dlfcn.h>
#include <link.h>
#include <sys/wait.h>
#include <unistd.h>

namespace fs = std::filesystem;

namespace record
{
namespace
{
// Set while libraries are only asked where they are: should the linker find a front end, its recorder stays
// asleep.
constexpr char kAsleep[] = "NEBTRACE_INSTALLER_HOST_QUERY_WD48LZ";

// What the dynamic linker says when asked for a library: '+' and its full path, or '-' and the reason.
std::string AskLinker(char const* name)
{
    void* const library = dlopen(name, RTLD_LAZY | RTLD_LOCAL);
    if (!library)
        return std::string("-") + dlerror();
    link_map* map = nullptr;
    if (dlinfo(library, RTLD_DI_LINKMAP, &map) != 0)
        return std::string("-") + dlerror();
    return "+" + fs::absolute(map->l_name).string();
}

// Asks in a process of its own: loading a driver runs its code, and none of that may stay in this one.
std::string AskLinkerAside(char const* name)
{
    int ends[2];
    if (pipe(ends) != 0)
        throw CommandFailed("no pipe can be made");
    pid_t const child = fork();
    if (child < 0)
        throw CommandFailed("no process can be made");
    if (child == 0)
    {
        setenv(kAsleep, "1", 1);
        std::string const answer = AskLinker(name);
        ssize_t const written = write(ends[1], answer.data(), answer.size());
        _exit(written < 0 ? 1 : 0);
    }
    close(ends[1]);
    std::string answer;
    char buffer[4096];
    for (ssize_t got = 0; (got = read(ends[0], buffer, sizeof buffer)) > 0;)
        answer.append(buffer, static_cast<std::size_t>(got));
    close(ends[0]);
    waitpid(child, nullptr, 0);
    return answer.empty() ? "-loading it ends the process" : answer;
}

bool IsInside(fs::path const& file, fs::path const& folder)
{
    std::error_code error;
    return fs::equivalent(file.parent_path(), folder, error);
}

// The library that an application would get: the first of the names that the linker knows, or empty.
std::string FindLibrary(std::vector<char const*> const& names, fs::path const& frontEnds, std::string& reason)
{
    for (char const* name : names)
    {
        std::string const answer = AskLinkerAside(name);
        std::string const rest = answer.substr(1);
        if (answer[0] == '+' && IsInside(rest, frontEnds))
            throw CommandFailed("the front ends are on the library path already: take " + frontEnds.string() +
                                " out of LD_LIBRARY_PATH");
        if (answer[0] == '+')
            return rest;
        if (reason.empty())
            reason = rest;
    }
    return {};
}

std::string CheckGiven(std::string const& given)
{
    std::string const path = fs::absolute(given).string();
    std::string const answer = AskLinkerAside(path.c_str());
    if (answer[0] != '+')
        throw CommandFailed("the host library " + given + " does not load: " + answer.substr(1));
    return path;
}

std::string Require(std::string const& given, std::vector<char const*> const& names,
                    fs::path const& frontEnds, char const* option)
{
    if (!given.empty())
        return CheckGiven(given);
    std::string reason;
    std::string found = FindLibrary(names, frontEnds, reason);
    if (found.empty())
        throw CommandFailed("this machine has no " + std::string(names[0]) + " (" + option +
                            " can name one): " + reason);
    return found;
}

// Many machines have no OpenGL ES 1 library. The recorder's own default would then lead to the front end,
// which would call itself for ever, so that a path that no machine has must stand there instead.
std::string FindEs1(std::string const& given, fs::path const& frontEnds)
{
    if (!given.empty())
        return CheckGiven(given);
    std::string reason;
    std::string const found =
        FindLibrary({"libGLESv1_CM.so.1", "libGLES_CM.so", "libGLESv1_CM.so"}, frontEnds, reason);
    return found.empty() ? "/nonexistent/libGLESv1_CM.so.1" : found;
}
}  // namespace

fs::path FrontEndFolder()
{
    fs::path const folder = fs::read_symlink("/proc/self/exe").parent_path();
    // The build tree, an installation, and one whose libraries are in a folder for the machine's
    // architecture.
    for (char const* relative :
         {"../frontends", "../lib/nebtrace/frontends", "../" NEBTRACE_LIBDIR "/nebtrace/frontends"})
        if (fs::exists(folder / relative / "libEGL.so.1"))
            return fs::canonical(folder / relative);
    throw CommandFailed("the front ends that belong to " + folder.string() + "/nebtrace are missing");
}

HostLibraries FindHostLibraries(HostLibraries const& given, fs::path const& frontEnds)
{
    HostLibraries found;
    found.egl = Require(given.egl, {"libEGL.so.1", "libEGL.so"}, frontEnds, "--host-egl");
    found.es2 = Require(given.es2, {"libGLESv2.so.2", "libGLESv2.so"}, frontEnds, "--host-gles2");
    found.es1 = FindEs1(given.es1, frontEnds);
    return found;
}
}  // namespace record
