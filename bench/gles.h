// What the benchmarks share: a display, contexts on it, and a program to draw with.
#pragma once
#include <EGL/egl.h>
#include <GLES2/gl2.h>

namespace bench
{

// Ends the program when the machine lacks `what`.
void Require(bool condition, char const* what);

// The number behind `name=` if `argument` is that option, else `value`.
int NumberOption(char const* argument, char const* name, int value);

// The default display, initialised.
EGLDisplay Display();

// A context with a small surface of its own, current on the thread that made it.
struct Context
{
    EGLSurface surface = EGL_NO_SURFACE;
    EGLContext context = EGL_NO_CONTEXT;
};
Context MakeContext();
void SwapBuffers(Context const& context);

constexpr int kUniforms = 16;

// In use from now on, with attributes 0 and 1. Returns the location of its array of kUniforms vec4.
GLint MakeProgram();

constexpr GLsizei kVertices = 32;
constexpr GLsizei kFloatsPerVertex = 8;  // 1 KiB of vertices

// Both attributes interleaved, from `base` on: an address, or an offset in the bound buffer.
void SetArrays(void const* base);

}  // namespace bench
