// One record, decoded and shown in all ways: u16 ID, u8 hint of the API, payload.
#include "api/types.h"
#include "fuzz/input.h"
#include "tools/dump_json.h"
#include "tools/image_pixels.h"
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

uint32_t Argument(DecodedCall const& call, char const* name, uint32_t otherwise)
{
    DecodedField const* const field = call.Find(name);
    return field ? static_cast<uint32_t>(field->value) : otherwise;
}

void LookAtImage(DecodedCall const& call, DecodedField const& field)
{
    ImageLayout layout;
    layout.width = static_cast<int32_t>(Argument(call, "width", 0));
    layout.height = static_cast<int32_t>(Argument(call, "height", 0));
    layout.depth = static_cast<int32_t>(Argument(call, "depth", 1));
    layout.format = Argument(call, "format", GL_RGBA);
    layout.type = Argument(call, "type", GL_UNSIGNED_BYTE);
    layout.alignment = Argument(call, "alignment", 1);
    player::Picture picture;
    if (ToPicture(layout, field.bytes, picture).empty())
        fuzz::Require(picture.pixels.size() <= field.bytes.size * 4,
                      "a picture has no more pixels than bytes");
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
    if (kind == Kind::Image && field.hasData)
        LookAtImage(call, field);
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
    nlohmann::ordered_json object;
    AddCall(object, call);
    object.dump(-1, ' ', true, nlohmann::ordered_json::error_handler_t::replace);
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
