// Tracking of uniform values, in the program in use.
#include "wrappers/es2/track.h"
#include "wrappers/live_state.h"

namespace
{

UniformDefinition& RecordOf(GLint location, GLuint components, EUniformValueType type)
{
    CEs2ContextState& state = LiveEs2State();
    UniformDefinition& uniform = state.m_sUniformMap[state.m_sUsedProgram.name][location];
    uniform.numValues = components;
    uniform.valueType = type;
    return uniform;
}

template <typename T>
void Replace(DynArray<T>& array, T const* values, GLuint components, GLsizei count)
{
    array.m_ui32Count = 0;
    if (values && count > 0)
        array.Append(values, components * static_cast<GLuint>(count));
}

}  // namespace

void Es2::Track::Uniforms(GLint location, GLuint components, GLfloat const* values, GLsizei count)
{
    Replace(RecordOf(location, components, kUniformFloat).afValues, values, components, count);
}

void Es2::Track::Uniforms(GLint location, GLuint components, GLint const* values, GLsizei count)
{
    Replace(RecordOf(location, components, kUniformInteger).aiValues, values, components, count);
}

void Es2::Track::UniformMatrices(GLint location, GLuint components, GLfloat const* values, GLsizei count)
{
    Replace(RecordOf(location, components, kUniformMatrix).afValues, values, components, count);
}
