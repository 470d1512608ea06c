// A byte stream of two rings in shared memory, one each way. No socket, and no wait in the kernel but for a
// mutex; while a buffer has room, no system call at all.
#pragma once
#include "profiler/data_path.h"
#include "profiler/shared_mem.h"
#include "support/export.h"
#include <cstdint>

// What a buffer of a ring begins with; the data follow. Each position has one writer: the receiver moves
// `read`, the sender `write`.
struct SRingPositions
{
    uint32_t read;
    uint32_t write;
};
static_assert(sizeof(SRingPositions) == 8, "shared with the other process");

constexpr uint32_t kRingBuffers = 3;
constexpr uint32_t kRingBufferSize = 32768;
constexpr uint32_t kRingRoom = kRingBufferSize - sizeof(SRingPositions);
static_assert(kRingRoom == 32760, "shared with the other process");

// The sender holds the mutex of the buffer that it fills. The receiver holds the mutex of the buffer before
// the one that it reads, so that what it has finished stays locked until it is empty again. A sender two
// buffers ahead waits in that mutex: a receiver that stops reading stops the sender.
struct SSharedRing
{
    SSharedBuffer buffers[kRingBuffers];
    uint32_t index = 0;  // the current buffer
};

// The rendezvous object of the second form: a ticket word, and a mutex beside it.
constexpr uint32_t kRendezvousSize = 256;

// One end of a connection. Nothing in it is guarded against a second thread of the same process.
class NEBTRACE_API CDataPathSharedMem : public CDataPath
{
public:
    explicit CDataPathSharedMem(SToPrintf* sink);
    ~CDataPathSharedMem() override;

    int DataOpenServerTryAccept() override;
    int DataOpenClientTryAccept() override;
    int DataSendBytes(char const* data, unsigned int length) override;
    int DataSendFlush() override;
    int DataReceiveBytes(char* buffer, unsigned int length, unsigned int* pCount) override;
    int DataOpenServer(char const* name, unsigned int ticket) override;
    int DataOpenClient(char const* name) override;

    // Creates the rings, or opens those that the other end created, and takes the first mutexes. After a
    // failure what was opened stays open until the next attempt.
    bool bufOpenOrCreateAll(bool create);

    // For an end that must outlive the other, which may have died with a mutex, or have closed its end in
    // order: from here on a receive waits for no mutex, and finds nothing instead; a mutex that is destroyed
    // holds it up no more, so that the last bytes arrive. Of the twelve files one stays open.
    void OutliveOther();
    // Whether a send of at most a buffer's room goes through without waiting for a mutex.
    bool CanSendAtOnce(unsigned int length);
    // Whether the names of the rings are gone: who made them takes them away when it closes.
    bool IsUnlinked() const;
    uint32_t Ticket() const { return id; }

private:
    static constexpr uint32_t kOutlives = 2;

    bool EnterNextSendBuffer();
    bool Outlives() const { return state == kOutlives; }
    EMutexTry AwaitSender(CMutex& mutex) const;
    EMutexTry LeaveUsedUpBuffer();
    bool SendHello();
    bool TakeTicket(SSharedBuffer& rendezvous);
    int LookForTicket();
    int AwaitHello();
    void CloseAll();
    void KeepName(char const* name);
    bool ConnectionError();

    char* pszName = nullptr;  // owned
    SSharedRing U;            // client to server
    SSharedRing D;            // server to client
    SSharedRing* pSendRing;
    SSharedRing* pReceiveRing;
    uint32_t id = 0;  // the ticket
    // Of a client. 0: looking for a ticket; 1: waiting for the server's answer. Of a server 0 or kOutlives.
    uint32_t state = 0;
};
