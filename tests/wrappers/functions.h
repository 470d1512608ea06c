// Every function of the three APIs, as a test can go through them: what it takes, and how to call its wrapper
// with arguments given as raw words.
#pragma once
#include "host/call_kind.h"
#include "tests/fakehost/control.h"
#include "trace/layout.h"
#include <string>
#include <vector>

using fakehost::AnyFunction;
using fakehost::Word;

// Memory for pointer arguments: one buffer for each argument, far larger than any record reads.
class Buffers
{
public:
    static constexpr size_t kSize = 65536;
    static constexpr size_t kCount = 16;

    Buffers();
    // Bytes that differ from argument to argument.
    void* Pattern(size_t index);
    // Small numbers first, then EGL_NONE where an attribute list has its third key.
    void* Words(size_t index);
    void* Floats(size_t index);
    // "text0" and its kin.
    char* Text(size_t index);
    // Pointers to texts.
    void* Pointers(size_t index);

private:
    std::vector<std::vector<uint8_t>> m_buffers;
    std::vector<std::vector<uint8_t>> m_texts;
};

struct Argument
{
    std::string name;  // as the function table has it; empty for a trailing argument of the wrapper
    size_t size;
    bool isPointer;
    bool pointsToConst;
    bool pointsToPointer;
};

enum class ResultKind
{
    None,
    Number,
    Pointer,
    Text
};

struct Function
{
    nebtrace::Api api;
    std::string library;  // "egl", "es1", "es2"
    uint16_t id;
    std::string name;
    ECallKind kind;
    unsigned int defaultResult;
    ResultKind resultKind;
    size_t resultSize;
    std::vector<Argument> arguments;  // the wrapper's own trailing ones included
    AnyFunction wrapper;
    // Distinct values for the arguments: small numbers, large buffers.
    std::vector<Word> (*makeArguments)(Buffers&);
    Word (*call)(AnyFunction wrapper, std::vector<Word> const& arguments);
    // Stores a pointer in the host table.
    void (*setEntry)(AnyFunction entry);

    size_t ApiArguments() const;
    std::string Title() const { return library + "::" + name; }
};

std::vector<Function> const& AllFunctions();
