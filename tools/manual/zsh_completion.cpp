#include "help.h"
#include "manual/completion.h"

namespace manual
{
namespace
{
constexpr char kBeginning[] = R"(#compdef nebtrace
# Completion of nebtrace's command line in zsh. Made of its definitions.
)";

std::string Replaced(std::string text, std::string const& what, std::string const& by)
{
    for (std::size_t at = text.find(what); at != std::string::npos; at = text.find(what, at + by.size()))
        text.replace(at, what.size(), by);
    return text;
}

std::string Quoted(std::string const& text) { return "'" + Replaced(text, "'", "'\\''") + "'"; }

// Colons and brackets have a meaning where descriptions stand.
std::string Plain(std::string text)
{
    for (char const* special : {"\\", ":", "[", "]"})
        text = Replaced(text, special, std::string("\\") + special);
    return text;
}

// How a value is completed, by what it is.
std::string Action(std::string const& value)
{
    if (value == "FILE")
        return "_files";
    if (value == "DIR")
        return "_files -/";
    if (value == "ADDRESS")
        return "_hosts";
    std::string choices;
    for (std::string const& choice : ChoicesOf(value))
        choices += (choices.empty() ? "(" : " ") + choice;
    return choices.empty() ? " " : choices + ")";
}

std::string OptionSpecs(CLI::Option const& option)
{
    std::vector<std::string> const names = NamesOf(option);
    std::string all;
    for (std::string const& name : names)
        all += (all.empty() ? "" : " ") + name;
    bool const repeatable = option.get_multi_option_policy() == CLI::MultiOptionPolicy::TakeAll;
    std::string const value = help::ValueName(option);
    std::string text;
    for (std::string const& name : names)
    {
        std::string spec = (repeatable ? "*" : "(" + all + ")") + name;
        if (!value.empty())
            spec += name[1] == '-' ? "=" : "+";
        spec += "[" + Plain(help::Description(option)) + "]";
        if (!value.empty())
            spec += ":" + Plain(value) + ":" + Action(value);
        text += "        " + Quoted(spec) + " \\\n";
    }
    return text;
}

std::string FunctionName(CLI::App const& app)
{
    return app.get_parent() ? FunctionName(*app.get_parent()) + "_" + app.get_name() : "_" + app.get_name();
}

// Finds the subcommand behind as many arguments, and goes on with its own function.
std::string SubcommandStates(CLI::App const& app, std::size_t arguments)
{
    std::string names;
    std::string cases;
    for (CLI::App const* sub : help::Subcommands(app))
    {
        names += "            " + Quoted(sub->get_name() + ":" + Plain(sub->get_description())) + "\n";
        cases += "        " + sub->get_name() + ") " + FunctionName(*sub) + " && result=0 ;;\n";
    }
    std::string const shift = arguments == 0
                                  ? std::string()
                                  : "        shift " + std::to_string(arguments) +
                                        " words\n        ((CURRENT -= " + std::to_string(arguments) + "))\n";
    return "    case $state in\n    subcommand)\n        subcommands=(\n" + names +
           "        )\n        _describe -t subcommands subcommand subcommands && result=0\n        ;;\n"
           "    arguments)\n" +
           shift + "        case $words[1] in\n" + cases + "        esac\n        ;;\n    esac\n";
}

std::string Function(CLI::App const& app)
{
    std::string const beginning =
        "\n" + FunctionName(app) +
        "()\n{\n    local curcontext=$curcontext state line result=1\n"
        "    local -a subcommands\n    typeset -A opt_args\n    _arguments -C -s -S : \\\n";
    std::string specs;
    for (CLI::Option const* option : OptionsBehind(app))
        specs += OptionSpecs(*option);
    std::size_t arguments = 0;
    for (CLI::Option const* positional : help::Positionals(app))
    {
        std::string const value = help::ValueName(*positional);
        specs += "        " + Quoted(std::to_string(++arguments) + ":" + Plain(value) + ":" + Action(value)) +
                 " \\\n";
    }
    if (help::TakesApplication(app))
        specs += "        '(-)1:application:_command_names -e' '*::argument:_normal' \\\n";
    std::string states;
    if (!help::Subcommands(app).empty())
    {
        specs += "        '" + std::to_string(arguments + 1) + ": :->subcommand' '*:: :->arguments' \\\n";
        states = SubcommandStates(app, arguments);
    }
    return beginning + specs + "        && result=0\n" + states + "    return result\n}\n";
}

std::string Functions(CLI::App const& app)
{
    std::string text;
    for (CLI::App const* sub : help::Subcommands(app))
        text += Functions(*sub);
    return text + Function(app);
}
}  // namespace

std::string ZshCompletion(CLI::App const& app)
{
    return kBeginning + Functions(app) + "\n" + FunctionName(app) + " \"$@\"\n";
}
}  // namespace manual
