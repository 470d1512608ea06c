// A host library as the front ends need it: a few look-ups by name, outside the recorder's entry tables.
#pragma once
#include "frontends/plain.h"

class CHostLibrary
{
public:
    // The path as configured. A library that does not open has no functions.
    explicit CHostLibrary(char const* path);
    // The library's own symbol, else what the host's eglGetProcAddress answers, else null.
    AnyFunction Find(char const* name) const;

private:
    void* m_handle;
};
