// The application's uniform values, which the alternates of its program get at once, so that an override
// need not set any.
#include "profiler/alternates.h"
#include "profiler/call_arguments.h"
#include "profiler/profiler_context.h"
#include "wrappers/calls.h"
#include <utility>

namespace
{

// The arguments behind the location, which is the alternate's own, are the call's.
template <typename... Values, std::size_t... I>
void SetUniform(void (*entry)(GLint, Values...), GLint location, void const* const* args,
                std::index_sequence<I...>)
{
    entry(location, CallArgument<Values>(args, static_cast<int>(2 + I))...);
}

template <typename... Values>
void Forward(CProfiler::SContext& context, SCall<SEs2Host, void(GLint, Values...)> const& call,
             void const* const* args)
{
    CProfiler::SProgram* const record = OwnProgram(context, context.currentProgram);
    if (!record)
        return;
    VisitAlternates(*record, [&](GLuint alternate, TraceMap<int, int> const& locations) {
        int const* const location = locations.Find(CallArgument<GLint>(args, 1));
        if (!location)
            return;
        Es2Host()->glUseProgram(alternate);
        SetUniform(Es2Host()->*call.entry, *location, args, std::index_sequence_for<Values...>());
        Es2Host()->glUseProgram(context.currentProgram);
    });
}

template <typename... Calls>
void ForwardOneOf(CProfiler::SContext& context, int id, void const* const* args, Calls const&... calls)
{
    static_cast<void>(((id == calls.id && (Forward(context, calls, args), true)) || ...));
}

}  // namespace

void CProfiler::TrackUniforms(SContext& context, int id, void const* const* args)
{
    namespace C = Es2::Calls;
    if (id < C::glUniform1f.id || id > C::glUniformMatrix4fv.id)
        return;
    ForwardOneOf(context, id, args, C::glUniform1f, C::glUniform1fv, C::glUniform1i, C::glUniform1iv,
                 C::glUniform2f, C::glUniform2fv, C::glUniform2i, C::glUniform2iv, C::glUniform3f,
                 C::glUniform3fv, C::glUniform3i, C::glUniform3iv, C::glUniform4f, C::glUniform4fv,
                 C::glUniform4i, C::glUniform4iv, C::glUniformMatrix2fv, C::glUniformMatrix3fv,
                 C::glUniformMatrix4fv);
}
