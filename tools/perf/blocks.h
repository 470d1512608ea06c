// What an application sends to the performance server: two words of greeting, then blocks, each with a
// description word. Nothing in it is trusted: a length counts for as much as has come.
#pragma once
#include "tools/byte_queue.h"
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace perf
{
// Something that the server may change while the application runs.
struct Item
{
    std::string name;
    uint32_t type = 0;
    std::string value;
};

// A block of counters: cumulative values, and the application's clock.
struct Sample
{
    uint32_t time = 0;  // microseconds; wraps
    std::vector<uint32_t> values;
};

struct Block
{
    uint32_t identifier = 0;
    std::string payload;
};

// Takes the stream apart.
class BlockReader
{
public:
    void Feed(char const* bytes, size_t size);
    // The next block that the server has a use for, once it is whole; others are skipped.
    bool Next(Block& block);

    // The process ID of the greeting, once it is there.
    std::optional<uint32_t> Process() const { return m_process; }
    // Set once the stream can only be misread from here on.
    std::string const& Fault() const { return m_fault; }

private:
    bool TakeGreeting();
    uint32_t WordAt(size_t offset) const;
    void Drop(size_t count);

    ByteQueue m_bytes;
    size_t m_skip = 0;  // of a block without use, still to come
    std::optional<uint32_t> m_process;
    std::string m_fault;
};

// Payloads; nothing where one contradicts itself.
std::optional<std::string> ParseLibraryName(std::string const& payload);
std::optional<std::vector<Item>> ParseItems(std::string const& payload);
std::optional<std::vector<std::string>> ParseCounterNames(std::string const& payload);
std::optional<Sample> ParseCounters(std::string const& payload);
// The text of a mark.
std::optional<std::string> ParseMark(std::string const& payload);
}  // namespace perf
