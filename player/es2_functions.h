// Each OpenGL ES 2 function by the ID of its records.
#pragma once
#include "player/driver.h"

namespace nebtrace::player
{
struct Es2Function
{
    size_t arguments = 0;
    uint64_t (*invoke)(Es2Functions const& gl, uint64_t const* words) = nullptr;
    bool (*present)(Es2Functions const& gl) = nullptr;
};

// Null if no function has the ID.
Es2Function const* FindEs2Function(uint16_t id);
}  // namespace nebtrace::player
