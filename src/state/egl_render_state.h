// Shadow of the application's EGL objects: what a snapshot needs before any GL call makes sense.
#pragma once
#include "state/trace_map.h"
#include "support/export.h"
#include <cstdint>

class NEBTRACE_API CEglRenderState
{
public:
    // An owned copy of an EGL attribute list, EGL_NONE included.
    struct NEBTRACE_API eglAttributeList
    {
        eglAttributeList() = default;
        explicit eglAttributeList(int const* list);
        eglAttributeList(eglAttributeList const& other) { *this = other; }
        eglAttributeList& operator=(eglAttributeList const& other);
        ~eglAttributeList() { delete[] data; }

        int* data = nullptr;
        unsigned int count = 0;  // in ints
    };

    struct eglConfigDefinition
    {
        void* config = nullptr;
        void* display = nullptr;
        eglAttributeList attributes;
    };

    struct eglContextDefinition
    {
        void* context = nullptr;
        void* display = nullptr;
        void* config = nullptr;  // a handle at creation, the config's ID after eglMakeCurrent
        void* shareContext = nullptr;
        eglAttributeList attributes;
        eglAttributeList configAttributes;
    };

    struct eglDisplayDefinition
    {
        void* display = nullptr;
        intptr_t nativeDisplay = 0;
        int swapInterval = 1;
        bool initialized = false;
    };

    struct eglWindowDefinition
    {
        void* surface = nullptr;
        void* display = nullptr;
        void* config = nullptr;
        void* window = nullptr;
        eglAttributeList attributes;
        eglAttributeList configAttributes;
        int height = 0;
        int width = 0;
    };

    // Asks the host what is current.
    void getRenderState();
    // Writes the state as calls, through the wrappers.
    void writeAsCalls();

    TraceMap<void*, eglConfigDefinition> m_sConfigs;
    TraceMap<void*, eglContextDefinition> m_sContexts;
    TraceMap<void*, eglDisplayDefinition> m_sDisplays;
    TraceMap<void*, eglWindowDefinition> m_sWindows;
    void* m_pCurrentContext = nullptr;
    void* m_pCurrentDisplay = nullptr;
    void* m_pCurrentDraw = nullptr;
    void* m_pCurrentRead = nullptr;
    void* m_pUnused = nullptr;
    int m_iClientVersion = 0;  // of the current context
};
