// The keys of nebtrace.cfg, for those who tell about them.
#pragma once
#include <string>
#include <vector>

namespace manual
{
struct ConfigKey
{
    char const* group;
    char const* name;
    char const* value;
    char const* initial;  // "" is nothing
    char const* effect;
};
std::vector<ConfigKey> ConfigKeys();

// docs/configuration-keys.md
std::string ConfigKeysDocument();
}  // namespace manual
