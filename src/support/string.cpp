#include "support/string.h"
#include <cctype>
#include <cstdio>
#include <cstdlib>
#include <cstring>

uint32_t const CNEBTString::npos;

namespace
{

uint32_t LengthOf(char const* text) { return text ? static_cast<uint32_t>(std::strlen(text)) : 0; }

int CompareBytes(char const* left, uint32_t leftCount, char const* right, uint32_t rightCount)
{
    uint32_t const common = leftCount < rightCount ? leftCount : rightCount;
    int const order = common ? std::memcmp(left, right, common) : 0;
    if (order != 0 || leftCount == rightCount)
        return order;
    return leftCount < rightCount ? -1 : 1;
}

}  // namespace

CNEBTString::CNEBTString() : pChars(static_cast<char*>(std::calloc(1, 1))), charCount(0), allocatedBytes(1) {}
CNEBTString::CNEBTString(char const* text) : CNEBTString() { assign(text); }
CNEBTString::CNEBTString(char const* text, uint32_t length) : CNEBTString() { assign(text, length); }
CNEBTString::CNEBTString(CNEBTString const& other) : CNEBTString() { assign(other); }
CNEBTString::CNEBTString(CNEBTString&& other) : CNEBTString() { swap(other); }
CNEBTString::CNEBTString(CNEBTString const& other, uint32_t pos, uint32_t length) : CNEBTString()
{
    assign(other, pos, length);
}
CNEBTString::CNEBTString(char c) : CNEBTString() { push_back(c); }
CNEBTString::CNEBTString(uint32_t count, char c) : CNEBTString() { assign(count, c); }
CNEBTString::~CNEBTString() { std::free(pChars); }

// Bytes from pos on, at most count.
uint32_t CNEBTString::Clamp(uint32_t pos, uint32_t count) const
{
    if (pos >= charCount)
        return 0;
    return count < charCount - pos ? count : charCount - pos;
}

CNEBTString& CNEBTString::assign(char const* text) { return assign(text, LengthOf(text)); }

CNEBTString& CNEBTString::assign(char const* text, uint32_t length)
{
    if (!text)
        length = 0;
    if (length > max_size())
        length = max_size();
    if (length + 1 > allocatedBytes)
    {
        // The text may be a part of the old block: it is copied before that goes.
        char* const block = static_cast<char*>(std::malloc(length + 1));
        std::memcpy(block, text, length);
        std::free(pChars);
        pChars = block;
        allocatedBytes = length + 1;
    }
    else if (length)
        std::memmove(pChars, text, length);
    charCount = length;
    pChars[charCount] = 0;
    return *this;
}

CNEBTString& CNEBTString::assign(CNEBTString const& other) { return assign(other.pChars, other.charCount); }

CNEBTString& CNEBTString::assign(CNEBTString const& other, uint32_t pos, uint32_t length)
{
    uint32_t const start = pos < other.charCount ? pos : other.charCount;
    return assign(other.pChars + start, other.Clamp(start, length));
}

CNEBTString& CNEBTString::assign(uint32_t count, char c)
{
    clear();
    return append(count, c);
}

CNEBTString& CNEBTString::assign(char c) { return assign(1, c); }

CNEBTString& CNEBTString::append(char c) { return append(1, c); }

CNEBTString& CNEBTString::operator=(char c) { return assign(&c, 1); }
CNEBTString& CNEBTString::operator=(char const* text) { return assign(text); }
CNEBTString& CNEBTString::operator=(CNEBTString const& other) { return assign(other); }

CNEBTString& CNEBTString::append(char const* text) { return append(text, LengthOf(text)); }

CNEBTString& CNEBTString::append(char const* text, uint32_t length)
{
    if (!text)
        return *this;
    if (length > max_size() - charCount)
        length = max_size() - charCount;
    uint32_t const needed = charCount + length + 1;
    if (needed > allocatedBytes)
    {
        // Both parts are in the new block before the old one is freed: the text may be a part of it.
        char* const block = static_cast<char*>(std::malloc(needed));
        std::memmove(block, pChars, charCount);
        std::memmove(block + charCount, text, length);
        std::free(pChars);
        pChars = block;
        allocatedBytes = needed;
    }
    else
        std::memmove(pChars + charCount, text, length);
    charCount += length;
    pChars[charCount] = 0;
    return *this;
}

CNEBTString& CNEBTString::append(CNEBTString const& other) { return append(other.pChars, other.charCount); }

CNEBTString& CNEBTString::append(CNEBTString const& other, uint32_t pos, uint32_t length)
{
    uint32_t const start = pos < other.charCount ? pos : other.charCount;
    return append(other.pChars + start, other.Clamp(start, length));
}

CNEBTString& CNEBTString::append(uint32_t count, char c)
{
    if (count > max_size() - charCount)
        count = max_size() - charCount;
    Grow(charCount + count + 1);
    std::memset(pChars + charCount, c, count);
    charCount += count;
    pChars[charCount] = 0;
    return *this;
}

CNEBTString& CNEBTString::operator+=(char c) { return append(&c, 1); }
CNEBTString& CNEBTString::operator+=(char const* text) { return append(text); }
CNEBTString& CNEBTString::operator+=(CNEBTString const& other) { return append(other); }
void CNEBTString::push_back(char c) { append(&c, 1); }

char const* CNEBTString::c_str() const { return pChars; }
char const* CNEBTString::data() const { return pChars; }
uint32_t CNEBTString::size() const { return charCount; }
uint32_t CNEBTString::length() const { return charCount; }
uint32_t CNEBTString::capacity() const { return allocatedBytes; }
// Room is left for the terminator and for npos, which is no length.
uint32_t CNEBTString::max_size() const { return npos - 1; }
bool CNEBTString::empty() const { return charCount == 0; }
char& CNEBTString::operator[](uint32_t index) { return pChars[index < charCount ? index : charCount]; }
char const& CNEBTString::operator[](uint32_t index) const
{
    return pChars[index < charCount ? index : charCount];
}

void CNEBTString::clear()
{
    charCount = 0;
    pChars[0] = 0;
}

void CNEBTString::Grow(uint32_t bytes)
{
    if (bytes <= allocatedBytes)
        return;
    pChars = static_cast<char*>(std::realloc(pChars, bytes));
    allocatedBytes = bytes;
}

void CNEBTString::reserve(uint32_t count)
{
    if (count <= max_size())
        Grow(count + 1);
}

void CNEBTString::resize(uint32_t count, char fill)
{
    if (count > charCount)
    {
        append(count - charCount, fill);
        return;
    }
    charCount = count;
    pChars[charCount] = 0;
}

CNEBTString& CNEBTString::erase(uint32_t pos, uint32_t count)
{
    uint32_t const erased = Clamp(pos, count);
    if (erased)
    {
        std::memmove(pChars + pos, pChars + pos + erased, charCount - pos - erased + 1);
        charCount -= erased;
    }
    return *this;
}

void CNEBTString::swap(CNEBTString& other)
{
    char* const chars = pChars;
    uint32_t const count = charCount;
    uint32_t const bytes = allocatedBytes;
    pChars = other.pChars;
    charCount = other.charCount;
    allocatedBytes = other.allocatedBytes;
    other.pChars = chars;
    other.charCount = count;
    other.allocatedBytes = bytes;
}

uint32_t CNEBTString::copy(char* target, uint32_t count, uint32_t pos) const
{
    uint32_t const copied = target ? Clamp(pos, count) : 0;
    if (copied)
        std::memcpy(target, pChars + pos, copied);
    return copied;
}

CNEBTString CNEBTString::substr(uint32_t pos, uint32_t count) const { return CNEBTString(*this, pos, count); }
CNEBTString CNEBTString::left(uint32_t count) const { return CNEBTString(*this, 0, count); }
CNEBTString CNEBTString::right(uint32_t count) const
{
    return CNEBTString(*this, count < charCount ? charCount - count : 0, count);
}

CNEBTString& CNEBTString::toLower()
{
    for (uint32_t i = 0; i < charCount; ++i)
        pChars[i] = static_cast<char>(std::tolower(static_cast<unsigned char>(pChars[i])));
    return *this;
}

CNEBTString& CNEBTString::toUpper()
{
    for (uint32_t i = 0; i < charCount; ++i)
        pChars[i] = static_cast<char>(std::toupper(static_cast<unsigned char>(pChars[i])));
    return *this;
}

int CNEBTString::compare(char const* text) const
{
    return CompareBytes(pChars, charCount, text, LengthOf(text));
}
int CNEBTString::compare(CNEBTString const& other) const
{
    return CompareBytes(pChars, charCount, other.pChars, other.charCount);
}
int CNEBTString::compare(uint32_t pos, uint32_t count, char const* text) const
{
    return compare(pos, count, text, LengthOf(text));
}
int CNEBTString::compare(uint32_t pos, uint32_t count, char const* text, uint32_t length) const
{
    uint32_t const start = pos < charCount ? pos : charCount;
    return CompareBytes(pChars + start, Clamp(start, count), text, text ? length : 0);
}
int CNEBTString::compare(uint32_t pos, uint32_t count, CNEBTString const& other) const
{
    return compare(pos, count, other.pChars, other.charCount);
}
int CNEBTString::compare(uint32_t pos, uint32_t count, CNEBTString const& other, uint32_t otherPos,
                         uint32_t otherCount) const
{
    uint32_t const start = otherPos < other.charCount ? otherPos : other.charCount;
    return compare(pos, count, other.pChars + start, other.Clamp(start, otherCount));
}

bool CNEBTString::operator==(char c) const { return charCount == 1 && pChars[0] == c; }
bool CNEBTString::operator==(char const* text) const { return compare(text) == 0; }
bool CNEBTString::operator==(CNEBTString const& other) const { return compare(other) == 0; }
bool CNEBTString::operator!=(char c) const { return !(*this == c); }
bool CNEBTString::operator!=(char const* text) const { return compare(text) != 0; }
bool CNEBTString::operator!=(CNEBTString const& other) const { return compare(other) != 0; }
bool CNEBTString::operator<(char const* text) const { return compare(text) < 0; }
bool CNEBTString::operator<(CNEBTString const& other) const { return compare(other) < 0; }

CNEBTString& CNEBTString::substitute(char from, char to, bool all)
{
    for (uint32_t i = 0; i < charCount; ++i)
    {
        if (pChars[i] != from)
            continue;
        pChars[i] = to;
        if (!all)
            break;
    }
    return *this;
}

CNEBTString& CNEBTString::substitute(char const* from, char const* to, bool all)
{
    uint32_t const length = LengthOf(from);
    if (length == 0)
        return *this;
    CNEBTString result;
    uint32_t done = 0;
    for (uint32_t at = find(from); at != npos; at = all ? find(from, done) : npos)
    {
        result.append(pChars + done, at - done);
        result.append(to);
        done = at + length;
    }
    result.append(pChars + done, charCount - done);
    swap(result);
    return *this;
}

CNEBTString& CNEBTString::format(char const* format, ...)
{
    va_list arguments;
    va_start(arguments, format);
    assign(NEBTStringFromFormattedArguments(format, arguments));
    va_end(arguments);
    return *this;
}

CNEBTString NEBTStringFromFormattedArguments(char const* format, va_list arguments)
{
    va_list again;
    va_copy(again, arguments);
    int const needed = format ? std::vsnprintf(nullptr, 0, format, arguments) : 0;
    uint32_t const length = needed > 0 ? static_cast<uint32_t>(needed) : 0;
    char* const text = static_cast<char*>(std::calloc(length + 1u, 1));
    if (length)
        std::vsnprintf(text, length + 1u, format, again);
    va_end(again);
    CNEBTString result(text, length);
    std::free(text);
    return result;
}

CNEBTString NEBTStringFromFormattedStr(char const* format, ...)
{
    va_list arguments;
    va_start(arguments, format);
    CNEBTString result = NEBTStringFromFormattedArguments(format, arguments);
    va_end(arguments);
    return result;
}
