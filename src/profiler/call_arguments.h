// The arguments of a call as the wrappers hand them on: the address of their count, then that of each.
#pragma once

// `index` counts from 1, and T is the argument's type in the API.
template <typename T>
T CallArgument(void const* const* args, int index)
{
    return *static_cast<T const*>(args[index]);
}
