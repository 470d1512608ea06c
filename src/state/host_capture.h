// What a snapshot asks a host for, as tables; what both OpenGL ES APIs ask in the same way.
#pragma once
#include "api/types.h"
#include "state/shared_records.h"
#include "state/trace_map.h"
#include <algorithm>
#include <cstddef>
#include <type_traits>

namespace HostCapture
{

// Where the answer to a question goes. The kind of the field says which getter asks.
struct SField
{
    void* field;
    int booleans;  // how many bools there are, or 0
    bool isFloat;
};
template <typename T>
SField FieldOf(T* field, int count = 1)
{
    return {field, std::is_same_v<T, bool> ? count : 0, std::is_same_v<T, float>};
}

template <typename State>
struct SQuery
{
    GLenum name;
    SField (*field)(State& state);
};

template <typename Host>
void AskBooleans(Host& host, GLenum name, bool* field, int count)
{
    GLboolean values[4] = {};
    std::copy(field, field + count, values);  // what the host does not answer stays
    host.glGetBooleanv(name, values);
    std::transform(values, values + count, field, [](GLboolean value) { return value != GL_FALSE; });
}

template <typename Host, typename State, std::size_t N>
void Ask(Host& host, State& state, SQuery<State> const (&queries)[N])
{
    for (SQuery<State> const& query : queries)
    {
        SField const field = query.field(state);
        if (field.booleans)
            AskBooleans(host, query.name, static_cast<bool*>(field.field), field.booleans);
        else if (field.isFloat)
            host.glGetFloatv(query.name, static_cast<GLfloat*>(field.field));
        else
            host.glGetIntegerv(query.name, static_cast<GLint*>(field.field));
    }
}

// Leaves the last of them bound.
inline void AskRenderbuffers(TraceMap<unsigned int, RBODefinition>& renderbuffers,
                             void (*bind)(GLenum, GLuint), void (*getParameter)(GLenum, GLenum, GLint*))
{
    for (int slot = 0; slot < renderbuffers.Count(); ++slot)
    {
        RBODefinition& renderbuffer = renderbuffers.ValueAt(slot);
        if (!renderbuffer.firstBind || renderbuffer.name == 0)
            continue;
        bind(GL_RENDERBUFFER, renderbuffer.name);
        getParameter(GL_RENDERBUFFER, GL_RENDERBUFFER_WIDTH, &renderbuffer.width);
        getParameter(GL_RENDERBUFFER, GL_RENDERBUFFER_HEIGHT, &renderbuffer.height);
        getParameter(GL_RENDERBUFFER, GL_RENDERBUFFER_INTERNAL_FORMAT,
                     reinterpret_cast<GLint*>(&renderbuffer.internalformat));
    }
}

// Leaves the last of them bound.
template <typename Host>
void AskMappedBuffers(Host& host, TraceMap<unsigned int, BufferDefinition>& buffers)
{
    for (int slot = 0; slot < buffers.Count(); ++slot)
    {
        BufferDefinition& buffer = buffers.ValueAt(slot);
        GLint mapped = 0;
        host.glBindBuffer(buffer.bufferTarget, buffer.bufferName);
        host.glGetBufferParameteriv(buffer.bufferTarget, GL_BUFFER_MAPPED_OES, &mapped);
        buffer.isMappedOES = mapped == 1;
    }
}

}  // namespace HostCapture
