// A small language to build traces by hand: Trace().Thread(7).Record(2046, Payload().U32(0)).Footer(0).
#pragma once
#include "trace/bytes.h"
#include <cstdint>
#include <istream>
#include <streambuf>
#include <string>
#include <string_view>
#include <vector>

class Payload
{
public:
    Payload& U8(unsigned value);
    Payload& U16(unsigned value);
    Payload& U32(uint32_t value);
    Payload& U64(uint64_t value);
    Payload& Words(std::vector<uint32_t> const& values);
    Payload& Text(std::string_view text);  // the characters only
    Payload& Fill(size_t size, unsigned value);

    std::vector<uint8_t> const& All() const { return m_bytes; }
    nebtrace::Bytes View() const { return {m_bytes.data(), m_bytes.size()}; }

private:
    std::vector<uint8_t> m_bytes;
};

class Trace
{
public:
    Trace();  // with a header
    static Trace WithoutHeader();

    Trace& Record(unsigned id, Payload const& payload = {});
    Trace& Thread(uint64_t thread);
    Trace& Footer(uint64_t snapshot);
    Trace& Raw(Payload const& bytes);
    Trace& Flush();                      // glFlush of ES 2: 10 bytes
    Trace& SwapBuffers(uint32_t frame);  // 42 bytes, no pixels

    size_t Size() const { return m_bytes.size(); }
    std::string Cut(size_t size) const { return m_bytes.substr(0, size); }
    std::string const& All() const { return m_bytes; }

private:
    std::string m_bytes;
};

// A stream that cannot seek, as a pipe cannot.
class PipeBuffer : public std::streambuf
{
public:
    explicit PipeBuffer(std::string bytes);

private:
    std::string m_bytes;
};
