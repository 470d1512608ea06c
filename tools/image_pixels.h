// Pixels as GL takes them, widened to four channels of eight bits, as far as a PNG can hold them.
#pragma once
#include "player/picture.h"
#include "trace/bytes.h"
#include <cstdint>
#include <string>

struct ImageLayout
{
    int32_t width = 0;
    int32_t height = 0;
    int32_t depth = 1;
    uint32_t format = 0;
    uint32_t type = 0;
    uint32_t alignment = 1;  // rows begin at multiples of it; 0, like 1, leaves no gap
};

// Converts an image to `picture`, its rows in the order of the bytes, the layers of a deep one below each
// other. The layout is not trusted: when it does not fit the bytes, or no PNG could hold the pixels as they
// are, the reason comes back, else nothing.
std::string ToPicture(ImageLayout const& layout, nebtrace::Bytes bytes, nebtrace::player::Picture& picture);
