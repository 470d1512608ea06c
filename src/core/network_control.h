// Network mode beyond a fork.
#pragma once

// Leaves the client to the parent, if the parent has one: the child records nothing then.
void LeaveNetworkAfterFork();
