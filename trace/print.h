// Decoded calls as text, for people. Long arrays and texts are cut, with their size given, so that a line
// stays short whatever the record holds; all characters are printable ASCII.
#pragma once
#include "trace/decode.h"
#include <string>

namespace nebtrace
{
// glBindBuffer(target = GL_ARRAY_BUFFER, buffer = 3)
// glIsTexture(texture = 4) = GL_TRUE
// glEnable(cap = 0x1) -> error GL_INVALID_ENUM
std::string CallText(DecodedCall const& call);

// The value of one of the call's fields, as in CallText.
std::string FieldText(DecodedCall const& call, DecodedField const& field);

// One value of a scalar or of an array's element.
std::string ScalarText(FieldSpec const& spec, uint64_t bits);

// The enumerant in the error word: GL_NO_ERROR, EGL_SUCCESS and their like, else a number.
std::string ErrorText(DecodedCall const& call);

// Quoted, with escapes for what is not printable, at most `limit` characters of it.
std::string QuotedText(std::string_view text, size_t limit);

// The first bytes in hexadecimal, and how many there are: for a record that no layout fits.
std::string RawText(Bytes bytes);

// The value of an EGL attribute, which is an enumerant, bits or a number according to its key.
std::string AttribValueText(uint32_t key, uint32_t value);

// What the array may be shown of: enough for a matrix, or for a few elements of anything else.
size_t ShownElements(DecodedField const& field);

// Bytes of one index in the call's index data; 0 if the type of the draw call is none that indices can have.
size_t IndexSize(DecodedCall const& call);

// A float as its value: what Float and Fixed bits stand for.
double RealValue(Kind kind, uint64_t bits);

// The enumerant that a numeric value with a group stands for, or null.
char const* NamedValue(FieldSpec const& spec, uint64_t bits);
}  // namespace nebtrace
