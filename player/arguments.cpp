#include "player/arguments.h"
#include <algorithm>
#include <cstring>

namespace nebtrace::player
{
// No call whose array has no count of its own takes more values than this.
constexpr size_t kLeastArray = 64;

Copy::Copy(Bytes bytes, size_t least) : m_words(std::max(bytes.size, least) / sizeof(uint64_t) + 1)
{
    if (bytes.size != 0)
        std::memcpy(m_words.data(), bytes.data, bytes.size);
}

uint64_t WordOf(DecodedField const& field)
{
    switch (field.spec->element)
    {
    case Kind::Signed:
    case Kind::Fixed:
        return static_cast<uint64_t>(int64_t{static_cast<int32_t>(field.value)});
    case Kind::Short:
        return static_cast<uint64_t>(int64_t{static_cast<int16_t>(field.value)});
    default:
        return field.value;
    }
}

int64_t CountOf(Call const& call)
{
    for (char const* const name : {"n", "count", "size", "imageSize", "numAttachments", "numCounters"})
        if (DecodedField const* const field = call.Find(name))
            if (!IsComposite(field->spec->kind))
                return static_cast<int32_t>(field->value);
    return -1;
}

Arguments::Arguments(Call const& call, Translate const& translate)
{
    for (DecodedField const& field : call.Decoded().fields)
    {
        if (!field.spec->isArgument)
            continue;
        Kind const kind = field.spec->kind;
        if (kind == Kind::Pointer)
            throw BadRecord("what " + field.spec->name + " points at is not in the record");
        if (kind == Kind::Text)
            AddText(field);
        else if (IsComposite(kind))
            AddArray(call, field, translate);
        else
            AddScalar(field, translate);
    }
}

void Arguments::AddScalar(DecodedField const& field, Translate const& translate)
{
    bool const isObject = field.spec->element == Kind::Object;
    m_words.push_back(isObject ? translate(field.spec->domain, static_cast<uint32_t>(field.value))
                               : WordOf(field));
}

void Arguments::AddCopy(Bytes bytes, size_t least)
{
    m_copies.push_back(std::make_unique<Copy>(bytes, least));
    m_words.push_back(reinterpret_cast<uintptr_t>(m_copies.back()->Data()));
}

void Arguments::AddText(DecodedField const& field)
{
    Bytes const bytes = Call::Data(field);
    if (field.value == 0)
        m_words.push_back(0);
    else
        AddCopy(bytes, bytes.size + 1);
}

void Arguments::AddArray(Call const& call, DecodedField const& field, Translate const& translate)
{
    Bytes const bytes = Call::Data(field);
    int64_t const count = CountOf(call);
    bool const counted = count >= 0 && field.spec->kind == Kind::Array;
    if (counted && field.count < count)
        throw BadRecord(field.spec->name + " has " + std::to_string(field.count) + " elements, not " +
                        std::to_string(count));
    if (field.spec->kind == Kind::FixedArray && bytes.size < field.spec->ElementSize())
        throw BadRecord(field.spec->name + " has no elements");
    AddCopy(bytes, counted ? bytes.size : bytes.size + kLeastArray * sizeof(uint32_t));
    if (field.spec->element != Kind::Object)
        return;
    auto* const names = static_cast<uint32_t*>(m_copies.back()->Data());
    for (size_t i = 0; i < bytes.size / sizeof(uint32_t); ++i)
        names[i] = translate(field.spec->domain, names[i]);
}
}  // namespace nebtrace::player
