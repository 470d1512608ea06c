// `nebtrace perf`: the performance server. Shows what applications under the profiler do in each frame, and
// switches their overrides.
#include "commands.h"
#include "exit_codes.h"
#include "perf/output.h"
#include "perf/server.h"
#include "perf/terminal.h"
#include <CLI/CLI.hpp>
#include <cerrno>
#include <csignal>
#include <cstring>
#include <memory>
#include <nlohmann/json.hpp>
#include <poll.h>
#include <unistd.h>

using Json = nlohmann::ordered_json;

namespace perf
{
namespace
{
using Clock = std::chrono::steady_clock;

// There is nothing to wait on in shared memory. At most so long stays unseen what an application has written.
constexpr int kIdleMilliseconds = 2;
constexpr std::chrono::milliseconds kDrawPeriod{100};

struct Options
{
    std::string csv;
    bool json = false;
    std::vector<std::string> settings;
    uint64_t frames = 0;  // 0: no limit
    bool list = false;
    double timeout = 0;  // seconds; 0: none
};

// Thrown where nobody reads standard output any more: who did has what they wanted.
struct OutputClosed
{
};

class Perf : public Listener
{
public:
    explicit Perf(Options const& options);

    void Run();

    void OnDescribed(Session& session) override;
    void OnFrame(Session& session, Frame const& frame) override;
    void OnMark(Session& session, std::string const& text) override;
    void OnEnded(Session& session) override;

private:
    bool IsOver() const;
    void CheckPatience();
    std::vector<Change> ChangesFor(Session const& session, std::vector<std::string>& faults);
    void Set(Session& session, Change const& change);
    void List(Session const& session);
    void Say(std::string const& what);
    void Print(std::string const& text);
    static void CheckPrinted(bool printed);
    void Flush();
    void Draw();
    void FollowKeys();
    void FollowKey(char key);
    void ShowNext();

    Options const& m_options;
    std::vector<Setting> m_settings;
    SignalWatch m_signals;
    std::unique_ptr<CsvFile> m_csv;
    Server m_server;
    std::unique_ptr<Terminal> m_terminal;  // with a view
    PlainLines m_lines;
    Session* m_shown = nullptr;
    std::string m_message;
    uint64_t m_frames = 0;
    bool m_settled = false;  // the first application has all that is to be set
    bool m_listed = false;
    bool m_quit = false;
    Clock::time_point m_lastDraw;
    Clock::time_point m_lastApplication = Clock::now();
};

std::vector<Setting> SettingsOf(std::vector<std::string> const& texts)
{
    std::vector<Setting> settings;
    for (std::string const& text : texts)
        settings.push_back(ParseSetting(text).value());
    return settings;
}

Perf::Perf(Options const& options)
    : m_options(options), m_settings(SettingsOf(options.settings)),
      m_csv(options.csv.empty() ? nullptr : std::make_unique<CsvFile>(options.csv))
{
    if (!options.json && !options.list && Terminal::IsThere())
        m_terminal = std::make_unique<Terminal>();
}

bool Perf::IsOver() const
{
    return SignalWatch::EndAsked() != 0 || m_listed || m_quit ||
           (m_options.frames != 0 && m_frames >= m_options.frames);
}

void Perf::Run()
{
    while (!IsOver())
    {
        bool const came = m_server.Turn(*this);
        if (m_terminal)
            FollowKeys();
        Flush();
        CheckPatience();
        if (IsOver() || came)
            continue;
        pollfd input{STDIN_FILENO, POLLIN, 0};
        poll(&input, m_terminal ? 1 : 0, kIdleMilliseconds);
    }
    m_terminal.reset();
    if (int const signal = SignalWatch::EndAsked(); signal != 0 && m_frames < m_options.frames)
        throw ExitWith{kExitSignal + signal};
}

// Those that take a ticket and never speak are no company.
void Perf::CheckPatience()
{
    for (Session const& session : m_server.Sessions())
        if (session.GetState() != Session::State::Silent)
            m_lastApplication = Clock::now();
    std::chrono::duration<double> const alone = Clock::now() - m_lastApplication;
    if (m_options.timeout == 0 || alone.count() < m_options.timeout || IsOver())
        return;
    std::string const came = m_options.frames == 0 ? std::string()
                                                   : ": " + std::to_string(m_frames) + " of " +
                                                         std::to_string(m_options.frames) + " frames came";
    throw CommandFailed("no application" + came + "; nebtrace record --profile -- APP starts one");
}

void Perf::OnDescribed(Session& session)
{
    std::vector<std::string> faults;
    std::vector<Change> const changes = ChangesFor(session, faults);
    if (m_options.list)
        List(session);
    Say(session.Title() + ": connected");
    for (Change const& change : changes)
        Set(session, change);
    for (std::string const& fault : faults)
        Say(session.Title() + ": " + fault);
    m_shown = &session;
}

// All settings are looked at before the first one goes out: one that is wrong for the first application is a
// mistake of the user's, and changes nothing. Another application may lack an item, and has the rest of them.
std::vector<Change> Perf::ChangesFor(Session const& session, std::vector<std::string>& faults)
{
    std::vector<Change> changes;
    for (Setting const& setting : m_settings)
        try
        {
            changes.push_back(Resolve(setting, session.Items()));
        } catch (CommandFailed const& error)
        {
            if (!m_settled)
                throw;
            faults.emplace_back(error.what());
        }
    m_settled = true;
    return changes;
}

void Perf::Set(Session& session, Change const& change)
{
    if (!session.Set(change))
        Say(session.Title() + ": the value of " + ShortName(session.Items()[change.index]) +
            " is too long to be changed");
}

// Without the values of items that people do not see either.
std::string ItemsJson(std::vector<Item> const& items)
{
    Json list = Json::array();
    for (Item const& item : items)
    {
        list.push_back({{"name", ShortName(item)}, {"value", ValueText(item)}});
        list.back()["choices"] = IsList(item) ? Json(ChoicesOf(item)) : Json(nullptr);
    }
    return list.dump(2, ' ', true, Json::error_handler_t::replace);
}

void Perf::List(Session const& session)
{
    if (m_listed)
        return;
    m_listed = true;
    if (m_options.json)
        return Print(ItemsJson(session.Items()) + "\n");
    for (Item const& item : session.Items())
    {
        std::string choices;
        for (std::string const& choice : IsList(item) ? ChoicesOf(item) : std::vector<std::string>())
            choices += (choices.empty() ? " (" : ", ") + Printable(choice);
        Print(ShortName(item) + " = " + ValueText(item) + choices + (choices.empty() ? "\n" : ")\n"));
    }
}

void Perf::OnFrame(Session& session, Frame const& frame)
{
    if (IsOver())
        return;
    ++m_frames;
    Source const source{session.GetProcess().Id(), session.GetProcess().Name(), session.CounterNames()};
    if (m_csv)
        m_csv->Write(source, frame);
    if (m_options.json)
        Print(JsonLine(source, frame));
    else if (!m_terminal && (m_lines.IsDue(source.process) || IsOver()))
        Print(session.Title() + ": " + PlainText(source, frame, session.Rate()) + "\n");
}

void Perf::OnMark(Session& session, std::string const& text) { Say(session.Title() + ": mark: " + text); }

void Perf::OnEnded(Session& session)
{
    if (m_shown == &session)
        ShowNext();
    if (m_shown == &session)
        m_shown = nullptr;
    std::string const after = " after " + std::to_string(session.Frames()) + " frames";
    if (session.GetState() == Session::State::Broken)
        Say(session.Title() + ": dropped" + after + ": " + session.Fault());
    else if (session.CounterNames().empty())
        return;  // it never described itself
    else if (session.GetState() == Session::State::Gone)
        Say(session.Title() + ": gone without a word" + after + ": it was killed, or crashed");
    else
        Say(session.Title() + ": ended" + after);
}

void Perf::Say(std::string const& what)
{
    m_message = what;
    if (!m_terminal)
        std::fprintf(stderr, "nebtrace: %s\n", Printable(what).c_str());
}

void Perf::Flush()
{
    if (m_csv)
        m_csv->Flush();
    if (m_terminal)
        Draw();
    else
        CheckPrinted(std::fflush(stdout) == 0);
}

void Perf::Print(std::string const& text)
{
    CheckPrinted(std::fwrite(text.data(), 1, text.size(), stdout) == text.size());
}

// A signal that asks for the end breaks a write off as well.
void Perf::CheckPrinted(bool printed)
{
    if (printed)
        return;
    if (errno == EPIPE || SignalWatch::EndAsked() != 0)
        throw OutputClosed{};
    throw CommandFailed(std::string("standard output: ") + std::strerror(errno));
}

void Perf::Draw()
{
    if (SignalWatch::StopAsked())
        m_terminal->Stop();
    if (Clock::now() - m_lastDraw < kDrawPeriod)
        return;
    m_lastDraw = Clock::now();
    m_terminal->Draw(Compose(m_server.Sessions(), m_shown, m_message, m_terminal->GetSize()));
}

void Perf::FollowKeys()
{
    for (char const key : m_terminal->Keys())
        FollowKey(key);
}

void Perf::FollowKey(char key)
{
    if (key == 'q')
        m_quit = true;
    if (key == '\t')
        ShowNext();
    if (!m_shown)
        return;
    std::vector<Item> const items = m_shown->Items();
    std::string const keys = KeysOf(items);
    for (uint32_t i = 0; i < keys.size(); ++i)
    {
        if (key == '0' && keys[i] != ' ' && PutOff(items[i]) != items[i].value)
            Set(*m_shown, {i, PutOff(items[i])});
        if (key != ' ' && key == keys[i])
            Set(*m_shown, {i, Toggled(items[i])});
    }
    m_lastDraw = {};
}

// The next one that has described itself; the one shown, if there is no other.
void Perf::ShowNext()
{
    std::vector<Session*> profiling;
    size_t next = 0;
    for (Session& session : m_server.Sessions())
    {
        if (&session == m_shown)
            next = profiling.size() + 1;
        if (&session == m_shown || session.GetState() == Session::State::Profiling)
            profiling.push_back(&session);
    }
    if (!profiling.empty())
        m_shown = profiling[next % profiling.size()];
}

void RunPerf(Options const& options)
{
    try
    {
        Perf(options).Run();
    } catch (OutputClosed const&)
    {
        throw ExitWith{kExitSignal + (SignalWatch::EndAsked() != 0 ? SignalWatch::EndAsked() : SIGPIPE)};
    }
}
}  // namespace
}  // namespace perf

void AddPerfCommand(CLI::App& app)
{
    auto const options = std::make_shared<perf::Options>();
    CLI::App* const command =
        app.add_subcommand("perf", "Show what applications do in each frame, and switch their overrides");
    command->footer(
        "Applications are started with `nebtrace record --profile -- APP`, before or after this.\n"
        "It ends with q or Ctrl-C. A connection's first block of counters is what its frames are\n"
        "counted from, and no frame.");
    command->add_option("--csv", options->csv, "Write a line for each frame into this file")
        ->type_name("FILE");
    command->add_flag("--json", options->json,
                      "Print an object for each frame, one a line; with --list the items as one list");
    command
        ->add_option("--set", options->settings,
                     "Set an item of every application that comes; see --list. Repeatable")
        ->type_name("NAME=VALUE")
        ->check([](std::string const& text) {
            return perf::ParseSetting(text) ? std::string() : "a setting is NAME=VALUE: " + text;
        })
        ->take_all()
        ->expected(1)
        ->allow_extra_args(false);
    command->add_option("--frames", options->frames, "End when this many frames have come")
        ->type_name("N")
        ->check(CLI::PositiveNumber);
    command->add_flag("--list", options->list, "Print the items of the first application, and end");
    command
        ->add_option("--timeout", options->timeout, "Give up after this many seconds without an application")
        ->type_name("SECONDS")
        ->check(CLI::PositiveNumber);
    command->callback([options] { perf::RunPerf(*options); });
}
