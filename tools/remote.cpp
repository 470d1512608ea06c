// `nebtrace remote`: records from a running application over the network, and holds and releases it.
#include "commands.h"
#include "record.h"
#include "remote/progress.h"
#include "remote/session.h"
#include <CLI/CLI.hpp>
#include <cstdio>
#include <filesystem>
#include <memory>
#include <nlohmann/json.hpp>
#include <poll.h>
#include <unistd.h>

using Json = nlohmann::ordered_json;

namespace remote
{
namespace
{
struct Options
{
    std::string address;
    std::string output = "trace.nebt";
    uint64_t frames = 0;  // 0: no limit
    double seconds = 0;   // 0: no limit
    bool untilEnter = false;
    unsigned times = 1;
    bool wait = false;
    bool json = false;
    unsigned timeout = 10;  // seconds
};

// Whether Enter was pressed, or there is no more input to wait for it in.
bool EnterPressed()
{
    pollfd input{STDIN_FILENO, POLLIN, 0};
    char text[256];
    return poll(&input, 1, 0) > 0 && read(STDIN_FILENO, text, sizeof text) >= 0;
}

// Connected, and with a first word on the application's state.
class Client
{
public:
    explicit Client(Options const& options)
        : m_json(options.json), m_address(ParseAddress(options.address).value()),
          m_session(Connect(m_address, options.wait), std::chrono::seconds(options.timeout))
    {
        // Who waits for an application to come up also waits for its first call.
        while (options.wait && !m_session.KnowsState() && !Interrupted())
            m_session.Listen(kSlice);
        if (!m_session.KnowsState())
            m_session.AwaitState();
    }

    Session& operator*() { return m_session; }
    Session* operator->() { return &m_session; }
    void Say(std::string const& what) const
    {
        // A program that reads along is not told in words.
        std::fprintf(m_json ? stderr : stdout, "%s: %s\n", m_address.Text().c_str(), what.c_str());
        std::fflush(stdout);
    }
    void PrintState() const
    {
        Json const object = {{"address", m_address.Text()}, {"state", StateName(m_session.LastState())}};
        std::printf("%s\n", object.dump().c_str());
    }

private:
    InterruptWatch m_watch;
    bool m_json;
    Address m_address;
    Session m_session;
};

// FILE, FILE-2, FILE-3 ahead of the ending.
std::string NumberedFile(std::string const& file, unsigned number)
{
    if (number == 1)
        return file;
    std::filesystem::path path = file;
    path.replace_filename(path.stem().string() + "-" + std::to_string(number) + path.extension().string());
    return path.string();
}

class Recording
{
public:
    Recording(Client& client, Options const& options, std::string file)
        : m_client(client), m_options(options), m_stream(std::move(file))
    {
    }

    void Run();

private:
    void Follow();
    void Begin();
    bool IsOver() const;
    void End();
    void BeginAnew();
    void Report();

    Client& m_client;
    Options const& m_options;
    TraceStream m_stream;
    Clock::time_point m_began;
};

void Recording::Follow()
{
    Progress progress(m_stream.Path(), m_options.json);
    for (Begin(); !IsOver(); m_client->Listen(kSlice))
        progress.Show(m_client->LastState(), m_stream);
    End();
    progress.Show(m_client->LastState(), m_stream);
}

// An application that is held takes no start: it is let go on first. What another client began and did not
// end is ended, and is not this recording's.
void Recording::Begin()
{
    if (m_client->LastState() == State::Recording)
    {
        m_client.Say("a recording is on that another client began: it is stopped and dropped");
        m_client->Do(Command::Stop);
        m_client->Await([&] { return m_client->LastState() != State::Recording; },
                        "the other recording did not end");
    }
    if (IsHeld(m_client->LastState()))
        m_client->Release();
    m_client->Divert(&m_stream);
    m_client->Do(Command::Start);
    m_began = Clock::now();
}

bool Recording::IsOver() const
{
    bool const enough = m_options.frames != 0 && m_stream.Frames() >= m_options.frames;
    bool const late = m_options.seconds != 0 &&
                      std::chrono::duration<double>(Clock::now() - m_began).count() >= m_options.seconds;
    return enough || late || Interrupted() || !m_stream.Gap().empty() ||
           (m_options.untilEnter && EnterPressed());
}

// The recorder acknowledges first, and then writes the state and the footer.
void Recording::End()
{
    m_client->Do(Command::Stop);
    m_client->Await(
        [&] {
            bool const over = m_client->StatesHeard() > 1 && m_client->LastState() == State::Running;
            return m_stream.AtFooter() || over;
        },
        "the end of the recording did not come");
}

// What threads write behind the end of a recording stays with the recorder, and comes ahead of the next one's
// header. A stop brings it out, also where nothing is on to be stopped.
void Recording::BeginAnew()
{
    m_client.Say("the rest of another recording came first: it is dropped, and the recording begun anew");
    m_client->Divert(nullptr);
    m_client->Do(Command::Stop);
    m_stream.Close();
    m_stream = TraceStream(m_stream.Path());
    Follow();
}

void Recording::Report()
{
    m_client->Divert(nullptr);
    m_stream.Close();
    record::Summary const summary = record::Summarize(m_stream.Path());
    std::string const line = m_options.json
                                 ? summary.ToJson().dump(-1, ' ', true, Json::error_handler_t::replace)
                                 : summary.Line();
    std::printf("%s\n", line.c_str());
    if (m_client->Repeated() != 0)
        m_client.Say(std::to_string(m_client->Repeated()) + " packets were cut off and sent again");
    if (!m_stream.Gap().empty())
        throw CommandFailed(m_stream.Path() + ": " + m_stream.Gap() + "; record again");
}

void Recording::Run()
{
    bool lost = false;
    try
    {
        Follow();
        if (m_stream.LacksBeginning() && !Interrupted())
            BeginAnew();
    } catch (CommandFailed const& failed)
    {
        // An application that ends writes the recording's end on its way.
        lost = !m_stream.AtFooter();
        m_client.Say(failed.what());
    }
    Report();
    if (lost)
        throw CommandFailed(m_stream.Path() +
                            " has no end: it holds what came until then, and nebtrace repair "
                            "gives it one");
}

void Record(Options const& options)
{
    if (!ParseAddress(options.address))
        throw CLI::ValidationError("an address is HOST or HOST:PORT: " + options.address);
    Client client(options);
    for (unsigned number = 1; number <= options.times && !Interrupted(); ++number)
    {
        if (number > 1)
        {
            // What is left of the last one comes now, and not ahead of the next. What was last said of the
            // state may be from before its end.
            client->Do(Command::Stop);
            client->AwaitState();
        }
        Recording(client, options, NumberedFile(options.output, number)).Run();
    }
}

void ShowStatus(Options const& options)
{
    Client client(options);
    if (options.json)
        client.PrintState();
    else
        client.Say(StateName(client->LastState()));
}

// The hold ends with the connection, so that no client that dies leaves an application behind that hangs.
void Pause(Options const& options)
{
    Client client(options);
    client->Do(Command::Pause);
    client.Say(options.seconds != 0 ? "held" : "held; Enter lets it go on");
    Clock::time_point const began = Clock::now();
    auto const isOver = [&] {
        std::chrono::duration<double> const since = Clock::now() - began;
        return options.seconds != 0 ? since.count() >= options.seconds : EnterPressed();
    };
    while (!isOver() && !Interrupted())
        client->Listen(kSlice);
    client->Release();
    client.Say("goes on");
}

void Resume(Options const& options)
{
    Client client(options);
    client->Release();
    client.Say("goes on");
}

void Stop(Options const& options)
{
    Client client(options);
    if (client->LastState() != State::Recording)
        throw CommandFailed("no recording is on: the application is " +
                            std::string(StateName(client->LastState())));
    client->Do(Command::Stop);
    client->Await([&] { return client->LastState() != State::Recording; }, "the recording did not end");
    client.Say("the recording is stopped");
}

void AddRecord(CLI::App& remote, std::shared_ptr<Options> const& options)
{
    CLI::App* const command = remote.add_subcommand("record", "Record until told to stop, into a file here");
    command->add_option("-o,--output", options->output, "The trace file (default trace.nebt)")
        ->type_name("FILE");
    CLI::Option* const frames =
        command->add_option("--frames", options->frames, "Stop when this many frames have come")
            ->type_name("N")
            ->check(CLI::PositiveNumber);
    CLI::Option* const seconds = command->add_option("--seconds", options->seconds, "Stop after this time")
                                     ->type_name("SECONDS")
                                     ->check(CLI::PositiveNumber)
                                     ->excludes(frames);
    command->add_flag("--until-enter", options->untilEnter, "Stop when Enter is pressed, or input ends")
        ->excludes(frames)
        ->excludes(seconds);
    command
        ->add_option("--times", options->times,
                     "Record as often, one after the other, into FILE, FILE-2, ...")
        ->type_name("N")
        ->check(CLI::Range(1, 1000));
    command->add_flag("--json", options->json,
                      "Print an object for each recording when it is over, one a line");
    command->footer("Without a limit it records until Ctrl-C, or until the application ends.");
    command->callback([options] { Record(*options); });
}
}  // namespace
}  // namespace remote

void AddRemoteCommand(CLI::App& app)
{
    auto const options = std::make_shared<remote::Options>();
    CLI::App* const command =
        app.add_subcommand("remote", "Record from an application that runs under the recorder's server");
    command->add_option("ADDRESS", options->address, "HOST or HOST:PORT of the application")
        ->required()
        ->check([](std::string const& text) {
            return remote::ParseAddress(text) ? std::string() : "an address is HOST or HOST:PORT: " + text;
        });
    command->add_flag("--wait", options->wait, "Try again until the application is up");
    command->add_option("--timeout", options->timeout, "Seconds to wait for an answer (default 10)")
        ->type_name("SECONDS")
        ->check(CLI::Range(1, 3600));
    command->require_subcommand(1);
    command->fallthrough();
    remote::AddRecord(*command, options);
    CLI::App* const status = command->add_subcommand("status", "Tell whether it runs, records, or is held");
    status->add_flag("--json", options->json, "Print it as a JSON object");
    status->callback([options] { remote::ShowStatus(*options); });
    CLI::App* const pause = command->add_subcommand("pause", "Hold it until Enter is pressed");
    pause->add_option("--seconds", options->seconds, "Hold it for this time instead")
        ->type_name("SECONDS")
        ->check(CLI::PositiveNumber);
    pause->callback([options] { remote::Pause(*options); });
    command->add_subcommand("resume", "Let an application go on that waits for a client")
        ->callback([options] { remote::Resume(*options); });
    command->add_subcommand("stop", "End a recording that another client has left on")->callback([options] {
        remote::Stop(*options);
    });
}
