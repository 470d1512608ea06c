// Prints what an application can notice of the tracer that stands below it, a line each.
#include "tests/e2e/programs/linked_egl.h"
#include "tests/e2e/programs/pbuffer.h"
#include <GLES2/gl2.h>
#include <dlfcn.h>

static void PrintErrors()
{
    eglDestroySurface(EGL_NO_DISPLAY, EGL_NO_SURFACE);
    std::printf("eglGetError 0x%04x\n", static_cast<unsigned>(eglGetError()));
    glEnable(0);
    std::printf("glGetError 0x%04x\n", glGetError());
    // One that fails otherwise than by an error is told as ever.
    std::printf("glGetAttribLocation of no program %d\n", glGetAttribLocation(0, "position"));
    std::printf("glGetError 0x%04x\n", glGetError());
}

static void PrintSymbols()
{
    bool const extension = dlsym(RTLD_DEFAULT, "glGenFencesNV") != nullptr;
    std::printf("glGenFencesNV is %s\n", extension ? "exported" : "not exported");
}

// A value that is no API's.
static void PrintControlValue() { std::printf("eglBindAPI(0x433) %u\n", eglBindAPI(0x433)); }

int main()
{
    LinkedEgl const egl;
    MakeCurrent(egl, MakePbuffer(egl, OpenDisplay(egl), 2));
    PrintErrors();
    PrintSymbols();
    PrintControlValue();
    return 0;
}
