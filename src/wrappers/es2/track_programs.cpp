// Tracking of shaders and programs.
#include "wrappers/es2/track.h"
#include "wrappers/live_state.h"

void Es2::Track::CreateShader(GLuint name, GLenum type)
{
    ShaderDefinition& shader = LiveEs2State().m_sShaderMap[name];
    shader.name = name;
    shader.type = type;
}

// On purpose: the lengths are not consulted, every string is taken up to its terminator.
void Es2::Track::ShaderSource(GLuint shader, GLsizei count, GLchar const* const* strings)
{
    CNEBTString source;
    for (GLsizei i = 0; strings && i < count; ++i)
        if (strings[i])
            source.append(strings[i]);
    LiveEs2State().m_sShaderMap[shader].source = source;
}

// The name 0 is ignored by the host as well: a record of it would be written as a shader without a type.
void Es2::Track::DeleteShader(GLuint shader)
{
    if (shader != 0)
        LiveEs2State().m_sShaderMap[shader].bDeleted = true;
}

void Es2::Track::CreateProgram(GLuint name) { LiveEs2State().m_sProgramMap[name].name = name; }

static void SetShaderSlot(GLuint program, GLuint shader, GLuint value)
{
    ProgramDefinition& record = LiveEs2State().m_sProgramMap[program];
    GLenum const type = LiveEs2State().m_sShaderMap[shader].type;
    if (type == GL_VERTEX_SHADER)
        record.vertShaderName = value;
    else if (type == GL_FRAGMENT_SHADER)
        record.fragShaderName = value;
}

void Es2::Track::AttachShader(GLuint program, GLuint shader) { SetShaderSlot(program, shader, shader); }

void Es2::Track::DetachShader(GLuint program, GLuint shader) { SetShaderSlot(program, shader, 0); }

void Es2::Track::BindAttribLocation(GLuint program, GLuint index, GLchar const* name)
{
    ProgramAttribute& attribute = LiveEs2State().m_sPostAttribMap[program][static_cast<int>(index)];
    attribute.bDirectBind = true;
    attribute.location = static_cast<int>(index);
    attribute.name = name ? name : "";
}

void Es2::Track::LinkProgram(GLuint program)
{
    CEs2ContextState& state = LiveEs2State();
    state.m_sProgramMap[program].bLinked = true;
    if (state.m_sUsedProgram.name == program)
        state.m_sUsedProgram = state.m_sProgramMap[program];
    state.m_sUniformMap.removeElement(program);
    // What is in force from this link on.
    state.m_sPreAttribMap[program] = state.m_sPostAttribMap[program];
}

void Es2::Track::UseProgram(GLuint program)
{
    CEs2ContextState& state = LiveEs2State();
    if (state.m_bDeleteUsedProgram)
    {
        state.m_bDeleteUsedProgram = false;
        state.m_sPreAttribMap.removeElement(state.m_sUsedProgram.name);
    }
    state.m_sUsedProgram = state.m_sProgramMap[program];
}

// On purpose: the attributes in force at the last link stay, and for the program in use they go with the next
// glUseProgram.
void Es2::Track::DeleteProgram(GLuint program)
{
    CEs2ContextState& state = LiveEs2State();
    state.m_sUniformMap.removeElement(program);
    state.m_sProgramMap.removeElement(program);
    state.m_sPostAttribMap.removeElement(program);
    if (state.m_sUsedProgram.name == program)
        state.m_bDeleteUsedProgram = true;
}

void Es2::Track::UniformLocation(GLuint program, GLchar const* name, GLint location)
{
    UniformDefinition& uniform = LiveEs2State().m_sUniformMap[program][location];
    uniform.program = program;
    uniform.location = location;
    uniform.name = name ? name : "";
}
