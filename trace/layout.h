// What stands in each record, field by field. The tables are trace/records/*.def; they are stated apart from
// the wrappers that write the records, so that a test can hold the two against each other.
//
// A layout is a text of fields, separated by blanks, in the order of the payload behind the error word:
//
//   api            the API byte of an extension record (1: ES 1, 2: ES 2)
//   =KIND          the call's result
//   name:KIND      an argument of the call, under the name that api/*.def gives it
//   +name:KIND     something the recorder adds, which is no argument of the call
//
// KIND is one of
//
//   i u x f        4 bytes: signed, unsigned, 16.16 fixed point, float
//   b c s          1 byte truth value, 1 byte unsigned, 2 bytes signed
//   l q            8 bytes: signed, unsigned
//   e<G> m<G>      4 bytes: enumerant, bits, of group G; a bare e is an enumerant of any group
//   o<C>           4 bytes: name or handle of an object of class C
//   p              4 bytes: a pointer, of which nothing more is recorded
//   A[K*N]         array: u32 pointer, u32 count, count elements of N (1 if not given) values of kind K
//   F[K*N]         fixed array: u32 pointer, then N values of kind K, or nothing for a null pointer
//   S              text: u32 pointer, u32 length, the characters without terminator
//   L              list of texts: u32 pointer, u32 count, then each as S
//   K              EGL attribute list: u32 pointer, u32 count of ints with the terminator, the ints
//   I D            image, bytes: u32 pointer, u32 size, the bytes
//   X              index data: as D; the elements are of the type that the field "type" names
//   V              client arrays, up to the end of the record: u32 index, u32 pointer, u32 size, the bytes
//
// Any numeric kind may carry a <G>, for an argument that can be a number or an enumerant of G.
//
// A record has a long form, as written, and a short form, in which each of A F S L K I D is the bare pointer
// and X and V are missing. A record whose short form is another has a layout of its own for it.
#pragma once
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace nebtrace
{
class EnumGroup;

// Any stands for an unknown API, as a hint to Decode.
enum class Api : uint8_t
{
    Any,
    Egl,
    Es1,
    Es2
};

// "egl", "es1", "es2"; "?" for Any.
char const* ApiName(Api api);

enum class Kind : uint8_t
{
    ApiByte,
    // Scalars.
    Signed,
    Unsigned,
    Fixed,
    Float,
    Bool,
    Byte,
    Short,
    Signed64,
    Unsigned64,
    Enum,
    Bitmask,
    Object,
    Pointer,
    // Composites.
    Array,
    FixedArray,
    Text,
    TextList,
    AttribList,
    Image,
    Blob,
    IndexData,
    ClientArrays
};

bool IsComposite(Kind kind);

// Bytes of one value: 1, 2, 4 or 8 for a scalar, 4 (its pointer) for a composite, 1 for the API byte.
size_t ScalarSize(Kind kind);

enum class Form : uint8_t
{
    Long,
    Short
};

struct FieldSpec
{
    std::string name;  // "result" for the result, "api" for the API byte
    Kind kind = Kind::Unsigned;
    Kind element = Kind::Unsigned;  // of Array and FixedArray: the kind of one value; of a scalar: its kind
    uint32_t components = 1;        // of Array: values in one element; of FixedArray: values in all
    std::string domain;             // enumerant group or object class, as the layout names it
    EnumGroup const* group = nullptr;  // the group, when domain names one
    bool isResult = false;
    bool isArgument = false;  // an argument of the API's function, under the API's name

    size_t ElementSize() const { return ScalarSize(element) * components; }
};

struct RecordSpec
{
    Api api = Api::Any;
    uint16_t id = 0;
    std::string_view name;
    std::vector<FieldSpec> longForm;
    std::vector<FieldSpec> shortForm;  // composites in it stand for their bare pointers
    bool oneForm = false;              // always written in the long form

    bool HasApiByte() const { return !longForm.empty() && longForm.front().kind == Kind::ApiByte; }
    bool HasResult() const;
};

// Reads a layout text. On failure returns false and says why in `error`.
bool ParseLayout(std::string_view text, std::vector<FieldSpec>& fields, std::string& error);

// The records of all three APIs, in the order of the tables: EGL, ES 1, ES 2.
std::vector<RecordSpec> const& AllRecords();

// The faults in the tables' layout texts; empty unless a table is wrong. A record with a fault has no fields.
std::vector<std::string> const& LayoutFaults();

// Null if there is none. Any finds the EGL and core functions, whose IDs belong to one API, and of the IDs
// that two APIs share the ES 2 record if there is one.
RecordSpec const* FindRecord(Api api, uint16_t id);
RecordSpec const* FindRecord(Api api, std::string_view name);
}  // namespace nebtrace
