// Shaders and programs, and the locations of their attributes and uniforms.
#include "player/arguments.h"
#include "player/gl_player.h"

namespace nebtrace::player
{
namespace
{
template <bool IsShader>
void Create(GlPlayer& player, Call const& call)
{
    uint32_t const recorded = call.Result();
    if (call.Failed() || recorded == 0)
        return;
    if (IsShader)
        player.Shared().shaders.Set(recorded, player.Gl().glCreateShader(call.Word("type")));
    else
    {
        player.Shared().programs.Set(recorded, player.Gl().glCreateProgram());
        player.Shared().programState[recorded].uniforms.clear();
    }
}

void ShaderSource(GlPlayer& player, Call const& call)
{
    DecodedField const& list = call.Field("string");
    Call::Data(list);
    std::vector<std::string> texts;
    std::vector<GLchar const*> pointers;
    std::vector<GLint> lengths;
    ItemReader items(list);
    for (ItemReader::Item item; items.Next(item);)
        texts.emplace_back(reinterpret_cast<char const*>(item.bytes.data), item.bytes.size);
    for (std::string const& text : texts)
    {
        pointers.push_back(text.c_str());
        lengths.push_back(static_cast<GLint>(text.size()));
    }
    int32_t const count = call.Int("count");
    if (count > 0 && texts.size() < static_cast<uint32_t>(count))
        throw BadRecord("it has " + std::to_string(texts.size()) + " texts, not " + std::to_string(count));
    player.Gl().glShaderSource(player.OwnName("shader", call.Word("shader")), count, pointers.data(),
                               lengths.data());
}

void ShaderBinary(GlPlayer& player, Call const& call)
{
    std::vector<GLuint> shaders;
    for (uint32_t const shader : call.Words("shaders"))
        shaders.push_back(player.OwnName("shader", shader));
    Bytes const binary = call.Data("binary");
    int32_t const count = call.Int("count");
    int32_t const length = call.Int("length");
    if (count > 0 && shaders.size() < static_cast<uint32_t>(count))
        throw BadRecord("it has too few shaders");
    if (length > 0 && binary.size < static_cast<uint32_t>(length))
        throw BadRecord("its binary is too short");
    Copy const copy(binary);
    player.Gl().glShaderBinary(count, shaders.data(), call.Word("binaryFormat"), copy.Begin(), length);
}

void ProgramBinary(GlPlayer& player, Call const& call)
{
    if (!player.Gl().glProgramBinaryOES)
        return player.NotReplayed(call, "the driver has no such function");
    Bytes const binary = call.Data("binary");
    int32_t const length = call.Int("length");
    if (length > 0 && binary.size < static_cast<uint32_t>(length))
        throw BadRecord("its binary is too short");
    Copy const copy(binary);
    player.Gl().glProgramBinaryOES(player.OwnName("program", call.Word("program")), call.Word("binaryFormat"),
                                   copy.Begin(), length);
}

// Binds and links again where the driver has chosen other locations than the recording's: the calls that set
// attributes name a location and no program, so they cannot be mapped.
void KeepLocations(GlPlayer& player, GLuint own, Locations const& locations)
{
    GlFunctions const& gl = player.Gl();
    bool differs = false;
    for (auto const& [name, location] : locations)
        differs = differs || gl.glGetAttribLocation(own, name.c_str()) != location;
    if (!differs)
        return;
    for (auto const& [name, location] : locations)
        gl.glBindAttribLocation(own, static_cast<GLuint>(location), name.c_str());
    gl.glLinkProgram(own);
}

GLuint SlotsOf(GLenum type, GLint size)
{
    GLint const columns = type == GL_FLOAT_MAT2   ? 2
                          : type == GL_FLOAT_MAT3 ? 3
                          : type == GL_FLOAT_MAT4 ? 4
                                                  : 1;
    return static_cast<GLuint>(columns * size);
}

std::vector<ActiveAttribute> AskAttributes(GlFunctions const& gl, GLuint own)
{
    std::vector<ActiveAttribute> attributes;
    GLint count = 0;
    gl.glGetProgramiv(own, GL_ACTIVE_ATTRIBUTES, &count);
    for (GLint i = 0; i < count; ++i)
    {
        char name[256] = "";
        GLint size = 0;
        GLenum type = 0;
        gl.glGetActiveAttrib(own, static_cast<GLuint>(i), sizeof name, nullptr, &size, &type, name);
        GLint const location = gl.glGetAttribLocation(own, name);
        if (location >= 0)
            attributes.push_back({static_cast<GLuint>(location), SlotsOf(type, size)});
    }
    return attributes;
}

void LinkProgram(GlPlayer& player, Call const& call)
{
    GlFunctions const& gl = player.Gl();
    uint32_t const recorded = call.Word("program");
    GLuint const own = player.OwnName("program", recorded);
    gl.glLinkProgram(own);
    Program& program = player.Shared().programState[recorded];
    auto const found = player.GetSurvey().attributes.find({player.CurrentPart(), recorded, ++program.links});
    GLint linked = GL_FALSE;
    if (gl.glIsProgram(own))
        gl.glGetProgramiv(own, GL_LINK_STATUS, &linked);
    program.attributes.clear();
    if (!linked)
        return;
    if (found != player.GetSurvey().attributes.end())
        KeepLocations(player, own, found->second);
    program.attributes = AskAttributes(gl, own);
    // Locations that the recording goes on using are the new link's.
    for (auto& [location, uniform] : program.uniforms)
        uniform.own = gl.glGetUniformLocation(own, uniform.name.c_str());
}

void UseProgram(GlPlayer& player, Call const& call)
{
    player.PlayPlain(call);
    if (!call.Failed())
        player.Now().program = call.Word("program");
}

void GetUniformLocation(GlPlayer& player, Call const& call)
{
    uint32_t const recorded = call.Word("program");
    auto const location = static_cast<int32_t>(call.Result());
    DecodedField const& name = call.Field("name");
    if (call.Failed() || location < 0 || !name.hasData)
        return;
    std::string const text = Call::Text(name);
    GLint const own = player.Gl().glGetUniformLocation(player.OwnName("program", recorded), text.c_str());
    player.Shared().programState[recorded].uniforms[location] = {text, own};
}
}  // namespace

std::vector<GlEntry> Es2ProgramHandlers()
{
    return {{"glCreateShader", Create<true>},      {"glCreateProgram", Create<false>},
            {"glShaderSource", ShaderSource},      {"glShaderBinary", ShaderBinary},
            {"glProgramBinaryOES", ProgramBinary}, {"glLinkProgram", LinkProgram},
            {"glUseProgram", UseProgram},          {"glGetUniformLocation", GetUniformLocation}};
}
}  // namespace nebtrace::player
