// `nebtrace record`: runs an application with the recorder between it and the machine's drivers.
#include "record.h"
#include "commands.h"
#include <CLI/CLI.hpp>
#include <cstdio>
#include <iostream>
#include <memory>
#include <nlohmann/json.hpp>

using Json = nlohmann::ordered_json;
namespace fs = std::filesystem;

namespace record
{
namespace
{
// Parses "A-B" or "N"; an empty result is no range.
std::optional<FrameRange> ParseFrames(std::string const& text)
{
    unsigned long first = 0;
    unsigned long last = 0;
    char rest = 0;
    int const found = std::sscanf(text.c_str(), "%10lu-%10lu%c", &first, &last, &rest);
    bool const single = text.find_first_not_of("0123456789") == std::string::npos;
    if (found == 1 && single)
        last = first;
    else if (found != 2)
        return std::nullopt;
    if (text.find_first_not_of("0123456789-") != std::string::npos || last < first || last > kLastFrame)
        return std::nullopt;
    return FrameRange{static_cast<int>(first), static_cast<int>(last)};
}

// What the run left, for people on standard error. Empty, or why it is no call.
std::string ReportOutcome(Options const& options, std::string const& config, TraceFiles const& files,
                          int code, Json& traces)
{
    uint64_t calls = 0;
    for (fs::path const& file : files.Written())
    {
        Summary const summary = Summarize(file);
        std::cerr << "nebtrace: " << summary.Line() << "\n";
        traces.push_back(summary.ToJson());
        calls += summary.calls;
    }
    std::string const nothing = calls != 0 ? std::string() : WhyNothing(options, config, files, code);
    if (!nothing.empty())
        std::cerr << "nebtrace: " << nothing << "\n";
    return nothing;
}

Json RunJson(Options const& options, int pid, int code)
{
    Json object = {{"command", options.command}};
    object["pid"] = pid != 0 ? Json(pid) : Json(nullptr);
    object["exit_code"] = code;
    object["traces"] = Json::array();
    object["nothing"] = nullptr;
    return object;
}

[[noreturn]] void Record(Options const& options)
{
    fs::path const frontEnds = FrontEndFolder();
    HostLibraries const host = FindHostLibraries(options.host, frontEnds);
    std::string const config = ConfigText(options, host);
    if (options.network)
        std::cerr << "nebtrace: recording is up to a client: nebtrace remote ADDRESS record\n";
    std::optional<JsonFile> json;
    if (!options.json.empty())
        json.emplace(options.json);
    TraceFiles const files(ConfigValue(config, "TraceFile").value());
    int code = 0;
    int pid = 0;
    {
        HeldSignals const signals;
        PlacedConfig const placed(fs::current_path() / "nebtrace.cfg", config, options.force);
        code = signals.RunApplication(options.command, frontEnds, pid);
    }
    bool const onDisk = !options.network || !options.output.empty();
    Json object = RunJson(options, pid, code);
    std::string nothing;
    if (pid == 0)
        nothing = "the application cannot be started";
    else if (onDisk)
        nothing = ReportOutcome(options, config, files, code, object["traces"]);
    if (!nothing.empty())
        object["nothing"] = nothing;
    if (json)
        json->Write(object);
    throw ExitWith{code};
}

std::string CheckFrames(std::string const& text)
{
    return ParseFrames(text) ? std::string() : "frames are A-B or N, counted from 0: " + text;
}
}  // namespace
}  // namespace record

void AddRecordCommand(CLI::App& app, std::vector<std::string> const& application)
{
    using record::Options;
    auto const options = std::make_shared<Options>();
    options->command = application;
    auto const frames = std::make_shared<std::string>();
    CLI::App* const command = app.add_subcommand("record", "Run an application and record its calls");
    command->footer("What follows -- is the application and its arguments:\n"
                    "  nebtrace record --frames 10-19 -o gears.nebt -- es2gears_x11 -fullscreen");
    command
        ->add_option("-o,--output", options->output,
                     "The trace file; %pid in it becomes the process ID (default trace.nebt)")
        ->type_name("FILE");
    CLI::Option* const range = command->add_option("--frames", *frames, "Record these frames only: A-B or N")
                                   ->type_name("FRAMES")
                                   ->check(record::CheckFrames);
    command->add_flag("--no-data", options->noData, "Leave the contents of arrays out");
    command->add_flag("--save-frames", options->saveFrames, "Keep the pixels of each frame");
    command->add_flag("--optimize", options->optimize, "Keep only the state that the frames use");
    command->add_flag("--flush-each-write", options->flushEachWrite,
                      "Write each record with a system call, instead of mapping the file");
    command->add_flag("--profile", options->profile, "Profile instead of recording");
    CLI::Option* const network =
        command
            ->add_flag("--network", options->network,
                       "Let a client record over the network; with -o into a file here as well")
            ->excludes(range);
    command->add_flag("--wait", options->networkWait, "Hold the application until a client lets it go on")
        ->needs(network);
    command->add_option("--config", options->config, "Start from this configuration file")
        ->type_name("FILE")
        ->check(CLI::ExistingFile);
    command->add_flag("--force", options->force, "Set an existing nebtrace.cfg aside for the run");
    command
        ->add_option("--json", options->json,
                     "At the end, write what was recorded into this file as one JSON object; - for standard "
                     "output, behind what the application wrote")
        ->type_name("FILE");
    command->add_option("--host-egl", options->host.egl, "The machine's EGL library")->type_name("FILE");
    command->add_option("--host-gles1", options->host.es1, "The machine's OpenGL ES 1 library")
        ->type_name("FILE");
    command->add_option("--host-gles2", options->host.es2, "The machine's OpenGL ES 2 library")
        ->type_name("FILE");
    command->add_flag("-v,--verbose", options->verbosity,
                      "Let the recorder tell what it does; more with -vv");
    command->callback([options, frames] {
        if (options->command.empty())
            throw CLI::RequiredError("-- APP ARGS...");
        if (!frames->empty())
            options->frames = record::ParseFrames(*frames);
        record::Record(*options);
    });
}
