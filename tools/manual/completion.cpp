#include "manual/completion.h"
#include "help.h"
#include <algorithm>
#include <sstream>

namespace manual
{
std::vector<CLI::Option const*> OptionsBehind(CLI::App const& app)
{
    std::vector<CLI::Option const*> options = help::Options(app);
    if (!app.get_fallthrough() || !app.get_parent())
        return options;
    for (CLI::Option const* inherited : OptionsBehind(*app.get_parent()))
    {
        auto const same = [inherited](CLI::Option const* own) {
            return own->get_name() == inherited->get_name();
        };
        if (std::none_of(options.begin(), options.end(), same))
            options.push_back(inherited);
    }
    return options;
}

std::vector<std::string> NamesOf(CLI::Option const& option)
{
    std::vector<std::string> names;
    for (std::string const& name : option.get_snames())
        names.push_back("-" + name);
    for (std::string const& name : option.get_lnames())
        names.push_back("--" + name);
    return names;
}

std::vector<std::string> ChoicesOf(std::string const& value)
{
    std::vector<std::string> choices;
    if (value.empty() || value.front() != '{' || value.back() != '}')
        return choices;
    std::istringstream list(value.substr(1, value.size() - 2));
    for (std::string choice; std::getline(list, choice, ',');)
        choices.push_back(choice);
    return choices;
}
}  // namespace manual
