#include "tools/perf/items.h"
#include "tools/commands.h"
#include <algorithm>
#include <cctype>

namespace perf
{
namespace
{
constexpr uint32_t kList = 3;
constexpr uint32_t kSwitch = 4;
constexpr char kPrefix[] = "NEBTrace.";

std::string Lower(std::string text)
{
    std::transform(text.begin(), text.end(), text.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return text;
}

bool IsNumber(std::string const& text)
{
    return !text.empty() && text.size() < 10 && text.find_first_not_of("0123456789") == std::string::npos;
}

std::string FirstLine(std::string const& text) { return text.substr(0, text.find('\n')); }

std::string WithSelection(Item const& item, size_t selection)
{
    size_t const end = item.value.find('\n');
    return std::to_string(selection) + (end == std::string::npos ? std::string() : item.value.substr(end));
}

std::string SwitchValue(bool on) { return std::string(1, on ? '\1' : '\0'); }

bool IsOn(Item const& item) { return item.value[0] != '\0'; }

// "a, b, c"
template <typename Range, typename Text>
std::string Listed(Range const& range, Text text)
{
    std::string all;
    for (auto const& entry : range)
        all += (all.empty() ? "" : ", ") + text(entry);
    return all;
}

[[noreturn]] void FailForValue(Setting const& setting, std::string const& values)
{
    throw CommandFailed(
        Printable("--set " + setting.name + "=" + setting.value + ": the values are " + values));
}

std::string ValueOfSwitch(Setting const& setting)
{
    std::string const value = Lower(setting.value);
    if (value == "1" || value == "on")
        return SwitchValue(true);
    if (value == "0" || value == "off")
        return SwitchValue(false);
    FailForValue(setting, "0, 1, off, on");
}

std::string ValueOfList(Setting const& setting, Item const& item)
{
    std::vector<std::string> const choices = ChoicesOf(item);
    for (size_t i = 0; i < choices.size(); ++i)
        if (Lower(choices[i]) == Lower(setting.value) || std::to_string(i) == setting.value)
            return WithSelection(item, i);
    size_t number = 0;
    FailForValue(setting, Listed(choices, [&](std::string const& choice) {
                     return std::to_string(number++) + " (" + choice + ")";
                 }));
}
unsigned char ByteAt(std::string const& text, size_t at)
{
    return at < text.size() ? static_cast<unsigned char>(text[at]) : 0;
}

bool IsBetween(unsigned char byte, unsigned char first, unsigned char last)
{
    return first <= byte && byte <= last;
}

// What terminals of eight bits take for ESC and a letter: U+0080 to U+009F.
bool IsLaterControl(std::string const& text, size_t at)
{
    return ByteAt(text, at) == 0xC2 && IsBetween(ByteAt(text, at + 1), 0x80, 0x9F);
}

// What the second byte may be, by the first one: UTF-8 has one form for each character, and no surrogates.
bool IsSecond(unsigned char first, unsigned char second)
{
    unsigned char const from = first == 0xC2 || first == 0xE0 ? 0xA0 : first == 0xF0 ? 0x90 : 0x80;
    unsigned char const to = first == 0xED ? 0x9F : first == 0xF4 ? 0x8F : 0xBF;
    return IsBetween(second, from, to);
}

// Of a character that can be shown; 0 for another one and for what is none.
size_t LengthAt(std::string const& text, size_t at)
{
    unsigned char const first = ByteAt(text, at);
    if (first < 0x80)
        return IsBetween(first, 0x20, 0x7E) ? 1 : 0;
    if (!IsBetween(first, 0xC2, 0xF4) || !IsSecond(first, ByteAt(text, at + 1)))
        return 0;
    size_t const length = first < 0xE0 ? 2 : first < 0xF0 ? 3 : 4;
    for (size_t i = 2; i < length; ++i)
        if (!IsBetween(ByteAt(text, at + i), 0x80, 0xBF))
            return 0;
    return length;
}
}  // namespace

bool IsSwitch(Item const& item) { return item.type == kSwitch && item.value.size() == 1; }

bool IsList(Item const& item) { return item.type == kList && !ChoicesOf(item).empty(); }

std::vector<std::string> ChoicesOf(Item const& item)
{
    std::vector<std::string> choices;
    for (size_t at = item.value.find('\n'); at != std::string::npos;)
    {
        size_t const end = item.value.find('\n', at + 1);
        choices.push_back(item.value.substr(at + 1, end == std::string::npos ? end : end - at - 1));
        at = end;
    }
    return choices;
}

size_t SelectionOf(Item const& item)
{
    std::string const number = FirstLine(item.value);
    size_t const selection = IsNumber(number) ? std::stoul(number) : 0;
    return selection < ChoicesOf(item).size() ? selection : 0;
}

std::string ShortName(Item const& item)
{
    bool const ours = item.name.compare(0, sizeof kPrefix - 1, kPrefix) == 0;
    return Printable(ours ? item.name.substr(sizeof kPrefix - 1) : item.name);
}

std::string ValueText(Item const& item)
{
    if (IsSwitch(item))
        return IsOn(item) ? "on" : "off";
    if (IsList(item))
        return Printable(ChoicesOf(item)[SelectionOf(item)]);
    return "?";
}

std::string Toggled(Item const& item)
{
    if (IsSwitch(item))
        return SwitchValue(!IsOn(item));
    if (IsList(item))
        return WithSelection(item, (SelectionOf(item) + 1) % ChoicesOf(item).size());
    return item.value;
}

std::string PutOff(Item const& item)
{
    if (IsSwitch(item))
        return SwitchValue(false);
    return IsList(item) ? WithSelection(item, 0) : item.value;
}

std::optional<Setting> ParseSetting(std::string const& text)
{
    size_t const equals = text.find('=');
    if (equals == std::string::npos || equals == 0 || equals + 1 == text.size())
        return std::nullopt;
    return Setting{text.substr(0, equals), text.substr(equals + 1)};
}

Change Resolve(Setting const& setting, std::vector<Item> const& items)
{
    auto const isMeant = [&](Item const& item) {
        std::string const name = Lower(setting.name);
        return Lower(item.name) == name || Lower(item.name) == Lower(kPrefix) + name;
    };
    auto const found = std::find_if(items.begin(), items.end(), isMeant);
    if (found == items.end())
        throw CommandFailed(
            Printable("--set " + setting.name + ": the application's items are " + Listed(items, ShortName)));
    auto const index = static_cast<uint32_t>(found - items.begin());
    if (IsSwitch(*found))
        return {index, ValueOfSwitch(setting)};
    if (IsList(*found))
        return {index, ValueOfList(setting, *found)};
    throw CommandFailed(Printable("--set " + setting.name + ": this item cannot be set"));
}

std::string Printable(std::string const& text)
{
    std::string printable;
    for (size_t at = 0; at < text.size();)
    {
        size_t const length = LengthAt(text, at);
        printable += length == 0 ? "?" : text.substr(at, length);
        // A control character of two bytes is one question mark.
        at += std::max<size_t>(length, IsLaterControl(text, at) ? 2 : 1);
    }
    return printable;
}
}  // namespace perf
