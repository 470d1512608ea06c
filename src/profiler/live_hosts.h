// The host tables that the profiler may call besides the one of the call at hand.
#pragma once

class SEs1Host;
class SEs2Host;

// Null where the application has not used the API, or its library could not be loaded. They make no table.
SEs1Host* LiveEs1Host();
SEs2Host* LiveEs2Host();
