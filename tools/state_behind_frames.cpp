#include "state_behind_frames.h"

using namespace nebtrace;

void StateBehindFrames::Look(Record const& record)
{
    if (record.type == RecordType::StateMarker && m_frameEnded)
        LookAtMarker(record);
    if (record.type == RecordType::Call && m_begin != 0 && m_open == 0)
        m_callsBehind = true;
    // While the state is written, frames cannot end: a swap behind it begins the search anew.
    if (record.id == kSwapBuffersId)
        *this = {};
    m_frameEnded = m_frameEnded || record.id == kSwapBuffersId;
    m_threadChange = record.type == RecordType::ThreadChange ? record.offset : 0;
}

void StateBehindFrames::LookAtMarker(Record const& record)
{
    if (m_begin == 0)
        m_begin = m_threadChange != 0 ? m_threadChange : record.offset;
    m_callsBehind = false;
    if (m_open == record.id)
    {
        m_es2Closed = record.id == kEs2StateId;
        m_open = 0;
    }
    else
        m_open = record.id;
}
