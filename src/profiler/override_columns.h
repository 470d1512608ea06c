// What is kept of a context stands there twice, for GLES2 and for GLES1. Each override is written once, over
// either of these.
#pragma once
#include "profiler/live_hosts.h"
#include "profiler/profiler_context.h"

struct SEs2Column
{
    static constexpr int kSlots = CProfiler::SContext::eUsedSlots;

    SEs2Host& host;
    CProfiler::SContext& context;

    int32_t (&Viewport() const)[4] { return context.viewport; }
    CProfiler::SEnables const& Enables() const { return context.enables; }
    GLenum CullFace() const { return context.cullFace; }
    int32_t ActiveTexture() const { return context.activeTexture; }
    CProfiler::STextureBinding const& Binding(int unit, int slot) const
    {
        return context.textures[unit][slot];
    }
    uint32_t& PrivateTexture(int slot) const
    {
        return slot == CProfiler::SContext::eSlotCube ? context.texCube2x2Es2 : context.tex2x2Es2;
    }
};

struct SEs1Column
{
    static constexpr int kSlots = 1;  // there are no cube maps

    SEs1Host& host;
    CProfiler::SContext& context;

    int32_t (&Viewport() const)[4] { return context.viewportEs1; }
    CProfiler::SEnables const& Enables() const { return context.enablesEs1; }
    GLenum CullFace() const { return context.cullFaceEs1; }
    int32_t ActiveTexture() const { return context.activeTextureEs1; }
    CProfiler::STextureBinding const& Binding(int unit, int /*slot*/) const
    {
        return context.texturesEs1[unit];
    }
    uint32_t& PrivateTexture(int /*slot*/) const { return context.tex2x2Es1; }
};

// On purpose: GLES2's and then GLES1's, whichever of them the context is of. Both run in a process that has
// both tables.
template <typename Apply>
void InBothApis(CProfiler::SContext& context, Apply const& apply)
{
    if (SEs2Host* const host = LiveEs2Host())
        apply(SEs2Column{*host, context});
    if (SEs1Host* const host = LiveEs1Host())
        apply(SEs1Column{*host, context});
}
