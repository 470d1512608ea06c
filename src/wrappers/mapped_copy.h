// A private copy of a mapped buffer's contents.
#pragma once
#include "api/types.h"
#include "host/hosts.h"
#include <cstring>
#include <memory>

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
        if (auto const getPointer = PointerQuery(host))
            getPointer(target, GL_BUFFER_MAP_POINTER_OES, &pointer);
        GLint size = 0;
        host.glGetBufferParameteriv(target, GL_BUFFER_SIZE, &size);
        m_name = BoundName(host, target);
        if (size > 0 && pointer)
            Copy(pointer, static_cast<uint32_t>(size));
        return true;
    }

    uint8_t const* Data() const { return m_data.get(); }
    uint32_t Size() const { return m_size; }
    // The buffer's name; 0 for a target that is neither of GLES2's two.
    GLuint Name() const { return m_name; }

private:
    using GetBufferPointer = void (*)(GLenum, GLenum, void**);

    // An application that maps need not have asked for this entry.
    template <typename Host>
    static GetBufferPointer PointerQuery(Host& host)
    {
        if (host.glGetBufferPointervOES)
            return host.glGetBufferPointervOES;
        return reinterpret_cast<GetBufferPointer>(EglHost()->eglGetProcAddress("glGetBufferPointervOES"));
    }

    template <typename Host>
    static GLuint BoundName(Host& host, GLenum target)
    {
        GLint name = 0;
        if (target == GL_ARRAY_BUFFER)
            host.glGetIntegerv(GL_ARRAY_BUFFER_BINDING, &name);
        else if (target == GL_ELEMENT_ARRAY_BUFFER)
            host.glGetIntegerv(GL_ELEMENT_ARRAY_BUFFER_BINDING, &name);
        return static_cast<GLuint>(name);
    }

    void Copy(void const* from, uint32_t size)
    {
        m_data.reset(new uint8_t[size]);
        std::memcpy(m_data.get(), from, size);
        m_size = size;
    }

    std::unique_ptr<uint8_t[]> m_data;
    uint32_t m_size = 0;
    GLuint m_name = 0;
};
