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

std::string DroppedText(Findings const& findings, uint64_t position)
{
    if (findings.Dropped() == 0)
        return "nothing dropped: only the footer was missing";
    std::string const text = "dropped " + Count(findings.Dropped(), "byte") + " at offset " +
                             std::to_string(findings.whole) + ": ";
    if (findings.zeros != 0)
        return text + "zeros";
    if (IsFooterBegun(findings.rest, position) || IsFooterBegun(findings.rest, 0))
        return text + (findings.end == EndState::Damaged ? "a footer with other bytes behind it"
                                                         : "the beginning of the footer");
    if (findings.end == EndState::Damaged)
        return text + findings.endReason;
    return text + "the beginning of " + BrokenRecord(findings.rest);
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

void RunRepair(std::string const& file, std::string const& out)
{
    std::error_code ignored;
    if (fs::equivalent(file, out, ignored))
        throw CommandFailed(out + " is the trace itself: the repaired one needs a file of its own");
    Findings const findings = Examine(file);
    uint64_t const position = StatePosition(findings);
    NewFile repaired(out);
    CopyBytes(file, findings.IsWhole() ? findings.size : findings.whole, repaired);
    if (!findings.IsWhole())
        repaired.Write(FooterFor(position).data(), kFooterSize);
    repaired.Keep();
    std::string const kept = out + ": " + Count(findings.records, "record") + " and " +
                             Count(findings.frames, "frame") + " kept, ";
    if (findings.IsWhole())
        std::cout << kept << "nothing dropped: " << file << " is whole and was copied\n";
    else
        std::cout << kept << DroppedText(findings, position) << StateText(findings, position) << "\n";
}
}  // namespace

void AddRepairCommand(CLI::App& app)
{
    struct Options
    {
        std::string file;
        std::string out;
    };
    auto const options = std::make_shared<Options>();
    CLI::App* const repair = app.add_subcommand(
        "repair", "Keep the whole records of a trace that was cut short, and add a footer");
    repair->add_option("FILE", options->file, "The trace; it stays as it is")->required();
    repair->add_option("-o", options->out, "The repaired trace; a trace that is whole is copied")->required();
    repair->callback([options] { RunRepair(options->file, options->out); });
}
