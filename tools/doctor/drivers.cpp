// Whether the machine's driver makes contexts, and who it is. Without a window, as `nebtrace replay` does.
#include "checks.h"
#include "probe.h"
#include <cstring>

namespace player = nebtrace::player;

namespace doctor
{
namespace
{
constexpr char kInstall[] =
    "install libegl-mesa0 and libgl1-mesa-dri (so Debian calls Mesa's packages), or the "
    "driver of the graphics hardware";

EGLDisplay OpenDisplay(player::EglFunctions const& egl)
{
    char const* const extensions = egl.eglQueryString(EGL_NO_DISPLAY, EGL_EXTENSIONS);
    bool const surfaceless = extensions && std::strstr(extensions, "EGL_MESA_platform_surfaceless");
    if (surfaceless && egl.eglGetPlatformDisplayEXT)
    {
        EGLDisplay const display =
            egl.eglGetPlatformDisplayEXT(EGL_PLATFORM_SURFACELESS_MESA, nullptr, nullptr);
        if (display != EGL_NO_DISPLAY && egl.eglInitialize(display, nullptr, nullptr))
            return display;
    }
    EGLDisplay const display = egl.eglGetDisplay(0);
    return display != EGL_NO_DISPLAY && egl.eglInitialize(display, nullptr, nullptr) ? display
                                                                                     : EGL_NO_DISPLAY;
}

// Whether a context of the version is current on a small pbuffer.
bool MakeContext(player::EglFunctions const& egl, EGLDisplay display, int version)
{
    EGLint const wanted[] = {EGL_SURFACE_TYPE, EGL_PBUFFER_BIT, EGL_RENDERABLE_TYPE,
                             version == 1 ? EGL_OPENGL_ES_BIT : EGL_OPENGL_ES2_BIT, EGL_NONE};
    EGLint const small[] = {EGL_WIDTH, 16, EGL_HEIGHT, 16, EGL_NONE};
    EGLint const contextVersion[] = {EGL_CONTEXT_CLIENT_VERSION, version, EGL_NONE};
    EGLConfig config = nullptr;
    EGLint count = 0;
    egl.eglBindAPI(EGL_OPENGL_ES_API);
    if (!egl.eglChooseConfig(display, wanted, &config, 1, &count) || count == 0)
        return false;
    EGLSurface const surface = egl.eglCreatePbufferSurface(display, config, small);
    EGLContext const context = egl.eglCreateContext(display, config, EGL_NO_CONTEXT, contextVersion);
    return surface != EGL_NO_SURFACE && context != EGL_NO_CONTEXT &&
           egl.eglMakeCurrent(display, surface, surface, context);
}

Facts Look(player::Driver const& driver, int version)
{
    if (version == 1 && !driver.HasEs1())
        return {{kFailure, "libGLESv1_CM.so.1 does not open"}};
    EGLDisplay const display = OpenDisplay(driver.egl);
    if (display == EGL_NO_DISPLAY)
        return {{kFailure, "no EGL display can be opened (" + ErrorText(driver.egl) + ")"}};
    Facts facts{{"egl_vendor", Text(driver.egl.eglQueryString(display, EGL_VENDOR))},
                {"egl_version", Text(driver.egl.eglQueryString(display, EGL_VERSION))}};
    if (!MakeContext(driver.egl, display, version))
    {
        facts[kFailure] = "no context can be made (" + ErrorText(driver.egl) + ")";
        return facts;
    }
    auto const getString = version == 1 ? driver.es1.glGetString : driver.es2.glGetString;
    for (auto const& [name, value] : {std::pair<char const*, GLenum>{"vendor", GL_VENDOR},
                                      {"renderer", GL_RENDERER},
                                      {"version", GL_VERSION}})
        facts[name] = Text(getString(value));
    return facts;
}

Finding FindingOf(std::string const& name, Facts const& facts, Verdict ifBroken)
{
    Finding finding{name};
    auto const of = [&facts](char const* fact) { return facts.count(fact) != 0 ? facts.at(fact) : ""; };
    for (auto const& [fact, value] : facts)
        if (fact != kFailure)
            finding.details.emplace_back(fact, value);
    if (facts.count(kFailure) == 0)
    {
        finding.found = of("renderer") + ", " + of("version") + ", by " + of("vendor") + "; EGL " +
                        of("egl_version") + ", by " + of("egl_vendor");
        return finding;
    }
    finding.verdict = ifBroken;
    finding.found = of(kFailure);
    finding.next = kInstall;
    return finding;
}
}  // namespace

Findings CheckDrivers()
{
    if (FrontEndsAreOnPath())
        return {};
    Facts const es2 = Probe([](player::Driver const& driver) { return Look(driver, 2); });
    Facts const es1 = Probe([](player::Driver const& driver) { return Look(driver, 1); });
    return {FindingOf("OpenGL ES 2 context", es2, Verdict::Problem),
            FindingOf("OpenGL ES 1 context", es1, Verdict::Warning)};
}
}  // namespace doctor
