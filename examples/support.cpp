#include "support.h"
#include <CLI/CLI.hpp>
#include <GLES2/gl2.h>
#include <cstdio>
#include <cstdlib>
#include <iostream>
#include <png.h>
#include <stdexcept>
#include <string>
#include <vector>

namespace examples
{
namespace
{
long drawCount = 0;
long swapCount = 0;

struct Options
{
    int frames = 60;
    int width = 640;
    int height = 480;
    std::string png;
    std::string pictures;
    bool step = false;
    bool counts = false;
};

[[noreturn]] void Fail(std::string const& what) { throw std::runtime_error(what); }

// Parses "640x480" into the options.
std::string ReadSize(std::string const& text, Options& options)
{
    int width = 0;
    int height = 0;
    char rest = 0;
    bool const whole = std::sscanf(text.c_str(), "%5dx%5d%c", &width, &height, &rest) == 2;
    if (!whole || width < 1 || height < 1 || width > 8192 || height > 8192)
        return "a size is WIDTHxHEIGHT, each from 1 to 8192";
    options.width = width;
    options.height = height;
    return {};
}

// An EGL context that is current on a pbuffer. Needs no window system: where neither a display nor a platform
// is named, Mesa is asked for the one without a surface of its own.
class Pbuffer
{
public:
    Pbuffer(int width, int height, Scene const& scene)
    {
        int const version = scene.ApiVersion();
        if (!std::getenv("DISPLAY"))
            setenv("EGL_PLATFORM", "surfaceless", 0);
        m_display = eglGetDisplay(EGL_DEFAULT_DISPLAY);
        if (!eglInitialize(m_display, nullptr, nullptr))
            Fail("no EGL display can be opened");
        eglBindAPI(EGL_OPENGL_ES_API);
        EGLConfig const config = ChooseConfig(scene);
        EGLint const contextAttributes[] = {EGL_CONTEXT_CLIENT_VERSION, version, EGL_NONE};
        EGLint const surfaceAttributes[] = {EGL_WIDTH, width, EGL_HEIGHT, height, EGL_NONE};
        m_context = eglCreateContext(m_display, config, EGL_NO_CONTEXT, contextAttributes);
        m_surface = eglCreatePbufferSurface(m_display, config, surfaceAttributes);
        if (!eglMakeCurrent(m_display, m_surface, m_surface, m_context))
            Fail("no OpenGL ES " + std::to_string(version) + " context with a pbuffer can be made");
    }

    ~Pbuffer()
    {
        eglMakeCurrent(m_display, EGL_NO_SURFACE, EGL_NO_SURFACE, EGL_NO_CONTEXT);
        eglDestroySurface(m_display, m_surface);
        eglDestroyContext(m_display, m_context);
        eglTerminate(m_display);
    }

    Pbuffer(Pbuffer const&) = delete;
    Pbuffer& operator=(Pbuffer const&) = delete;

    void Swap()
    {
        if (!eglSwapBuffers(m_display, m_surface))
            Fail("eglSwapBuffers failed");
        ++swapCount;
    }

private:
    // As many samples as the scene asks for, or none where the driver has no such configuration.
    EGLConfig ChooseConfig(Scene const& scene) const
    {
        int const version = scene.ApiVersion();
        for (EGLint const samples : {scene.Samples(), 0})
        {
            EGLint const attributes[] = {EGL_SURFACE_TYPE,
                                         EGL_PBUFFER_BIT,
                                         EGL_RENDERABLE_TYPE,
                                         version == 1 ? EGL_OPENGL_ES_BIT : EGL_OPENGL_ES2_BIT,
                                         EGL_RED_SIZE,
                                         8,
                                         EGL_GREEN_SIZE,
                                         8,
                                         EGL_BLUE_SIZE,
                                         8,
                                         EGL_ALPHA_SIZE,
                                         8,
                                         EGL_DEPTH_SIZE,
                                         16,
                                         EGL_STENCIL_SIZE,
                                         scene.StencilBits(),
                                         EGL_SAMPLES,
                                         samples,
                                         EGL_NONE};
            EGLConfig config = nullptr;
            EGLint count = 0;
            if (eglChooseConfig(m_display, attributes, &config, 1, &count) && count == 1)
                return config;
        }
        Fail("EGL has no configuration for OpenGL ES " + std::to_string(version) + " on a pbuffer");
    }

    EGLDisplay m_display = EGL_NO_DISPLAY;
    EGLContext m_context = EGL_NO_CONTEXT;
    EGLSurface m_surface = EGL_NO_SURFACE;
};

void WritePng(Options const& options, std::string const& file)
{
    auto const width = static_cast<std::size_t>(options.width);
    auto const height = static_cast<std::size_t>(options.height);
    std::vector<unsigned char> pixels(width * height * 4);
    glReadPixels(0, 0, options.width, options.height, GL_RGBA, GL_UNSIGNED_BYTE, pixels.data());

    png_image image{};
    image.version = PNG_IMAGE_VERSION;
    image.width = static_cast<png_uint_32>(width);
    image.height = static_cast<png_uint_32>(height);
    image.format = PNG_FORMAT_RGBA;
    // GL's first row is the lowest, PNG's the highest: a negative stride turns the picture over.
    int const stride = -static_cast<int>(width * 4);
    if (!png_image_write_to_file(&image, file.c_str(), 0, pixels.data(), stride, nullptr))
        Fail("cannot write " + file + ": " + image.message);
}

std::string PictureOf(Options const& options, int frame)
{
    char name[32];
    std::snprintf(name, sizeof name, "/frame_%05d.png", frame);
    return options.pictures + name;
}

void DrawAll(Options const& options, Scene& scene)
{
    Pbuffer pbuffer(options.width, options.height, scene);
    scene.Setup(options.width, options.height);
    std::string line;
    for (int frame = 0; frame < options.frames; ++frame)
    {
        if (options.step && !std::getline(std::cin, line))
            return;
        scene.DrawFrame(frame);
        if (frame == options.frames - 1 && !options.png.empty())
            WritePng(options, options.png);
        if (!options.pictures.empty())
            WritePng(options, PictureOf(options, frame));
        pbuffer.Swap();
        if (options.step)
            std::cout << "drawn " << frame << std::endl;
    }
}
}  // namespace

void DrawArrays(unsigned mode, int first, int count)
{
    glDrawArrays(mode, first, count);
    ++drawCount;
}

void DrawElements(unsigned mode, int count, unsigned type, void const* indices)
{
    glDrawElements(mode, count, type, indices);
    ++drawCount;
}

int Run(int argc, char** argv, char const* about, Scene& scene)
{
    Options options;
    std::string size;
    CLI::App app{about};
    app.add_option("--frames", options.frames, "How many frames to draw")->check(CLI::Range(1, 1000000));
    app.add_option("--size", size, "Size of the picture, WxH")->check([&options](std::string const& text) {
        return ReadSize(text, options);
    });
    app.add_option("--png", options.png, "Write the last frame to this file");
    app.add_option("--pictures", options.pictures, "Write every frame to this folder")
        ->check(CLI::ExistingDirectory);
    app.add_flag("--step", options.step, "Draw a frame for each line on standard input");
    app.add_flag("--counts", options.counts, "Print how many draw calls and swaps were made");
    scene.AddOptions(app);
    CLI11_PARSE(app, argc, argv);
    try
    {
        DrawAll(options, scene);
    } catch (std::exception const& error)
    {
        std::fprintf(stderr, "%s: %s\n", argv[0], error.what());
        return 1;
    }
    if (options.counts)
        std::printf("draws %ld swaps %ld\n", drawCount, swapCount);
    return 0;
}
}  // namespace examples
