// The fixed arrays of OpenGL ES 1, and its crop rectangles. The arrays go by the numbers that the records of
// draws name them by. Pointers into client memory never reach the driver: the values of a draw come with its
// record.
#include "player/gl_player.h"
#include <GLES/gl.h>
#include <GLES/glext.h>
#include <iterator>

namespace nebtrace::player
{
namespace
{
// By number; the texture coordinates of all units follow.
constexpr GLenum kArrays[] = {GL_COLOR_ARRAY,          GL_NORMAL_ARRAY,           GL_VERTEX_ARRAY,
                              GL_POINT_SIZE_ARRAY_OES, GL_MATRIX_INDEX_ARRAY_OES, GL_WEIGHT_ARRAY_OES};
constexpr uint32_t kTextureCoords = std::size(kArrays);
constexpr uint32_t kMostUnits = 32;
constexpr uint32_t kUnknown = kTextureCoords + kMostUnits;

// The number of an array; of texture coordinates, that of the client's active unit.
uint32_t NumberOf(GlPlayer& player, GLenum array)
{
    for (uint32_t number = 0; number < kTextureCoords; ++number)
        if (kArrays[number] == array)
            return number;
    uint32_t const unit = player.Now().clientActiveTexture - GL_TEXTURE0;
    return array == GL_TEXTURE_COORD_ARRAY && unit < kMostUnits ? kTextureCoords + unit : kUnknown;
}

// The driver's pointer to texture coordinates is that of its active unit.
template <typename Function>
void WithUnitOf(GlPlayer& player, uint32_t number, Function const& function)
{
    if (number < kTextureCoords)
        return function();
    player.Es1().glClientActiveTexture(GL_TEXTURE0 + number - kTextureCoords);
    function();
    player.Es1().glClientActiveTexture(player.Now().clientActiveTexture);
}

void Point(GlPlayer& player, uint32_t number, Attribute const& array, void const* pointer)
{
    Es1Functions const& gl = player.Es1();
    switch (number < kTextureCoords ? kArrays[number] : GL_TEXTURE_COORD_ARRAY)
    {
    case GL_COLOR_ARRAY:
        return gl.glColorPointer(array.size, array.type, array.stride, pointer);
    case GL_NORMAL_ARRAY:
        return gl.glNormalPointer(array.type, array.stride, pointer);
    case GL_VERTEX_ARRAY:
        return gl.glVertexPointer(array.size, array.type, array.stride, pointer);
    case GL_POINT_SIZE_ARRAY_OES:
        return gl.glPointSizePointerOES ? gl.glPointSizePointerOES(array.type, array.stride, pointer)
                                        : void();
    case GL_MATRIX_INDEX_ARRAY_OES:
        return gl.glMatrixIndexPointerOES
                   ? gl.glMatrixIndexPointerOES(array.size, array.type, array.stride, pointer)
                   : void();
    case GL_WEIGHT_ARRAY_OES:
        return gl.glWeightPointerOES ? gl.glWeightPointerOES(array.size, array.type, array.stride, pointer)
                                     : void();
    default:
        return WithUnitOf(player, number,
                          [&] { gl.glTexCoordPointer(array.size, array.type, array.stride, pointer); });
    }
}

void Enable(GlPlayer& player, uint32_t number, bool enabled)
{
    auto const change = enabled ? player.Es1().glEnableClientState : player.Es1().glDisableClientState;
    WithUnitOf(player, number,
               [&] { change(number < kTextureCoords ? kArrays[number] : GL_TEXTURE_COORD_ARRAY); });
}

// `size`: of an array whose call has no such argument.
template <GLenum Array, GLint Size>
void Pointer(GlPlayer& player, Call const& call)
{
    uint32_t const number = NumberOf(player, Array);
    // A captured state also tells of arrays that were never set: texture coordinates without a type.
    bool const neverSet = player.InState() && call.Word("type") == 0;
    if (number == kUnknown || neverSet)
        return;
    // The driver's word on whether a buffer is bound: an offset without one would be a pointer to it.
    GLint bound = 0;
    player.Gl().glGetIntegerv(GL_ARRAY_BUFFER_BINDING, &bound);
    Attribute given;
    given.size = call.Find("size") ? call.Int("size") : Size;
    given.type = call.Word("type");
    given.stride = call.Int("stride");
    given.pointer = call.Word("pointer");
    given.buffer = bound != 0 ? player.Now().arrayBuffer : 0;
    Point(player, number, given,
          given.buffer != 0 ? reinterpret_cast<void const*>(static_cast<uintptr_t>(given.pointer)) : nullptr);
    if (call.Failed())
        return;
    Attribute& kept = player.Now().BoundVertexArray().attributes[number];
    given.enabled = kept.enabled;
    kept = given;
}

template <bool Enabled>
void ClientState(GlPlayer& player, Call const& call)
{
    uint32_t const number = NumberOf(player, call.Word("array"));
    // A captured state also disables arrays that the driver need not have.
    if (player.InState() && number != kUnknown &&
        player.Now().BoundVertexArray().attributes[number].enabled == Enabled)
        return;
    player.PlayPlain(call);
    if (!call.Failed() && number != kUnknown)
        player.Now().BoundVertexArray().attributes[number].enabled = Enabled;
}

// A rectangle is recorded by the first of its four numbers.
void TexParameter(GlPlayer& player, Call const& call)
{
    if (call.Word("pname") == GL_TEXTURE_CROP_RECT_OES)
        return player.NotReplayed(call, "its rectangle is not in the record");
    player.PlayPlain(call);
}

void ClientActiveTexture(GlPlayer& player, Call const& call)
{
    player.PlayPlain(call);
    if (!call.Failed())
        player.Now().clientActiveTexture = call.Word("texture");
}
}  // namespace

ArrayCalls const kEs1Arrays = {Point, Enable};

std::vector<GlEntry> Es1ArrayHandlers()
{
    return {{"glColorPointer", Pointer<GL_COLOR_ARRAY, 4>},
            {"glNormalPointer", Pointer<GL_NORMAL_ARRAY, 3>},
            {"glVertexPointer", Pointer<GL_VERTEX_ARRAY, 4>},
            {"glTexCoordPointer", Pointer<GL_TEXTURE_COORD_ARRAY, 4>},
            {"glPointSizePointerOES", Pointer<GL_POINT_SIZE_ARRAY_OES, 1>},
            {"glMatrixIndexPointerOES", Pointer<GL_MATRIX_INDEX_ARRAY_OES, 1>},
            {"glWeightPointerOES", Pointer<GL_WEIGHT_ARRAY_OES, 1>},
            {"glEnableClientState", ClientState<true>},
            {"glDisableClientState", ClientState<false>},
            {"glClientActiveTexture", ClientActiveTexture},
            {"glTexParameterfv", TexParameter},
            {"glTexParameteriv", TexParameter},
            {"glTexParameterxv", TexParameter},
            {"glTexParameterxvOES", TexParameter}};
}
}  // namespace nebtrace::player
