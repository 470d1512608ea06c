// The EGL shadow: what a snapshot asks the host for, and how it is written as calls.
#include "core/trace_block.h"
#include "host/hosts.h"
#include "state/egl_render_state.h"
#include "wrappers/egl.h"

namespace
{

constexpr unsigned short kEglStateMarker = 2;

void WriteMarker() { CTraceBlock const marker(kEglStateMarker); }

void WriteDisplays(CEglRenderState& state)
{
    for (int slot = 0; slot < state.m_sDisplays.Count(); ++slot)
    {
        CEglRenderState::eglDisplayDefinition const& display = state.m_sDisplays.ValueAt(slot);
        Egl::_eglGetDisplay(display.nativeDisplay, display.display);
        if (display.initialized)
            Egl::_eglInitialize(display.display, nullptr, nullptr);
    }
}

void WriteWindows(CEglRenderState& state)
{
    for (int slot = 0; slot < state.m_sWindows.Count(); ++slot)
    {
        CEglRenderState::eglWindowDefinition const& window = state.m_sWindows.ValueAt(slot);
        Egl::_eglCreateWindowSurface(window.display, window.config, window.window, window.attributes.data,
                                     window.surface, window.configAttributes.data, window.width,
                                     window.height);
    }
}

// On purpose: destroyed ones as well, and with the config as the entry has it, a handle or an ID.
void WriteContexts(CEglRenderState& state)
{
    for (int slot = 0; slot < state.m_sContexts.Count(); ++slot)
    {
        CEglRenderState::eglContextDefinition const& context = state.m_sContexts.ValueAt(slot);
        Egl::_eglCreateContext(context.display, context.config, context.shareContext, context.attributes.data,
                               context.context, context.configAttributes.data);
    }
}

}  // namespace

void CEglRenderState::getRenderState()
{
    SEglHost* const host = EglHost();
    m_pCurrentContext = host->eglGetCurrentContext();
    m_pCurrentDisplay = host->eglGetCurrentDisplay();
    m_pCurrentRead = host->eglGetCurrentSurface(EGL_READ);
    m_pCurrentDraw = host->eglGetCurrentSurface(EGL_DRAW);
    host->eglQueryContext(m_pCurrentDisplay, m_pCurrentContext, EGL_CONTEXT_CLIENT_VERSION,
                          &m_iClientVersion);
}

void CEglRenderState::writeAsCalls()
{
    WriteMarker();
    WriteDisplays(*this);
    WriteWindows(*this);
    WriteContexts(*this);
    Egl::_eglMakeCurrent(m_pCurrentDisplay, m_pCurrentDraw, m_pCurrentRead, m_pCurrentContext);
    // The interval of this one display alone.
    void* const display = m_sContexts[m_pCurrentContext].display;
    Egl::_eglSwapInterval(display, m_sDisplays[display].swapInterval);
    WriteMarker();
}
