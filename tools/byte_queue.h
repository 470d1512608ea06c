// Bytes of a stream that have come and are not done with.
#pragma once
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <vector>

// Bytes join at the end and leave at the front. What has left is moved out of the way when more bytes come,
// so that each byte is moved once, or few times.
class ByteQueue
{
public:
    void Add(uint8_t const* bytes, size_t size)
    {
        m_bytes.erase(m_bytes.begin(), Position(m_left));
        m_left = 0;
        m_bytes.insert(m_bytes.end(), bytes, bytes + size);
    }
    // At most as many as there are.
    void DropFront(size_t count) { m_left += std::min(count, Size()); }
    void Clear() { DropFront(Size()); }
    // Drops what stands behind the first `size` bytes.
    void CutTo(size_t size) { m_bytes.resize(m_left + std::min(size, Size())); }

    // What is there, until the next change.
    uint8_t const* Data() const { return m_bytes.data() + m_left; }
    size_t Size() const { return m_bytes.size() - m_left; }
    uint8_t operator[](size_t index) const { return m_bytes[m_left + index]; }

private:
    std::vector<uint8_t>::const_iterator Position(size_t index) const
    {
        return m_bytes.begin() + static_cast<std::ptrdiff_t>(index);
    }

    std::vector<uint8_t> m_bytes;
    size_t m_left = 0;  // of those, the first so many are done with
};
