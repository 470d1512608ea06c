#include "replay_report.h"
#include "commands.h"
#include "exit_codes.h"
#include "picture_file.h"
#include <algorithm>
#include <cinttypes>
#include <cmath>
#include <cstdio>

using namespace nebtrace;

ReplayReport::ReplayReport(ReplayChoice const& choice) : m_choice(choice)
{
    for (std::string const& folder : {choice.out, choice.difference})
        if (!folder.empty())
            MakeFolder(folder);
}

void ReplayReport::Frame(player::ReplayedFrame const& frame)
{
    std::string const name = FrameName(frame.index);
    if (!m_choice.out.empty())
        WritePicture(m_choice.out + "/" + name + ".png", frame.replayed);
    if (!frame.recorded || !(m_choice.verify || !m_choice.difference.empty()))
        return;
    ++m_compared;
    player::Difference const difference = Compare(*frame.recorded, frame.replayed);
    if (difference.pixels == 0)
        return;
    ++m_differing;
    m_progress.Clear();
    std::printf("frame %" PRIu64 " differs: %" PRIu64 " pixels, largest channel difference %u\n", frame.index,
                difference.pixels, difference.largest);
    if (!m_choice.difference.empty())
        WriteDifference(frame);
}

void ReplayReport::WriteDifference(player::ReplayedFrame const& frame) const
{
    std::string const base = m_choice.difference + "/" + FrameName(frame.index);
    WritePicture(base + "_recorded.png", *frame.recorded);
    WritePicture(base + "_replayed.png", frame.replayed);
    WritePicture(base + "_difference.png", DifferencePicture(*frame.recorded, frame.replayed));
}

void ReplayReport::Problem(player::Problem kind, player::Call const& call, std::string const& text)
{
    ++m_problems[kind];
    std::string const head = "call " + std::to_string(call.Number()) + " " + call.Name() + ": ";
    std::string line = head + "not replayed: " + text;
    if (kind == player::Problem::GlError)
        line = head + "the replay raised " + text + ", the recording did not";
    else if (kind == player::Problem::QueryDiffers)
        line = head + "answered otherwise: " + text;
    m_progress.Clear();
    std::fprintf(stderr, "%s\n", line.c_str());
}

void ReplayReport::Progress(uint64_t frame, uint64_t frames, unsigned round)
{
    if (!m_progress.IsDue())
        return;
    std::string text = "replaying " + m_choice.file + ": frame " + std::to_string(frame + 1) + " of " +
                       std::to_string(frames);
    if (m_choice.loops > 1)
        text += ", round " + std::to_string(round + 1) + " of " + std::to_string(m_choice.loops);
    m_progress.Show(text);
}

void ReplayReport::Result(player::ReplayResult const& result)
{
    m_progress.Clear();
    m_calls += result.calls;
    m_callsInRange += result.callsInRange;
    m_frames += result.frames;
    m_times.insert(m_times.end(), result.frameTimes.begin(), result.frameTimes.end());
    if (!result.failure.empty())
    {
        PrintCounts();
        throw CommandFailed(m_choice.file + ": " + result.failure);
    }
}

void ReplayReport::PrintCounts() const
{
    std::printf("%" PRIu64 " frames, %" PRIu64 " calls replayed\n", m_frames, m_calls);
    auto const print = [this](player::Problem kind, char const* what) {
        auto const found = m_problems.find(kind);
        if (found != m_problems.end())
            std::printf("%" PRIu64 " %s\n", found->second, what);
    };
    print(player::Problem::GlError, "errors that the recording did not have");
    print(player::Problem::NotReplayed, "calls not replayed as recorded");
    print(player::Problem::QueryDiffers, "queries answered otherwise");
}

void ReplayReport::PrintTimes()
{
    if (m_times.empty())
        return;
    std::sort(m_times.begin(), m_times.end());
    auto const milliseconds = [this](double share) {
        auto const last = static_cast<double>(m_times.size() - 1);
        return m_times[static_cast<size_t>(std::lround(share * last))] * 1000;
    };
    double sum = 0;
    for (double const time : m_times)
        sum += time;
    std::printf("frame time: min %.3f ms, median %.3f ms, p99 %.3f ms\n", milliseconds(0), milliseconds(0.5),
                milliseconds(0.99));
    if (sum > 0)
        std::printf("%.0f calls per second\n", static_cast<double>(m_callsInRange) / sum);
}

void ReplayReport::Finish()
{
    PrintCounts();
    if (m_choice.bench)
        PrintTimes();
    bool const compares = m_choice.verify || !m_choice.difference.empty();
    if (compares)
        std::printf("%" PRIu64 " frames compared, %" PRIu64 " differ\n", m_compared, m_differing);
    std::fflush(stdout);
    if (m_choice.verify && m_compared == 0)
        throw CommandFailed(m_choice.file + ": no frame was recorded with its pixels, so none was "
                                            "verified; nebtrace record --save-frames keeps them");
    if (m_choice.verify && m_differing != 0)
        throw ExitWith{kExitFailure};
}
