// What keeps one call of the profiler from another thread's: records and the link to the server stand any
// number of threads, one at a time. What they keep is one state for all threads all the same.
#pragma once
#include "support/lasting_mutex.h"

// Recursive, since a driver may call the application back out of a call of ours, and that call into us.
CLastingMutex& ProfilerMutex();
