// One record: u16 ID, u8 hint of the API, payload.
#include "fuzz/input.h"
#include "trace/decode.h"
#include "trace/print.h"

using namespace nebtrace;

namespace
{
bool LiesWithin(Bytes inner, Bytes outer)
{
    return inner.size == 0 ||
           (inner.data >= outer.data && inner.data + inner.size <= outer.data + outer.size);
}

void LookAtField(DecodedCall const& call, DecodedField const& field, Bytes payload)
{
    fuzz::Require(LiesWithin(field.bytes, payload), "a field lies inside its record");
    fuzz::Require(field.offset <= payload.size, "a field begins inside its record");
    FieldText(call, field);
    Kind const kind = field.spec->kind;
    if (kind == Kind::Array || kind == Kind::FixedArray)
        for (size_t element = 0; element < field.count; ++element)
            for (size_t component = 0; component < field.spec->components; ++component)
                ValueAt(field, element, component);
    uint32_t items = 0;
    ItemReader reader(field);
    for (ItemReader::Item item; reader.Next(item); ++items)
        fuzz::Require(LiesWithin(item.bytes, field.bytes), "an item lies inside its field");
    if (kind == Kind::TextList || kind == Kind::ClientArrays)
        fuzz::Require(items == field.count, "a list has as many items as it says");
}

void LookAt(DecodedCall const& call, Bytes payload)
{
    fuzz::Require(!CallText(call).empty(), "a call has a text");
    ErrorText(call);
    IndexSize(call);
    call.Result();
    for (DecodedField const& field : call.fields)
        LookAtField(call, field, payload);
}
}  // namespace

int LLVMFuzzerTestOneInput(uint8_t const* data, size_t size)
{
    fuzz::Input input(data, size);
    uint16_t const id = input.Short();
    auto const hint = static_cast<Api>(input.Byte() % 4);
    std::string const rest = input.Rest();
    Bytes const payload{reinterpret_cast<uint8_t const*>(rest.data()), rest.size()};
    DecodedCall call;
    if (Decode(id, hint, payload, call))
        LookAt(call, payload);
    for (Form const form : {Form::Long, Form::Short})
        if (RecordSpec const* const record = FindRecord(hint, id))
            if (DecodeAs(*record, form, payload, call))
                LookAt(call, payload);
    RawText(payload);
    return 0;
}
