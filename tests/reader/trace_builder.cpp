#include "trace_builder.h"

// The header of every trace: magic, marker, version 14, record data, no frame buffer, 1, the type table,
// zeros.
static constexpr unsigned char kHeader[62] = {
    'N',  'E',  'B',  'T',  'r',  'a',  'c',  'e',               // magic
    0x00, 0x01, 0xFE, 0xFF,                                      // marker
    14,   0,    0,    0,                                         // version
    1,                                                           // record data
    0,                                                           // frame buffer
    1,    0,    0,    0,                                         // always 1
    31,                                                          // entries of the type table
    4,    0xFC, 4,    4,    4,    4,    4,    4,    4,    4, 4,  // the type table
    4,    4,    1,    4,    0xFF, 0xFE, 0xFC, 0xFC, 1,    2, 4,  //
    4,    4,    0xFC, 0xFC, 0xFC, 0xFC, 0,    0xFC, 0xFC,        //
    0,    0,    0,    0,    0,    0,    0,    0};

Payload& Payload::U8(unsigned value)
{
    m_bytes.push_back(static_cast<uint8_t>(value));
    return *this;
}

Payload& Payload::U16(unsigned value) { return U8(value & 255).U8(value >> 8); }

Payload& Payload::U32(uint32_t value) { return U16(value & 65535).U16(value >> 16); }

Payload& Payload::U64(uint64_t value)
{
    return U32(static_cast<uint32_t>(value)).U32(static_cast<uint32_t>(value >> 32));
}

Payload& Payload::Words(std::vector<uint32_t> const& values)
{
    for (uint32_t const value : values)
        U32(value);
    return *this;
}

Payload& Payload::Text(std::string_view text)
{
    m_bytes.insert(m_bytes.end(), text.begin(), text.end());
    return *this;
}

Payload& Payload::Fill(size_t size, unsigned value)
{
    m_bytes.insert(m_bytes.end(), size, static_cast<uint8_t>(value));
    return *this;
}

Trace::Trace() : m_bytes(reinterpret_cast<char const*>(kHeader), sizeof kHeader) {}

Trace Trace::WithoutHeader()
{
    Trace trace;
    trace.m_bytes.clear();
    return trace;
}

Trace& Trace::Raw(Payload const& bytes)
{
    m_bytes.append(bytes.All().begin(), bytes.All().end());
    return *this;
}

Trace& Trace::Record(unsigned id, Payload const& payload)
{
    return Raw(Payload().U32(static_cast<uint32_t>(payload.All().size())).U16(id)).Raw(payload);
}

Trace& Trace::Thread(uint64_t thread) { return Record(1, Payload().U64(thread)); }

Trace& Trace::Footer(uint64_t snapshot) { return Raw(Payload().U8(0x13).U8(0x10).U64(snapshot)); }

Trace& Trace::Flush() { return Record(2046, Payload().U32(0)); }

Trace& Trace::SwapBuffers(uint32_t frame)
{
    // error, result, display, surface, frame, width, height, pointer, size
    return Record(1022, Payload().Words({0x3000, 1, 0x10, 0x30, frame, 0, 0, 0, 0}));
}

PipeBuffer::PipeBuffer(std::string bytes) : m_bytes(std::move(bytes))
{
    setg(m_bytes.data(), m_bytes.data(), m_bytes.data() + m_bytes.size());
}
