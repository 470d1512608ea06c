#include "profiler/remove_discard.h"
#include "support/string.h"
#include <cctype>
#include <cstdint>

namespace
{

uint32_t const npos = CNEBTString::npos;

bool IsSpace(char c) { return std::isspace(static_cast<unsigned char>(c)) != 0; }
bool EndsDiscard(char c) { return IsSpace(c) || c == ';' || c == '/'; }

// All fixed texts here are plain arrays: applications compile shaders from their own exit handlers too, when
// strings of this library may be gone.
template <uint32_t N>
constexpr uint32_t LengthOf(char const (&)[N])
{
    return N - 1;
}

void Replace(CNEBTString& text, uint32_t pos, uint32_t count, char const* by)
{
    CNEBTString const rest(text, pos + count);
    text.resize(pos);
    text.append(by);
    text.append(rest);
}

// The line feed stays: directives need their ends.
void RemoveLineComment(CNEBTString& text, uint32_t pos)
{
    uint32_t const end = text.find('\n', pos + 2);
    text.erase(pos, end == npos ? npos : end - pos);
}

// On purpose: the walk neither stops at the first close nor steps back after it, so that a later "*/" takes
// all text from pos on with it, the code between two comments included. The index stays as it was when text
// is removed, and what follows it in the shortened text closes again if it is a "/", star or not.
void RemoveBlockComment(CNEBTString& text, uint32_t pos)
{
    uint32_t star = text.find('*', pos + 2);
    while (star != npos)
    {
        uint32_t const next = star + 1;
        bool const closes = next < text.length() && text[next] == '/';
        if (closes)
            text.erase(pos, next + 1 - pos);
        star = closes ? next : text.find('*', next);
    }
}

void RemoveComments(CNEBTString& text)
{
    // Volatile, because a loop that may never end has to touch something to be defined.
    uint32_t volatile pos = text.find('/');
    while (pos != npos)
    {
        uint32_t const slash = pos;
        uint32_t from = slash;
        if (text[slash + 1] == '/')
            RemoveLineComment(text, slash);
        else if (text[slash + 1] == '*')
            RemoveBlockComment(text, slash);
        else
            from = slash + 1;
        // On purpose: a block comment without an end is found here again, for ever.
        pos = text.find('/', from);
    }
}

bool DiscardStandsAlone(CNEBTString const& text, uint32_t pos, uint32_t end)
{
    return (pos == 0 || EndsDiscard(text[pos - 1])) && end < text.length() && EndsDiscard(text[end]);
}

// On purpose: "discard" alone is replaced, so that behind an unbraced "if" the return is unconditional.
bool ReplaceDiscards(CNEBTString& text)
{
    static char const discard[] = "discard";
    static char const replacement[] = "b_tier4_1974_tier5_1975 = true; return";
    bool changed = false;
    // Volatile as in RemoveComments.
    uint32_t volatile pos = text.find(discard);
    while (pos != npos)
    {
        uint32_t const hit = pos;
        uint32_t from = hit;
        if (DiscardStandsAlone(text, hit, hit + LengthOf(discard)))
        {
            Replace(text, hit, LengthOf(discard), replacement);
            from = hit + LengthOf(replacement);
            changed = true;
        }
        // On purpose: a hit that does not stand alone is found here again, for ever.
        pos = text.find(discard, from);
    }
    return changed;
}

// False when the text has no "main" at all; those inside other words are seen, but not renamed.
bool RenameMain(CNEBTString& text)
{
    static char const word[] = "main";
    static char const name[] = "tier1_1970_original_main_tier6_1980";
    uint32_t pos = text.find(word);
    bool const any = pos != npos;
    while (pos != npos)
    {
        char const behind = text[pos + LengthOf(word)];
        uint32_t from = pos + LengthOf(word);
        if (pos != 0 && !IsSpace(text[pos - 1]))
            from = pos + 1;
        else if (IsSpace(behind) || behind == '(')
        {
            Replace(text, pos, LengthOf(word), name);
            from = pos + LengthOf(name);
        }
        pos = text.find(word, from);
    }
    return any;
}

// The shader's main becomes a function that a new main calls, which then looks at the flag.
// On purpose: any "main" has the text wrapped, renamed or not, and the flag goes in front of "#version" too.
void WrapMain(CNEBTString& text)
{
    static char const flag[] = "bool b_tier4_1974_tier5_1975 = false;\n";
    static char const wrapper[] = "\nvoid main()\n{\n\ttier1_1970_original_main_tier6_1980();\n"
                                  "\tif(b_tier4_1974_tier5_1975)\n"
                                  "\t\tgl_FragColor = vec4(1.0,0.0,1.0,1.0);\n}\n";
    // On purpose: without a "main" the flag is used and declared nowhere.
    if (!RenameMain(text))
        return;
    Replace(text, 0, 0, flag);
    text.append(wrapper);
}

}  // namespace

bool RemoveDiscard(CNEBTString& source)
{
    RemoveComments(source);
    if (!ReplaceDiscards(source))
        return false;
    WrapMain(source);
    return true;
}
