// GLES2 wrappers: uniforms.
#include "wrappers/calls.h"
#include "wrappers/es2/uniform_probe.h"

namespace Es2
{

void _glGetUniformfv(GLuint program, GLint location, GLfloat* params)
{
    CFrame frame(Calls::glGetUniformfv, program, location, params);
    frame.CallHost();
    uint32_t const count = frame.RecordsOutput() ? ProbeFloats(program, location) : 0;
    frame.Record(program, location, OutArray(params, count));
}

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
    frame.Record(program, Text(name));
    return frame.Result();
}

void _glUniform1f(GLint location, GLfloat v0) { Trace(Calls::glUniform1f, location, v0); }

void _glUniform1fv(GLint location, GLsizei count, const GLfloat* value)
{
    Trace(Calls::glUniform1fv, location, count, InVectors(value, count, 1));
}

void _glUniform1i(GLint location, GLint v0) { Trace(Calls::glUniform1i, location, v0); }

void _glUniform1iv(GLint location, GLsizei count, const GLint* value)
{
    Trace(Calls::glUniform1iv, location, count, InVectors(value, count, 1));
}

void _glUniform2f(GLint location, GLfloat v0, GLfloat v1) { Trace(Calls::glUniform2f, location, v0, v1); }

void _glUniform2fv(GLint location, GLsizei count, const GLfloat* value)
{
    Trace(Calls::glUniform2fv, location, count, InVectors(value, count, 2));
}

void _glUniform2i(GLint location, GLint v0, GLint v1) { Trace(Calls::glUniform2i, location, v0, v1); }

void _glUniform2iv(GLint location, GLsizei count, const GLint* value)
{
    Trace(Calls::glUniform2iv, location, count, InVectors(value, count, 2));
}

void _glUniform3f(GLint location, GLfloat v0, GLfloat v1, GLfloat v2)
{
    Trace(Calls::glUniform3f, location, v0, v1, v2);
}

void _glUniform3fv(GLint location, GLsizei count, const GLfloat* value)
{
    Trace(Calls::glUniform3fv, location, count, InVectors(value, count, 3));
}

void _glUniform3i(GLint location, GLint v0, GLint v1, GLint v2)
{
    Trace(Calls::glUniform3i, location, v0, v1, v2);
}

void _glUniform3iv(GLint location, GLsizei count, const GLint* value)
{
    Trace(Calls::glUniform3iv, location, count, InVectors(value, count, 3));
}

void _glUniform4f(GLint location, GLfloat v0, GLfloat v1, GLfloat v2, GLfloat v3)
{
    Trace(Calls::glUniform4f, location, v0, v1, v2, v3);
}

void _glUniform4fv(GLint location, GLsizei count, const GLfloat* value)
{
    Trace(Calls::glUniform4fv, location, count, InVectors(value, count, 4));
}

void _glUniform4i(GLint location, GLint v0, GLint v1, GLint v2, GLint v3)
{
    Trace(Calls::glUniform4i, location, v0, v1, v2, v3);
}

void _glUniform4iv(GLint location, GLsizei count, const GLint* value)
{
    Trace(Calls::glUniform4iv, location, count, InVectors(value, count, 4));
}

void _glUniformMatrix2fv(GLint location, GLsizei count, GLboolean transpose, const GLfloat* value)
{
    Trace(Calls::glUniformMatrix2fv, location, count, transpose, InVectors(value, count, 4));
}

void _glUniformMatrix3fv(GLint location, GLsizei count, GLboolean transpose, const GLfloat* value)
{
    Trace(Calls::glUniformMatrix3fv, location, count, transpose, InVectors(value, count, 9));
}

void _glUniformMatrix4fv(GLint location, GLsizei count, GLboolean transpose, const GLfloat* value)
{
    Trace(Calls::glUniformMatrix4fv, location, count, transpose, InVectors(value, count, 16));
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
