// A private copy of a mapped buffer's contents.
#pragma once
#include "api/types.h"
#include "host/hosts.h"
#include <cstdint>
#include <memory>

// The name bound to one of GLES2's two buffer targets; 0 for any other.
template <typename Host>
GLuint BoundBuffer(Host& host, GLenum target)
{
    GLint name = 0;
    if (target == GL_ARRAY_BUFFER)
        host.glGetIntegerv(GL_ARRAY_BUFFER_BINDING, &name);
    else if (target == GL_ELEMENT_ARRAY_BUFFER)
        host.glGetIntegerv(GL_ELEMENT_ARRAY_BUFFER_BINDING, &name);
    return static_cast<GLuint>(name);
}

// A buffer mapped in part: what lies behind the pointer is no longer than the range. Forgotten at unmap.
class CMappedRanges
{
public:
    static void Remember(GLuint buffer, GLsizeiptr length);
    static void Forget(GLuint buffer);
    static bool Any();
    // The bytes behind the mapping of a buffer of `size` bytes.
    static uint32_t Readable(GLuint buffer, uint32_t size);
};

class CMappedCopy
{
public:
    // Copies what is mapped at `target`; false when nothing is. Asks the host, unrecorded.
    template <typename Host>
    bool Take(Host& host, GLenum target)
    {
        GLint mapped = 0;
        host.glGetBufferParameteriv(target, GL_BUFFER_MAPPED_OES, &mapped);
        if (mapped <= 0)
            return false;
        void* pointer = nullptr;
        if (auto const getPointer = host.glGetBufferPointervOES ? host.glGetBufferPointervOES : AskEgl())
            getPointer(target, GL_BUFFER_MAP_POINTER_OES, &pointer);
        host.glGetBufferParameteriv(target, GL_BUFFER_SIZE, &m_bufferSize);
        m_name = BoundBuffer(host, target);
        if (m_bufferSize > 0 && pointer)
            Copy(pointer, static_cast<uint32_t>(m_bufferSize));
        return true;
    }

    // Null and 0 when nothing was copied.
    uint8_t const* Data() const { return m_data.get(); }
    uint32_t Size() const { return m_size; }
    // What the host says of the buffer.
    GLint BufferSize() const { return m_bufferSize; }
    GLuint Name() const { return m_name; }

private:
    using GetBufferPointer = void (*)(GLenum, GLenum, void**);

    // An application that maps need not have asked for this entry.
    static GetBufferPointer AskEgl();
    void Copy(void const* from, uint32_t size);

    std::unique_ptr<uint8_t[]> m_data;
    uint32_t m_size = 0;
    GLint m_bufferSize = 0;
    GLuint m_name = 0;
};

// After a successful map of a range; after an unmap, and after a map of the whole.
template <typename Host>
void RememberMappedRange(Host& host, GLenum target, GLsizeiptr length)
{
    CMappedRanges::Remember(BoundBuffer(host, target), length);
}
template <typename Host>
void ForgetMappedRange(Host& host, GLenum target)
{
    if (CMappedRanges::Any())
        CMappedRanges::Forget(BoundBuffer(host, target));
}
