// A trace file, read record by record: as a file, which can seek, and as a stream, which cannot.
#include "fuzz/input.h"
#include "tools/state_behind_frames.h"
#include "trace/decode.h"
#include "trace/print.h"
#include "trace/reader.h"
#include <sstream>

using namespace nebtrace;

namespace
{
class PipeBuffer : public std::streambuf
{
public:
    explicit PipeBuffer(std::string& bytes) { setg(bytes.data(), bytes.data(), bytes.data() + bytes.size()); }
};

struct Walk
{
    uint64_t records = 0;
    uint64_t calls = 0;
    uint64_t frames = 0;
    EndState end = EndState::Reading;
    uint64_t endOffset = 0;
    std::string endReason;

    bool operator==(Walk const& other) const
    {
        return records == other.records && calls == other.calls && frames == other.frames &&
               end == other.end && endOffset == other.endOffset && endReason == other.endReason;
    }
};

Walk WalkThrough(std::istream& input, uint64_t size)
{
    Reader reader(input);
    Walk walk;
    Record record;
    DecodedCall call;
    uint64_t position = kHeaderSize;
    StateBehindFrames state;
    while (reader.Next(record))
    {
        state.Look(record);
        fuzz::Require(record.offset == position, "records lie one behind the other");
        position += kRecordHeaderSize + record.payload.size;
        fuzz::Require(position <= size, "a record lies inside its file");
        ++walk.records;
        walk.calls = record.call;
        walk.frames = record.frame;
        if (record.type == RecordType::Call && Decode(record.id, Api::Any, record.payload, call))
            fuzz::Require(!CallText(call).empty(), "a call has a text");
    }
    walk.end = reader.End();
    walk.endOffset = reader.EndOffset();
    walk.endReason = reader.EndReason();
    fuzz::Require(walk.end != EndState::Reading, "a reader knows how its input ended");
    fuzz::Require(walk.endOffset <= size, "the end lies inside the file");
    fuzz::Require(state.Begin() <= walk.endOffset, "a captured state begins in front of the end");
    fuzz::Require(reader.EndedInOrder() == walk.endReason.empty(), "a reason for every end out of order");
    return walk;
}
}  // namespace

int LLVMFuzzerTestOneInput(uint8_t const* data, size_t size)
{
    std::string bytes(reinterpret_cast<char const*>(data), size);
    std::istringstream file(bytes);
    Walk const asFile = WalkThrough(file, size);
    PipeBuffer buffer(bytes);
    std::istream pipe(&buffer);
    fuzz::Require(WalkThrough(pipe, size) == asFile, "a stream is read as the file is");
    return 0;
}
