// What the examples share: the command line, an EGL pbuffer to draw into, shaders, and the last frame as PNG.
#pragma once
#include <EGL/egl.h>
#include <GLES2/gl2.h>

namespace CLI
{
class App;
}

namespace examples
{
// What an example draws. The frame number is its only clock, so that each run renders the same pixels.
class Scene
{
public:
    virtual ~Scene() = default;
    // Options of the example's own, beside those that all have.
    virtual void AddOptions(CLI::App&) {}
    virtual void Setup(int width, int height) = 0;
    virtual void DrawFrame(int frame) = 0;
};

// The whole program around a scene: reads the arguments, draws the frames, each ended by a swap, and tidies
// up. Returns the exit code.
int Run(int argc, char** argv, char const* about, Scene& scene);

// Compiles and links; a mistake in a shader ends the program with the driver's log.
GLuint BuildProgram(char const* vertexSource, char const* fragmentSource);

// The two draw calls, counted for --counts.
void DrawArrays(GLenum mode, GLint first, GLsizei count);
void DrawElements(GLenum mode, GLsizei count, GLenum type, void const* indices);
}  // namespace examples
