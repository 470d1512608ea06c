// `nebtrace dump`: the calls of a trace, one a line.
#include "commands.h"
#include "dump_json.h"
#include "dump_options.h"
#include "dump_output.h"
#include "extract.h"
#include "trace/print.h"
#include "trace/reader.h"
#include "trace_fault.h"
#include <CLI/CLI.hpp>
#include <cinttypes>
#include <cstdio>
#include <iostream>
#include <memory>

using Json = nlohmann::ordered_json;
using namespace nebtrace;

namespace
{
char const* MarkerName(uint16_t id)
{
    return id == kEglStateId ? "egl" : ApiName(id == kEs1StateId ? Api::Es1 : Api::Es2);
}

class Dump
{
public:
    Dump(Options const& options, Reader& reader);
    void Run();

private:
    bool Wanted(Record const& record) const;
    bool Past(Record const& record) const;
    bool InSnapshot(Record const& record) const;
    bool Print(Record const& record);
    bool PrintMarker(Record const& record);
    bool PrintSnapshot();
    bool PrintCall(Record const& record);
    std::string CallLine(Record const& record, bool decoded) const;
    std::string JsonLine(Record const& record, bool decoded) const;
    std::string NameOf(uint16_t id) const;
    bool PrintFrameEnd(Record const& record);
    void Report(bool readToTheEnd);

    Options const& m_options;
    Reader& m_reader;
    Output m_output;
    Range m_frames;
    Range m_calls;
    Pattern m_grep;
    std::unique_ptr<Extract> m_extract;  // null unless it was asked for
    uint64_t m_snapshot;
    bool m_inSnapshot = false;
    DecodedCall m_call;
    Api m_api = Api::Any;  // of the last GL call: the hint for a record that does not say it itself
    uint64_t m_undecoded = 0;
    uint64_t m_firstUndecoded = 0;
};

Dump::Dump(Options const& options, Reader& reader)
    : m_options(options), m_reader(reader), m_grep(options.grep),
      m_snapshot(reader.ProbableSnapshotPosition().value_or(0))
{
    ParseRange(options.frames, m_frames);
    ParseRange(options.calls, m_calls);
    if (!options.extract.empty())
        m_extract = std::make_unique<Extract>(options.extract);
}

void Dump::Run()
{
    Record record;
    while (m_reader.Next(record))
    {
        if (Past(record))
            return Report(false);
        if (m_extract)
            m_extract->Observe(record);
        if (Wanted(record) && !Print(record))
            return;
    }
    Report(true);
}

bool Dump::InSnapshot(Record const& record) const { return m_snapshot != 0 && record.offset >= m_snapshot; }

// The snapshot at the end belongs to no frame.
bool Dump::Wanted(Record const& record) const
{
    bool const inFrames = m_frames.Holds(record.frame) && (m_options.frames.empty() || !InSnapshot(record));
    return inFrames && m_calls.Holds(record.call);
}

bool Dump::Past(Record const& record) const
{
    return record.frame > m_frames.last || record.call > m_calls.last;
}

bool Dump::Print(Record const& record)
{
    if (InSnapshot(record) && !m_inSnapshot)
    {
        m_inSnapshot = true;
        if (!PrintSnapshot())
            return false;
    }
    if (record.type == RecordType::ThreadChange)
        return true;
    return record.type == RecordType::StateMarker ? PrintMarker(record) : PrintCall(record);
}

bool Dump::PrintSnapshot()
{
    bool const shown = m_options.grep.empty() && !m_options.json;
    return !shown || m_output.Line("-- snapshot of the start frame");
}

bool Dump::PrintMarker(Record const& record)
{
    std::string const name = MarkerName(record.id);
    if (!m_options.grep.empty())
        return true;
    if (!m_options.json)
        return m_output.Line("-- render state of " + name);
    Json const object = {{"marker", name}, {"offset", record.offset}, {"thread", record.thread}};
    return m_output.Line(object.dump());
}

bool Dump::PrintCall(Record const& record)
{
    bool const decoded = Decode(record.id, m_api, record.payload, m_call);
    if (!decoded && m_undecoded++ == 0)
        m_firstUndecoded = record.offset;
    if (decoded && m_call.GetApi() != Api::Egl)
        m_api = m_call.GetApi();
    std::string const line = CallLine(record, decoded);
    if (!m_options.grep.empty() && !m_grep.Matches(line))
        return true;
    if (m_extract && decoded)
        m_extract->Write(record.call, m_call);
    if (!m_output.Line(m_options.json ? JsonLine(record, decoded) : line))
        return false;
    return record.id != kSwapBuffersId || PrintFrameEnd(record);
}

std::string Dump::CallLine(Record const& record, bool decoded) const
{
    char head[64];
    std::snprintf(head, sizeof head, "%7" PRIu64 "  %" PRIu64 "  %s  ", record.call, record.thread,
                  decoded ? ApiName(m_call.GetApi()) : "?");
    return head +
           (decoded ? CallText(m_call) : NameOf(record.id) + " fits no layout: " + RawText(record.payload));
}

std::string Dump::JsonLine(Record const& record, bool decoded) const
{
    Json object = {{"call", record.call}, {"offset", record.offset}};
    if (!InSnapshot(record))
        object["frame"] = record.frame;
    object["thread"] = record.thread;
    object["api"] = decoded ? Json(ApiName(m_call.GetApi())) : Json(nullptr);
    object["name"] = NameOf(record.id);
    if (decoded)
        AddCall(object, m_call);
    else
        object["raw"] = RawText(record.payload);
    return object.dump(-1, ' ', true, Json::error_handler_t::replace);
}

std::string Dump::NameOf(uint16_t id) const { return std::string(FindRecord(Api::Any, id)->name); }

bool Dump::PrintFrameEnd(Record const& record)
{
    if (m_options.json || !m_options.grep.empty())
        return true;
    return m_output.Line("-- end of frame " + std::to_string(record.frame));
}

void Dump::Report(bool readToTheEnd)
{
    if (!m_output.Flush())
        return;
    if (readToTheEnd && !m_reader.EndedInOrder())
        throw CommandFailed(TraceFault(m_options.file, m_reader));
    if (m_undecoded != 0)
        throw CommandFailed(m_options.file + ": at offset " + std::to_string(m_firstUndecoded) +
                            ": a record fits no layout" +
                            (m_undecoded == 1 ? "" : ", the first of " + std::to_string(m_undecoded)));
    if (readToTheEnd && m_reader.End() == EndState::NoFooter)
        std::cerr << "nebtrace: " << m_options.file << ": no footer: the recording did not end in order\n";
}

void RunDump(Options const& options)
{
    std::string error;
    std::unique_ptr<Reader> const reader =
        Reader::Open(options.file == "-" ? "/dev/stdin" : options.file, error);
    if (!reader)
        throw CommandFailed(error);
    Dump(options, *reader).Run();
}
}  // namespace

void AddDumpCommand(CLI::App& app)
{
    auto const options = std::make_shared<Options>();
    CLI::App* const dump = app.add_subcommand("dump", "Print the calls of a trace");
    dump->add_option("FILE", options->file, "The trace; - for standard input")->required();
    dump->add_option("--frames", options->frames,
                     "Only these frames, A-B, counted from the file's first as 0")
        ->type_name("FRAMES")
        ->check(CheckRange);
    dump->add_option("--calls", options->calls, "Only these calls, A-B, by the numbers that dump prints")
        ->type_name("CALLS")
        ->check(CheckRange);
    dump->add_option("--grep", options->grep,
                     "Only calls whose line has a match of this (extended) regular expression")
        ->type_name("REGEX")
        ->check(CheckPattern);
    dump->add_option("--extract", options->extract,
                     "Also write what the printed calls carry into this folder: images as PNG where one can "
                     "hold them, their rows from top to bottom as they were uploaded, frames and pixels that "
                     "were read back turned upright; shader sources as text; the rest as .bin")
        ->type_name("DIR");
    dump->add_flag("--json", options->json, "One JSON object a line");
    dump->callback([options] { RunDump(*options); });
}
