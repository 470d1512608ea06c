// Finds the front ends and the machine's libraries.
#include "aside.h"
#include "commands.h"
#include "record.h"
#include <cstdlib>
#include <dlfcn.h>
#include <link.h>

namespace fs = std::filesystem;

namespace record
{
HostLibrary const kHostEgl{{"libEGL.so.1", "libEGL.so"}, "--host-egl", "libegl1"};
HostLibrary const kHostEs1{
    {"libGLESv1_CM.so.1", "libGLES_CM.so", "libGLESv1_CM.so"}, "--host-gles1", "libgles1"};
HostLibrary const kHostEs2{{"libGLESv2.so.2", "libGLESv2.so"}, "--host-gles2", "libgles2"};

namespace
{
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
    Aside const aside = RunAside([name] {
        setenv(kAsleep, "1", 1);
        return AskLinker(name);
    });
    return aside.fault.empty() && !aside.answer.empty() ? aside.answer : "-" + aside.fault;
}

bool IsInside(fs::path const& file, fs::path const& folder)
{
    std::error_code error;
    return fs::equivalent(file.parent_path(), folder, error);
}

std::string CheckGiven(std::string const& given)
{
    std::string const path = fs::absolute(given).string();
    std::string const answer = AskLinkerAside(path.c_str());
    if (answer[0] != '+')
        throw CommandFailed("the host library " + given + " does not load: " + answer.substr(1));
    return path;
}

std::string Require(HostLibrary const& library, std::string const& given, fs::path const& frontEnds)
{
    if (!given.empty())
        return CheckGiven(given);
    FoundLibrary const found = FindHostLibrary(library, frontEnds);
    if (found.path.empty())
        throw CommandFailed("this machine has no " + std::string(library.names[0]) + ": install " +
                            library.package + " (so Debian calls the package), or name the library with " +
                            library.option + ": " + found.reason);
    return found.path;
}

// Many machines have no OpenGL ES 1 library. The recorder's own default would then lead to the front end,
// which would call itself for ever, so that a path that no machine has must stand there instead.
std::string FindEs1(std::string const& given, fs::path const& frontEnds)
{
    if (!given.empty())
        return CheckGiven(given);
    std::string const found = FindHostLibrary(kHostEs1, frontEnds).path;
    return found.empty() ? "/nonexistent/libGLESv1_CM.so.1" : found;
}
}  // namespace

FoundLibrary FindHostLibrary(HostLibrary const& library, fs::path const& frontEnds)
{
    FoundLibrary found;
    for (char const* name : library.names)
    {
        std::string const answer = AskLinkerAside(name);
        std::string const rest = answer.substr(1);
        if (answer[0] == '+' && IsInside(rest, frontEnds))
            throw CommandFailed("the front ends are on the library path already: take " + frontEnds.string() +
                                " out of LD_LIBRARY_PATH");
        if (answer[0] == '+')
            return {rest, {}};
        if (found.reason.empty())
            found.reason = rest;
    }
    return found;
}

fs::path FrontEndFolder()
{
    fs::path const folder = fs::read_symlink("/proc/self/exe").parent_path();
    // The build tree, an installation, and one whose libraries are in a folder for the machine's
    // architecture.
    for (char const* relative :
         {"../frontends", "../lib/nebtrace/frontends", "../" NEBTRACE_LIBDIR "/nebtrace/frontends"})
        if (fs::exists(folder / relative / "libEGL.so.1"))
            return fs::canonical(folder / relative);
    throw CommandFailed("the front ends that belong to " + folder.string() +
                        "/nebtrace are missing: install nebtrace again, as a whole; the command finds "
                        "them by its own place");
}

HostLibraries FindHostLibraries(HostLibraries const& given, fs::path const& frontEnds)
{
    HostLibraries found;
    found.egl = Require(kHostEgl, given.egl, frontEnds);
    found.es2 = Require(kHostEs2, given.es2, frontEnds);
    found.es1 = FindEs1(given.es1, frontEnds);
    return found;
}
}  // namespace record
