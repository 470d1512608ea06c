// Records of contexts, and of the contexts that they share objects with.
#include "profiler/profiler_context.h"
#include "profiler/share_walk.h"

template <typename V>
static V* FindShared(CProfiler& profiler, CProfiler::SContext* context,
                     TraceMap<unsigned int, V> CProfiler::SContext::*records, unsigned int name,
                     CProfiler::SContext** owner)
{
    V* found = nullptr;
    VisitShared(profiler, context, [&](CProfiler::SContext& place) {
        found = (place.*records).Find(name);
        if (found && owner)
            *owner = &place;
        return found != nullptr;
    });
    return found;
}

CProfiler::SProgram* CProfiler::GetProgram(SContext* context, unsigned int name, SContext** owner)
{
    return FindShared(*this, context, &SContext::m_Programs, name, owner);
}

CProfiler::SShader* CProfiler::GetFragShader(SContext* context, unsigned int name, SContext** owner)
{
    return FindShared(*this, context, &SContext::m_Shaders, name, owner);
}

CProfiler::SFBO* CProfiler::GetFBO(SContext* context, unsigned int name, SContext** owner)
{
    return FindShared(*this, context, &SContext::m_FBOs, name, owner);
}

static bool HasTexture(CProfiler::SFBOAttachment const& attachment, unsigned int texture)
{
    for (int i = 0; i < attachment.Count(); ++i)
        if (attachment.ValueAt(i) == texture)
            return true;
    return false;
}

static bool HasTexture(CProfiler::SContext const& context, unsigned int texture)
{
    for (int i = 0; i < context.m_FBOs.Count(); ++i)
    {
        CProfiler::SFBO const& framebuffer = context.m_FBOs.ValueAt(i);
        for (int j = 0; j < framebuffer.Count(); ++j)
            if (HasTexture(framebuffer.ValueAt(j), texture))
                return true;
    }
    return false;
}

bool CProfiler::IsAttachment(SContext* context, unsigned int texture)
{
    bool found = false;
    VisitShared(*this, context, [&](SContext const& place) { return found = HasTexture(place, texture); });
    return found;
}
