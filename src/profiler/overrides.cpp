// The overrides around a draw: what the switches say is set ahead of it, and the application's state is back
// behind it. The calls go straight to the host and are neither recorded nor counted; an error of theirs is
// found by the next question for one, which is the draw's own for those ahead of it.
#include "api/es1_enums.h"
#include "host/hosts.h"
#include "profiler/override_columns.h"
#include "profiler/overrides_textures.h"
#include "profiler/profiler_mutex.h"

namespace
{

using SContext = CProfiler::SContext;
using SEnables = CProfiler::SEnables;
using SProgram = CProfiler::SProgram;

// A capability that is off while a draw runs.
struct SDisable
{
    bool const* pSwitch;
    bool SEnables::*bEnabled;
    GLenum capability;
};

// In their order.
SDisable const kDisables[] = {
    {&CProfiler::m_DisableBlending, &SEnables::bBlend, GL_BLEND},
    {&CProfiler::m_DisableStencilTest, &SEnables::bStencil, GL_STENCIL_TEST},
    {&CProfiler::m_DisableDepthTest, &SEnables::bDepth, GL_DEPTH_TEST},
    {&CProfiler::m_DisableScissorTest, &SEnables::bScissor, GL_SCISSOR_TEST},
};

// GLES1's form of a draw without discard.
SDisable const kDisableAlphaTest = {&CProfiler::m_DisableAlphaTest, &SEnables::bAlphaTest,
                                    Es1Enum::kAlphaTest};

template <typename Column>
void Disable(Column const& column, SDisable const& disable)
{
    if (column.Enables().*disable.bEnabled)
        column.host.glDisable(disable.capability);
}

template <typename Column>
void EnableAgain(Column const& column, SDisable const& disable)
{
    if (column.Enables().*disable.bEnabled)
        column.host.glEnable(disable.capability);
}

template <typename Column>
void ForceZeroViewport(Column const& column)
{
    // Asked for at each draw, since it is followed nowhere.
    column.host.glGetIntegerv(GL_VIEWPORT, column.Viewport());
    column.host.glViewport(0, 0, 0, 0);
}

template <typename Column>
void RestoreViewport(Column const& column)
{
    int32_t const(&viewport)[4] = column.Viewport();
    column.host.glViewport(viewport[0], viewport[1], viewport[2], viewport[3]);
}

template <typename Column>
void ForceCulledFace(Column const& column, GLenum face)
{
    if (!column.Enables().bCull)
        column.host.glEnable(GL_CULL_FACE);
    column.host.glCullFace(face);
}

template <typename Column>
void ForceCulling(Column const& column)
{
    switch (CProfiler::m_CullingModeSelection)
    {
    case CProfiler::eCullNone:
        if (column.Enables().bCull)
            column.host.glDisable(GL_CULL_FACE);
        break;
    case CProfiler::eCullBack:
        ForceCulledFace(column, GL_BACK);
        break;
    case CProfiler::eCullFront:
        ForceCulledFace(column, GL_FRONT);
        break;
    default:
        break;
    }
}

template <typename Column>
void RestoreCulling(Column const& column)
{
    switch (CProfiler::m_CullingModeSelection)
    {
    case CProfiler::eCullNone:
        if (column.Enables().bCull)
            column.host.glEnable(GL_CULL_FACE);
        break;
    case CProfiler::eCullBack:
    case CProfiler::eCullFront:
        if (!column.Enables().bCull)
            column.host.glDisable(GL_CULL_FACE);
        column.host.glCullFace(column.CullFace());
        break;
    default:
        break;
    }
}

// A program that has no alternates draws as it is.
void UseAlternate(CProfiler& profiler, SContext& context, uint32_t SProgram::*alternate)
{
    SEs2Host* const host = LiveEs2Host();
    if (!host)
        return;
    if (SProgram const* const program = profiler.GetProgram(&context, context.currentProgram, nullptr))
        host->glUseProgram(program->*alternate);
}

}  // namespace

void CProfiler::PreDrawCall()
{
    CLastingLock const lock(ProfilerMutex());
    if (HasEnded())
        return;
    SContext* const context = CurrentContext();
    if (!context)
        return;
    if (IsOn(m_ForceViewport))
        InBothApis(*context, [](auto const& column) { ForceZeroViewport(column); });
    for (SDisable const& disable : kDisables)
        if (IsOn(*disable.pSwitch))
            InBothApis(*context, [&](auto const& column) { Disable(column, disable); });
    if (m_CullingModeSelection != eCullAppDefined)
        InBothApis(*context, [](auto const& column) { ForceCulling(column); });
    if (IsOn(m_Force2x2Textures))
        BindPrivateTextures(*context);
    if (IsOn(m_DisableTextureFiltering))
        SetNearestFilters(*this, *context);
    if (IsOn(m_DisableAlphaTest))
    {
        UseAlternate(*this, *context, &SProgram::noDiscardProgram);
        if (SEs1Host* const host = LiveEs1Host())
            Disable(SEs1Column{*host, *context}, kDisableAlphaTest);
    }
    // Behind the one above, and so it wins.
    if (IsOn(m_ForceFlatColourFrag))
        UseAlternate(*this, *context, &SProgram::flatProgram);
}

// On purpose: in the order of PreDrawCall, not the other way round. No two steps set the same state but the
// two of programs, which are undone as one.
void CProfiler::PostDrawCall()
{
    CLastingLock const lock(ProfilerMutex());
    if (HasEnded())
        return;
    SContext* const context = CurrentContext();
    if (!context)
        return;
    if (IsOn(m_ForceViewport))
        InBothApis(*context, [](auto const& column) { RestoreViewport(column); });
    for (SDisable const& disable : kDisables)
        if (IsOn(*disable.pSwitch))
            InBothApis(*context, [&](auto const& column) { EnableAgain(column, disable); });
    if (m_CullingModeSelection != eCullAppDefined)
        InBothApis(*context, [](auto const& column) { RestoreCulling(column); });
    if (IsOn(m_Force2x2Textures))
        RestoreTextures(*context);
    if (IsOn(m_DisableTextureFiltering))
        RestoreFilters(*context);
    if (IsOn(m_DisableAlphaTest))
        if (SEs1Host* const host = LiveEs1Host())
            EnableAgain(SEs1Column{*host, *context}, kDisableAlphaTest);
    // On purpose: whether an alternate was found or not.
    if (IsOn(m_ForceFlatColourFrag) || IsOn(m_DisableAlphaTest))
        if (SEs2Host* const host = LiveEs2Host())
            host->glUseProgram(context->currentProgram);
}
