// Traces of a small application, built by hand: a context that is current on a surface, both of which no
// record makes, and frames of two by two pixels.
#pragma once
#include "tests/reader/trace_builder.h"

class ReplayTrace
{
public:
    ReplayTrace();  // with the context current
    ReplayTrace& MakeCurrent(uint32_t surface, uint32_t context);

    ReplayTrace& Record(unsigned id, Payload const& payload);
    ReplayTrace& Gl(unsigned id, std::vector<uint32_t> const& words);  // without an error
    ReplayTrace& ClearColor(float red, float green, float blue);
    ReplayTrace& Clear();
    // A swap with four pixels of one colour, opaque.
    ReplayTrace& Swap(uint32_t frame, unsigned red, unsigned green, unsigned blue);
    // The state of the first frame, from here to the footer.
    ReplayTrace& BeginSnapshot();

    // With a footer that gives the snapshot.
    std::string Closed() const;
    std::string Open() const { return m_trace.All(); }
    uint64_t Size() const { return m_trace.Size(); }

private:
    Trace m_trace;
    uint64_t m_snapshot = 0;
};

// The bits of a float.
uint32_t Bits(float value);
