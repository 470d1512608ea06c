// What is tied to an operating system. One implementation per system: linux.cpp, qnx.cpp.
#pragma once
#include <cstdint>

namespace Platform
{
// The calling thread's ID as the system counts it, sign-extended to 64 bits.
uint64_t ThreadId();

// One line to the system's logger. Systems without a logger of that kind ignore code and severity.
void SystemLog(int code, int severity, char const* text);
}  // namespace Platform
