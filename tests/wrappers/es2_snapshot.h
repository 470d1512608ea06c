// A GLES2 application that has made its objects ahead of the recorded frames, and the host that it runs on.
#pragma once
#include "state/es2_context_state.h"
#include "tests/wrappers/snapshot_calls.h"

class Es2Snapshot : public Snapshot
{
protected:
    static CEs2ContextState& State() { return *CTraceRecordManager::m_Es2FileState; }

    // Makes the host name the object that its next glCreateShader or glCreateProgram returns.
    static GLuint Shader(GLenum type, GLuint name, char const* source)
    {
        Fake().Result("glCreateShader", name);
        Es2::_glCreateShader(type, 0);
        Es2::_glShaderSource(name, 1, &source, nullptr);
        return name;
    }
    static GLuint Program(GLuint name, GLuint vertexShader, GLuint fragmentShader)
    {
        Fake().Result("glCreateProgram", name);
        Es2::_glCreateProgram(0);
        if (vertexShader)
            Es2::_glAttachShader(name, vertexShader);
        if (fragmentShader)
            Es2::_glAttachShader(name, fragmentShader);
        return name;
    }
    // A linked program without shaders, in use.
    static void UseProgram(GLuint name)
    {
        Program(name, 0, 0);
        Es2::_glLinkProgram(name);
        Es2::_glUseProgram(name);
    }
    static void Locate(GLuint program, char const* name, GLint location)
    {
        Fake().Result("glGetUniformLocation", static_cast<uint32_t>(location));
        Es2::_glGetUniformLocation(program, name, 0);
    }

    void BindTexture(GLuint name) { HostAnswers(GL_TEXTURE_BINDING_2D, static_cast<GLint>(name)); }
    void BindCubeMap(GLuint name) { HostAnswers(GL_TEXTURE_BINDING_CUBE_MAP, static_cast<GLint>(name)); }
    // One pixel of an alpha texture.
    static void Image(GLenum target, GLint level, GLubyte pixel)
    {
        Es2::_glTexImage2D(target, level, GL_ALPHA, 1, 1, 0, GL_ALPHA, GL_UNSIGNED_BYTE, &pixel, 0);
    }
    void Buffer(GLenum target, GLuint name, std::vector<GLubyte> const& bytes)
    {
        HostAnswers(target == GL_ARRAY_BUFFER ? GL_ARRAY_BUFFER_BINDING : GL_ELEMENT_ARRAY_BUFFER_BINDING,
                    static_cast<GLint>(name));
        Es2::_glBindBuffer(target, name);
        Es2::_glBufferData(target, static_cast<GLsizeiptr>(bytes.size()), bytes.data(), GL_STATIC_DRAW);
    }
};
