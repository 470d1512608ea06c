// An image of the application as long as its record says.
#pragma once
#include "api/types.h"
#include <cstdint>
#include <memory>

// The record's size counts the padding of every row, at an alignment that need not be the one that the
// application's rows have, while the driver reads no further than the last row's last pixel: the rest need
// not be the application's memory. Where there is such a rest, this holds a copy that is filled up with
// zeros.
class CPaddedImage
{
public:
    struct SLayout
    {
        uint32_t recordedSize;  // with the record's padding
        uint32_t tightSize;     // without any
        GLsizei rows;           // of all slices, borders included
    };
    // `askInteger` is the host's answer to `alignmentName`, the alignment of the application's rows; it is
    // asked only if the two sizes differ; without it all bytes are readable. Null pixels have no bytes.
    CPaddedImage(void const* pixels, SLayout layout, GLint (*askInteger)(GLenum), GLenum alignmentName);

    uint32_t Size() const { return m_size; }
    // Size() bytes.
    void const* Data() const { return m_copy ? m_copy.get() : m_pixels; }
    // How many of them are the application's own.
    uint32_t Readable() const { return m_readable; }

private:
    void const* m_pixels;
    uint32_t m_size;
    uint32_t m_readable;
    std::unique_ptr<uint8_t[]> m_copy;
};

CPaddedImage::SLayout Layout2D(GLenum format, GLenum type, GLsizei width, GLsizei height, GLint alignment,
                               GLint border);
CPaddedImage::SLayout Layout3D(GLenum format, GLenum type, GLsizei width, GLsizei height, GLsizei depth,
                               GLint alignment, GLint border);
