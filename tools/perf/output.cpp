#include "tools/perf/output.h"
#include "tools/commands.h"
#include "tools/perf/items.h"
#include <cerrno>
#include <cstring>
#include <nlohmann/json.hpp>

namespace perf
{
namespace
{
constexpr std::chrono::seconds kLinePeriod{1};

std::string CsvField(std::string const& text)
{
    if (text.find_first_of(",\"\r\n") == std::string::npos)
        return text;
    std::string quoted = "\"";
    for (char const c : text)
        quoted += c == '"' ? std::string("\"\"") : std::string(1, c);
    return quoted + "\"";
}

nlohmann::ordered_json ByName(std::vector<std::string> const& names, std::vector<uint32_t> const& values)
{
    nlohmann::ordered_json object = nlohmann::ordered_json::object();
    for (size_t i = 0; i < names.size() && i < values.size(); ++i)
        object[names[i]] = values[i];
    return object;
}
}  // namespace

std::string CsvHeader(std::vector<std::string> const& counterNames)
{
    std::string line = "pid,frame,time_us,frame_us";
    for (std::string const& name : counterNames)
        line += "," + CsvField(name);
    return line + "\n";
}

std::string CsvLine(Source const& source, Frame const& frame)
{
    std::string line = std::to_string(source.process) + "," + std::to_string(frame.number) + "," +
                       std::to_string(frame.time) + "," + std::to_string(frame.duration);
    for (uint32_t const value : frame.counters)
        line += "," + std::to_string(value);
    return line + "\n";
}

// Names come from the application as bytes, which need not be UTF-8.
std::string JsonLine(Source const& source, Frame const& frame)
{
    nlohmann::ordered_json line;
    line["pid"] = source.process;
    line["name"] = source.name;
    line["frame"] = frame.number;
    line["time_us"] = frame.time;
    line["frame_us"] = frame.duration;
    line["counters"] = ByName(source.counterNames, frame.counters);
    line["totals"] = ByName(source.counterNames, frame.totals);
    return line.dump(-1, ' ', false, nlohmann::ordered_json::error_handler_t::replace) + "\n";
}

std::string PlainText(Source const& source, Frame const& frame, FrameRate const& rate)
{
    char head[128];
    std::snprintf(head, sizeof head, "frame %llu: %.1f frames/s, CPU driver time %.0f us a frame",
                  static_cast<unsigned long long>(frame.number), rate.FramesPerSecond(),
                  rate.CpuTimePerFrame());
    std::string text = head;
    char const* between = "; ";
    for (size_t i = 0; i < source.counterNames.size() && i < frame.counters.size(); ++i)
    {
        if (frame.counters[i] == 0)
            continue;
        text += between + Printable(source.counterNames[i]) + " " + std::to_string(frame.counters[i]);
        between = ", ";
    }
    return text;
}

CsvFile::CsvFile(std::string path) : m_path(std::move(path)), m_file(std::fopen(m_path.c_str(), "we"))
{
    if (!m_file)
        throw CommandFailed("cannot write " + m_path + ": " + std::strerror(errno));
}

CsvFile::~CsvFile() { std::fclose(m_file); }

void CsvFile::Write(Source const& source, Frame const& frame)
{
    std::string text;
    if (m_header != source.counterNames)
        text = CsvHeader(source.counterNames);
    m_header = source.counterNames;
    text += CsvLine(source, frame);
    Check(std::fwrite(text.data(), 1, text.size(), m_file) == text.size());
}

void CsvFile::Check(bool written) const
{
    if (!written)
        throw CommandFailed("cannot write " + m_path + ": " + std::strerror(errno));
}

void CsvFile::Flush() { Check(std::fflush(m_file) == 0); }

bool PlainLines::IsDue(uint32_t process)
{
    auto const now = std::chrono::steady_clock::now();
    auto const last = m_last.find(process);
    if (last != m_last.end() && now - last->second < kLinePeriod)
        return false;
    m_last[process] = now;
    return true;
}
}  // namespace perf
