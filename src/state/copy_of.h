// A copy of an array, on the heap.
#pragma once
#include <algorithm>
#include <cstddef>

// Null for nothing.
template <typename T>
T* CopyOf(T const* from, int count)
{
    if (!from || count <= 0)
        return nullptr;
    T* const copy = new T[static_cast<std::size_t>(count)];
    std::copy(from, from + count, copy);
    return copy;
}
