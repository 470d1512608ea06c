// `nebtrace replay`: a trace on the machine's own driver.
#include "commands.h"
#include "dump_options.h"
#include "replay_report.h"
#include "trace_fault.h"
#include <CLI/CLI.hpp>
#include <algorithm>
#include <iostream>

using namespace nebtrace;

namespace
{
player::ReplayOptions OptionsOf(ReplayChoice const& choice)
{
    player::ReplayOptions options;
    Range range;
    ParseRange(choice.frames, range);
    options.firstFrame = range.first;
    options.lastFrame = range.last;
    options.window = choice.window;
    options.checkQueries = choice.checkQueries;
    options.checkErrors = !choice.bench;
    options.timeFrames = choice.bench;
    options.readFrames = choice.verify || !choice.out.empty() || !choice.difference.empty();
    return options;
}

// What the walk over the file tells, before anything is replayed.
void ReportEnd(std::string const& file, player::Survey const& survey)
{
    std::string const place = "at offset " + std::to_string(survey.endOffset);
    if (survey.end == EndState::NoFooter)
        std::cerr << file << ": the recording was not closed: there is no footer " << place
                  << "; replaying up to there\n";
    else if (survey.end == EndState::Truncated)
        std::cerr << file << ": " << place << ": " << survey.endReason
                  << "; replaying up to the last whole record\n";
}

void RunReplay(ReplayChoice const& choice)
{
    player::Survey survey;
    std::string error;
    if (!TakeSurvey(choice.file, survey, error))
        throw CommandFailed(error);
    std::string const damage = TraceFault(choice.file, survey.end, survey.endOffset, survey.endReason);
    bool const headless = survey.endOffset < kHeaderSize;
    if (headless)
        throw CommandFailed(damage);
    ReportEnd(choice.file, survey);
    ReplayReport report(choice);
    player::ReplayOptions const options = OptionsOf(choice);
    player::ReplayEvents events;
    events.frame = [&report](player::ReplayedFrame const& frame) { report.Frame(frame); };
    events.problem = [&report](player::Problem kind, player::Call const& call, std::string const& text) {
        report.Problem(kind, call, text);
    };
    unsigned loop = 0;
    uint64_t const frames =
        std::min(survey.frames, options.lastFrame == UINT64_MAX ? UINT64_MAX : options.lastFrame + 1);
    events.progress = [&](uint64_t frame) { report.Progress(frame, frames, loop); };
    for (; loop < choice.loops; ++loop)
        report.Result(Replay(choice.file, survey, options, events));
    report.Finish();
    if (survey.end == EndState::Damaged)
        throw CommandFailed(damage);
}
}  // namespace

void AddReplayCommand(CLI::App& app)
{
    auto const choice = std::make_shared<ReplayChoice>();
    CLI::App* const replay = app.add_subcommand("replay", "Replay a trace on this machine's driver");
    replay->add_option("FILE", choice->file, "The trace")->required();
    replay->add_flag("--verify", choice->verify,
                     "Compare each frame with the recorded one; exit code 1 if any differs");
    replay->add_option("--out", choice->out, "Write the replayed frames to this folder as PNG files")
        ->type_name("DIR");
    replay
        ->add_option("--diff", choice->difference,
                     "Write frames that differ to this folder: recorded, replayed, and their difference")
        ->type_name("DIR");
    replay
        ->add_option("--frames", choice->frames,
                     "Compare, write and time only these frames of the file: A-B, A- or A")
        ->type_name("FRAMES")
        ->check(CheckRange);
    replay->add_option("--loop", choice->loops, "Replay this many times, each from an empty context")
        ->type_name("N")
        ->check(CLI::Range(1, 1000000));
    replay->add_flag("--bench", choice->bench, "Print how long frames take; errors are not looked for");
    replay->add_flag("--check-queries", choice->checkQueries,
                     "Make the recorded queries too, and compare what they answer");
    replay->add_flag("--window", choice->window, "Show windows on the X display");
    replay->add_flag("--json", choice->json, "Print the result as one JSON object");
    replay->callback([choice] { RunReplay(*choice); });
}
