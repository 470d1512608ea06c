// Enumerants by value. The tables are trace/enums/*.def.
#pragma once
#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace nebtrace
{
// The enumerants that may stand for one argument.
class EnumGroup
{
public:
    // Null if the group has no such value.
    char const* Find(uint32_t value) const;

    std::string name;
    bool egl = false;
    std::vector<std::pair<uint32_t, char const*>> values;  // ascending; one name for each value
};

// Null if there is no such group.
EnumGroup const* FindEnumGroup(std::string_view name);

// The name of a value: from the group, if one is given, else any enumerant of the same API family. Null if
// there is none. Values below 256 have no name outside a group: too many enumerants share them.
char const* EnumName(EnumGroup const* group, uint32_t value);
char const* EnumName(std::string_view group, uint32_t value);

// "GL_COLOR_BUFFER_BIT | 0x8", or "0".
std::string BitsText(EnumGroup const* group, uint32_t bits);
}  // namespace nebtrace
