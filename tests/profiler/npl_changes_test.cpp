// What the npl interface does with the blocks that the performance server sends.
#include "tests/profiler/no_memory.h"
#include "tests/profiler/npl_fixture.h"

// A value for which there is no memory is none, and no change either.
TEST_F(Npl, AValueWithoutMemoryIsNone)
{
    ConnectWithTables();
    path->Say({0xFF, 0xFF, 0xFF, 112, 0, 0, 0, 0});
    path->reads.reserve(10);
    unsigned int const values[] = {1, 2};
    int written = 1;
    {
        NoMemory const limit;
        written = nplCountersUpdate(comms, values);
    }
    EXPECT_EQ(0, written);
    EXPECT_EQ(0u, comms->pItems[0].dataSize);
    EXPECT_EQ(nullptr, comms->pItems[0].pData);
    EXPECT_EQ(nullptr, comms->pDirtyHead);
    EXPECT_EQ(Bytes(), path->sent);
}

// A new table takes the place of the old one, and of the changes to it.
TEST_F(Npl, ANewTableForgetsTheOldOne)
{
    ConnectWithTables();
    path->Say({5, 0, 0, 112, 1, 0, 0, 0, 'x'});
    ASSERT_EQ(1, nplSendFlush(comms));
    ASSERT_NE(nullptr, comms->pDirtyHead);
    ASSERT_EQ(1, nplLibraryCreate(comms, nullptr, 0));
    EXPECT_EQ(0u, comms->itemCount);
    EXPECT_EQ(kNoChange, NextChange());
    EXPECT_EQ((Bytes{4, 0, 0, 100, 0, 0, 0, 0}), path->TakeSent());
}

// A change replaces the value, whatever its size, and is fetched once.
TEST_F(Npl, AnItemIsChanged)
{
    ConnectWithTables();
    path->Say({6, 0, 0, 112,  // description
               1, 0, 0, 0,    // index
               '3', '\n'});   // value
    EXPECT_EQ((Change{1, {'3', '\n'}}), NextChange());
    EXPECT_EQ(kNoChange, NextChange());
    EXPECT_EQ(2u, comms->pItems[1].dataSize);
}

// A change to nothing is a change.
TEST_F(Npl, AnEmptyValueIsAChange)
{
    ConnectWithTables();
    path->Say({4, 0, 0, 112, 0, 0, 0, 0});
    EXPECT_EQ((Change{0, {}}), NextChange());
    EXPECT_EQ(0u, comms->pItems[0].dataSize);
}

// Each call handles one block; what came last is fetched first, and a second change of an item keeps the
// place of the first.
TEST_F(Npl, ChangesAreFetchedFromTheLast)
{
    ConnectWithTables();
    path->Say({5, 0, 0, 112, 0, 0, 0, 0, 'a'});
    path->Say({5, 0, 0, 112, 1, 0, 0, 0, 'b'});
    path->Say({5, 0, 0, 112, 0, 0, 0, 0, 'c'});
    for (int i = 0; i < 3; ++i)
    {
        EXPECT_EQ(static_cast<size_t>(27 - 9 * i), path->toRead.size());
        nplSendFlush(comms);
    }
    EXPECT_EQ((Change{1, {'b'}}), NextChange());
    EXPECT_EQ((Change{0, {'c'}}), NextChange());
    EXPECT_EQ(kNoChange, NextChange());
}

// An index that no item has leaves the value in the stream, where it is taken for the next block.
TEST_F(Npl, AnUnknownItemLosesTheFraming)
{
    ConnectWithTables();
    path->Say({8, 0, 0, 112,   // description
               2, 0, 0, 0,     // index: one past the last
               0, 0, 0, 64});  // value, which reads as the question for the description
    unsigned int const values[] = {1, 2};
    EXPECT_EQ(0, nplCountersUpdate(comms, values));
    EXPECT_EQ((Bytes{0, 0, 0, 64}), path->toRead);
    EXPECT_EQ(Bytes(), path->sent);
    EXPECT_EQ(kNoChange, NextChange());
    EXPECT_EQ(12u + 4 + kItemsBlock.size() + kCountersBlock.size(), path->sent.size());
}

// A change that is too short for its own index changes nothing, and is not waited for.
TEST_F(Npl, AChangeWithoutAnIndexIsRefused)
{
    ConnectWithTables();
    path->Say({3, 0, 0, 112});
    EXPECT_EQ(kNoChange, NextChange());
    EXPECT_EQ(1u, comms->pItems[0].dataSize);
}

// Index and value are waited for piece by piece, and so is a word that two buffers share.
TEST_F(Npl, ABlockMayComeInPieces)
{
    ConnectWithTables();
    path->piece = 3;
    path->Say({11, 0, 0, 112, 1, 0, 0, 0, 'a', 'b', 'c', 'd', 'e', 'f', 'g'});
    EXPECT_EQ((Change{1, {'a', 'b', 'c', 'd', 'e', 'f', 'g'}}), NextChange());
    EXPECT_EQ(Bytes(), path->toRead);
}

// What is not known is thrown away, 512 bytes at a time.
TEST_F(Npl, AnUnknownBlockIsSkipped)
{
    ConnectWithTables();
    path->reads.clear();
    path->Say({0xE8, 3, 0, 99});  // 1000 bytes
    path->Say(Bytes(1000, 0x55));
    path->Say({5, 0, 0, 112, 0, 0, 0, 0, 'z'});
    EXPECT_EQ(kNoChange, NextChange());
    EXPECT_EQ((std::vector<unsigned int>{4, 512, 488}), path->reads);
    EXPECT_EQ((Change{0, {'z'}}), NextChange());
}
