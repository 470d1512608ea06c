// What the plain-named functions are made of. Every front end defines its functions in the namespace Plain,
// each under the symbol name that applications link against.
//
// The symbol name is given as an assembler label, not as a C name: the public headers, which come along with
// the function tables, declare some of these functions with other types (a native display is a pointer there
// and an integer here), and one C name can't have both.
#pragma once
#include "wrappers/with_zeros.h"

#define NEBTRACE_PLAIN(result, name, parameters)                                                             \
    __attribute__((visibility("default"))) result name parameters __asm__(#name);                            \
    result name parameters

using AnyFunction = void (*)();

// Looks a name up in this front end's host library, then through the host's eglGetProcAddress, without a
// record of either. Null if the host doesn't have it.
AnyFunction FindInHost(char const* name);

// The host's function of that name, or null. `self`, the plain function that asks, is never the answer: a
// configuration that names the front end itself as the host must not end in endless recursion.
template <class Function>
Function HostFunction(Function self, char const* name)
{
    AnyFunction const found = FindInHost(name);
    return found == reinterpret_cast<AnyFunction>(self) ? nullptr : reinterpret_cast<Function>(found);
}

// What a plain function does ahead of its wrapper, by the kind of its table line.
//
// An extension's host entry is filled when the application asks for the name through eglGetProcAddress. One
// that is linked directly was never asked for: the first call fills the entry, once.
#define NEBTRACE_BEFORE_kCore(name, arguments)
#define NEBTRACE_BEFORE_kCoreDraw(name, arguments)
#define NEBTRACE_BEFORE_kExtension(name, arguments)                                                          \
    [[maybe_unused]] static bool const filled = FillHostEntry(HostFunction(&name, #name), #name);
#define NEBTRACE_BEFORE_kExtensionDraw(name, arguments) NEBTRACE_BEFORE_kExtension(name, arguments)
// The library never fills these entries; eglGetProcAddress gives out the host's own function for them. So
// does a direct call, which would otherwise do nothing.
#define NEBTRACE_BEFORE_kUnexchanged(name, arguments)                                                        \
    static auto const host = HostFunction(&name, #name);                                                     \
    if (host)                                                                                                \
        return host arguments;

// A function that the library does not wrap. Where the host lacks it too there is nothing to call.
#define NEBTRACE_PASSTHROUGH(result, name, parameters, arguments)                                            \
    NEBTRACE_PLAIN(result, name, parameters)                                                                 \
    {                                                                                                        \
        using Result = result;                                                                               \
        static auto const host = HostFunction(&name, #name);                                                 \
        if (!host)                                                                                           \
            return Result();                                                                                 \
        return host arguments;                                                                               \
    }
