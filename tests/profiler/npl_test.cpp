// What the npl interface says to the performance server, and what it does with none.
#include "tests/profiler/no_memory.h"
#include "tests/profiler/npl_fixture.h"
#include <cstring>
#include <unistd.h>

// A new handle has its own copy of the name, a path that looks for a server, and nothing else.
TEST_F(Npl, ANewHandle)
{
    char name[] = "library";
    SSPSCommsData* const other = nplInitialise(name, 4);
    name[0] = 'x';
    EXPECT_EQ("libr", std::string(other->pName, other->nameLength));
    EXPECT_NE(nullptr, other->pDataPath);
    EXPECT_EQ(0u, other->bConnected);
    EXPECT_EQ(0u, other->itemCount);
    EXPECT_EQ(0u, other->counterCount);
    EXPECT_EQ(nullptr, other->pDirtyHead);
    nplShutdown(other);
    SSPSCommsData* const nameless = nplInitialise(nullptr, 4);
    ASSERT_NE(nullptr, nameless);
    EXPECT_EQ(0u, nameless->nameLength);
    nplShutdown(nameless);
    nplShutdown(nullptr);
}

// The clock in 32 bits: it wraps, and the microseconds are added behind.
TEST_F(Npl, TheTimeWraps)
{
    EXPECT_EQ(0x2A05F207u, nplGetTimeUS(comms));
    SetClock(4294, 967295);
    EXPECT_EQ(0xFFFFFFFFu, nplGetTimeUS(comms));
    SetClock(4294, 967296);
    EXPECT_EQ(0u, nplGetTimeUS(comms));
}

// Without a server nothing is written, and every call says so.
TEST_F(Npl, WithoutAServerNothingIsWritten)
{
    CreateTables();
    Replace();
    comms->bConnected = 0;
    unsigned int const values[] = {1, 2};
    for (int accept : {0, 1})
    {
        path->accept = accept;
        EXPECT_EQ(0, nplCountersUpdate(comms, values));
        EXPECT_EQ(0, nplSendMark(comms, "mark", 4));
        EXPECT_EQ(kNoChange, NextChange());
    }
    EXPECT_EQ(Bytes(), path->sent);
    EXPECT_EQ(0u, comms->bConnected);
}

// Each connection begins with the word 14 and the process ID, neither of them described.
TEST_F(Npl, AConnectionBeginsWithTheProcessId)
{
    EXPECT_EQ(kNoChange, NextChange());
    EXPECT_EQ(1u, comms->bConnected);
    auto const pid = static_cast<uint32_t>(getpid());
    EXPECT_EQ((Bytes{14, 0, 0, 0, static_cast<uint8_t>(pid), static_cast<uint8_t>(pid >> 8),
                     static_cast<uint8_t>(pid >> 16), static_cast<uint8_t>(pid >> 24)}),
              path->TakeSent());
    EXPECT_EQ(1, path->flushes);
    EXPECT_EQ(kNoChange, NextChange());
    EXPECT_EQ(Bytes(), path->sent) << "once for each connection";
}

// A server that goes at the very beginning is no server.
TEST_F(Npl, AFailedGreetingIsNoLink)
{
    path->sendRoom = 4;
    EXPECT_EQ(0, nplSendMark(comms, "mark", 4));
    EXPECT_EQ((Bytes{14, 0, 0, 0}), path->sent);
}

// Asked to describe itself, the library tells its name, its items and its counters.
TEST_F(Npl, TheDescription)
{
    ConnectWithTables();
    int const flushes = path->flushes;
    path->Say({0, 0, 0, 64});
    EXPECT_EQ(kNoChange, NextChange());
    Bytes const name = {12,  0,   0,   80,                        // description
                        8,   0,   0,   0,                         // length
                        'N', 'E', 'B', 'T', 'r', 'a', 'c', 'e'};  // name
    EXPECT_EQ(name + kItemsBlock + kCountersBlock, path->TakeSent());
    EXPECT_EQ(flushes + 1, path->flushes);
}

// A description that cannot be sent ends this call of the link.
TEST_F(Npl, AFailedDescriptionIsNoLink)
{
    ConnectWithTables();
    path->sendRoom = 40;
    path->Say({0, 0, 0, 64});
    unsigned int const values[] = {1, 2};
    EXPECT_EQ(0, nplCountersUpdate(comms, values));
    EXPECT_GE(40u, path->sent.size());
}

// With a server there, tables go out as they are made; they count as made even when that fails.
TEST_F(Npl, TablesGoOutToAServerThatIsThere)
{
    Connect();
    CreateTables();
    EXPECT_EQ(kItemsBlock + kCountersBlock, path->TakeSent());
    path->sendRoom = 0;
    CreateTables();
    EXPECT_EQ(Bytes(), path->sent);
    EXPECT_EQ(2u, comms->itemCount);
}

// The handle keeps copies: what the caller does to its own has no effect.
TEST_F(Npl, TablesAreCopies)
{
    char name[] = "name";
    char value[] = "value";
    SLibraryItem const item{name, 4, 7, value, 5};
    SCommsCounter const counter{name, 4};
    ASSERT_EQ(1, nplLibraryCreate(comms, &item, 1));
    ASSERT_EQ(1, nplCountersCreate(comms, &counter, 1));
    std::memset(name, 'x', 4);
    std::memset(value, 'x', 5);
    EXPECT_EQ("name", std::string(comms->pItems[0].pName, comms->pItems[0].nameLength));
    EXPECT_EQ("value", std::string(comms->pItems[0].pData, comms->pItems[0].dataSize));
    EXPECT_EQ(7u, comms->pItems[0].type);
    EXPECT_FALSE(comms->pItems[0].bDirty);
    EXPECT_EQ("name", std::string(comms->pCounters[0].pName, comms->pCounters[0].nameLength));
}

// Tables for which there is no memory fail, and are empty.
TEST_F(Npl, ATableWithoutMemoryIsEmpty)
{
    CreateTables();
    int made = 0;
    {
        NoMemory const limit;
        made += nplLibraryCreate(comms, nullptr, 2);
        made += nplCountersCreate(comms, nullptr, 2);
    }
    EXPECT_EQ(0, made);
    EXPECT_EQ(0u, comms->itemCount);
    EXPECT_EQ(0u, comms->counterCount);
    EXPECT_EQ(nullptr, comms->pItems);
}

// The counters of a frame: the time and the values, whose number both ends know.
TEST_F(Npl, CountersAreATimeAndValues)
{
    ConnectWithTables();
    unsigned int const values[] = {1, 0x01020304};
    EXPECT_NE(0, nplCountersUpdate(comms, values));
    EXPECT_EQ((Bytes{12, 0, 0, 136,           // description
                     0x07, 0xF2, 0x05, 0x2A,  // time
                     1, 0, 0, 0,              // "Draws"
                     4, 3, 2, 1}),            // "CPU"
              path->TakeSent());
    path->sendRoom = 11;
    EXPECT_EQ(0, nplCountersUpdate(comms, values));
}

// The time is that of the frame's end: it is read ahead of the block, whose first write may wait for a slow
// server.
TEST_F(Npl, TheTimeOfCountersIsReadAheadOfTheBlock)
{
    struct Slow : ScriptedPath
    {
        int DataSendBytes(char const* data, unsigned int length) override
        {
            SetClock(6000, 0);
            return ScriptedPath::DataSendBytes(data, length);
        }
    };
    ConnectWithTables();
    delete comms->pDataPath;
    path = new Slow;
    comms->pDataPath = path;
    unsigned int const values[] = {1, 2};
    EXPECT_NE(0, nplCountersUpdate(comms, values));
    EXPECT_EQ((Bytes{12, 0, 0, 136,           // description
                     0x07, 0xF2, 0x05, 0x2A,  // time
                     1, 0, 0, 0,              // "Draws"
                     2, 0, 0, 0}),            // "CPU"
              path->TakeSent());
}

// A mark has the time of its making.
TEST_F(Npl, AMarkHasATime)
{
    Connect();
    EXPECT_NE(0, nplSendMark(comms, "go", 2));
    EXPECT_EQ((Bytes{6, 0, 0, 184,            // description
                     0x07, 0xF2, 0x05, 0x2A,  // time
                     'g', 'o'}),              // text
              path->TakeSent());
}

// When the server goes, a new path looks for the next one. Tables and pending changes stay.
TEST_F(Npl, TheServersEndStartsAnew)
{
    ConnectWithTables();
    bool alive = false;
    delete comms->pDataPath;
    path = new ScriptedPath(&alive);
    comms->pDataPath = path;
    path->Say({5, 0, 0, 112, 0, 0, 0, 0, 'z'});
    path->Say({0, 0, 0, 144});
    nplSendFlush(comms);
    EXPECT_EQ(kNoChange, NextChange());
    EXPECT_FALSE(alive);
    EXPECT_EQ(0u, comms->bConnected);
    ASSERT_NE(nullptr, comms->pDataPath);
    EXPECT_EQ(kNoChange, NextChange()) << "nobody is there";
    Replace();
    EXPECT_EQ((Change{0, {'z'}}), NextChange());
    path->TakeSent();
    path->Say({0, 0, 0, 64});
    nplSendFlush(comms);
    EXPECT_EQ(16 + kItemsBlock.size() + kCountersBlock.size(), path->sent.size());
}

// A link that has failed is no link, whatever was there before.
TEST_F(Npl, AFailedReadIsNoLink)
{
    ConnectWithTables();
    path->broken = true;
    unsigned int const values[] = {1, 2};
    EXPECT_EQ(0, nplCountersUpdate(comms, values));
    EXPECT_EQ(Bytes(), path->sent);
}

// Without memory for a new path there is none, and every call finds no server.
TEST_F(Npl, AHandleWithoutAPathFindsNoServer)
{
    delete comms->pDataPath;
    comms->pDataPath = nullptr;
    EXPECT_EQ(kNoChange, NextChange());
    EXPECT_EQ(0, nplSendFlush(comms));
}

// The end is told to a server that is there.
TEST_F(Npl, ShutdownIsTold)
{
    struct Kept : ScriptedPath
    {
        explicit Kept(Bytes& all) : m_all(all) {}
        ~Kept() override { m_all = sent; }
        Bytes& m_all;
    };
    Bytes all;
    delete comms->pDataPath;
    comms->pDataPath = new Kept(all);
    nplShutdown(comms);
    ASSERT_EQ(12u, all.size());
    EXPECT_EQ((Bytes{0, 0, 0, 144}), Bytes(all.begin() + 8, all.end()));
    comms = nplInitialise("NEBTrace", 8);
    auto* const unconnected = new Kept(all);
    unconnected->accept = 1;
    delete comms->pDataPath;
    comms->pDataPath = unconnected;
    nplShutdown(comms);
    comms = nullptr;
    EXPECT_EQ(Bytes(), all);
}
