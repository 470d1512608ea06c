// A growable array of plain values. Readers use the fields; setting the count to 0 empties it and keeps the
// storage.
#pragma once
#include <cstdint>

template <typename T>
class DynArray
{
public:
    T* m_pData = nullptr;
    uint32_t m_ui32Count = 0;
    uint32_t m_ui32Capacity = 0;

    DynArray() = default;
    DynArray(DynArray const& other) { *this = other; }
    ~DynArray() { delete[] m_pData; }

    // Grows to the source's capacity and never shrinks.
    DynArray& operator=(DynArray const& other)
    {
        if (this == &other)
            return *this;
        if (other.m_ui32Capacity)
            Reserve(other.m_ui32Capacity);
        m_ui32Count = other.m_ui32Count;
        for (uint32_t i = 0; i < m_ui32Count; ++i)
            m_pData[i] = other.m_pData[i];
        return *this;
    }

    void Append(T const& value)
    {
        T const copy = value;  // it may stand in the storage that Reserve frees
        Reserve(m_ui32Count + 1);
        m_pData[m_ui32Count++] = copy;
    }

    // The values are not this array's own.
    void Append(T const* values, uint32_t count)
    {
        if (count == 0)
            return;
        Reserve(m_ui32Count + count);
        for (uint32_t i = 0; i < count; ++i)
            m_pData[m_ui32Count + i] = values[i];
        m_ui32Count += count;
    }

private:
    void Reserve(uint32_t needed)
    {
        uint32_t capacity = m_ui32Capacity ? m_ui32Capacity : 1;
        while (capacity < needed)
            capacity *= 2;
        if (m_ui32Capacity >= capacity)
            return;
        T* const grown = new T[capacity];
        for (uint32_t i = 0; i < m_ui32Count; ++i)
            grown[i] = m_pData[i];
        delete[] m_pData;
        m_pData = grown;
        m_ui32Capacity = capacity;
    }
};
