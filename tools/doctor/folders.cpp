// Where a recording puts its files: the working directory has the configuration for the run, and the trace
// where nothing else is said.
#include "checks.h"
#include "config_lines.h"
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <sys/statvfs.h>
#include <unistd.h>

namespace fs = std::filesystem;

namespace doctor
{
namespace
{
constexpr double kLittleRoom = 1e9;
constexpr double kNoRoom = 1e6;

std::string SizeText(double bytes)
{
    char text[32];
    std::snprintf(text, sizeof text, bytes < 1e9 ? "%.1f MB" : "%.1f GB", bytes / (bytes < 1e9 ? 1e6 : 1e9));
    return text;
}

Finding CheckFolder(char const* check, fs::path const& folder, char const* next)
{
    Finding finding{check, Verdict::Ok, {}, {}, {{"folder", folder.string()}}};
    struct statvfs room = {};
    if (access(folder.c_str(), W_OK | X_OK) != 0 || statvfs(folder.c_str(), &room) != 0)
    {
        finding.verdict = Verdict::Problem;
        finding.found = folder.string() + " cannot be written: " + std::strerror(errno);
        finding.next = next;
        return finding;
    }
    double const bytes = static_cast<double>(room.f_bavail) * static_cast<double>(room.f_frsize);
    finding.found = folder.string() + ", with room for " + SizeText(bytes);
    finding.details.emplace_back("bytes", std::to_string(static_cast<unsigned long long>(bytes)));
    if (bytes >= kLittleRoom)
        return finding;
    finding.verdict = bytes < kNoRoom ? Verdict::Problem : Verdict::Warning;
    finding.next =
        "make room, or record to another folder with -o; --frames and --no-data make traces smaller";
    return finding;
}

// That of a configuration that stands here, whose traces an application makes that is started by hand.
fs::path TraceFolder(fs::path const& working)
{
    std::ifstream file(working / "nebtrace.cfg");
    ConfigLines const lines = ReadConfigLines(file);
    auto const trace = lines.values.find("TraceFile");
    return trace == lines.values.end() ? working : (working / trace->second).parent_path();
}
}  // namespace

Findings CheckFolders()
{
    std::error_code error;
    fs::path const working = fs::current_path(error);
    Findings findings{CheckFolder("working directory", working,
                                  "go to a folder that you may write to: nebtrace record places the "
                                  "recorder's configuration in it")};
    fs::path const traces = TraceFolder(working);
    if (traces != working)
        findings.push_back(CheckFolder("trace folder", traces, "name another TraceFile in nebtrace.cfg"));
    return findings;
}
}  // namespace doctor
