// Why a run left no call behind.
#include "record.h"
#include <array>
#include <cstdlib>
#include <cstring>
#include <elf.h>
#include <fstream>
#include <sstream>
#include <sys/stat.h>
#include <unistd.h>

namespace fs = std::filesystem;

namespace record
{
namespace
{
// As execvp looks for it.
fs::path ProgramFile(std::string const& name)
{
    if (name.find('/') != std::string::npos)
        return name;
    char const* const path = std::getenv("PATH");
    std::istringstream folders(path ? path : "/bin:/usr/bin");
    for (std::string folder; std::getline(folders, folder, ':');)
        if (access((fs::path(folder) / name).c_str(), X_OK) == 0)
            return fs::path(folder) / name;
    return {};
}

// The beginning of a program in the executable format, by the words of its own class.
template <typename Header, typename Segment>
bool HasInterpreter(std::ifstream& file)
{
    Header header{};
    file.seekg(0);
    if (!file.read(reinterpret_cast<char*>(&header), sizeof header) || header.e_phentsize != sizeof(Segment))
        return true;  // not to be told
    for (unsigned i = 0; i < header.e_phnum; ++i)
    {
        Segment segment{};
        file.seekg(static_cast<std::streamoff>(header.e_phoff + i * sizeof segment));
        if (!file.read(reinterpret_cast<char*>(&segment), sizeof segment) || segment.p_type == PT_INTERP)
            return true;
    }
    return false;
}

using Ident = std::array<unsigned char, EI_NIDENT>;

Ident IdentOf(std::ifstream& file)
{
    Ident ident{};
    file.read(reinterpret_cast<char*>(ident.data()), static_cast<std::streamsize>(ident.size()));
    return ident;
}

// Why the dynamic linker gives the program no front end; empty if nothing is known against it.
std::string LinkerObstacle(fs::path const& program)
{
    struct stat status;
    std::ifstream file(program, std::ios::binary);
    std::ifstream self("/proc/self/exe", std::ios::binary);
    Ident const ident = IdentOf(file);
    if (!file || std::memcmp(ident.data(), ELFMAG, SELFMAG) != 0)
        return {};
    if (ident[EI_CLASS] != IdentOf(self)[EI_CLASS])
        return ident[EI_CLASS] == ELFCLASS32
                   ? "it is a 32-bit program, which takes no 64-bit front ends: build nebtrace for it"
                   : "it is a 64-bit program, which takes no 32-bit front ends: build nebtrace for it";
    bool const dynamic = ident[EI_CLASS] == ELFCLASS32 ? HasInterpreter<Elf32_Ehdr, Elf32_Phdr>(file)
                                                       : HasInterpreter<Elf64_Ehdr, Elf64_Phdr>(file);
    if (!dynamic)
        return "it is linked statically, so that no library can come in between";
    bool const known = stat(program.c_str(), &status) == 0;
    bool const privileged = known && (((status.st_mode & S_ISUID) != 0 && status.st_uid != getuid()) ||
                                      ((status.st_mode & S_ISGID) != 0 && status.st_gid != getgid()));
    return privileged
               ? "it is set-user-ID or set-group-ID, so that the dynamic linker ignores LD_LIBRARY_PATH: "
                 "record a copy of it"
               : "";
}

std::string NoLibrary(Options const& options, int code)
{
    std::string const name = options.command[0];
    if (std::string const obstacle = LinkerObstacle(ProgramFile(name)); !obstacle.empty())
        return name + " did not load the front ends: " + obstacle;
    std::string const loaded = name + " loaded neither EGL nor GLES";
    if (code > 128)
        return loaded + " before signal " + std::to_string(code - 128) + " ended it";
    return loaded + ", or loaded them by a full path, or through a run path of its own";
}

// As the recorder takes it: -1 is the greatest number of all.
uint32_t NumberOf(std::string const& config, char const* key)
{
    return static_cast<uint32_t>(std::atoi(ConfigValue(config, key).value_or("0").c_str()));
}

std::string NoCall(Options const& options, std::string const& config, int code)
{
    uint32_t const first = NumberOf(config, "StartFrame");
    std::string const ended = code > 128 ? "signal " + std::to_string(code - 128) + " ended the application"
                                         : std::string("the application ended");
    if (options.network)
        return "no client recorded: nebtrace remote ADDRESS record does";
    if (NumberOf(config, "EndFrame") < first)
        return "the configuration's EndFrame is ahead of its StartFrame";
    if (first > 0)
        return ended + " before frame " + std::to_string(first) +
               ": no call fell into the frames asked for, which --frames counts from 0";
    return ended + " before it made a call";
}
}  // namespace

std::string WhyNothing(Options const& options, std::string const& config, TraceFiles const& files, int code)
{
    std::string const profile = ConfigValue(config, "Profile").value_or("0");
    if (!profile.empty() && profile[0] != '0')
        return "profiling, so nothing was recorded";
    bool const opened = !files.Written().empty();
    std::string const obstacle = files.Obstacle();
    if (!opened && !obstacle.empty())
        return "nothing was recorded: " + obstacle;
    return "nothing was recorded: " + (opened ? NoCall(options, config, code) : NoLibrary(options, code));
}
}  // namespace record
