// The indices of a draw.
#pragma once
#include "wrappers/record_forms.h"
#include "wrappers/sizing.h"

// Pointer, size and bytes of client indices, then the argument again; indices in a buffer object leave the
// first three empty, and the argument is their offset.
struct SIndexData
{
    void const* argument;
    uint32_t size;
    bool inBuffer;

    void Append(CTraceBlock& block, SRecordState) const
    {
        AppendArray(block, inBuffer ? nullptr : argument, size, 1);
        AppendPointer(block, argument);
    }
};
inline SIndexData IndexData(void const* indices, GLsizei count, GLenum type, bool inBuffer)
{
    uint64_t const size = static_cast<uint64_t>(CountOf(count)) * GlTypeSize(type);
    return {indices, size <= UINT32_MAX ? static_cast<uint32_t>(size) : 0, inBuffer};
}
