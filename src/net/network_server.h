// The trace server: streams the trace to a remote client and takes commands from it.
//
// It has no thread: the recorder calls it from inside API calls, and everything is polled and limited by the
// clock. One lock guards it, because those calls come on any thread. CheckStatus, which every call makes,
// does not wait for it.
#pragma once
#include "net/data_route_sockets.h"
#include "support/export.h"
#include "support/string.h"
#include <atomic>
#include <cstdint>

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

    // What a CheckStatus has found.
    struct SNetStatus
    {
        bool bError;
        bool bConnected;
        bool bStartRecording;
        bool bResume;
        bool bPause;
        bool bStopRecording;
        bool bCloseRequest;  // set by a command that nothing acts on
    };

    CNetworkServer();
    ~CNetworkServer();
    CNetworkServer(CNetworkServer const&) = delete;
    CNetworkServer& operator=(CNetworkServer const&) = delete;

    // The process's own.
    static CNetworkServer* Instance();

    // Starts listening; returns success.
    bool InitializeServer();
    // Threshold and packet size of sending, in bytes: 1 to 65536, which also stands for any other value.
    void SetBufferSize(int size);
    // Queues trace bytes, and sends when enough have come together; false when there is nobody to send to.
    // Bytes are kept without limit until they are sent.
    bool SendData(char const* data, int size);
    // Sends what is queued in pieces; true means everything, not only whole pieces. Returns whether the last
    // piece went out. Without an open connection the bytes are kept. Blocks while the client takes nothing.
    bool SendDataFlush(bool everything);
    // Looks after the connection and takes the client's commands, each at most once a second.
    SNetStatus CheckStatus(SNetControl const& control);
    // Tests the connection; without one, looks whether a client has come. Returns whether there is one.
    bool CheckClientConnection();
    void SendStatus();
    void SendAckCommand(int command);
    // Milliseconds since the first call.
    static unsigned int GetTime();
    // Flushes everything.
    void Close();
    // Nothing drives the discovery datagram, nor a waiting player: both are empty.
    void BroadCastIp();
    void SendWaitingPlayClient();

    // Whether it has been destroyed: no client comes any more. Calls still do, while the process ends.
    bool HasEnded() const;

    // In the child of a fork: leaves a connection that the parent uses to it. Returns whether there was one.
    bool AbandonAfterFork();

private:
    bool AllocateBuffers();
    bool RouteIsOpen() const { return m_pRoute && m_pRoute->IsOpen(); }
    bool SendPiece(char const* data, uint32_t size);
    void SendSix(uint8_t kind, uint8_t value);
    static bool IsDue(uint32_t& last);
    void Disconnect(SNetStatus& status, bool error);
    void LookAfterConnection();
    bool Receive(SNetStatus& status);
    bool TakeCommand(SNetStatus& status);
    bool ActOn(uint8_t command, SNetStatus& status);

    CDataRouteHerdSockets* m_pHerd = nullptr;
    CDataRouteSockets* m_pRoute = nullptr;
    // Read without the lock by threads that did not get it.
    std::atomic<bool> m_bClientConnected{false};
    uint32_t m_port;
    CNEBTString m_sendBuffer;  // trace bytes not yet sent; binary
    bool m_bServerStarted = false;
    SNetControl m_control{};
    char* m_pCommandBuffer = nullptr;
    int m_commandLength = 0;
    char* m_pReceiveBuffer = nullptr;  // scratch of one receive
    int m_bufferSize = 1024;
    uint32_t m_lastConnectionCheck = 0;  // in GetTime's milliseconds, like the next two
    uint32_t m_lastReceive = 0;
    uint32_t m_lastStatus = 0;
    char* m_pPacket = nullptr;  // scratch of one data packet
};
