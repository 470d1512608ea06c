// The host's entry points, one table for each API. Core entries are looked up when a table is made. Extension
// entries are null until the application asks for the name through eglGetProcAddress: the exchange then
// stores the host's pointer here and hands the application the wrapper.
#pragma once
#include "api/types.h"
#include "host/host_lib.h"
#include "state/trace_scoped_ptr.h"
#include <cstddef>

using AnyFunction = void (*)();

class NEBTRACE_API SEglHost : public SHostLib
{
public:
    SEglHost();

    // Given a name and the host's pointer for it: the wrapper of that name, or null. An extension's entry
    // takes the pointer; a core entry stays as it is.
    AnyFunction FunctionPtrExchange(char const* name, AnyFunction pointer);

#define EGL(id, kind, defaultResult, result, name, parameters, arguments) result(*name) parameters = nullptr;
#define EGL_REPLAYED(id, kind, defaultResult, result, name, parameters, arguments, wrapperParameters)        \
    result(*name) parameters = nullptr;
#include "api/egl.def"

    static SEglHost* s_pInstance;
    static SEglHost* s_pInstancePlayback;  // kept in the interface; nothing uses it
};

class NEBTRACE_API SEs1Host : public SHostLib
{
public:
    SEs1Host();

    // As SEglHost's; null for every name when the library could not be loaded.
    AnyFunction FunctionPtrExchange(char const* name, AnyFunction pointer);

#define ES1(id, kind, defaultResult, result, name, parameters, arguments) result(*name) parameters = nullptr;
#include "api/es1.def"

    static SEs1Host* s_pInstance;
};

class NEBTRACE_API SEs2Host : public SHostLib
{
public:
    SEs2Host();

    // As SEglHost's.
    AnyFunction FunctionPtrExchange(char const* name, AnyFunction pointer);

    // The table is deleted when the process exits, and other threads may be on their way through it: the
    // memory stays as it was.
    static void* operator new(std::size_t size);
    static void operator delete(void* table);

#define ES2(id, kind, defaultResult, result, name, parameters, arguments) result(*name) parameters = nullptr;
#define ES2_REPLAYED(id, kind, defaultResult, result, name, parameters, arguments, wrapperParameters)        \
    result(*name) parameters = nullptr;
#include "api/es2.def"

    static TraceScopedPtr<SEs2Host> s_pInstance;
};

// The tables, made on first use. Fetching one has side effects: it marks the API as used for a snapshot.
NEBTRACE_API SEglHost* EglHost();
NEBTRACE_API SEs1Host* Es1Host();
NEBTRACE_API SEs2Host* Es2Host();

// Whether the table exists. They make nothing.
NEBTRACE_API bool EglIsInit();
NEBTRACE_API bool Es1IsInit();
NEBTRACE_API bool Es2IsInit();
