#include "wrappers/client_arrays.h"
#include "core/trace_block.h"
#include "wrappers/record_forms.h"
#include "wrappers/sizing.h"
#include <algorithm>
#include <cstring>

namespace
{

// The indices need not be aligned.
template <typename T>
uint32_t Largest(uint8_t const* indices, std::size_t count)
{
    T largest = 0;
    for (std::size_t i = 0; i < count; ++i)
    {
        T index;
        std::memcpy(&index, indices + i * sizeof index, sizeof index);
        largest = std::max(largest, index);
    }
    return largest;
}

// `Size` is that of an element where it is known ahead of the loop; 0 where it is not.
template <std::size_t Size>
void CopyElements(uint8_t* target, uint8_t const* source, GLsizei stride, std::size_t size, uint64_t count)
{
    std::size_t const step = Size == 0 ? size : Size;
    for (uint64_t i = 0; i < count; ++i, source += stride, target += step)
        std::memcpy(target, source, step);
}

// Almost all arrays are of one to four words: a call for each copy would cost more than the copy.
void Gather(uint8_t* target, SClientArray const& array, std::size_t size, uint64_t count)
{
    auto const* const source = static_cast<uint8_t const*>(array.pointer);
    switch (size)
    {
    case 4:
        return CopyElements<4>(target, source, array.stride, size, count);
    case 8:
        return CopyElements<8>(target, source, array.stride, size, count);
    case 12:
        return CopyElements<12>(target, source, array.stride, size, count);
    case 16:
        return CopyElements<16>(target, source, array.stride, size, count);
    default:
        return CopyElements<0>(target, source, array.stride, size, count);
    }
}

}  // namespace

uint32_t LargestIndex(GLenum type, GLsizei count, void const* indices)
{
    if (count <= 0 || !indices)
        return 0;
    auto const* const bytes = static_cast<uint8_t const*>(indices);
    auto const length = static_cast<std::size_t>(count);
    switch (type)
    {
    case GL_UNSIGNED_BYTE:
        return Largest<uint8_t>(bytes, length);
    case GL_UNSIGNED_SHORT:
        return Largest<uint16_t>(bytes, length);
    case GL_UNSIGNED_INT:
        return Largest<uint32_t>(bytes, length);
    default:
        return 0;
    }
}

// Room for all copies at once; what no host has is not believed.
CClientArrayCapture::CClientArrayCapture(GLint arrays)
{
    constexpr GLint kMost = 1024;
    m_gathered.reserve(static_cast<std::size_t>(std::clamp(arrays, 0, kMost)));
}

void CClientArrayCapture::Append(CTraceBlock& block, SClientArray const& array, uint64_t elements)
{
    uint64_t const elementSize = static_cast<uint64_t>(std::max(array.size, 0)) * GlTypeSize(array.type);
    uint64_t const size = elements * elementSize;
    if (size > UINT32_MAX)
        return;  // no application has that much behind a pointer: the indices are not what they seem
    void const* pointer = array.pointer;
    if (array.stride != 0 && static_cast<uint64_t>(array.stride) != elementSize)
    {
        m_gathered.emplace_back(new uint8_t[static_cast<std::size_t>(size)]);
        Gather(m_gathered.back().get(), array, static_cast<std::size_t>(elementSize), elements);
        pointer = m_gathered.back().get();
    }
    AppendU32(block, array.index);
    AppendPointer(block, pointer);
    AppendU32(block, static_cast<uint32_t>(size));
    block.AppendData(static_cast<uint32_t>(size), pointer);
}
