// Keeps an API's mark of use as it was.
#pragma once

// Fetching a host table marks its API as used by the application. What the library fetches a table for itself
// must not leave that mark, or a snapshot covers an API that the application does not use.
class CKeepMark
{
public:
    explicit CKeepMark(bool& mark) : m_mark(mark), m_kept(mark) {}
    ~CKeepMark() { m_mark = m_kept; }
    CKeepMark(CKeepMark const&) = delete;
    CKeepMark& operator=(CKeepMark const&) = delete;

private:
    bool& m_mark;
    bool const m_kept;
};
