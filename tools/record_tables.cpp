// Prints docs/trace-records.md: the layouts that the reader decodes by, as tables for people. Built with the
// rest and never installed; `./dev tables` writes the file, a test holds it against what this prints.
#include <cstdio>
#include <string>
#include <vector>

#include "trace/layout.h"

using namespace nebtrace;

namespace
{
std::string ScalarName(FieldSpec const& field)
{
    switch (field.element)
    {
    case Kind::ApiByte:
        return field.name;
    case Kind::Signed:
        return "i32";
    case Kind::Unsigned:
        return "u32";
    case Kind::Fixed:
        return "fixed";
    case Kind::Float:
        return "f32";
    case Kind::Bool:
        return "bool8";
    case Kind::Byte:
        return "u8";
    case Kind::Short:
        return "i16";
    case Kind::Signed64:
        return "i64";
    case Kind::Unsigned64:
        return "u64";
    case Kind::Enum:
        return "enum";
    case Kind::Bitmask:
        return "bits";
    case Kind::Object:
        return "name";
    default:
        return "pointer";
    }
}

// "f32", or "4 x f32" for elements of several values.
std::string ElementName(FieldSpec const& field)
{
    std::string const scalar = ScalarName(field);
    return field.components == 1 ? scalar : std::to_string(field.components) + " x " + scalar;
}

std::string TypeName(FieldSpec const& field)
{
    switch (field.kind)
    {
    case Kind::Array:
        return "array of " + ElementName(field);
    case Kind::FixedArray:
        return "fixed array of " + ElementName(field);
    case Kind::Text:
        return "text";
    case Kind::TextList:
        return "list of texts";
    case Kind::AttribList:
        return "EGL attributes";
    case Kind::Image:
        return "image";
    case Kind::Blob:
        return "bytes";
    case Kind::IndexData:
        return "index data";
    case Kind::ClientArrays:
        return "client arrays";
    default:
        return ScalarName(field);
    }
}

std::string Fields(std::vector<FieldSpec> const& fields)
{
    std::string text;
    for (FieldSpec const& field : fields)
    {
        if (!text.empty())
            text += ", ";
        text += field.kind == Kind::ApiByte ? "api: u8" : field.name + ": " + TypeName(field);
    }
    return text.empty() ? "nothing" : text;
}

// A composite is a bare pointer in the short form; what only the long form has is not among its fields.
std::string ShortFields(std::vector<FieldSpec> fields)
{
    for (FieldSpec& field : fields)
    {
        if (IsComposite(field.kind))
            field.kind = field.element = Kind::Pointer;
    }
    return Fields(fields);
}

std::string ShortForm(RecordSpec const& record)
{
    if (record.oneForm)
        return "always long";
    std::string const text = ShortFields(record.shortForm);
    if (text == Fields(record.longForm))
        return "the same";
    return text == ShortFields(record.longForm) ? "bare pointers" : text;
}

void PrintTable(Api api, char const* title)
{
    std::printf("\n## %s\n\n| ID | Function | Behind the error word | Short form |\n|---|---|---|---|\n",
                title);
    for (RecordSpec const& record : AllRecords())
    {
        if (record.api == api)
            std::printf("| %u | `%s` | %s | %s |\n", unsigned{record.id}, std::string(record.name).c_str(),
                        Fields(record.longForm).c_str(), ShortForm(record).c_str());
    }
}

char const* const INTRODUCTION =
    R"(<!-- Written by ./dev tables from trace/records/*.def. Do not edit. -->
# The records, field by field

What stands behind the error word of each call's record, in order, in the long form and in the short one;
[trace-format.md](trace-format.md) tells what surrounds it. `result` is what the call returned. All is little-endian
and nothing is padded. "bare pointers": the short form has the same fields, each of the types below `pointer` in the
table cut to its pointer.

| Type | Bytes |
|---|---|
| bool8, u8 | 1 |
| i16 | 2 |
| i32, u32 | 4 |
| i64, u64 | 8 |
| fixed | 4, signed, 16 bits of them behind the point |
| f32 | 4, IEEE 754 |
| enum, bits | 4, a constant or constants joined by or |
| name | 4, the name or handle of an object |
| pointer | 4, the low half of an address |
| array of T | u32 pointer, u32 count, count times T |
| fixed array of T | u32 pointer, then T; only the pointer if it is null |
| text | u32 pointer, u32 length, the characters without terminator |
| list of texts | u32 pointer, u32 count, each a text |
| EGL attributes | u32 pointer, u32 count of i32 with the closing EGL_NONE, the i32 |
| image, bytes | u32 pointer, u32 size, the bytes |
| index data | u32 pointer, u32 size, the bytes |
| client arrays | up to the end of the record, each: u32 attribute, u32 pointer, u32 size, the bytes |
)";
}  // namespace

int main()
{
    std::fputs(INTRODUCTION, stdout);
    PrintTable(Api::Egl, "EGL");
    PrintTable(Api::Es1, "OpenGL ES 1");
    PrintTable(Api::Es2, "OpenGL ES 2");
}
