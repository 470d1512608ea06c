// The EGL functions as a program has them that links them.
#pragma once
#include "pbuffer.h"

struct LinkedEgl
{
    decltype(&eglGetDisplay) GetDisplay = eglGetDisplay;
    decltype(&eglInitialize) Initialize = eglInitialize;
    decltype(&eglBindAPI) BindAPI = eglBindAPI;
    decltype(&eglChooseConfig) ChooseConfig = eglChooseConfig;
    decltype(&eglCreateContext) CreateContext = eglCreateContext;
    decltype(&eglCreatePbufferSurface) CreatePbufferSurface = eglCreatePbufferSurface;
    decltype(&eglMakeCurrent) MakeCurrent = eglMakeCurrent;
    decltype(&eglSwapBuffers) SwapBuffers = eglSwapBuffers;
    decltype(&eglTerminate) Terminate = eglTerminate;
};
