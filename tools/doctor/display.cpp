// What an application gets that asks EGL for its default display, and the window systems that the environment
// names.
#include "../aside.h"
#include "checks.h"
#include "player/window.h"
#include "probe.h"
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

namespace player = nebtrace::player;

namespace doctor
{
namespace
{
constexpr char kWithoutDisplay[] =
    "set EGL_PLATFORM=surfaceless for applications that need no window, or start "
    "them under xvfb-run";

constexpr char kNoWindows[] = "; neither DISPLAY nor WAYLAND_DISPLAY is set";

std::string Variable(char const* name)
{
    char const* const value = std::getenv(name);
    return value ? value : "";
}

Facts LookAtDefault(player::Driver const& driver)
{
    EGLint major = 0;
    EGLint minor = 0;
    EGLDisplay const display = driver.egl.eglGetDisplay(0);
    if (display == EGL_NO_DISPLAY || !driver.egl.eglInitialize(display, &major, &minor))
        return {{kFailure, "EGL's default display does not open (" + ErrorText(driver.egl) + ")"}};
    return {{"version", std::to_string(major) + "." + std::to_string(minor)}};
}

// Empty, or why there is no window on it.
std::string XFault()
{
    Aside const aside =
        RunAside([] { return std::string(player::WindowSystem::Open() ? "" : "it does not answer"); });
    return aside.fault.empty() ? aside.answer : aside.fault;
}

std::string WaylandFault(std::string const& name)
{
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    std::string const path = name[0] == '/' ? name : Variable("XDG_RUNTIME_DIR") + "/" + name;
    if (path.size() >= sizeof address.sun_path)
        return "its path is too long";
    std::memcpy(address.sun_path, path.c_str(), path.size() + 1);
    int const made = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    bool const connected =
        made >= 0 && connect(made, reinterpret_cast<sockaddr const*>(&address), sizeof address) == 0;
    std::string const fault = connected ? std::string() : path + ": " + std::strerror(errno);
    if (made >= 0)
        close(made);
    return fault;
}

Finding CheckWindowSystem(char const* variable, std::string const& value, std::string const& fault)
{
    Finding finding{variable, Verdict::Ok, value + " answers", {}, {{"value", value}}};
    if (fault.empty())
        return finding;
    finding.verdict = Verdict::Problem;
    finding.found = value + ": " + fault;
    finding.next = std::string("start that display, or unset ") + variable;
    return finding;
}

Finding CheckDefault(std::string const& platform, bool windows)
{
    Finding finding{"default display"};
    Facts const facts = Probe(LookAtDefault);
    if (!platform.empty())
        finding.details.emplace_back("platform", platform);
    std::string const by = platform.empty() ? std::string() : ", by EGL_PLATFORM=" + platform;
    if (facts.count(kFailure) == 0)
    {
        finding.found = "opens" + by + ", EGL " + facts.at("version") + (windows ? "" : kNoWindows);
        finding.details.emplace_back("version", facts.at("version"));
        return finding;
    }
    finding.verdict = platform.empty() && !windows ? Verdict::Warning : Verdict::Problem;
    finding.found = facts.at(kFailure) + by + (windows ? "" : kNoWindows);
    finding.next = kWithoutDisplay;
    return finding;
}
}  // namespace

Findings CheckDisplay()
{
    Findings findings;
    std::string const x = Variable("DISPLAY");
    std::string const wayland = Variable("WAYLAND_DISPLAY");
    if (!x.empty())
        findings.push_back(CheckWindowSystem("DISPLAY", x, XFault()));
    if (!wayland.empty())
        findings.push_back(CheckWindowSystem("WAYLAND_DISPLAY", wayland, WaylandFault(wayland)));
    if (!FrontEndsAreOnPath())
        findings.push_back(CheckDefault(Variable("EGL_PLATFORM"), !x.empty() || !wayland.empty()));
    return findings;
}
}  // namespace doctor
