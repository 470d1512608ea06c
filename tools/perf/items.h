// The items of an application, as people read and set them.
#pragma once
#include "tools/perf/blocks.h"

namespace perf
{
// An item is a switch of one byte, or a list: a text whose first line is the number of the line, of those
// that follow, which is chosen. What others mean is not known, and they are left alone.
bool IsSwitch(Item const& item);
bool IsList(Item const& item);

std::vector<std::string> ChoicesOf(Item const& item);
// The index of the choice; 0 for a text that says none.
size_t SelectionOf(Item const& item);

// Without what all items of the recorder begin with.
std::string ShortName(Item const& item);
// "on", "off", the choice's name.
std::string ValueText(Item const& item);

// New values. An item that can only be left alone keeps its own.
std::string Toggled(Item const& item);  // the other state, or the next choice
std::string PutOff(Item const& item);   // off, or the first choice

// An item's new value, as the application is told.
struct Change
{
    uint32_t index = 0;
    std::string value;
};

// NAME=VALUE of the command line.
struct Setting
{
    std::string name;
    std::string value;
};
std::optional<Setting> ParseSetting(std::string const& text);

// The change that a setting asks of an application. Throws CommandFailed for a name or a value that it does
// not have.
Change Resolve(Setting const& setting, std::vector<Item> const& items);

// What an application names, without anything that would move the cursor or colour the screen: what is no
// UTF-8, or a control character in it, is a question mark.
std::string Printable(std::string const& text);
}  // namespace perf
