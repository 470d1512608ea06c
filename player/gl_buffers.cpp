// Buffer objects: contents by upload and by mapping.
#include "player/arguments.h"
#include "player/gl_player.h"
#include <algorithm>
#include <cstring>

namespace nebtrace::player
{
namespace
{
// Beyond this the player keeps no contents: they would only serve draws that no driver takes.
constexpr uint64_t kMostContents = 256U << 20;

// A driver may write all of a new buffer, data or not.
constexpr int32_t kMostSize = 1 << 30;

// The recorded name of what is bound at a target, 0 for none.
uint32_t BoundAt(GlPlayer& player, GLenum target)
{
    if (target == GL_ARRAY_BUFFER)
        return player.Now().arrayBuffer;
    return target == GL_ELEMENT_ARRAY_BUFFER ? player.Now().BoundVertexArray().elementBuffer : 0;
}

void Keep(Buffer& buffer, uint64_t offset, Bytes bytes)
{
    uint64_t const end = offset + bytes.size;
    if (bytes.empty() || end > buffer.size || end > kMostContents)
        return;
    buffer.bytes.resize(std::max<size_t>(buffer.bytes.size(), static_cast<size_t>(end)));
    std::memcpy(buffer.bytes.data() + offset, bytes.data, bytes.size);
}

// What the driver reads behind the call's pointer; null for a null pointer.
class Contents
{
public:
    explicit Contents(Call const& call) : m_bytes(call.Data("data")), m_copy(m_bytes)
    {
        int32_t const size = call.Int("size");
        m_null = call.Field("data").value == 0;
        if (size > 0 && !m_null && m_bytes.size < static_cast<uint32_t>(size))
            throw BadRecord("data has " + std::to_string(m_bytes.size) + " bytes, not " +
                            std::to_string(size));
    }
    Bytes All() const { return m_null ? Bytes{} : m_bytes; }
    void const* Pointer() const { return m_null ? nullptr : m_copy.Begin(); }

private:
    Bytes m_bytes;
    Copy m_copy;
    bool m_null = false;
};

void BufferData(GlPlayer& player, Call const& call)
{
    Contents const contents(call);
    int32_t const size = call.Int("size");
    if (size > kMostSize)
        throw BadRecord("no buffer has " + std::to_string(size) + " bytes");
    GLenum const target = call.Word("target");
    player.Gl().glBufferData(target, size, contents.Pointer(), call.Word("usage"));
    uint32_t const bound = BoundAt(player, target);
    if (call.Failed() || bound == 0 || size < 0)
        return;
    Buffer& buffer = player.Shared().bufferContents[bound];
    buffer.size = static_cast<uint32_t>(size);
    buffer.bytes.clear();
    Keep(buffer, 0, contents.All());
}

void BufferSubData(GlPlayer& player, Call const& call)
{
    Contents const contents(call);
    if (!contents.Pointer())
        return;
    GLenum const target = call.Word("target");
    int32_t const offset = call.Int("offset");
    player.Gl().glBufferSubData(target, offset, call.Int("size"), contents.Pointer());
    uint32_t const bound = BoundAt(player, target);
    if (!call.Failed() && bound != 0 && offset >= 0)
        Keep(player.Shared().bufferContents[bound], static_cast<uint32_t>(offset), contents.All());
}

// Mapping does not reach the driver: the record at unmap has all that was written, and an upload brings it.
void MapBuffer(GlPlayer& player, Call const& call)
{
    uint32_t const bound = BoundAt(player, call.Word("target"));
    if (call.Failed() || bound == 0 || call.Result() == 0)
        return;
    Buffer& buffer = player.Shared().bufferContents[bound];
    buffer.mappedOffset = 0;
    if (call.Find("offset"))
        buffer.mappedOffset = call.Word("offset");
}

void UnmapBuffer(GlPlayer& player, Call const& call)
{
    GLenum const target = call.Word("target");
    uint32_t const bound = BoundAt(player, target);
    Bytes bytes = call.Data("data");
    if (call.Failed() || bound == 0 || bytes.empty())
        return;
    Buffer& buffer = player.Shared().bufferContents[bound];
    uint64_t const offset = buffer.mappedOffset;
    buffer.mappedOffset = 0;
    if (offset >= buffer.size)
        throw BadRecord("more is unmapped than the buffer holds");
    // The mapping of a range begins at its offset.
    bytes.size = static_cast<size_t>(std::min<uint64_t>(bytes.size, buffer.size - offset));
    Copy const copy(bytes);
    player.Gl().glBufferSubData(target, static_cast<GLintptr>(offset), static_cast<GLsizeiptr>(bytes.size),
                                copy.Begin());
    Keep(buffer, offset, bytes);
}

// With the mapping in the driver it would tell it what was written; the upload does.
void FlushMapped(GlPlayer&, Call const&) {}
}  // namespace

std::vector<GlEntry> GlBufferHandlers()
{
    return {{"glBufferData", BufferData},      {"glBufferSubData", BufferSubData},
            {"glMapBufferOES", MapBuffer},     {"glMapBufferRangeEXT", MapBuffer},
            {"glUnmapBufferOES", UnmapBuffer}, {"glFlushMappedBufferRangeEXT", FlushMapped}};
}
}  // namespace nebtrace::player
