// The wrappers of namespace Es1, named as the API function with a leading underscore, and its error word.
#pragma once
#include "api/types.h"
#include "support/export.h"

namespace Es1
{
#define ES1(id, kind, defaultResult, result, name, parameters, arguments)                                    \
    NEBTRACE_API result _##name parameters;
#include "api/es1.def"

// The last call's error. One word for the process, not one for each thread.
extern NEBTRACE_API unsigned int error;
NEBTRACE_API unsigned int getError();
// Stores the no-error value.
NEBTRACE_API void ClearError();
// Reads the host's error into the word, and logs a failure.
NEBTRACE_API void CheckHostError();
}  // namespace Es1
