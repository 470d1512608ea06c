// The configuration that the recorder would read here. `nebtrace record` places one of its own for a run.
#include "checks.h"
#include "config_lines.h"
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <unistd.h>

namespace fs = std::filesystem;

namespace doctor
{
namespace
{
constexpr char kName[] = "nebtrace.cfg";
constexpr char kSystem[] = "/etc/nebtrace.cfg";
constexpr char kAside[] = "nebtrace.cfg.saved-";
constexpr char kCheck[] = "configuration";
// What nebtrace record writes into the first line of its own.
constexpr char kPlaced[] = "# Written by nebtrace record";

Finding Remarked(std::string const& file, std::string const& remark, std::string const& next)
{
    return {kCheck, Verdict::Warning, file + ": " + remark, next, {{"file", file}}};
}

void CheckFrames(std::string const& file, ConfigLines const& lines, Findings& findings)
{
    // As the recorder takes them: -1 is the greatest number of all.
    auto const number = [&lines](char const* key) {
        auto const found = lines.values.find(key);
        return found == lines.values.end() ? 0 : static_cast<uint32_t>(std::atoi(found->second.c_str()));
    };
    auto const network = lines.values.find("Network");
    bool const byClient = network != lines.values.end() && network->second[0] != '0';
    if (!byClient && number("EndFrame") < number("StartFrame"))
        findings.push_back(Remarked(file, "EndFrame is ahead of StartFrame, so that no frame is recorded",
                                    "set EndFrame to the last frame that you want"));
}

// Names without a folder are the dynamic linker's to find.
void CheckHosts(std::string const& file, ConfigLines const& lines, Findings& findings)
{
    for (char const* const key : {"EglLibraryPath", "Es1LibraryPath", "Es2LibraryPath", "Es3LibraryPath"})
    {
        auto const found = lines.values.find(key);
        bool const isPath = found != lines.values.end() && found->second.find('/') != std::string::npos;
        if (isPath && access(found->second.c_str(), R_OK) != 0)
            findings.push_back({kCheck,
                                Verdict::Problem,
                                file + ": " + key + " cannot be read: " + found->second,
                                "write the path of the machine's own library there",
                                {{"file", file}}});
    }
}

void CheckFile(std::string const& file, Findings& findings)
{
    std::ifstream stream(file);
    if (!stream)
    {
        findings.push_back({kCheck,
                            Verdict::Problem,
                            file + " cannot be read: " + std::strerror(errno),
                            "let yourself read it, or move it away",
                            {{"file", file}}});
        return;
    }
    ConfigLines const lines = ReadConfigLines(stream);
    findings.push_back({kCheck,
                        Verdict::Ok,
                        file + " is what the recorder reads here; nebtrace record places its own for a run",
                        {},
                        {{"file", file}}});
    for (std::string const& remark : lines.remarks)
        findings.push_back(Remarked(file, remark, "correct the line, or take it out"));
    CheckFrames(file, lines, findings);
    CheckHosts(file, lines, findings);
}

// What a run of nebtrace record leaves that was killed, and what one has that is on.
void CheckLeftovers(fs::path const& folder, Findings& findings)
{
    std::string first;
    std::getline(std::ifstream(folder / kName) >> std::ws, first);
    if (first.compare(0, std::strlen(kPlaced), kPlaced) == 0)
        findings.push_back(Remarked((folder / kName).string(),
                                    "it is one that nebtrace record placed for a run",
                                    "remove it, unless that run is still on"));
    std::error_code error;
    for (fs::directory_entry const& entry : fs::directory_iterator(folder, error))
    {
        std::string const name = entry.path().filename().string();
        if (name.compare(0, std::strlen(kAside), kAside) == 0)
            findings.push_back(
                Remarked(entry.path().string(), "nebtrace record --force set it aside for a run",
                         std::string("move it back to ") + kName + ", unless that run is still on"));
    }
}
}  // namespace

Findings CheckConfiguration()
{
    Findings findings;
    std::error_code error;
    fs::path const folder = fs::current_path(error);
    if (fs::exists(folder / kName, error))
        CheckFile((folder / kName).string(), findings);
    else if (fs::exists(kSystem, error))
        CheckFile(kSystem, findings);
    else
        findings.push_back({kCheck, Verdict::Ok,
                            std::string("no ") + kName + " here, and no " + kSystem +
                                ": nebtrace record places one for each run"});
    CheckLeftovers(folder, findings);
    return findings;
}
}  // namespace doctor
