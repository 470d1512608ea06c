#include "wrappers/argument_records.h"
#include "api/types.h"
#include "core/trace_block.h"
#include "wrappers/sizing.h"
#include <cstring>

namespace
{

uint32_t LengthOf(char const* text) { return text ? static_cast<uint32_t>(std::strlen(text)) : 0; }

// u32 pointer (its low word), u32 count, then the elements. A size that leaves 32 bits is no size.
void AppendCounted(CTraceBlock& block, void const* pointer, uint32_t count, uint32_t elementSize)
{
    uint32_t const word = static_cast<uint32_t>(reinterpret_cast<uintptr_t>(pointer));
    uint64_t const bytes = static_cast<uint64_t>(count) * elementSize;
    uint32_t const recorded = bytes <= UINT32_MAX ? count : 0;
    block.AppendValue(sizeof word, &word);
    block.AppendValue(sizeof recorded, &recorded);
    block.AppendData(recorded * elementSize, pointer);
}

}  // namespace

void SArrayR::Append(CTraceBlock& block, uint32_t elementSize) const
{
    AppendCounted(block, m_pArray, m_ui32Count, elementSize);
}

void SStringListR::SetSizes(int count, int const* lengths)
{
    m_ui32Count = m_pTexts && count > 0 ? static_cast<uint32_t>(count) : 0;
    delete[] m_pSizes;
    m_pSizes = m_ui32Count ? new uint32_t[m_ui32Count] : nullptr;
    for (uint32_t i = 0; i < m_ui32Count; ++i)
    {
        // A missing text has no bytes, whatever its length says: the record stays walkable.
        bool const measured = lengths && lengths[i] >= 0 && m_pTexts[i];
        m_pSizes[i] = measured ? static_cast<uint32_t>(lengths[i]) : LengthOf(m_pTexts[i]);
    }
}

SEglAttribListR::SEglAttribListR(int const* attribs) : m_pAttribs(attribs), m_ui32Count(0)
{
    if (!attribs)
        return;
    while (attribs[m_ui32Count] != EGL_NONE)
        m_ui32Count += 2;
    ++m_ui32Count;
}

uint32_t SImage2DR::SetImageSize(unsigned int format, unsigned int type, int width, int height, int alignment,
                                 int border)
{
    uint32_t const size = GlImage2DSize(format, type, width, height, alignment, border);
    m_ui32Size = m_pPixels ? size : 0;
    return size;
}

uint32_t SImage3DR::SetImageSize(unsigned int format, unsigned int type, int width, int height, int depth,
                                 int alignment, int border)
{
    uint32_t const size = GlImage3DSize(format, type, width, height, depth, alignment, border);
    m_ui32Size = m_pPixels ? size : 0;
    return size;
}

CTraceBlock& operator<<(CTraceBlock& block, SStringR const& text)
{
    AppendCounted(block, text.m_pText, LengthOf(text.m_pText), 1);
    return block;
}

CTraceBlock& operator<<(CTraceBlock& block, SStringListR const& list)
{
    AppendCounted(block, list.m_pTexts, list.m_ui32Count, 0);
    for (uint32_t i = 0; i < list.m_ui32Count; ++i)
        AppendCounted(block, list.m_pTexts[i], list.m_pSizes[i], 1);
    return block;
}

CTraceBlock& operator<<(CTraceBlock& block, SEglAttribListR const& list)
{
    AppendCounted(block, list.m_pAttribs, list.m_ui32Count, sizeof(int));
    return block;
}

CTraceBlock& operator<<(CTraceBlock& block, SImage2DR const& image)
{
    AppendCounted(block, image.m_pPixels, image.m_ui32Size, 1);
    return block;
}

CTraceBlock& operator<<(CTraceBlock& block, SImage3DR const& image)
{
    AppendCounted(block, image.m_pPixels, image.m_ui32Size, 1);
    return block;
}
