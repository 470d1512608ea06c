// Uniform values, set at the locations that the player's own programs have.
#include "player/arguments.h"
#include "player/gl_player.h"

namespace nebtrace::player
{
namespace
{
// A location that the recording never asked for, such as that of an array's later element, stays as it is:
// most drivers count alike.
GLint OwnLocation(GlPlayer& player, uint32_t program, int32_t recorded)
{
    auto const& programs = player.Shared().programState;
    auto const found = programs.find(program);
    if (found == programs.end())
        return recorded;
    auto const uniform = found->second.uniforms.find(recorded);
    return uniform == found->second.uniforms.end() ? recorded : uniform->second.own;
}

struct Values
{
    GLint location;
    GLsizei count;
    Copy copy;

    template <typename T>
    T const* As() const
    {
        return reinterpret_cast<T const*>(copy.Begin());
    }
};

Values Read(GlPlayer& player, Call const& call)
{
    int32_t const count = call.Int("count");
    DecodedField const& field = call.Field("value");
    Bytes const bytes = Call::Data(field);
    if (count > 0 && field.count < static_cast<uint32_t>(count))
        throw BadRecord("value has " + std::to_string(field.count) + " elements, not " +
                        std::to_string(count));
    return {OwnLocation(player, player.Now().program, call.Int("location")), count, Copy(bytes)};
}

template <auto Function, typename T>
void Vector(GlPlayer& player, Call const& call)
{
    Values const values = Read(player, call);
    (player.Gl().*Function)(values.location, values.count, values.As<T>());
}

template <auto Function>
void Matrix(GlPlayer& player, Call const& call)
{
    Values const values = Read(player, call);
    auto const transpose = static_cast<GLboolean>(call.Word("transpose"));
    (player.Gl().*Function)(values.location, values.count, transpose, values.As<GLfloat>());
}

template <auto Function, size_t Count>
void Reals(GlPlayer& player, Call const& call)
{
    auto const function = player.Gl().*Function;
    GLint const at = OwnLocation(player, player.Now().program, call.Int("location"));
    if constexpr (Count == 1)
        function(at, call.Real("v0"));
    else if constexpr (Count == 2)
        function(at, call.Real("v0"), call.Real("v1"));
    else if constexpr (Count == 3)
        function(at, call.Real("v0"), call.Real("v1"), call.Real("v2"));
    else
        function(at, call.Real("v0"), call.Real("v1"), call.Real("v2"), call.Real("v3"));
}

template <auto Function, size_t Count>
void Integers(GlPlayer& player, Call const& call)
{
    auto const function = player.Gl().*Function;
    GLint const at = OwnLocation(player, player.Now().program, call.Int("location"));
    if constexpr (Count == 1)
        function(at, call.Int("v0"));
    else if constexpr (Count == 2)
        function(at, call.Int("v0"), call.Int("v1"));
    else if constexpr (Count == 3)
        function(at, call.Int("v0"), call.Int("v1"), call.Int("v2"));
    else
        function(at, call.Int("v0"), call.Int("v1"), call.Int("v2"), call.Int("v3"));
}

// The forms that name a program: single values only, as their arrays are not in the records.
template <auto Function, size_t Count, bool IsReal>
void OfProgram(GlPlayer& player, Call const& call)
{
    auto const function = player.Gl().*Function;
    if (!function)
        return player.NotReplayed(call, "the driver has no such function");
    uint32_t const program = call.Word("program");
    GLuint const own = player.OwnName("program", program);
    GLint const at = OwnLocation(player, program, call.Int("location"));
    auto const value = [&call](char const* name) {
        if constexpr (IsReal)
            return call.Real(name);
        else
            return call.Int(name);
    };
    if constexpr (Count == 1)
        function(own, at, value("v0"));
    else if constexpr (Count == 2)
        function(own, at, value("v0"), value("v1"));
    else if constexpr (Count == 3)
        function(own, at, value("v0"), value("v1"), value("v2"));
    else
        function(own, at, value("v0"), value("v1"), value("v2"), value("v3"));
}

using F = GlFunctions;
}  // namespace

std::vector<GlEntry> Es2UniformHandlers()
{
    return {{"glUniform1f", Reals<&F::glUniform1f, 1>},
            {"glUniform2f", Reals<&F::glUniform2f, 2>},
            {"glUniform3f", Reals<&F::glUniform3f, 3>},
            {"glUniform4f", Reals<&F::glUniform4f, 4>},
            {"glUniform1i", Integers<&F::glUniform1i, 1>},
            {"glUniform2i", Integers<&F::glUniform2i, 2>},
            {"glUniform3i", Integers<&F::glUniform3i, 3>},
            {"glUniform4i", Integers<&F::glUniform4i, 4>},
            {"glUniform1fv", Vector<&F::glUniform1fv, GLfloat>},
            {"glUniform2fv", Vector<&F::glUniform2fv, GLfloat>},
            {"glUniform3fv", Vector<&F::glUniform3fv, GLfloat>},
            {"glUniform4fv", Vector<&F::glUniform4fv, GLfloat>},
            {"glUniform1iv", Vector<&F::glUniform1iv, GLint>},
            {"glUniform2iv", Vector<&F::glUniform2iv, GLint>},
            {"glUniform3iv", Vector<&F::glUniform3iv, GLint>},
            {"glUniform4iv", Vector<&F::glUniform4iv, GLint>},
            {"glUniformMatrix2fv", Matrix<&F::glUniformMatrix2fv>},
            {"glUniformMatrix3fv", Matrix<&F::glUniformMatrix3fv>},
            {"glUniformMatrix4fv", Matrix<&F::glUniformMatrix4fv>},
            {"glProgramUniform1fEXT", OfProgram<&F::glProgramUniform1fEXT, 1, true>},
            {"glProgramUniform2fEXT", OfProgram<&F::glProgramUniform2fEXT, 2, true>},
            {"glProgramUniform3fEXT", OfProgram<&F::glProgramUniform3fEXT, 3, true>},
            {"glProgramUniform4fEXT", OfProgram<&F::glProgramUniform4fEXT, 4, true>},
            {"glProgramUniform1iEXT", OfProgram<&F::glProgramUniform1iEXT, 1, false>},
            {"glProgramUniform2iEXT", OfProgram<&F::glProgramUniform2iEXT, 2, false>},
            {"glProgramUniform3iEXT", OfProgram<&F::glProgramUniform3iEXT, 3, false>},
            {"glProgramUniform4iEXT", OfProgram<&F::glProgramUniform4iEXT, 4, false>}};
}
}  // namespace nebtrace::player
