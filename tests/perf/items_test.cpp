// Items as people read and set them.
#include "tools/commands.h"
#include "tools/perf/items.h"
#include "tools/perf/view.h"
#include <gtest/gtest.h>

using namespace perf;

namespace
{
Item Switch(std::string const& name, bool on = false) { return {name, 4, std::string(1, on ? '\1' : '\0')}; }

Item const kCulling{"NEBTrace.Culling mode", 3, "0\nApp defined\nNone\nBack\nFront"};

std::vector<Item> const kItems = {
    Switch("NEBTrace.Disable blending"), kCulling, Switch("Other.Thing", true), {"NEBTrace.Opaque", 1, "ab"}};

// The change as text: index, a colon, the value.
std::string Set(std::string const& text)
{
    auto const setting = ParseSetting(text);
    if (!setting)
        return "not a setting";
    try
    {
        Change const change = Resolve(*setting, kItems);
        return std::to_string(change.index) + ":" + change.value;
    } catch (CommandFailed const& error)
    {
        return error.what();
    }
}
}  // namespace

// The name is the item's with or without its beginning, in any case; a switch takes four words.
TEST(Settings, OfSwitches)
{
    EXPECT_EQ("0:\1", Set("NEBTrace.Disable blending=1"));
    EXPECT_EQ("0:\1", Set("disable BLENDING=On"));
    EXPECT_EQ(std::string("0:\0", 3), Set("Disable blending=0"));
    EXPECT_EQ(std::string("2:\0", 3), Set("other.thing=OFF"));
}

// A list takes a number or the name of a choice, and the application gets the whole text with a new first
// line.
TEST(Settings, OfLists)
{
    EXPECT_EQ("1:2\nApp defined\nNone\nBack\nFront", Set("Culling mode=2"));
    EXPECT_EQ("1:3\nApp defined\nNone\nBack\nFront", Set("culling mode=front"));
    EXPECT_EQ("1:0\nApp defined\nNone\nBack\nFront", Set("Culling mode=App Defined"));
}

// Each mistake has one line, which says what would be right.
TEST(Settings, MistakesSayWhatThereIs)
{
    EXPECT_EQ("--set Thing: the application's items are Disable blending, Culling mode, Other.Thing, Opaque",
              Set("Thing=1"));
    EXPECT_EQ("--set Disable blending=yes: the values are 0, 1, off, on", Set("Disable blending=yes"));
    EXPECT_EQ("--set Culling mode=-1: the values are 0 (App defined), 1 (None), 2 (Back), 3 (Front)",
              Set("Culling mode=-1"));
    EXPECT_EQ("--set Opaque: this item cannot be set", Set("Opaque=1"));
    for (char const* const text : {"", "=", "a", "a=", "=1"})
        EXPECT_EQ("not a setting", Set(text)) << text;
}

// A key switches a switch over and goes through a list; putting off is the first state of both. What is
// neither stays as it is.
TEST(Items, NextAndOff)
{
    EXPECT_EQ("\1", Toggled(kItems[0]));
    EXPECT_EQ(std::string(1, '\0'), Toggled(kItems[2]));
    EXPECT_EQ(std::string(1, '\0'), PutOff(kItems[2]));
    EXPECT_EQ("1\nApp defined\nNone\nBack\nFront", Toggled(kCulling));
    EXPECT_EQ("0\nA\nB", Toggled({"List", 3, "1\nA\nB"}));
    EXPECT_EQ("0\nA\nB", PutOff({"List", 3, "1\nA\nB"}));
    EXPECT_EQ("ab", Toggled(kItems[3]));
    EXPECT_EQ("ab", PutOff(kItems[3]));
}

// An item that is not what its type says is shown, and left alone.
TEST(Items, ThatContradictThemselves)
{
    for (Item const& item : {Item{"Switch", 4, ""}, Item{"Switch", 4, "ab"}, Item{"List", 3, ""},
                             Item{"List", 3, "0"}, Item{"Other", 0, "x"}})
    {
        EXPECT_EQ("?", ValueText(item));
        EXPECT_EQ(item.value, Toggled(item));
        EXPECT_EQ(item.value, PutOff(item));
    }
    EXPECT_EQ("A", ValueText({"List", 3, "7\nA\nB"})) << "a selection that is not there";
    EXPECT_EQ("A", ValueText({"List", 3, "\nA\nB"}));
    EXPECT_EQ("1\nA\nB", Toggled({"List", 3, "99999999999999999999\nA\nB"}));
}

// Names of the application cannot play with the terminal.
TEST(Items, NamesAreMadePrintable)
{
    EXPECT_EQ("a?[2Jb?", ShortName({"a\x1b[2Jb\n", 4, "x"}));
    EXPECT_EQ("?A", ValueText({"List", 3, "0\n\rA"}));
    EXPECT_EQ("a?b?c", Printable("a\xC2\x9B"
                                 "b\xC2\x80"
                                 "c"))
        << "control characters of UTF-8";
    EXPECT_EQ("a?b?c?", Printable("a\x9B"
                                  "b\xE9"
                                  "c\xC3"))
        << "no UTF-8";
    EXPECT_EQ("???", Printable("\xC0\x9B\x7F")) << "an overlong form";
    EXPECT_EQ("??????", Printable("\xED\xA0\x80\xF4\x90\x80")) << "a surrogate, and past the last one";
    EXPECT_EQ("\xC2\xA0\xC3\x9B\xE9\x9B\x9B\xF0\x9F\x98\x80",
              Printable("\xC2\xA0\xC3\x9B\xE9\x9B\x9B\xF0\x9F\x98\x80"))
        << "letters that have such bytes";
}

// Each of the recorder's thirteen switches has a key of its own, the culling mode has one, and none is taken
// that means something else.
TEST(Items, Keys)
{
    std::vector<Item> items(13, Switch("Switch"));
    items.push_back(kCulling);
    items.push_back({"Opaque", 1, "x"});
    EXPECT_EQ("123456789abcdm ", KeysOf(items));
    std::vector<Item> const many(40, Switch("Switch"));
    std::string const keys = KeysOf(many);
    EXPECT_EQ("123456789abcdefghijkl", keys.substr(0, keys.find(' ')));
}
