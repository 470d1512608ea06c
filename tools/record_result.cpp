// Tells what a recording left.
#include "progress_line.h"
#include "record.h"
#include "trace/reader.h"
#include "trace_fault.h"
#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <nlohmann/json.hpp>
#include <sstream>
#include <unistd.h>

using Json = nlohmann::ordered_json;
namespace fs = std::filesystem;

namespace record
{
namespace
{
constexpr char kPid[] = "%pid";

bool IsNumber(std::string_view text)
{
    return !text.empty() && text.find_first_not_of("0123456789") == std::string_view::npos;
}

// Whether the name is the pattern with a number for each %pid. The recorder's numbers further files of one
// process with "_N" ahead of the extension, but only when it is told to by a client over the network.
bool Matches(std::string_view name, std::string_view pattern)
{
    std::size_t const mark = pattern.find(kPid);
    if (mark == std::string_view::npos)
        return name == pattern;
    std::string_view const rest = pattern.substr(mark + sizeof kPid - 1);
    if (name.substr(0, mark) != pattern.substr(0, mark))
        return false;
    name.remove_prefix(mark);
    for (std::size_t digits = 1; digits <= name.size() && IsNumber(name.substr(0, digits)); ++digits)
        if (Matches(name.substr(digits), rest))
            return true;
    return false;
}

std::string Count(uint64_t number, char const* what)
{
    return std::to_string(number) + " " + what + (number == 1 ? "" : "s");
}
}  // namespace

TraceFiles::TraceFiles(fs::path pattern) : m_pattern(std::move(pattern)), m_before(Existing()) {}

std::vector<TraceFiles::Stamp> TraceFiles::Existing() const
{
    std::vector<Stamp> stamps;
    std::error_code error;
    std::string const pattern = m_pattern.filename().string();
    for (fs::directory_entry const& entry : fs::directory_iterator(m_pattern.parent_path(), error))
        if (Matches(entry.path().filename().string(), pattern) && entry.is_regular_file(error))
            stamps.push_back({entry.path(), entry.last_write_time(error)});
    return stamps;
}

std::vector<fs::path> TraceFiles::Written() const
{
    std::vector<fs::path> written;
    for (Stamp const& now : Existing())
    {
        auto const same = [&now](Stamp const& old) { return old.path == now.path && old.time == now.time; };
        if (std::none_of(m_before.begin(), m_before.end(), same))
            written.push_back(now.path);
    }
    std::sort(written.begin(), written.end());
    return written;
}

std::string TraceFiles::Obstacle() const
{
    std::error_code ignored;
    if (fs::is_directory(m_pattern, ignored))
        return m_pattern.string() + " is a folder";
    fs::path const folder = m_pattern.has_parent_path() ? m_pattern.parent_path() : fs::path(".");
    if (access(folder.c_str(), W_OK | X_OK) != 0)
        return m_pattern.string() + " cannot be written: " + std::strerror(errno);
    return {};
}

Summary Summarize(fs::path const& file)
{
    Summary summary;
    summary.file = file.string();
    std::unique_ptr<nebtrace::Reader> const reader = nebtrace::Reader::Open(file.string(), summary.error);
    if (!reader)
        return summary;
    ProgressLine progress;
    for (nebtrace::Record record; reader->Next(record);)
    {
        progress.ShowReading(summary.file, record.offset, reader->Size().value_or(0));
        bool const call = record.type == nebtrace::RecordType::Call;
        summary.calls += call ? 1 : 0;
        summary.frames += call && record.id == nebtrace::kSwapBuffersId ? 1 : 0;
    }
    summary.bytes = reader->Size().value_or(0);
    summary.zeros = reader->TrailingZeros();
    summary.end = reader->End();
    summary.endOffset = reader->EndOffset();
    summary.endReason = reader->EndReason();
    return summary;
}

std::string Summary::Line() const
{
    if (!error.empty())
        return file + " cannot be read: " + error;
    std::ostringstream line;
    line << "recorded " << file << ": " << Count(bytes, "byte") << ", " << Count(frames, "frame") << ", "
         << Count(calls, "call");
    // The file was not closed while it was mapped.
    if (zeros > 0)
        line << "; of these " << zeros << " unused at the end, which nebtrace repair takes away";
    if (!endReason.empty())
        line << "; ends at offset " << endOffset << ": " << endReason
             << "; nebtrace repair keeps what is whole";
    return line.str();
}

Json Summary::ToJson() const
{
    if (!error.empty())
        return {{"file", file}, {"error", error}};
    return {{"file", file},           {"bytes", bytes},          {"frames", frames},
            {"calls", calls},         {"trailing_zeros", zeros}, {"end", EndName(end)},
            {"end_offset", endOffset}};
}

JsonFile::JsonFile(std::string const& name)
{
    if (!name.empty() && name != "-")
        m_file.emplace(name);
}

void JsonFile::Write(Json const& object)
{
    std::string const text = object.dump(2, ' ', true, Json::error_handler_t::replace) + "\n";
    if (!m_file)
    {
        std::fputs(text.c_str(), stdout);
        std::fflush(stdout);
        return;
    }
    m_file->Write(text.data(), text.size());
    m_file->Keep();
}
}  // namespace record
