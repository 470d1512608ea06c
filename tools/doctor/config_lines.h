// What of a configuration file the recorder passes over, or takes otherwise than it looks.
#pragma once
#include <istream>
#include <map>
#include <string>
#include <vector>

namespace doctor
{
struct ConfigLines
{
    std::vector<std::string> remarks;           // "line 3: ..."
    std::map<std::string, std::string> values;  // by key, as the recorder takes them: the last one wins
};

// Line by line by the recorder's own rules.
ConfigLines ReadConfigLines(std::istream& file);
}  // namespace doctor
