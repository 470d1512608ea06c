// Questions that the wrappers ask the host for themselves, neither recorded nor counted.
#pragma once
#include "api/types.h"
#include "host/hosts.h"

// EGL's answer for a function that the application need not have asked for. EGL does not count as used by it.
AnyFunction HostFunction(char const* name);
// A host table's entry, or EGL's answer where it has none.
template <typename Entry>
Entry HostEntry(Entry entry, char const* name)
{
    return entry ? entry : reinterpret_cast<Entry>(HostFunction(name));
}

namespace Es1
{
GLint HostInteger(GLenum pname);
}
namespace Es2
{
GLint HostInteger(GLenum pname);
}
