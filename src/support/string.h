// The string of the whole system: a mutable byte string that is always zero-terminated.
#pragma once
#include "support/export.h"
#include <cstdarg>
#include <cstdint>

class NEBTRACE_API CNEBTString
{
public:
    // The sentinel of the find family. The occurance searches and find_first_ofn have others: see there.
    static uint32_t const npos = 0xFFFFFFFFu;

    CNEBTString();
    CNEBTString(char const* text);
    CNEBTString(char const* text, uint32_t length);
    CNEBTString(CNEBTString const& other);
    CNEBTString(CNEBTString&& other);
    CNEBTString(CNEBTString const& other, uint32_t pos, uint32_t length = npos);
    explicit CNEBTString(char c);
    CNEBTString(uint32_t count, char c);
    virtual ~CNEBTString();

    CNEBTString& assign(char const* text);
    CNEBTString& assign(char const* text, uint32_t length);
    CNEBTString& assign(CNEBTString const& other);
    CNEBTString& assign(CNEBTString const& other, uint32_t pos, uint32_t length);
    CNEBTString& assign(uint32_t count, char c);
    CNEBTString& assign(char c);
    CNEBTString& operator=(char c);
    CNEBTString& operator=(char const* text);
    CNEBTString& operator=(CNEBTString const& other);

    // Grows to exactly what is needed: appending in a loop is quadratic, which is accepted.
    CNEBTString& append(char const* text);
    CNEBTString& append(char const* text, uint32_t length);
    CNEBTString& append(CNEBTString const& other);
    CNEBTString& append(CNEBTString const& other, uint32_t pos, uint32_t length);
    CNEBTString& append(uint32_t count, char c);
    CNEBTString& append(char c);
    CNEBTString& operator+=(char c);
    CNEBTString& operator+=(char const* text);
    CNEBTString& operator+=(CNEBTString const& other);
    void push_back(char c);

    char const* c_str() const;
    char const* data() const;
    uint32_t size() const;
    uint32_t length() const;
    // Bytes allocated, so that one more than the longest text that fits.
    uint32_t capacity() const;
    uint32_t max_size() const;
    bool empty() const;
    // An index past the end reads the terminator.
    char& operator[](uint32_t index);
    char const& operator[](uint32_t index) const;

    void clear();
    void reserve(uint32_t count);
    void resize(uint32_t count, char fill = 0);
    CNEBTString& erase(uint32_t pos = 0, uint32_t count = npos);
    void swap(CNEBTString& other);
    // Returns the number of bytes copied; target gets no terminator.
    uint32_t copy(char* target, uint32_t count, uint32_t pos = 0) const;
    // Ranges that leave the string are cut to it.
    CNEBTString substr(uint32_t pos = 0, uint32_t count = npos) const;
    CNEBTString left(uint32_t count) const;
    CNEBTString right(uint32_t count) const;
    CNEBTString& toLower();
    CNEBTString& toUpper();

    int compare(char const* text) const;
    int compare(CNEBTString const& other) const;
    int compare(uint32_t pos, uint32_t count, char const* text) const;
    int compare(uint32_t pos, uint32_t count, char const* text, uint32_t length) const;
    int compare(uint32_t pos, uint32_t count, CNEBTString const& other) const;
    int compare(uint32_t pos, uint32_t count, CNEBTString const& other, uint32_t otherPos,
                uint32_t otherCount) const;
    bool operator==(char c) const;
    bool operator==(char const* text) const;
    bool operator==(CNEBTString const& other) const;
    bool operator!=(char c) const;
    bool operator!=(char const* text) const;
    bool operator!=(CNEBTString const& other) const;
    bool operator<(char const* text) const;
    bool operator<(CNEBTString const& other) const;

    // The whole text, at or after pos; npos when there is none.
    uint32_t find(char c, uint32_t pos = 0) const;
    uint32_t find(char const* text, uint32_t pos = 0) const;
    uint32_t find(char const* text, uint32_t pos, uint32_t length) const;
    uint32_t find(CNEBTString const& other, uint32_t pos = 0) const;

    // Any one (or none) of the bytes; the last searches walk down from pos. npos when there is none.
    uint32_t find_first_of(char c, uint32_t pos = 0) const;
    uint32_t find_first_of(char const* set, uint32_t pos = 0) const;
    uint32_t find_first_of(char const* set, uint32_t pos, uint32_t length) const;
    uint32_t find_first_of(CNEBTString const& set, uint32_t pos = 0) const;
    uint32_t find_first_not_of(char c, uint32_t pos = 0) const;
    uint32_t find_first_not_of(char const* set, uint32_t pos = 0) const;
    uint32_t find_first_not_of(char const* set, uint32_t pos, uint32_t length) const;
    uint32_t find_first_not_of(CNEBTString const& set, uint32_t pos = 0) const;
    uint32_t find_last_of(char c, uint32_t pos = npos) const;
    uint32_t find_last_of(char const* set, uint32_t pos = npos) const;
    uint32_t find_last_of(char const* set, uint32_t pos, uint32_t length) const;
    uint32_t find_last_of(CNEBTString const& set, uint32_t pos = npos) const;
    uint32_t find_last_not_of(char c, uint32_t pos = npos) const;
    uint32_t find_last_not_of(char const* set, uint32_t pos = npos) const;
    uint32_t find_last_not_of(char const* set, uint32_t pos, uint32_t length) const;
    uint32_t find_last_not_of(CNEBTString const& set, uint32_t pos = npos) const;

    // On purpose: finds the whole sequence of n bytes, whatever its name says; -1 when there is none.
    int find_first_ofn(char const* text, uint32_t pos, uint32_t n) const;

    // Any one of the bytes, at or after pos; length() when there is none, not npos.
    uint32_t find_next_occurance_of(char c, uint32_t pos = 0) const;
    uint32_t find_next_occurance_of(char const* set, uint32_t pos = 0) const;
    uint32_t find_next_occurance_of(char const* set, uint32_t pos, uint32_t length) const;
    uint32_t find_next_occurance_of(CNEBTString const& set, uint32_t pos = 0) const;
    // Any one of the bytes, from pos down to index 1; -1 when there is none.
    // On purpose: index 0 is never found.
    int find_previous_occurance_of(char c, uint32_t pos) const;
    int find_previous_occurance_of(char const* set, uint32_t pos) const;
    int find_previous_occurance_of(char const* set, uint32_t pos, uint32_t length) const;
    int find_previous_occurance_of(CNEBTString const& set, uint32_t pos) const;
    // How many positions from pos on hold any one of the bytes.
    uint32_t find_number_of(char c, uint32_t pos = 0) const;
    uint32_t find_number_of(char const* set, uint32_t pos = 0) const;
    uint32_t find_number_of(char const* set, uint32_t pos, uint32_t length) const;
    uint32_t find_number_of(CNEBTString const& set, uint32_t pos = 0) const;

    // Replaces the first occurrence, or all of them.
    CNEBTString& substitute(char from, char to, bool all = true);
    CNEBTString& substitute(char const* from, char const* to, bool all = true);
    CNEBTString& format(char const* format, ...) __attribute__((format(printf, 2, 3)));

private:
    uint32_t Clamp(uint32_t pos, uint32_t count) const;
    void Grow(uint32_t bytes);

    char* pChars;
    uint32_t charCount;
    uint32_t allocatedBytes;
};

NEBTRACE_API CNEBTString operator+(CNEBTString const& left, CNEBTString const& right);
NEBTRACE_API CNEBTString operator+(CNEBTString const& left, char const* right);
NEBTRACE_API CNEBTString operator+(CNEBTString const& left, char right);
NEBTRACE_API CNEBTString operator+(char const* left, CNEBTString const& right);
NEBTRACE_API CNEBTString operator+(char left, CNEBTString const& right);

NEBTRACE_API CNEBTString NEBTStringFromFormattedStr(char const* format, ...)
    __attribute__((format(printf, 1, 2)));
CNEBTString NEBTStringFromFormattedArguments(char const* format, va_list arguments)
    __attribute__((format(printf, 1, 0)));
NEBTRACE_API CNEBTString NEBTStringStripWhiteSpaceFromEndOf(CNEBTString const& text);
NEBTRACE_API CNEBTString NEBTStringStripWhiteSpaceFromStartOf(CNEBTString const& text);
// What stands behind the last "/"; the whole path when it has none.
NEBTRACE_API CNEBTString NEBTStringGetFileName(CNEBTString const& path);
// The file name from its last "." on, the dot included; empty when it has none.
NEBTRACE_API CNEBTString NEBTStringGetFileExtension(CNEBTString const& path);
// What stands before the last "/", or "/" itself for a file of the root; empty when the path has none.
NEBTRACE_API CNEBTString NEBTStringGetContainingDirectoryPath(CNEBTString const& path);
