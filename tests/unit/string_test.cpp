#include "support/string.h"
#include <gtest/gtest.h>
#include <type_traits>

namespace
{

std::string Text(CNEBTString const& string) { return std::string(string.c_str(), string.size()); }

}  // namespace

// Callers hand c_str() to printf and fopen without asking whether anything was stored.
TEST(String, DefaultIsAValidEmptyTextOfCapacityOne)
{
    CNEBTString const string;
    EXPECT_STREQ("", string.c_str());
    EXPECT_EQ(0u, string.length());
    EXPECT_EQ(1u, string.capacity());
    EXPECT_TRUE(string.empty());
}

// The exported class has a table pointer, then the text, its length and the bytes allocated.
TEST(String, HoldsNothingButItsThreeFields)
{
    EXPECT_EQ(sizeof(void*) + sizeof(char*) + 4 + 4, sizeof(CNEBTString));
    EXPECT_TRUE(std::has_virtual_destructor<CNEBTString>::value);
    EXPECT_EQ(0xFFFFFFFFu, static_cast<unsigned>(CNEBTString::npos));
}

// Each form of construction gives the text that it names.
TEST(String, ConstructsFromEveryForm)
{
    CNEBTString const whole("frame");
    EXPECT_EQ("frame", Text(whole));
    EXPECT_EQ("fra", Text(CNEBTString("frame", 3)));
    EXPECT_EQ("ame", Text(CNEBTString(whole, 2)));
    EXPECT_EQ("am", Text(CNEBTString(whole, 2, 2)));
    EXPECT_EQ("x", Text(CNEBTString('x')));
    EXPECT_EQ("xxx", Text(CNEBTString(3, 'x')));
    EXPECT_EQ("frame", Text(CNEBTString(whole)));
}

// Names and paths come from the application: a null pointer is an empty text, never a crash.
TEST(String, NullPointersAreEmptyTexts)
{
    char const* const null = nullptr;
    CNEBTString string(null);
    EXPECT_EQ("", Text(string));
    string.append(null).assign(null, 5) += null;
    EXPECT_EQ("", Text(string));
    EXPECT_TRUE(string == null);
    EXPECT_EQ(CNEBTString::npos, CNEBTString("a").find_first_of(null));
}

// Growth is exact, so that the memory a long-lived text holds is its own length.
TEST(String, AppendAllocatesExactlyWhatIsNeeded)
{
    CNEBTString string("abc");
    EXPECT_EQ(4u, string.capacity());
    string.append("de");
    EXPECT_EQ(6u, string.capacity());
    string += 'f';
    EXPECT_EQ(7u, string.capacity());
    EXPECT_EQ("abcdef", Text(string));
}

// Within the capacity nothing is reallocated.
TEST(String, AppendWithinTheCapacityKeepsTheBlock)
{
    CNEBTString string("abcdef");
    string.erase(2);
    char const* const block = string.c_str();
    string.append("xyz");
    EXPECT_EQ("abxyz", Text(string));
    EXPECT_EQ(block, string.c_str());
    EXPECT_EQ(7u, string.capacity());
}

// A text may be appended to itself in part: the old block is freed only after both parts are copied.
TEST(String, AppendOfAPartOfItselfWorks)
{
    CNEBTString string("abcd");
    string.append(string.c_str() + 1, 2);
    EXPECT_EQ("abcdbc", Text(string));
    string.append(string);
    EXPECT_EQ("abcdbcabcdbc", Text(string));
}

// The same for assignment, which moves within its block.
TEST(String, AssignOfAPartOfItselfWorks)
{
    CNEBTString string("abcdef");
    string.assign(string.c_str() + 2, 3);
    EXPECT_EQ("cde", Text(string));
    CNEBTString const& itself = string;
    string = itself;
    EXPECT_EQ("cde", Text(string));
}

// All pairings of +, += and = with char, text and string.
TEST(String, ConcatenatesInEveryPairing)
{
    CNEBTString const a("a");
    EXPECT_EQ("aa", Text(a + a));
    EXPECT_EQ("atext", Text(a + "text"));
    EXPECT_EQ("ac", Text(a + 'c'));
    EXPECT_EQ("texta", Text("text" + a));
    EXPECT_EQ("ca", Text('c' + a));
    CNEBTString string;
    string = 'x';
    string += a;
    string += "bc";
    string += 'd';
    string.push_back('e');
    EXPECT_EQ("xabcde", Text(string));
    string = "new";
    EXPECT_EQ("new", Text(string));
    string.assign(2, '-').append(a, 0, 1).append(3, '+').append(CNEBTString("0123"), 1, 2);
    EXPECT_EQ("--a+++12", Text(string));
}

// reserve leaves a capacity alone that is already above its argument, and otherwise makes room for one more.
TEST(String, ReserveGrowsToOneMoreThanAsked)
{
    CNEBTString string("abc");
    string.reserve(3);
    EXPECT_EQ(4u, string.capacity());
    string.reserve(4);
    EXPECT_EQ(5u, string.capacity());
    EXPECT_EQ("abc", Text(string));
}

// resize cuts, or fills with zero bytes or with the byte given.
TEST(String, ResizeCutsAndFills)
{
    CNEBTString string("abcdef");
    string.resize(2);
    EXPECT_EQ("ab", Text(string));
    string.resize(4, '.');
    EXPECT_EQ("ab..", Text(string));
    string.resize(5);
    EXPECT_EQ(std::string("ab..\0", 5), Text(string));
}

// Ranges that leave the string are cut to it: the host loader takes all but the last character of an empty
// path.
TEST(String, RangesOutsideTheStringAreCut)
{
    CNEBTString const empty;
    EXPECT_EQ("", Text(empty.substr(0, empty.length() - 1)));
    EXPECT_EQ("", Text(empty.left(empty.length() - 1)));
    CNEBTString const string("abc");
    EXPECT_EQ("c", Text(string.substr(2, 9)));
    EXPECT_EQ("", Text(string.substr(7, 2)));
    EXPECT_EQ("abc", Text(string.left(9)));
    EXPECT_EQ("abc", Text(string.right(9)));
    EXPECT_EQ("bc", Text(string.right(2)));
    EXPECT_EQ('\0', string[99]);
}

// erase, clear, swap and copy do what their names say.
TEST(String, ErasesSwapsAndCopies)
{
    CNEBTString string("abcdef");
    EXPECT_EQ("abef", Text(string.erase(2, 2)));
    EXPECT_EQ("abef", Text(string.erase(9, 2)));
    char target[4] = {'-', '-', '-', '-'};
    EXPECT_EQ(2u, string.copy(target, 2, 1));
    EXPECT_EQ("be--", std::string(target, 4));
    CNEBTString other("other");
    string.swap(other);
    EXPECT_EQ("other", Text(string));
    EXPECT_EQ("abef", Text(other));
    other.clear();
    EXPECT_STREQ("", other.c_str());
    EXPECT_EQ(7u, other.capacity());
}

// Case conversion changes the string itself.
TEST(String, ConvertsCaseInPlace)
{
    CNEBTString string("Frame 9z");
    EXPECT_EQ("FRAME 9Z", Text(string.toUpper()));
    EXPECT_EQ("frame 9z", Text(string.toLower()));
}

// Order is by byte, and a prefix stands before what it begins.
TEST(String, ComparesByBytesAndLength)
{
    CNEBTString const string("abc");
    EXPECT_EQ(0, string.compare("abc"));
    EXPECT_LT(string.compare("abd"), 0);
    EXPECT_GT(string.compare("ab"), 0);
    EXPECT_LT(string.compare(CNEBTString("abca")), 0);
    EXPECT_EQ(0, string.compare(1, 2, "bc"));
    EXPECT_EQ(0, string.compare(1, 9, CNEBTString("xbcx"), 1, 2));
    EXPECT_EQ(0, string.compare(0, 2, "abc", 2));
    EXPECT_TRUE(string == "abc");
    EXPECT_TRUE(string != "abcd");
    EXPECT_TRUE(string == CNEBTString("abc"));
    EXPECT_TRUE(string != CNEBTString("abd"));
    EXPECT_TRUE(string < CNEBTString("b"));
    EXPECT_FALSE(string < "abc");
    EXPECT_TRUE(CNEBTString("a") == 'a');
    EXPECT_TRUE(string != 'a');
}

// Substitution changes every occurrence, or the first alone, and does not look again at what it put in.
TEST(String, SubstitutesOneOrAll)
{
    CNEBTString string("a.b.c");
    EXPECT_EQ("a-b.c", Text(string.substitute('.', '-', false)));
    EXPECT_EQ("a-b-c", Text(string.substitute('.', '-', true)));
    EXPECT_EQ("a--b-c", Text(string.substitute("-", "--", false)));
    EXPECT_EQ("a----b--c", Text(string.substitute("-", "--", true)));
    EXPECT_EQ("a----b--c", Text(string.substitute("", "x", true)));
}

// The formatted text is measured first, so that no length is a limit.
TEST(String, FormatsTextsOfAnyLength)
{
    CNEBTString string;
    EXPECT_EQ("frame 12 of trace", Text(string.format("frame %d of %s", 12, "trace")));
    std::string const longText(5000, 'z');
    EXPECT_EQ("<" + longText + ">", Text(NEBTStringFromFormattedStr("<%s>", longText.c_str())));
    EXPECT_EQ("", Text(NEBTStringFromFormattedStr("%s", "")));
    EXPECT_EQ(3u, NEBTStringFromFormattedStr("%s", "ab").capacity());
}

// The configuration's keys and values are stripped with these.
TEST(String, StripsWhiteSpaceFromEitherEnd)
{
    EXPECT_EQ("a b \t\n", Text(NEBTStringStripWhiteSpaceFromStartOf(" \t\r\na b \t\n")));
    EXPECT_EQ(" \ta b", Text(NEBTStringStripWhiteSpaceFromEndOf(" \ta b \v\f\r\n")));
    EXPECT_EQ("", Text(NEBTStringStripWhiteSpaceFromStartOf(" \n")));
    EXPECT_EQ("", Text(NEBTStringStripWhiteSpaceFromEndOf("")));
}

// Paths are split at the last slash, names at the last dot.
TEST(String, SplitsPaths)
{
    EXPECT_EQ("trace.nebt", Text(NEBTStringGetFileName("/tmp/out.d/trace.nebt")));
    EXPECT_EQ("trace", Text(NEBTStringGetFileName("trace")));
    EXPECT_EQ(".nebt", Text(NEBTStringGetFileExtension("/tmp/out.d/trace.1.nebt")));
    EXPECT_EQ("", Text(NEBTStringGetFileExtension("/tmp/out.d/trace")));
    EXPECT_EQ("/tmp/out.d", Text(NEBTStringGetContainingDirectoryPath("/tmp/out.d/trace")));
    EXPECT_EQ("/", Text(NEBTStringGetContainingDirectoryPath("/trace")));
    EXPECT_EQ("", Text(NEBTStringGetContainingDirectoryPath("trace")));
}
