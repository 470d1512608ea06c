#include "tests/profiler/no_memory.h"
#include <cstddef>

extern "C" void* __real_calloc(std::size_t count, std::size_t size);

// Every calloc of the program ends up here.
extern "C" void* __wrap_calloc(std::size_t count, std::size_t size)
{
    return NoMemory::Active() ? nullptr : __real_calloc(count, size);
}
