// The order of the library's static start-up.
//
// The load hook reads the configuration and opens the trace file, so the strings that it fills must be built
// before it runs; so are the record manager's objects, so that m_Filename keeps the name that the hook gives
// it, and that the frozen states outlive the hook's destructor, which closes everything at unload.
#pragma once

#define NEBTRACE_INIT_FIRST __attribute__((init_priority(201)))
#define NEBTRACE_INIT_HOOK __attribute__((init_priority(203)))
