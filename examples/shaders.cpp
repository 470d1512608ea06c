#include "shaders.h"
#include <stdexcept>
#include <string>

namespace examples
{
namespace
{
GLuint CompileShader(GLenum type, char const* source)
{
    GLuint const shader = glCreateShader(type);
    glShaderSource(shader, 1, &source, nullptr);
    glCompileShader(shader);
    GLint compiled = GL_FALSE;
    glGetShaderiv(shader, GL_COMPILE_STATUS, &compiled);
    if (compiled)
        return shader;
    char log[1000] = "";
    glGetShaderInfoLog(shader, sizeof log, nullptr, log);
    throw std::runtime_error(std::string("a shader does not compile: ") + log);
}
}  // namespace

GLuint BuildProgram(char const* vertexSource, char const* fragmentSource)
{
    GLuint const vertexShader = CompileShader(GL_VERTEX_SHADER, vertexSource);
    GLuint const fragmentShader = CompileShader(GL_FRAGMENT_SHADER, fragmentSource);
    GLuint const program = glCreateProgram();
    glAttachShader(program, vertexShader);
    glAttachShader(program, fragmentShader);
    glLinkProgram(program);
    glDeleteShader(vertexShader);
    glDeleteShader(fragmentShader);
    GLint linked = GL_FALSE;
    glGetProgramiv(program, GL_LINK_STATUS, &linked);
    if (linked)
        return program;
    char log[1000] = "";
    glGetProgramInfoLog(program, sizeof log, nullptr, log);
    throw std::runtime_error(std::string("a program does not link: ") + log);
}
}  // namespace examples
