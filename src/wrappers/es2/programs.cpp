// GLES2 wrappers: shaders and programs.
#include "wrappers/calls.h"
#include "wrappers/es2/track.h"
#include "wrappers/substitute.h"
#include <algorithm>

namespace Es2
{

void _glAttachShader(GLuint program, GLuint shader)
{
    CFrame frame(Calls::glAttachShader, program, shader);
    frame.CallHost();
    if (frame.MayTrack())
        Track::AttachShader(program, shader);
    frame.Record(program, shader);
}

void _glBindAttribLocation(GLuint program, GLuint index, const GLchar* name)
{
    CFrame frame(Calls::glBindAttribLocation, program, index, name);
    frame.CallHost();
    if (frame.MayTrack())
        Track::BindAttribLocation(program, index, name);
    frame.Record(program, index, Text(name));
}

void _glCompileShader(GLuint shader) { Trace(Calls::glCompileShader, shader); }

GLuint _glCreateProgram(GLuint replayedProgram)
{
    CFrame frame(Calls::glCreateProgram);
    frame.SetDefault(replayedProgram);
    frame.CallHost();
    if (frame.MayTrack())
        Track::CreateProgram(frame.Result());
    frame.Record();
    return frame.Result();
}

GLuint _glCreateShader(GLenum type, GLuint replayedShader)
{
    CFrame frame(Calls::glCreateShader, type);
    frame.SetDefault(replayedShader);
    frame.CallHost();
    if (frame.MayTrack())
        Track::CreateShader(frame.Result(), type);
    frame.Record(type);
    return frame.Result();
}

void _glDeleteProgram(GLuint program)
{
    CFrame frame(Calls::glDeleteProgram, program);
    frame.CallHost();
    if (frame.MayTrack())
        Track::DeleteProgram(program);
    frame.Record(program);
}

void _glDeleteShader(GLuint shader)
{
    CFrame frame(Calls::glDeleteShader, shader);
    frame.CallHost();
    if (frame.MayTrack())
        Track::DeleteShader(shader);
    frame.Record(shader);
}

void _glDetachShader(GLuint program, GLuint shader)
{
    CFrame frame(Calls::glDetachShader, program, shader);
    frame.CallHost();
    if (frame.MayTrack())
        Track::DetachShader(program, shader);
    frame.Record(program, shader);
}

void _glGetActiveAttrib(GLuint program, GLuint index, GLsizei bufSize, GLsizei* length, GLint* size,
                        GLenum* type, GLchar* name)
{
    Trace(Calls::glGetActiveAttrib, program, index, bufSize, OutArray(length, 1), OutArray(size, 1),
          OutArray(type, 1), OutText(name, bufSize));
}

void _glGetActiveUniform(GLuint program, GLuint index, GLsizei bufSize, GLsizei* length, GLint* size,
                         GLenum* type, GLchar* name)
{
    Trace(Calls::glGetActiveUniform, program, index, bufSize, OutArray(length, 1), OutArray(size, 1),
          OutArray(type, 1), OutText(name, bufSize));
}

void _glGetAttachedShaders(GLuint program, GLsizei maxCount, GLsizei* count, GLuint* shaders)
{
    // The host gets a local, so that the number of shaders is known where the application asks for none.
    CSubstitute<GLsizei> attached(count);
    CFrame frame(Calls::glGetAttachedShaders, program, maxCount, attached.pointer, shaders);
    frame.CallHost();
    attached.CopyBack();
    frame.Record(program, maxCount, OutArray(count, 1), OutArrayBehind(shaders, attached.pointer, maxCount));
}

GLint _glGetAttribLocation(GLuint program, const GLchar* name)
{
    return Trace(Calls::glGetAttribLocation, program, Text(name));
}

void _glGetProgramiv(GLuint program, GLenum pname, GLint* params)
{
    Trace(Calls::glGetProgramiv, program, pname, OutArray(params, 1));
}

void _glGetProgramInfoLog(GLuint program, GLsizei bufSize, GLsizei* length, GLchar* infoLog)
{
    Trace(Calls::glGetProgramInfoLog, program, bufSize, OutArray(length, 1), OutText(infoLog, bufSize));
}

void _glGetShaderiv(GLuint shader, GLenum pname, GLint* params)
{
    Trace(Calls::glGetShaderiv, shader, pname, OutArray(params, 1));
}

void _glGetShaderInfoLog(GLuint shader, GLsizei bufSize, GLsizei* length, GLchar* infoLog)
{
    Trace(Calls::glGetShaderInfoLog, shader, bufSize, OutArray(length, 1), OutText(infoLog, bufSize));
}

void _glGetShaderPrecisionFormat(GLenum shadertype, GLenum precisiontype, GLint* range, GLint* precision)
{
    Trace(Calls::glGetShaderPrecisionFormat, shadertype, precisiontype, OutArray(range, 2),
          OutArray(precision, 1));
}

void _glGetShaderSource(GLuint shader, GLsizei bufSize, GLsizei* length, GLchar* source)
{
    Trace(Calls::glGetShaderSource, shader, bufSize, OutArray(length, 1), OutText(source, bufSize));
}

GLboolean _glIsProgram(GLuint program) { return Trace(Calls::glIsProgram, program); }

GLboolean _glIsShader(GLuint shader) { return Trace(Calls::glIsShader, shader); }

void _glLinkProgram(GLuint program)
{
    CFrame frame(Calls::glLinkProgram, program);
    frame.CallHost();
    if (frame.MayTrack())
        Track::LinkProgram(program);
    frame.Record(program);
}

void _glReleaseShaderCompiler() { Trace(Calls::glReleaseShaderCompiler); }

void _glShaderBinary(GLsizei count, const GLuint* shaders, GLenum binaryFormat, const void* binary,
                     GLsizei length)
{
    Trace(Calls::glShaderBinary, count, InArray(shaders, count), binaryFormat, Bytes(binary, length), length);
}

void _glShaderSource(GLuint shader, GLsizei count, const GLchar* const* string, const GLint* length)
{
    CFrame frame(Calls::glShaderSource, shader, count, string, length);
    frame.CallHost();
    if (frame.MayTrackData())
        Track::ShaderSource(shader, count, string);
    frame.Record(shader, count, TextList(string, count, length), InArray(length, count));
}

void _glUseProgram(GLuint program)
{
    CFrame frame(Calls::glUseProgram, program);
    frame.CallHost();
    if (frame.MayTrack())
        Track::UseProgram(program);
    frame.Record(program);
}

void _glValidateProgram(GLuint program) { Trace(Calls::glValidateProgram, program); }

void _glGetProgramBinaryOES(GLuint program, GLsizei bufSize, GLsizei* length, GLenum* binaryFormat,
                            void* binary)
{
    CSubstitute<GLsizei> written(length);
    CFrame frame(Calls::glGetProgramBinaryOES, program, bufSize, written.pointer, binaryFormat, binary);
    frame.CallHost();
    written.CopyBack();
    frame.Record(program, bufSize, OutArray(length, 1), OutArray(binaryFormat, 1),
                 Bytes(binary, frame.Succeeded() ? std::min(written.value, bufSize) : 0));
}

void _glProgramBinaryOES(GLuint program, GLenum binaryFormat, const void* binary, GLint length)
{
    Trace(Calls::glProgramBinaryOES, program, binaryFormat, Bytes(binary, length), length);
}

void _glGetTranslatedShaderSourceANGLE(GLuint shader, GLsizei bufSize, GLsizei* length, GLchar* source)
{
    Trace(Calls::glGetTranslatedShaderSourceANGLE, shader, bufSize, OutArray(length, 1),
          OutText(source, bufSize));
}

}  // namespace Es2
