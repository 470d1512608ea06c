// An input taken apart from its front, and what a target calls wrong.
#pragma once
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>

namespace fuzz
{
// Behind its end everything is zero or empty.
class Input
{
public:
    Input(uint8_t const* data, size_t size) : m_data(data), m_left(size) {}

    size_t Left() const { return m_left; }
    uint8_t Byte() { return static_cast<uint8_t>(Number(1)); }
    uint16_t Short() { return static_cast<uint16_t>(Number(2)); }
    uint32_t Word() { return static_cast<uint32_t>(Number(4)); }
    std::string Take(size_t size)
    {
        size_t const taken = std::min(size, m_left);
        std::string bytes(reinterpret_cast<char const*>(m_data), taken);
        m_data += taken;
        m_left -= taken;
        return bytes;
    }
    std::string Rest() { return Take(m_left); }

private:
    uint64_t Number(size_t size)
    {
        uint64_t value = 0;
        std::string const bytes = Take(size);
        for (size_t i = bytes.size(); i > 0; --i)
            value = value << 8 | static_cast<uint8_t>(bytes[i - 1]);
        return value;
    }

    uint8_t const* m_data;
    size_t m_left;
};

// What must hold for every input. The fuzzer keeps the input for which it did not.
inline void Require(bool holds, char const* what)
{
    if (holds)
        return;
    std::fprintf(stderr, "does not hold: %s\n", what);
    std::abort();
}
}  // namespace fuzz

extern "C" int LLVMFuzzerTestOneInput(uint8_t const* data, size_t size);
