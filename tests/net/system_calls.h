// Stands in front of some of libc's calls in a test program, so that no test waits for a clock and two
// programs never want the same port: the wall clock stands still until a test moves it, sleeping takes no
// time, and a socket that is bound to one of the recorder's fixed ports is given a free one.
#pragma once
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

namespace systemcalls
{

// As at the start: nothing slept, no hooks. The clock only ever goes on.
void Reset();

// Moves the wall clock on.
void Advance(uint32_t milliseconds);
// Moves it on by as much at each look from now on.
void AdvanceAtEachLook(uint32_t milliseconds);

// What was slept, in microseconds, in order.
std::vector<unsigned int> Slept();
// Runs inside each sleep from now on.
void OnSleep(std::function<void()> action);

// The port that the last bind to a fixed port was given; 0 when there was none since Reset.
uint16_t BoundPort();
// The next bind to a fixed port takes this one instead, taken or not.
void BindNextTo(uint16_t port);

// A datagram that was to go to the network. It goes to the last bound port of this machine instead.
struct Datagram
{
    std::string host;
    uint16_t port;
    std::string bytes;
    bool mayBroadcast;
};
std::vector<Datagram> Sent();

}  // namespace systemcalls
