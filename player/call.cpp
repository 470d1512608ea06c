#include "player/call.h"
#include <cstring>

namespace nebtrace::player
{
DecodedField const& Call::Field(std::string_view name) const
{
    if (DecodedField const* const field = Find(name))
        return *field;
    throw BadRecord("it has no " + std::string(name));
}

float Call::Real(std::string_view name) const
{
    uint32_t const bits = Word(name);
    float value = 0;
    std::memcpy(&value, &bits, sizeof value);
    return value;
}

uint32_t Call::Result() const
{
    DecodedField const* const result = m_decoded.Result();
    return result ? static_cast<uint32_t>(result->value) : 0;
}

Bytes Call::Data(DecodedField const& field)
{
    if (!field.hasData && field.value != 0)
        throw BadRecord("what " + field.spec->name + " points at was not recorded");
    return field.bytes;
}

Bytes Call::Data(std::string_view name) const { return Data(Field(name)); }

std::string Call::Text(DecodedField const& field)
{
    Bytes const bytes = Data(field);
    return {reinterpret_cast<char const*>(bytes.data), bytes.size};
}

std::vector<uint32_t> Call::Words(std::string_view name) const
{
    Bytes const bytes = Data(name);
    std::vector<uint32_t> words;
    for (size_t at = 0; at + sizeof(uint32_t) <= bytes.size; at += sizeof(uint32_t))
        words.push_back(LoadU32(bytes.data + at));
    return words;
}
}  // namespace nebtrace::player
