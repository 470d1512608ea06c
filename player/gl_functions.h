// Each OpenGL ES 2 function by the ID of its records.
#pragma once
#include "player/driver.h"

namespace nebtrace::player
{
struct GlFunction
{
    size_t arguments = 0;
    uint64_t (*invoke)(GlFunctions const& gl, uint64_t const* words) = nullptr;
    bool (*present)(GlFunctions const& gl) = nullptr;
};

// Null if no function has the ID.
GlFunction const* FindGlFunction(uint16_t id);
}  // namespace nebtrace::player
