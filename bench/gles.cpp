#include "gles.h"
#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace bench
{
namespace
{

GLuint Compile(GLenum type, char const* source)
{
    GLuint const shader = glCreateShader(type);
    glShaderSource(shader, 1, &source, nullptr);
    glCompileShader(shader);
    return shader;
}

EGLConfig Config()
{
    EGLint const attributes[] = {EGL_SURFACE_TYPE, EGL_PBUFFER_BIT, EGL_RENDERABLE_TYPE, EGL_OPENGL_ES2_BIT,
                                 EGL_NONE};
    EGLConfig config = nullptr;
    EGLint count = 0;
    eglChooseConfig(Display(), attributes, &config, 1, &count);
    Require(count == 1, "config");
    return config;
}

}  // namespace

void Require(bool condition, char const* what)
{
    if (condition)
        return;
    std::fprintf(stderr, "bench: no %s\n", what);
    std::exit(1);
}

int NumberOption(char const* argument, char const* name, int value)
{
    std::size_t const length = std::strlen(name);
    bool const given = std::strncmp(argument, name, length) == 0 && argument[length] == '=';
    return given ? std::atoi(argument + length + 1) : value;
}

EGLDisplay Display()
{
    static EGLDisplay const display = [] {
        EGLDisplay const found = eglGetDisplay(EGL_DEFAULT_DISPLAY);
        Require(eglInitialize(found, nullptr, nullptr) == EGL_TRUE, "display");
        return found;
    }();
    return display;
}

Context MakeContext()
{
    EGLint const surfaceAttributes[] = {EGL_WIDTH, 64, EGL_HEIGHT, 64, EGL_NONE};
    EGLint const contextAttributes[] = {EGL_CONTEXT_CLIENT_VERSION, 2, EGL_NONE};
    EGLConfig const config = Config();
    eglBindAPI(EGL_OPENGL_ES_API);
    Context made;
    made.surface = eglCreatePbufferSurface(Display(), config, surfaceAttributes);
    made.context = eglCreateContext(Display(), config, EGL_NO_CONTEXT, contextAttributes);
    Require(eglMakeCurrent(Display(), made.surface, made.surface, made.context) == EGL_TRUE, "context");
    return made;
}

void SwapBuffers(Context const& context) { eglSwapBuffers(Display(), context.surface); }

GLint MakeProgram()
{
    GLuint const program = glCreateProgram();
    glAttachShader(program,
                   Compile(GL_VERTEX_SHADER, "attribute vec4 a; attribute vec4 b; uniform vec4 u[16];\n"
                                             "void main() { gl_Position = a + b + u[15]; }"));
    glAttachShader(program, Compile(GL_FRAGMENT_SHADER, "void main() { gl_FragColor = vec4(1.0); }"));
    glBindAttribLocation(program, 0, "a");
    glBindAttribLocation(program, 1, "b");
    glLinkProgram(program);
    glUseProgram(program);
    return glGetUniformLocation(program, "u");
}

void SetArrays(void const* base)
{
    auto const* const first = static_cast<char const*>(base);
    constexpr GLsizei kStride = kFloatsPerVertex * static_cast<GLsizei>(sizeof(GLfloat));
    glVertexAttribPointer(0, 4, GL_FLOAT, GL_FALSE, kStride, first);
    glVertexAttribPointer(1, 4, GL_FLOAT, GL_FALSE, kStride, first + kStride / 2);
    glEnableVertexAttribArray(0);
    glEnableVertexAttribArray(1);
}

}  // namespace bench
