// A frame of OpenGL ES 1.
#include "linked_egl.h"
#include <GLES/gl.h>

int main()
{
    LinkedEgl const egl;
    EGLDisplay const display = OpenDisplay(egl);
    Pbuffer const pbuffer = MakePbuffer(egl, display, 1);
    MakeCurrent(egl, pbuffer);
    GLfloat const corners[] = {-1, -1, 1, -1, -1, 1, 1, 1};
    glClear(GL_COLOR_BUFFER_BIT);
    glEnableClientState(GL_VERTEX_ARRAY);
    glVertexPointer(2, GL_FLOAT, 0, corners);
    glColor4f(0.0F, 1.0F, 0.0F, 1.0F);
    glDrawArrays(GL_TRIANGLE_STRIP, 0, 4);
    unsigned char pixel[4] = {};
    glReadPixels(kSide / 2, kSide / 2, 1, 1, GL_RGBA, GL_UNSIGNED_BYTE, pixel);
    CHECK(pixel[0] == 0 && pixel[1] == 255 && pixel[2] == 0);
    CHECK(egl.SwapBuffers(display, pbuffer.surface));
    MakeNothingCurrent(egl, display);
}
