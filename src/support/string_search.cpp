// The searches of CNEBTString. Their sentinels differ by family: npos, the length, or -1.
#include "support/string.h"
#include <cstring>

namespace
{

// One argument form for all: a char, a text with or without its length, a string.
struct SBytes
{
    char const* bytes;
    uint32_t count;
    bool Holds(char c) const { return count && std::memchr(bytes, c, count); }
};

SBytes Bytes(char const& c) { return {&c, 1}; }
SBytes Bytes(char const* text) { return {text, text ? static_cast<uint32_t>(std::strlen(text)) : 0}; }
SBytes Bytes(char const* text, uint32_t length) { return {text, text ? length : 0}; }
SBytes Bytes(CNEBTString const& text) { return {text.data(), text.size()}; }

uint32_t Find(SBytes in, SBytes what, uint32_t pos)
{
    if (pos > in.count || what.count > in.count - pos)
        return CNEBTString::npos;
    for (uint32_t i = pos; i <= in.count - what.count; ++i)
        if (what.count == 0 || std::memcmp(in.bytes + i, what.bytes, what.count) == 0)
            return i;
    return CNEBTString::npos;
}

uint32_t FindFirst(SBytes in, SBytes set, uint32_t pos, bool held)
{
    for (uint32_t i = pos; i < in.count; ++i)
        if (set.Holds(in.bytes[i]) == held)
            return i;
    return CNEBTString::npos;
}

uint32_t FindLast(SBytes in, SBytes set, uint32_t pos, bool held)
{
    uint32_t const above = pos < in.count ? pos + 1 : in.count;
    for (uint32_t i = above; i > 0; --i)
        if (set.Holds(in.bytes[i - 1]) == held)
            return i - 1;
    return CNEBTString::npos;
}

uint32_t FindNext(SBytes in, SBytes set, uint32_t pos)
{
    uint32_t const found = FindFirst(in, set, pos, true);
    return found == CNEBTString::npos ? in.count : found;
}

int FindPrevious(SBytes in, SBytes set, uint32_t pos)
{
    // The terminator may be looked at, nothing behind it.
    uint32_t const start = pos < in.count ? pos : in.count;
    for (uint32_t i = start; i > 0; --i)
        if (set.Holds(in.bytes[i]))
            return static_cast<int>(i);
    return -1;
}

uint32_t FindNumber(SBytes in, SBytes set, uint32_t pos)
{
    uint32_t number = 0;
    for (uint32_t i = pos; i < in.count; ++i)
        number += set.Holds(in.bytes[i]) ? 1u : 0u;
    return number;
}

// Plain text: the settings are read before the static objects of this library exist.
char const kWhiteSpace[] = " \t\n\v\f\r";

}  // namespace

uint32_t CNEBTString::find(char c, uint32_t pos) const { return Find(Bytes(*this), Bytes(c), pos); }
uint32_t CNEBTString::find(char const* text, uint32_t pos) const
{
    return Find(Bytes(*this), Bytes(text), pos);
}
uint32_t CNEBTString::find(char const* text, uint32_t pos, uint32_t length) const
{
    return Find(Bytes(*this), Bytes(text, length), pos);
}
uint32_t CNEBTString::find(CNEBTString const& other, uint32_t pos) const
{
    return Find(Bytes(*this), Bytes(other), pos);
}

uint32_t CNEBTString::find_first_of(char c, uint32_t pos) const
{
    return FindFirst(Bytes(*this), Bytes(c), pos, true);
}
uint32_t CNEBTString::find_first_of(char const* set, uint32_t pos) const
{
    return FindFirst(Bytes(*this), Bytes(set), pos, true);
}
uint32_t CNEBTString::find_first_of(char const* set, uint32_t pos, uint32_t length) const
{
    return FindFirst(Bytes(*this), Bytes(set, length), pos, true);
}
uint32_t CNEBTString::find_first_of(CNEBTString const& set, uint32_t pos) const
{
    return FindFirst(Bytes(*this), Bytes(set), pos, true);
}

uint32_t CNEBTString::find_first_not_of(char c, uint32_t pos) const
{
    return FindFirst(Bytes(*this), Bytes(c), pos, false);
}
uint32_t CNEBTString::find_first_not_of(char const* set, uint32_t pos) const
{
    return FindFirst(Bytes(*this), Bytes(set), pos, false);
}
uint32_t CNEBTString::find_first_not_of(char const* set, uint32_t pos, uint32_t length) const
{
    return FindFirst(Bytes(*this), Bytes(set, length), pos, false);
}
uint32_t CNEBTString::find_first_not_of(CNEBTString const& set, uint32_t pos) const
{
    return FindFirst(Bytes(*this), Bytes(set), pos, false);
}

uint32_t CNEBTString::find_last_of(char c, uint32_t pos) const
{
    return FindLast(Bytes(*this), Bytes(c), pos, true);
}
uint32_t CNEBTString::find_last_of(char const* set, uint32_t pos) const
{
    return FindLast(Bytes(*this), Bytes(set), pos, true);
}
uint32_t CNEBTString::find_last_of(char const* set, uint32_t pos, uint32_t length) const
{
    return FindLast(Bytes(*this), Bytes(set, length), pos, true);
}
uint32_t CNEBTString::find_last_of(CNEBTString const& set, uint32_t pos) const
{
    return FindLast(Bytes(*this), Bytes(set), pos, true);
}

uint32_t CNEBTString::find_last_not_of(char c, uint32_t pos) const
{
    return FindLast(Bytes(*this), Bytes(c), pos, false);
}
uint32_t CNEBTString::find_last_not_of(char const* set, uint32_t pos) const
{
    return FindLast(Bytes(*this), Bytes(set), pos, false);
}
uint32_t CNEBTString::find_last_not_of(char const* set, uint32_t pos, uint32_t length) const
{
    return FindLast(Bytes(*this), Bytes(set, length), pos, false);
}
uint32_t CNEBTString::find_last_not_of(CNEBTString const& set, uint32_t pos) const
{
    return FindLast(Bytes(*this), Bytes(set), pos, false);
}

uint32_t CNEBTString::find_next_occurance_of(char c, uint32_t pos) const
{
    return FindNext(Bytes(*this), Bytes(c), pos);
}
uint32_t CNEBTString::find_next_occurance_of(char const* set, uint32_t pos) const
{
    return FindNext(Bytes(*this), Bytes(set), pos);
}
uint32_t CNEBTString::find_next_occurance_of(char const* set, uint32_t pos, uint32_t length) const
{
    return FindNext(Bytes(*this), Bytes(set, length), pos);
}
uint32_t CNEBTString::find_next_occurance_of(CNEBTString const& set, uint32_t pos) const
{
    return FindNext(Bytes(*this), Bytes(set), pos);
}

int CNEBTString::find_previous_occurance_of(char c, uint32_t pos) const
{
    return FindPrevious(Bytes(*this), Bytes(c), pos);
}
int CNEBTString::find_previous_occurance_of(char const* set, uint32_t pos) const
{
    return FindPrevious(Bytes(*this), Bytes(set), pos);
}
int CNEBTString::find_previous_occurance_of(char const* set, uint32_t pos, uint32_t length) const
{
    return FindPrevious(Bytes(*this), Bytes(set, length), pos);
}
int CNEBTString::find_previous_occurance_of(CNEBTString const& set, uint32_t pos) const
{
    return FindPrevious(Bytes(*this), Bytes(set), pos);
}

uint32_t CNEBTString::find_number_of(char c, uint32_t pos) const
{
    return FindNumber(Bytes(*this), Bytes(c), pos);
}
uint32_t CNEBTString::find_number_of(char const* set, uint32_t pos) const
{
    return FindNumber(Bytes(*this), Bytes(set), pos);
}
uint32_t CNEBTString::find_number_of(char const* set, uint32_t pos, uint32_t length) const
{
    return FindNumber(Bytes(*this), Bytes(set, length), pos);
}
uint32_t CNEBTString::find_number_of(CNEBTString const& set, uint32_t pos) const
{
    return FindNumber(Bytes(*this), Bytes(set), pos);
}

int CNEBTString::find_first_ofn(char const* text, uint32_t pos, uint32_t n) const
{
    if (!text || std::strlen(pChars) < n || pos >= charCount)
        return -1;
    uint32_t const found = Find(Bytes(*this), Bytes(text, n), pos);
    return found == npos ? -1 : static_cast<int>(found);
}

CNEBTString operator+(CNEBTString const& left, CNEBTString const& right)
{
    return CNEBTString(left) += right;
}
CNEBTString operator+(CNEBTString const& left, char const* right) { return CNEBTString(left) += right; }
CNEBTString operator+(CNEBTString const& left, char right) { return CNEBTString(left) += right; }
CNEBTString operator+(char const* left, CNEBTString const& right) { return CNEBTString(left) += right; }
CNEBTString operator+(char left, CNEBTString const& right) { return CNEBTString(left) += right; }

CNEBTString NEBTStringStripWhiteSpaceFromEndOf(CNEBTString const& text)
{
    uint32_t const last = text.find_last_not_of(kWhiteSpace);
    return last == CNEBTString::npos ? CNEBTString() : text.left(last + 1);
}

CNEBTString NEBTStringStripWhiteSpaceFromStartOf(CNEBTString const& text)
{
    uint32_t const first = text.find_first_not_of(kWhiteSpace);
    return first == CNEBTString::npos ? CNEBTString() : text.substr(first);
}

CNEBTString NEBTStringGetFileName(CNEBTString const& path)
{
    uint32_t const slash = path.find_last_of('/');
    return slash == CNEBTString::npos ? path : path.substr(slash + 1);
}

CNEBTString NEBTStringGetFileExtension(CNEBTString const& path)
{
    CNEBTString const name = NEBTStringGetFileName(path);
    uint32_t const dot = name.find_last_of('.');
    return dot == CNEBTString::npos ? CNEBTString() : name.substr(dot);
}

CNEBTString NEBTStringGetContainingDirectoryPath(CNEBTString const& path)
{
    uint32_t const slash = path.find_last_of('/');
    if (slash == CNEBTString::npos)
        return CNEBTString();
    return path.left(slash == 0 ? 1 : slash);
}
