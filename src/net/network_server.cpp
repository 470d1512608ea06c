#include "net/network_server.h"
#include "net/protocol.h"
#include "support/lasting_mutex.h"
#include "support/log.h"
#include <algorithm>
#include <cstring>
#include <new>
#include <sys/time.h>
#include <unistd.h>

using namespace NetProtocol;

namespace
{

constexpr uint32_t kReserved = 1024;

// Recursive: one operation may be a step of another.
CLastingMutex& ServerMutex()
{
    static CLastingMutex mutex(PTHREAD_MUTEX_RECURSIVE);
    return mutex;
}

// The last server that was destroyed: threads still make calls while the process ends, and find by this that
// there is nothing left to touch.
std::atomic<CNetworkServer const*> s_pGone{nullptr};

// The server for the time of one operation.
class CServerLock
{
public:
    explicit CServerLock(CNetworkServer const* server, CLastingLock::EMode mode = CLastingLock::EMode::Wait)
        : m_lock(ServerMutex(), mode), m_bUsable(m_lock.Entered() && !server->HasEnded())
    {
    }
    explicit operator bool() const { return m_bUsable; }

private:
    CLastingLock m_lock;
    bool m_bUsable;
};

// Wraps about every 49.7 days: all users take unsigned differences.
uint32_t NowMS()
{
    timeval now{};
    gettimeofday(&now, nullptr);
    uint32_t const seconds = 1000u * static_cast<uint32_t>(now.tv_sec);
    double const milliseconds = seconds + static_cast<double>(now.tv_usec) / 1000.0;
    return static_cast<uint32_t>(static_cast<uint64_t>(milliseconds));
}

}  // namespace

CNetworkServer* CNetworkServer::Instance()
{
    static CNetworkServer instance;
    return &instance;
}

CNetworkServer::CNetworkServer() : m_port(kServerPort)
{
    if (HasEnded())
        s_pGone = nullptr;
    m_sendBuffer.reserve(kReserved);
}

CNetworkServer::~CNetworkServer()
{
    CServerLock const lock(this);
    SendDataFlush(true);
    delete[] m_pCommandBuffer;
    delete[] m_pReceiveBuffer;
    delete[] m_pPacket;
    delete m_pRoute;  // ends the connection in order, so that the client gets all that was sent
    if (m_pHerd)
        m_pHerd->shutdown();  // the port is free again when the library is loaded another time
    delete m_pHerd;
    s_pGone = this;
}

bool CNetworkServer::HasEnded() const { return s_pGone == this; }

bool CNetworkServer::InitializeServer()
{
    CServerLock const lock(this);
    if (!lock)
        return false;
    if (m_bServerStarted)
        return true;
    LogMessage("\nInitialize Server\n");
    // On purpose: set whatever comes of it, so that a second call claims success after a failure.
    m_bServerStarted = true;
    m_pHerd = new (std::nothrow) CDataRouteHerdSockets;
    if (!m_pHerd || !m_pHerd->initialise(static_cast<unsigned short>(m_port)) || !AllocateBuffers())
    {
        LogMessage("Error Inicializing Server, Abort.");
        return false;
    }
    m_commandLength = 0;
    return true;
}

bool CNetworkServer::AllocateBuffers()
{
    m_pCommandBuffer = new (std::nothrow) char[kMostPayload];
    m_pReceiveBuffer = new (std::nothrow) char[kMostPayload];
    m_pPacket = new (std::nothrow) char[kMostPayload + kDataOverhead];
    return m_pCommandBuffer && m_pReceiveBuffer && m_pPacket;
}

void CNetworkServer::SetBufferSize(int size)
{
    CServerLock const lock(this);
    constexpr int kMost = kMostPayload;
    m_bufferSize = size >= 1 && size <= kMost ? size : kMost;
}

bool CNetworkServer::SendData(char const* data, int size)
{
    CServerLock const lock(this);
    if (!lock || size < 0)
        return false;
    uint32_t const added = static_cast<uint32_t>(size);
    if (added > m_sendBuffer.max_size() / 2 - m_sendBuffer.length())
        return false;  // more than the buffer can ever hold
    // The string itself grows to exactly what is needed, which is too slow for what can gather here.
    uint32_t const needed = m_sendBuffer.length() + added;
    if (needed >= m_sendBuffer.capacity())
        m_sendBuffer.reserve(std::max(kReserved, needed + needed / 2));
    m_sendBuffer.append(data, added);
    if (!m_pRoute)
        return false;
    if (m_sendBuffer.length() >= static_cast<uint32_t>(m_bufferSize))
        SendDataFlush(false);
    return true;
}

bool CNetworkServer::SendDataFlush(bool everything)
{
    CServerLock const lock(this);
    if (!lock)
        return false;
    if (m_sendBuffer.empty())
        return true;
    uint32_t const whole = everything ? kMostPayload : static_cast<uint32_t>(m_bufferSize);
    uint32_t const least = everything ? 1 : whole;
    uint32_t sent = 0;
    bool succeeded = RouteIsOpen();
    while (m_sendBuffer.length() - sent >= least)
    {
        succeeded = RouteIsOpen();
        if (!succeeded)
            break;  // the rest is kept for the next client
        uint32_t const size = std::min(m_sendBuffer.length() - sent, whole);
        succeeded = SendPiece(m_sendBuffer.data() + sent, size);
        if (succeeded)
        {
            sent += size;
            continue;
        }
        // On purpose: there is no limit, and the piece is sent again from its start, though part of it may
        // have gone out.
        constexpr useconds_t kPause = 100000;
        CheckClientConnection();
        usleep(kPause);
    }
    m_sendBuffer.erase(0, sent);
    if (everything && m_sendBuffer.empty())
    {
        CNEBTString().swap(m_sendBuffer);
        m_sendBuffer.reserve(kReserved);
    }
    return succeeded;
}

// 08 44 31, u16 low 16 bits of the size, the bytes, 25.
bool CNetworkServer::SendPiece(char const* data, uint32_t size)
{
    uint8_t const header[kDataHeaderSize] = {kMark0, kMark1, kData, static_cast<uint8_t>(size & 0xFF),
                                             static_cast<uint8_t>(size >> 8 & 0xFF)};
    std::memcpy(m_pPacket, header, kDataHeaderSize);
    std::memcpy(m_pPacket + kDataHeaderSize, data, size);
    m_pPacket[kDataHeaderSize + size] = static_cast<char>(kDataEnd);
    return m_pRoute->DataSendData(m_pPacket, size + kDataOverhead);
}

// 08 44, kind, value, 01 00.
void CNetworkServer::SendSix(uint8_t kind, uint8_t value)
{
    uint8_t const packet[] = {kMark0, kMark1, kind, value, 1, 0};
    static_assert(sizeof packet == 6, "the size of the packet on the wire");
    if (m_pRoute)
        m_pRoute->DataSendData(reinterpret_cast<char const*>(packet), sizeof packet);
}

void CNetworkServer::SendStatus()
{
    CServerLock const lock(this);
    if (!lock)
        return;
    uint8_t state = kStateHeld;
    if (m_control.bWaiting)
        state = kStateWaiting;
    else if (m_control.bRecording)
        state = kStateRecording;
    else if (m_control.bRunning)
        state = kStateRunning;
    SendSix(kStatus, state);
}

void CNetworkServer::SendAckCommand(int command)
{
    CServerLock const lock(this);
    if (lock)
        SendSix(kAcknowledge, static_cast<uint8_t>(command));
}

bool CNetworkServer::CheckClientConnection()
{
    CServerLock const lock(this);
    if (!lock)
        return false;
    if (m_bClientConnected)
    {
        m_bClientConnected = m_pRoute && m_pRoute->ClientConnected();
        return m_bClientConnected;
    }
    LogMessage("Client Disconnected... try to connect");
    // Every client that comes back would otherwise cost the application a descriptor.
    CDataRouteSockets* const old = m_pRoute;
    m_pRoute = nullptr;  // first: a fork may come at any moment, and its child looks
    delete old;
    m_pRoute = m_pHerd ? m_pHerd->poll() : nullptr;
    if (!m_pRoute)
    {
        LogMessage("Client Disconnected... fail to connect\n");
        return false;
    }
    LogMessage("Client Disconnected... connected\n");
    m_bClientConnected = true;
    return true;
}

CNetworkServer::SNetStatus CNetworkServer::CheckStatus(SNetControl const& control)
{
    SNetStatus status{};
    CServerLock const lock(this, CLastingLock::EMode::Try);
    if (!lock)
    {
        // Another thread is at it, and can be held up by the client. This call is not: nothing is new for it.
        status.bConnected = !HasEnded() && m_bClientConnected;
        return status;
    }
    m_control = control;
    LookAfterConnection();
    status.bConnected = m_bClientConnected;
    if (!status.bConnected)
        return status;
    if (IsDue(m_lastReceive) && !(Receive(status) && TakeCommand(status)))
        return status;
    if (IsDue(m_lastStatus))
        SendStatus();
    return status;
}

unsigned int CNetworkServer::GetTime()
{
    static uint32_t const first = NowMS();
    return NowMS() - first;
}

void CNetworkServer::Close() { SendDataFlush(true); }

void CNetworkServer::BroadCastIp() {}

void CNetworkServer::SendWaitingPlayClient() {}

bool CNetworkServer::AbandonAfterFork()
{
    // A thread of the parent's that was inside left the server half changed, and does not exist here.
    bool const busy = !ServerMutex().TryLock();
    ServerMutex().Init();
    if (!busy && !m_pRoute && m_sendBuffer.empty())
        return false;
    if (m_pRoute)
        m_pRoute->Abandon();
    m_pRoute = nullptr;
    if (m_pHerd)
        m_pHerd->shutdown();
    m_bClientConnected = false;
    new (&m_sendBuffer) CNEBTString;  // the old one is not freed: it may be half changed
    return true;
}
