// What the EGL wrappers write into the live shadow as calls pass.
#pragma once
#include "api/types.h"

namespace Egl
{
namespace Track
{
void GetDisplay(void* display, intptr_t nativeDisplay);
void Initialize(void* display);
void SwapInterval(void* display, int interval);
void CreateContext(void* display, void* config, void* shareContext, int const* attributes,
                   int const* configAttributes, void* context);

struct SWindow
{
    void* surface;
    void* display;
    void* config;
    void* window;
    int const* attributes;
    int const* configAttributes;
    int width;
    int height;
};
void CreateWindowSurface(SWindow const& window);
void DestroySurface(void* surface);

// Stores the config's ID, which the host is asked for, and the host's current display under `context`.
void MakeCurrent(void* context);
// The config kept for a context: a handle or, after eglMakeCurrent, an ID. Adds an empty entry if it must.
void* ConfigOf(void* context);
}  // namespace Track
}  // namespace Egl
