#include "command_line.h"
#include "commands.h"
#include "help.h"
#include <CLI/CLI.hpp>

static constexpr char kVersion[] = "nebtrace " NEBTRACE_VERSION;

void DefineCommandLine(CLI::App& app, std::vector<std::string> const& application)
{
    app.description("Record, read and replay EGL and OpenGL ES calls");
    app.formatter(std::make_shared<help::Formatter>());
    app.require_subcommand(1);
    AddRecordCommand(app, application);
    AddInfoCommand(app);
    AddDumpCommand(app);
    AddReplayCommand(app);
    AddFramesCommand(app);
    AddRepairCommand(app);
    AddRemoteCommand(app);
    AddPerfCommand(app);
    AddDiscoverCommand(app);
    AddDoctorCommand(app);
    app.set_version_flag("--version", kVersion);
    for (CLI::App* command : app.get_subcommands({}))
        command->set_version_flag("--version", kVersion);
}
