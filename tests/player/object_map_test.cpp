// From the recording's names to the player's own.
#include "player/object_map.h"
#include <gtest/gtest.h>

using nebtrace::player::ObjectMap;

// The driver's default object has the name 0 in every recording and on every machine.
TEST(ObjectMap, TheNullNameStandsForItself)
{
    ObjectMap<unsigned> names;
    names.Set(0, 9);
    EXPECT_EQ(names.Find(0, 77), 0u);
    EXPECT_FALSE(names.Has(0));
}

// A name that the recording never made must not hit an object of another meaning.
TEST(ObjectMap, AnUnknownNameGivesWhatTheCallerAsksFor)
{
    ObjectMap<unsigned> names;
    names.Set(5, 1);
    EXPECT_EQ(names.Find(1, 77), 77u);
    EXPECT_EQ(names.Find(5, 77), 1u);
}

// Names are used again after they were deleted, and then mean the newer object.
TEST(ObjectMap, ANameThatComesAgainStandsForTheNewerObject)
{
    ObjectMap<unsigned> names;
    names.Set(5, 1);
    names.Forget(5);
    EXPECT_FALSE(names.Has(5));
    names.Set(5, 2);
    names.Set(5, 3);
    EXPECT_EQ(names.Find(5, 77), 3u);
}

// Outputs of queries are compared in the recording's names.
TEST(ObjectMap, TheWayBackFindsTheRecordedName)
{
    ObjectMap<unsigned> names;
    names.Set(5, 1);
    names.Set(6, 2);
    EXPECT_EQ(names.Recorded(2), 6u);
    EXPECT_EQ(names.Recorded(3), 0u);
}
