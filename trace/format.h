// The constants of the trace file. All integers are little-endian, there is no padding.
//
//   header   62 bytes
//   records  u32 payload length, u16 ID, payload
//   footer   10 bytes: 0x13, 0x10, u64 position of the snapshot; missing when a recording did not end in
//   order
#pragma once
#include <cstddef>
#include <cstdint>

namespace nebtrace
{
// Header, by offset: 0 magic, 8 u32 marker, 12 u32 version, 16 u8 record data, 17 u8 frame buffer, 18 u32 1,
// 22 u8 length of the type table, 23 the type table, 54 u32 0, 58 u32 0.
constexpr size_t kHeaderSize = 62;
constexpr char kMagic[] = "NEBTrace";
constexpr size_t kMagicSize = 8;
constexpr uint32_t kMarker = 0xFFFE0100;
constexpr uint32_t kVersion = 14;
constexpr size_t kMarkerOffset = 8;
constexpr size_t kVersionOffset = 12;
constexpr size_t kRecordDataOffset = 16;
constexpr size_t kFrameBufferOffset = 17;
constexpr size_t kTypeTableSizeOffset = 22;
constexpr size_t kTypeTableOffset = 23;
constexpr size_t kTypeTableSize = 31;
constexpr int8_t kTypeTable[kTypeTableSize] = {4,  -4, 4,  4, 4, 4, 4, 4, 4,  4,  4,  4,  4, 1,  4, -1,
                                               -2, -4, -4, 1, 2, 4, 4, 4, -4, -4, -4, -4, 0, -4, -4};

constexpr size_t kRecordHeaderSize = 6;

constexpr size_t kFooterSize = 10;
constexpr uint8_t kFooterFirst = 0x13;
constexpr uint8_t kFooterSecond = 0x10;

// Records that are no calls. The thread change has a payload of 8 bytes, the others are empty.
constexpr uint16_t kThreadChangeId = 1;
constexpr uint16_t kEglStateId = 2;
constexpr uint16_t kEs1StateId = 3;
constexpr uint16_t kEs2StateId = 4;
constexpr uint32_t kThreadChangeSize = 8;

// A frame ends with this call, which belongs to it.
constexpr uint16_t kSwapBuffersId = 1022;

// From this ID up, ES 1 and ES 2 share the IDs, and the record's API byte tells whose call it is.
constexpr uint16_t kFirstSharedId = 4000;
constexpr uint8_t kApiByteEs1 = 1;
constexpr uint8_t kApiByteEs2 = 2;
}  // namespace nebtrace
