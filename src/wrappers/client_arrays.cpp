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
        auto const* source = static_cast<uint8_t const*>(array.pointer);
        m_gathered.emplace_back(new uint8_t[static_cast<std::size_t>(size)]);
        uint8_t* target = m_gathered.back().get();
        pointer = target;
        for (uint64_t i = 0; i < elements; ++i, source += array.stride, target += elementSize)
            std::memcpy(target, source, static_cast<std::size_t>(elementSize));
    }
    AppendU32(block, array.index);
    AppendPointer(block, pointer);
    AppendU32(block, static_cast<uint32_t>(size));
    block.AppendData(static_cast<uint32_t>(size), pointer);
}
