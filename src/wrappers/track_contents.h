// What the trackers of both OpenGL ES APIs do to a record of the shadow once they have found it.
#pragma once
#include "api/types.h"
#include "state/shared_records.h"

namespace TrackContents
{

// An image as its call gave it.
struct SImage
{
    GLenum target;
    GLint level;
    GLint internalformat;
    GLsizei width;
    GLsizei height;
    GLint border;
    GLenum format;
    GLenum type;  // 0 for a compressed image
    GLint alignment;
    void const* pixels;  // as many bytes as the values above make, at the record's alignment
    bool isCompressed;
    GLsizei compressedSize;  // 0 for any other

    uint8_t* Pixels() const { return const_cast<uint8_t*>(static_cast<uint8_t const*>(pixels)); }
};
struct SSubImage
{
    GLenum target;
    GLint level;
    GLint xoffset;
    GLint yoffset;
    GLsizei width;
    GLsizei height;
    GLenum format;
    GLenum type;
    void const* pixels;
    uint32_t readable;  // bytes behind the pointer
};

// Merges an update, whose rows count as aligned so, into the record's copy of the image.
void MergeSubImage(SImageDefinition& image, SSubImage const& update, GLint alignment);

// Index into params, or -1 for a parameter that is not kept.
int ParamIndex(GLenum pname);
// A parameter truncated to an unsigned integer, as far as one holds it.
int Truncated(GLfloat value);

// The shadow counts in ints.
bool IsCountable(GLintptr offset, GLsizeiptr size);
// The record owns a copy of what the buffer was given. `size` is countable.
void DefineBuffer(BufferDefinition& record, GLuint name, GLenum target, GLsizeiptr size, void const* data,
                  GLenum usage);
// Puts bytes into the record at an offset. Bytes for which it has no room are left out: the host has taken
// them, so that the record is older than what the host holds.
void UpdateBuffer(BufferDefinition& record, GLintptr offset, GLsizeiptr size, void const* data);

template <typename Visit>
void ForEachName(GLsizei n, GLuint const* names, Visit visit)
{
    for (GLsizei i = 0; names && i < n; ++i)
        visit(names[i]);
}

}  // namespace TrackContents
