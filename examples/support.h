// What the examples share: the command line, an EGL pbuffer to draw into, and frames as PNG. It calls
// the functions that both APIs have; which library they come from, each example's link says.
#pragma once
#include <EGL/egl.h>

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
    // Of OpenGL ES: 1 or 2.
    virtual int ApiVersion() const { return 2; }
    // Of the surface. Smooth edges by default, where the driver has them for pbuffers.
    virtual int Samples() const { return 4; }
    virtual int StencilBits() const { return 0; }
    virtual void Setup(int width, int height) = 0;
    virtual void DrawFrame(int frame) = 0;
};

// The whole program around a scene: reads the arguments, draws the frames, each ended by a swap, and tidies
// up. Returns the exit code.
int Run(int argc, char** argv, char const* about, Scene& scene);

// The two draw calls, counted for --counts.
void DrawArrays(unsigned mode, int first, int count);
void DrawElements(unsigned mode, int count, unsigned type, void const* indices);
}  // namespace examples
