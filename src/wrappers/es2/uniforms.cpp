// GLES2 wrappers: uniforms.
#include "wrappers/calls.h"
#include "wrappers/es2/track.h"
#include "wrappers/es2/uniform_probe.h"

namespace Es2
{

namespace
{

// One element, its components as arguments.
template <typename T, typename Call, typename... Rest>
void TraceUniform(Call const& call, GLint location, T first, Rest... rest)
{
    CFrame frame(call, location, first, rest...);
    frame.CallHost();
    T const values[] = {first, rest...};
    if (frame.MayTrack())
        Track::Uniforms(location, 1 + sizeof...(rest), values, 1);
    frame.Record(location, first, rest...);
}

// `count` elements of `components` each.
template <typename Call, typename T>
void TraceUniforms(Call const& call, GLint location, GLsizei count, T* value, GLuint components)
{
    CFrame frame(call, location, count, value);
    frame.CallHost();
    if (frame.MayTrack())
        Track::Uniforms(location, components, value, count);
    frame.Record(location, count, InVectors(value, count, components));
}

template <typename Call>
void TraceMatrices(Call const& call, GLint location, GLsizei count, GLboolean transpose, const GLfloat* value,
                   GLuint components)
{
    CFrame frame(call, location, count, transpose, value);
    frame.CallHost();
    if (frame.MayTrack())
        Track::UniformMatrices(location, components, value, count);
    frame.Record(location, count, transpose, InVectors(value, count, components));
}

}  // namespace

void _glUniform1f(GLint location, GLfloat v0) { TraceUniform(Calls::glUniform1f, location, v0); }

void _glUniform1fv(GLint location, GLsizei count, const GLfloat* value)
{
    TraceUniforms(Calls::glUniform1fv, location, count, value, 1);
}

void _glUniform1i(GLint location, GLint v0) { TraceUniform(Calls::glUniform1i, location, v0); }

void _glUniform1iv(GLint location, GLsizei count, const GLint* value)
{
    TraceUniforms(Calls::glUniform1iv, location, count, value, 1);
}

void _glUniform2f(GLint location, GLfloat v0, GLfloat v1)
{
    TraceUniform(Calls::glUniform2f, location, v0, v1);
}

void _glUniform2fv(GLint location, GLsizei count, const GLfloat* value)
{
    TraceUniforms(Calls::glUniform2fv, location, count, value, 2);
}

void _glUniform2i(GLint location, GLint v0, GLint v1) { TraceUniform(Calls::glUniform2i, location, v0, v1); }

void _glUniform2iv(GLint location, GLsizei count, const GLint* value)
{
    TraceUniforms(Calls::glUniform2iv, location, count, value, 2);
}

void _glUniform3f(GLint location, GLfloat v0, GLfloat v1, GLfloat v2)
{
    TraceUniform(Calls::glUniform3f, location, v0, v1, v2);
}

void _glUniform3fv(GLint location, GLsizei count, const GLfloat* value)
{
    TraceUniforms(Calls::glUniform3fv, location, count, value, 3);
}

void _glUniform3i(GLint location, GLint v0, GLint v1, GLint v2)
{
    TraceUniform(Calls::glUniform3i, location, v0, v1, v2);
}

void _glUniform3iv(GLint location, GLsizei count, const GLint* value)
{
    TraceUniforms(Calls::glUniform3iv, location, count, value, 3);
}

void _glUniform4f(GLint location, GLfloat v0, GLfloat v1, GLfloat v2, GLfloat v3)
{
    TraceUniform(Calls::glUniform4f, location, v0, v1, v2, v3);
}

void _glUniform4fv(GLint location, GLsizei count, const GLfloat* value)
{
    TraceUniforms(Calls::glUniform4fv, location, count, value, 4);
}

void _glUniform4i(GLint location, GLint v0, GLint v1, GLint v2, GLint v3)
{
    TraceUniform(Calls::glUniform4i, location, v0, v1, v2, v3);
}

void _glUniform4iv(GLint location, GLsizei count, const GLint* value)
{
    TraceUniforms(Calls::glUniform4iv, location, count, value, 4);
}

void _glUniformMatrix2fv(GLint location, GLsizei count, GLboolean transpose, const GLfloat* value)
{
    TraceMatrices(Calls::glUniformMatrix2fv, location, count, transpose, value, 4);
}

void _glUniformMatrix3fv(GLint location, GLsizei count, GLboolean transpose, const GLfloat* value)
{
    TraceMatrices(Calls::glUniformMatrix3fv, location, count, transpose, value, 9);
}

void _glUniformMatrix4fv(GLint location, GLsizei count, GLboolean transpose, const GLfloat* value)
{
    TraceMatrices(Calls::glUniformMatrix4fv, location, count, transpose, value, 16);
}

void _glGetUniformfv(GLuint program, GLint location, GLfloat* params)
{
    CFrame frame(Calls::glGetUniformfv, program, location, params);
    frame.CallHost();
    uint32_t const count = frame.RecordsOutput() ? ProbeFloats(program, location) : 0;
    frame.Record(program, location, OutArray(params, count));
}

// On purpose: probed with floats; of the four, glGetnUniformivEXT alone is probed with integers.
void _glGetUniformiv(GLuint program, GLint location, GLint* params)
{
    CFrame frame(Calls::glGetUniformiv, program, location, params);
    frame.CallHost();
    uint32_t const count = frame.RecordsOutput() ? ProbeFloats(program, location) : 0;
    frame.Record(program, location, OutArray(params, count));
}

GLint _glGetUniformLocation(GLuint program, const GLchar* name, GLuint replayedLocation)
{
    CFrame frame(Calls::glGetUniformLocation, program, name);
    frame.SetDefault(replayedLocation);
    frame.CallHost();
    if (frame.MayTrack())
        Track::UniformLocation(program, name, frame.Result());
    frame.Record(program, Text(name));
    return frame.Result();
}

void _glGetnUniformfvEXT(GLuint program, GLint location, GLsizei bufSize, GLfloat* params)
{
    CFrame frame(Calls::glGetnUniformfvEXT, program, location, bufSize, params);
    frame.CallHost();
    uint32_t const count = frame.RecordsOutput() ? ProbeFloats(program, location) : 0;
    frame.Record(program, location, bufSize, OutArray(params, count));
}

void _glGetnUniformivEXT(GLuint program, GLint location, GLsizei bufSize, GLint* params)
{
    CFrame frame(Calls::glGetnUniformivEXT, program, location, bufSize, params);
    frame.CallHost();
    uint32_t const count = frame.RecordsOutput() ? ProbeInts(program, location) : 0;
    frame.Record(program, location, bufSize, OutArray(params, count));
}

}  // namespace Es2
