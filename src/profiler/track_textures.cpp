// Bound textures, and what framebuffers have attached.
#include "profiler/call_arguments.h"
#include "profiler/live_hosts.h"
#include "profiler/profiler_context.h"
#include "profiler/share_walk.h"
#include "wrappers/calls.h"
#include <limits>

namespace
{

using SContext = CProfiler::SContext;
using SBinding = CProfiler::STextureBinding;

// The active unit's record of the target that is the call's first argument. Null where there is none: a
// driver with more units, or one that takes any number, may have another one active than we keep.
SBinding* Slot(SContext& context, void const* const* args)
{
    if (!SContext::IsUnit(context.activeTexture))
        return nullptr;
    SBinding* const unit = context.textures[context.activeTexture];
    switch (CallArgument<GLenum>(args, 1))
    {
    case GL_TEXTURE_2D:
        return &unit[SContext::eSlot2D];
    case GL_TEXTURE_CUBE_MAP:
        return &unit[SContext::eSlotCube];
    default:
        return nullptr;
    }
}

SBinding* SlotEs1(SContext& context, void const* const* args)
{
    if (!SContext::IsUnit(context.activeTextureEs1) || CallArgument<GLenum>(args, 1) != GL_TEXTURE_2D)
        return nullptr;
    return &context.texturesEs1[context.activeTextureEs1];
}

template <typename Host>
void ReadFilter(Host* host, GLenum target, GLenum pname, uint32_t& filter)
{
    auto value = static_cast<GLint>(filter);
    host->glGetTexParameteriv(target, pname, &value);
    filter = static_cast<uint32_t>(value);
}

template <typename Host>
void Bind(CProfiler& profiler, SContext& context, Host* host, SBinding* slot, void const* const* args)
{
    if (!slot)
        return;
    auto const target = CallArgument<GLenum>(args, 1);
    slot->name = CallArgument<GLuint>(args, 2);
    ReadFilter(host, target, GL_TEXTURE_MIN_FILTER, slot->minFilter);
    ReadFilter(host, target, GL_TEXTURE_MAG_FILTER, slot->magFilter);
    slot->bIsAttachment = profiler.IsAttachment(&context, slot->name);
}

void StoreFilter(SBinding* slot, void const* const* args, uint32_t filter)
{
    if (!slot)
        return;
    auto const pname = CallArgument<GLenum>(args, 2);
    if (pname == GL_TEXTURE_MIN_FILTER)
        slot->minFilter = filter;
    else if (pname == GL_TEXTURE_MAG_FILTER)
        slot->magFilter = filter;
}

uint32_t IntegerFilter(void const* const* args)
{
    return static_cast<uint32_t>(CallArgument<GLint>(args, 3));
}

// What does not fit becomes what is nearest: a conversion is undefined for it.
uint32_t FloatFilter(void const* const* args)
{
    constexpr float kTooMuch = 4294967296.0f;
    auto const value = CallArgument<GLfloat>(args, 3);
    if (!(value > 0))
        return 0;
    return value < kTooMuch ? static_cast<uint32_t>(value) : std::numeric_limits<uint32_t>::max();
}

// Each binding of a listed name, of the `count` that begin with the first, is cleared.
void ClearBindings(SBinding* first, int count, void const* const* args)
{
    auto const listed = CallArgument<GLsizei>(args, 1);
    auto const* const names = CallArgument<GLuint const*>(args, 2);
    if (!names)
        return;
    for (GLsizei i = 0; i < listed; ++i)
        for (int slot = 0; slot < count; ++slot)
            if (first[slot].name == names[i])
                first[slot].name = 0;
}

// On purpose: nothing is cleared unless the unit has a texture on both targets.
void Delete(SContext& context, void const* const* args)
{
    if (!SContext::IsUnit(context.activeTexture))
        return;
    SBinding* const unit = context.textures[context.activeTexture];
    if (unit[SContext::eSlot2D].name != 0 && unit[SContext::eSlotCube].name != 0)
        ClearBindings(unit, SContext::eUsedSlots, args);
}

void DeleteEs1(SContext& context, void const* const* args)
{
    if (!SContext::IsUnit(context.activeTextureEs1))
        return;
    SBinding& binding = context.texturesEs1[context.activeTextureEs1];
    if (binding.name != 0)
        ClearBindings(&binding, 1, args);
}

void BindFramebuffer(CProfiler& profiler, SContext& context, uint32_t& current, void const* const* args)
{
    if (CallArgument<GLenum>(args, 1) != GL_FRAMEBUFFER)
        return;
    auto const name = CallArgument<GLuint>(args, 2);
    if (name != 0 && !profiler.GetFBO(&context, name, nullptr))
        context.m_FBOs[name] = CProfiler::SFBO();
    current = name;
    profiler.TidyupDeadFBOAttachments(&context);
}

GLuint AttachedTexture(void const* const* args) { return CallArgument<GLuint>(args, 4); }

void Attach(CProfiler& profiler, SContext& context, uint32_t framebuffer, void const* const* args)
{
    if (CProfiler::SFBO* const attachments = profiler.GetFBO(&context, framebuffer, nullptr))
        (*attachments)[CallArgument<GLenum>(args, 2)][CallArgument<GLenum>(args, 3)] = AttachedTexture(args);
}

void MarkAttachment(CProfiler& profiler, SContext& context, SBinding& binding, GLuint attached)
{
    if (binding.name != 0)
        binding.bIsAttachment = binding.name == attached || profiler.IsAttachment(&context, binding.name);
}

// On purpose: the question is whether there is a texture of the truth value that the name is 0, so that only
// an entry without a texture goes, and only while there is a texture 1. What was once attached stays one.
bool IsDead(GLuint texture)
{
    GLuint const asked = texture == 0;
    SEs2Host const* const es2 = LiveEs2Host();
    if (es2 && es2->glIsTexture(asked))
        return true;
    SEs1Host const* const es1 = LiveEs1Host();
    return es1 && es1->glIsTexture(asked);
}

// On purpose: the entry that takes an erased one's place is left for the next time.
void EraseDead(CProfiler::SFBOAttachment& textures)
{
    for (int i = 0; i < textures.Count(); ++i)
        if (IsDead(textures.ValueAt(i)))
            textures.removeElement(textures.KeyAt(i));
}

}  // namespace

void CProfiler::TrackTextures(SContext& context, int id, void const* const* args)
{
    switch (id)
    {
    case Es2::Calls::glBindTexture.id:
        Bind(*this, context, Es2Host(), Slot(context, args), args);
        break;
    case Es1::Calls::glBindTexture.id:
        Bind(*this, context, Es1Host(), SlotEs1(context, args), args);
        break;
    case Es2::Calls::glTexParameterf.id:
        StoreFilter(Slot(context, args), args, FloatFilter(args));
        break;
    case Es1::Calls::glTexParameterf.id:
        StoreFilter(SlotEs1(context, args), args, FloatFilter(args));
        break;
    case Es2::Calls::glTexParameteri.id:
        StoreFilter(Slot(context, args), args, IntegerFilter(args));
        break;
    case Es1::Calls::glTexParameteri.id:
        StoreFilter(SlotEs1(context, args), args, IntegerFilter(args));
        break;
    case Es2::Calls::glDeleteTextures.id:
        Delete(context, args);
        break;
    case Es1::Calls::glDeleteTextures.id:
        DeleteEs1(context, args);
        break;
    default:
        break;
    }
}

void CProfiler::TrackFramebuffers(SContext& context, int id, void const* const* args)
{
    switch (id)
    {
    case Es2::Calls::glBindFramebuffer.id:
        BindFramebuffer(*this, context, context.currentFBO, args);
        break;
    case Es1::Calls::glBindFramebufferOES.id:
        BindFramebuffer(*this, context, context.currentFBOEs1, args);
        break;
    case Es2::Calls::glFramebufferTexture2D.id:
        Attach(*this, context, context.currentFBO, args);
        for (auto& unit : context.textures)
            for (int slot = 0; slot < SContext::eUsedSlots; ++slot)
                MarkAttachment(*this, context, unit[slot], AttachedTexture(args));
        break;
    case Es1::Calls::glFramebufferTexture2DOES.id:
        Attach(*this, context, context.currentFBOEs1, args);
        for (STextureBinding& binding : context.texturesEs1)
            MarkAttachment(*this, context, binding, AttachedTexture(args));
        break;
    default:
        break;
    }
}

void CProfiler::TidyupDeadFBOAttachments(SContext* context)
{
    VisitShared(*this, context, [](SContext& place) {
        for (int i = 0; i < place.m_FBOs.Count(); ++i)
        {
            SFBO& framebuffer = place.m_FBOs.ValueAt(i);
            for (int j = 0; j < framebuffer.Count(); ++j)
                EraseDead(framebuffer.ValueAt(j));
        }
        return false;
    });
}
