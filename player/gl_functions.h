// Each OpenGL ES function by the ID of its records.
#pragma once
#include "player/driver.h"
#include "trace/layout.h"

namespace nebtrace::player
{
struct GlFunction
{
    size_t arguments = 0;
    uint64_t (*invoke)(Driver const& driver, uint64_t const* words) = nullptr;
    bool (*present)(Driver const& driver) = nullptr;
};

// Null if no function of the API has the ID.
GlFunction const* FindGlFunction(Api api, uint16_t id);
}  // namespace nebtrace::player
