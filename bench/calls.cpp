// What single calls cost. The same program is run natively and under the tracer in its modes by run.py, which
// compares the numbers. The driver should draw nothing (GALLIUM_NOOP=true), or its work hides the tracer's.
#include <EGL/egl.h>
#include <GLES2/gl2.h>
#include <array>
#include <benchmark/benchmark.h>
#include <cstdio>
#include <cstdlib>
#include <vector>

namespace
{

constexpr GLsizei kVertices = 32;
constexpr GLsizei kFloatsPerVertex = 8;  // 1 KiB of vertices
constexpr GLsizei kTextureSize = 256;

EGLDisplay s_display = EGL_NO_DISPLAY;
EGLSurface s_surface = EGL_NO_SURFACE;
std::array<GLfloat, kVertices * kFloatsPerVertex> s_vertices{};

void Require(bool condition, char const* what)
{
    if (condition)
        return;
    std::fprintf(stderr, "bench: no %s\n", what);
    std::exit(1);
}

void MakeContext()
{
    EGLint const configAttributes[] = {EGL_SURFACE_TYPE, EGL_PBUFFER_BIT, EGL_RENDERABLE_TYPE,
                                       EGL_OPENGL_ES2_BIT, EGL_NONE};
    EGLint const surfaceAttributes[] = {EGL_WIDTH, 64, EGL_HEIGHT, 64, EGL_NONE};
    EGLint const contextAttributes[] = {EGL_CONTEXT_CLIENT_VERSION, 2, EGL_NONE};
    EGLConfig config = nullptr;
    EGLint count = 0;
    s_display = eglGetDisplay(EGL_DEFAULT_DISPLAY);
    Require(eglInitialize(s_display, nullptr, nullptr) == EGL_TRUE, "display");
    eglBindAPI(EGL_OPENGL_ES_API);
    eglChooseConfig(s_display, configAttributes, &config, 1, &count);
    Require(count == 1, "config");
    s_surface = eglCreatePbufferSurface(s_display, config, surfaceAttributes);
    EGLContext const context = eglCreateContext(s_display, config, EGL_NO_CONTEXT, contextAttributes);
    Require(eglMakeCurrent(s_display, s_surface, s_surface, context) == EGL_TRUE, "context");
}

GLuint Compile(GLenum type, char const* source)
{
    GLuint const shader = glCreateShader(type);
    glShaderSource(shader, 1, &source, nullptr);
    glCompileShader(shader);
    return shader;
}

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

// Objects that the shadow state keeps beside those in use.
void MakeObjects(int count)
{
    for (int i = 0; i < count; ++i)
    {
        GLuint texture = 0;
        glGenTextures(1, &texture);
        glBindTexture(GL_TEXTURE_2D, texture);
        glTexImage2D(GL_TEXTURE_2D, 0, GL_RGBA, 4, 4, 0, GL_RGBA, GL_UNSIGNED_BYTE, s_vertices.data());
    }
}

void ScalarCall(benchmark::State& state)
{
    for (auto _ : state)
        glDepthFunc(GL_LESS);
}
BENCHMARK(ScalarCall)->Iterations(20000);

void UniformArray(benchmark::State& state)
{
    GLint const location = MakeProgram();
    std::array<GLfloat, 16 * 4> const values{};
    for (auto _ : state)
        glUniform4fv(location, 16, values.data());
}
BENCHMARK(UniformArray)->Iterations(20000);

void DrawFromBuffers(benchmark::State& state)
{
    MakeProgram();
    GLuint buffer = 0;
    glGenBuffers(1, &buffer);
    glBindBuffer(GL_ARRAY_BUFFER, buffer);
    glBufferData(GL_ARRAY_BUFFER, sizeof s_vertices, s_vertices.data(), GL_STATIC_DRAW);
    SetArrays(nullptr);
    for (auto _ : state)
        glDrawArrays(GL_TRIANGLE_STRIP, 0, kVertices);
    glBindBuffer(GL_ARRAY_BUFFER, 0);
}
BENCHMARK(DrawFromBuffers)->Iterations(5000);

void DrawFromClientArrays(benchmark::State& state)
{
    MakeProgram();
    SetArrays(s_vertices.data());
    for (auto _ : state)
        glDrawArrays(GL_TRIANGLE_STRIP, 0, kVertices);
}
BENCHMARK(DrawFromClientArrays)->Iterations(5000);

void TextureUpload(benchmark::State& state)
{
    std::vector<GLubyte> const pixels(kTextureSize * kTextureSize * 4);
    GLuint texture = 0;
    glGenTextures(1, &texture);
    glBindTexture(GL_TEXTURE_2D, texture);
    for (auto _ : state)
        glTexImage2D(GL_TEXTURE_2D, 0, GL_RGBA, kTextureSize, kTextureSize, 0, GL_RGBA, GL_UNSIGNED_BYTE,
                     pixels.data());
    glDeleteTextures(1, &texture);
}
BENCHMARK(TextureUpload)->Iterations(100);

void Swap(benchmark::State& state)
{
    for (auto _ : state)
        eglSwapBuffers(s_display, s_surface);
}
BENCHMARK(Swap)->Iterations(2000);

}  // namespace

int main(int argc, char** argv)
{
    benchmark::Initialize(&argc, argv);
    MakeContext();
    MakeObjects(10);
    // The frame that a configuration may record before the measurement begins.
    eglSwapBuffers(s_display, s_surface);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
