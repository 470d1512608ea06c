// What `nebtrace doctor` looks at on this machine, one file for each kind of thing.
#pragma once
#include <string>
#include <utility>
#include <vector>

namespace doctor
{
enum class Verdict
{
    Ok,
    Warning,  // something does without it, or works otherwise than one may think
    Problem   // something that nebtrace is for does not work here
};

struct Finding
{
    std::string check;
    Verdict verdict = Verdict::Ok;
    std::string found = {};
    std::string next = {};  // what to do about it
    // The same in pieces, for programs.
    std::vector<std::pair<std::string, std::string>> details = {};
};

using Findings = std::vector<Finding>;

// Whether an application would get the front ends for the machine's libraries, without nebtrace record.
bool FrontEndsAreOnPath();

Findings CheckHostLibraries();
Findings CheckDrivers();
Findings CheckDisplay();
Findings CheckFrontEnds();
Findings CheckConfiguration();
Findings CheckFolders();
Findings CheckPorts();
Findings CheckSharedMemory();
}  // namespace doctor
