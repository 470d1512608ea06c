// The parts of `nebtrace record`, in the order in which a run uses them.
#pragma once
#include "new_file.h"
#include "trace/reader.h"
#include <csignal>
#include <filesystem>
#include <nlohmann/json_fwd.hpp>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace record
{
struct HostLibraries
{
    std::string egl;
    std::string es1;
    std::string es2;
};

// As far as a recording can go: the recorder reads the number with atoi.
constexpr int kLastFrame = 2147483647;

struct FrameRange
{
    int first = 0;
    int last = 0;
};

struct Options
{
    std::string output;  // empty if not given
    std::optional<FrameRange> frames;
    bool noData = false;
    bool saveFrames = false;
    bool optimize = false;
    bool flushEachWrite = false;
    bool profile = false;
    bool force = false;
    bool network = false;  // a client records, over the network
    bool networkWait = false;
    int verbosity = 0;
    std::string config;  // empty if not given
    std::string json;    // likewise
    HostLibraries host;  // empty where not given
    std::vector<std::string> command;
};

// --- Where things are (record_libraries.cpp)

// The folder of the front ends that belongs to this program, in the build tree or where it is installed.
std::filesystem::path FrontEndFolder();

// Set while libraries are only asked where they are: should the linker find a front end, its recorder stays
// asleep.
constexpr char kAsleep[] = "NEBTRACE_INSTALLER_HOST_QUERY_WD48LZ";

// One of the machine's libraries.
struct HostLibrary
{
    std::vector<char const*> names;  // which the linker is asked for, in this order
    char const* option;              // that names another
    char const* package;             // of Debian's, which brings it
};
extern HostLibrary const kHostEgl;
extern HostLibrary const kHostEs1;
extern HostLibrary const kHostEs2;

struct FoundLibrary
{
    std::string path;    // empty if there is none
    std::string reason;  // why not
};

// The library that an application would get. Throws CommandFailed where that is a front end.
FoundLibrary FindHostLibrary(HostLibrary const& library, std::filesystem::path const& frontEnds);

// The machine's own libraries, by full path: those given, the others as the dynamic linker finds them.
HostLibraries FindHostLibraries(HostLibraries const& given, std::filesystem::path const& frontEnds);

// --- The recorder's configuration (record_config.cpp)

// The text of the file: that of --config or nothing, with the keys that the options decide put in its place.
// The recorder opens its output by what `TraceFile` says, a full path.
std::string ConfigText(Options const& options, HostLibraries const& host);

// The value of a key as the recorder will read it: the last one wins.
std::optional<std::string> ConfigValue(std::string const& text, std::string_view key);

// The configuration file as long as the object lives. A file of the user's that stood there is set aside
// under a name of its own meanwhile, where it survives even a SIGKILL, and put back at the end.
class PlacedConfig
{
public:
    PlacedConfig(std::filesystem::path path, std::string const& text, bool force);
    ~PlacedConfig();
    PlacedConfig(PlacedConfig const&) = delete;
    PlacedConfig& operator=(PlacedConfig const&) = delete;

private:
    void SetAside();
    void Write(std::string const& text) const;

    std::filesystem::path m_path;
    std::filesystem::path m_aside;  // empty if nothing was set aside
};

// --- The application (record_process.cpp)

// Holds back the signals that would end this process, so that nothing is left undone when one arrives.
class HeldSignals
{
public:
    HeldSignals();
    ~HeldSignals();
    HeldSignals(HeldSignals const&) = delete;
    HeldSignals& operator=(HeldSignals const&) = delete;

    // Runs the application with the front ends ahead of everything else on the library path, passes signals
    // on to it, and returns its exit code, 128 + n if signal n ended it. `pid` is set once it runs.
    int RunApplication(std::vector<std::string> const& command, std::filesystem::path const& frontEnds,
                       int& pid) const;

private:
    void Release() const;
    int Start(std::vector<std::string> const& command, std::filesystem::path const& frontEnds,
              int& failure) const;

    sigset_t m_savedMask;
    struct sigaction m_savedChildAction;
};

// --- The outcome (record_result.cpp)

// The files that a recording to `pattern` may have made. Taken before the run, it tells afterwards which are
// new or written anew.
class TraceFiles
{
public:
    explicit TraceFiles(std::filesystem::path pattern);
    std::vector<std::filesystem::path> Written() const;
    // Why no file can be made under the name; empty if nothing is in the way.
    std::string Obstacle() const;

private:
    struct Stamp
    {
        std::filesystem::path path;
        std::filesystem::file_time_type time;
    };
    std::vector<Stamp> Existing() const;

    std::filesystem::path m_pattern;
    std::vector<Stamp> m_before;
};

// What a file holds.
struct Summary
{
    std::string file;
    std::string error;  // why it cannot be read; then the rest says nothing
    uint64_t bytes = 0;
    uint64_t frames = 0;
    uint64_t calls = 0;
    uint64_t zeros = 0;  // unused ones at the end
    nebtrace::EndState end = nebtrace::EndState::Reading;
    uint64_t endOffset = 0;
    std::string endReason;

    // In one line.
    std::string Line() const;
    nlohmann::ordered_json ToJson() const;
};
Summary Summarize(std::filesystem::path const& file);

// Where `--json FILE` puts what a run has recorded; "-" is standard output, which is the application's, too.
// A file is made ahead of the run, so that a name that cannot be written is told before it.
class JsonFile
{
public:
    explicit JsonFile(std::string const& name);
    void Write(nlohmann::ordered_json const& object);

private:
    std::optional<NewFile> m_file;
};

// --- Where there is none (record_nothing.cpp)

// One line: why the run of this configuration left no call, and ended with this exit code.
std::string WhyNothing(Options const& options, std::string const& config, TraceFiles const& files, int code);
}  // namespace record
