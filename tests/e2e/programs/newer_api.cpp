// Links functions that the recorder does not wrap: EGL 1.5 and OpenGL ES 3, next to some that it does.
#include "linked_egl.h"
#include <EGL/eglext.h>
#include <GLES3/gl3.h>
#include <cstring>

int main()
{
    LinkedEgl const egl;
    EGLDisplay const display = eglGetPlatformDisplay(EGL_PLATFORM_SURFACELESS_MESA, nullptr, nullptr);
    CHECK(display != EGL_NO_DISPLAY);
    CHECK(egl.Initialize(display, nullptr, nullptr));
    CHECK(egl.BindAPI(EGL_OPENGL_ES_API));
    Pbuffer const pbuffer = MakePbuffer(egl, display, 3);
    MakeCurrent(egl, pbuffer);

    GLuint array = 0;
    glGenVertexArrays(1, &array);
    CHECK(array != 0);
    glBindVertexArray(array);
    CHECK(glIsVertexArray(array));
    CHECK(glGetStringi(GL_EXTENSIONS, 0) != nullptr);

    GLuint buffer = 0;
    glGenBuffers(1, &buffer);
    glBindBuffer(GL_ARRAY_BUFFER, buffer);
    glBufferData(GL_ARRAY_BUFFER, 4, "abc", GL_STATIC_DRAW);
    void const* const mapped = glMapBufferRange(GL_ARRAY_BUFFER, 0, 4, GL_MAP_READ_BIT);
    CHECK(mapped && std::strcmp(static_cast<char const*>(mapped), "abc") == 0);
    CHECK(glUnmapBuffer(GL_ARRAY_BUFFER));

    GLsync const fence = glFenceSync(GL_SYNC_GPU_COMMANDS_COMPLETE, 0);
    CHECK(fence && glIsSync(fence));
    glDeleteSync(fence);
    EGLSync const sync = eglCreateSync(display, EGL_SYNC_FENCE, nullptr);
    CHECK(sync != EGL_NO_SYNC);
    CHECK(eglClientWaitSync(display, sync, EGL_SYNC_FLUSH_COMMANDS_BIT, EGL_FOREVER) ==
          EGL_CONDITION_SATISFIED);
    CHECK(eglDestroySync(display, sync));
    CHECK(glGetError() == GL_NO_ERROR);
    CHECK(egl.SwapBuffers(display, pbuffer.surface));
    MakeNothingCurrent(egl, display);
}
