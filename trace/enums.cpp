#include "trace/enums.h"
#include <algorithm>
#include <cstdio>
#include <unordered_map>

namespace nebtrace
{
namespace
{
struct Enumerant
{
    uint32_t value;
    bool bits;
    bool egl;
    char const* name;
    char const* groups;
};

// The order decides which of two names for one value is given: the older one.
constexpr Enumerant kEnumerants[] = {
#define ENUMERANT(value, name, groups) {value, false, false, #name, groups},
#define BITS(value, name, groups) {value, true, false, #name, groups},
#include "trace/enums/gl_es1_es2.def"
#define ENUMERANT(value, name, groups) {value, false, false, #name, groups},
#define BITS(value, name, groups) {value, true, false, #name, groups},
#include "trace/enums/gl_es30.def"
#define ENUMERANT(value, name, groups) {value, false, false, #name, groups},
#define BITS(value, name, groups) {value, true, false, #name, groups},
#include "trace/enums/gl_es31_es32.def"
#define ENUMERANT(value, name, groups) {value, false, false, #name, groups},
#define BITS(value, name, groups) {value, true, false, #name, groups},
#include "trace/enums/gl_extensions_low.def"
#define ENUMERANT(value, name, groups) {value, false, false, #name, groups},
#define BITS(value, name, groups) {value, true, false, #name, groups},
#include "trace/enums/gl_extensions_high.def"
#define ENUMERANT(value, name, groups) {value, false, true, #name, groups},
#define BITS(value, name, groups) {value, true, true, #name, groups},
#include "trace/enums/egl.def"
};

// Below this, enumerants of different meaning share their values (GL_ONE, GL_LINES, GL_TRUE).
constexpr uint32_t kFirstTellingValue = 256;

class Tables
{
public:
    Tables();
    EnumGroup const* Group(std::string_view name) const
    {
        auto const found = m_groups.find(name);
        return found == m_groups.end() ? nullptr : &found->second;
    }
    EnumGroup const& Any(bool egl) const { return egl ? m_anyEgl : m_anyGl; }

private:
    void AddToGroups(Enumerant const& enumerant);

    std::unordered_map<std::string_view, EnumGroup> m_groups;
    EnumGroup m_anyGl;
    EnumGroup m_anyEgl;
};

void Sort(EnumGroup& group)
{
    auto const less = [](auto const& a, auto const& b) { return a.first < b.first; };
    auto const same = [](auto const& a, auto const& b) { return a.first == b.first; };
    std::stable_sort(group.values.begin(), group.values.end(), less);
    group.values.erase(std::unique(group.values.begin(), group.values.end(), same), group.values.end());
}

Tables::Tables()
{
    for (Enumerant const& enumerant : kEnumerants)
    {
        AddToGroups(enumerant);
        if (!enumerant.bits && enumerant.value >= kFirstTellingValue)
            (enumerant.egl ? m_anyEgl : m_anyGl).values.emplace_back(enumerant.value, enumerant.name);
    }
    for (auto& [name, group] : m_groups)
        Sort(group);
    Sort(m_anyGl);
    Sort(m_anyEgl);
}

void Tables::AddToGroups(Enumerant const& enumerant)
{
    std::string_view left = enumerant.groups;
    while (!left.empty())
    {
        std::string_view const name = left.substr(0, left.find(' '));
        left.remove_prefix(std::min(left.size(), name.size() + 1));
        EnumGroup& group = m_groups[name];
        group.name = name;
        group.egl = enumerant.egl;
        group.values.emplace_back(enumerant.value, enumerant.name);
    }
}

Tables const& GetTables()
{
    static Tables const tables;
    return tables;
}
}  // namespace

char const* EnumGroup::Find(uint32_t value) const
{
    auto const less = [](auto const& entry, uint32_t wanted) { return entry.first < wanted; };
    auto const found = std::lower_bound(values.begin(), values.end(), value, less);
    return found != values.end() && found->first == value ? found->second : nullptr;
}

EnumGroup const* FindEnumGroup(std::string_view name) { return GetTables().Group(name); }

char const* EnumName(EnumGroup const* group, uint32_t value)
{
    char const* const name = group ? group->Find(value) : nullptr;
    return name ? name : GetTables().Any(group && group->egl).Find(value);
}

char const* EnumName(std::string_view group, uint32_t value) { return EnumName(FindEnumGroup(group), value); }

static void AddBits(std::string& text, std::string_view name)
{
    if (!text.empty())
        text += " | ";
    text += name;
}

std::string BitsText(EnumGroup const* group, uint32_t bits)
{
    if (bits == 0)
        return "0";
    char const* const whole = group ? group->Find(bits) : nullptr;
    if (whole)
        return whole;
    std::string text;
    uint32_t rest = bits;
    for (uint32_t bit = 1; bit != 0; bit <<= 1)
    {
        char const* const name = group && (bits & bit) ? group->Find(bit) : nullptr;
        if (!name)
            continue;
        AddBits(text, name);
        rest &= ~bit;
    }
    char hex[16];
    std::snprintf(hex, sizeof hex, "0x%X", rest);
    if (rest != 0)
        AddBits(text, hex);
    return text;
}
}  // namespace nebtrace
