#include "wrappers/egl/track.h"
#include "host/hosts.h"
#include "wrappers/live_state.h"

using AttributeList = CEglRenderState::eglAttributeList;

static void TrackConfig(CEglRenderState& state, void* display, void* config, int const* attributes)
{
    state.m_sDisplays[display].display = display;
    CEglRenderState::eglConfigDefinition& entry = state.m_sConfigs[config];
    entry.config = config;
    entry.display = display;
    entry.attributes = AttributeList(attributes);
}

void Egl::Track::GetDisplay(void* display, intptr_t nativeDisplay)
{
    CEglRenderState::eglDisplayDefinition& entry = LiveEglState().m_sDisplays[display];
    entry.display = display;
    entry.nativeDisplay = nativeDisplay;
}

void Egl::Track::Initialize(void* display)
{
    CEglRenderState::eglDisplayDefinition& entry = LiveEglState().m_sDisplays[display];
    entry.display = display;
    entry.initialized = true;
}

void Egl::Track::SwapInterval(void* display, int interval)
{
    LiveEglState().m_sDisplays[display].swapInterval = interval;
}

void Egl::Track::CreateContext(void* display, void* config, void* shareContext, int const* attributes,
                               int const* configAttributes, void* context)
{
    TrackConfig(LiveEglState(), display, config, configAttributes);
    CEglRenderState::eglContextDefinition& entry = LiveEglState().m_sContexts[context];
    entry.context = context;
    entry.display = display;
    entry.config = config;
    entry.shareContext = shareContext;
    entry.attributes = AttributeList(attributes);
    entry.configAttributes = AttributeList(configAttributes);
}

void Egl::Track::CreateWindowSurface(SWindow const& window)
{
    TrackConfig(LiveEglState(), window.display, window.config, window.configAttributes);
    CEglRenderState::eglWindowDefinition& entry = LiveEglState().m_sWindows[window.surface];
    entry.surface = window.surface;
    entry.display = window.display;
    entry.config = window.config;
    entry.window = window.window;
    entry.attributes = AttributeList(window.attributes);
    entry.configAttributes = AttributeList(window.configAttributes);
    entry.height = window.height;
    entry.width = window.width;
}

void Egl::Track::DestroySurface(void* surface) { LiveEglState().m_sWindows.removeElement(surface); }

void Egl::Track::MakeCurrent(void* context)
{
    SEglHost* const host = EglHost();
    void* const current = host->eglGetCurrentContext();
    void* const display = host->eglGetCurrentDisplay();
    EGLint configId = 5;  // stays when the host does not answer
    host->eglQueryContext(display, current, EGL_CONFIG_ID, &configId);
    CEglRenderState::eglContextDefinition& entry = LiveEglState().m_sContexts[context];
    entry.config = reinterpret_cast<void*>(static_cast<intptr_t>(configId));
    entry.display = display;
}

void* Egl::Track::ConfigOf(void* context) { return LiveEglState().m_sContexts[context].config; }
