// Blocks on the wire, byte for byte.
#include "profiler/comms_blocks.h"
#include "tests/profiler/scripted_path.h"
#include <gtest/gtest.h>
#include <string>

namespace
{

class CommsBlocks : public testing::Test
{
protected:
    ScriptedPath path;
};

// An identifier that no description word can hold.
constexpr auto kTooLarge = static_cast<ERcIdentifier>(256);

}  // namespace

// The description word: the identifier in the highest byte, the info below.
TEST(CommsDescriptions, PackAndUnpack)
{
    EXPECT_EQ(0x88000070u, DataPathBlockDescriptionPack(eRcCounters, 112));
    EXPECT_EQ(0x20345678u, DataPathBlockDescriptionPack(eRcSettings, 0x12345678)) << "the info is cut";
    EXPECT_EQ(eRcCounters, DataPathBlockDescriptionUnpackID(0x88000070));
    EXPECT_EQ(112u, DataPathBlockDescriptionUnpackInfo(0x88000070));
    EXPECT_EQ(255u, static_cast<uint32_t>(DataPathBlockDescriptionUnpackID(0xFFFFFFFF)));
    EXPECT_EQ(0xFFFFFFu, DataPathBlockDescriptionUnpackInfo(0xFFFFFFFF));
}

// The numbers are what the other end knows.
TEST(CommsDescriptions, Identifiers)
{
    EXPECT_EQ(32u, eRcSettings);
    EXPECT_EQ(36u, eRcSettingsNEBScope);
    EXPECT_EQ(64u, eRcSendDescription);
    EXPECT_EQ(80u, eRcLibraryName);
    EXPECT_EQ(100u, eRcLibraryItems);
    EXPECT_EQ(112u, eRcChangeItem);
    EXPECT_EQ(132u, eRcCounterDescription);
    EXPECT_EQ(136u, eRcCounters);
    EXPECT_EQ(144u, eRcShutdown);
    EXPECT_EQ(177u, eRcInitialData);
    EXPECT_EQ(180u, eRcEvent);
    EXPECT_EQ(184u, eRcMark);
    EXPECT_EQ(188u, eRcCPUTime);
    EXPECT_EQ(192u, eRcCPUUsage);
    EXPECT_EQ(200u, eRcRegReadHost);
}

// What does not fit is refused before the first byte; what just fits goes out.
TEST_F(CommsBlocks, DescriptionsHaveABound)
{
    EXPECT_TRUE(DataPathSendBlockDescription(path, eRcMark, 0xFFFFFF));
    EXPECT_EQ((Bytes{0xFF, 0xFF, 0xFF, 184}), path.TakeSent());
    EXPECT_FALSE(DataPathSendBlockDescription(path, eRcMark, 0x1000000));
    EXPECT_FALSE(DataPathSendBlockDescription(path, kTooLarge, 0));
    EXPECT_EQ(Bytes(), path.sent);
    EXPECT_TRUE(DataPathSendBlockDescription(path, static_cast<ERcIdentifier>(255), 0));
    EXPECT_EQ((Bytes{0, 0, 0, 255}), path.sent);
}

// Blocks whose info is the value itself.
TEST_F(CommsBlocks, WithoutPayload)
{
    EXPECT_TRUE(DataPathSendSettings(path, 0x010203));
    EXPECT_EQ((Bytes{3, 2, 1, 32}), path.TakeSent());
    EXPECT_FALSE(DataPathSendSettings(path, 0x1000000));
    EXPECT_TRUE(DataPathSendSettingsNEBScope(path, true, false, false));
    EXPECT_TRUE(DataPathSendSettingsNEBScope(path, false, true, false));
    EXPECT_TRUE(DataPathSendSettingsNEBScope(path, false, false, true));
    EXPECT_TRUE(DataPathSendSettingsNEBScope(path, true, true, true));
    EXPECT_EQ((Bytes{1, 0, 0, 36, 2, 0, 0, 36, 4, 0, 0, 36, 7, 0, 0, 36}), path.TakeSent());
}

// The generic writers, of words alone.
TEST_F(CommsBlocks, Words)
{
    EXPECT_TRUE(DataPathSend1uint(path, eRcCPUTime, 0x04030201));
    EXPECT_EQ((Bytes{4, 0, 0, 188,  // description
                     1, 2, 3, 4}),  // a
              path.TakeSent());
    EXPECT_TRUE(DataPathSend2uint(path, eRcCPUTime, 1, 2));
    EXPECT_EQ((Bytes{8, 0, 0, 188,  // description
                     1, 0, 0, 0,    // a
                     2, 0, 0, 0}),  // b
              path.TakeSent());
    unsigned int const values[] = {5, 6};
    EXPECT_TRUE(DataPathSenduintarray(path, eRcCPUTime, 2, values));
    EXPECT_EQ((Bytes{12, 0, 0, 188,             // description
                     2, 0, 0, 0,                // n
                     5, 0, 0, 0, 6, 0, 0, 0}),  // values
              path.TakeSent());
    EXPECT_TRUE(DataPathSenduintarray(path, eRcCPUTime, 0, nullptr));
    EXPECT_EQ((Bytes{4, 0, 0, 188, 0, 0, 0, 0}), path.TakeSent());
}

// The generic writers, with bytes: the first has no length of its own.
TEST_F(CommsBlocks, WordsAndBytes)
{
    EXPECT_TRUE(DataPathSend1uintNbytes(path, eRcLibraryName, 3, "abc", 3));
    EXPECT_EQ((Bytes{7, 0, 0, 80,      // description
                     3, 0, 0, 0,       // a
                     'a', 'b', 'c'}),  // bytes
              path.TakeSent());
    EXPECT_TRUE(DataPathSend1uint1String(path, eRcLibraryName, 9, "abc", 3));
    EXPECT_EQ((Bytes{11, 0, 0, 80,     // description
                     9, 0, 0, 0,       // a
                     3, 0, 0, 0,       // n
                     'a', 'b', 'c'}),  // bytes
              path.TakeSent());
    EXPECT_TRUE(DataPathSend2uint1String(path, eRcLibraryName, 8, 9, "a", 1));
    EXPECT_EQ((Bytes{13, 0, 0, 80,  // description
                     8, 0, 0, 0,    // a
                     9, 0, 0, 0,    // b
                     1, 0, 0, 0,    // n
                     'a'}),         // bytes
              path.TakeSent());
}

// A length that would wrap the size of the block is refused, and nothing is read behind the pointer.
TEST_F(CommsBlocks, LengthsDoNotWrap)
{
    EXPECT_FALSE(DataPathSend1uintNbytes(path, eRcLibraryName, 0, nullptr, 0xFFFFFFFF));
    EXPECT_FALSE(DataPathSend1uint1String(path, eRcLibraryName, 0, nullptr, 0xFFFFFFFC));
    EXPECT_FALSE(DataPathSend2uint1String(path, eRcLibraryName, 0, 0, nullptr, 0xFFFFFFF8));
    EXPECT_FALSE(DataPathSenduintarray(path, eRcLibraryName, 0x3FFFFFFF, nullptr));
    EXPECT_FALSE(DataPathSendMark(path, 0, nullptr, 0xFFFFFC));
    EXPECT_EQ(Bytes(), path.sent);
}

// A mark is a time and a text without length or terminator.
TEST_F(CommsBlocks, Marks)
{
    EXPECT_TRUE(DataPathSendMark(path, 0x11223344, "go!", 3));
    EXPECT_EQ((Bytes{7, 0, 0, 184,            // description
                     0x44, 0x33, 0x22, 0x11,  // time
                     'g', 'o', '!'}),         // text
              path.TakeSent());
    EXPECT_TRUE(DataPathSendMark(path, 1, nullptr, 0));
    EXPECT_EQ((Bytes{4, 0, 0, 184, 1, 0, 0, 0}), path.TakeSent());
}

// Processor time and use.
TEST_F(CommsBlocks, CpuBlocks)
{
    EXPECT_TRUE(DataPathSendCPUTime(path, 258));
    EXPECT_EQ((Bytes{4, 0, 0, 188, 2, 1, 0, 0}), path.TakeSent());
    EXPECT_TRUE(DataPathSendCPUUsage(path, {{1, 2, 3}}));
    EXPECT_EQ((Bytes{12, 0, 0, 192,  // description
                     1, 0, 0, 0, 2, 0, 0, 0, 3, 0, 0, 0}),
              path.TakeSent());
}

// Fifteen words, in order.
TEST_F(CommsBlocks, Registers)
{
    EXPECT_TRUE(DataPathSendRegReadHost(path, {{1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15}}));
    EXPECT_EQ((Bytes{60, 0, 0, 200,  // description
                     1,  0, 0, 0,   2,  0, 0, 0, 3,  0, 0, 0, 4,  0, 0, 0, 5,  0, 0, 0,
                     6,  0, 0, 0,   7,  0, 0, 0, 8,  0, 0, 0, 9,  0, 0, 0, 10, 0, 0, 0,
                     11, 0, 0, 0,   12, 0, 0, 0, 13, 0, 0, 0, 14, 0, 0, 0, 15, 0, 0, 0}),
              path.TakeSent());
}

// An event has eight words, or all seventeen.
TEST_F(CommsBlocks, Events)
{
    SNEBScopeEvent const event{{1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16, 17}};
    EXPECT_TRUE(DataPathSendEvent(path, event, false));
    Bytes const shortOne = {32, 0, 0, 180,  // description
                            1,  0, 0, 0,   2, 0, 0, 0, 3, 0, 0, 0, 4, 0, 0, 0,
                            5,  0, 0, 0,   6, 0, 0, 0, 7, 0, 0, 0, 8, 0, 0, 0};
    EXPECT_EQ(shortOne, path.TakeSent());
    EXPECT_TRUE(DataPathSendEvent(path, event, true));
    Bytes longOne = shortOne;
    longOne[0] = 68;
    Bytes const rest = {9, 0, 0,  0, 10, 0, 0,  0, 11, 0, 0,  0, 12, 0, 0,  0, 13, 0,
                        0, 0, 14, 0, 0,  0, 15, 0, 0,  0, 16, 0, 0,  0, 17, 0, 0,  0};
    longOne.insert(longOne.end(), rest.begin(), rest.end());
    EXPECT_EQ(longOne, path.TakeSent());
}

// Seven values, four lengths, and the texts one behind another; a null text has length 0.
TEST_F(CommsBlocks, InitialData)
{
    EXPECT_TRUE(DataPathSendInitialData(path, {{1, 2, 3, 4, 5, 6, 7}, {"ab", nullptr, "", "xyz"}}));
    EXPECT_EQ((Bytes{49,  0,   0,   177,               // description: 44 + 5
                     1,   0,   0,   0,   2,  0, 0, 0,  // the values
                     3,   0,   0,   0,   4,  0, 0, 0,  //
                     5,   0,   0,   0,   6,  0, 0, 0,  //
                     7,   0,   0,   0,                 //
                     2,   0,   0,   0,   0,  0, 0, 0,  // the lengths
                     0,   0,   0,   0,   3,  0, 0, 0,  //
                     'a', 'b', 'x', 'y', 'z'}),        // the texts
              path.TakeSent());
}

// A write that fails ends the block there, and is told.
TEST_F(CommsBlocks, AFailedWriteStopsTheBlock)
{
    path.sendRoom = 7;
    EXPECT_FALSE(DataPathSend2uint(path, eRcCPUTime, 1, 2));
    EXPECT_EQ((Bytes{8, 0, 0, 188}), path.TakeSent());
    path.sendRoom = 8;
    EXPECT_FALSE(DataPathSend1uintNbytes(path, eRcLibraryName, 3, "abc", 3));
    EXPECT_EQ((Bytes{7, 0, 0, 80, 3, 0, 0, 0}), path.TakeSent());
    path.sendRoom = 48;
    EXPECT_FALSE(DataPathSendInitialData(path, {{}, {"", "", "", "a"}}));
    EXPECT_EQ(48u, path.sent.size());
    path.sendRoom = 0;
    EXPECT_FALSE(DataPathSendEvent(path, {}, true));
}
