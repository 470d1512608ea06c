#include "replay_report.h"
#include "commands.h"
#include "exit_codes.h"
#include "picture_file.h"
#include <algorithm>
#include <cinttypes>
#include <cmath>
#include <cstdio>
#include <nlohmann/json.hpp>

using Json = nlohmann::ordered_json;
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
    if (!frame.recorded || !Compares())
        return;
    ++m_compared;
    player::Difference const difference = Compare(*frame.recorded, frame.replayed);
    if (difference.pixels == 0)
        return;
    ++m_differing;
    m_progress.Clear();
    if (m_choice.json)
        m_different.push_back({frame.index, difference.pixels, difference.largest});
    else
        std::printf("frame %" PRIu64 " differs: %" PRIu64 " pixels, largest channel difference %u\n",
                    frame.index, difference.pixels, difference.largest);
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
        Print(result.failure);
        throw CommandFailed(m_choice.file + ": " + result.failure);
    }
}

uint64_t ReplayReport::Problems(player::Problem kind) const
{
    auto const found = m_problems.find(kind);
    return found == m_problems.end() ? 0 : found->second;
}

ReplayReport::Times ReplayReport::TimesOf() const
{
    std::vector<double> times = m_times;
    std::sort(times.begin(), times.end());
    auto const milliseconds = [&times](double share) {
        auto const last = static_cast<double>(times.size() - 1);
        return times[static_cast<size_t>(std::lround(share * last))] * 1000;
    };
    double sum = 0;
    for (double const time : times)
        sum += time;
    return {milliseconds(0), milliseconds(0.5), milliseconds(0.99),
            sum > 0 ? static_cast<double>(m_callsInRange) / sum : 0};
}

void ReplayReport::Print(std::string const& failure) const
{
    if (m_choice.json)
        PrintJson(failure);
    else
        PrintText(failure.empty());
    std::fflush(stdout);
}

void ReplayReport::PrintText(bool whole) const
{
    std::printf("%" PRIu64 " frames, %" PRIu64 " calls replayed\n", m_frames, m_calls);
    auto const print = [this](player::Problem kind, char const* what) {
        if (Problems(kind) != 0)
            std::printf("%" PRIu64 " %s\n", Problems(kind), what);
    };
    print(player::Problem::GlError, "errors that the recording did not have");
    print(player::Problem::NotReplayed, "calls not replayed as recorded");
    print(player::Problem::QueryDiffers, "queries answered otherwise");
    if (whole && !m_times.empty())
    {
        Times const times = TimesOf();
        std::printf("frame time: min %.3f ms, median %.3f ms, p99 %.3f ms\n", times.least, times.median,
                    times.p99);
        if (times.callsPerSecond > 0)
            std::printf("%.0f calls per second\n", times.callsPerSecond);
    }
    if (whole && Compares())
        std::printf("%" PRIu64 " frames compared, %" PRIu64 " differ\n", m_compared, m_differing);
}

void ReplayReport::PrintJson(std::string const& failure) const
{
    Json object = {{"file", m_choice.file},
                   {"frames", m_frames},
                   {"calls", m_calls},
                   {"new_errors", Problems(player::Problem::GlError)},
                   {"calls_not_replayed", Problems(player::Problem::NotReplayed)},
                   {"queries_different", Problems(player::Problem::QueryDiffers)}};
    object["compared"] = Compares() ? Json(m_compared) : Json(nullptr);
    object["different"] = Compares() ? Json::array() : Json(nullptr);
    for (Different const& each : m_different)
        object["different"].push_back(
            {{"frame", each.frame}, {"pixels", each.pixels}, {"largest_difference", each.largest}});
    object["times"] = nullptr;
    if (!m_times.empty())
    {
        Times const times = TimesOf();
        object["times"] = {{"min_ms", times.least},
                           {"median_ms", times.median},
                           {"p99_ms", times.p99},
                           {"calls_per_second", times.callsPerSecond}};
    }
    object["failure"] = failure.empty() ? Json(nullptr) : Json(failure);
    std::printf("%s\n", object.dump(2, ' ', true, Json::error_handler_t::replace).c_str());
}

void ReplayReport::Finish()
{
    Print({});
    if (m_choice.verify && m_compared == 0)
        throw CommandFailed(m_choice.file + ": no frame was recorded with its pixels, so none was "
                                            "verified; nebtrace record --save-frames keeps them");
    if (m_choice.verify && m_differing != 0)
        throw ExitWith{kExitFailure};
}
