#include "manual/config_keys.h"

namespace manual
{
namespace
{
constexpr char kIntroduction[] = R"(<!-- Written by ./dev tables from api/config_keys.def. Do not edit. -->
# The keys of nebtrace.cfg

A line is `Key = value`. The value of a switch is off if it begins with `0`, else on. The sections are where the keys
are usually written: keys count in any, and without one. Each default is what holds without the key; where
`nebtrace record` writes the file, it sets some of them otherwise.

| Section | Key | Value | Default | What it does |
|---|---|---|---|---|
)";

std::string Code(std::string const& text) { return text.empty() ? "none" : "`" + text + "`"; }
}  // namespace

std::vector<ConfigKey> ConfigKeys()
{
    return {
#define CONFIG_KEY(group, name, value, initial, effect) {group, #name, value, initial, effect},
#include "api/config_keys.def"
#undef CONFIG_KEY
    };
}

std::string ConfigKeysDocument()
{
    std::string text = kIntroduction;
    for (ConfigKey const& key : ConfigKeys())
        text += "| " + std::string(key.group) + " | " + Code(key.name) + " | " + key.value + " | " +
                Code(key.initial) + " | " + key.effect + " |\n";
    return text;
}
}  // namespace manual
