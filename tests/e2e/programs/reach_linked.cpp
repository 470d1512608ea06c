// Reaches the API by linking it.
#include "reach.h"

int main()
{
    Egl egl{};
    Gl gl{};
    egl = {eglGetDisplay,           eglInitialize,  eglBindAPI,     eglChooseConfig, eglCreateContext,
           eglCreatePbufferSurface, eglMakeCurrent, eglSwapBuffers, eglTerminate};
    gl = {glClearColor, glClear, glReadPixels};
    DrawFrame(egl, gl);
}
