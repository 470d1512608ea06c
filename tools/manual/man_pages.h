// The manual pages: of each subcommand from the definitions of the command line, and of the configuration
// file from its keys. What neither of these says stands in docs/man, a file a page: its beginning is the
// page's description, and its sections follow behind the options.
#pragma once
#include <string>
#include <vector>

namespace CLI
{
class App;
}

namespace manual
{
struct Page
{
    std::string name;  // "nebtrace-record"
    char section;      // '1'
    std::string text;
};

// `prose`: the folder with the rest.
std::vector<Page> ManPages(CLI::App const& app, std::string const& prose);
}  // namespace manual
