// The EGL side of a replay: one display of the machine's own, and the configs, surfaces and contexts on it.
#pragma once
#include "player/driver.h"
#include "player/state.h"
#include "player/survey.h"
#include "player/window.h"
#include <map>
#include <memory>
#include <vector>

namespace nebtrace::player
{
class Device
{
public:
    // With `window` the surfaces of windows are shown on the X display, else all are pbuffers.
    // `version`: of OpenGL ES, that surfaces are for.
    Device(Driver const& driver, bool window, int version);
    ~Device();
    Device(Device const&) = delete;
    Device& operator=(Device const&) = delete;

    // Throw DriverFailure.
    // Makes the driver's context, unless it is there. A context must fit the surfaces that it draws on.
    void Realize(Context& context);
    std::shared_ptr<Surface> MakePbuffer(Attributes const& config, Attributes attributes, Size size);
    // A pbuffer too, unless windows are shown.
    std::shared_ptr<Surface> MakeWindow(Attributes const& config, Size size);

    void MakeCurrent(Surface const* draw, Surface const* read, Context const* context);
    void Swap(Surface const& surface) const;

    EGLDisplay Display() const { return m_display; }

private:
    EGLDisplay OpenDisplay();
    EGLConfig FindConfig(Attributes const& wanted, EGLint surfaceBit, int version) const;
    EGLint Distance(EGLConfig config, Attributes const& wanted) const;
    EGLint ConfigAttribute(EGLConfig config, EGLint attribute) const;
    [[noreturn]] void Fail(std::string const& what) const;

    EglFunctions const& m_egl;
    std::unique_ptr<WindowSystem> m_windows;
    int m_version;
    EGLDisplay m_display = EGL_NO_DISPLAY;
    std::vector<EGLConfig> m_configs;
    // Everything that was made, destroyed at the end: what a recording destroys can still be current.
    std::vector<EGLContext> m_contexts;
    std::vector<EGLSurface> m_surfaces;
};
}  // namespace nebtrace::player
