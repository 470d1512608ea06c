// GLES2 wrappers: the driver's own view of its objects, driver controls and tiling.
#include "wrappers/calls.h"
#include "wrappers/host_queries.h"
#include "wrappers/sizing.h"

namespace Es2
{

// On purpose: as many words behind num as the array has room for.
void _glGetDriverControlsQCOM(GLint* num, GLsizei size, GLuint* driverControls)
{
    Trace(Calls::glGetDriverControlsQCOM, OutArray(num, CountOf(size)), size,
          OutArray(driverControls, CountOf(size)));
}

void _glGetDriverControlStringQCOM(GLuint driverControl, GLsizei bufSize, GLsizei* length,
                                   GLchar* driverControlString)
{
    Trace(Calls::glGetDriverControlStringQCOM, driverControl, bufSize, OutArray(length, 1),
          OutText(driverControlString, bufSize));
}

void _glEnableDriverControlQCOM(GLuint driverControl)
{
    Trace(Calls::glEnableDriverControlQCOM, driverControl);
}

void _glDisableDriverControlQCOM(GLuint driverControl)
{
    Trace(Calls::glDisableDriverControlQCOM, driverControl);
}

void _glExtGetTexturesQCOM(GLuint* textures, GLint maxTextures, GLint* numTextures)
{
    Trace(Calls::glExtGetTexturesQCOM, OutArrayBehind(textures, numTextures, maxTextures), maxTextures,
          OutArray(numTextures, 1));
}

void _glExtGetBuffersQCOM(GLuint* buffers, GLint maxBuffers, GLint* numBuffers)
{
    Trace(Calls::glExtGetBuffersQCOM, OutArrayBehind(buffers, numBuffers, maxBuffers), maxBuffers,
          OutArray(numBuffers, 1));
}

void _glExtGetRenderbuffersQCOM(GLuint* renderbuffers, GLint maxRenderbuffers, GLint* numRenderbuffers)
{
    Trace(Calls::glExtGetRenderbuffersQCOM, OutArrayBehind(renderbuffers, numRenderbuffers, maxRenderbuffers),
          maxRenderbuffers, OutArray(numRenderbuffers, 1));
}

void _glExtGetFramebuffersQCOM(GLuint* framebuffers, GLint maxFramebuffers, GLint* numFramebuffers)
{
    Trace(Calls::glExtGetFramebuffersQCOM, OutArrayBehind(framebuffers, numFramebuffers, maxFramebuffers),
          maxFramebuffers, OutArray(numFramebuffers, 1));
}

void _glExtGetTexLevelParameterivQCOM(GLuint texture, GLenum face, GLint level, GLenum pname, GLint* params)
{
    Trace(Calls::glExtGetTexLevelParameterivQCOM, texture, face, level, pname, OutArray(params, 1));
}

void _glExtTexObjectStateOverrideiQCOM(GLenum target, GLenum pname, GLint param)
{
    Trace(Calls::glExtTexObjectStateOverrideiQCOM, target, pname, param);
}

void _glExtGetTexSubImageQCOM(GLenum target, GLint level, GLint xoffset, GLint yoffset, GLint zoffset,
                              GLsizei width, GLsizei height, GLsizei depth, GLenum format, GLenum type,
                              void* texels)
{
    CFrame frame(Calls::glExtGetTexSubImageQCOM, target, level, xoffset, yoffset, zoffset, width, height,
                 depth, format, type, texels);
    frame.CallHost();
    GLint const alignment = frame.IsRecording() ? HostInteger(GL_UNPACK_ALIGNMENT) : 0;
    unsigned int const size =
        frame.Succeeded() ? GlImage3DSize(format, type, width, height, depth, alignment, 0) : 0;
    frame.Record(target, level, xoffset, yoffset, zoffset, width, height, depth, format, type,
                 Bytes(texels, size), alignment);
}

void _glExtGetBufferPointervQCOM(GLenum target, void** params)
{
    Trace(Calls::glExtGetBufferPointervQCOM, target, OutLowByte(params));
}

void _glExtGetShadersQCOM(GLuint* shaders, GLint maxShaders, GLint* numShaders)
{
    Trace(Calls::glExtGetShadersQCOM, OutArrayBehind(shaders, numShaders, maxShaders), maxShaders,
          OutArray(numShaders, 1));
}

void _glExtGetProgramsQCOM(GLuint* programs, GLint maxPrograms, GLint* numPrograms)
{
    Trace(Calls::glExtGetProgramsQCOM, OutArrayBehind(programs, numPrograms, maxPrograms), maxPrograms,
          OutArray(numPrograms, 1));
}

GLboolean _glExtIsProgramBinaryQCOM(GLuint program)
{
    return Trace(Calls::glExtIsProgramBinaryQCOM, program);
}

void _glExtGetProgramBinarySourceQCOM(GLuint program, GLenum shadertype, GLchar* source, GLint* length)
{
    Trace(Calls::glExtGetProgramBinarySourceQCOM, program, shadertype, Text(source), OutArray(length, 1));
}

void _glStartTilingQCOM(GLuint x, GLuint y, GLuint width, GLuint height, GLbitfield preserveMask)
{
    Trace(Calls::glStartTilingQCOM, x, y, width, height, preserveMask);
}

void _glEndTilingQCOM(GLbitfield preserveMask) { Trace(Calls::glEndTilingQCOM, preserveMask); }

void _glAlphaFuncQCOM(GLenum func, GLclampf ref) { Trace(Calls::glAlphaFuncQCOM, func, ref); }

}  // namespace Es2
