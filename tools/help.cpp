#include "help.h"

namespace help
{
namespace
{
// By name: the set is in the order of addresses.
std::string Joined(std::set<CLI::Option*> const& options)
{
    std::set<std::string> names;
    for (CLI::Option const* option : options)
        names.insert(option->get_name());
    std::string text;
    for (std::string const& name : names)
        text += (text.empty() ? "" : ", ") + name;
    return text;
}
}  // namespace

std::string ValueName(CLI::Option const& option)
{
    if (option.get_type_size() == 0)
        return {};
    // The parser's text goes on with what the value is held against.
    std::string const type = option.get_type_name();
    std::size_t const set = type.find(":{");
    if (set != std::string::npos)
        return type.substr(set + 1, type.find('}', set) - set);
    return option.get_positional() ? option.get_name(true) : type.substr(0, type.find(':'));
}

std::string Description(CLI::Option const& option)
{
    std::string text = option.get_description();
    if (!option.get_needs().empty())
        text += " (only with " + Joined(option.get_needs()) + ")";
    if (!option.get_excludes().empty())
        text += " (not with " + Joined(option.get_excludes()) + ")";
    return text;
}

std::vector<CLI::Option const*> Options(CLI::App const& app)
{
    return app.get_options(
        [](CLI::Option const* o) { return o->nonpositional() && !o->get_group().empty(); });
}

std::vector<CLI::Option const*> Positionals(CLI::App const& app)
{
    return app.get_options([](CLI::Option const* o) { return o->get_positional(); });
}

std::vector<CLI::App const*> Subcommands(CLI::App const& app)
{
    return app.get_subcommands([](CLI::App const* sub) { return !sub->get_name().empty(); });
}

bool TakesApplication(CLI::App const& app)
{
    CLI::App const* const parent = app.get_parent();
    return parent && !parent->get_parent() && app.get_name() == "record";
}

std::string Synopsis(CLI::App const& app)
{
    std::string text = app.get_parent() ? Synopsis(*app.get_parent()) + " " : std::string();
    text += app.get_name();
    // The command's own two options end it, and leave nothing to be called with them.
    if (app.get_parent() && Options(app).size() > 1)
        text += " [OPTIONS]";
    for (CLI::Option const* option : Options(app))
        if (option->get_required())
            text += " " + option->get_name() + " " + ValueName(*option);
    for (CLI::Option const* positional : Positionals(app))
        text += " " + positional->get_name(true);
    return TakesApplication(app) ? text + " -- APP [ARG...]" : text;
}

std::string Usage(CLI::App const& app)
{
    return Synopsis(app) + (Subcommands(app).empty() ? "" : " SUBCOMMAND ...");
}

std::string Formatter::make_usage(CLI::App const* app, std::string /*name*/) const
{
    return "Usage: " + Usage(*app) + "\n";
}

std::string Formatter::make_option_name(CLI::Option const* option, bool positional) const
{
    std::string text = CLI::Formatter::make_option_name(option, positional);
    std::size_t const comma = text.find(',');
    return comma == std::string::npos ? text : text.replace(comma, 1, ", ");
}

std::string Formatter::make_option_opts(CLI::Option const* option) const
{
    std::string const value = ValueName(*option);
    return value.empty() || option->get_positional() ? std::string() : " " + value;
}

std::string Formatter::make_option_desc(CLI::Option const* option) const { return Description(*option); }
}  // namespace help
