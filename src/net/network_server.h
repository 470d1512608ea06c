// The trace server: streams the trace to a remote client and takes commands from it.
#pragma once
#include "support/export.h"

class NEBTRACE_API CNetworkServer
{
public:
    // The recorder's state as shown to the client.
    struct SNetControl
    {
        bool bConnected;  // a client is connected
        bool bRunning;    // the client lets the application run
        bool bRecording;  // a recording is on
        bool bWaiting;    // the recorder is held up waiting for the client
    };

    static CNetworkServer* Instance();

    // Starts listening; returns success.
    bool InitializeServer();
    // Threshold and packet size of sending, in bytes.
    void SetBufferSize(int size);
    // Queues trace bytes.
    void SendData(char const* data, int size);
    // Sends what is queued; true means everything.
    bool SendDataFlush(bool everything);
    // Flushes everything.
    void Close();
};
