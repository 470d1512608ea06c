// Draws frames until its standard input ends, then leaves in order.
#include "tests/e2e/programs/linked_egl.h"
#include <GLES2/gl2.h>
#include <poll.h>

int main()
{
    LinkedEgl const egl;
    EGLDisplay const display = OpenDisplay(egl);
    Pbuffer const pbuffer = MakePbuffer(egl, display, 2);
    MakeCurrent(egl, pbuffer);
    pollfd input{0, POLLIN, 0};
    for (unsigned int frame = 0; poll(&input, 1, 1) == 0; ++frame)
    {
        glClearColor(static_cast<float>(frame % 256) / 255.0F, 0.0F, 0.0F, 1.0F);
        glClear(GL_COLOR_BUFFER_BIT);
        eglSwapBuffers(display, pbuffer.surface);
    }
    return 0;
}
