// A fragment shader, rewritten for draws without discard. The rewrite is held against a model of it, which
// also knows the texts that it never returns for: they are left out. For all others its searches are counted.
#include "fuzz/input.h"
#include "profiler/remove_discard.h"
#include "support/string.h"
#include <cctype>
#include <optional>

namespace
{
size_t g_searchesLeft = 0;

bool IsSpace(char c) { return std::isspace(static_cast<unsigned char>(c)) != 0; }
bool IsBeside(char c) { return IsSpace(c) || c == ';' || c == '/'; }
char At(std::string const& text, size_t at) { return at < text.size() ? text[at] : '\0'; }

// The text without the comment that begins at `at`; false when that has no end. Behind a close the walk goes
// on as if the index, which stays, stood on a star.
bool WithoutBlock(std::string& text, size_t at)
{
    bool closed = false;
    size_t star = text.find('*', at + 2);
    while (star != std::string::npos)
    {
        bool const closes = At(text, star + 1) == '/';
        if (closes)
            text = text.substr(0, at) + text.substr(star + 2);
        closed = closed || closes;
        star = closes ? star + 1 : text.find('*', star + 1);
    }
    return closed;
}

bool WithoutComments(std::string& text)
{
    size_t at = text.find('/');
    while (at != std::string::npos)
    {
        char const next = At(text, at + 1);
        if (next == '/')
            text = text.substr(0, at) + text.substr(std::min(text.find('\n', at), text.size()));
        else if (next != '*')
            ++at;
        else if (!WithoutBlock(text, at))
            return false;
        at = text.find('/', at);
    }
    return true;
}

// Nothing for a text that the rewrite does not return for.
std::optional<std::string> WithoutDiscards(std::string const& text, bool& changed)
{
    std::string const word = "discard";
    std::string made;
    size_t from = 0;
    for (size_t at; (at = text.find(word, from)) != std::string::npos; from = at + word.size())
    {
        size_t const end = at + word.size();
        if ((at != 0 && !IsBeside(text[at - 1])) || end >= text.size() || !IsBeside(text[end]))
            return std::nullopt;
        made += text.substr(from, at - from) + "b_tier4_1974_tier5_1975 = true; return";
        changed = true;
    }
    return made + text.substr(from);
}

std::string Wrapped(std::string const& text)
{
    std::string const name = "tier1_1970_original_main_tier6_1980";
    if (text.find("main") == std::string::npos)
        return text;
    std::string made = "bool b_tier4_1974_tier5_1975 = false;\n";
    for (size_t at = 0; at < text.size();)
    {
        bool const isMain = text.compare(at, 4, "main") == 0 && (at == 0 || IsSpace(text[at - 1])) &&
                            (IsSpace(At(text, at + 4)) || At(text, at + 4) == '(');
        made += isMain ? name : std::string(1, text[at]);
        at += isMain ? 4 : 1;
    }
    return made + "\nvoid main()\n{\n\t" + name +
           "();\n\tif(b_tier4_1974_tier5_1975)\n\t\tgl_FragColor = vec4(1.0,0.0,1.0,1.0);\n}\n";
}
}  // namespace

// A search is what every step of the rewrite begins with.
extern "C" uint32_t __real__ZNK11CNEBTString4findEcj(CNEBTString const* text, char c, uint32_t from);
extern "C" uint32_t __real__ZNK11CNEBTString4findEPKcj(CNEBTString const* text, char const* what,
                                                       uint32_t from);

extern "C" uint32_t __wrap__ZNK11CNEBTString4findEcj(CNEBTString const* text, char c, uint32_t from)
{
    fuzz::Require(g_searchesLeft-- != 0, "the rewrite comes to its end");
    return __real__ZNK11CNEBTString4findEcj(text, c, from);
}

extern "C" uint32_t __wrap__ZNK11CNEBTString4findEPKcj(CNEBTString const* text, char const* what,
                                                       uint32_t from)
{
    fuzz::Require(g_searchesLeft-- != 0, "the rewrite comes to its end");
    return __real__ZNK11CNEBTString4findEPKcj(text, what, from);
}

int LLVMFuzzerTestOneInput(uint8_t const* data, size_t size)
{
    fuzz::Input input(data, size);
    std::string const source = input.Rest();
    std::string bare = source;
    bool changed = false;
    if (!WithoutComments(bare))
        return 0;
    std::optional<std::string> const replaced = WithoutDiscards(bare, changed);
    if (!replaced)
        return 0;
    CNEBTString text(source.data(), static_cast<uint32_t>(source.size()));
    // One for each char, and in block comments one for each char behind each of them.
    g_searchesLeft = (source.size() + 4) * (source.size() + 4);
    fuzz::Require(RemoveDiscard(text) == changed, "a rewrite where there is a discard");
    if (changed)
        fuzz::Require(std::string(text.data(), text.length()) == Wrapped(*replaced), "it is as in the model");
    return 0;
}
