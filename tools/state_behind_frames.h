// Finds the captured state that stands behind the frames of a trace without a footer to point at it.
//
// A recorder with OptimizeRS writes it there: EGL's part between two markers, then ES 2's between two of its
// own, or ES 1's, whose end has no marker. Without OptimizeRS the state stands ahead of the frames.
#pragma once
#include "trace/reader.h"

class StateBehindFrames
{
public:
    // Every record of the trace, in order.
    void Look(nebtrace::Record const& record);

    // The offset of its first record, which may be a thread change; 0 if there is none.
    uint64_t Begin() const { return m_begin; }
    // False when the trace ends inside a part, or goes on behind the last one.
    bool MayBeWhole() const
    {
        return m_begin != 0 && !m_callsBehind && (m_open == 0 || m_open == nebtrace::kEs1StateId);
    }
    // ES 2's part is the last one: behind its end nothing is missing.
    bool IsClosed() const { return m_es2Closed; }

private:
    void LookAtMarker(nebtrace::Record const& record);

    bool m_frameEnded = false;
    uint64_t m_threadChange = 0;  // offset of a thread change that stands right before, or 0
    uint64_t m_begin = 0;
    uint16_t m_open = 0;  // the marker of the part that has begun and not ended
    bool m_es2Closed = false;
    bool m_callsBehind = false;  // behind the last marker, in no part
};
