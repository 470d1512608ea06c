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
    std::string printable = text;
    std::replace_if(
        printable.begin(), printable.end(), [](unsigned char c) { return c < 0x20 || c == 0x7F; }, '?');
    return printable;
}
}  // namespace perf
