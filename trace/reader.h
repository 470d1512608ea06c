// Reads a trace record by record, from a file or from a stream that cannot seek. It holds one record at a
// time, and never more memory than the input still has bytes, whatever a length in it says.
#pragma once
#include "trace/bytes.h"
#include "trace/format.h"
#include <cstdint>
#include <istream>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace nebtrace
{
struct Header
{
    uint32_t version = 0;
    // True if the recording's configuration had the key with a value not starting with 0. Neither tells
    // whether the records hold data or frames hold pixels: each record shows that by itself.
    bool recordData = false;
    bool frameBuffer = false;
};

enum class RecordType : uint8_t
{
    Call,
    ThreadChange,
    StateMarker  // begin or end of a render state: kEglStateId, kEs1StateId, kEs2StateId
};

struct Record
{
    RecordType type = RecordType::Call;
    uint16_t id = 0;
    uint64_t offset = 0;  // of the length word in the file
    uint64_t thread = 0;  // of the call; of a ThreadChange the new thread
    uint64_t frame = 0;   // frames that ended before this record, from the file's first
    uint64_t call = 0;    // calls before this record, from the file's first
    Bytes payload;        // valid until the next Next()
};

enum class EndState : uint8_t
{
    Reading,    // not at the end
    Footer,     // ended in order
    NoFooter,   // ended behind a whole record, or with zeros behind it: the recording was not closed
    Truncated,  // the input ends inside the header or a record
    Damaged     // what stands at the offset cannot be part of a trace
};

class Reader
{
public:
    // The stream must outlive the reader.
    explicit Reader(std::istream& input);
    ~Reader();
    Reader(Reader const&) = delete;
    Reader& operator=(Reader const&) = delete;

    // Opens a file and reads its header. Null if it cannot be opened, with the reason in `error`. A reader
    // whose file has a bad header is returned all the same: it has no records, and End() says why.
    static std::unique_ptr<Reader> Open(std::string const& path, std::string& error);

    Header const& GetHeader() const { return m_header; }

    // The next record; false at the end, whose kind End() then gives.
    bool Next(Record& record);

    EndState End() const { return m_end; }
    bool EndedInOrder() const { return m_end == EndState::Footer || m_end == EndState::NoFooter; }
    // Where the last whole record ended: the footer's offset, the end of the input, or of what cannot be
    // read.
    uint64_t EndOffset() const { return m_endOffset; }
    std::string const& EndReason() const { return m_endReason; }  // for Truncated and Damaged, one line
    // Bytes behind the last record that are all zero: a machine that stops can leave a file grown ahead of
    // its writing. Six at least, which no record begins with.
    uint64_t TrailingZeros() const { return m_trailingZeros; }

    // The size of the input: known from the start for a file, at the end for a stream.
    std::optional<uint64_t> Size() const { return m_size; }

    // The position that the footer gives, 0 for none: known once End() is Footer.
    std::optional<uint64_t> SnapshotPosition() const { return m_snapshot; }

    // For a file, the position in what looks like a footer in its last bytes. Only the walk to the end tells
    // whether it is one: the last record of a trace without a footer can end in the same bytes.
    std::optional<uint64_t> ProbableSnapshotPosition() const { return m_probableSnapshot; }

private:
    explicit Reader(std::unique_ptr<std::istream> input, std::optional<uint64_t> size);

    void Start();
    void MeasureInput();
    void PeekFooter();
    bool CheckHeader(uint8_t const* header);
    bool CheckRecord(uint32_t size, uint16_t id, uint8_t const* first);
    bool EndAtFooter(uint8_t const* footer);
    bool OnlyZerosFollow();
    bool ReadPayload(uint32_t size, uint8_t const* first, size_t firstSize);
    bool AtEndOfInput();
    size_t ReadBytes(uint8_t* to, size_t size);
    void Deliver(uint16_t id, Record& record);
    bool Stop(EndState end, uint64_t offset, std::string reason = {});

    std::unique_ptr<std::istream> m_owned;
    std::istream& m_input;
    Header m_header;
    std::optional<uint64_t> m_size;
    std::optional<uint64_t> m_snapshot;
    std::optional<uint64_t> m_probableSnapshot;
    std::vector<uint8_t> m_payload;
    uint64_t m_position = 0;      // bytes read
    uint64_t m_recordOffset = 0;  // of the record that is being read
    uint64_t m_thread = 0;
    uint64_t m_frame = 0;
    uint64_t m_call = 0;
    EndState m_end = EndState::Reading;
    uint64_t m_endOffset = 0;
    uint64_t m_trailingZeros = 0;
    std::string m_endReason;
};
}  // namespace nebtrace
