// Frames as pictures: what a record holds, and how two of them differ. Rows as GL has them, the lowest first;
// four bytes a pixel, red first.
#pragma once
#include "player/call.h"
#include <cstdint>
#include <optional>
#include <vector>

namespace nebtrace::player
{
struct Picture
{
    int width = 0;
    int height = 0;
    std::vector<uint8_t> pixels;
};

// The picture in an eglSwapBuffers record, if there is one. Throws BadRecord if its size is not that of the
// pixels.
std::optional<Picture> RecordedPicture(Call const& call);

struct Difference
{
    uint64_t pixels = 0;   // that differ; all, if the sizes do
    unsigned largest = 0;  // difference of one channel
};

Difference Compare(Picture const& one, Picture const& other);

// The channels' differences, spread so that the smallest shows; opaque.
Picture DifferencePicture(Picture const& one, Picture const& other);
}  // namespace nebtrace::player
