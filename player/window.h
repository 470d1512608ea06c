// X11 windows, through a libX11 that is opened at run time: a replay without a window needs none.
#pragma once
#include <memory>

namespace nebtrace::player
{
class WindowSystem
{
public:
    // Null where there is no libX11 or no display.
    static std::unique_ptr<WindowSystem> Open();
    ~WindowSystem();
    WindowSystem(WindowSystem const&) = delete;
    WindowSystem& operator=(WindowSystem const&) = delete;

    void* NativeDisplay() const;
    // Shows it and waits until the server has it; null if there is no such visual.
    void* MakeWindow(int width, int height, unsigned long visual);

private:
    struct Library;
    explicit WindowSystem(std::unique_ptr<Library> library);

    std::unique_ptr<Library> m_library;
};
}  // namespace nebtrace::player
