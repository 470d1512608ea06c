// The bytes of expected records, written out field by field.
#pragma once
#include <cstdint>
#include <cstring>
#include <initializer_list>
#include <string>
#include <vector>

using Bytes = std::vector<uint8_t>;

inline Bytes Raw(void const* data, size_t size)
{
    auto const* const bytes = static_cast<uint8_t const*>(data);
    return Bytes(bytes, bytes + size);
}

inline Bytes Little(uint64_t value, size_t size)
{
    Bytes bytes;
    for (size_t i = 0; i < size; ++i)
        bytes.push_back(static_cast<uint8_t>(value >> (8 * i)));
    return bytes;
}

inline Bytes U8(uint8_t value) { return {value}; }
inline Bytes U16(uint16_t value) { return Little(value, 2); }
inline Bytes U32(uint64_t value) { return Little(value, 4); }
inline Bytes I32(int value) { return Little(static_cast<uint32_t>(value), 4); }
inline Bytes U64(uint64_t value) { return Little(value, 8); }
inline Bytes F32(float value) { return Raw(&value, sizeof value); }
inline Bytes Chars(std::string const& text) { return Bytes(text.begin(), text.end()); }

// A pointer or handle: the low 32 bits, on every machine.
template <typename T>
Bytes Ptr(T pointer)
{
    return U32(reinterpret_cast<uintptr_t>(pointer));
}

inline Bytes Words(std::initializer_list<uint32_t> words)
{
    Bytes bytes;
    for (uint32_t word : words)
        for (uint8_t byte : U32(word))
            bytes.push_back(byte);
    return bytes;
}

template <typename... Parts>
Bytes Joined(Parts const&... parts)
{
    Bytes all;
    (all.insert(all.end(), parts.begin(), parts.end()), ...);
    return all;
}

// u32 payload length, u16 ID, payload.
template <typename... Fields>
Bytes Expected(uint16_t id, Fields const&... fields)
{
    Bytes const payload = Joined(fields...);
    return Joined(U32(payload.size()), U16(id), payload);
}
