// `nebtrace doctor`: looks at what this machine has for recording and replaying, and says what is wrong.
#include "commands.h"
#include "doctor/checks.h"
#include "exit_codes.h"
#include <CLI/CLI.hpp>
#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <memory>
#include <nlohmann/json.hpp>

using Json = nlohmann::ordered_json;

namespace doctor
{
namespace
{
Findings CheckCommand()
{
    std::error_code error;
    std::string const path = std::filesystem::read_symlink("/proc/self/exe", error).string();
    return {{"nebtrace", Verdict::Ok, "version " NEBTRACE_VERSION ", " + path, {}, {{"path", path}}}};
}

constexpr Findings (*kChecks[])() = {CheckCommand, CheckHostLibraries, CheckDrivers,
                                     CheckDisplay, CheckFrontEnds,     CheckConfiguration,
                                     CheckFolders, CheckPorts,         CheckSharedMemory};

char const* NameOf(Verdict verdict)
{
    switch (verdict)
    {
    case Verdict::Ok:
        return "ok";
    case Verdict::Warning:
        return "warning";
    default:
        return "problem";
    }
}

std::string ToText(Finding const& finding)
{
    std::string text = NameOf(finding.verdict);
    text.resize(9, ' ');
    text += finding.check + ": " + finding.found + (finding.next.empty() ? "" : "; next: " + finding.next);
    // What the machine says is not trusted to be one line.
    std::replace_if(
        text.begin(), text.end(), [](char c) { return static_cast<unsigned char>(c) < ' '; }, ' ');
    return text;
}

Json ToJson(Finding const& finding)
{
    Json object = {{"check", finding.check}, {"verdict", NameOf(finding.verdict)}, {"found", finding.found}};
    object["next"] = finding.next.empty() ? Json(nullptr) : Json(finding.next);
    object["details"] = Json::object();
    for (auto const& [name, value] : finding.details)
        object["details"][name] = value;
    return object;
}

class Report
{
public:
    explicit Report(bool json) : m_json(json) {}

    // Each one when it is known: a driver that hangs takes its time.
    void Add(Finding const& finding)
    {
        m_problems += finding.verdict == Verdict::Problem ? 1 : 0;
        m_warnings += finding.verdict == Verdict::Warning ? 1 : 0;
        if (m_json)
            m_checks.push_back(ToJson(finding));
        else
            std::printf("%s\n", ToText(finding).c_str());
        std::fflush(stdout);
    }

    void Finish() const
    {
        if (m_json)
        {
            Json const object = {{"version", NEBTRACE_VERSION},
                                 {"problems", m_problems},
                                 {"warnings", m_warnings},
                                 {"checks", m_checks}};
            std::printf("%s\n", object.dump(2, ' ', true, Json::error_handler_t::replace).c_str());
        }
        else
            std::printf("%u %s, %u %s\n", m_problems, m_problems == 1 ? "problem" : "problems", m_warnings,
                        m_warnings == 1 ? "warning" : "warnings");
        std::fflush(stdout);
        if (m_problems != 0)
            throw ExitWith{kExitFailure};
    }

private:
    bool m_json;
    unsigned m_problems = 0;
    unsigned m_warnings = 0;
    Json m_checks = Json::array();
};

void Run(bool json)
{
    Report report(json);
    for (auto const check : kChecks)
        for (Finding const& finding : check())
            report.Add(finding);
    report.Finish();
}
}  // namespace
}  // namespace doctor

void AddDoctorCommand(CLI::App& app)
{
    auto const json = std::make_shared<bool>(false);
    CLI::App* const command =
        app.add_subcommand("doctor", "Look at what this machine has for recording, and say what is wrong");
    command->footer(
        "A line for each thing it looks at: ok, warning or problem, what was found, and what to do\n"
        "next. Run it in the folder, and with the environment, of the recording. With a problem\n"
        "the exit code is 1; warnings change nothing.");
    command->add_flag("--json", *json, "Print the same as one JSON object");
    command->callback([json] { doctor::Run(*json); });
}
