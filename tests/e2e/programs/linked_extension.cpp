// Links extension functions directly, as a program can whose driver exports them, and never asks
// eglGetProcAddress for them. The machine's own libraries may not export them: this runs under the front
// ends.
#include "linked_egl.h"
#include <GLES2/gl2.h>
#define GL_GLEXT_PROTOTYPES
#include <GLES2/gl2ext.h>

int main()
{
    LinkedEgl const egl;
    EGLDisplay const display = OpenDisplay(egl);
    Pbuffer const pbuffer = MakePbuffer(egl, display, 2);
    MakeCurrent(egl, pbuffer);
    GLuint arrays[2] = {};
    glGenVertexArraysOES(2, arrays);
    CHECK(arrays[0] != 0 && arrays[1] != 0);
    glBindVertexArrayOES(arrays[1]);
    CHECK(glIsVertexArrayOES(arrays[1]));
    // The recorder has a wrapper for this one and leaves its host entry empty; eglGetProcAddress would give
    // the host's own function.
    GLuint query = 0;
    glGenQueriesEXT(1, &query);
    CHECK(glGetError() == GL_NO_ERROR);
    CHECK(query != 0);
    CHECK(egl.SwapBuffers(display, pbuffer.surface));
    MakeNothingCurrent(egl, display);
}
