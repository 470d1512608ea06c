// Vertex attributes: where each one's values come from. Pointers into client memory never reach the driver:
// the values of a draw come with its record.
#include "player/gl_player.h"

namespace nebtrace::player
{
namespace
{
// Drivers have 16 attributes, some 32. More are an error that the driver raises, and nothing to keep.
constexpr uint32_t kMostAttributes = 64;

Attribute* Find(GlPlayer& player, Call const& call)
{
    uint32_t const index = call.Word("index");
    if (call.Failed() || index >= kMostAttributes)
        return nullptr;
    return &player.Now().BoundVertexArray().attributes[index];
}

void VertexAttribPointer(GlPlayer& player, Call const& call)
{
    // The driver's word on whether a buffer is bound: an offset without one would be a pointer to it.
    GLint bound = 0;
    player.Gl().glGetIntegerv(GL_ARRAY_BUFFER_BINDING, &bound);
    uint32_t const buffer = bound != 0 ? player.Now().arrayBuffer : 0;
    // Client memory: the driver is told of it at the draw.
    void const* const pointer =
        buffer != 0 ? reinterpret_cast<void const*>(static_cast<uintptr_t>(call.Word("pointer"))) : nullptr;
    player.Gl().glVertexAttribPointer(call.Word("index"), call.Int("size"), call.Word("type"),
                                      static_cast<GLboolean>(call.Word("normalized")), call.Int("stride"),
                                      pointer);
    Attribute* const attribute = Find(player, call);
    if (!attribute)
        return;
    attribute->size = call.Int("size");
    attribute->type = call.Word("type");
    attribute->normalized = static_cast<GLboolean>(call.Word("normalized"));
    attribute->stride = call.Int("stride");
    attribute->pointer = call.Word("pointer");
    attribute->buffer = buffer;
}

template <bool Enabled>
void EnableArray(GlPlayer& player, Call const& call)
{
    player.PlayPlain(call);
    if (Attribute* const attribute = Find(player, call))
        attribute->enabled = Enabled;
}

void Divisor(GlPlayer& player, Call const& call)
{
    player.PlayPlain(call);
    if (Attribute* const attribute = Find(player, call))
        attribute->divisor = call.Word("divisor");
}
}  // namespace

std::vector<GlEntry> Es2ArrayHandlers()
{
    return {{"glVertexAttribPointer", VertexAttribPointer},
            {"glEnableVertexAttribArray", EnableArray<true>},
            {"glDisableVertexAttribArray", EnableArray<false>},
            {"glVertexAttribDivisorANGLE", Divisor}};
}
}  // namespace nebtrace::player
