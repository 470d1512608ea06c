// The subcommands of `nebtrace`. Each lives in a file of its own and adds itself to the command line.
#pragma once
#include <stdexcept>
#include <string>
#include <vector>

namespace CLI
{
class App;
}

// A subcommand reports failure by throwing this: one line on standard error, and kExitFailure.
struct CommandFailed : std::runtime_error
{
    using std::runtime_error::runtime_error;
};

// A subcommand that ends with an exit code of its own (the traced application's, say) throws this.
struct ExitWith
{
    int code;
};

// `application`: the command line behind "--".
void AddRecordCommand(CLI::App& app, std::vector<std::string> const& application);
void AddInfoCommand(CLI::App& app);
void AddDumpCommand(CLI::App& app);
void AddReplayCommand(CLI::App& app);
void AddFramesCommand(CLI::App& app);
void AddRepairCommand(CLI::App& app);
void AddRemoteCommand(CLI::App& app);
void AddPerfCommand(CLI::App& app);
void AddDiscoverCommand(CLI::App& app);
void AddDoctorCommand(CLI::App& app);
