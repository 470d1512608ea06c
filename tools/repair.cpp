// `nebtrace repair`: a trace that was cut short, with every whole record kept and a footer behind them.
#include "commands.h"
#include "new_file.h"
#include "progress_line.h"
#include "state_behind_frames.h"
#include "trace/layout.h"
#include "trace/reader.h"
#include "trace_fault.h"
#include <CLI/CLI.hpp>
#include <algorithm>
#include <array>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <memory>
#include <nlohmann/json.hpp>

using Json = nlohmann::ordered_json;
namespace fs = std::filesystem;
using namespace nebtrace;

namespace
{
// What one walk over the trace tells.
struct Findings
{
    EndState end = EndState::Reading;
    std::string endReason;
    uint64_t size = 0;
    uint64_t whole = 0;  // bytes up to the end of the last whole record
    uint64_t zeros = 0;
    uint64_t records = 0;
    uint64_t frames = 0;
    std::vector<uint8_t> rest;  // the first bytes behind the last whole record, a footer's worth at most
    StateBehindFrames state;

    bool IsWhole() const { return end == EndState::Footer; }
    uint64_t Dropped() const { return size - whole; }
};

std::string Count(uint64_t number, char const* what)
{
    return std::to_string(number) + " " + what + (number == 1 ? "" : "s");
}

std::vector<uint8_t> BytesAt(std::string const& path, uint64_t offset, size_t most)
{
    std::vector<uint8_t> bytes(most);
    std::ifstream file(path, std::ios::binary);
    file.seekg(static_cast<std::streamoff>(offset));
    file.read(reinterpret_cast<char*>(bytes.data()), static_cast<std::streamsize>(most));
    bytes.resize(static_cast<size_t>(file.gcount()));
    return bytes;
}

Findings Examine(std::string const& path)
{
    std::string error;
    std::unique_ptr<Reader> const reader = Reader::Open(path, error);
    if (!reader)
        throw CommandFailed(error);
    if (!reader->Size())
        throw CommandFailed(path + ": only a regular file can be repaired");
    if (reader->End() != EndState::Reading)
        throw CommandFailed(TraceFault(path, *reader));
    Findings findings;
    Record record;
    ProgressLine progress;
    while (reader->Next(record))
    {
        progress.ShowReading(path, record.offset, *reader->Size());
        ++findings.records;
        findings.frames += record.id == kSwapBuffersId ? 1 : 0;
        findings.state.Look(record);
    }
    findings.end = reader->End();
    findings.endReason = reader->EndReason();
    findings.size = *reader->Size();
    findings.whole = reader->EndOffset();
    findings.zeros = reader->TrailingZeros();
    size_t const peek = static_cast<size_t>(std::min<uint64_t>(findings.Dropped(), kFooterSize));
    findings.rest = BytesAt(path, findings.whole, peek);
    return findings;
}

std::array<uint8_t, kFooterSize> FooterFor(uint64_t position)
{
    std::array<uint8_t, kFooterSize> footer{kFooterFirst, kFooterSecond};
    for (size_t i = 2; i < kFooterSize; ++i, position >>= 8)
        footer[i] = static_cast<uint8_t>(position);
    return footer;
}

// Whether the rest can be what was written of the footer, whose two marks make it one.
bool IsFooterBegun(std::vector<uint8_t> const& rest, uint64_t position)
{
    std::array<uint8_t, kFooterSize> const footer = FooterFor(position);
    return rest.size() >= 2 && std::equal(rest.begin(), rest.end(), footer.begin());
}

uint64_t StatePosition(Findings const& findings)
{
    StateBehindFrames const& state = findings.state;
    bool const over = state.IsClosed() || IsFooterBegun(findings.rest, state.Begin());
    return over && state.MayBeWhole() ? state.Begin() : 0;
}

// The record whose beginning is all that was written of it, as far as its head tells.
std::string BrokenRecord(std::vector<uint8_t> const& rest)
{
    if (rest.size() < kRecordHeaderSize)
        return "a record";
    uint32_t const size = LoadU32(rest.data());
    uint16_t const id = LoadU16(rest.data() + 4);
    if (id == kThreadChangeId)
        return "a thread change";
    RecordSpec const* const spec = FindRecord(Api::Any, id);
    return spec ? std::string(spec->name) + ", " + Count(size, "byte") + " long" : "a record";
}

// What the bytes are that no whole record is made of.
std::string RestText(Findings const& findings, uint64_t position)
{
    if (findings.zeros != 0)
        return "zeros";
    if (IsFooterBegun(findings.rest, position) || IsFooterBegun(findings.rest, 0))
        return findings.end == EndState::Damaged ? "a footer with other bytes behind it"
                                                 : "the beginning of the footer";
    if (findings.end == EndState::Damaged)
        return findings.endReason;
    return "the beginning of " + BrokenRecord(findings.rest);
}

std::string DroppedText(Findings const& findings, uint64_t position)
{
    if (findings.Dropped() == 0)
        return "nothing dropped: only the footer was missing";
    return "dropped " + Count(findings.Dropped(), "byte") + " at offset " + std::to_string(findings.whole) +
           ": " + RestText(findings, position);
}

std::string StateText(Findings const& findings, uint64_t position)
{
    if (position != 0)
        return "; the captured state stands at offset " + std::to_string(position);
    if (findings.state.Begin() != 0)
        return "; the captured state behind the frames is not known to be whole and serves no replay";
    return "";
}

void CopyBytes(std::string const& from, uint64_t size, NewFile& to)
{
    std::ifstream file(from, std::ios::binary);
    std::vector<char> piece(1 << 20);
    while (size != 0)
    {
        size_t const want = static_cast<size_t>(std::min<uint64_t>(size, piece.size()));
        if (!file.read(piece.data(), static_cast<std::streamsize>(want)))
            throw CommandFailed(from + ": cannot be read again");
        to.Write(piece.data(), want);
        size -= want;
    }
}

std::string ToText(std::string const& file, std::string const& out, Findings const& findings)
{
    uint64_t const position = StatePosition(findings);
    std::string const kept = out + ": " + Count(findings.records, "record") + " and " +
                             Count(findings.frames, "frame") + " kept, ";
    if (findings.IsWhole())
        return kept + "nothing dropped: " + file + " is whole and was copied";
    return kept + DroppedText(findings, position) + StateText(findings, position);
}

Json ToJson(std::string const& file, std::string const& out, Findings const& findings)
{
    uint64_t const position = StatePosition(findings);
    bool const drops = !findings.IsWhole() && findings.Dropped() != 0;
    Json object = {{"file", file},
                   {"output", out},
                   {"whole", findings.IsWhole()},
                   {"records", findings.records},
                   {"frames", findings.frames},
                   {"dropped_bytes", drops ? findings.Dropped() : 0}};
    object["dropped_offset"] = drops ? Json(findings.whole) : Json(nullptr);
    object["dropped"] = drops ? Json(RestText(findings, position)) : Json(nullptr);
    object["state_dropped"] = !findings.IsWhole() && position == 0 && findings.state.Begin() != 0;
    return object;
}

void RunRepair(std::string const& file, std::string const& out, bool json)
{
    std::error_code ignored;
    if (fs::equivalent(file, out, ignored))
        throw CommandFailed(out + " is the trace itself: the repaired one needs a file of its own");
    Findings const findings = Examine(file);
    NewFile repaired(out);
    CopyBytes(file, findings.IsWhole() ? findings.size : findings.whole, repaired);
    if (!findings.IsWhole())
        repaired.Write(FooterFor(StatePosition(findings)).data(), kFooterSize);
    repaired.Keep();
    std::cout << (json ? ToJson(file, out, findings).dump(2, ' ', true, Json::error_handler_t::replace)
                       : ToText(file, out, findings))
              << "\n";
}
}  // namespace

void AddRepairCommand(CLI::App& app)
{
    struct Options
    {
        std::string file;
        std::string out;
        bool json = false;
    };
    auto const options = std::make_shared<Options>();
    CLI::App* const repair = app.add_subcommand(
        "repair", "Keep the whole records of a trace that was cut short, and add a footer");
    repair->add_option("FILE", options->file, "The trace; it stays as it is")->required();
    repair->add_option("-o", options->out, "The repaired trace; a trace that is whole is copied")
        ->type_name("FILE")
        ->required();
    repair->add_flag("--json", options->json, "Print what was kept and dropped as one JSON object");
    repair->callback([options] { RunRepair(options->file, options->out, options->json); });
}
