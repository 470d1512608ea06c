// Frames as text, for files, scripts and pipes.
#pragma once
#include "tools/perf/frames.h"
#include <chrono>
#include <cstdio>
#include <map>

namespace perf
{
// Who drew a frame, and what its counters are called.
struct Source
{
    uint32_t process = 0;
    std::string name;  // of the program; may be empty
    std::vector<std::string> const& counterNames;
};

// With line ends.
std::string CsvHeader(std::vector<std::string> const& counterNames);
std::string CsvLine(Source const& source, Frame const& frame);
std::string JsonLine(Source const& source, Frame const& frame);
// "frame 60: 59.9 frames/s, CPU driver time 812 us a frame; Indexed draw calls 6, ...", without those of 0.
std::string PlainText(Source const& source, Frame const& frame, FrameRate const& rate);

class CsvFile
{
public:
    // Throws CommandFailed.
    explicit CsvFile(std::string path);
    ~CsvFile();
    CsvFile(CsvFile const&) = delete;
    CsvFile& operator=(CsvFile const&) = delete;

    // Throw CommandFailed when something could not be written.
    // A new header goes ahead of a frame whose counters have other names than those before it.
    void Write(Source const& source, Frame const& frame);
    void Flush();

private:
    void Check(bool written) const;

    std::string m_path;
    std::FILE* m_file;
    std::vector<std::string> m_header;
};

// At most one line a second for each application.
class PlainLines
{
public:
    // Whether this frame's line is due.
    bool IsDue(uint32_t process);

private:
    std::map<uint32_t, std::chrono::steady_clock::time_point> m_last;
};
}  // namespace perf
