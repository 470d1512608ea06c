// What every function of the npl interface begins with, and the descriptions that it answers with.
#pragma once
#include "profiler/npl.h"

// Looks for a server, or handles one block of the server that is there. Returns whether there is a link.
uint32_t PumpComms(SSPSCommsData& comms);

// A new transport that looks for a server from the start; false and no transport without memory.
bool OpenTransport(SSPSCommsData& comms);

bool SendLibraryItems(SSPSCommsData& comms);
bool SendCounterDescription(SSPSCommsData& comms);
