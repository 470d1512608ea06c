#include "wrappers/egl/track.h"
#include "core/trace_record_manager.h"
#include "host/hosts.h"

using AttributeList = CEglRenderState::eglAttributeList;

// The live shadow; null once the library has been closed, when calls can still arrive.
static CEglRenderState* Live() { return CTraceRecordManager::m_EglFileState; }

static void TrackConfig(CEglRenderState& state, void* display, void* config, int const* attributes)
{
    state.m_sDisplays[display].display = display;
    CEglRenderState::eglConfigDefinition& entry = state.m_sConfigs[config];
    entry.config = config;
    entry.display = display;
    entry.attributes = AttributeList(attributes);
}

void Track::GetDisplay(void* display, intptr_t nativeDisplay)
{
    if (!Live())
        return;
    CEglRenderState::eglDisplayDefinition& entry = Live()->m_sDisplays[display];
    entry.display = display;
    entry.nativeDisplay = nativeDisplay;
}

void Track::Initialize(void* display)
{
    if (!Live())
        return;
    CEglRenderState::eglDisplayDefinition& entry = Live()->m_sDisplays[display];
    entry.display = display;
    entry.initialized = true;
}

void Track::SwapInterval(void* display, int interval)
{
    if (Live())
        Live()->m_sDisplays[display].swapInterval = interval;
}

void Track::CreateContext(void* display, void* config, void* shareContext, int const* attributes,
                          int const* configAttributes, void* context)
{
    if (!Live())
        return;
    TrackConfig(*Live(), display, config, configAttributes);
    CEglRenderState::eglContextDefinition& entry = Live()->m_sContexts[context];
    entry.context = context;
    entry.display = display;
    entry.config = config;
    entry.shareContext = shareContext;
    entry.attributes = AttributeList(attributes);
    entry.configAttributes = AttributeList(configAttributes);
}

void Track::CreateWindowSurface(SWindow const& window)
{
    if (!Live())
        return;
    TrackConfig(*Live(), window.display, window.config, window.configAttributes);
    CEglRenderState::eglWindowDefinition& entry = Live()->m_sWindows[window.surface];
    entry.surface = window.surface;
    entry.display = window.display;
    entry.config = window.config;
    entry.window = window.window;
    entry.attributes = AttributeList(window.attributes);
    entry.configAttributes = AttributeList(window.configAttributes);
    entry.height = window.height;
    entry.width = window.width;
}

void Track::DestroySurface(void* surface)
{
    if (Live())
        Live()->m_sWindows.removeElement(surface);
}

void Track::MakeCurrent(void* context)
{
    if (!Live())
        return;
    SEglHost* const host = EglHost();
    void* const current = host->eglGetCurrentContext();
    void* const display = host->eglGetCurrentDisplay();
    EGLint configId = 5;  // stays when the host does not answer
    host->eglQueryContext(display, current, EGL_CONFIG_ID, &configId);
    CEglRenderState::eglContextDefinition& entry = Live()->m_sContexts[context];
    entry.config = reinterpret_cast<void*>(static_cast<intptr_t>(configId));
    entry.display = display;
}

void* Track::ConfigOf(void* context) { return Live() ? Live()->m_sContexts[context].config : nullptr; }
