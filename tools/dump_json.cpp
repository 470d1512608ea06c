#include "dump_json.h"
#include "trace/enums.h"
#include "trace/print.h"
#include <algorithm>
#include <cmath>

using Json = nlohmann::ordered_json;
using namespace nebtrace;

namespace
{
constexpr size_t kMostItems = 64;
constexpr size_t kMostCharacters = 4096;

Json PointerJson(uint64_t pointer)
{
    FieldSpec spec;
    spec.element = Kind::Pointer;
    return pointer == 0 ? Json(nullptr) : Json(ScalarText(spec, pointer));
}

// JSON has no number that is infinite or none.
Json RealJson(double value, std::string const& text)
{
    return std::isfinite(value) ? Json(value) : Json(text);
}

Json ScalarJson(FieldSpec const& spec, uint64_t bits)
{
    std::string const text = ScalarText(spec, bits);
    switch (spec.element)
    {
    case Kind::Pointer:
        return PointerJson(bits);
    case Kind::Bool:
        return bits <= 1 ? Json(bits == 1) : Json(bits);
    case Kind::Enum:
    case Kind::Bitmask:
        return text;
    case Kind::Object:
        return text.compare(0, 2, "0x") == 0 ? Json(text) : Json(bits);
    default:
        break;
    }
    if (NamedValue(spec, bits))
        return text;
    switch (spec.element)
    {
    case Kind::Signed:
        return static_cast<int32_t>(static_cast<uint32_t>(bits));
    case Kind::Short:
        return static_cast<int16_t>(static_cast<uint16_t>(bits));
    case Kind::Signed64:
        return static_cast<int64_t>(bits);
    case Kind::Float:
    case Kind::Fixed:
        return RealJson(RealValue(spec.element, bits), text);
    default:
        return bits;
    }
}

Json ElementJson(DecodedField const& field, size_t element)
{
    FieldSpec const& spec = *field.spec;
    if (spec.components == 1)
        return ScalarJson(spec, ValueAt(field, element));
    Json values = Json::array();
    for (size_t component = 0; component < spec.components; ++component)
        values.push_back(ScalarJson(spec, ValueAt(field, element, component)));
    return values;
}

Json ValuesJson(DecodedField const& field)
{
    if (field.spec->kind == Kind::FixedArray && field.count == 1)
        return ElementJson(field, 0);
    Json values = Json::array();
    for (size_t i = 0; i < std::min<size_t>(field.count, kMostItems); ++i)
        values.push_back(ElementJson(field, i));
    return values;
}

Json AttribValueJson(uint32_t key, uint32_t value)
{
    std::string const text = AttribValueText(key, value);
    int32_t const number = static_cast<int32_t>(value);
    return text == std::to_string(number) ? Json(number) : Json(text);
}

Json AttribsJson(DecodedField const& field)
{
    Json attribs = Json::array();
    for (size_t i = 0; i < std::min<size_t>(field.count, kMostItems * 2); i += 2)
    {
        uint32_t const key = static_cast<uint32_t>(ValueAt(field, i));
        char const* const name = EnumName("EGLEnum", key);
        Json pair = Json::array({name ? Json(name) : Json(key)});
        if (i + 1 < field.count)
            pair.push_back(AttribValueJson(key, static_cast<uint32_t>(ValueAt(field, i + 1))));
        attribs.push_back(std::move(pair));
    }
    return attribs;
}

std::string Cut(Bytes bytes)
{
    return {reinterpret_cast<char const*>(bytes.data), std::min(bytes.size, kMostCharacters)};
}

Json ItemsJson(DecodedField const& field)
{
    bool const texts = field.spec->kind == Kind::TextList;
    Json items = Json::array();
    ItemReader reader(field);
    ItemReader::Item item;
    while (items.size() < kMostItems && reader.Next(item))
        items.push_back(texts ? Json{{"length", item.bytes.size}, {"text", Cut(item.bytes)}}
                              : Json{{"index", item.index},
                                     {"pointer", PointerJson(item.pointer)},
                                     {"size", item.bytes.size}});
    return items;
}

Json IndicesJson(DecodedCall const& call, DecodedField const& field)
{
    Json indices = Json::array();
    size_t const size = IndexSize(call);
    for (size_t i = 0; size != 0 && i < std::min(field.bytes.size / size, kMostItems); ++i)
        indices.push_back(LoadLittle(field.bytes.data + i * size, size));
    return indices;
}

void AddData(Json& object, DecodedCall const& call, DecodedField const& field)
{
    switch (field.spec->kind)
    {
    case Kind::Text:
        object["length"] = field.count;
        object["text"] = Cut(field.bytes);
        break;
    case Kind::TextList:
        object["count"] = field.count;
        object["texts"] = ItemsJson(field);
        break;
    case Kind::AttribList:
        object["count"] = field.count;
        object["attribs"] = AttribsJson(field);
        break;
    case Kind::IndexData:
        object["size"] = field.count;
        object["indices"] = IndicesJson(call, field);
        break;
    case Kind::Image:
    case Kind::Blob:
        object["size"] = field.count;
        break;
    default:
        object["count"] = field.count;
        object["values"] = ValuesJson(field);
        break;
    }
}

Json FieldJson(DecodedCall const& call, DecodedField const& field)
{
    if (!IsComposite(field.spec->kind))
        return ScalarJson(*field.spec, field.value);
    if (field.spec->kind == Kind::ClientArrays)
        return ItemsJson(field);
    if (!field.hasData || (field.value == 0 && field.count == 0))
        return PointerJson(field.value);
    Json object = {{"pointer", PointerJson(field.value)}};
    AddData(object, call, field);
    return object;
}
}  // namespace

void AddCall(Json& object, DecodedCall const& call)
{
    Json args = Json::object();
    for (DecodedField const& field : call.fields)
        if (field.spec->kind != Kind::ApiByte && !field.spec->isResult)
            args[field.spec->name] = FieldJson(call, field);
    object["args"] = std::move(args);
    if (DecodedField const* const result = call.Result())
        object["result"] = FieldJson(call, *result);
    if (call.Failed())
        object["error"] = ErrorText(call);
}
