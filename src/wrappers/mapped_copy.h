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
        if (size > 0 && pointer)
            Copy(pointer, static_cast<uint32_t>(size));
        return true;
    }

    uint8_t const* Data() const { return m_data.get(); }
    uint32_t Size() const { return m_size; }

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

    void Copy(void const* from, uint32_t size)
    {
        m_data.reset(new uint8_t[size]);
        std::memcpy(m_data.get(), from, size);
        m_size = size;
    }

    std::unique_ptr<uint8_t[]> m_data;
    uint32_t m_size = 0;
};
