// What is tied to an operating system. One implementation per system: linux.cpp, qnx.cpp.
#pragma once
#include <cstddef>
#include <cstdint>

namespace Platform
{
// The calling thread's ID as the system counts it, sign-extended to 64 bits.
uint64_t ThreadId();

// One line to the system's logger. Systems without a logger of that kind ignore code and severity.
void SystemLog(int code, int severity, char const* text);

// A network interface with its IPv4 address, the bytes in the order in which an address is written.
struct SInterface
{
    char name[32];
    uint8_t address[4];
};
constexpr int kMostInterfaces = 100;
// The machine's interfaces, as the system lists them through any socket; returns how many there are.
int ListInterfaces(int socket, SInterface (&interfaces)[kMostInterfaces]);

// Hands as much to the socket as it takes at the moment. Returns the number of bytes, or -1 with errno. Never
// raises SIGPIPE: a peer that has gone is an error like any other.
long SendNow(int socket, void const* data, size_t size);
}  // namespace Platform
