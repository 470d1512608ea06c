// Draws with OpenGL ES 1 and OpenGL ES 2 by turns, each into a surface of its own: both_apis FRAMES, half of
// them of each API. All of a frame's state is set in the frame.
#include "linked_egl.h"
#include <GLES/gl.h>
#include <GLES2/gl2.h>
#include <cstdlib>
#include <dlfcn.h>

namespace
{
// Both libraries export most names, so a program that uses both cannot link them.
class Library
{
public:
    explicit Library(char const* name) : m_library(dlopen(name, RTLD_NOW | RTLD_LOCAL)) { CHECK(m_library); }

    template <typename Function>
    void Find(Function& function, char const* name) const
    {
        function = reinterpret_cast<Function>(dlsym(m_library, name));
        CHECK(function);
    }

private:
    void* m_library;
};

struct Es1
{
    decltype(&glClearColor) ClearColor = nullptr;
    decltype(&glClear) Clear = nullptr;
    decltype(&glColor4ub) Color4ub = nullptr;
    decltype(&glEnableClientState) EnableClientState = nullptr;
    decltype(&glVertexPointer) VertexPointer = nullptr;
    decltype(&glDrawArrays) DrawArrays = nullptr;

    Es1()
    {
        Library const library("libGLESv1_CM.so.1");
        library.Find(ClearColor, "glClearColor");
        library.Find(Clear, "glClear");
        library.Find(Color4ub, "glColor4ub");
        library.Find(EnableClientState, "glEnableClientState");
        library.Find(VertexPointer, "glVertexPointer");
        library.Find(DrawArrays, "glDrawArrays");
    }

    void Draw(int frame) const
    {
        GLfloat const corners[] = {-1, -1, 1, -1, -1, 1};
        ClearColor(0, 0, 1, 1);
        Clear(GL_COLOR_BUFFER_BIT);
        Color4ub(255, static_cast<GLubyte>(frame * 16), 0, 255);
        EnableClientState(GL_VERTEX_ARRAY);
        VertexPointer(2, GL_FLOAT, 0, corners);
        DrawArrays(GL_TRIANGLES, 0, 3);
    }
};

struct Es2
{
    decltype(&glClearColor) ClearColor = nullptr;
    decltype(&glClear) Clear = nullptr;
    decltype(&glEnable) Enable = nullptr;
    decltype(&glScissor) Scissor = nullptr;
    decltype(&glDisable) Disable = nullptr;
    decltype(&glBlendColor) BlendColor = nullptr;

    Es2()
    {
        Library const library("libGLESv2.so.2");
        library.Find(ClearColor, "glClearColor");
        library.Find(Clear, "glClear");
        library.Find(Enable, "glEnable");
        library.Find(Scissor, "glScissor");
        library.Find(Disable, "glDisable");
        library.Find(BlendColor, "glBlendColor");
    }

    void Draw(int frame) const
    {
        BlendColor(0.5F, 0.5F, 0.5F, 0.5F);
        ClearColor(1, 0, 0, 1);
        Clear(GL_COLOR_BUFFER_BIT);
        Enable(GL_SCISSOR_TEST);
        Scissor(frame % kSide, 0, 2, kSide);
        ClearColor(0, 1, 0, 1);
        Clear(GL_COLOR_BUFFER_BIT);
        Disable(GL_SCISSOR_TEST);
    }
};
}  // namespace

int main(int argc, char** argv)
{
    CHECK(argc == 2);
    LinkedEgl const egl;
    EGLDisplay const display = OpenDisplay(egl);
    Pbuffer const first = MakePbuffer(egl, display, 1);
    Pbuffer const second = MakePbuffer(egl, display, 2);
    Es1 const es1;
    Es2 const es2;
    for (int frame = 0; frame < std::atoi(argv[1]); ++frame)
    {
        Pbuffer const& drawn = frame % 2 == 0 ? first : second;
        MakeCurrent(egl, drawn);
        if (frame % 2 == 0)
            es1.Draw(frame);
        else
            es2.Draw(frame);
        CHECK(egl.SwapBuffers(display, drawn.surface));
    }
    MakeNothingCurrent(egl, display);
    egl.Terminate(display);
}
