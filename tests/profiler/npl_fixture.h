// A handle of the npl interface over a path whose other end is the test.
#pragma once
#include "profiler/npl.h"
#include "tests/profiler/link.h"
#include "tests/profiler/scripted_path.h"
#include "tests/unit/fake_clock.h"

// What one call of nplLibraryDirtyGetFirst gives; index -1 for none.
struct Change
{
    int index;
    Bytes data;
    bool operator==(Change const& other) const { return index == other.index && data == other.data; }
};

inline Change const kNoChange{-1, {}};

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

inline Bytes const kItemsBlock = {39, 0, 0, 100,                                       // description
                                  2,  0, 0, 0,                                         // item count
                                  3,  0, 0, 0,   'O', 'n',  'e',                       // name
                                  4,  0, 0, 0,                                         // type
                                  1,  0, 0, 0,   0,                                    // value
                                  3,  0, 0, 0,   'T', 'w',  'o',                       // name
                                  3,  0, 0, 0,                                         // type
                                  4,  0, 0, 0,   '0', '\n', 'a', 'b'};                 // value
inline Bytes const kCountersBlock = {24,   0,    0,    132,                            // description
                                     0x07, 0xF2, 0x05, 0x2A,                           // time
                                     2,    0,    0,    0,                              // counter count
                                     5,    0,    0,    0,    'D', 'r', 'a', 'w', 's',  // name
                                     3,    0,    0,    0,    'C', 'P', 'U'};           // name

inline Bytes operator+(Bytes a, Bytes const& b)
{
    a.insert(a.end(), b.begin(), b.end());
    return a;
}
