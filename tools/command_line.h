// The command line of `nebtrace`, for the command itself and for what tells about it.
#pragma once
#include <string>
#include <vector>

namespace CLI
{
class App;
}

// Adds every subcommand to `app`, which has the command's name. `application`: the command line behind "--".
void DefineCommandLine(CLI::App& app, std::vector<std::string> const& application);
