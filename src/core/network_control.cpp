// Network mode: a remote client decides what is recorded.
#include "core/config.h"

// The server of this build does not start, so that m_bNetworkControl is never set when calls arrive.
bool STraceConfig::NetworkControl() { return false; }
