// For checks that are compiled for a 32-bit machine: whether the fields of a class lie in the order in which
// a list names them.
#pragma once
#include <cstddef>

static_assert(sizeof(void*) == 4, "to be compiled for a 32-bit machine");

template <std::size_t N>
constexpr bool Rising(std::size_t const (&offsets)[N])
{
    for (std::size_t i = 1; i < N; ++i)
        if (offsets[i] <= offsets[i - 1])
            return false;
    return true;
}
