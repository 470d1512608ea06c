#include "tools/perf/blocks.h"
#include "profiler/comms_blocks.h"
#include "profiler/npl.h"
#include <algorithm>
#include <cstring>

namespace perf
{
namespace
{
constexpr size_t kWord = 4;

uint32_t WordOf(void const* bytes, size_t offset)
{
    uint32_t word = 0;
    std::memcpy(&word, static_cast<char const*>(bytes) + offset, kWord);
    return word;
}

// For these the info is a value, and nothing follows.
bool IsWithoutPayload(uint32_t identifier)
{
    return identifier == eRcSettings || identifier == eRcSettingsNEBScope ||
           identifier == eRcSendDescription || identifier == eRcShutdown;
}

bool IsOfUse(uint32_t identifier)
{
    return identifier == eRcLibraryName || identifier == eRcLibraryItems ||
           identifier == eRcCounterDescription || identifier == eRcCounters || identifier == eRcMark ||
           identifier == eRcShutdown;
}

// Reads a payload from its start; once something is missing, all that follows is missing too.
class Cursor
{
public:
    explicit Cursor(std::string const& payload) : m_payload(payload) {}

    uint32_t Word()
    {
        if (!Has(kWord))
            return 0;
        m_position += kWord;
        return WordOf(m_payload.data(), m_position - kWord);
    }
    std::string Bytes(size_t count)
    {
        if (!Has(count))
            return {};
        m_position += count;
        return m_payload.substr(m_position - count, count);
    }
    std::string Text() { return Bytes(Word()); }
    size_t Left() const { return m_payload.size() - m_position; }
    bool IsWhole() const { return m_whole; }

private:
    bool Has(size_t count)
    {
        m_whole = m_whole && count <= Left();
        return m_whole;
    }

    std::string const& m_payload;
    size_t m_position = 0;
    bool m_whole = true;
};

template <typename Value>
std::optional<Value> IfWhole(Cursor const& cursor, Value value)
{
    return cursor.IsWhole() ? std::optional<Value>(std::move(value)) : std::nullopt;
}
}  // namespace

void BlockReader::Feed(char const* bytes, size_t size)
{
    size_t const skipped = std::min(m_skip, size);
    m_skip -= skipped;
    m_bytes.Add(reinterpret_cast<uint8_t const*>(bytes) + skipped, size - skipped);
}

uint32_t BlockReader::WordAt(size_t offset) const { return WordOf(m_bytes.Data(), offset); }

void BlockReader::Drop(size_t count)
{
    size_t const there = std::min(count, m_bytes.Size());
    m_skip = count - there;
    m_bytes.DropFront(there);
}

bool BlockReader::TakeGreeting()
{
    if (m_process)
        return true;
    if (m_bytes.Size() < 2 * kWord)
        return false;
    if (WordAt(0) != kCommsGreeting)
    {
        m_fault = "it does not begin with the greeting";
        return false;
    }
    m_process = WordAt(kWord);
    Drop(2 * kWord);
    return true;
}

bool BlockReader::Next(Block& block)
{
    if (!m_fault.empty() || !TakeGreeting())
        return false;
    while (m_bytes.Size() >= kWord)
    {
        uint32_t const description = WordAt(0);
        block.identifier = DataPathBlockDescriptionUnpackID(description);
        size_t const size =
            IsWithoutPayload(block.identifier) ? 0 : DataPathBlockDescriptionUnpackInfo(description);
        bool const ofUse = IsOfUse(block.identifier);
        if (ofUse && m_bytes.Size() < kWord + size)
            return false;
        if (ofUse)
            block.payload.assign(m_bytes.Data() + kWord, m_bytes.Data() + kWord + size);
        Drop(kWord + size);
        if (ofUse)
            return true;
    }
    return false;
}

std::optional<std::string> ParseLibraryName(std::string const& payload)
{
    Cursor cursor(payload);
    std::string name = cursor.Text();
    return IfWhole(cursor, std::move(name));
}

std::optional<std::vector<Item>> ParseItems(std::string const& payload)
{
    Cursor cursor(payload);
    uint32_t const count = cursor.Word();
    std::vector<Item> items;
    for (uint32_t i = 0; i < count && cursor.IsWhole(); ++i)
    {
        Item item;
        item.name = cursor.Text();
        item.type = cursor.Word();
        item.value = cursor.Text();
        items.push_back(std::move(item));
    }
    return IfWhole(cursor, std::move(items));
}

std::optional<std::vector<std::string>> ParseCounterNames(std::string const& payload)
{
    Cursor cursor(payload);
    cursor.Word();  // the time
    uint32_t const count = cursor.Word();
    std::vector<std::string> names;
    for (uint32_t i = 0; i < count && cursor.IsWhole(); ++i)
        names.push_back(cursor.Text());
    return IfWhole(cursor, std::move(names));
}

std::optional<Sample> ParseCounters(std::string const& payload)
{
    Cursor cursor(payload);
    Sample sample;
    sample.time = cursor.Word();
    while (cursor.IsWhole() && cursor.Left() != 0)
        sample.values.push_back(cursor.Word());
    return IfWhole(cursor, std::move(sample));
}

std::optional<std::string> ParseMark(std::string const& payload)
{
    Cursor cursor(payload);
    cursor.Word();  // the time
    std::string text = cursor.Bytes(cursor.Left());
    return IfWhole(cursor, std::move(text));
}
}  // namespace perf
