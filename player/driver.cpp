#include "player/driver.h"
#include <dlfcn.h>
#include <type_traits>

namespace nebtrace::player
{
namespace
{
// Libraries stay open: drivers do not survive being closed and opened again.
void* OpenLibrary(char const* soname, char const* package, std::string& error)
{
    void* const library = dlopen(soname, RTLD_NOW | RTLD_LOCAL);
    if (!library)
        error = std::string(dlerror()) + "; install " + package + " (so Debian calls the package)";
    return library;
}

class Lookup
{
public:
    Lookup(void* library, EglFunctions const& egl) : m_library(library), m_egl(egl) {}

    // Core functions are exported; extensions are known to eglGetProcAddress alone.
    template <typename Function>
    void Find(char const* name, Function& function)
    {
        void* found = dlsym(m_library, name);
        if (!found && m_egl.eglGetProcAddress)
            found = reinterpret_cast<void*>(m_egl.eglGetProcAddress(name));
        function = reinterpret_cast<Function>(found);
    }

private:
    void* m_library;
    EglFunctions const& m_egl;
};

void FindAll(void* library, EglFunctions& egl)
{
    Lookup lookup(library, egl);
    // First, because it finds the others.
    lookup.Find("eglGetProcAddress", egl.eglGetProcAddress);
#define EGL(id, kind, fallback, result, name, parameters, arguments) lookup.Find(#name, egl.name);
#define EGL_REPLAYED(id, kind, fallback, result, name, parameters, arguments, wrapperParameters)             \
    lookup.Find(#name, egl.name);
#include "api/egl.def"
    lookup.Find("eglGetPlatformDisplayEXT", egl.eglGetPlatformDisplayEXT);
}

// Framebuffer objects are an extension in OpenGL ES 1, with names of their own.
void ShareFramebuffers(Es1Functions const& es1, GlFunctions& shared)
{
    shared.glGenFramebuffers = es1.glGenFramebuffersOES;
    shared.glDeleteFramebuffers = es1.glDeleteFramebuffersOES;
    shared.glGenRenderbuffers = es1.glGenRenderbuffersOES;
    shared.glDeleteRenderbuffers = es1.glDeleteRenderbuffersOES;
}

void FindAll(void* library, EglFunctions const& egl, Es1Functions& es1)
{
    Lookup lookup(library, egl);
#define ES1(id, kind, fallback, result, name, parameters, arguments) lookup.Find(#name, es1.name);
#include "api/es1.def"
}

template <typename Copy>
void CopyIfBothHaveIt(Copy const& copy, Es1Functions const& from, GlFunctions& to)
{
    if constexpr (std::is_invocable_v<Copy, Es1Functions const&, GlFunctions&>)
        copy(from, to);
}

void ShareAll(Es1Functions const& es1, GlFunctions& shared)
{
#define ES1(id, kind, fallback, result, name, parameters, arguments)                                         \
    CopyIfBothHaveIt(                                                                                        \
        [](auto const& from, auto& to) -> decltype(void(to.name = from.name)) { to.name = from.name; }, es1, \
        shared);
#include "api/es1.def"
    ShareFramebuffers(es1, shared);
}

void FindAll(void* library, EglFunctions const& egl, GlFunctions& es2)
{
    Lookup lookup(library, egl);
#define ES2(id, kind, fallback, result, name, parameters, arguments) lookup.Find(#name, es2.name);
#define ES2_REPLAYED(id, kind, fallback, result, name, parameters, arguments, wrapperParameters)             \
    lookup.Find(#name, es2.name);
#include "api/es2.def"
}
}  // namespace

std::unique_ptr<Driver> Driver::Open(std::string& error)
{
    void* const egl = OpenLibrary("libEGL.so.1", "libegl1", error);
    void* const es2 = egl ? OpenLibrary("libGLESv2.so.2", "libgles2", error) : nullptr;
    if (!es2)
        return nullptr;
    auto driver = std::make_unique<Driver>();
    FindAll(egl, driver->egl);
    FindAll(es2, driver->egl, driver->es2);
    std::string noEs1;
    if (void* const es1 = OpenLibrary("libGLESv1_CM.so.1", "libgles1", noEs1))
        FindAll(es1, driver->egl, driver->es1);
    ShareAll(driver->es1, driver->sharedEs1);
    if (!driver->egl.eglGetProcAddress || !driver->egl.eglMakeCurrent)
        error = "libEGL.so.1 is no EGL library";
    else if (!driver->es2.glDrawElements || !driver->es2.glReadPixels)
        error = "libGLESv2.so.2 is no OpenGL ES 2 library";
    else
        return driver;
    return nullptr;
}
}  // namespace nebtrace::player
