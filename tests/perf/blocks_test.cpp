// The stream of an application taken apart, whole or not.
#include "tools/perf/blocks.h"
#include <gtest/gtest.h>
#include <random>

using namespace perf;

namespace
{
std::string Word(uint32_t value)
{
    std::string bytes;
    for (int shift = 0; shift < 32; shift += 8)
        bytes += static_cast<char>(value >> shift & 0xFF);
    return bytes;
}

std::string Words(std::initializer_list<uint32_t> values)
{
    std::string bytes;
    for (uint32_t const value : values)
        bytes += Word(value);
    return bytes;
}

std::string Head(uint32_t identifier, size_t info)
{
    return Word(identifier << 24 | static_cast<uint32_t>(info));
}

std::string BlockOf(uint32_t identifier, std::string const& payload)
{
    return Head(identifier, payload.size()) + payload;
}

std::string const kGreeting = Words({14, 4711});

// "identifier:payload size" of all blocks that the reader gives.
std::string BlocksOf(BlockReader& reader)
{
    std::string all;
    for (Block block; reader.Next(block);)
        all += std::to_string(block.identifier) + ":" + std::to_string(block.payload.size()) + " ";
    return all;
}

std::string const kItems =
    Words({2}) + Word(6) + "Switch" + Words({4, 1}) + '\1' + Word(4) + "List" + Words({3, 5}) + "0\nA\nB";
std::string const kNames = Words({99, 2}) + Word(5) + "Draws" + Word(3) + "CPU";
}  // namespace

// The greeting has the process ID; then come blocks, however the bytes are cut.
TEST(BlockReader, GivesBlocksHoweverTheyAreCut)
{
    std::string const stream = kGreeting + BlockOf(80, Word(3) + "App") + BlockOf(100, kItems) +
                               BlockOf(132, kNames) + BlockOf(136, Words({7, 1, 2})) + Head(144, 0);
    for (size_t const piece : {size_t{1}, size_t{3}, size_t{7}, stream.size()})
    {
        BlockReader reader;
        std::string blocks;
        for (size_t at = 0; at < stream.size(); at += piece)
        {
            reader.Feed(stream.data() + at, std::min(piece, stream.size() - at));
            blocks += BlocksOf(reader);
        }
        EXPECT_EQ(4711u, reader.Process());
        EXPECT_EQ("80:7 100:44 132:24 136:12 144:0 ", blocks);
        EXPECT_EQ("", reader.Fault());
    }
}

// Blocks without use are skipped by their size, also a size that has not come; those whose info is a value
// have nothing to skip.
TEST(BlockReader, SkipsWhatItHasNoUseFor)
{
    BlockReader reader;
    std::string const stream = kGreeting + BlockOf(200, std::string(60, 'x')) + BlockOf(250, "?") +
                               Head(32, 0xFFFFFF) + Head(36, 7) + Head(64, 12) + BlockOf(188, Word(1)) +
                               BlockOf(136, Word(5)) + Head(177, 0xFFFFFF);
    reader.Feed(stream.data(), stream.size());
    EXPECT_EQ("136:4 ", BlocksOf(reader));
    std::string const rest(0xFFFFFF - 100, '\x90');
    reader.Feed(rest.data(), rest.size());
    EXPECT_EQ("", BlocksOf(reader));
    std::string const more = std::string(100, '\x90') + Head(144, 0);
    reader.Feed(more.data(), more.size());
    EXPECT_EQ("144:0 ", BlocksOf(reader));
}

// A stream that does not begin as an application's is nobody's.
TEST(BlockReader, AnotherGreetingIsAFault)
{
    BlockReader reader;
    std::string const stream = Words({15, 4711}) + BlockOf(136, Word(5));
    reader.Feed(stream.data(), stream.size());
    EXPECT_EQ("", BlocksOf(reader));
    EXPECT_EQ("it does not begin with the greeting", reader.Fault());
    EXPECT_FALSE(reader.Process());
}

// Names, items and counters, as they lie in their blocks.
TEST(Payloads, AreRead)
{
    EXPECT_EQ("App", ParseLibraryName(Word(3) + "App"));
    EXPECT_EQ("", ParseLibraryName(Word(0)));
    auto const items = ParseItems(kItems);
    ASSERT_TRUE(items);
    ASSERT_EQ(2u, items->size());
    EXPECT_EQ("Switch", items->at(0).name);
    EXPECT_EQ(4u, items->at(0).type);
    EXPECT_EQ("\1", items->at(0).value);
    EXPECT_EQ("List", items->at(1).name);
    EXPECT_EQ(3u, items->at(1).type);
    EXPECT_EQ("0\nA\nB", items->at(1).value);
    EXPECT_EQ((std::vector<std::string>{"Draws", "CPU"}), ParseCounterNames(kNames));
    auto const sample = ParseCounters(Words({7, 1, 0xFFFFFFFF}));
    ASSERT_TRUE(sample);
    EXPECT_EQ(7u, sample->time);
    EXPECT_EQ((std::vector<uint32_t>{1, 0xFFFFFFFF}), sample->values);
    EXPECT_EQ("text", ParseMark(Word(7) + "text"));
    EXPECT_EQ("", ParseMark(Word(7)));
}

// Every cut of a payload is found, and lengths or counts that nothing could hold are not believed.
TEST(Payloads, ContradictionsAreFound)
{
    for (size_t size = 0; size < kItems.size(); ++size)
        EXPECT_FALSE(ParseItems(kItems.substr(0, size))) << size;
    for (size_t size = 0; size < kNames.size(); ++size)
        EXPECT_FALSE(ParseCounterNames(kNames.substr(0, size))) << size;
    EXPECT_FALSE(ParseItems(Words({0xFFFFFFFF})));
    EXPECT_FALSE(ParseItems(Words({1, 0xFFFFFFFF, 4, 1}) + "x"));
    EXPECT_FALSE(ParseItems(Words({1, 0, 4, 0xFFFFFFFF}) + "x"));
    EXPECT_FALSE(ParseCounterNames(Words({0, 0xFFFFFFFF})));
    EXPECT_FALSE(ParseLibraryName(Word(4) + "App"));
    EXPECT_FALSE(ParseLibraryName(""));
    EXPECT_FALSE(ParseCounters("abc"));
    EXPECT_FALSE(ParseCounters(Word(1) + "abc"));
    EXPECT_FALSE(ParseMark("abc"));
}

// As many blocks as have room in one piece are no more work each than one alone.
TEST(BlockReader, ManyBlocksInOnePiece)
{
    std::string stream = kGreeting;
    constexpr int kMany = 200000;
    for (int i = 0; i < kMany; ++i)
        stream += BlockOf(136, Word(static_cast<uint32_t>(i)));
    BlockReader reader;
    reader.Feed(stream.data(), stream.size());
    uint32_t next = 0;
    for (Block block; reader.Next(block);)
        ASSERT_EQ(Word(next++), block.payload);
    EXPECT_EQ(uint32_t{kMany}, next);
}

// Bytes of chance never lead out of anything.
TEST(BlockReader, TakesAnything)
{
    std::mt19937 chance(4711);
    for (int run = 0; run < 200; ++run)
    {
        BlockReader reader;
        reader.Feed(kGreeting.data(), kGreeting.size());
        std::string bytes(2000, '\0');
        for (char& byte : bytes)
            byte = static_cast<char>(chance());
        reader.Feed(bytes.data(), bytes.size());
        for (Block block; reader.Next(block);)
        {
            EXPECT_LE(block.payload.size(), bytes.size());
            ParseItems(block.payload);
            ParseCounterNames(block.payload);
            ParseCounters(block.payload);
        }
        EXPECT_EQ("", reader.Fault());
    }
}
