// A driver that EGL's vendor-neutral library loads in Mesa's place, and that is Mesa in all but two
// functions. It stands below the tracer, and below an application without the tracer just the same, so that
// both are observed alike. Ahead of each swap it writes a line about what the frame shows to the file that
// KEEP_FRAMES names.
//
// At each glClear the clock of an application under faketime goes on by a fifth of a second, so that what
// moves by the clock moves by the frame. Not at the swap: one that starts its clock right ahead of its first
// frame would see no time pass in that. Where KEEP_FRAMES_ONLY is set the application ends instead of that
// many swaps and one: for those that have no end of their own.
#include <EGL/egl.h>
#include <EGL/eglext.h>
#include <GLES2/gl2.h>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <dlfcn.h>
#include <glvnd/libeglabi.h>
#include <vector>

namespace
{
__EGLapiImports mesa;
int frames = 0;

template <typename Function>
Function* OfMesa(char const* name)
{
    return reinterpret_cast<Function*>(mesa.getProcAddress(name));
}

// FNV-1a.
std::uint64_t Hash(std::vector<std::uint32_t> const& pixels)
{
    std::uint64_t hash = 0xcbf29ce484222325;
    for (std::uint32_t const pixel : pixels)
        for (unsigned shift = 0; shift < 32; shift += 8)
            hash = (hash ^ ((pixel >> shift) & 0xff)) * 0x100000001b3;
    return hash;
}

void Keep(EGLDisplay display, EGLSurface surface)
{
    EGLint width = 0;
    EGLint height = 0;
    OfMesa<decltype(eglQuerySurface)>("eglQuerySurface")(display, surface, EGL_WIDTH, &width);
    OfMesa<decltype(eglQuerySurface)>("eglQuerySurface")(display, surface, EGL_HEIGHT, &height);
    GLint framebuffer = -1;
    OfMesa<decltype(glGetIntegerv)>("glGetIntegerv")(GL_FRAMEBUFFER_BINDING, &framebuffer);
    // A pixel more in each row than there is: the application may have asked for rows of whole eight bytes.
    std::vector<std::uint32_t> pixels(static_cast<std::size_t>(width + 1) * static_cast<std::size_t>(height));
    OfMesa<decltype(glReadPixels)>("glReadPixels")(0, 0, width, height, GL_RGBA, GL_UNSIGNED_BYTE,
                                                   pixels.data());
    int drawn = 0;
    for (int i = 0; i < width * height; ++i)
        drawn += pixels[static_cast<std::size_t>(i)] != pixels[0];

    static std::FILE* const file = std::fopen(std::getenv("KEEP_FRAMES"), "w");
    std::fprintf(file, "%d: %dx%d, framebuffer %d, %d unlike the first, %016llx\n", frames, width, height,
                 framebuffer, drawn, static_cast<unsigned long long>(Hash(pixels)));
    std::fflush(file);
}

void Clear(GLbitfield mask)
{
    static int fifths = 0;
    ++fifths;
    char now[64];
    std::snprintf(now, sizeof now, "2020-01-01 00:%02d:%02d.%d", fifths / 300, fifths / 5 % 60,
                  fifths % 5 * 2);
    setenv("FAKETIME", now, 1);
    OfMesa<decltype(glClear)>("glClear")(mask);
}

EGLBoolean SwapBuffers(EGLDisplay display, EGLSurface surface)
{
    char const* const only = std::getenv("KEEP_FRAMES_ONLY");
    if (only && frames == std::atoi(only))
        std::exit(0);
    Keep(display, surface);
    ++frames;
    return OfMesa<decltype(eglSwapBuffers)>("eglSwapBuffers")(display, surface);
}

void* Find(char const* name)
{
    if (std::strcmp(name, "eglSwapBuffers") == 0)
        return reinterpret_cast<void*>(SwapBuffers);
    if (std::strcmp(name, "glClear") == 0)
        return reinterpret_cast<void*>(Clear);
    return mesa.getProcAddress(name);
}
}  // namespace

extern "C" __attribute__((visibility("default"))) EGLBoolean __egl_Main(std::uint32_t version,
                                                                        __EGLapiExports const* exports,
                                                                        __EGLvendorInfo* vendor,
                                                                        __EGLapiImports* imports)
{
    void* const library = dlopen("libEGL_mesa.so.0", RTLD_NOW | RTLD_LOCAL);
    void* const main = library ? dlsym(library, "__egl_Main") : nullptr;
    if (!main || !reinterpret_cast<decltype(__egl_Main)*>(main)(version, exports, vendor, imports))
        return EGL_FALSE;
    mesa = *imports;
    imports->getProcAddress = Find;
    return EGL_TRUE;
}
