// Writes what people read about the command and the configuration, from what the programs themselves go by.
// Built with the rest and never installed.
#include "command_line.h"
#include "manual/completion.h"
#include "manual/config_keys.h"
#include "manual/man_pages.h"
#include <CLI/CLI.hpp>
#include <cstdio>
#include <fstream>
#include <iostream>

namespace
{
void WriteFile(std::string const& path, std::string const& text)
{
    std::ofstream file(path, std::ios::binary);
    file << text << std::flush;
    if (!file)
        throw std::runtime_error("cannot write " + path);
}

CLI::App const& Command()
{
    static CLI::App app{"", "nebtrace"};
    DefineCommandLine(app, {});
    return app;
}

void WriteManPages(std::string const& prose, std::string const& folder)
{
    for (manual::Page const& page : manual::ManPages(Command(), prose))
        WriteFile(folder + "/man" + page.section + "/" + page.name + "." + page.section, page.text);
}
}  // namespace

int main(int argc, char** argv)
try
{
    CLI::App app{"Write the manual of nebtrace"};
    app.require_subcommand(1);
    app.add_subcommand("config-keys", "Print docs/configuration-keys.md")->callback([] {
        std::cout << manual::ConfigKeysDocument();
    });
    std::string prose;
    std::string folder;
    CLI::App* const pages =
        app.add_subcommand("man", "Write the manual pages into FOLDER/man1 and FOLDER/man5");
    pages->add_option("PROSE", prose, "The folder docs/man")->required()->check(CLI::ExistingDirectory);
    pages->add_option("FOLDER", folder)->required()->check(CLI::ExistingDirectory);
    pages->callback([&] { WriteManPages(prose, folder); });
    app.add_subcommand("bash", "Print the completion for bash")->callback([] {
        std::cout << manual::BashCompletion(Command());
    });
    app.add_subcommand("zsh", "Print the completion for zsh")->callback([] {
        std::cout << manual::ZshCompletion(Command());
    });
    CLI11_PARSE(app, argc, argv);
} catch (std::exception const& error)
{
    std::cerr << "manual: " << error.what() << "\n";
    return 1;
}
