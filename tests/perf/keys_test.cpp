// Keys, as a terminal sends them.
#include "tools/perf/keys.h"
#include <gtest/gtest.h>

using namespace perf;

namespace
{
KeyReader::Time After(int milliseconds)
{
    return KeyReader::Time(std::chrono::milliseconds(100000 + milliseconds));
}

std::string KeysOf(std::string const& bytes) { return KeyReader().Take(bytes, After(0)); }
}  // namespace

// Keys of one character are themselves; those of several are swallowed whole.
TEST(Keys, SequencesAreNoKeys)
{
    EXPECT_EQ("12\tq", KeysOf("12\tq"));
    EXPECT_EQ("1m", KeysOf("1\033[Am")) << "an arrow";
    EXPECT_EQ("m", KeysOf("\033[1;5Dm")) << "with Ctrl";
    EXPECT_EQ("m", KeysOf("\033[15~m")) << "F5";
    EXPECT_EQ("m", KeysOf("\033OAm")) << "an arrow, for applications";
    EXPECT_EQ("m", KeysOf("\033[[am")) << "F1 of the console";
    EXPECT_EQ("m", KeysOf("\033qm")) << "Alt";
    EXPECT_EQ("m", KeysOf("\033\033[Cm")) << "Alt and an arrow";
    EXPECT_EQ("", KeysOf("\033"));
}

// A sequence may come in two parts; a key that is pressed after ESC is a key.
TEST(Keys, SequencesInTwoParts)
{
    for (std::string const sequence : {"\033[1;5D", "\033OA", "\033[[a"})
        for (size_t cut = 1; cut < sequence.size(); ++cut)
        {
            KeyReader reader;
            EXPECT_EQ("1", reader.Take("1" + sequence.substr(0, cut), After(0)));
            EXPECT_EQ("", reader.Take("", After(5)));
            EXPECT_EQ("2", reader.Take(sequence.substr(cut) + "2", After(10))) << cut;
        }
    KeyReader reader;
    EXPECT_EQ("", reader.Take("\033", After(0)));
    EXPECT_EQ("q", reader.Take("q", After(200)));
}
