// `nebtrace info`: what a trace holds, in numbers.
#include "commands.h"
#include "dump_output.h"
#include "progress_line.h"
#include "trace/decode.h"
#include "trace/reader.h"
#include "trace_fault.h"
#include <CLI/CLI.hpp>
#include <algorithm>
#include <map>
#include <memory>
#include <nlohmann/json.hpp>

using Json = nlohmann::ordered_json;
using namespace nebtrace;

namespace
{
constexpr size_t kMostThreads = 1000;

struct ThreadCalls
{
    uint64_t thread;
    uint64_t calls;
};

struct FunctionCalls
{
    Api api;
    std::string name;
    uint64_t calls;
};

class Summary
{
public:
    void Read(std::string const& file, Reader& reader);

    uint64_t records = 0;
    uint64_t calls = 0;
    uint64_t failed = 0;
    uint64_t undecoded = 0;
    uint64_t threadChanges = 0;
    uint64_t stateMarkers = 0;
    uint64_t frames = 0;
    uint64_t firstFrame = 0;  // the numbers that the application's run gave the frames
    uint64_t lastFrame = 0;
    uint64_t unfinishedCalls = 0;  // behind the last frame, and in no snapshot
    std::vector<ThreadCalls> threads;
    uint64_t otherThreadCalls = 0;

    std::vector<FunctionCalls> Functions() const;

private:
    void AddCall(Record const& record);
    void CountThread(uint64_t thread);
    void EndFrame();

    std::map<std::pair<Api, uint16_t>, uint64_t> m_functions;
    DecodedCall m_call;
    Api m_api = Api::Any;
    uint64_t m_snapshot = 0;
    uint64_t m_firstUnfinished = 0;  // offset of the first unfinished call
};

void Summary::Read(std::string const& file, Reader& reader)
{
    Record record;
    ProgressLine progress;
    m_snapshot = reader.ProbableSnapshotPosition().value_or(0);
    while (reader.Next(record))
    {
        ++records;
        progress.ShowReading(file, record.offset, reader.Size().value_or(0));
        if (record.type == RecordType::Call)
            AddCall(record);
        else
            ++(record.type == RecordType::ThreadChange ? threadChanges : stateMarkers);
    }
    // Only a file tells ahead where the snapshot begins.
    uint64_t const snapshot = reader.SnapshotPosition().value_or(0);
    if (snapshot != 0 && m_firstUnfinished >= snapshot)
        unfinishedCalls = 0;
}

void Summary::AddCall(Record const& record)
{
    ++calls;
    CountThread(record.thread);
    if ((m_snapshot == 0 || record.offset < m_snapshot) && unfinishedCalls++ == 0)
        m_firstUnfinished = record.offset;
    bool const decoded = Decode(record.id, m_api, record.payload, m_call);
    Api const api = decoded ? m_call.GetApi() : Api::Any;
    ++m_functions[{api, record.id}];
    if (api == Api::Es1 || api == Api::Es2)
        m_api = api;
    undecoded += decoded ? 0 : 1;
    failed += decoded && m_call.Failed() ? 1 : 0;
    if (record.id == kSwapBuffersId)
    {
        if (decoded)
            EndFrame();
        ++frames;
        unfinishedCalls = 0;
    }
}

void Summary::EndFrame()
{
    uint64_t const number = m_call.Find("frame")->value;
    firstFrame = frames == 0 ? number : firstFrame;
    lastFrame = number;
}

// A real trace has few threads. Only a hostile one has so many that they are not told apart any more.
void Summary::CountThread(uint64_t thread)
{
    auto const same = [thread](ThreadCalls const& known) { return known.thread == thread; };
    auto const found = std::find_if(threads.begin(), threads.end(), same);
    if (found != threads.end())
        ++found->calls;
    else if (threads.size() < kMostThreads)
        threads.push_back({thread, 1});
    else
        ++otherThreadCalls;
}

std::vector<FunctionCalls> Summary::Functions() const
{
    std::vector<FunctionCalls> functions;
    for (auto const& [key, count] : m_functions)
        functions.push_back({key.first, std::string(FindRecord(key.first, key.second)->name), count});
    auto const more = [](FunctionCalls const& a, FunctionCalls const& b) {
        return a.calls != b.calls ? a.calls > b.calls : a.name < b.name;
    };
    std::stable_sort(functions.begin(), functions.end(), more);
    return functions;
}

Json ThreadsJson(Summary const& summary)
{
    Json threads = Json::array();
    for (ThreadCalls const& thread : summary.threads)
        threads.push_back({{"thread", thread.thread}, {"calls", thread.calls}});
    return threads;
}

Json FunctionsJson(Summary const& summary)
{
    Json functions = Json::array();
    for (FunctionCalls const& function : summary.Functions())
        functions.push_back(
            {{"api", ApiName(function.api)}, {"name", function.name}, {"calls", function.calls}});
    return functions;
}

Json SnapshotJson(Reader const& reader)
{
    uint64_t const position = reader.SnapshotPosition().value_or(0);
    if (position == 0)
        return nullptr;
    return {{"position", position}, {"size", reader.EndOffset() - position}};
}

Json ToJson(std::string const& file, Reader const& reader, Summary const& summary)
{
    Json object = {{"file", file}};
    object["size"] = reader.Size() ? Json(*reader.Size()) : Json(nullptr);
    object["version"] = reader.GetHeader().version;
    object["record_data"] = reader.GetHeader().recordData;
    object["frame_buffer"] = reader.GetHeader().frameBuffer;
    object["records"] = summary.records;
    object["calls"] = summary.calls;
    object["failed_calls"] = summary.failed;
    object["undecodable_records"] = summary.undecoded;
    object["thread_changes"] = summary.threadChanges;
    object["state_markers"] = summary.stateMarkers;
    object["frames"] = summary.frames;
    object["first_frame"] = summary.frames != 0 ? Json(summary.firstFrame) : Json(nullptr);
    object["last_frame"] = summary.frames != 0 ? Json(summary.lastFrame) : Json(nullptr);
    object["unfinished_frame_calls"] = summary.unfinishedCalls;
    object["snapshot"] = SnapshotJson(reader);
    object["footer"] = reader.End() == EndState::Footer;
    object["end"] = EndName(reader.End());
    object["end_offset"] = reader.EndOffset();
    object["trailing_zeros"] = reader.TrailingZeros();
    object["threads"] = ThreadsJson(summary);
    object["other_thread_calls"] = summary.otherThreadCalls;
    object["functions"] = FunctionsJson(summary);
    return object;
}

std::string Row(std::string name, std::string const& value)
{
    constexpr size_t kColumn = 14;
    name.resize(std::max(name.size() + 1, kColumn), ' ');
    return name + value + "\n";
}

std::string FramesText(Summary const& summary)
{
    std::string text = std::to_string(summary.frames);
    if (summary.frames != 0)
        text +=
            ", numbers " + std::to_string(summary.firstFrame) + " to " + std::to_string(summary.lastFrame);
    if (summary.unfinishedCalls != 0)
        text += ", then " + std::to_string(summary.unfinishedCalls) + " calls of an unfinished frame";
    return text;
}

std::string CallsText(Summary const& summary)
{
    std::string text = std::to_string(summary.calls);
    if (summary.failed != 0)
        text += ", " + std::to_string(summary.failed) + " with an error";
    if (summary.undecoded != 0)
        text += ", " + std::to_string(summary.undecoded) + " that fit no layout";
    return text;
}

std::string SnapshotText(Reader const& reader)
{
    uint64_t const position = reader.SnapshotPosition().value_or(0);
    if (position == 0)
        return "none at the end";
    return "at " + std::to_string(position) + ", " + std::to_string(reader.EndOffset() - position) + " bytes";
}

std::string ToText(std::string const& file, Reader const& reader, Summary const& summary)
{
    auto const yes = [](bool flag) { return flag ? "yes" : "no"; };
    std::string text = Row("file", file);
    text += Row("size", reader.Size() ? std::to_string(*reader.Size()) + " bytes" : "not known");
    text += Row("version", std::to_string(reader.GetHeader().version));
    text += Row("record data", yes(reader.GetHeader().recordData));
    text += Row("frame buffer", yes(reader.GetHeader().frameBuffer));
    text += Row("records", std::to_string(summary.records) + ", of these " +
                               std::to_string(summary.threadChanges) + " thread changes and " +
                               std::to_string(summary.stateMarkers) + " state markers");
    text += Row("calls", CallsText(summary));
    text += Row("frames", FramesText(summary));
    text += Row("snapshot", SnapshotText(reader));
    text += Row("footer", yes(reader.End() == EndState::Footer));
    if (reader.TrailingZeros() != 0)
        text += Row("zeros", std::to_string(reader.TrailingZeros()) + " bytes behind the last record");
    for (ThreadCalls const& thread : summary.threads)
        text += Row("thread", std::to_string(thread.thread) + ", " + std::to_string(thread.calls) + " calls");
    for (FunctionCalls const& function : summary.Functions())
        text +=
            Row(std::to_string(function.calls), std::string(ApiName(function.api)) + "  " + function.name);
    text.pop_back();
    return text;
}

void RunInfo(std::string const& file, bool json)
{
    std::string error;
    std::unique_ptr<Reader> const reader = Reader::Open(file == "-" ? "/dev/stdin" : file, error);
    if (!reader)
        throw CommandFailed(error);
    if (reader->End() != EndState::Reading)
        throw CommandFailed(TraceFault(file, *reader));
    Summary summary;
    summary.Read(file, *reader);
    Output output;
    std::string const text =
        json ? ToJson(file, *reader, summary).dump(2, ' ', true, Json::error_handler_t::replace)
             : ToText(file, *reader, summary);
    if (!output.Line(text) || !output.Flush())
        return;
    if (!reader->EndedInOrder())
        throw CommandFailed(TraceFault(file, *reader));
}
}  // namespace

void AddInfoCommand(CLI::App& app)
{
    struct Options
    {
        std::string file;
        bool json = false;
    };
    auto const options = std::make_shared<Options>();
    CLI::App* const info = app.add_subcommand("info", "Print what a trace holds");
    info->add_option("FILE", options->file, "The trace; - for standard input")->required();
    info->add_flag("--json", options->json, "As one JSON object");
    info->callback([options] { RunInfo(options->file, options->json); });
}
