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

void Point(GlPlayer& player, uint32_t index, Attribute const& attribute, void const* pointer)
{
    player.Gl().glVertexAttribPointer(index, attribute.size, attribute.type, attribute.normalized,
                                      attribute.stride, pointer);
}

void Enable(GlPlayer& player, uint32_t index, bool enabled)
{
    if (enabled)
        player.Gl().glEnableVertexAttribArray(index);
    else
        player.Gl().glDisableVertexAttribArray(index);
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
    Attribute given;
    given.size = call.Int("size");
    given.type = call.Word("type");
    given.normalized = static_cast<GLboolean>(call.Word("normalized"));
    given.stride = call.Int("stride");
    given.pointer = call.Word("pointer");
    given.buffer = buffer;
    Point(player, call.Word("index"), given, pointer);
    if (Attribute* const attribute = Find(player, call))
    {
        given.enabled = attribute->enabled;
        given.divisor = attribute->divisor;
        *attribute = given;
    }
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

ArrayCalls const kEs2Arrays = {Point, Enable};

std::vector<GlEntry> Es2ArrayHandlers()
{
    return {{"glVertexAttribPointer", VertexAttribPointer},
            {"glEnableVertexAttribArray", EnableArray<true>},
            {"glDisableVertexAttribArray", EnableArray<false>},
            {"glVertexAttribDivisorANGLE", Divisor}};
}
}  // namespace nebtrace::player
