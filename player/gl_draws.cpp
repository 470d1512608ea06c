// Draw calls. Nothing in a record is taken for granted: indices and arrays are held against what is there
// before the driver sees them.
#include "player/client_arrays.h"
#include "player/pixels.h"
#include <algorithm>

namespace nebtrace::player
{
namespace
{
// A draw that reads no array costs nothing but time: more vertices than this, no application draws.
constexpr uint64_t kMostBareVertices = 1U << 22;
constexpr uint64_t kMostVertices = 1U << 28;

// Missing vertices of a draw that does not begin at the first: the recorder keeps as many as are drawn, from
// the first on.
constexpr char kShortArrays[] =
    "the recorder does not keep all elements of its client arrays; zeros are drawn";

struct Indices
{
    Bytes bytes;  // of client memory, or of the bound buffer from the draw's offset on
    bool bound = false;
    uint32_t offset = 0;
};

// The driver's word on whether an element buffer is bound, the record's on whether one was.
bool FindIndices(GlPlayer& player, Call const& call, Indices& indices)
{
    GLint bound = 0;
    player.Gl().glGetIntegerv(GL_ELEMENT_ARRAY_BUFFER_BINDING, &bound);
    DecodedField const* const data = call.Find("index_data");
    indices.offset = call.Word("indices");
    indices.bytes = data ? Call::Data(*data) : Bytes{};
    indices.bound = !data || data->value == 0;
    if (!indices.bound)
        return true;
    auto const& contents = player.Shared().bufferContents;
    auto const buffer = contents.find(player.Now().BoundVertexArray().elementBuffer);
    if (bound == 0 || buffer == contents.end())
    {
        player.NotReplayed(call, "its indices are in a buffer that is not in the trace");
        return false;
    }
    Buffer const& found = buffer->second;
    size_t const begin = std::min<size_t>(indices.offset, found.bytes.size());
    indices.bytes = {found.bytes.data() + begin, found.bytes.size() - begin};
    return true;
}

uint64_t HighestIndex(Bytes bytes, uint64_t count, unsigned size)
{
    uint64_t highest = 0;
    for (uint64_t i = 0; i < count; ++i)
        highest = std::max(highest, LoadLittle(bytes.data + i * size, size));
    return highest;
}

bool MayDraw(GlPlayer& player, Call const& call, DrawExtent const& extent, uint64_t count, bool anyArray)
{
    uint64_t const most = anyArray ? kMostVertices : kMostBareVertices;
    if (count > most || extent.instances > most || count * extent.instances > most)
    {
        player.NotReplayed(call, "it draws more vertices than it has arrays for");
        return false;
    }
    std::vector<PastBuffer> const past = FindPastBuffer(player, extent);
    if (!past.empty())
        player.NotReplayed(call, "it reads attribute " + std::to_string(past.front().index) +
                                     " past the end of its buffer");
    return past.empty();
}

// Draws are handed to the driver by these, under arrays that are in place.
template <typename Draw>
void DrawWith(GlPlayer& player, Call const& call, DrawExtent const& extent, uint64_t count, Draw const& draw)
{
    ClientArrays const arrays(player, call, extent);
    if (!MayDraw(player, call, extent, count, arrays.Any()))
        return;
    if (arrays.WasPadded())
        player.NotReplayed(call, kShortArrays);
    draw();
}

// The driver refuses a negative count, and must not see a negative first.
bool IsDrawable(GlPlayer& player, Call const& call, int32_t first, int32_t count)
{
    if (first >= 0 && count >= 0)
        return true;
    if (!call.Failed())
        player.NotReplayed(call, "it has a negative extent");
    return false;
}

void DrawArrays(GlPlayer& player, Call const& call)
{
    int32_t const first = call.Int("first");
    int32_t const count = call.Int("count");
    if (!IsDrawable(player, call, first, count))
        return;
    DrawExtent extent;
    extent.vertices = count == 0 ? 0 : static_cast<uint64_t>(first) + static_cast<uint64_t>(count);
    extent.shortArrays = first > 0;
    DrawWith(player, call, extent, static_cast<uint64_t>(count),
             [&] { player.Gl().glDrawArrays(call.Word("mode"), first, count); });
}

// Runs `draw` with what the driver takes for its indices.
template <typename Draw>
void DrawIndexed(GlPlayer& player, Call const& call, uint64_t instances, Draw const& draw)
{
    int32_t const count = call.Int("count");
    unsigned const size = IndexTypeSize(call.Word("type"));
    Indices indices;
    if (!IsDrawable(player, call, 0, count) || !FindIndices(player, call, indices))
        return;
    if (size == 0)
        return call.Failed() ? void() : player.NotReplayed(call, "indices have no such type");
    auto const drawn = static_cast<uint64_t>(count);
    if (indices.bytes.size < drawn * size && indices.bound)
        return player.NotReplayed(call, "it reads past the end of its element buffer");
    if (indices.bytes.size < drawn * size)
        throw BadRecord("it has " + std::to_string(indices.bytes.size) + " bytes of indices, and needs " +
                        std::to_string(drawn * size));
    DrawExtent extent;
    extent.instances = instances;
    extent.vertices = count == 0 ? 0 : HighestIndex(indices.bytes, drawn, size) + 1;
    extent.shortArrays = indices.bound && indices.offset != 0;
    Copy const copy(indices.bound ? Bytes{} : indices.bytes);
    void const* const pointer =
        indices.bound ? reinterpret_cast<void const*>(static_cast<uintptr_t>(indices.offset)) : copy.Begin();
    GLint elementBuffer = 0;
    player.Gl().glGetIntegerv(GL_ELEMENT_ARRAY_BUFFER_BINDING, &elementBuffer);
    if (!indices.bound && elementBuffer != 0)
        player.Gl().glBindBuffer(GL_ELEMENT_ARRAY_BUFFER, 0);
    DrawWith(player, call, extent, drawn, [&] { draw(pointer); });
    if (!indices.bound && elementBuffer != 0)
        player.Gl().glBindBuffer(GL_ELEMENT_ARRAY_BUFFER, static_cast<GLuint>(elementBuffer));
}

void DrawElements(GlPlayer& player, Call const& call)
{
    DrawIndexed(player, call, 1, [&](void const* indices) {
        player.Gl().glDrawElements(call.Word("mode"), call.Int("count"), call.Word("type"), indices);
    });
}

// The extensions' draws record no client memory.
bool HasClientArray(GlPlayer& player)
{
    for (auto const& entry : player.Now().BoundVertexArray().attributes)
        if (entry.second.enabled && entry.second.buffer == 0 && entry.second.pointer != 0)
            return true;
    return false;
}

bool IsReplayable(GlPlayer& player, Call const& call, bool present)
{
    if (!present)
        player.NotReplayed(call, "the driver has no such function");
    else if (HasClientArray(player))
        player.NotReplayed(call, "its client arrays are not in the record");
    return present && !HasClientArray(player);
}

void DrawArraysInstanced(GlPlayer& player, Call const& call)
{
    int32_t const first = call.Int("first");
    int32_t const count = call.Int("count");
    int32_t const instances = call.Int("primcount");
    if (!IsDrawable(player, call, std::min(first, instances), count) ||
        !IsReplayable(player, call, player.Gl().glDrawArraysInstancedANGLE != nullptr))
        return;
    DrawExtent extent;
    extent.vertices = count == 0 ? 0 : static_cast<uint64_t>(first) + static_cast<uint64_t>(count);
    extent.instances = static_cast<uint64_t>(instances);
    DrawWith(player, call, extent, static_cast<uint64_t>(count),
             [&] { player.Gl().glDrawArraysInstancedANGLE(call.Word("mode"), first, count, instances); });
}

void DrawElementsInstanced(GlPlayer& player, Call const& call)
{
    int32_t const instances = call.Int("primcount");
    if (!IsDrawable(player, call, instances, call.Int("count")) ||
        !IsReplayable(player, call, player.Gl().glDrawElementsInstancedANGLE != nullptr))
        return;
    DrawIndexed(player, call, static_cast<uint64_t>(instances), [&](void const* indices) {
        player.Gl().glDrawElementsInstancedANGLE(call.Word("mode"), call.Int("count"), call.Word("type"),
                                                 indices, instances);
    });
}

// Its record has one count: that is enough for one draw.
void MultiDrawArrays(GlPlayer& player, Call const& call)
{
    std::vector<uint32_t> const firsts = call.Words("first");
    std::vector<uint32_t> const counts = call.Words("count");
    if (call.Int("primcount") != 1 || firsts.empty() || counts.empty())
        return player.NotReplayed(call, "its counts are not in the record");
    auto const first = static_cast<int32_t>(firsts[0]);
    auto const count = static_cast<int32_t>(counts[0]);
    if (!IsDrawable(player, call, first, count) || !IsReplayable(player, call, true))
        return;
    DrawExtent extent;
    extent.vertices = count == 0 ? 0 : static_cast<uint64_t>(first) + static_cast<uint64_t>(count);
    DrawWith(player, call, extent, static_cast<uint64_t>(count),
             [&] { player.Gl().glDrawArrays(call.Word("mode"), first, count); });
}
}  // namespace

std::vector<GlEntry> GlDrawHandlers()
{
    return {{"glDrawArrays", DrawArrays},
            {"glDrawElements", DrawElements},
            {"glDrawArraysInstancedANGLE", DrawArraysInstanced},
            {"glDrawElementsInstancedANGLE", DrawElementsInstanced},
            {"glMultiDrawArraysEXT", MultiDrawArrays}};
}
}  // namespace nebtrace::player
