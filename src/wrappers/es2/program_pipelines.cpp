// GLES2 wrappers: program pipelines and their uniforms.
#include "wrappers/calls.h"

namespace Es2
{

void _glUseProgramStagesEXT(GLuint pipeline, GLbitfield stages, GLuint program)
{
    Trace(Calls::glUseProgramStagesEXT, pipeline, stages, program);
}

void _glActiveShaderProgramEXT(GLuint pipeline, GLuint program)
{
    Trace(Calls::glActiveShaderProgramEXT, pipeline, program);
}

// On purpose: the list of strings has no count, so that none of them is recorded.
GLuint _glCreateShaderProgramvEXT(GLenum type, GLsizei count, const GLchar** strings)
{
    return Trace(Calls::glCreateShaderProgramvEXT, type, count, NeverCounted(strings));
}

void _glBindProgramPipelineEXT(GLuint pipeline) { Trace(Calls::glBindProgramPipelineEXT, pipeline); }

void _glDeleteProgramPipelinesEXT(GLsizei n, const GLuint* pipelines)
{
    Trace(Calls::glDeleteProgramPipelinesEXT, n, InArray(pipelines, n));
}

void _glGenProgramPipelinesEXT(GLsizei n, GLuint* pipelines)
{
    Trace(Calls::glGenProgramPipelinesEXT, n, InArray(pipelines, n));
}

GLboolean _glIsProgramPipelineEXT(GLuint pipeline) { return Trace(Calls::glIsProgramPipelineEXT, pipeline); }

void _glProgramParameteriEXT(GLuint program, GLenum pname, GLint value)
{
    Trace(Calls::glProgramParameteriEXT, program, pname, value);
}

void _glGetProgramPipelineivEXT(GLuint pipeline, GLenum pname, GLint* params)
{
    Trace(Calls::glGetProgramPipelineivEXT, pipeline, pname, OutArray(params, 1));
}

void _glProgramUniform1iEXT(GLuint program, GLint location, GLint v0)
{
    Trace(Calls::glProgramUniform1iEXT, program, location, v0);
}

void _glProgramUniform2iEXT(GLuint program, GLint location, GLint v0, GLint v1)
{
    Trace(Calls::glProgramUniform2iEXT, program, location, v0, v1);
}

void _glProgramUniform3iEXT(GLuint program, GLint location, GLint v0, GLint v1, GLint v2)
{
    Trace(Calls::glProgramUniform3iEXT, program, location, v0, v1, v2);
}

void _glProgramUniform4iEXT(GLuint program, GLint location, GLint v0, GLint v1, GLint v2, GLint v3)
{
    Trace(Calls::glProgramUniform4iEXT, program, location, v0, v1, v2, v3);
}

void _glProgramUniform1fEXT(GLuint program, GLint location, GLfloat v0)
{
    Trace(Calls::glProgramUniform1fEXT, program, location, v0);
}

void _glProgramUniform2fEXT(GLuint program, GLint location, GLfloat v0, GLfloat v1)
{
    Trace(Calls::glProgramUniform2fEXT, program, location, v0, v1);
}

void _glProgramUniform3fEXT(GLuint program, GLint location, GLfloat v0, GLfloat v1, GLfloat v2)
{
    Trace(Calls::glProgramUniform3fEXT, program, location, v0, v1, v2);
}

void _glProgramUniform4fEXT(GLuint program, GLint location, GLfloat v0, GLfloat v1, GLfloat v2, GLfloat v3)
{
    Trace(Calls::glProgramUniform4fEXT, program, location, v0, v1, v2, v3);
}

void _glProgramUniform1ivEXT(GLuint program, GLint location, GLsizei count, const GLint* value)
{
    Trace(Calls::glProgramUniform1ivEXT, program, location, count, value);
}

void _glProgramUniform2ivEXT(GLuint program, GLint location, GLsizei count, const GLint* value)
{
    Trace(Calls::glProgramUniform2ivEXT, program, location, count, value);
}

void _glProgramUniform3ivEXT(GLuint program, GLint location, GLsizei count, const GLint* value)
{
    Trace(Calls::glProgramUniform3ivEXT, program, location, count, value);
}

void _glProgramUniform4ivEXT(GLuint program, GLint location, GLsizei count, const GLint* value)
{
    Trace(Calls::glProgramUniform4ivEXT, program, location, count, value);
}

void _glProgramUniform1fvEXT(GLuint program, GLint location, GLsizei count, const GLfloat* value)
{
    Trace(Calls::glProgramUniform1fvEXT, program, location, count, value);
}

void _glProgramUniform2fvEXT(GLuint program, GLint location, GLsizei count, const GLfloat* value)
{
    Trace(Calls::glProgramUniform2fvEXT, program, location, count, value);
}

void _glProgramUniform3fvEXT(GLuint program, GLint location, GLsizei count, const GLfloat* value)
{
    Trace(Calls::glProgramUniform3fvEXT, program, location, count, value);
}

void _glProgramUniform4fvEXT(GLuint program, GLint location, GLsizei count, const GLfloat* value)
{
    Trace(Calls::glProgramUniform4fvEXT, program, location, count, value);
}

void _glProgramUniformMatrix2fvEXT(GLuint program, GLint location, GLsizei count, GLboolean transpose,
                                   const GLfloat* value)
{
    Trace(Calls::glProgramUniformMatrix2fvEXT, program, location, count, transpose, value);
}

void _glProgramUniformMatrix3fvEXT(GLuint program, GLint location, GLsizei count, GLboolean transpose,
                                   const GLfloat* value)
{
    Trace(Calls::glProgramUniformMatrix3fvEXT, program, location, count, transpose, value);
}

void _glProgramUniformMatrix4fvEXT(GLuint program, GLint location, GLsizei count, GLboolean transpose,
                                   const GLfloat* value)
{
    Trace(Calls::glProgramUniformMatrix4fvEXT, program, location, count, transpose, value);
}

void _glValidateProgramPipelineEXT(GLuint pipeline) { Trace(Calls::glValidateProgramPipelineEXT, pipeline); }

void _glGetProgramPipelineInfoLogEXT(GLuint pipeline, GLsizei bufSize, GLsizei* length, GLchar* infoLog)
{
    Trace(Calls::glGetProgramPipelineInfoLogEXT, pipeline, bufSize, OutArray(length, 1),
          OutText(infoLog, bufSize));
}

}  // namespace Es2
