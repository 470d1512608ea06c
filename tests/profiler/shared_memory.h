// Stands in front of libc's calls for shared memory in a test program: every name gets a prefix of this run,
// so that tests run beside each other and beside a real server, and what is left over can be found.
#pragma once
#include "profiler/data_path.h"
#include <cstdint>
#include <functional>
#include <string>
#include <sys/types.h>
#include <vector>

namespace sharedmemory
{

// The names of all objects of this run, without the prefix, sorted.
std::vector<std::string> Objects();
// An object's size; -1 when there is none.
long SizeOf(std::string const& name);
// Its access rights.
mode_t ModeOf(std::string const& name);
// As another process would find it.
std::vector<uint8_t> ContentOf(std::string const& name, size_t size);
void Write(std::string const& name, size_t offset, std::vector<uint8_t> const& bytes);
// Whether somebody holds the mutex in the object.
bool IsLocked(std::string const& name);
// Runs once, before the object of that name is opened or made next.
void BeforeOpening(std::string const& name, std::function<void()> action);
// Removes all of this run.
void Clear();

}  // namespace sharedmemory

// Waits, without a clock, until the thread of this process sleeps in the kernel.
void AwaitSleepOf(pid_t thread);
pid_t ThisThread();

// Keeps what the transport has to say.
class Messages : public SToPrintf
{
public:
    void Print(char const* message) override { text += message; }

    std::string text;
};
