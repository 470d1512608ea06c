// A view of bytes that someone else owns, and the reading of little-endian integers from it.
#pragma once
#include <cstddef>
#include <cstdint>

namespace nebtrace
{
struct Bytes
{
    uint8_t const* data = nullptr;
    size_t size = 0;

    uint8_t const* begin() const { return data; }
    uint8_t const* end() const { return data + size; }
    uint8_t operator[](size_t index) const { return data[index]; }
    bool empty() const { return size == 0; }
};

// Reads `size` bytes, 8 at most, as an unsigned little-endian integer. The caller has tested the length.
inline uint64_t LoadLittle(uint8_t const* at, size_t size)
{
    uint64_t value = 0;
    for (size_t i = size; i > 0; --i)
        value = value << 8 | at[i - 1];
    return value;
}

inline uint32_t LoadU32(uint8_t const* at) { return static_cast<uint32_t>(LoadLittle(at, 4)); }
inline uint16_t LoadU16(uint8_t const* at) { return static_cast<uint16_t>(LoadLittle(at, 2)); }
inline uint64_t LoadU64(uint8_t const* at) { return LoadLittle(at, 8); }
}  // namespace nebtrace
