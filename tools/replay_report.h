// What `nebtrace replay` says and writes while it runs, and whether it all went well.
#pragma once
#include "player/player.h"
#include "progress_line.h"
#include <map>
#include <string>
#include <vector>

struct ReplayChoice
{
    std::string file;
    std::string frames;
    std::string out;
    std::string difference;
    bool verify = false;
    bool bench = false;
    bool checkQueries = false;
    bool window = false;
    bool json = false;
    unsigned loops = 1;
};

class ReplayReport
{
public:
    explicit ReplayReport(ReplayChoice const& choice);

    void Frame(nebtrace::player::ReplayedFrame const& frame);
    void Problem(nebtrace::player::Problem kind, nebtrace::player::Call const& call, std::string const& text);
    void Result(nebtrace::player::ReplayResult const& result);
    // `frame`: how many came before it in the file; `round`: of the loop, from 0.
    void Progress(uint64_t frame, uint64_t frames, unsigned round);
    // Throws CommandFailed if what was asked to be checked does not hold.
    void Finish();

private:
    struct Times
    {
        double least = 0;  // milliseconds
        double median = 0;
        double p99 = 0;
        double callsPerSecond = 0;
    };
    struct Different
    {
        uint64_t frame;
        uint64_t pixels;
        unsigned largest;
    };

    bool Compares() const { return m_choice.verify || !m_choice.difference.empty(); }
    uint64_t Problems(nebtrace::player::Problem kind) const;
    Times TimesOf() const;
    void Print(std::string const& failure) const;
    void PrintText(bool whole) const;
    void PrintJson(std::string const& failure) const;
    void WriteDifference(nebtrace::player::ReplayedFrame const& frame) const;

    ReplayChoice const& m_choice;
    uint64_t m_calls = 0;
    uint64_t m_callsInRange = 0;
    uint64_t m_frames = 0;
    uint64_t m_compared = 0;
    uint64_t m_differing = 0;
    std::map<nebtrace::player::Problem, uint64_t> m_problems;
    std::vector<double> m_times;
    std::vector<Different> m_different;  // for programs
    ProgressLine m_progress;
};
