// Composite fields and whole calls as text.
#include "trace/print.h"
#include "trace/enums.h"
#include <algorithm>

namespace nebtrace
{
namespace
{
constexpr size_t kShownValues = 8;
constexpr size_t kShownVectors = 4;
constexpr size_t kShownTexts = 4;
constexpr size_t kShownCharacters = 64;
constexpr size_t kShownRawBytes = 32;
constexpr uint32_t kUnsignedByte = 0x1401;
constexpr uint32_t kUnsignedShort = 0x1403;
constexpr uint32_t kUnsignedInt = 0x1405;

// "{a, b, c}", or "{a, b, ... 64 in all}".
class ListText
{
public:
    void Add(std::string const& item)
    {
        m_text += (m_text.size() > 1 ? ", " : "") + item;
        ++m_shown;
    }
    std::string Close(uint64_t all)
    {
        if (m_shown < all)
            m_text += (m_text.size() > 1 ? ", ... " : "... ") + std::to_string(all) + " in all";
        return m_text + "}";
    }

private:
    std::string m_text = "{";
    uint64_t m_shown = 0;
};

std::string PointerText(uint64_t pointer)
{
    FieldSpec spec;
    spec.element = Kind::Pointer;
    return ScalarText(spec, pointer);
}

std::string SizeText(size_t size) { return "[" + std::to_string(size) + " bytes]"; }

std::string ElementText(DecodedField const& field, size_t element)
{
    FieldSpec const& spec = *field.spec;
    if (spec.components == 1)
        return ScalarText(spec, ValueAt(field, element));
    ListText list;
    for (size_t component = 0; component < spec.components; ++component)
        list.Add(ScalarText(spec, ValueAt(field, element, component)));
    return list.Close(spec.components);
}

std::string ArrayText(DecodedField const& field)
{
    if (field.spec->kind == Kind::FixedArray)
        return ElementText(field, 0);
    ListText list;
    size_t const shown = ShownElements(field);
    for (size_t i = 0; i < shown; ++i)
        list.Add(ElementText(field, i));
    return list.Close(field.count);
}

std::string IndexText(DecodedCall const& call, DecodedField const& field)
{
    size_t const size = IndexSize(call);
    if (size == 0)
        return SizeText(field.bytes.size);
    ListText list;
    size_t const all = field.bytes.size / size;
    for (size_t i = 0; i < std::min(all, kShownValues); ++i)
        list.Add(std::to_string(LoadLittle(field.bytes.data + i * size, size)));
    return list.Close(all);
}

std::string AttribsText(DecodedField const& field)
{
    ListText list;
    size_t const pairs = field.count / 2 + field.count % 2;
    for (size_t i = 0; i < std::min(pairs, kShownValues); ++i)
    {
        uint32_t const key = static_cast<uint32_t>(ValueAt(field, i * 2));
        char const* const name = EnumName("EGLEnum", key);
        std::string text = name ? name : std::to_string(key);
        if (i * 2 + 1 < field.count)
            text += " = " + AttribValueText(key, static_cast<uint32_t>(ValueAt(field, i * 2 + 1)));
        list.Add(text);
    }
    return list.Close(pairs);
}

std::string TextsText(DecodedField const& field)
{
    ListText list;
    ItemReader items(field);
    ItemReader::Item item;
    for (size_t i = 0; i < kShownTexts && items.Next(item); ++i)
        list.Add(
            QuotedText({reinterpret_cast<char const*>(item.bytes.data), item.bytes.size}, kShownCharacters));
    return list.Close(field.count);
}

std::string ClientArraysText(DecodedField const& field)
{
    ListText list;
    ItemReader items(field);
    ItemReader::Item item;
    for (size_t i = 0; i < kShownValues && items.Next(item); ++i)
        list.Add(std::to_string(item.index) + ": " + SizeText(item.bytes.size));
    return list.Close(field.count);
}

std::string DataText(DecodedCall const& call, DecodedField const& field)
{
    switch (field.spec->kind)
    {
    case Kind::Text:
        return QuotedText(field.Text(), kShownCharacters);
    case Kind::TextList:
        return TextsText(field);
    case Kind::AttribList:
        return AttribsText(field);
    case Kind::IndexData:
        return IndexText(call, field);
    case Kind::Image:
    case Kind::Blob:
        return SizeText(field.bytes.size);
    default:
        return ArrayText(field);
    }
}

char Nibble(uint32_t value) { return "0123456789abcdef"[value & 15]; }

std::string Escaped(char letter)
{
    uint8_t const code = static_cast<uint8_t>(letter);
    switch (letter)
    {
    case '\n':
        return "\\n";
    case '\r':
        return "\\r";
    case '\t':
        return "\\t";
    case '"':
    case '\\':
        return {'\\', letter};
    default:
        break;
    }
    if (code >= ' ' && code < 127)
        return {letter};
    return {'\\', 'x', Nibble(code / 16U), Nibble(code)};
}
}  // namespace

std::string QuotedText(std::string_view text, size_t limit)
{
    std::string quoted = "\"";
    for (char const letter : text.substr(0, limit))
        quoted += Escaped(letter);
    quoted += '"';
    if (text.size() > limit)
        quoted += "... " + std::to_string(text.size()) + " bytes";
    return quoted;
}

std::string RawText(Bytes bytes)
{
    std::string text = SizeText(bytes.size);
    for (size_t i = 0; i < std::min(bytes.size, kShownRawBytes); ++i)
        text += {' ', Nibble(bytes[i] / 16U), Nibble(bytes[i])};
    return bytes.size > kShownRawBytes ? text + " ..." : text;
}

size_t ShownElements(DecodedField const& field)
{
    return std::min<size_t>(field.count, field.spec->components == 1 ? kShownValues : kShownVectors);
}

size_t IndexSize(DecodedCall const& call)
{
    DecodedField const* const type = call.Find("type");
    switch (type ? type->value : 0)
    {
    case kUnsignedByte:
        return 1;
    case kUnsignedShort:
        return 2;
    case kUnsignedInt:
        return 4;
    default:
        return 0;
    }
}

std::string FieldText(DecodedCall const& call, DecodedField const& field)
{
    FieldSpec const& spec = *field.spec;
    if (!IsComposite(spec.kind))
        return ScalarText(spec, field.value);
    if (spec.kind == Kind::ClientArrays)
        return ClientArraysText(field);
    if (!field.hasData || (field.value == 0 && field.count == 0))
        return PointerText(field.value);
    // A pointer with nothing behind it is all that is known of an output that was not recorded.
    bool const empty = field.count == 0 && spec.kind != Kind::Text;
    return empty ? PointerText(field.value) + " {}" : DataText(call, field);
}

std::string CallText(DecodedCall const& call)
{
    std::string text(call.Name());
    text += '(';
    char const* separator = "";
    for (DecodedField const& field : call.fields)
    {
        if (field.spec->kind == Kind::ApiByte || field.spec->isResult)
            continue;
        text += separator + field.spec->name + " = " + FieldText(call, field);
        separator = ", ";
    }
    text += ')';
    if (DecodedField const* const result = call.Result())
        text += " = " + FieldText(call, *result);
    if (call.Failed())
        text += " -> error " + ErrorText(call);
    return text;
}
}  // namespace nebtrace
