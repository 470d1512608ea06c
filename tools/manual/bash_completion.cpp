#include "help.h"
#include "manual/completion.h"

namespace manual
{
namespace
{
constexpr char kBeginning[] = R"(# Completion of nebtrace's command line in bash. Made of its definitions.

# The functions up to _nebtrace_application are told a command by its names, "nebtrace remote record".
)";

constexpr char kRest[] = R"bash(
# The words from number $1 on are an application's own.
_nebtrace_application()
{
    if declare -F _command_offset >/dev/null; then
        _command_offset "$1"
    elif ((COMP_CWORD == $1)); then
        mapfile -t COMPREPLY < <(compgen -c -- "${COMP_WORDS[COMP_CWORD]}")
    else
        _nebtrace_complete FILE "${COMP_WORDS[COMP_CWORD]}"
    fi
}

# What stands for $2, of which $1 tells what it is.
_nebtrace_complete()
{
    case $1 in
    FILE)
        compopt -o filenames 2>/dev/null
        mapfile -t COMPREPLY < <(compgen -f -- "$2")
        ;;
    DIR)
        compopt -o filenames 2>/dev/null
        mapfile -t COMPREPLY < <(compgen -d -- "$2")
        ;;
    ADDRESS) mapfile -t COMPREPLY < <(compgen -A hostname -- "$2") ;;
    {*}) mapfile -t COMPREPLY < <(compgen -W "${1//[\{\},]/ }" -- "$2") ;;
    esac
}

_nebtrace()
{
    local current=${COMP_WORDS[COMP_CWORD]} command=nebtrace at=1 arguments=0 option= word kind
    COMPREPLY=()
    while ((at < COMP_CWORD)); do
        word=${COMP_WORDS[at++]}
        if [[ $word == -- ]]; then
            _nebtrace_application "$at"
            return
        elif [[ $word == -* ]]; then
            [[ $(_nebtrace_value "$command" "$word") ]] || continue
            # bash takes --option=value for three words.
            [[ ${COMP_WORDS[at]} == = ]] && ((++at))
            ((at++ >= COMP_CWORD)) && option=$word
        elif [[ " $(_nebtrace_subcommands "$command") " == *" $word "* ]]; then
            command+=" $word"
            arguments=0
        else
            ((++arguments))
        fi
    done
    [[ $current == = ]] && current=
    kind=$(_nebtrace_argument "$command" "$arguments")
    if [[ $option ]]; then
        _nebtrace_complete "$(_nebtrace_value "$command" "$option")" "$current"
    elif [[ $current != -* && $kind ]]; then
        _nebtrace_complete "$kind" "$current"
    else
        word=$(_nebtrace_subcommands "$command")
        [[ $current == -* || ! $word ]] && word=$(_nebtrace_options "$command")
        mapfile -t COMPREPLY < <(compgen -W "$word" -- "$current")
    fi
}

complete -F _nebtrace nebtrace
)bash";

struct Cases
{
    std::string subcommands;
    std::string options;
    std::string values;
    std::string arguments;
};

std::string Case(std::string const& pattern, std::string const& answer)
{
    return "    " + pattern + ") echo '" + answer + "' ;;\n";
}

void AddCases(CLI::App const& app, std::string const& path, Cases& cases)
{
    std::string names;
    std::string subcommands;
    for (CLI::Option const* option : OptionsBehind(app))
        for (std::string const& name : NamesOf(*option))
        {
            names += (names.empty() ? "" : " ") + name;
            if (std::string const value = help::ValueName(*option); !value.empty())
                cases.values += Case("'" + path + ' ' + name + "'", value);
        }
    cases.options += Case("'" + path + "'", help::TakesApplication(app) ? names + " --" : names);
    std::size_t number = 0;
    for (CLI::Option const* positional : help::Positionals(app))
        cases.arguments +=
            Case("'" + path + ' ' + std::to_string(number++) + "'", help::ValueName(*positional));
    for (CLI::App const* sub : help::Subcommands(app))
    {
        subcommands += (subcommands.empty() ? "" : " ") + sub->get_name();
        AddCases(*sub, path + " " + sub->get_name(), cases);
    }
    if (!subcommands.empty())
        cases.subcommands += Case("'" + path + "'", subcommands);
}

std::string Function(std::string const& what, std::string const& name, std::string const& word,
                     std::string const& cases)
{
    return "\n# " + what + "\n" + name + "()\n{\n    case \"" + word + "\" in\n" + cases + "    esac\n}\n";
}
}  // namespace

std::string BashCompletion(CLI::App const& app)
{
    Cases cases;
    AddCases(app, app.get_name(), cases);
    return kBeginning + Function("Its subcommands.", "_nebtrace_subcommands", "$1", cases.subcommands) +
           Function("Its options.", "_nebtrace_options", "$1", cases.options) +
           Function("What the value of its option $2 is; nothing for a flag.", "_nebtrace_value", "$1 $2",
                    cases.values) +
           Function("What its argument is that $2 others are ahead of.", "_nebtrace_argument", "$1 $2",
                    cases.arguments) +
           kRest;
}
}  // namespace manual
