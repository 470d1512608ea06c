#include "tools/remote/packets.h"
#include <algorithm>
#include <cstdio>
#include <cstring>

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

// Where a packet of data begins next, or may begin as far as is known; `end` for nowhere.
uint8_t const* NextStart(uint8_t const* from, uint8_t const* end)
{
    void const* found = nullptr;
    while ((found = std::memchr(from, kFirst, static_cast<size_t>(end - from))))
    {
        from = static_cast<uint8_t const*>(found);
        size_t const shown = std::min(kKindEnd, static_cast<size_t>(end - from));
        if (std::memcmp(from, kDataStart, shown) == 0)
            return from;
        ++from;
    }
    return end;
}

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

void PacketReader::Feed(uint8_t const* data, size_t size) { m_bytes.Add(data, size); }

// 0 while the first bytes do not tell.
size_t PacketReader::PacketSize() const
{
    if (m_bytes.Size() < kDataHead)
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
    uint8_t const* const begin = m_bytes.Data();
    uint8_t const* const end = begin + size;
    size_t const least = end[-1] == kDataEnd ? kProof : 1;
    for (uint8_t const* again = NextStart(begin + 1, end); again != end; again = NextStart(again + 1, end))
    {
        size_t const sent = static_cast<size_t>(again - begin);
        size_t const both = std::min(sent, size - sent);
        if (both >= least && std::equal(again, again + both, begin))
        {
            m_bytes.DropFront(sent);
            ++m_repeated;
            return true;
        }
    }
    return false;
}

// A packet that broke off within its head cannot be read on: its length, if there is one, is not its own.
bool PacketReader::DropBrokenStart()
{
    for (size_t sent = 1; sent < kDataHead && m_bytes.Size() >= sent + kDataHead; ++sent)
    {
        uint8_t const* const again = m_bytes.Data() + sent;
        if (std::equal(std::begin(kDataStart), std::end(kDataStart), again) &&
            std::equal(m_bytes.Data(), again, again))
        {
            m_bytes.DropFront(sent);
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
    bool const isData = m_bytes[2] == kData;
    packet.kind = isData                  ? Packet::Kind::Data
                  : m_bytes[2] == kStatus ? Packet::Kind::Status
                                          : Packet::Kind::Acknowledge;
    packet.value = m_bytes[3];
    packet.payload.clear();
    if (isData)
        packet.payload.assign(m_bytes.Data() + kDataHead, m_bytes.Data() + size - 1);
    m_bytes.DropFront(size);
}

bool PacketReader::Next(Packet& packet)
{
    for (;;)
    {
        while (DropBrokenStart())
        {
        }
        size_t const size = PacketSize();
        if (!m_fault.empty() || size == 0 || size > m_bytes.Size())
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
