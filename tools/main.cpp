// The `nebtrace` command: parses the command line and hands over to a subcommand.
#include "commands.h"
#include <csignal>
#include <cstdio>
#include <exception>
#include <iostream>

static constexpr int kUsageError = 2;
static constexpr int kFailure = 1;

static int Run(int argc, char** argv)
{
    CLI::App app{"Record, read and replay EGL and OpenGL ES calls"};
    app.set_version_flag("--version", "nebtrace " NEBTRACE_VERSION);
    app.require_subcommand(1);
    AddRecordCommand(app);
    AddInfoCommand(app);
    AddDumpCommand(app);
    try
    {
        app.parse(argc, argv);
    }
    catch (CLI::ParseError const& error)
    {
        if (error.get_exit_code() == 0)
            return app.exit(error);  // --help and --version
        std::cerr << "nebtrace: " << error.what() << "\n";
        return kUsageError;
    }
    return 0;
}

int main(int argc, char** argv)
{
    try
    {
        return Run(argc, argv);
    }
    catch (ExitWith const& exit)
    {
        return exit.code;
    }
    catch (std::exception const& error)
    {
        std::cerr << "nebtrace: " << error.what() << "\n";
        return kFailure;
    }
}
