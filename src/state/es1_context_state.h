// Shadow of the application's GLES1 state.
#pragma once
#include "support/export.h"

class NEBTRACE_API CEs1ContextState
{
};
