// What completes the command line in shells, made of its definitions.
#pragma once
#include <string>
#include <vector>

namespace CLI
{
class App;
class Option;
}  // namespace CLI

namespace manual
{
std::string BashCompletion(CLI::App const& app);
std::string ZshCompletion(CLI::App const& app);

// The options of a command, and those of the ones above it that may also stand behind its name.
std::vector<CLI::Option const*> OptionsBehind(CLI::App const& app);
// "-o", "--output"
std::vector<std::string> NamesOf(CLI::Option const& option);
// "a" and "b", where the value is "{a,b}".
std::vector<std::string> ChoicesOf(std::string const& value);
}  // namespace manual
