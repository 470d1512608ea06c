// The indices of a draw, and the copies of element buffers in which they are found when they are not in the
// application's memory.
#pragma once
#include "api/types.h"
#include "state/buffer_object_list.h"
#include <cstdint>

class CTraceBlock;

struct SIndices
{
    GLsizei count;
    GLenum type;
    void const* argument;
};

// What both GL APIs do with element buffers, and what each has of its own for it.
struct SElementBuffers
{
    CBufferObjectList& copies;
    GLint (*hostInteger)(GLenum pname);
    // The largest of so many indices, for the types that the API looks through.
    uint32_t (*largestIndex)(GLenum type, GLsizei count, void const* indices);
    void (*logMissingCopy)(GLuint buffer);

    // Follow glBufferData and glBufferSubData at any target; an update past the end is lost from the copy.
    void Define(GLenum target, GLsizeiptr size, void const* data) const;
    void Update(GLenum target, GLintptr offset, GLsizeiptr size, void const* data) const;

    // Appends the indices and their argument, and finds the largest of them. False when they are in a buffer
    // that has no copy: the record ends there.
    bool AppendIndices(CTraceBlock& block, SIndices const& indices, uint32_t& largest) const;

private:
    GLuint BoundName() const;
    bool FindInCopy(GLuint buffer, SIndices const& indices, uint32_t& largest) const;
};

namespace Es1
{
extern SElementBuffers const ElementBuffers;
}
namespace Es2
{
extern SElementBuffers const ElementBuffers;
}
