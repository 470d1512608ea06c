// A snapshot as lines of text: its calls as `nebtrace dump` prints them, its markers as "-- ID".
#pragma once
#include "tests/wrappers/recorder.h"
#include "trace/layout.h"
#include <string>
#include <vector>

using Lines = std::vector<std::string>;

// The records in `written` as lines, thread changes left out.
Lines CallsIn(Bytes const& written, nebtrace::Api hint);

// The functions' names alone.
Lines NamesOf(Lines const& lines);

// The lines that begin with one of the names.
Lines Only(Lines const& lines, std::vector<std::string> const& names);

// A recorder whose application has run ahead of the recorded frames.
class Snapshot : public Recorder
{
protected:
    // Of the two GL APIs it has used this one.
    explicit Snapshot(nebtrace::Api api = nebtrace::Api::Es2);

    // Capture and writing at once, as at the first recorded frame with the optimisation off, or on.
    Lines Taken(bool optimize = false);
    // The two halves apart.
    void Capture();
    Lines Write(bool optimize);

    // The host's answer to glGetIntegerv.
    void HostAnswers(GLenum name, GLint value);

private:
    nebtrace::Api const m_api;
    std::vector<std::pair<GLenum, GLint>> m_integers;
};
