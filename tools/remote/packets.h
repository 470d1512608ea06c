// The packets of a remote recording: what a traced application sends to its client over TCP.
//
//   data          08 44 31, u16 length, payload, 25; a length of 0 stands for 65,536
//   status        08 44 32, state, 01, 00
//   acknowledge   08 44 21, command, 01, 00
//
// Commands go the other way, three bytes each: 08 44 and the command.
#pragma once
#include "tools/byte_queue.h"
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace remote
{
constexpr uint16_t kPort = 54321;
constexpr uint16_t kAnnouncementPort = 6522;  // UDP

enum class Command : uint8_t
{
    Start = 0x40,
    Stop = 0x41,
    Resume = 0x42,
    Pause = 0x43
};

char const* CommandName(Command command);

// Why the application is where it is; the first that applies.
enum class State : uint8_t
{
    Waiting = 0x50,    // its calls are held until the client lets it go on
    Recording = 0x51,  // a recording is on
    Running = 0x52,    // it runs, and nothing is recorded
    Held = 0x53        // the client has paused it
};

// "recording"; "unknown" for another byte.
char const* StateName(State state);
bool IsHeld(State state);

struct Packet
{
    enum class Kind
    {
        Data,
        Status,
        Acknowledge
    };
    Kind kind = Kind::Data;
    uint8_t value = 0;             // of a status the state, of an acknowledgement the command
    std::vector<uint8_t> payload;  // of data
};

// Takes the stream apart. A sender whose client reads slowly gives up in the middle of a packet and sends
// that packet once more from its start: the broken piece is dropped.
class PacketReader
{
public:
    void Feed(uint8_t const* data, size_t size);

    // The next whole packet; false if there is none yet, or the stream has lost its step.
    bool Next(Packet& packet);

    // Why no packet can follow; empty while all is well.
    std::string const& Fault() const { return m_fault; }
    uint64_t Repeated() const { return m_repeated; }  // packets that came more than once

private:
    size_t PacketSize() const;
    bool DropBrokenPiece(size_t size);
    bool DropBrokenStart();
    std::string FaultOf(size_t size) const;
    void Take(size_t size, Packet& packet);

    ByteQueue m_bytes;  // from a packet's first byte on
    std::string m_fault;
    uint64_t m_repeated = 0;
};
}  // namespace remote
