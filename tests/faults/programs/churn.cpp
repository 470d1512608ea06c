// Makes and destroys contexts and textures, as many as asked for: churn COUNT. Prints the resident memory in
// KiB after a tenth of the way and at its end.
#include "scene.h"
#include <cstdlib>
#include <fstream>
#include <string>

static long ResidentKiB()
{
    std::ifstream status("/proc/self/status");
    std::string word;
    while (status >> word && word != "VmRSS:")
        continue;
    long size = 0;
    CHECK(status >> size);
    return size;
}

static void MakeAndDestroy(LinkedEgl const& egl, Pbuffer const& pbuffer)
{
    EGLint const attributes[] = {EGL_CONTEXT_CLIENT_VERSION, 2, EGL_NONE};
    EGLContext const context = egl.CreateContext(pbuffer.display, pbuffer.config, EGL_NO_CONTEXT, attributes);
    CHECK(context != EGL_NO_CONTEXT);
    CHECK(egl.MakeCurrent(pbuffer.display, pbuffer.surface, pbuffer.surface, context));
    GLuint texture = 0;
    unsigned char const texels[16 * 16 * 4] = {};
    glGenTextures(1, &texture);
    glBindTexture(GL_TEXTURE_2D, texture);
    glTexImage2D(GL_TEXTURE_2D, 0, GL_RGBA, 16, 16, 0, GL_RGBA, GL_UNSIGNED_BYTE, texels);
    glDeleteTextures(1, &texture);
    MakeNothingCurrent(egl, pbuffer.display);
    CHECK(eglDestroyContext(pbuffer.display, context));
}

int main(int argc, char** argv)
{
    CHECK(argc == 2);
    int const count = std::atoi(argv[1]);
    Scene const scene;
    long warm = 0;
    for (int i = 0; i < count; ++i)
    {
        if (i == count / 10)
            warm = ResidentKiB();
        MakeAndDestroy(scene.Egl(), scene.Surface());
    }
    std::fprintf(stderr, "%ld %ld\n", warm, ResidentKiB());
}
