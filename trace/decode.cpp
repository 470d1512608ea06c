#include "trace/decode.h"
#include "trace/format.h"

namespace nebtrace
{
namespace
{
constexpr uint32_t kEglSuccess = 0x3000;
constexpr size_t kIntSize = 4;

// Takes a payload apart from the front. A refused Take leaves the rest as it was.
class Cursor
{
public:
    explicit Cursor(Bytes bytes) : m_all(bytes), m_left(bytes) {}

    bool Take(uint64_t size, Bytes& bytes)
    {
        if (size > m_left.size)
            return false;
        bytes = {m_left.data, static_cast<size_t>(size)};
        m_left = {m_left.data + bytes.size, m_left.size - bytes.size};
        return true;
    }
    bool TakeU32(uint32_t& value)
    {
        Bytes bytes;
        if (!Take(4, bytes))
            return false;
        value = LoadU32(bytes.data);
        return true;
    }
    size_t Left() const { return m_left.size; }
    Bytes Rest() const { return m_left; }
    size_t Offset() const { return m_all.size - m_left.size; }

private:
    Bytes m_all;
    Bytes m_left;
};

bool ReadScalar(Cursor& cursor, DecodedField& field)
{
    if (!cursor.Take(ScalarSize(field.spec->kind), field.bytes))
        return false;
    field.value = LoadLittle(field.bytes.data, field.bytes.size);
    return true;
}

bool ReadTexts(Cursor& cursor, DecodedField& field)
{
    Bytes const all = cursor.Rest();
    for (uint32_t i = 0; i < field.count; ++i)
    {
        uint32_t pointer = 0;
        uint32_t size = 0;
        Bytes text;
        if (!cursor.TakeU32(pointer) || !cursor.TakeU32(size) || !cursor.Take(size, text))
            return false;
    }
    field.bytes = {all.data, all.size - cursor.Left()};
    return true;
}

bool ReadClientArrays(Cursor& cursor, DecodedField& field)
{
    field.hasData = true;
    Bytes const all = cursor.Rest();
    while (cursor.Left() > 0)
    {
        uint32_t index = 0;
        uint32_t pointer = 0;
        uint32_t size = 0;
        Bytes bytes;
        bool const whole = cursor.TakeU32(index) && cursor.TakeU32(pointer) && cursor.TakeU32(size) &&
                           cursor.Take(size, bytes);
        if (!whole)
            return false;
        ++field.count;
    }
    field.bytes = all;
    return true;
}

// No count word: what follows the pointer has its full size or, for a null pointer, is missing.
bool ReadFixedArray(Cursor& cursor, DecodedField& field)
{
    size_t const size = field.spec->ElementSize();
    field.hasData = true;
    if (cursor.Left() < size)
        return true;
    field.count = 1;
    return cursor.Take(size, field.bytes);
}

bool ReadComposite(Cursor& cursor, bool withData, DecodedField& field)
{
    Kind const kind = field.spec->kind;
    if (kind == Kind::ClientArrays)
        return ReadClientArrays(cursor, field);
    uint32_t pointer = 0;
    if (!cursor.TakeU32(pointer))
        return false;
    field.value = pointer;
    if (!withData)
        return true;
    if (kind == Kind::FixedArray)
        return ReadFixedArray(cursor, field);
    if (!cursor.TakeU32(field.count))
        return false;
    field.hasData = true;
    if (kind == Kind::TextList)
        return ReadTexts(cursor, field);
    size_t const elementSize = kind == Kind::Array        ? field.spec->ElementSize()
                               : kind == Kind::AttribList ? kIntSize
                                                          : 1;
    return cursor.Take(uint64_t{field.count} * elementSize, field.bytes);
}

bool DecodeFields(std::vector<FieldSpec> const& specs, bool withData, Cursor& cursor, DecodedCall& out)
{
    out.fields.clear();
    for (FieldSpec const& spec : specs)
    {
        DecodedField field;
        field.spec = &spec;
        field.offset = cursor.Offset();
        bool const read =
            IsComposite(spec.kind) ? ReadComposite(cursor, withData, field) : ReadScalar(cursor, field);
        if (!read)
            return false;
        out.fields.push_back(field);
    }
    return cursor.Left() == 0;
}

bool ApiByteFits(RecordSpec const& record, DecodedCall const& call)
{
    if (!record.HasApiByte())
        return true;
    return call.fields.front().value == (record.api == Api::Es1 ? kApiByteEs1 : kApiByteEs2);
}

bool DecodeAsAny(RecordSpec const* record, Bytes payload, DecodedCall& out)
{
    return record &&
           (DecodeAs(*record, Form::Long, payload, out) || DecodeAs(*record, Form::Short, payload, out));
}
}  // namespace

bool DecodeAs(RecordSpec const& record, Form form, Bytes payload, DecodedCall& out)
{
    bool const withData = form == Form::Long;
    if (!withData && record.oneForm)
        return false;
    out.spec = &record;
    out.form = form;
    Cursor cursor(payload);
    return cursor.TakeU32(out.error) &&
           DecodeFields(withData ? record.longForm : record.shortForm, withData, cursor, out) &&
           ApiByteFits(record, out);
}

bool Decode(uint16_t id, Api hint, Bytes payload, DecodedCall& out)
{
    if (id < kFirstSharedId)
        return DecodeAsAny(FindRecord(Api::Any, id), payload, out);
    // The record without API byte is tried last unless the hint speaks for it: the API byte is the surer
    // sign.
    Api const first = hint == Api::Es1 ? Api::Es1 : Api::Es2;
    Api const second = first == Api::Es1 ? Api::Es2 : Api::Es1;
    return DecodeAsAny(FindRecord(first, id), payload, out) ||
           DecodeAsAny(FindRecord(second, id), payload, out);
}

DecodedField const* DecodedCall::Find(std::string_view name) const
{
    for (DecodedField const& field : fields)
        if (field.spec->name == name)
            return &field;
    return nullptr;
}

DecodedField const* DecodedCall::Result() const
{
    for (DecodedField const& field : fields)
        if (field.spec->isResult)
            return &field;
    return nullptr;
}

bool DecodedCall::Failed() const { return error != (spec->api == Api::Egl ? kEglSuccess : 0); }

uint64_t ValueAt(DecodedField const& field, size_t element, size_t component)
{
    size_t const size = ScalarSize(field.spec->element);
    size_t const index = element * field.spec->components + component;
    return LoadLittle(field.bytes.data + index * size, size);
}

ItemReader::ItemReader(DecodedField const& field)
    : m_left(field.bytes), m_withIndex(field.spec->kind == Kind::ClientArrays)
{
    if (field.spec->kind != Kind::TextList && !m_withIndex)
        m_left = {};
}

bool ItemReader::Next(Item& item)
{
    Cursor cursor(m_left);
    uint32_t size = 0;
    bool const whole = (!m_withIndex || cursor.TakeU32(item.index)) && cursor.TakeU32(item.pointer) &&
                       cursor.TakeU32(size) && cursor.Take(size, item.bytes);
    m_left = cursor.Rest();
    return whole;
}
}  // namespace nebtrace
