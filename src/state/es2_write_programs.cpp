// A snapshot as calls: programs, their uniforms and attributes.
#include "state/es2_context_state.h"
#include "wrappers/es2.h"
#include <algorithm>

namespace
{

using Attributes = TraceMap<int, ProgramAttribute>;

void Detach(GLuint program, ProgramDefinition const& from)
{
    if (from.fragShaderName)
        Es2::_glDetachShader(program, from.fragShaderName);
    if (from.vertShaderName)
        Es2::_glDetachShader(program, from.vertShaderName);
}

void Attach(ProgramDefinition const& program)
{
    if (program.fragShaderName)
        Es2::_glAttachShader(program.name, program.fragShaderName);
    if (program.vertShaderName)
        Es2::_glAttachShader(program.name, program.vertShaderName);
}

void BindLocations(GLuint program, Attributes const* attributes)
{
    for (int slot = 0; attributes && slot < attributes->Count(); ++slot)
    {
        ProgramAttribute const& attribute = attributes->ValueAt(slot);
        if (attribute.bDirectBind)
            Es2::_glBindAttribLocation(program, static_cast<GLuint>(attribute.location),
                                       attribute.name.c_str());
    }
}

// The leading values of an array that may hold fewer.
template <typename T>
struct SLeading
{
    T v[4] = {};

    explicit SLeading(DynArray<T> const& values)
    {
        std::copy(values.m_pData, values.m_pData + std::min(values.m_ui32Count, 4u), v);
    }
};

void WriteIntegers(UniformDefinition const& uniform, GLsizei count)
{
    GLint const at = uniform.location;
    GLint const* const all = uniform.aiValues.m_pData;
    SLeading<GLint> const one(uniform.aiValues);
    switch (uniform.numValues)
    {
    case 1:
        return count > 1 ? Es2::_glUniform1iv(at, count, all) : Es2::_glUniform1i(at, one.v[0]);
    case 2:
        return count > 1 ? Es2::_glUniform2iv(at, count, all) : Es2::_glUniform2i(at, one.v[0], one.v[1]);
    case 3:
        return count > 1 ? Es2::_glUniform3iv(at, count, all)
                         : Es2::_glUniform3i(at, one.v[0], one.v[1], one.v[2]);
    case 4:
        return count > 1 ? Es2::_glUniform4iv(at, count, all)
                         : Es2::_glUniform4i(at, one.v[0], one.v[1], one.v[2], one.v[3]);
    default:
        return;
    }
}

void WriteFloats(UniformDefinition const& uniform, GLsizei count)
{
    GLint const at = uniform.location;
    GLfloat const* const all = uniform.afValues.m_pData;
    SLeading<GLfloat> const one(uniform.afValues);
    switch (uniform.numValues)
    {
    case 1:
        return count > 1 ? Es2::_glUniform1fv(at, count, all) : Es2::_glUniform1f(at, one.v[0]);
    case 2:
        return count > 1 ? Es2::_glUniform2fv(at, count, all) : Es2::_glUniform2f(at, one.v[0], one.v[1]);
    case 3:
        return count > 1 ? Es2::_glUniform3fv(at, count, all)
                         : Es2::_glUniform3f(at, one.v[0], one.v[1], one.v[2]);
    case 4:
        return count > 1 ? Es2::_glUniform4fv(at, count, all)
                         : Es2::_glUniform4f(at, one.v[0], one.v[1], one.v[2], one.v[3]);
    default:
        return;
    }
}

void WriteMatrices(UniformDefinition const& uniform, GLsizei count)
{
    GLfloat const* const all = uniform.afValues.m_pData;
    if (uniform.numValues == 4)
        Es2::_glUniformMatrix2fv(uniform.location, count, GL_FALSE, all);
    else if (uniform.numValues == 9)
        Es2::_glUniformMatrix3fv(uniform.location, count, GL_FALSE, all);
    else if (uniform.numValues == 16)
        Es2::_glUniformMatrix4fv(uniform.location, count, GL_FALSE, all);
}

void WriteUniform(UniformDefinition const& uniform)
{
    bool const isInteger = uniform.valueType == kUniformInteger;
    uint32_t const values = isInteger ? uniform.aiValues.m_ui32Count : uniform.afValues.m_ui32Count;
    auto const count = static_cast<GLsizei>(values / uniform.numValues);
    if (isInteger)
        WriteIntegers(uniform, count);
    else if (uniform.valueType == kUniformFloat)
        WriteFloats(uniform, count);
    else if (uniform.valueType == kUniformMatrix)
        WriteMatrices(uniform, count);
}

void WriteUniforms(GLuint program, TraceMap<int, UniformDefinition> const* uniforms)
{
    for (int slot = 0; uniforms && slot < uniforms->Count(); ++slot)
    {
        UniformDefinition const& uniform = uniforms->ValueAt(slot);
        if (uniform.program != program)
            continue;
        Es2::_glGetUniformLocation(program, uniform.name.c_str(), static_cast<GLuint>(uniform.location));
        if (uniform.numValues != 0)
            WriteUniform(uniform);
    }
}

void WriteConstant(ProgramAttribute const& attribute)
{
    auto const at = static_cast<GLuint>(attribute.location);
    SLeading<GLfloat> const one(attribute.afValues);
    if (attribute.numValues == 1)
        Es2::_glVertexAttrib1f(at, one.v[0]);
    else if (attribute.numValues == 2)
        Es2::_glVertexAttrib2f(at, one.v[0], one.v[1]);
    else if (attribute.numValues == 3)
        Es2::_glVertexAttrib3f(at, one.v[0], one.v[1], one.v[2]);
    else if (attribute.numValues == 4)
        Es2::_glVertexAttrib4f(at, one.v[0], one.v[1], one.v[2], one.v[3]);
}

// On purpose: at the record's location, which is 0 for an attribute that was never bound to one and linked.
void WriteConstants(Attributes const* attributes)
{
    for (int slot = 0; attributes && slot < attributes->Count(); ++slot)
        WriteConstant(attributes->ValueAt(slot));
}

// One program as it stands: `other` null makes it, else it changes from the shaders of `other` to its own.
void WriteProgram(CEs2ContextState& state, ProgramDefinition const& program, ProgramDefinition const* other)
{
    if (program.name == 0)
        return;
    if (other)
        Detach(program.name, *other);
    else
        Es2::_glCreateProgram(program.name);
    Attach(program);
    BindLocations(program.name, state.m_sPreAttribMap.Find(program.name));
    if (program.bLinked)
        Es2::_glLinkProgram(program.name);
    BindLocations(program.name, state.m_sPostAttribMap.Find(program.name));  // for a link yet to come
    if (!program.bLinked)
        return;
    Es2::_glUseProgram(program.name);
    WriteUniforms(program.name, state.m_sUniformMap.Find(program.name));
    WriteConstants(state.m_sPreAttribMap.Find(program.name));
}

}  // namespace

// The program in use may differ from its record: it was relinked or given other shaders after glUseProgram,
// or deleted. It is built as it was when used, and then brought to what its record says. On purpose: with
// none in use there is no call for that, and the last linked program stays in use.
void CEs2ContextState::Trace_Programs()
{
    int const programs = m_sProgramMap.Count();
    for (int slot = 0; slot < programs; ++slot)
        WriteProgram(*this, m_sProgramMap.ValueAt(slot), nullptr);
    ProgramDefinition const& recorded = m_sProgramMap[m_sUsedProgram.name];
    WriteProgram(*this, m_sUsedProgram, &recorded);
    WriteProgram(*this, recorded, &m_sUsedProgram);
}
