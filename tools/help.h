// How commands and options are told, by --help and by the manual, which are made of the same definitions.
#pragma once
#include <CLI/CLI.hpp>
#include <string>
#include <vector>

namespace help
{
// What stands for the value of an option or argument: its type's name, or "{a,b}" where it is one of these;
// empty for flags.
std::string ValueName(CLI::Option const& option);

// With the other options that it needs, and those that it cannot stand beside.
std::string Description(CLI::Option const& option);

// "nebtrace remote [OPTIONS] ADDRESS record [OPTIONS]"
std::string Synopsis(CLI::App const& app);
// The same, and what a command with subcommands of its own goes on with.
std::string Usage(CLI::App const& app);

// In the order of their definition.
std::vector<CLI::Option const*> Options(CLI::App const& app);
std::vector<CLI::Option const*> Positionals(CLI::App const& app);
std::vector<CLI::App const*> Subcommands(CLI::App const& app);

// Whether the command line ends with "-- APP [ARG...]".
bool TakesApplication(CLI::App const& app);

class Formatter : public CLI::Formatter
{
public:
    std::string make_usage(CLI::App const* app, std::string name) const override;
    std::string make_option_name(CLI::Option const* option, bool positional) const override;
    std::string make_option_opts(CLI::Option const* option) const override;
    std::string make_option_desc(CLI::Option const* option) const override;
};
}  // namespace help
