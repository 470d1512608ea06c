#include "wrappers/mapped_copy.h"
#include "state/trace_map.h"
#include "wrappers/host_queries.h"
#include <algorithm>
#include <cstring>

static TraceMap<unsigned int, uint32_t>& Ranges()
{
    static TraceMap<unsigned int, uint32_t> ranges;
    return ranges;
}

void CMappedRanges::Remember(GLuint buffer, GLsizeiptr length)
{
    Ranges()[buffer] = static_cast<uint32_t>(std::clamp<int64_t>(length, 0, UINT32_MAX));
}

void CMappedRanges::Forget(GLuint buffer) { Ranges().removeElement(buffer); }

bool CMappedRanges::Any() { return Ranges().Count() > 0; }

uint32_t CMappedRanges::Readable(GLuint buffer, uint32_t size)
{
    uint32_t const* const length = Ranges().Find(buffer);
    return length ? std::min(*length, size) : size;
}

CMappedCopy::GetBufferPointer CMappedCopy::AskEgl()
{
    return reinterpret_cast<GetBufferPointer>(HostFunction("glGetBufferPointervOES"));
}

// As long as the buffer, although a range may end before: the rest is zeros.
void CMappedCopy::Copy(void const* from, uint32_t size)
{
    m_data.reset(new uint8_t[size]());
    std::memcpy(m_data.get(), from, CMappedRanges::Readable(m_name, size));
    m_size = size;
}
