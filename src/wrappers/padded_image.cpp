#include "wrappers/padded_image.h"
#include "wrappers/sizing.h"
#include <algorithm>
#include <cstring>

static uint32_t ReadableBytes(CPaddedImage::SLayout const& layout, GLint alignment)
{
    auto const rows = static_cast<uint64_t>(layout.rows);
    uint64_t const row = layout.tightSize / rows;
    uint64_t const step = alignment > 0 ? static_cast<uint64_t>(alignment) : 1;
    uint64_t const stride = (row + step - 1) / step * step;
    return static_cast<uint32_t>(std::min<uint64_t>(stride * (rows - 1) + row, layout.recordedSize));
}

CPaddedImage::CPaddedImage(void const* pixels, SLayout layout, GLint (*askInteger)(GLenum),
                           GLenum alignmentName)
    : m_pixels(pixels), m_size(pixels ? layout.recordedSize : 0), m_readable(m_size)
{
    if (m_size == 0 || layout.rows <= 0 || layout.tightSize >= m_size)
        return;
    if (!askInteger)
        return;
    m_readable = ReadableBytes(layout, askInteger(alignmentName));
    if (m_readable == m_size)
        return;
    m_copy.reset(new uint8_t[m_size]());
    std::memcpy(m_copy.get(), pixels, m_readable);
}

CPaddedImage::SLayout Layout2D(GLenum format, GLenum type, GLsizei width, GLsizei height, GLint alignment,
                               GLint border)
{
    return {GlImage2DSize(format, type, width, height, alignment, border),
            GlImage2DSize(format, type, width, height, 1, border), height + 2 * border};
}

CPaddedImage::SLayout Layout3D(GLenum format, GLenum type, GLsizei width, GLsizei height, GLsizei depth,
                               GLint alignment, GLint border)
{
    return {GlImage3DSize(format, type, width, height, depth, alignment, border),
            GlImage3DSize(format, type, width, height, depth, 1, border), depth * (height + 2 * border)};
}
