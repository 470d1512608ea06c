#include "tools/remote/packets.h"
#include <algorithm>
#include <cstdio>

namespace remote
{
namespace
{
constexpr uint8_t kFirst = 0x08;
constexpr uint8_t kSecond = 0x44;
constexpr uint8_t kData = 0x31;
constexpr uint8_t kStatus = 0x32;
constexpr uint8_t kAcknowledge = 0x21;
constexpr uint8_t kDataEnd = 0x25;
constexpr uint8_t kDataStart[] = {kFirst, kSecond, kData};
constexpr size_t kKindEnd = sizeof kDataStart;
constexpr size_t kDataHead = 5;
constexpr size_t kProof = 16;  // bytes that do not stand twice in a packet by chance
constexpr size_t kShortPacket = 6;
constexpr size_t kLargestPayload = 65536;

std::string Hex(uint8_t byte)
{
    char text[8];
    std::snprintf(text, sizeof text, "0x%02x", byte);
    return text;
}
}  // namespace

char const* CommandName(Command command)
{
    switch (command)
    {
    case Command::Start:
        return "start";
    case Command::Stop:
        return "stop";
    case Command::Resume:
        return "resume";
    default:
        return "pause";
    }
}

char const* StateName(State state)
{
    switch (state)
    {
    case State::Waiting:
        return "waiting for its client";
    case State::Recording:
        return "recording";
    case State::Running:
        return "running";
    case State::Held:
        return "held";
    default:
        return "unknown";
    }
}

bool IsHeld(State state) { return state == State::Waiting || state == State::Held; }

void PacketReader::Feed(uint8_t const* data, size_t size)
{
    m_bytes.insert(m_bytes.end(), data, data + size);
}

// 0 while the first bytes do not tell.
size_t PacketReader::PacketSize() const
{
    if (m_bytes.size() < kDataHead)
        return 0;
    // No kind, but maybe the packet again behind its first two bytes: its head has to be there to tell.
    if (m_bytes[2] == kFirst)
        return kDataHead + 2;
    if (m_bytes[2] != kData)
        return kShortPacket;
    size_t const length = m_bytes[3] + size_t{m_bytes[4]} * 256;
    return kDataHead + (length == 0 ? kLargestPayload : length) + 1;
}

// Behind what came of a packet stands the packet from its start: the same bytes again, as far as both reach.
// Where the packet ends as it should, little sameness is no proof.
bool PacketReader::DropBrokenPiece(size_t size)
{
    size_t const least = m_bytes[size - 1] == kDataEnd ? kProof : 1;
    for (size_t sent = 1; sent < size; ++sent)
    {
        size_t const both = std::min(sent, size - sent);
        size_t const shown = std::min(kKindEnd, size - sent);
        auto const again = m_bytes.begin() + static_cast<std::ptrdiff_t>(sent);
        if (both >= least && std::equal(std::begin(kDataStart), std::begin(kDataStart) + shown, again) &&
            std::equal(again, again + static_cast<std::ptrdiff_t>(both), m_bytes.begin()))
        {
            m_bytes.erase(m_bytes.begin(), again);
            ++m_repeated;
            return true;
        }
    }
    return false;
}

// A packet that broke off within its head cannot be read on: its length, if there is one, is not its own.
bool PacketReader::DropBrokenStart()
{
    for (size_t sent = 1; sent < kDataHead && m_bytes.size() >= sent + kDataHead; ++sent)
    {
        auto const again = m_bytes.begin() + static_cast<std::ptrdiff_t>(sent);
        if (std::equal(std::begin(kDataStart), std::end(kDataStart), again) &&
            std::equal(m_bytes.begin(), again, again))
        {
            m_bytes.erase(m_bytes.begin(), again);
            ++m_repeated;
            return true;
        }
    }
    return false;
}

// Of the packet that stands first, which is there as a whole.
std::string PacketReader::FaultOf(size_t size) const
{
    uint8_t const kind = m_bytes[2];
    if (m_bytes[0] != kFirst || m_bytes[1] != kSecond)
        return "no packet begins with " + Hex(m_bytes[0]) + " " + Hex(m_bytes[1]);
    if (kind != kData && kind != kStatus && kind != kAcknowledge)
        return "there is no packet of kind " + Hex(kind);
    if (kind == kData && m_bytes[size - 1] != kDataEnd)
        return "a packet of data ends with " + Hex(m_bytes[size - 1]);
    return {};
}

void PacketReader::Take(size_t size, Packet& packet)
{
    auto const begin = m_bytes.begin();
    auto const end = begin + static_cast<std::ptrdiff_t>(size);
    bool const isData = m_bytes[2] == kData;
    packet.kind = isData                  ? Packet::Kind::Data
                  : m_bytes[2] == kStatus ? Packet::Kind::Status
                                          : Packet::Kind::Acknowledge;
    packet.value = m_bytes[3];
    packet.payload.clear();
    if (isData)
        packet.payload.assign(begin + kDataHead, end - 1);
    m_bytes.erase(begin, end);
}

bool PacketReader::Next(Packet& packet)
{
    for (;;)
    {
        while (DropBrokenStart())
        {
        }
        size_t const size = PacketSize();
        if (!m_fault.empty() || size == 0 || size > m_bytes.size())
            return false;
        bool const isData = m_bytes[0] == kFirst && m_bytes[1] == kSecond && m_bytes[2] == kData;
        if (isData && DropBrokenPiece(size))
            continue;
        m_fault = FaultOf(size);
        if (!m_fault.empty())
            return false;
        Take(size, packet);
        return true;
    }
}
}  // namespace remote
