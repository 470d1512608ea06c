#include "manual/man_pages.h"
#include "help.h"
#include "manual/config_keys.h"
#include "manual/roff.h"
#include <algorithm>
#include <fstream>
#include <iterator>
#include <sstream>

namespace manual
{
namespace
{
constexpr char kConfiguration[] = "nebtrace.cfg";

struct Prose
{
    std::string description;
    std::string sections;
};

struct ExitCode
{
    std::string command;
    std::string code;
    std::string meaning;
};

std::vector<ExitCode> ExitCodes()
{
    return {
#define EXIT_CODE(command, code, meaning) {command, code, meaning},
#include "exit_codes.def"
#undef EXIT_CODE
    };
}

Prose ReadProse(std::string const& folder, std::string const& page)
{
    std::ifstream file(folder + "/" + page + ".md");
    std::string const text{std::istreambuf_iterator<char>(file), {}};
    std::size_t const section = text.find("\n# ");
    if (section == std::string::npos)
        return {text, {}};
    return {text.substr(0, section + 1), text.substr(section + 1)};
}

std::string Lowered(std::string text)
{
    bool const word = text.size() > 1 && std::islower(static_cast<unsigned char>(text[1]));
    if (word)
        text[0] = static_cast<char>(std::tolower(static_cast<unsigned char>(text[0])));
    return text;
}

std::string Heading(std::string const& name, char section, std::string const& description)
{
    std::string title = name;
    std::transform(title.begin(), title.end(), title.begin(),
                   [](unsigned char c) { return static_cast<char>(std::toupper(c)); });
    return ".TH " + Escaped(title) + " " + section + " \"\" \"nebtrace " + Escaped(NEBTRACE_VERSION) +
           "\" \"NEBTrace\"\n.nh\n.ad l\n" + Section("NAME") + Escaped(name) + " \\- " +
           Escaped(Lowered(description)) + "\n";
}

// What is typed as it stands is bold, what stands for something else italic: "[OPTIONS]", "-- APP [ARG...]".
std::string Styled(std::string const& synopsis)
{
    std::istringstream words(synopsis);
    std::string styled;
    for (std::string word; words >> word;)
    {
        bool const literal = std::islower(static_cast<unsigned char>(word[0])) || word[0] == '-';
        styled += (styled.empty() ? "" : " ") + (literal ? Bold(word) : Italic(word));
    }
    return styled;
}

// A footer's examples are indented by less than Markdown's.
std::string FooterText(CLI::App const& app)
{
    std::istringstream lines(app.get_footer());
    std::string text;
    for (std::string line; std::getline(lines, line);)
        text += line.substr(0, 2) == "  " ? "\n    " + line.substr(2) + "\n" : line + "\n";
    return text;
}

std::string OptionTerm(CLI::Option const& option)
{
    std::string term;
    for (std::string const& name : option.get_snames())
        term += (term.empty() ? "" : ", ") + Bold("-" + name);
    for (std::string const& name : option.get_lnames())
        term += (term.empty() ? "" : ", ") + Bold("--" + name);
    std::string const value = help::ValueName(option);
    return value.empty() ? term : term + " " + Italic(value);
}

std::string OptionItems(CLI::App const& app)
{
    std::string text;
    for (CLI::Option const* option : help::Positionals(app))
        text += Item(Italic(option->get_name(true)), help::Description(*option));
    for (CLI::Option const* option : help::Options(app))
        text += Item(OptionTerm(*option), help::Description(*option));
    return text;
}

std::string Reference(std::string const& name, char section) { return Bold(name) + "(" + section + ")"; }

std::string PageName(CLI::App const& app)
{
    return app.get_parent() ? PageName(*app.get_parent()) + "-" + app.get_name() : app.get_name();
}

std::string ExitStatus(std::string const& command)
{
    std::vector<ExitCode> lines;
    for (ExitCode const& line : ExitCodes())
    {
        auto const same = [&line](ExitCode const& other) { return other.code == line.code; };
        bool const said = std::any_of(lines.begin(), lines.end(), same);
        bool const applications = command == "record" && line.code == "0";
        bool const common = line.command.empty() && !said && !applications;
        if (common || (line.command == command && !command.empty()))
            lines.push_back(line);
    }
    std::string text = Section("EXIT STATUS");
    for (ExitCode const& line : lines)
        text += Item(Bold(line.code), line.meaning);
    return text;
}

// Those of a subcommand's own subcommands stand on its page.
std::string Subcommands(CLI::App const& app)
{
    std::string text;
    for (CLI::App const* sub : help::Subcommands(app))
    {
        text += Subsection(Styled(help::Synopsis(*sub)));
        text += Escaped(sub->get_description()) + ".\n" + FromMarkdown(FooterText(*sub)) + OptionItems(*sub);
    }
    return text.empty() ? text : Section("SUBCOMMANDS") + text;
}

std::string Synopses(CLI::App const& app)
{
    std::string text = Section("SYNOPSIS");
    std::vector<CLI::App const*> const subcommands = help::Subcommands(app);
    if (subcommands.empty())
        return text + Styled(help::Usage(app)) + "\n";
    for (CLI::App const* sub : subcommands)
        text += Styled(help::Usage(*sub)) + "\n.br\n";
    return text;
}

Page CommandPage(CLI::App const& app, std::string const& folder)
{
    std::string const name = PageName(app);
    Prose const prose = ReadProse(folder, name);
    std::string text = Heading(name, '1', app.get_description()) + Synopses(app) + Section("DESCRIPTION");
    text +=
        prose.description.empty() ? Escaped(app.get_description()) + ".\n" : FromMarkdown(prose.description);
    text += FromMarkdown(FooterText(app)) + Section("OPTIONS") + OptionItems(app) + Subcommands(app);
    text += ExitStatus(app.get_name()) + FromMarkdown(prose.sections) + Section("SEE ALSO");
    return {name, '1', text + Reference("nebtrace", '1') + ", " + Reference(kConfiguration, '5') + "\n"};
}

Page MainPage(CLI::App const& app, std::string const& folder)
{
    std::string const& name = app.get_name();
    Prose const prose = ReadProse(folder, name);
    std::string text = Heading(name, '1', app.get_description()) + Synopses(app) + Section("DESCRIPTION") +
                       FromMarkdown(prose.description) + Section("SUBCOMMANDS");
    std::string references;
    for (CLI::App const* sub : help::Subcommands(app))
    {
        text += Item(Reference(PageName(*sub), '1'), sub->get_description());
        references += Reference(PageName(*sub), '1') + ",\n";
    }
    text += Section("OPTIONS") + OptionItems(app) + ExitStatus("") + FromMarkdown(prose.sections);
    return {name, '1', text + Section("SEE ALSO") + references + Reference(kConfiguration, '5') + "\n"};
}

std::string KeyItems()
{
    std::string text;
    std::string group;
    for (ConfigKey const& key : ConfigKeys())
    {
        if (group != key.group)
            text += Subsection("[" + Escaped(group = key.group) + "]");
        std::string const initial = *key.initial ? std::string(", default ") + key.initial : std::string();
        text += Item(Bold(key.name) + " = " + Italic(key.value) + Escaped(initial), key.effect);
    }
    return text;
}

Page ConfigurationPage(std::string const& folder)
{
    Prose const prose = ReadProse(folder, kConfiguration);
    std::string const text =
        Heading(kConfiguration, '5', "settings of the recorder of EGL and OpenGL ES calls") +
        Section("DESCRIPTION") + FromMarkdown(prose.description) + Section("KEYS") + KeyItems() +
        FromMarkdown(prose.sections) + Section("SEE ALSO") + Reference("nebtrace", '1') + ", " +
        Reference("nebtrace-record", '1') + "\n";
    return {kConfiguration, '5', text};
}
}  // namespace

std::vector<Page> ManPages(CLI::App const& app, std::string const& prose)
{
    std::vector<Page> pages = {MainPage(app, prose), ConfigurationPage(prose)};
    for (CLI::App const* sub : help::Subcommands(app))
        pages.push_back(CommandPage(*sub, prose));
    return pages;
}
}  // namespace manual
