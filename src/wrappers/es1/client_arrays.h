// The client arrays of GLES1, as the wrappers follow them in VAHandler.
#pragma once
#include "api/types.h"
#include "wrappers/client_arrays.h"

namespace Es1
{

// Whether the host has the array of that slot on, in no buffer, and at that pointer. Texture coordinates need
// the unit to be active for the question; it is put back.
bool HostReadsClientArray(SClientArray const& array);

}  // namespace Es1
