// How much memory the driver reads for an image.
#pragma once
#include "api/types.h"
#include <cstdint>

namespace nebtrace::player
{
// Bytes of a pixel; 0 for a format and type that are not known.
unsigned PixelSize(GLenum format, GLenum type);

struct ImageShape
{
    int32_t width = 0;
    int32_t height = 0;
    int32_t depth = 1;
    unsigned pixelSize = 0;
};

// Whether rows of images can begin at its multiples.
bool IsAlignment(int32_t value);

// Bytes up to the last row's last pixel, with rows that begin at multiples of the alignment. 0 for an image
// without pixels or with an alignment that GL has not.
uint64_t ImageSize(ImageShape const& shape, int32_t alignment);

// Bytes of one component of a vertex attribute; 0 for a type that is not known.
unsigned ComponentSize(GLenum type);
// Bytes of one index; 0 for a type that indices cannot have.
unsigned IndexTypeSize(GLenum type);
}  // namespace nebtrace::player
