// The packets between the trace server and its client. docs/remote-protocol.md tells how they are used.
#pragma once
#include <cstdint>

namespace NetProtocol
{

constexpr uint16_t kServerPort = 54321;

// Every packet and command begins with these two bytes.
constexpr uint8_t kMark0 = 0x08;
constexpr uint8_t kMark1 = 0x44;

// Server to client. Data: mark, kind, u16 length of the payload, its low 16 bits, the payload, kDataEnd.
// The others: mark, kind, one byte, 01, 00.
constexpr uint8_t kData = 0x31;
constexpr uint8_t kStatus = 0x32;
constexpr uint8_t kAcknowledge = 0x21;
constexpr uint8_t kDataEnd = 0x25;
constexpr uint32_t kDataHeaderSize = 5;
constexpr uint32_t kDataOverhead = 6;
constexpr uint32_t kMostPayload = 65536;

// The byte of a status packet.
constexpr uint8_t kStateWaiting = 0x50;
constexpr uint8_t kStateRecording = 0x51;
constexpr uint8_t kStateRunning = 0x52;
constexpr uint8_t kStateHeld = 0x53;

// Client to server: mark, command.
constexpr uint8_t kCommandStart = 0x40;
constexpr uint8_t kCommandStop = 0x41;
constexpr uint8_t kCommandResume = 0x42;
constexpr uint8_t kCommandPause = 0x43;
constexpr uint8_t kCommandClose = 0x45;
constexpr int kCommandSize = 3;

}  // namespace NetProtocol
