// Shadow of the application's GLES2 state.
#pragma once
#include "support/export.h"

class NEBTRACE_API CEs2ContextState
{
public:
    unsigned short m_usClientVersion = 2;
};
