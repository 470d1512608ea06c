// What an application sends to the performance server. The first byte says how small the pieces are that the
// stream comes in.
#include "fuzz/input.h"
#include "tools/perf/blocks.h"

using namespace perf;

namespace
{
struct Outcome
{
    std::vector<Block> blocks;
    std::string fault;
    std::optional<uint32_t> process;

    bool operator==(Outcome const& other) const
    {
        auto const same = [](Block const& a, Block const& b) {
            return a.identifier == b.identifier && a.payload == b.payload;
        };
        return fault == other.fault && process == other.process &&
               std::equal(blocks.begin(), blocks.end(), other.blocks.begin(), other.blocks.end(), same);
    }
};

Outcome Understood(std::string const& stream, size_t piece)
{
    Outcome outcome;
    BlockReader reader;
    for (size_t at = 0; at < stream.size(); at += piece)
    {
        reader.Feed(stream.data() + at, std::min(piece, stream.size() - at));
        for (Block block; reader.Next(block);)
            outcome.blocks.push_back(block);
    }
    outcome.fault = reader.Fault();
    outcome.process = reader.Process();
    return outcome;
}

void Parse(std::string const& payload)
{
    if (auto const name = ParseLibraryName(payload))
        fuzz::Require(name->size() <= payload.size(), "a name is no longer than its block");
    if (auto const items = ParseItems(payload))
        for (Item const& item : *items)
            fuzz::Require(item.name.size() + item.value.size() <= payload.size(), "an item fits its block");
    if (auto const names = ParseCounterNames(payload))
        for (std::string const& name : *names)
            fuzz::Require(name.size() <= payload.size(), "a counter's name fits its block");
    if (auto const sample = ParseCounters(payload))
        fuzz::Require(sample->values.size() * 4 + 4 == payload.size(), "a value for each word");
    if (auto const text = ParseMark(payload))
        fuzz::Require(text->size() + 4 == payload.size(), "a mark is its block's rest");
}
}  // namespace

int LLVMFuzzerTestOneInput(uint8_t const* data, size_t size)
{
    fuzz::Input input(data, size);
    size_t const piece = input.Byte() % 32 + size_t{1};
    std::string const stream = input.Rest();
    Outcome const whole = Understood(stream, stream.size() + 1);
    fuzz::Require(Understood(stream, piece) == whole, "pieces are understood as the whole is");
    for (Block const& block : whole.blocks)
        Parse(block.payload);
    return 0;
}
