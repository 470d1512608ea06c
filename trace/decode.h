// One record's payload as a call with named fields. Nothing is copied: fields point into the payload, and are
// valid as long as it is. No length in the payload is trusted.
#pragma once
#include "trace/bytes.h"
#include "trace/layout.h"
#include <cstdint>
#include <string_view>
#include <vector>

namespace nebtrace
{
struct DecodedField
{
    FieldSpec const* spec = nullptr;
    size_t offset = 0;     // of the field in the payload
    uint64_t value = 0;    // a scalar's bits, zero-extended (a float's bits, a negative number's too); a
                           // composite's pointer; nothing for ClientArrays
    bool hasData = false;  // false for scalars and for a composite in the short form, which is a bare pointer
    uint32_t count = 0;  // the count word: elements of an array, texts of a list, ints of an attribute list,
                         // bytes of the others; for ClientArrays the number of entries
    Bytes bytes;         // a scalar's bytes; of a composite what follows the pointer and count

    std::string_view Text() const { return {reinterpret_cast<char const*>(bytes.data), bytes.size}; }
};

struct DecodedCall
{
    RecordSpec const* spec = nullptr;
    Form form = Form::Long;  // Long also where both forms are the same bytes
    uint32_t error = 0;
    std::vector<DecodedField> fields;  // all that follows the error word, in the payload's order

    Api GetApi() const { return spec->api; }
    std::string_view Name() const { return spec->name; }
    DecodedField const* Find(std::string_view name) const;
    DecodedField const* Result() const;
    bool Failed() const;  // the error word is not the API's no-error value
};

// Decodes a call record. The form is the one whose layout takes the payload to its last byte, the long one
// tried first: the header's flag does not tell it. For the IDs that ES 1 and ES 2 share the API byte decides;
// where a record has none, the layouts do, the hint's API first. False when no layout fits; `out` is then
// of no use. Reuse `out` from call to call to save allocations.
bool Decode(uint16_t id, Api hint, Bytes payload, DecodedCall& out);

// Decodes a payload as the given record in the given form only.
bool DecodeAs(RecordSpec const& record, Form form, Bytes payload, DecodedCall& out);

// One value of a scalar or of an array: component `component` of element `element`, zero-extended.
// Both must lie within the field's bytes.
uint64_t ValueAt(DecodedField const& field, size_t element, size_t component = 0);

// Walks the items of a TextList, or of ClientArrays.
class ItemReader
{
public:
    struct Item
    {
        uint32_t index = 0;  // ClientArrays only
        uint32_t pointer = 0;
        Bytes bytes;
    };

    explicit ItemReader(DecodedField const& field);
    bool Next(Item& item);

private:
    Bytes m_left;
    bool m_withIndex;
};
}  // namespace nebtrace
