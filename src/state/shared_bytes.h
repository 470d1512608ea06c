// Bytes that a frozen copy of a state shares with the live one.
//
// A freeze shares pointers instead of copying textures and buffers. The live state goes on: when it frees or
// changes bytes that are shared, the frozen copy must still find them as they were.
#pragma once
#include <cstdint>

namespace SharedBytes
{
// One more record points at the owner's bytes.
void Retain(uint8_t* bytes);
// A record that may share these bytes lets go of them. Frees what has no owner and no other sharer.
void Release(uint8_t* bytes);
// The owner lets go: freed at once, or with the last record that shares them.
void Disown(uint8_t* bytes);
bool IsShared(uint8_t* bytes);
}  // namespace SharedBytes
