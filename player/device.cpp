#include "player/device.h"
#include "player/call.h"
#include <cstdio>
#include <cstring>
#include <limits>

namespace nebtrace::player
{
namespace
{
struct ConfigKey
{
    EGLint attribute;
    EGLint weight;
    EGLint usual;  // where the trace does not say
};

// What of a config shows in a picture. The sizes of a colour decide most, then multisampling.
constexpr ConfigKey kConfigKeys[] = {
    {EGL_RED_SIZE, 1000, 8},     {EGL_GREEN_SIZE, 1000, 8},    {EGL_BLUE_SIZE, 1000, 8},
    {EGL_ALPHA_SIZE, 100, 8},    {EGL_SAMPLES, 100, 0},        {EGL_SAMPLE_BUFFERS, 100, 0},
    {EGL_DEPTH_SIZE, 10, 24},    {EGL_STENCIL_SIZE, 10, 8},    {EGL_BUFFER_SIZE, 1, 32},
    {EGL_LUMINANCE_SIZE, 10, 0}, {EGL_ALPHA_MASK_SIZE, 10, 0},
};

EGLint RenderableBit(int version)
{
    return version == 1 ? EGL_OPENGL_ES_BIT : version == 3 ? EGL_OPENGL_ES3_BIT : EGL_OPENGL_ES2_BIT;
}

std::vector<EGLint> ListOf(Attributes const& attributes)
{
    std::vector<EGLint> list;
    for (auto const& [key, value] : attributes)
        list.insert(list.end(), {key, value});
    list.push_back(EGL_NONE);
    return list;
}
}  // namespace

Device::Device(Driver const& driver, bool window, int version) : m_egl(driver.egl), m_version(version)
{
    if (window)
        m_windows = WindowSystem::Open();
    if (window && !m_windows)
        throw DriverFailure("there is no X display to show a window on: set DISPLAY, leave --window out, or "
                            "start this under xvfb-run");
    m_display = OpenDisplay();
    EGLint count = 0;
    m_egl.eglBindAPI(EGL_OPENGL_ES_API);
    m_egl.eglGetConfigs(m_display, nullptr, 0, &count);
    m_configs.resize(static_cast<size_t>(count > 0 ? count : 0));
    m_egl.eglGetConfigs(m_display, m_configs.data(), count, &count);
}

Device::~Device()
{
    m_egl.eglMakeCurrent(m_display, EGL_NO_SURFACE, EGL_NO_SURFACE, EGL_NO_CONTEXT);
    for (EGLSurface const surface : m_surfaces)
        m_egl.eglDestroySurface(m_display, surface);
    for (EGLContext const context : m_contexts)
        m_egl.eglDestroyContext(m_display, context);
    m_egl.eglTerminate(m_display);
    m_egl.eglReleaseThread();
}

void Device::Fail(std::string const& what) const
{
    char code[16];
    std::snprintf(code, sizeof code, "0x%x", static_cast<unsigned>(m_egl.eglGetError()));
    throw DriverFailure(what + " (EGL error " + code + ")");
}

// Without a window the display needs no window system at all, where EGL has such a thing.
EGLDisplay Device::OpenDisplay()
{
    char const* const extensions = m_egl.eglQueryString(EGL_NO_DISPLAY, EGL_EXTENSIONS);
    bool const surfaceless = extensions && std::strstr(extensions, "EGL_MESA_platform_surfaceless");
    std::vector<EGLDisplay> candidates;
    if (m_windows)
        candidates = {m_egl.eglGetDisplay(reinterpret_cast<intptr_t>(m_windows->NativeDisplay()))};
    else
    {
        if (surfaceless && m_egl.eglGetPlatformDisplayEXT)
            candidates.push_back(
                m_egl.eglGetPlatformDisplayEXT(EGL_PLATFORM_SURFACELESS_MESA, nullptr, nullptr));
        candidates.push_back(m_egl.eglGetDisplay(0));
    }
    for (EGLDisplay const display : candidates)
        if (display != EGL_NO_DISPLAY && m_egl.eglInitialize(display, nullptr, nullptr))
            return display;
    Fail("no EGL display can be opened; nebtrace doctor tells what this machine lacks");
}

EGLint Device::ConfigAttribute(EGLConfig config, EGLint attribute) const
{
    EGLint value = 0;
    m_egl.eglGetConfigAttrib(m_display, config, attribute, &value);
    return value;
}

EGLint Device::Distance(EGLConfig config, Attributes const& wanted) const
{
    EGLint distance = 0;
    for (ConfigKey const& key : kConfigKeys)
    {
        auto const found = wanted.find(key.attribute);
        EGLint const want =
            found != wanted.end() && found->second >= 0 && found->second < 256 ? found->second : key.usual;
        EGLint const have = ConfigAttribute(config, key.attribute);
        distance += key.weight * (have > want ? have - want : want - have);
    }
    return distance;
}

EGLConfig Device::FindConfig(Attributes const& wanted, EGLint surfaceBit, int version) const
{
    EGLConfig best = nullptr;
    EGLint least = std::numeric_limits<EGLint>::max();
    for (EGLConfig const config : m_configs)
    {
        bool const fits = (ConfigAttribute(config, EGL_SURFACE_TYPE) & surfaceBit) != 0 &&
                          (ConfigAttribute(config, EGL_RENDERABLE_TYPE) & RenderableBit(version)) != 0;
        // An ID is all that a captured state knows of some configs. It is worth trying on a machine that may
        // be the recording's own.
        bool const same = !IsDescribed(wanted) && wanted.count(EGL_CONFIG_ID) != 0 &&
                          wanted.at(EGL_CONFIG_ID) == ConfigAttribute(config, EGL_CONFIG_ID);
        if (fits && same)
            return config;
        EGLint const distance = fits ? Distance(config, wanted) : least;
        if (distance < least)
        {
            best = config;
            least = distance;
        }
    }
    if (!best)
        Fail("EGL has no config for OpenGL ES " + std::to_string(version));
    return best;
}

void Device::Realize(Context& context)
{
    if (context.own != EGL_NO_CONTEXT)
        return;
    EGLContext share = EGL_NO_CONTEXT;
    if (context.sharedWith)
    {
        if (!IsDescribed(context.sharedWith->config))
            context.sharedWith->config = context.config;
        Realize(*context.sharedWith);
        share = context.sharedWith->own;
    }
    EGLint const surfaceBit = m_windows ? EGL_WINDOW_BIT : EGL_PBUFFER_BIT;
    EGLConfig const config = FindConfig(context.config, surfaceBit, context.version);
    // Of what the recording asked for, only the version shows in a picture; the rest the driver may not know.
    EGLint const list[] = {EGL_CONTEXT_CLIENT_VERSION, context.version, EGL_NONE};
    context.own = m_egl.eglCreateContext(m_display, config, share, list);
    if (context.own == EGL_NO_CONTEXT)
        Fail("no context for OpenGL ES " + std::to_string(context.version) + " can be made");
    m_contexts.push_back(context.own);
}

std::shared_ptr<Surface> Device::MakePbuffer(Attributes const& config, Attributes attributes, Size size)
{
    auto surface = std::make_shared<Surface>();
    surface->config = config;
    surface->width = attributes[EGL_WIDTH] = size.width;
    surface->height = attributes[EGL_HEIGHT] = size.height;
    EGLConfig const own = FindConfig(config, EGL_PBUFFER_BIT, m_version);
    surface->own = m_egl.eglCreatePbufferSurface(m_display, own, ListOf(attributes).data());
    if (surface->own == EGL_NO_SURFACE)
        Fail("no pbuffer of " + std::to_string(size.width) + "x" + std::to_string(size.height) +
             " can be made");
    m_surfaces.push_back(surface->own);
    return surface;
}

std::shared_ptr<Surface> Device::MakeWindow(Attributes const& config, Size size)
{
    if (!m_windows)
        return MakePbuffer(config, {}, size);
    auto surface = std::make_shared<Surface>();
    surface->config = config;
    surface->width = size.width;
    surface->height = size.height;
    EGLConfig const own = FindConfig(config, EGL_WINDOW_BIT, m_version);
    auto const visual = static_cast<unsigned long>(ConfigAttribute(own, EGL_NATIVE_VISUAL_ID));
    void* const window = m_windows->MakeWindow(size.width, size.height, visual);
    surface->own = window ? m_egl.eglCreateWindowSurface(m_display, own, window, nullptr) : EGL_NO_SURFACE;
    if (surface->own == EGL_NO_SURFACE)
        Fail("no window can be made");
    m_surfaces.push_back(surface->own);
    return surface;
}

void Device::MakeCurrent(Surface const* draw, Surface const* read, Context const* context)
{
    EGLSurface const ownDraw = draw ? draw->own : EGL_NO_SURFACE;
    EGLSurface const ownRead = read ? read->own : EGL_NO_SURFACE;
    if (!m_egl.eglMakeCurrent(m_display, ownDraw, ownRead, context ? context->own : EGL_NO_CONTEXT))
        Fail("a context cannot be made current");
}

void Device::Swap(Surface const& surface) const { m_egl.eglSwapBuffers(m_display, surface.own); }
}  // namespace nebtrace::player
