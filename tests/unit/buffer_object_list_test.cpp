#include "state/buffer_object_list.h"
#include <gtest/gtest.h>

namespace
{

std::string Data(CBufferObjectList& list, unsigned int name)
{
    CBufferObjectList::SBufferObject const* const object = list.GetBufferObject(name);
    return object && object->data ? std::string(object->data, object->size) : std::string();
}

}  // namespace

// An object holds a copy of the bytes that it was given.
TEST(BufferObjectList, KeepsACopy)
{
    CBufferObjectList list;
    char bytes[] = {'a', 'b', 'c'};
    EXPECT_EQ(1, list.AddObject(4, 3, bytes));
    bytes[0] = '!';
    EXPECT_EQ("abc", Data(list, 4));
    EXPECT_EQ(nullptr, list.GetBufferObject(5));
}

// Null data means zeros, and a refilled object keeps its place in the list.
TEST(BufferObjectList, RefillingWithNullDataGivesZerosInPlace)
{
    CBufferObjectList list;
    list.AddObject(1, 2, "xy");
    list.AddObject(2, 2, "zz");
    EXPECT_EQ(1, list.AddObject(1, 4, nullptr));
    EXPECT_EQ(std::string(4, '\0'), Data(list, 1));
    EXPECT_EQ(list.GetBufferObject(2), list.GetBufferObject(1)->next);
    EXPECT_EQ(nullptr, list.GetBufferObject(2)->next);
}

// A size of 0 leaves an object without data.
TEST(BufferObjectList, AnEmptyObjectHasNullData)
{
    CBufferObjectList list;
    list.AddObject(1, 2, "xy");
    list.AddObject(1, 0, "xy");
    EXPECT_EQ(nullptr, list.GetBufferObject(1)->data);
    EXPECT_EQ(0u, list.GetBufferObject(1)->size);
    list.AddObject(2, 0, nullptr);
    EXPECT_EQ(nullptr, list.GetBufferObject(2)->data);
}

// An object may be refilled from its own bytes.
TEST(BufferObjectList, RefillsFromItsOwnBytes)
{
    CBufferObjectList list;
    list.AddObject(1, 4, "abcd");
    list.AddObject(1, 2, list.GetBufferObject(1)->data + 2);
    EXPECT_EQ("cd", Data(list, 1));
}

// Removal of an unknown name succeeds and changes nothing.
TEST(BufferObjectList, RemovingAnUnknownNameSucceeds)
{
    CBufferObjectList list;
    EXPECT_EQ(1, list.RemoveObject(9));
    list.AddObject(1, 1, "a");
    EXPECT_EQ(1, list.RemoveObject(9));
    EXPECT_EQ("a", Data(list, 1));
}

// Removal repairs head, links and tail: the next object still goes to the end.
TEST(BufferObjectList, RemovalKeepsTheListWhole)
{
    CBufferObjectList list;
    for (unsigned int name = 1; name <= 4; ++name)
        list.AddObject(name, 1, "x");
    EXPECT_EQ(1, list.RemoveObject(2));
    EXPECT_EQ(list.GetBufferObject(3), list.GetBufferObject(1)->next);
    EXPECT_EQ(1, list.RemoveObject(1));
    EXPECT_EQ(1, list.RemoveObject(4));
    EXPECT_EQ(nullptr, list.GetBufferObject(3)->next);
    list.AddObject(5, 1, "y");
    EXPECT_EQ(list.GetBufferObject(5), list.GetBufferObject(3)->next);
    list.RemoveObject(3);
    list.RemoveObject(5);
    list.AddObject(6, 1, "z");
    EXPECT_EQ("z", Data(list, 6));
}

// The two APIs have a list each.
TEST(BufferObjectList, EachGlApiHasItsOwn)
{
    Es1::BufferList.AddObject(1, 1, "1");
    EXPECT_EQ(nullptr, Es2::BufferList.GetBufferObject(1));
    Es1::BufferList.RemoveObject(1);
}
