// Tracking of vertex attributes and vertex array objects.
#include "wrappers/es2/track.h"
#include "wrappers/live_state.h"

// In force at once: it goes beside what the last link put there.
void Es2::Track::VertexAttrib(GLuint index, GLuint components, GLfloat const* values)
{
    CEs2ContextState& state = LiveEs2State();
    ProgramAttribute& attribute = state.m_sPreAttribMap[state.m_sUsedProgram.name][static_cast<int>(index)];
    attribute.numValues = static_cast<int>(components);
    attribute.afValues.m_ui32Count = 0;
    for (GLuint i = 0; values && i < components; ++i)
        attribute.afValues.Append(values[i]);
}

void Es2::Track::VertexAttribIsArray(GLuint index)
{
    CEs2ContextState& state = LiveEs2State();
    state.m_sPostAttribMap[state.m_sUsedProgram.name][static_cast<int>(index)].numValues = 0;
}

void Es2::Track::VertexAttribPointer(GLuint index, GLint size, GLenum type, GLboolean normalized,
                                     GLsizei stride, void const* pointer)
{
    VAODefinition& vertexArray = LiveEs2State().BoundVertexArray();
    VertexAttributeArray& array = vertexArray.vertexattributearrays[index];
    array.normalized = normalized;
    array.pointer = pointer;
    array.size = size;
    array.stride = stride;
    array.type = type;
    array.boundarraybuffer = vertexArray.boundarraybuffer;
}

void Es2::Track::EnableVertexAttribArray(GLuint index, bool enabled)
{
    LiveEs2State().BoundVertexArray().vertexattributearrays[index].enabled = enabled;
}

void Es2::Track::GenVertexArrays(GLsizei n, GLuint const* names)
{
    for (GLsizei i = 0; names && i < n; ++i)
    {
        VAODefinition& vertexArray = LiveEs2State().mVertexArrayObjects[names[i]];
        vertexArray.name = names[i];
        vertexArray.createdwithextension = true;
    }
}

void Es2::Track::BindVertexArray(GLuint name)
{
    LiveEs2State().mBoundVAO = name;
    LiveEs2State().mVertexArrayObjects[name].createdwithextension = true;
}

void Es2::Track::DeleteVertexArrays(GLsizei n, GLuint const* names)
{
    for (GLsizei i = 0; names && i < n; ++i)
        LiveEs2State().mVertexArrayObjects.removeElement(names[i]);
}
