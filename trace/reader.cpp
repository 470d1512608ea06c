#include "trace/reader.h"
#include "trace/layout.h"
#include <algorithm>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <new>

namespace nebtrace
{
namespace
{
// A stream's record is read in pieces of at least this size, so that a length alone allocates nothing.
constexpr size_t kPieceSize = 64 * 1024;

bool AllZero(uint8_t const* bytes, size_t size)
{
    return std::all_of(bytes, bytes + size, [](uint8_t byte) { return byte == 0; });
}

bool IsFooterStart(uint8_t const* bytes) { return bytes[0] == kFooterFirst && bytes[1] == kFooterSecond; }

// The payload's size, where the ID fixes it.
std::optional<uint32_t> FixedPayloadSize(uint16_t id)
{
    if (id == kThreadChangeId)
        return kThreadChangeSize;
    if (id == kEglStateId || id == kEs1StateId || id == kEs2StateId)
        return 0;
    return std::nullopt;
}

RecordType TypeOf(uint16_t id)
{
    if (id == kThreadChangeId)
        return RecordType::ThreadChange;
    return FixedPayloadSize(id) ? RecordType::StateMarker : RecordType::Call;
}
}  // namespace

Reader::Reader(std::istream& input) : m_input(input)
{
    MeasureInput();
    Start();
}

Reader::Reader(std::unique_ptr<std::istream> input, std::optional<uint64_t> size)
    : m_owned(std::move(input)), m_input(*m_owned), m_size(size)
{
    Start();
}

Reader::~Reader() = default;

std::unique_ptr<Reader> Reader::Open(std::string const& path, std::string& error)
{
    std::error_code ignored;
    if (std::filesystem::is_directory(path, ignored))
    {
        error = path + ": is a directory";
        return nullptr;
    }
    errno = 0;
    auto file = std::make_unique<std::ifstream>(path, std::ios::binary);
    if (!*file)
    {
        error = path + ": " + (errno != 0 ? std::strerror(errno) : "cannot be opened");
        return nullptr;
    }
    std::optional<uint64_t> size;
    if (std::filesystem::is_regular_file(path, ignored))
        size = std::filesystem::file_size(path, ignored);
    if (ignored)
        size.reset();
    return std::unique_ptr<Reader>(new Reader(std::move(file), size));
}

void Reader::MeasureInput()
{
    std::streamoff const begin = m_input.tellg();
    std::streamoff end = -1;
    if (begin >= 0 && m_input.seekg(0, std::ios::end))
        end = m_input.tellg();
    m_input.clear();
    if (begin >= 0 && end >= begin && m_input.seekg(begin))
        m_size = static_cast<uint64_t>(end - begin);
    m_input.clear();
}

void Reader::Start()
{
    if (m_size)
        PeekFooter();
    uint8_t header[kHeaderSize];
    size_t const have = ReadBytes(header, kHeaderSize);
    bool const magic = have >= kMagicSize && std::memcmp(header, kMagic, kMagicSize) == 0;
    if (!magic && have >= kMagicSize)
        Stop(EndState::Damaged, 0, "this is no trace: it does not begin with \"NEBTrace\"");
    else if (have < kHeaderSize)
        Stop(EndState::Truncated, 0,
             "the header has " + std::to_string(kHeaderSize) + " bytes, the file " + std::to_string(have));
    else
        CheckHeader(header);
}

bool Reader::CheckHeader(uint8_t const* header)
{
    m_header.version = LoadU32(header + kVersionOffset);
    m_header.recordData = header[kRecordDataOffset] != 0;
    m_header.frameBuffer = header[kFrameBufferOffset] != 0;
    if (LoadU32(header + kMarkerOffset) != kMarker)
        return Stop(EndState::Damaged, kMarkerOffset, "the header's marker is not that of a trace");
    if (m_header.version != kVersion)
        return Stop(EndState::Damaged, kVersionOffset,
                    "format version " + std::to_string(m_header.version) + " is not known");
    // The table's length is part of where the records begin; its content is never used.
    if (header[kTypeTableSizeOffset] != kTypeTableSize)
        return Stop(EndState::Damaged, kTypeTableSizeOffset, "the header's type table has an unknown length");
    return true;
}

void Reader::PeekFooter()
{
    std::streampos const begin = m_input.tellg();
    uint8_t footer[kFooterSize];
    if (*m_size < kHeaderSize + kFooterSize)
        return;
    m_input.seekg(static_cast<std::streamoff>(*m_size - kFooterSize), std::ios::cur);
    m_input.read(reinterpret_cast<char*>(footer), kFooterSize);
    bool const whole = m_input.gcount() == static_cast<std::streamsize>(kFooterSize);
    m_input.clear();
    m_input.seekg(begin);
    uint64_t const position = whole ? LoadU64(footer + 2) : 0;
    bool const inside = position == 0 || (position >= kHeaderSize && position <= *m_size - kFooterSize);
    if (whole && IsFooterStart(footer) && inside)
        m_probableSnapshot = position;
}

bool Reader::AtEndOfInput()
{
    return m_size ? m_position >= *m_size : m_input.peek() == std::istream::traits_type::eof();
}

// Reads up to `size` bytes and returns how many there were. A file's size as it was at the start is its end:
// what a recording adds meanwhile is not looked at.
size_t Reader::ReadBytes(uint8_t* to, size_t size)
{
    if (m_size)
        size = static_cast<size_t>(std::min<uint64_t>(size, *m_size - std::min(m_position, *m_size)));
    m_input.read(reinterpret_cast<char*>(to), static_cast<std::streamsize>(size));
    size_t const have = static_cast<size_t>(m_input.gcount());
    m_position += have;
    return have;
}

bool Reader::Stop(EndState end, uint64_t offset, std::string reason)
{
    m_end = end;
    m_endOffset = offset;
    m_endReason = std::move(reason);
    m_payload = {};
    if (!m_size && (EndedInOrder() || end == EndState::Truncated))
        m_size = m_position;
    return false;
}

// A footer's first bytes are also those of a record of 0x1013 bytes or more, so ten bytes with nothing behind
// them are a footer, and in every other place they begin a record.
bool Reader::Next(Record& record)
{
    if (m_end != EndState::Reading)
        return false;
    m_recordOffset = m_position;
    uint8_t first[kFooterSize];
    size_t have = ReadBytes(first, kRecordHeaderSize);
    if (have == 0)
        return Stop(EndState::NoFooter, m_recordOffset);
    if (have < kRecordHeaderSize)
        return Stop(EndState::Truncated, m_recordOffset,
                    "the file ends " + std::to_string(have) + " bytes into a record");
    if (IsFooterStart(first))
    {
        have += ReadBytes(first + have, kFooterSize - have);
        if (have == kFooterSize && AtEndOfInput())
            return EndAtFooter(first);
        if (have < kFooterSize)
            return Stop(EndState::Truncated, m_recordOffset,
                        "the file ends " + std::to_string(have) + " bytes into a record or the footer");
    }
    if (AllZero(first, kRecordHeaderSize) && OnlyZerosFollow())
    {
        m_trailingZeros = m_position - m_recordOffset;
        return Stop(EndState::NoFooter, m_recordOffset);
    }
    uint32_t const size = LoadU32(first);
    uint16_t const id = LoadU16(first + 4);
    if (!CheckRecord(size, id, first) ||
        !ReadPayload(size, first + kRecordHeaderSize, have - kRecordHeaderSize))
        return false;
    Deliver(id, record);
    return true;
}

// Reads up to the first byte that is not zero; the walk ends in either case.
bool Reader::OnlyZerosFollow()
{
    uint8_t piece[4096];
    size_t have = 0;
    while ((have = ReadBytes(piece, sizeof piece)) != 0)
        if (!AllZero(piece, have))
            return false;
    return true;
}

bool Reader::EndAtFooter(uint8_t const* footer)
{
    uint64_t const position = LoadU64(footer + 2);
    if (position != 0 && (position < kHeaderSize || position > m_recordOffset))
        return Stop(EndState::Damaged, m_recordOffset,
                    "the footer's snapshot position " + std::to_string(position) + " is outside the records");
    m_snapshot = position;
    return Stop(EndState::Footer, m_recordOffset);
}

// Refuses what cannot be a record before anything of its size is allocated or read.
bool Reader::CheckRecord(uint32_t size, uint16_t id, uint8_t const* first)
{
    std::optional<uint32_t> const fixed = FixedPayloadSize(id);
    if (!fixed && !FindRecord(Api::Any, id))
        return Stop(EndState::Damaged, m_recordOffset,
                    IsFooterStart(first) ? "the footer is not the end: more bytes follow"
                                         : "no record has the ID " + std::to_string(id));
    if (fixed && size != *fixed)
        return Stop(EndState::Damaged, m_recordOffset,
                    "a record with ID " + std::to_string(id) + " has " + std::to_string(*fixed) +
                        " bytes, not " + std::to_string(size));
    uint64_t const left = m_size ? *m_size - m_recordOffset - kRecordHeaderSize : size;
    if (size > left)
        return Stop(EndState::Truncated, m_recordOffset,
                    "a record of " + std::to_string(size) + " bytes begins, " + std::to_string(left) +
                        " are left");
    return true;
}

// `first` is what was read of the payload together with the record's header.
bool Reader::ReadPayload(uint32_t size, uint8_t const* first, size_t firstSize)
try
{
    m_payload.assign(first, first + std::min<size_t>(firstSize, size));
    while (m_payload.size() < size)
    {
        size_t const have = m_payload.size();
        size_t const piece = std::min<size_t>(size - have, m_size ? size : std::max(kPieceSize, have / 2));
        m_payload.resize(have + piece);
        size_t const got = ReadBytes(m_payload.data() + have, piece);
        if (got < piece)
            return Stop(EndState::Truncated, m_recordOffset,
                        "a record of " + std::to_string(size) + " bytes begins, " +
                            std::to_string(have + got) + " are left");
    }
    return true;
} catch (std::bad_alloc const&)
{
    return Stop(EndState::Damaged, m_recordOffset,
                "there is no memory for a record of " + std::to_string(size) + " bytes");
}

void Reader::Deliver(uint16_t id, Record& record)
{
    if (id == kThreadChangeId)
        m_thread = LoadU64(m_payload.data());
    record.type = TypeOf(id);
    record.id = id;
    record.offset = m_recordOffset;
    record.thread = m_thread;
    record.frame = m_frame;
    record.call = m_call;
    record.payload = {m_payload.data(), m_payload.size()};
    if (record.type == RecordType::Call)
        ++m_call;
    if (id == kSwapBuffersId)
        ++m_frame;
}
}  // namespace nebtrace
