// The alternates of a program, one after the other.
#pragma once
#include "profiler/profiler_context.h"

// `visit` gets each alternate that there is, and its locations: first the flat one.
template <typename Visit>
void VisitAlternates(CProfiler::SProgram& program, Visit visit)
{
    if (program.flatProgram != 0)
        visit(program.flatProgram, program.flatLocations);
    if (program.noDiscardProgram != 0)
        visit(program.noDiscardProgram, program.noDiscardLocations);
}

// On purpose: what is kept in step with a program is looked for in this context alone, so that a program of
// another context of the share group gets neither uniforms nor links nor attributes here.
inline CProfiler::SProgram* OwnProgram(CProfiler::SContext& context, unsigned int name)
{
    return name == 0 ? nullptr : context.m_Programs.Find(name);
}
