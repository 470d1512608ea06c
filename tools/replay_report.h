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
    void PrintCounts() const;
    void PrintTimes();
    void WriteDifference(nebtrace::player::ReplayedFrame const& frame) const;

    ReplayChoice const& m_choice;
    uint64_t m_calls = 0;
    uint64_t m_callsInRange = 0;
    uint64_t m_frames = 0;
    uint64_t m_compared = 0;
    uint64_t m_differing = 0;
    std::map<nebtrace::player::Problem, uint64_t> m_problems;
    std::vector<double> m_times;
    ProgressLine m_progress;
};
