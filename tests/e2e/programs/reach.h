// One small frame through functions that were reached in one way or another. The ways must not differ in what
// is recorded.
#pragma once
#include "pbuffer.h"
#include <GLES2/gl2.h>

struct Egl
{
    decltype(&eglGetDisplay) GetDisplay;
    decltype(&eglInitialize) Initialize;
    decltype(&eglBindAPI) BindAPI;
    decltype(&eglChooseConfig) ChooseConfig;
    decltype(&eglCreateContext) CreateContext;
    decltype(&eglCreatePbufferSurface) CreatePbufferSurface;
    decltype(&eglMakeCurrent) MakeCurrent;
    decltype(&eglSwapBuffers) SwapBuffers;
    decltype(&eglTerminate) Terminate;
};

struct Gl
{
    decltype(&glClearColor) ClearColor;
    decltype(&glClear) Clear;
    decltype(&glReadPixels) ReadPixels;
};

// `find(address, name)` stores the function of that name.
template <class Find>
void FindAll(Egl& egl, Gl& gl, Find const& find)
{
    find(egl.GetDisplay, "eglGetDisplay");
    find(egl.Initialize, "eglInitialize");
    find(egl.BindAPI, "eglBindAPI");
    find(egl.ChooseConfig, "eglChooseConfig");
    find(egl.CreateContext, "eglCreateContext");
    find(egl.CreatePbufferSurface, "eglCreatePbufferSurface");
    find(egl.MakeCurrent, "eglMakeCurrent");
    find(egl.SwapBuffers, "eglSwapBuffers");
    find(egl.Terminate, "eglTerminate");
    find(gl.ClearColor, "glClearColor");
    find(gl.Clear, "glClear");
    find(gl.ReadPixels, "glReadPixels");
}

inline void DrawFrame(Egl const& egl, Gl const& gl)
{
    EGLDisplay const display = OpenDisplay(egl);
    Pbuffer const pbuffer = MakePbuffer(egl, display, 2);
    MakeCurrent(egl, pbuffer);
    gl.ClearColor(1.0F, 0.0F, 1.0F, 1.0F);
    gl.Clear(GL_COLOR_BUFFER_BIT);
    unsigned char pixel[4] = {};
    gl.ReadPixels(0, 0, 1, 1, GL_RGBA, GL_UNSIGNED_BYTE, pixel);
    CHECK(pixel[0] == 255 && pixel[1] == 0 && pixel[2] == 255 && pixel[3] == 255);
    CHECK(egl.SwapBuffers(display, pbuffer.surface));
    MakeNothingCurrent(egl, display);
    CHECK(egl.Terminate(display));
}
