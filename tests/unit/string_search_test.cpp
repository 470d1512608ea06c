// The searches, and above all their three kinds of sentinel: npos, the length, and -1.
#include "support/string.h"
#include <gtest/gtest.h>

namespace
{

uint32_t const npos = CNEBTString::npos;

}  // namespace

// find looks for the whole text at or after a position.
TEST(StringSearch, FindsAWholeText)
{
    CNEBTString const string("one two one");
    EXPECT_EQ(8u, string.find("one", 1));
    EXPECT_EQ(0u, string.find(CNEBTString("one")));
    EXPECT_EQ(4u, string.find('t'));
    EXPECT_EQ(4u, string.find("twx", 0, 2));
    EXPECT_EQ(npos, string.find("three"));
    EXPECT_EQ(npos, string.find("one", 9));
    EXPECT_EQ(npos, string.find("one", 99));
}

// The standard four look for any one byte of a set, and their sentinel is npos.
TEST(StringSearch, FindsAnyByteOfASet)
{
    CNEBTString const string("abcabc");
    EXPECT_EQ(1u, string.find_first_of("cb"));
    EXPECT_EQ(2u, string.find_first_of("cb", 2));
    EXPECT_EQ(3u, string.find_first_of("axx", 1, 1));
    EXPECT_EQ(0u, string.find_first_of(CNEBTString("xa")));
    EXPECT_EQ(2u, string.find_first_not_of("ab"));
    EXPECT_EQ(1u, string.find_first_not_of('a'));
    EXPECT_EQ(5u, string.find_last_of("ca"));
    EXPECT_EQ(3u, string.find_last_of("a", 4));
    EXPECT_EQ(4u, string.find_last_not_of('c'));
    EXPECT_EQ(2u, string.find_last_not_of("ab", 4, 2));
    EXPECT_EQ(npos, string.find_first_of('x'));
    EXPECT_EQ(npos, string.find_first_not_of("abc"));
    EXPECT_EQ(npos, string.find_last_of("x"));
    EXPECT_EQ(npos, string.find_last_not_of(CNEBTString("abc")));
    EXPECT_EQ(npos, CNEBTString().find_last_of('a'));
}

// The next occurrence of what is not there is the string's length: callers cut at it without a test.
TEST(StringSearch, NextOccurrenceOfAMissingCharIsTheLength)
{
    CNEBTString const string("key=value");
    EXPECT_EQ(3u, string.find_next_occurance_of('='));
    EXPECT_EQ(3u, string.find_next_occurance_of("=;", 3));
    EXPECT_EQ(9u, string.find_next_occurance_of('#'));
    EXPECT_EQ(9u, string.find_next_occurance_of('=', 4));
    EXPECT_EQ(9u, string.find_next_occurance_of('k', 9));
    EXPECT_EQ(9u, string.find_next_occurance_of(CNEBTString("k"), 99));
    EXPECT_EQ(4u, string.find_next_occurance_of("xvy", 0, 2));
}

// On the way down index 0 is never looked at, and pos 0 finds nothing: this is relied upon as it is.
TEST(StringSearch, PreviousOccurrenceNeverFindsTheFirstChar)
{
    CNEBTString const string("abca");
    EXPECT_EQ(-1, string.find_previous_occurance_of('a', 2));
    EXPECT_EQ(3, string.find_previous_occurance_of('a', 3));
    EXPECT_EQ(3, string.find_previous_occurance_of('a', 99));
    EXPECT_EQ(1, string.find_previous_occurance_of("xb", 3));
    EXPECT_EQ(2, string.find_previous_occurance_of("cb", 3, 1));
    EXPECT_EQ(2, string.find_previous_occurance_of(CNEBTString("bc"), 2));
    EXPECT_EQ(-1, string.find_previous_occurance_of('a', 0));
    EXPECT_EQ(-1, string.find_previous_occurance_of('x', 3));
}

// The count runs from pos to the end, and is 0 from the end on.
TEST(StringSearch, CountsPositionsFromPosOn)
{
    CNEBTString const string("a,b;c,");
    EXPECT_EQ(2u, string.find_number_of(','));
    EXPECT_EQ(1u, string.find_number_of(',', 2));
    EXPECT_EQ(3u, string.find_number_of(",;"));
    EXPECT_EQ(2u, string.find_number_of(",;", 0, 1));
    EXPECT_EQ(3u, string.find_number_of(CNEBTString(";,")));
    EXPECT_EQ(0u, string.find_number_of(',', 6));
    EXPECT_EQ(0u, string.find_number_of(',', 99));
}

// Despite its name this one finds the whole sequence of n bytes, and says -1 when it does not.
TEST(StringSearch, FirstOfnFindsTheWholeSequence)
{
    CNEBTString const string("abcabd");
    EXPECT_EQ(3, string.find_first_ofn("abd", 0, 3));
    EXPECT_EQ(3, string.find_first_ofn("abx", 1, 2));
    EXPECT_EQ(-1, string.find_first_ofn("bd!", 0, 3));
    EXPECT_EQ(-1, string.find_first_ofn("abd", 4, 3));
    EXPECT_EQ(-1, string.find_first_ofn("a", 6, 1));
    EXPECT_EQ(-1, string.find_first_ofn("abcabdx", 0, 7));
    EXPECT_EQ(-1, string.find_first_ofn(nullptr, 0, 1));
}

// The length test goes by the terminator: a text with a zero byte inside counts only up to it.
TEST(StringSearch, FirstOfnMeasuresUpToTheFirstZeroByte)
{
    CNEBTString const string("a\0bcd", 5);
    EXPECT_EQ(-1, string.find_first_ofn("bc", 0, 2));
    EXPECT_EQ(2, string.find_first_ofn("b", 0, 1));
}
