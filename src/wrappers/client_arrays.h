// Capture of client-side vertex arrays: a draw is the only moment at which they are known to be valid and
// their extent can be worked out.
#pragma once
#include "api/types.h"
#include <cstdint>
#include <memory>
#include <vector>

class CTraceBlock;

// The largest of `count` indices; 0 for none and for a type that is not an index type.
uint32_t LargestIndex(GLenum type, GLsizei count, void const* indices);

struct SClientArray
{
    uint32_t index;  // of the attribute
    GLint size;      // components
    GLenum type;
    GLsizei stride;
    void const* pointer;
};

// Appends arrays to a draw's record. It keeps the tightly packed copies of strided ones, which the block
// reads when it is destroyed: it must outlive the block.
class CClientArrayCapture
{
public:
    // `arrays`: how many there can be, as the host says.
    explicit CClientArrayCapture(GLint arrays);

    // An entry: attribute index, pointer, size in bytes, bytes. A tight array is read in place; a strided one
    // is gathered, and the pointer is the copy's.
    void Append(CTraceBlock& block, SClientArray const& array, uint64_t elements);

private:
    std::vector<std::unique_ptr<uint8_t[]>> m_gathered;
};
