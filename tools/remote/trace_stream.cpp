#include "tools/remote/trace_stream.h"
#include "tools/commands.h"
#include "trace/bytes.h"
#include "trace/format.h"
#include "trace/layout.h"
#include <algorithm>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <system_error>

using namespace nebtrace;

namespace remote
{
namespace
{
constexpr size_t kPositionOffset = 2;  // in the footer

bool IsMarker(uint16_t id) { return id == kEglStateId || id == kEs1StateId || id == kEs2StateId; }

bool IsRecord(uint16_t id, uint32_t size)
{
    if (IsMarker(id))
        return size == 0;
    if (id == kThreadChangeId)
        return size == kThreadChangeSize;
    return FindRecord(Api::Any, id) != nullptr;
}
}  // namespace

TraceStream::TraceStream(std::string path) : m_path(std::move(path))
{
    if (m_path.empty())
        return;
    m_file.open(m_path, std::ios::binary | std::ios::trunc);
    if (!m_file)
        Fail();
}

void TraceStream::Fail() const
{
    throw CommandFailed("cannot write " + m_path +
                        (errno != 0 ? std::string(": ") + std::strerror(errno) : ""));
}

void TraceStream::Add(std::vector<uint8_t> const& bytes)
{
    if (AtFooter())
        return;
    m_bytes += bytes.size();
    if (m_file.is_open() && !m_file.write(reinterpret_cast<char const*>(bytes.data()),
                                          static_cast<std::streamsize>(bytes.size())))
        Fail();
    if (!m_gap.empty())
        return;
    size_t const skipped = static_cast<size_t>(std::min<uint64_t>(m_skip, bytes.size()));
    m_skip -= skipped;
    m_offset += skipped;
    m_pending.Add(bytes.data() + skipped, bytes.size() - skipped);
    while (m_gap.empty() && Step())
    {
    }
    if (AtFooter() && m_pending.Size() > kFooterSize)
    {
        m_bytes -= m_pending.Size() - kFooterSize;
        m_pending.CutTo(kFooterSize);
        m_tooLong = true;
    }
}

void TraceStream::Close()
{
    if (!m_file.is_open())
        return;
    if (AtFooter() && m_endState != 0)
    {
        // A place that is there already is the same one.
        m_file.seekp(static_cast<std::streamoff>(m_bytes - sizeof m_endState));
        for (unsigned shift = 0; shift < 64; shift += 8)
            m_file.put(static_cast<char>(m_endState >> shift));
    }
    m_file.close();
    std::error_code error;
    if (m_tooLong)
        std::filesystem::resize_file(m_path, m_bytes, error);
    if (m_file.fail() || error)
        Fail();
}

// Takes what stands first, if it is there as far as it must be; false when more bytes are needed.
bool TraceStream::Step()
{
    // What begins like the footer may be it, and is not told from a record before it could be whole.
    bool const mayEnd =
        m_pending.Size() >= 2 && m_pending[0] == kFooterFirst && m_pending[1] == kFooterSecond;
    size_t const needed = !m_pastHeader ? kHeaderSize : mayEnd ? kFooterSize : kRecordHeaderSize;
    if (m_skip != 0 || m_pending.Size() < needed || AtFooter())
        return false;
    uint64_t const before = m_offset;
    if (m_pastHeader)
        TakeRecord();
    else
        TakeHeader();
    size_t const taken = static_cast<size_t>(std::min<uint64_t>(m_offset - before, m_pending.Size()));
    m_skip = m_offset - before - taken;
    m_offset = before + taken;
    m_pending.DropFront(taken);
    return true;
}

void TraceStream::TakeHeader()
{
    if (std::memcmp(m_pending.Data(), kMagic, kMagicSize) != 0)
        return SetGap("the beginning of the trace is missing");
    m_pastHeader = true;
    m_offset += kHeaderSize;
}

void TraceStream::TakeRecord()
{
    uint32_t const size = LoadU32(m_pending.Data());
    uint16_t const id = static_cast<uint16_t>(m_pending[4] | (m_pending[5] << 8));
    if (!IsRecord(id, size))
        return SetGap("bytes are missing ahead of offset " + std::to_string(m_offset));
    m_frames += id == kSwapBuffersId ? 1 : 0;
    NoteState(id);
    m_offset += kRecordHeaderSize + uint64_t{size};
}

// The state at the end begins with its first marker, or with the word on the thread that writes it.
void TraceStream::NoteState(uint16_t id)
{
    if (IsMarker(id))
    {
        m_states.insert(m_offset);
        if (!m_inState && m_endState == 0)
            m_endState = m_threadChange != 0 ? m_threadChange : m_offset;
        m_inState = !m_inState;
    }
    else if (id == kThreadChangeId && !m_inState)
        m_threadChange = m_endState == 0 ? m_offset : m_threadChange;
    else if (!m_inState)
        m_endState = m_threadChange = 0;
}

bool TraceStream::AtFooter() const
{
    if (!m_pastHeader || m_skip != 0 || m_pending.Size() < kFooterSize || m_pending[0] != kFooterFirst ||
        m_pending[1] != kFooterSecond)
        return false;
    uint64_t const position = LoadU32(m_pending.Data() + kPositionOffset) |
                              uint64_t{LoadU32(m_pending.Data() + kPositionOffset + 4)} << 32;
    return position == 0 || position == m_endState || m_states.count(position) != 0;
}

void TraceStream::SetGap(std::string const& what)
{
    m_gap = what;
    m_pending.Clear();
}
}  // namespace remote
