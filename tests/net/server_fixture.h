// A trace server in the test's own process, and a client of it.
#pragma once
#include "net/network_server.h"
#include "tests/net/client.h"

#include "tests/net/system_calls.h"
#include "tests/wrappers/recorder.h"
#include <algorithm>
#include <gtest/gtest.h>
#include <memory>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

using SNetStatus = CNetworkServer::SNetStatus;

inline Bytes Pattern(size_t size)
{
    Bytes bytes;
    for (size_t i = 0; i < size; ++i)
        bytes.push_back(static_cast<uint8_t>(i * 7 + i / 251));
    return bytes;
}

inline Bytes Slice(Bytes const& bytes, size_t from, size_t size)
{
    auto const begin = bytes.begin() + static_cast<std::ptrdiff_t>(from);
    return Bytes(begin, begin + static_cast<std::ptrdiff_t>(size));
}

inline Bytes DataPacket(uint16_t lengthField, Bytes const& payload)
{
    return Joined(Bytes{0x08, 0x44, 0x31}, U16(lengthField), payload, Bytes{0x25});
}

inline Bytes Command(uint8_t command) { return {0x08, 0x44, command}; }
inline Bytes Acknowledge(uint8_t command) { return {0x08, 0x44, 0x21, command, 0x01, 0x00}; }
inline Bytes Status(uint8_t state) { return {0x08, 0x44, 0x32, state, 0x01, 0x00}; }

// How much lies between `at` and the next whole packet; at most as much as the packet has, or all there is.
inline size_t BytesAheadOf(Bytes const& packet, Bytes const& received, size_t at)
{
    auto const from = received.begin() + static_cast<std::ptrdiff_t>(std::min(at, received.size()));
    auto const found = std::search(from, received.end(), packet.begin(), packet.end());
    EXPECT_TRUE(found != received.end()) << "no whole packet behind " << at;
    return std::min(packet.size(), static_cast<size_t>(found - from));
}

class NetworkServer : public testing::Test
{
protected:
    NetworkServer()
    {
        systemcalls::Reset();
        m_log += Printed([this] {
            m_server = std::make_unique<CNetworkServer>();
            EXPECT_TRUE(m_server->InitializeServer());
        });
        m_port = systemcalls::BoundPort();
    }
    ~NetworkServer() override
    {
        m_client.Close();
        Printed([this] { m_server.reset(); });
    }

    SNetStatus Check()
    {
        SNetStatus status{};
        m_log += Printed([&] { status = m_server->CheckStatus(m_control); });
        return status;
    }
    // The next pass that looks at the socket.
    SNetStatus CheckLater()
    {
        systemcalls::Advance(1001);
        return Check();
    }
    void Connect()
    {
        ASSERT_TRUE(m_client.Connect(m_port));
        while (!Check().bConnected)
            systemcalls::Advance(1001);
        m_client.Pending();
    }
    // What the server made of these bytes: the first pass that received anything.
    SNetStatus After(Bytes const& bytes)
    {
        m_client.Send(bytes);
        for (;;)
        {
            SNetStatus const status = CheckLater();
            if (status.bError || status.bStartRecording || status.bStopRecording || status.bPause ||
                status.bResume || status.bCloseRequest || !status.bConnected)
                return status;
        }
    }
    bool Send(Bytes const& bytes)
    {
        return m_server->SendData(reinterpret_cast<char const*>(bytes.data()),
                                  static_cast<int>(bytes.size()));
    }
    std::string Log()
    {
        std::string const log = m_log;
        m_log.clear();
        return log;
    }

    std::unique_ptr<CNetworkServer> m_server;
    CNetworkServer::SNetControl m_control{false, true, false, false};
    Client m_client;
    uint16_t m_port = 0;
    std::string m_log;
};
