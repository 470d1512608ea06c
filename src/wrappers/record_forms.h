// Record forms: how one argument of a call stands in its record.
//
// A plain argument records as its own bytes. An argument that points at something is wrapped in a form: the
// form holds the argument, which the host gets, and appends what the record keeps of it. Without data
// (bRecordData clear) every form is its bare pointer.
#pragma once
#include "api/types.h"
#include "core/trace_block.h"
#include "wrappers/argument_records.h"
#include "wrappers/padded_image.h"
#include <algorithm>
#include <cstdint>
#include <limits>
#include <type_traits>

// What a form may look at while it appends itself.
struct SRecordState
{
    bool withData;     // bRecordData: contents as well as the pointer
    bool outputValid;  // the output gate: the host ran, errors were read, and there was none
};

inline void AppendU32(CTraceBlock& block, uint32_t value) { block.Append(value); }
// A pointer or handle: its low 32 bits, on every machine.
inline void AppendPointer(CTraceBlock& block, void const* pointer)
{
    AppendU32(block, static_cast<uint32_t>(reinterpret_cast<uintptr_t>(pointer)));
}
// SArrayR's layout, for a count of elements that was measured.
void AppendArray(CTraceBlock& block, void const* pointer, uint32_t count, uint32_t elementSize);
// The same for an array of handles, each recorded as its low 32 bits.
void AppendHandles(CTraceBlock& block, void const* const* handles, uint32_t count);
// Pointer, strlen, bytes.
void AppendText(CTraceBlock& block, char const* text);

// A count that the application gave: nothing can be read for a negative one.
inline uint32_t CountOf(GLsizei count) { return count > 0 ? static_cast<uint32_t>(count) : 0; }

// Elements of T behind `pointer`; handles are narrowed.
template <typename T>
void AppendElements(CTraceBlock& block, T* pointer, uint32_t count)
{
    if constexpr (std::is_pointer_v<T>)
        AppendHandles(block, const_cast<void const* const*>(pointer), pointer ? count : 0);
    else
        AppendArray(block, pointer, count, sizeof(T));
}

// Vectors or matrices of a fixed number of 4-byte components; the count is of vectors.
template <typename T>
struct SInVectors
{
    T* argument;
    uint32_t count;
    uint32_t components;

    void Append(CTraceBlock& block, SRecordState) const
    {
        AppendArray(block, argument, count, components * static_cast<uint32_t>(sizeof(T)));
    }
};
template <typename T>
SInVectors<T> InVectors(T* pointer, GLsizei count, uint32_t components)
{
    return {pointer, CountOf(count), components};
}

// Elements that are recorded whatever the host said: the caller's own, and the outputs of a few calls that
// are not gated, such as glGen* and eglInitialize.
template <typename T>
struct SInArray
{
    T* argument;
    uint32_t count;

    void Append(CTraceBlock& block, SRecordState) const { AppendElements(block, argument, count); }
};
template <typename T>
SInArray<T> InArray(T* pointer, GLsizei count)
{
    return {pointer, CountOf(count)};
}
template <typename T>
SInArray<T> InArray(T* pointer, unsigned int count)
{
    return {pointer, count};
}

// As many elements as the first word behind `number` says, and as there is room for; whatever the host said.
template <typename T>
struct SInArrayBehind
{
    T* argument;
    GLsizei const* number;
    GLsizei room;

    void Append(CTraceBlock& block, SRecordState) const
    {
        AppendElements(block, argument, number ? CountOf(std::min(*number, room)) : 0);
    }
};
template <typename T>
SInArrayBehind<T> InArrayBehind(T* pointer, GLsizei const* number,
                                GLsizei room = std::numeric_limits<GLsizei>::max())
{
    return {pointer, number, room};
}

// Elements that the host fills: none unless the output gate is open.
template <typename T>
struct SOutArray
{
    T* argument;
    uint32_t count;

    void Append(CTraceBlock& block, SRecordState state) const
    {
        AppendElements(block, argument, state.outputValid ? count : 0);
    }
};
template <typename T>
SOutArray<T> OutArray(T* pointer, uint32_t count)
{
    return {pointer, count};
}

// Elements that the host fills, as many as it stored behind `number` and as the caller has room for: the
// value there is the host's only when the gate is open.
template <typename T>
struct SOutArrayBehind
{
    T* argument;
    GLint const* number;
    GLint room;

    void Append(CTraceBlock& block, SRecordState state) const
    {
        AppendElements(block, argument, state.outputValid && number ? CountOf(std::min(*number, room)) : 0);
    }
};
template <typename T>
SOutArrayBehind<T> OutArrayBehind(T* pointer, GLint const* number, GLint room)
{
    return {pointer, number, room};
}

// On purpose: one byte of the pointer that the host stores, its lowest.
struct SOutLowByte
{
    void** argument;

    void Append(CTraceBlock& block, SRecordState state) const
    {
        AppendArray(block, argument, state.outputValid ? 1 : 0, 1);
    }
};
inline SOutLowByte OutLowByte(void** pointer) { return {pointer}; }

// On purpose: an array whose count stays 0, whatever happened, so that its contents are never recorded.
template <typename T>
struct SNeverCounted
{
    T* argument;

    void Append(CTraceBlock& block, SRecordState) const { AppendArray(block, argument, 0, sizeof(T)); }
};
template <typename T>
SNeverCounted<T> NeverCounted(T* pointer)
{
    return {pointer};
}

// An array whose length every reader knows: pointer and elements, no count word.
template <typename T>
struct SFixedArray
{
    T* argument;
    uint32_t count;

    void Append(CTraceBlock& block, SRecordState) const
    {
        AppendPointer(block, argument);
        block.AppendData(count * static_cast<uint32_t>(sizeof(T)), argument);
    }
};
template <typename T>
SFixedArray<T> FixedArray(T* pointer, uint32_t count)
{
    return {pointer, count};
}

// Bytes of a known size: pointer, size, bytes.
template <typename T>
struct SBytes
{
    T* argument;
    uint32_t size;

    void Append(CTraceBlock& block, SRecordState) const { AppendArray(block, argument, size, 1); }
};
template <typename T>
SBytes<T> Bytes(T* pointer, GLsizei size)
{
    return {pointer, CountOf(size)};
}
template <typename T>
SBytes<T> Bytes(T* pointer, unsigned int size)
{
    return {pointer, size};
}

// A buffer's size as the application gave it: nothing can be read for a negative one, nor can a record hold
// what 32 bits do not count.
inline unsigned int ByteCount(GLsizeiptr size)
{
    return size > 0 && static_cast<uint64_t>(size) <= UINT32_MAX ? static_cast<unsigned int>(size) : 0;
}

// An image's bytes; the pointer that is recorded is the application's.
template <typename T>
struct SImageBytes
{
    T* argument;
    CPaddedImage const* image;

    void Append(CTraceBlock& block, SRecordState) const
    {
        AppendPointer(block, argument);
        AppendU32(block, image->Size());
        block.AppendData(image->Size(), image->Data());
    }
};
template <typename T>
SImageBytes<T> ImageBytes(T* pixels, CPaddedImage const& image)
{
    return {pixels, &image};
}

// A terminated text of the caller. Whatever length the call passed, strlen decides.
template <typename T>
struct SText
{
    T* argument;

    void Append(CTraceBlock& block, SRecordState) const { AppendText(block, argument); }
};
template <typename T>
SText<T> Text(T* text)
{
    return {text};
}

// The caller's buffer for a text, up to the terminator; not gated, so that a failed call records what the
// buffer held. Nothing is read beyond the buffer's size.
struct SOutText
{
    GLchar* argument;
    GLsizei size;

    void Append(CTraceBlock& block, SRecordState state) const;
};
inline SOutText OutText(GLchar* buffer, GLsizei size) { return {buffer, size}; }

// Texts with their lengths, which may be null.
struct STextList
{
    GLchar const* const* argument;
    GLsizei count;
    GLint const* lengths;

    void Append(CTraceBlock& block, SRecordState state) const;
};
inline STextList TextList(GLchar const* const* texts, GLsizei count, GLint const* lengths)
{
    return {texts, count, lengths};
}

// An EGL attribute list, EGL_NONE included.
struct SAttribList
{
    EGLint const* argument;

    void Append(CTraceBlock& block, SRecordState state) const;
};
inline SAttribList AttribList(EGLint const* list) { return {list}; }

// An argument of 64 bits that is recorded whole; anything else wider than a word takes 4 bytes.
template <typename T>
struct SWide
{
    T argument;

    static constexpr bool kOneForm = true;
    void Append(CTraceBlock& block, SRecordState) const { block.Append(argument); }
};
template <typename T>
SWide<T> Wide(T value)
{
    static_assert(sizeof(T) == 8, "the record keeps 8 bytes");
    return {value};
}

template <typename T, typename = void>
inline constexpr bool kIsForm = false;
template <typename T>
inline constexpr bool kIsForm<T, std::void_t<decltype(std::declval<T&>().argument)>> = true;

// Forms that do not depend on bRecordData.
template <typename T, typename = void>
inline constexpr bool kHasOneForm = false;
template <typename T>
inline constexpr bool kHasOneForm<T, std::void_t<decltype(T::kOneForm)>> = true;

// The form below in its long shape whatever bRecordData says.
template <typename Form>
struct SAlways : Form
{
    static constexpr bool kOneForm = true;
};
template <typename Form>
SAlways<Form> Always(Form form)
{
    return {form};
}

// The call's argument inside a field.
template <typename T>
auto& ArgumentOf(T& field)
{
    if constexpr (kIsForm<T>)
        return field.argument;
    else
        return field;
}

// Narrow types take their own size, everything else 4 bytes.
template <typename T>
void AppendPlain(CTraceBlock& block, T const& value)
{
    if constexpr (std::is_pointer_v<T>)
        AppendPointer(block, reinterpret_cast<void const*>(value));
    else if constexpr (sizeof(T) > 4)
        AppendU32(block, static_cast<uint32_t>(value));
    else
        block.Append(value);
}

template <typename T>
void AppendField(CTraceBlock& block, T const& field, [[maybe_unused]] SRecordState state)
{
    if constexpr (!kIsForm<T>)
        AppendPlain(block, field);
    else if constexpr (kHasOneForm<T>)
        field.Append(block, state);
    else if (state.withData)
        field.Append(block, state);
    else
        AppendPlain(block, field.argument);
}

template <typename... Fields>
void AppendFields(CTraceBlock& block, [[maybe_unused]] SRecordState state, Fields const&... fields)
{
    (AppendField(block, fields, state), ...);
}
