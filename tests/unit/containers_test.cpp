#include "state/dyn_array.h"
#include "state/trace_map.h"
#include "state/trace_scoped_ptr.h"
#include <algorithm>
#include <array>
#include <gtest/gtest.h>
#include <random>
#include <utility>
#include <vector>

namespace
{

struct SRecord
{
    int value = 7;
};

std::vector<unsigned> Walk(TraceMap<unsigned, SRecord> const& map)
{
    std::vector<unsigned> keys;
    for (int i = 0; i < map.Count(); ++i)
        keys.push_back(map.KeyAt(i));
    return keys;
}

struct SCounted
{
    explicit SCounted(int& deaths) : m_deaths(deaths) {}
    virtual ~SCounted() { ++m_deaths; }
    int& m_deaths;
};

using Keys = std::vector<unsigned>;

}  // namespace

// A new map is empty and has room for ten.
TEST(TraceMap, StartsEmptyWithRoomForTen)
{
    TraceMap<unsigned, SRecord> const map;
    EXPECT_EQ(0, map.Count());
    EXPECT_EQ(10, map.Capacity());
    EXPECT_EQ(sizeof(void*) + 4 + 4, sizeof map);
}

// The 11th insertion doubles the capacity; the nodes stay in their slots, which is the order of a snapshot.
TEST(TraceMap, TheEleventhInsertionDoublesTheCapacity)
{
    TraceMap<unsigned, SRecord> map;
    for (unsigned key = 0; key < 10; ++key)
        map[100 - key];
    SRecord const* const first = map.Find(100);
    EXPECT_EQ(10, map.Capacity());
    map[5];
    EXPECT_EQ(20, map.Capacity());
    EXPECT_EQ((Keys{100, 99, 98, 97, 96, 95, 94, 93, 92, 91, 5}), Walk(map));
    EXPECT_EQ(first, map.Find(100));
    for (unsigned key = 0; key < 10; ++key)
        map[200 + key];
    EXPECT_EQ(21, map.Count());
    EXPECT_EQ(40, map.Capacity());
}

// A removal puts the last record in the hole: snapshots are written in that order.
TEST(TraceMap, RemovalMovesTheLastRecordIntoTheHole)
{
    TraceMap<unsigned, SRecord> map;
    map[1];
    map[2];
    map[3].value = 33;
    map.removeElement(1);
    EXPECT_EQ((Keys{3, 2}), Walk(map));
    EXPECT_EQ(33, map.ValueAt(0).value);
    map.removeElement(2);
    EXPECT_EQ((Keys{3}), Walk(map));
    map[4];
    EXPECT_EQ((Keys{3, 4}), Walk(map));
}

// Removing what is not there changes nothing.
TEST(TraceMap, RemovalFromAnEmptyMapChangesNothing)
{
    TraceMap<unsigned, SRecord> map;
    map.removeElement(1);
    EXPECT_EQ(0, map.Count());
    map[1];
    map.removeElement(2);
    EXPECT_EQ((Keys{1}), Walk(map));
}

// operator[] always makes a record, with its type's defaults; Find never does.
TEST(TraceMap, ReadingThroughTheIndexMakesARecord)
{
    TraceMap<unsigned, SRecord> map;
    EXPECT_EQ(nullptr, map.Find(9));
    EXPECT_EQ(0, map.Count());
    EXPECT_EQ(7, map[9].value);
    EXPECT_EQ(1, map.Count());
    ASSERT_NE(nullptr, map.Find(9));
    TraceMap<void*, unsigned> plain;
    EXPECT_EQ(0u, plain[&map]);
}

// A copy walks as its source, with no hole, and shares nothing with it.
TEST(TraceMap, ACopyAfterRemovalsKeepsTheWalkingOrder)
{
    TraceMap<unsigned, SRecord> source;
    for (unsigned key = 1; key <= 12; ++key)
        source[key].value = static_cast<int>(key);
    source.removeElement(1);
    source.removeElement(12);
    source.removeElement(4);
    TraceMap<unsigned, SRecord> copy;
    copy[77];
    copy = source;
    EXPECT_EQ((Keys{11, 2, 3, 10, 5, 6, 7, 8, 9}), Walk(source));
    EXPECT_EQ((Keys{11, 2, 3, 10, 5, 6, 7, 8, 9}), Walk(copy));
    EXPECT_EQ(20, copy.Capacity());
    copy[11].value = -1;
    EXPECT_EQ(11, source[11].value);
}

// Assigning a map to itself must not free it first.
TEST(TraceMap, SelfAssignmentKeepsTheRecords)
{
    TraceMap<unsigned, SRecord> map;
    map[3].value = 4;
    TraceMap<unsigned, SRecord>& same = map;
    map = same;
    EXPECT_EQ((Keys{3}), Walk(map));
    EXPECT_EQ(4, map[3].value);
}

// Maps of maps are copied in depth.
TEST(TraceMap, HoldsMapsOfMaps)
{
    TraceMap<unsigned, TraceMap<int, SRecord>> outer;
    outer[1][2].value = 3;
    TraceMap<unsigned, TraceMap<int, SRecord>> const copy(outer);
    outer[1][2].value = 4;
    ASSERT_NE(nullptr, copy.Find(1));
    EXPECT_EQ(3, copy.Find(1)->Find(2)->value);
}

// Storage doubles from 1, and emptying by count keeps it.
// What was found before is a hint only: many changes, in stores whose keys meet, beside plain lists that tell
// the order.
TEST(TraceMap, FindsWhatIsThereAfterAnyChanges)
{
    using Map = TraceMap<unsigned int, int>;
    constexpr unsigned int kKeys = 2000;
    std::array<Map, 3> maps;
    std::array<std::vector<std::pair<unsigned int, int>>, 3> lists;
    std::mt19937 random(7);
    for (int step = 0; step < 20000; ++step)
    {
        std::size_t const which = random() % maps.size();
        auto const key = static_cast<unsigned int>(random() % kKeys);
        auto& list = lists[which];
        auto const at =
            std::find_if(list.begin(), list.end(), [&](auto const& entry) { return entry.first == key; });
        int const* const found = maps[which].Find(key);
        ASSERT_EQ(at != list.end(), found != nullptr);
        ASSERT_TRUE(!found || at->second == *found);
        if (random() % 3 == 0)
        {
            maps[which].removeElement(key);
            if (at != list.end())
            {
                *at = list.back();
                list.pop_back();
            }
            continue;
        }
        maps[which][key] = step;
        if (at != list.end())
            at->second = step;
        else
            list.emplace_back(key, step);
    }
    for (std::size_t which = 0; which < maps.size(); ++which)
    {
        ASSERT_EQ(lists[which].size(), static_cast<std::size_t>(maps[which].Count()));
        for (int slot = 0; slot < maps[which].Count(); ++slot)
            EXPECT_EQ(lists[which][static_cast<std::size_t>(slot)],
                      std::make_pair(maps[which].KeyAt(slot), maps[which].ValueAt(slot)));
    }
}

TEST(DynArray, DoublesAndKeepsItsStorage)
{
    DynArray<float> array;
    EXPECT_EQ(nullptr, array.m_pData);
    uint32_t const capacities[] = {1, 2, 4, 4, 8};
    for (uint32_t i = 0; i < 5; ++i)
    {
        array.Append(static_cast<float>(i));
        EXPECT_EQ(capacities[i], array.m_ui32Capacity);
        EXPECT_EQ(i + 1, array.m_ui32Count);
    }
    EXPECT_EQ(4.0f, array.m_pData[4]);
    float const* const storage = array.m_pData;
    array.m_ui32Count = 0;
    array.Append(9.0f);
    EXPECT_EQ(storage, array.m_pData);
    EXPECT_EQ(9.0f, array.m_pData[0]);
}

// An element of the array itself may be appended although its storage is replaced.
// Many at once leave what one after another would have left.
TEST(DynArray, AppendsManyAtOnce)
{
    int const values[] = {1, 2, 3, 4, 5, 6, 7, 8, 9};
    for (uint32_t const count : {0u, 1u, 3u, 9u})
    {
        DynArray<int> singly;
        DynArray<int> together;
        for (int round = 0; round < 2; ++round)
        {
            for (uint32_t i = 0; i < count; ++i)
                singly.Append(values[i]);
            together.Append(values, count);
        }
        EXPECT_EQ(singly.m_ui32Capacity, together.m_ui32Capacity);
        ASSERT_EQ(singly.m_ui32Count, together.m_ui32Count);
        EXPECT_TRUE(std::equal(singly.m_pData, singly.m_pData + singly.m_ui32Count, together.m_pData));
    }
}

TEST(DynArray, AppendsItsOwnElement)
{
    DynArray<int> array;
    array.Append(5);
    array.Append(array.m_pData[0]);
    EXPECT_EQ(5, array.m_pData[1]);
}

// A copy grows to the source's capacity by doubling its own, and never shrinks.
TEST(DynArray, ACopyGrowsAndNeverShrinks)
{
    DynArray<int> source;
    for (int i = 0; i < 3; ++i)
        source.Append(i);
    DynArray<int> target;
    target = source;
    EXPECT_EQ(3u, target.m_ui32Count);
    EXPECT_EQ(4u, target.m_ui32Capacity);
    EXPECT_EQ(2, target.m_pData[2]);
    DynArray<int> small;
    small.Append(8);
    target = small;
    EXPECT_EQ(1u, target.m_ui32Count);
    EXPECT_EQ(4u, target.m_ui32Capacity);
    EXPECT_EQ(8, target.m_pData[0]);
}

// The held object dies with its pointer, and with the pointer's next object.
TEST(TraceScopedPtr, DestroysWhatItHolds)
{
    int deaths = 0;
    {
        TraceScopedPtr<SCounted> pointer(new SCounted(deaths));
        EXPECT_EQ(&deaths, &pointer->m_deaths);
        pointer.Reset(new SCounted(deaths));
        EXPECT_EQ(1, deaths);
    }
    EXPECT_EQ(2, deaths);
}

// An empty pointer is told of, by this text, and handed out as null.
TEST(TraceScopedPtr, DereferencingAnEmptyOneIsLogged)
{
    TraceScopedPtr<SCounted> const pointer;
    testing::internal::CaptureStdout();
    SCounted const* const object = pointer.operator->();
    EXPECT_EQ("Error refering empty TraceScopedPtr\n", testing::internal::GetCapturedStdout());
    EXPECT_EQ(nullptr, object);
}
