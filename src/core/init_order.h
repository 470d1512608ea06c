// The order of the library's static start-up.
//
// The load hook reads the configuration and opens the trace file, so the strings that it fills must be built
// before it runs, and, so that m_Filename outlives start-up, those of the record manager as well.
#pragma once

#define NEBTRACE_INIT_FIRST __attribute__((init_priority(201)))
#define NEBTRACE_INIT_HOOK __attribute__((init_priority(203)))
