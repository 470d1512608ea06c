// What the trace server does for each API call: it looks after the connection and takes the client's
// commands.
#include "net/network_server.h"
#include "net/protocol.h"
#include <cstring>

using namespace NetProtocol;

namespace
{

constexpr uint32_t kSecond = 1000;
constexpr uint32_t kConnectedCheck = 10 * kSecond;

}  // namespace

// Whether more than a second has passed; the time then counts from now.
bool CNetworkServer::IsDue(uint32_t& last)
{
    uint32_t const now = GetTime();
    if (now - last <= kSecond)
        return false;
    last = now;
    return true;
}

void CNetworkServer::LookAfterConnection()
{
    uint32_t const now = GetTime();
    uint32_t const passed = now - m_lastConnectionCheck;
    if (passed <= (m_bClientConnected ? kConnectedCheck : kSecond))
        return;
    m_lastConnectionCheck = now;
    CheckClientConnection();
}

void CNetworkServer::Disconnect(SNetStatus& status, bool error)
{
    status.bConnected = false;
    status.bError = error;
    m_bClientConnected = false;
}

// Appends what has come to the command buffer. False ends the pass.
bool CNetworkServer::Receive(SNetStatus& status)
{
    unsigned int count = 0;
    int const result = m_pRoute ? m_pRoute->DataReceiveData(m_pReceiveBuffer, kMostPayload, &count) : 0;
    if (result == 1)
        return false;  // on purpose: no status packet in this pass either
    if (result != 3)
    {
        Disconnect(status, result == 0);
        return false;
    }
    if (count > kMostPayload - static_cast<uint32_t>(m_commandLength))
    {
        m_commandLength = 0;
        status.bError = true;
        return false;
    }
    std::memcpy(m_pCommandBuffer + m_commandLength, m_pReceiveBuffer, count);
    m_commandLength += static_cast<int>(count);
    return true;
}

// On purpose: a command is always read from the start of the buffer, which is never shifted. Two commands in
// one receive leave three bytes counted, so that the next receive lands behind the first command, which is
// acted on again.
bool CNetworkServer::TakeCommand(SNetStatus& status)
{
    if (m_commandLength < kCommandSize)
        return true;
    auto const* const bytes = reinterpret_cast<uint8_t const*>(m_pCommandBuffer);
    bool const marked = bytes[0] == kMark0 && bytes[1] == kMark1;
    if (marked && ActOn(bytes[2], status))
    {
        m_commandLength -= kCommandSize;
        return true;
    }
    m_commandLength = 0;
    status.bError = true;
    return marked;
}

// The acknowledgement's place among the buffered data is part of the protocol. False for an unknown command.
bool CNetworkServer::ActOn(uint8_t command, SNetStatus& status)
{
    switch (command)
    {
    case kCommandStart:
        SendAckCommand(kCommandStart);
        status.bStartRecording = true;
        return true;
    case kCommandStop:
        SendDataFlush(true);
        SendAckCommand(kCommandStop);
        status.bStopRecording = true;
        return true;
    case kCommandResume:
        SendAckCommand(kCommandResume);
        status.bResume = true;
        return true;
    case kCommandPause:
        SendAckCommand(kCommandPause);
        SendDataFlush(true);
        status.bPause = true;
        return true;
    case kCommandClose:
        // On purpose: acknowledged as a pause.
        SendAckCommand(kCommandPause);
        SendDataFlush(true);
        status.bCloseRequest = true;
        return true;
    default:
        return false;
    }
}
