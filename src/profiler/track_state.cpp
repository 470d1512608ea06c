// The state that overrides need, kept from the calls that change it: contexts and capabilities, and the way
// to the other families.
#include "api/es1_enums.h"
#include "profiler/call_arguments.h"
#include "profiler/profiler_context.h"
#include "profiler/profiler_mutex.h"
#include "wrappers/calls.h"

void CProfiler::TrackState(int id, void const* const* args, void* result)
{
    CLastingLock const lock(ProfilerMutex());
    if (HasEnded())
        return;
    TrackEgl(id, args, result);
    SContext* const context = CurrentContext();
    if (!context)
        return;
    TrackEnables(*context, id, args);
    TrackTextures(*context, id, args);
    TrackFramebuffers(*context, id, args);
    TrackShaders(*context, id, args);
    TrackPrograms(*context, id, args, result);
    TrackUniforms(*context, id, args);
}

namespace
{

void CreateContext(CProfiler& profiler, EGLContext shareContext, EGLContext const* created)
{
    if (!created || !*created)
        return;
    CProfiler::SContext& context = profiler.m_Contexts[*created];
    context = CProfiler::SContext();
    context.shareContext = shareContext;
}

// On purpose: the key is what the host returned, EGL_TRUE, and not the context, so that records stay until
// eglTerminate: contexts that share with a destroyed one still find its programs.
void DestroyContext(CProfiler& profiler, EGLBoolean const* destroyed)
{
    if (destroyed && *destroyed)
        profiler.m_Contexts.removeElement(reinterpret_cast<void*>(static_cast<uintptr_t>(*destroyed)));
}

// On purpose: those of all displays. The current context stays named, so that a new one of its handle is
// followed before it is made current. The map keeps its capacity.
void ForgetContexts(CProfiler& profiler)
{
    while (int const count = profiler.m_Contexts.Count())
        profiler.m_Contexts.removeElement(profiler.m_Contexts.KeyAt(count - 1));
}

// Null for what no override touches.
bool* EnableOf(CProfiler::SEnables& enables, GLenum capability)
{
    switch (capability)
    {
    case GL_BLEND:
        return &enables.bBlend;
    case GL_SCISSOR_TEST:
        return &enables.bScissor;
    case GL_STENCIL_TEST:
        return &enables.bStencil;
    case GL_DEPTH_TEST:
        return &enables.bDepth;
    case GL_CULL_FACE:
        return &enables.bCull;
    default:
        return nullptr;
    }
}

bool* EnableOfEs1(CProfiler::SEnables& enables, GLenum capability)
{
    switch (capability)
    {
    case Es1Enum::kAlphaTest:
        return &enables.bAlphaTest;
    case GL_TEXTURE_2D:
        return &enables.bTexture2D;
    default:
        return EnableOf(enables, capability);
    }
}

void Set(bool* enable, bool on)
{
    if (enable)
        *enable = on;
}

// On purpose: the test is a signed one, so that what lies below GL_TEXTURE0 is stored as well.
void SetActiveTexture(int32_t& active, GLenum texture)
{
    auto const unit = static_cast<int32_t>(texture - GL_TEXTURE0);
    if (unit < CProfiler::SContext::kUnits)
        active = unit;
}

}  // namespace

// On purpose: with no context current, contexts are only made and made current.
void CProfiler::TrackEgl(int id, void const* const* args, void const* result)
{
    switch (id)
    {
    case Egl::Calls::eglCreateContext.id:
        CreateContext(*this, CallArgument<EGLContext>(args, 3), static_cast<EGLContext const*>(result));
        break;
    case Egl::Calls::eglMakeCurrent.id:
        m_pCurrentContext = CallArgument<EGLContext>(args, 4);
        break;
    case Egl::Calls::eglDestroyContext.id:
        if (CurrentContext())
            DestroyContext(*this, static_cast<EGLBoolean const*>(result));
        break;
    case Egl::Calls::eglTerminate.id:
        if (CurrentContext())
            ForgetContexts(*this);
        break;
    case Egl::Calls::eglSwapInterval.id:
        if (CurrentContext())
            m_swapInterval = CallArgument<EGLint>(args, 2);
        break;
    default:
        break;
    }
}

void CProfiler::TrackEnables(SContext& context, int id, void const* const* args)
{
    switch (id)
    {
    case Es2::Calls::glEnable.id:
    case Es2::Calls::glDisable.id:
        Set(EnableOf(context.enables, CallArgument<GLenum>(args, 1)), id == Es2::Calls::glEnable.id);
        break;
    case Es1::Calls::glEnable.id:
    case Es1::Calls::glDisable.id:
        Set(EnableOfEs1(context.enablesEs1, CallArgument<GLenum>(args, 1)), id == Es1::Calls::glEnable.id);
        break;
    case Es2::Calls::glCullFace.id:
        context.cullFace = CallArgument<GLenum>(args, 1);
        break;
    case Es1::Calls::glCullFace.id:
        context.cullFaceEs1 = CallArgument<GLenum>(args, 1);
        break;
    case Es2::Calls::glActiveTexture.id:
        SetActiveTexture(context.activeTexture, CallArgument<GLenum>(args, 1));
        break;
    case Es1::Calls::glActiveTexture.id:
        SetActiveTexture(context.activeTextureEs1, CallArgument<GLenum>(args, 1));
        break;
    default:
        break;
    }
}
