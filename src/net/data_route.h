// Data routes: point-to-point transports of bytes, with a raw layer and a buffered layer above it.
#pragma once
#include "support/export.h"
#include <cstdint>

class NEBTRACE_API CDataRoute
{
public:
    CDataRoute() = default;
    virtual ~CDataRoute();
    CDataRoute(CDataRoute const&) = delete;
    CDataRoute& operator=(CDataRoute const&) = delete;

    virtual int DataOpenServerTryAccept() = 0;
    // Connects in steps. 0: failed; 1: pending, call again; 3: connected.
    virtual int DataOpenClientTryAccept() = 0;
    virtual bool DataSendBytes(char const* data, unsigned int size, bool flush) = 0;
    virtual bool DataSendFlush() = 0;
    // 0: error; 1: not enough yet; 3: received. With a count, fewer bytes than asked for will do.
    virtual int DataReceiveBytes(char* buffer, unsigned int size, unsigned int* count) = 0;

protected:
    uint32_t m_bytesSent = 0;
    uint32_t m_bytesReceived = 0;
};

// The buffered layer, over the raw layer of a derived class.
class NEBTRACE_API CDataRouteCached : public CDataRoute
{
public:
    bool DataSendBytes(char const* data, unsigned int size, bool flush) override;
    bool DataSendFlush() override;
    int DataReceiveBytes(char* buffer, unsigned int size, unsigned int* count) override;

    // False when not all bytes went out; some of them may have.
    virtual bool DataSendData(char const* data, unsigned int size) = 0;
    // 0: error; 1: no data within the wait; 2: the peer closed the connection; 3: data, `*count` bytes of it.
    virtual int DataReceiveData(char* buffer, unsigned int size, unsigned int* count) = 0;

private:
    static constexpr uint32_t kRingSize = 4048;

    char m_sendRing[kRingSize];
    uint32_t m_sendStart = 0;
    uint32_t m_sendCount = 0;
    char m_receiveRing[kRingSize];
    uint32_t m_receiveStart = 0;
    uint32_t m_receiveCount = 0;
};

// Listens, and hands out a route for each client that connects.
class NEBTRACE_API CDataRouteHerd
{
public:
    CDataRouteHerd() = default;
    virtual ~CDataRouteHerd();
    CDataRouteHerd(CDataRouteHerd const&) = delete;
    CDataRouteHerd& operator=(CDataRouteHerd const&) = delete;

    virtual void shutdown() = 0;
    // The route to the next client, owned by the caller; null when none has come.
    virtual CDataRoute* poll() = 0;
};
