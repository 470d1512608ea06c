#include "player/window.h"
#include <X11/Xlib.h>
#include <X11/Xutil.h>
#include <dlfcn.h>

namespace nebtrace::player
{
struct WindowSystem::Library
{
    Display* display = nullptr;
    decltype(&XOpenDisplay) openDisplay = nullptr;
    decltype(&XCloseDisplay) closeDisplay = nullptr;
    decltype(&XGetVisualInfo) getVisualInfo = nullptr;
    decltype(&XFree) free = nullptr;
    decltype(&XCreateColormap) createColormap = nullptr;
    decltype(&XCreateWindow) createWindow = nullptr;
    decltype(&XStoreName) storeName = nullptr;
    decltype(&XMapWindow) mapWindow = nullptr;
    decltype(&XSync) sync = nullptr;

    template <typename Function>
    static bool Find(void* library, char const* name, Function& function)
    {
        function = reinterpret_cast<Function>(dlsym(library, name));
        return function != nullptr;
    }

    bool Load()
    {
        void* const library = dlopen("libX11.so.6", RTLD_NOW | RTLD_LOCAL);
        return library && Find(library, "XOpenDisplay", openDisplay) &&
               Find(library, "XCloseDisplay", closeDisplay) &&
               Find(library, "XGetVisualInfo", getVisualInfo) && Find(library, "XFree", free) &&
               Find(library, "XCreateColormap", createColormap) &&
               Find(library, "XCreateWindow", createWindow) && Find(library, "XStoreName", storeName) &&
               Find(library, "XMapWindow", mapWindow) && Find(library, "XSync", sync);
    }
};

WindowSystem::WindowSystem(std::unique_ptr<Library> library) : m_library(std::move(library)) {}

// The windows go with the connection.
WindowSystem::~WindowSystem() { m_library->closeDisplay(m_library->display); }

std::unique_ptr<WindowSystem> WindowSystem::Open()
{
    auto library = std::make_unique<Library>();
    if (!library->Load())
        return nullptr;
    library->display = library->openDisplay(nullptr);
    if (!library->display)
        return nullptr;
    return std::unique_ptr<WindowSystem>(new WindowSystem(std::move(library)));
}

void* WindowSystem::NativeDisplay() const { return m_library->display; }

void* WindowSystem::MakeWindow(int width, int height, unsigned long visual)
{
    Display* const display = m_library->display;
    XVisualInfo wanted{};
    wanted.visualid = visual;
    int count = 0;
    XVisualInfo* const found = m_library->getVisualInfo(display, VisualIDMask, &wanted, &count);
    if (!found)
        return nullptr;
    Window const root = RootWindow(display, found->screen);
    XSetWindowAttributes attributes{};
    attributes.colormap = m_library->createColormap(display, root, found->visual, AllocNone);
    Window const window = m_library->createWindow(display, root, 0, 0, static_cast<unsigned>(width),
                                                  static_cast<unsigned>(height), 0, found->depth, InputOutput,
                                                  found->visual, CWColormap | CWBorderPixel, &attributes);
    m_library->free(found);
    m_library->storeName(display, window, "nebtrace replay");
    m_library->mapWindow(display, window);
    m_library->sync(display, False);
    return reinterpret_cast<void*>(window);
}
}  // namespace nebtrace::player
