// An EGL pbuffer context for the test programs, through whatever functions they were reached by. A step that
// fails ends the program with the line where it did.
#pragma once
#include <EGL/egl.h>
#include <cstdio>
#include <cstdlib>

#define CHECK(condition)                                                                                     \
    do                                                                                                       \
    {                                                                                                        \
        if (!(condition))                                                                                    \
        {                                                                                                    \
            std::fprintf(stderr, "%s:%d: %s\n", __FILE__, __LINE__, #condition);                             \
            std::exit(1);                                                                                    \
        }                                                                                                    \
    } while (false)

struct Pbuffer
{
    EGLDisplay display = EGL_NO_DISPLAY;
    EGLConfig config = nullptr;
    EGLContext context = EGL_NO_CONTEXT;
    EGLSurface surface = EGL_NO_SURFACE;
};

constexpr EGLint kSide = 16;

// `Api` has the EGL functions as members of their names, without "egl".
template <class Api>
EGLDisplay OpenDisplay(Api const& egl)
{
    EGLDisplay const display = egl.GetDisplay(EGL_DEFAULT_DISPLAY);
    CHECK(display != EGL_NO_DISPLAY);
    CHECK(egl.Initialize(display, nullptr, nullptr));
    CHECK(egl.BindAPI(EGL_OPENGL_ES_API));
    return display;
}

// `version` is the OpenGL ES version of the context.
template <class Api>
Pbuffer MakePbuffer(Api const& egl, EGLDisplay display, EGLint version)
{
    EGLint const kind = version == 1 ? EGL_OPENGL_ES_BIT : EGL_OPENGL_ES2_BIT;
    EGLint const configAttributes[] = {EGL_SURFACE_TYPE,
                                       EGL_PBUFFER_BIT,
                                       EGL_RENDERABLE_TYPE,
                                       kind,
                                       EGL_RED_SIZE,
                                       8,
                                       EGL_GREEN_SIZE,
                                       8,
                                       EGL_BLUE_SIZE,
                                       8,
                                       EGL_ALPHA_SIZE,
                                       8,
                                       EGL_NONE};
    EGLint const contextAttributes[] = {EGL_CONTEXT_CLIENT_VERSION, version, EGL_NONE};
    EGLint const surfaceAttributes[] = {EGL_WIDTH, kSide, EGL_HEIGHT, kSide, EGL_NONE};
    Pbuffer made;
    made.display = display;
    EGLint count = 0;
    CHECK(egl.ChooseConfig(display, configAttributes, &made.config, 1, &count) && count == 1);
    made.context = egl.CreateContext(display, made.config, EGL_NO_CONTEXT, contextAttributes);
    CHECK(made.context != EGL_NO_CONTEXT);
    made.surface = egl.CreatePbufferSurface(display, made.config, surfaceAttributes);
    CHECK(made.surface != EGL_NO_SURFACE);
    return made;
}

template <class Api>
void MakeCurrent(Api const& egl, Pbuffer const& pbuffer)
{
    CHECK(egl.MakeCurrent(pbuffer.display, pbuffer.surface, pbuffer.surface, pbuffer.context));
}

template <class Api>
void MakeNothingCurrent(Api const& egl, EGLDisplay display)
{
    CHECK(egl.MakeCurrent(display, EGL_NO_SURFACE, EGL_NO_SURFACE, EGL_NO_CONTEXT));
}
