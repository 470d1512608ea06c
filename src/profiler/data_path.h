// Byte streams between a traced application, the client, and the performance server on the same machine.
//
// Stands on the operating system alone, without GL and without the recorder: the server links it too.
#pragma once
#include "support/export.h"
#include <cstdint>

// The base of all names in shared memory that application and server meet under.
constexpr char kPerfServerName[] = "/NEBPerfServerVsAppLib";

// Takes the messages of the transport. The library has none, so that nothing of this appears in an
// application.
struct NEBTRACE_API SToPrintf
{
    virtual ~SToPrintf();
    virtual void Print(char const* text) = 0;
};

// The only way in which a message leaves the transport; a null sink drops it.
NEBTRACE_API void ToPrintf(SToPrintf* sink, char const* format, ...) __attribute__((format(printf, 2, 3)));

class NEBTRACE_API CDataPath
{
public:
    explicit CDataPath(SToPrintf* sink) : pPrintf(sink) {}
    virtual ~CDataPath();
    CDataPath(CDataPath const&) = delete;
    CDataPath& operator=(CDataPath const&) = delete;

    // On purpose: a complete handshake is 1 at the server's end and 2 at the client's; 0 is "not yet" and
    // "failed" alike at the server's.
    virtual int DataOpenServerTryAccept() = 0;
    // 2: connected; 0 or 1: not yet, call again.
    virtual int DataOpenClientTryAccept() = 0;
    // 1: all of it went out; 0: the link failed, and part of it may have gone out. May block: this is the
    // flow control.
    virtual int DataSendBytes(char const* data, unsigned int length) = 0;
    virtual int DataSendFlush() = 0;
    // 2: something was read; 1: nothing was there; 0: the link failed. A null count does not promise all of
    // `length`.
    virtual int DataReceiveBytes(char* buffer, unsigned int length, unsigned int* pCount) = 0;
    // Both return success.
    virtual int DataOpenServer(char const* name, unsigned int id) = 0;
    virtual int DataOpenClient(char const* name) = 0;

    // One word, in the byte order of the machine.
    int DataSend(unsigned int word);
    unsigned int BytesSent() const { return bytesSent; }
    unsigned int BytesReceived() const { return bytesReceived; }

protected:
    // Running totals, which wrap.
    uint32_t bytesSent = 0;
    uint32_t bytesReceived = 0;
    SToPrintf* pPrintf;
};

// Listens, and hands out a path for each client that arrives.
class NEBTRACE_API CDataPathHerd
{
public:
    CDataPathHerd() = default;
    virtual ~CDataPathHerd();
    CDataPathHerd(CDataPathHerd const&) = delete;
    CDataPathHerd& operator=(CDataPathHerd const&) = delete;

    virtual void shutdown() = 0;
    // The path to the next client, owned by the caller, with its handshake still to come; null when none has
    // come. Never waits.
    virtual CDataPath* poll() = 0;
};
