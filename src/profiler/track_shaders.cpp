// Shaders: what the alternates of programs are built from.
#include "profiler/call_arguments.h"
#include "profiler/profiler_context.h"
#include "support/string.h"
#include "wrappers/calls.h"
#include <cstdint>
#include <cstring>

namespace
{

using SContext = CProfiler::SContext;
using SProgram = CProfiler::SProgram;
using SShader = CProfiler::SShader;

char const kFlatColourSource[] = "\t\t\t\t\t\t\tuniform lowp vec4 colour;"
                                 "\t\t\t\t\t\t\tvoid main (void)"
                                 "\t\t\t\t\t\t\t{"
                                 "\t\t\t\t\t\t\tgl_FragColor = colour;"
                                 "\t\t\t\t\t\t\t}";

GLenum TypeOf(GLuint shader)
{
    GLint type = 0;
    Es2Host()->glGetShaderiv(shader, GL_SHADER_TYPE, &type);
    return static_cast<GLenum>(type);
}

// 0 when the host makes none.
GLuint MakeFragmentShader(GLchar const* source)
{
    GLuint const shader = Es2Host()->glCreateShader(GL_FRAGMENT_SHADER);
    if (shader != 0)
        Es2Host()->glShaderSource(shader, 1, &source, nullptr);
    return shader;
}

GLuint FlatFragShader(SContext& context)
{
    if (context.flatFragShader == 0)
    {
        context.flatFragShader = MakeFragmentShader(kFlatColourSource);
        if (context.flatFragShader != 0)
            Es2Host()->glCompileShader(context.flatFragShader);
    }
    return context.flatFragShader;
}

// 0 for a shader that was not rewritten.
GLuint RewrittenShader(CProfiler& profiler, SContext& context, GLuint shader)
{
    SShader const* const record = profiler.GetFragShader(&context, shader, nullptr);
    return record ? record->rewrittenShader : 0;
}

void AttachFragmentShader(CProfiler& profiler, SContext& context, SProgram const& program, GLuint shader)
{
    if (GLuint const flat = FlatFragShader(context))
        Es2Host()->glAttachShader(program.flatProgram, flat);
    GLuint const rewritten = RewrittenShader(profiler, context, shader);
    Es2Host()->glAttachShader(program.noDiscardProgram, rewritten != 0 ? rewritten : shader);
}

// On purpose: there is no counterpart for glDetachShader, and the alternates keep what they have.
void AttachShader(CProfiler& profiler, SContext& context, GLuint program, GLuint shader)
{
    if (program == 0 || shader == 0)
        return;
    SProgram const* const record = profiler.GetShaderProgram(program);
    if (!record)
        return;
    if (TypeOf(shader) == GL_FRAGMENT_SHADER)
        return AttachFragmentShader(profiler, context, *record, shader);
    Es2Host()->glAttachShader(record->flatProgram, shader);
    Es2Host()->glAttachShader(record->noDiscardProgram, shader);
}

// A string whose length is given need not be terminated.
void AppendString(CNEBTString& text, GLchar const* string, GLint const* length)
{
    if (!string)
        return;
    if (length && *length >= 0)
        text.append(string, static_cast<uint32_t>(strnlen(string, static_cast<size_t>(*length))));
    else
        text.append(string);
}

// On purpose: the strings behind the first are found by a sum of lengths, and without lengths there is only
// the first. What the sum leads to outside the array is left out.
CNEBTString Source(GLsizei count, GLchar const* const* strings, GLint const* lengths)
{
    CNEBTString text;
    AppendString(text, strings[0], lengths);
    if (!lengths)
        return text;
    int64_t index = lengths[0];
    for (GLsizei i = 1; i < count; ++i)
    {
        if (index >= 0 && index < count)
            AppendString(text, strings[index], lengths + index);
        index += lengths[i];
    }
    return text;
}

// On purpose: a source that needs no rewriting leaves the shader's last rewritten form in force, and one that
// is rewritten again leaves the last form with the host.
void ShaderSource(CProfiler& profiler, SContext& context, void const* const* args)
{
    auto const shader = CallArgument<GLuint>(args, 1);
    auto const count = CallArgument<GLsizei>(args, 2);
    auto const* const strings = CallArgument<GLchar const* const*>(args, 3);
    if (shader == 0 || count < 1 || !strings || TypeOf(shader) != GL_FRAGMENT_SHADER)
        return;
    CNEBTString source = Source(count, strings, CallArgument<GLint const*>(args, 4));
    if (!profiler.RemoveDiscard(source))
        return;
    SShader record;
    record.rewrittenShader = MakeFragmentShader(source.c_str());
    context.m_Shaders[shader] = record;
}

void CompileShader(CProfiler& profiler, SContext& context, GLuint shader)
{
    if (GLuint const rewritten = shader != 0 ? RewrittenShader(profiler, context, shader) : 0)
        Es2Host()->glCompileShader(rewritten);
}

void DeleteShader(CProfiler& profiler, SContext& context, GLuint shader)
{
    SContext* owner = nullptr;
    SShader* const record = profiler.GetFragShader(&context, shader, &owner);
    if (!record)
        return;
    if (Es2Host()->glIsShader(shader))
    {
        record->bDeleted = true;  // attached: the record goes with a later glUseProgram
        return;
    }
    Es2Host()->glDeleteShader(record->rewrittenShader);
    owner->m_Shaders.removeElement(shader);
}

}  // namespace

void CProfiler::TrackShaders(SContext& context, int id, void const* const* args)
{
    switch (id)
    {
    case Es2::Calls::glAttachShader.id:
        AttachShader(*this, context, CallArgument<GLuint>(args, 1), CallArgument<GLuint>(args, 2));
        break;
    case Es2::Calls::glShaderSource.id:
        ShaderSource(*this, context, args);
        break;
    case Es2::Calls::glCompileShader.id:
        CompileShader(*this, context, CallArgument<GLuint>(args, 1));
        break;
    case Es2::Calls::glDeleteShader.id:
        DeleteShader(*this, context, CallArgument<GLuint>(args, 1));
        break;
    default:
        break;
    }
}
