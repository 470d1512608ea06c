// The npl interface over a path whose other end is the test.
#include "profiler/npl.h"
#include "tests/profiler/link.h"
#include "tests/profiler/scripted_path.h"
#include "tests/unit/fake_clock.h"
#include <cstring>
#include <sys/resource.h>
#include <unistd.h>

namespace
{

// What one call of nplLibraryDirtyGetFirst gives; index -1 for none.
struct Change
{
    int index;
    Bytes data;
    bool operator==(Change const& other) const { return index == other.index && data == other.data; }
};

// Leaves the process no further memory, but for what its heap has in reserve.
class NoMemory
{
public:
    NoMemory()
    {
        getrlimit(RLIMIT_AS, &m_before);
        rlimit const none{1, m_before.rlim_max};
        setrlimit(RLIMIT_AS, &none);
    }
    ~NoMemory() { setrlimit(RLIMIT_AS, &m_before); }
    NoMemory(NoMemory const&) = delete;
    NoMemory& operator=(NoMemory const&) = delete;

private:
    rlimit m_before{};
};

Change const kNoChange{-1, {}};

class Npl : public InSharedMemory
{
protected:
    void SetUp() override
    {
        // 5000 seconds and 7 microseconds, in 32 bits: 0x2A05F207.
        SetClock(5000, 7);
        comms = nplInitialise("NEBTrace", 8);
        ASSERT_NE(nullptr, comms);
        Replace();
    }
    void TearDown() override
    {
        nplShutdown(comms);
        InSharedMemory::TearDown();
    }
    // Puts a new path of the test's in place of the one that the handle has.
    void Replace()
    {
        delete comms->pDataPath;
        path = new ScriptedPath;
        comms->pDataPath = path;
    }
    void Connect()
    {
        ASSERT_EQ(1, nplSendFlush(comms));
        ASSERT_EQ(1u, comms->bConnected);
        path->TakeSent();
    }
    void CreateTables()
    {
        SLibraryItem const items[] = {{"One", 3, 4, m_switch, 1}, {"Two", 3, 3, m_list, 4}};
        ASSERT_EQ(1, nplLibraryCreate(comms, items, 2));
        SCommsCounter const counters[] = {{"Draws", 5}, {"CPU", 3}};
        ASSERT_EQ(1, nplCountersCreate(comms, counters, 2));
    }
    void ConnectWithTables()
    {
        path->accept = 1;
        CreateTables();
        path->accept = 2;
        Connect();
    }
    Change NextChange()
    {
        unsigned int index = 99;
        unsigned int size = 99;
        char const* data = nullptr;
        if (!nplLibraryDirtyGetFirst(comms, &index, &size, &data))
            return kNoChange;
        return {static_cast<int>(index), {data, data + size}};
    }

    SSPSCommsData* comms = nullptr;
    ScriptedPath* path = nullptr;

private:
    char m_switch[1] = {0};
    char m_list[4] = {'0', '\n', 'a', 'b'};
};

Bytes const kItemsBlock = {39, 0, 0, 100,                                       // description
                           2,  0, 0, 0,                                         // item count
                           3,  0, 0, 0,   'O', 'n',  'e',                       // name
                           4,  0, 0, 0,                                         // type
                           1,  0, 0, 0,   0,                                    // value
                           3,  0, 0, 0,   'T', 'w',  'o',                       // name
                           3,  0, 0, 0,                                         // type
                           4,  0, 0, 0,   '0', '\n', 'a', 'b'};                 // value
Bytes const kCountersBlock = {24,   0,    0,    132,                            // description
                              0x07, 0xF2, 0x05, 0x2A,                           // time
                              2,    0,    0,    0,                              // counter count
                              5,    0,    0,    0,    'D', 'r', 'a', 'w', 's',  // name
                              3,    0,    0,    0,    'C', 'P', 'U'};           // name

Bytes operator+(Bytes a, Bytes const& b)
{
    a.insert(a.end(), b.begin(), b.end());
    return a;
}

}  // namespace

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
        made += nplLibraryCreate(comms, nullptr, 0x100000);
        made += nplCountersCreate(comms, nullptr, 0x1000000);
    }
    EXPECT_EQ(0, made);
    EXPECT_EQ(0u, comms->itemCount);
    EXPECT_EQ(0u, comms->counterCount);
    EXPECT_EQ(nullptr, comms->pItems);
}

// Likewise a value: the item has none then, and has not changed.
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
