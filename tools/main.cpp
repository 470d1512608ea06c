// The `nebtrace` command: parses the command line and hands over to a subcommand.
#include "command_line.h"
#include "commands.h"
#include "exit_codes.h"
#include <CLI/CLI.hpp>
#include <algorithm>
#include <csignal>
#include <cstdio>
#include <cstring>
#include <exception>
#include <iostream>

// `nebtrace record ... -- APP ARGS...`: what stands behind the first "--" is the application's own, and the
// parser must not see it: to it "[a,b]" is a list of two. Returns the number of arguments ahead of that.
static int CountOwnArguments(int argc, char** argv)
{
    if (argc < 2 || std::strcmp(argv[1], "record") != 0)
        return argc;
    for (int i = 2; i < argc; ++i)
        if (std::strcmp(argv[i], "--") == 0)
            return i;
    return argc;
}

// The help of the subcommand that was meant, as far as there is one.
static std::string HelpFor(CLI::App const& app, int argc, char** argv)
{
    auto const isMeant = [=](CLI::App const* command) { return argc > 1 && command->get_name() == argv[1]; };
    auto const commands = app.get_subcommands([](CLI::App const*) { return true; });
    bool const known = std::any_of(commands.begin(), commands.end(), isMeant);
    return known ? std::string("nebtrace ") + argv[1] + " --help" : "nebtrace --help";
}

static int Run(int argc, char** argv)
{
    int const own = CountOwnArguments(argc, argv);
    std::vector<std::string> const application(argv + std::min(own + 1, argc), argv + argc);
    CLI::App app{"", "nebtrace"};
    DefineCommandLine(app, application);
    try
    {
        app.parse(own, argv);
    } catch (CLI::ParseError const& error)
    {
        if (error.get_exit_code() == 0)
            return app.exit(error);  // --help and --version
        std::cerr << "nebtrace: " << error.what() << "; " << HelpFor(app, argc, argv) << " tells more\n";
        return kExitUsage;
    }
    return kExitSuccess;
}

int main(int argc, char** argv)
{
    try
    {
        return Run(argc, argv);
    } catch (ExitWith const& exit)
    {
        return exit.code;
    } catch (std::exception const& error)
    {
        std::cerr << "nebtrace: " << error.what() << "\n";
        return kExitFailure;
    }
}
