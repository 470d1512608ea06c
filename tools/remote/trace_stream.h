// The trace that comes in over a connection: written to its file as it is, and walked on the way, so that the
// client can count frames and knows where it stands.
#pragma once
#include "tools/byte_queue.h"
#include <cstdint>
#include <fstream>
#include <set>
#include <string>
#include <vector>

namespace remote
{
class TraceStream
{
public:
    // An empty path keeps nothing. Throws CommandFailed when the file cannot be written.
    explicit TraceStream(std::string path);

    // Throws CommandFailed when the disk is full.
    void Add(std::vector<uint8_t> const& bytes);
    // A recorder that keeps no file of its own cannot tell where in the trace the state at its end begins,
    // and its footer gives 0: then the place is written into the file here, by which it can be replayed.
    void Close();

    std::string const& Path() const { return m_path; }
    uint64_t Bytes() const { return m_bytes; }
    uint64_t Frames() const { return m_frames; }
    // Whether the end of the recording has come. What comes behind it, calls of other threads that were under
    // way, is left out.
    bool AtFooter() const;
    // What cannot be part of a trace, and where: bytes are missing ahead of it. Empty while all is well.
    std::string const& Gap() const { return m_gap; }
    // Whether the gap is at the very beginning: no header came first.
    bool LacksBeginning() const { return !m_gap.empty() && !m_pastHeader; }

private:
    bool Step();
    void TakeHeader();
    void TakeRecord();
    void NoteState(uint16_t id);
    [[noreturn]] void Fail() const;
    void SetGap(std::string const& what);

    std::string m_path;
    std::ofstream m_file;
    ByteQueue m_pending;  // from the beginning of a header or record on
    uint64_t m_bytes = 0;
    uint64_t m_offset = 0;  // of what is pending
    uint64_t m_skip = 0;    // bytes of a payload that are still to come
    uint64_t m_frames = 0;
    bool m_pastHeader = false;
    bool m_tooLong = false;       // the file has bytes behind the footer
    std::set<uint64_t> m_states;  // offsets of the markers of a captured state
    bool m_inState = false;
    uint64_t m_endState = 0;      // where the state begins that no call follows; 0 if there is none
    uint64_t m_threadChange = 0;  // the thread change that no call follows
    std::string m_gap;
};
}  // namespace remote
