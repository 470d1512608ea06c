#include "replay_trace.h"
#include <cstring>

uint32_t Bits(float value)
{
    uint32_t bits = 0;
    std::memcpy(&bits, &value, sizeof bits);
    return bits;
}

ReplayTrace::ReplayTrace()
{
    m_trace.Thread(7);
    MakeCurrent(0x30, 0x40);
}

ReplayTrace& ReplayTrace::MakeCurrent(uint32_t surface, uint32_t context)
{
    // error, result, display, draw, read, context, config, and no attributes of the config
    return Record(1018, Payload().Words({0x3000, 1, 0x10, surface, surface, context, 0, 0, 0}));
}

ReplayTrace& ReplayTrace::Record(unsigned id, Payload const& payload)
{
    m_trace.Record(id, payload);
    return *this;
}

ReplayTrace& ReplayTrace::Gl(unsigned id, std::vector<uint32_t> const& words)
{
    return Record(id, Payload().U32(0).Words(words));
}

ReplayTrace& ReplayTrace::ClearColor(float red, float green, float blue)
{
    return Gl(2017, {Bits(red), Bits(green), Bits(blue), Bits(1)});
}

ReplayTrace& ReplayTrace::Clear() { return Gl(2016, {0x4000}); }

ReplayTrace& ReplayTrace::Swap(uint32_t frame, unsigned red, unsigned green, unsigned blue)
{
    Payload swap;
    swap.Words({0x3000, 1, 0x10, 0x30, frame, 2, 2, 0x1234, 16});
    for (int pixel = 0; pixel < 4; ++pixel)
        swap.U8(red).U8(green).U8(blue).U8(255);
    return Record(1022, swap);
}

ReplayTrace& ReplayTrace::BeginSnapshot()
{
    m_snapshot = m_trace.Size();
    return *this;
}

std::string ReplayTrace::Closed() const { return Trace(m_trace).Footer(m_snapshot).All(); }
