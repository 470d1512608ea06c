// Programs and their alternates, which are made, linked and bound to attributes as they are.
#include "profiler/alternates.h"
#include "profiler/call_arguments.h"
#include "profiler/profiler_context.h"
#include "profiler/share_walk.h"
#include "wrappers/calls.h"

namespace
{

using SContext = CProfiler::SContext;
using SProgram = CProfiler::SProgram;

void BindAttribLocation(SContext& context, void const* const* args)
{
    SProgram* const record = OwnProgram(context, CallArgument<GLuint>(args, 1));
    if (!record)
        return;
    VisitAlternates(*record, [&](GLuint alternate, TraceMap<int, int> const&) {
        Es2Host()->glBindAttribLocation(alternate, CallArgument<GLuint>(args, 2),
                                        CallArgument<GLchar const*>(args, 3));
    });
}

// One fixed colour for each program, from its names.
void SetFlatColour(GLuint program, GLuint flatProgram)
{
    uint32_t const colour = program * flatProgram * 7000U;
    float const red = static_cast<float>(colour & 0xFFU) / 255.0f;
    float const green = static_cast<float>((colour & 0xFFFFU) >> 8) / 255.0f;
    float const blue = static_cast<float>((colour & 0xFFFFFFU) >> 16) / 255.0f;
    GLint const location = Es2Host()->glGetUniformLocation(flatProgram, "colour");
    Es2Host()->glUniform4f(location, red, green, blue, 1.0f);
}

void Link(SContext const& context, GLuint program, SProgram const& record)
{
    if (record.flatProgram != 0)
    {
        Es2Host()->glLinkProgram(record.flatProgram);
        Es2Host()->glUseProgram(record.flatProgram);
        SetFlatColour(program, record.flatProgram);
        Es2Host()->glUseProgram(context.currentProgram);
    }
    if (record.noDiscardProgram != 0)
        Es2Host()->glLinkProgram(record.noDiscardProgram);
}

void LinkProgram(SContext& context, void const* const* args)
{
    auto const program = CallArgument<GLuint>(args, 1);
    if (SProgram const* const record = OwnProgram(context, program))
        Link(context, program, *record);
}

void GetUniformLocation(SContext& context, void const* const* args, GLint const* location)
{
    SProgram* const record = OwnProgram(context, CallArgument<GLuint>(args, 1));
    if (!record || !location || *location == -1)
        return;
    auto const* const name = CallArgument<GLchar const*>(args, 2);
    VisitAlternates(*record, [&](GLuint alternate, TraceMap<int, int>& locations) {
        GLint const own = Es2Host()->glGetUniformLocation(alternate, name);
        if (own != -1)
            locations[*location] = own;
    });
}

void DeleteAlternates(SProgram const& record)
{
    Es2Host()->glDeleteProgram(record.flatProgram);
    Es2Host()->glDeleteProgram(record.noDiscardProgram);
}

void DeleteProgram(CProfiler& profiler, SContext& context, GLuint program)
{
    SContext* owner = nullptr;
    SProgram* const record = profiler.GetProgram(&context, program, &owner);
    if (!record)
        return;
    if (Es2Host()->glIsProgram(program))
    {
        record->bDeleted = true;  // in use: the record goes with a later glUseProgram
        return;
    }
    DeleteAlternates(*record);
    owner->m_Programs.removeElement(program);
}

// Erases the deleted ones of those that the host, asked by `is`, no longer knows.
template <typename V, typename Is, typename Delete>
void EraseDeleted(TraceMap<unsigned int, V>& records, Is is, Delete deleteOwn)
{
    for (int i = 0; i < records.Count();)
    {
        V const& record = records.ValueAt(i);
        if (!record.bDeleted || is(records.KeyAt(i)))
        {
            ++i;
            continue;
        }
        deleteOwn(record);
        records.removeElement(records.KeyAt(i));  // the last one is here now
    }
}

}  // namespace

void CProfiler::TrackPrograms(SContext& context, int id, void const* const* args, void const* result)
{
    switch (id)
    {
    case Es2::Calls::glCreateProgram.id:
        if (result)
            GetShaderProgram(*static_cast<GLuint const*>(result));
        break;
    case Es2::Calls::glBindAttribLocation.id:
        BindAttribLocation(context, args);
        break;
    case Es2::Calls::glLinkProgram.id:
        LinkProgram(context, args);
        break;
    case Es2::Calls::glGetUniformLocation.id:
        GetUniformLocation(context, args, static_cast<GLint const*>(result));
        break;
    case Es2::Calls::glUseProgram.id:
        TidyupDeadShadersAndPrograms(&context);
        context.currentProgram = CallArgument<GLuint>(args, 1);
        break;
    case Es2::Calls::glDeleteProgram.id:
        DeleteProgram(*this, context, CallArgument<GLuint>(args, 1));
        break;
    default:
        break;
    }
}

CProfiler::SProgram* CProfiler::GetShaderProgram(unsigned int program)
{
    SContext* const context = CurrentContext();
    if (!context)
        return nullptr;
    if (SProgram* const known = context->m_Programs.Find(program))
        return known;
    SProgram record;
    record.flatProgram = Es2Host()->glCreateProgram();
    record.noDiscardProgram = Es2Host()->glCreateProgram();
    // On purpose: where the host has made but one of them, that one stays with it.
    if (record.flatProgram == 0 || record.noDiscardProgram == 0)
        return nullptr;
    SProgram& kept = context->m_Programs[program];
    kept = record;
    return &kept;
}

void CProfiler::TidyupDeadShadersAndPrograms(SContext* context)
{
    SEs2Host const& host = *Es2Host();
    VisitShared(*this, context, [&](SContext& place) {
        EraseDeleted(place.m_Shaders, host.glIsShader,
                     [&](SShader const& record) { host.glDeleteShader(record.rewrittenShader); });
        EraseDeleted(place.m_Programs, host.glIsProgram, DeleteAlternates);
        return false;
    });
}
