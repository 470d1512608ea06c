// One call of any wrapper over the fake host, and what must hold of its record.
#pragma once
#include "tests/wrappers/functions.h"
#include "tests/wrappers/recorder.h"
#include "trace/decode.h"

// These do not pass the host's own answer on, or take the error themselves.
bool HasOwnResult(Function const& function);
// On purpose: the extension record without API byte, which has no size of the buffer either.
bool IsOddReadnPixels(Function const& function);
uint32_t ErrorOf(Function const& function);
uint32_t NoErrorOf(Function const& function);
nebtrace::RecordSpec const* LayoutOf(Function const& function);

class EveryWrapper : public Recorder
{
protected:
    // One call of a wrapper, and what came of it.
    struct Outcome
    {
        std::vector<Word> arguments;
        Word scripted = 0;  // what the host was told to return
        Word returned = 0;
        Bytes record;  // the whole of what was written
    };

    Word ScriptResult(Function const& function);
    Outcome Run(Function const& function);

    // Decodes the one record that a call left, to its last byte.
    bool DecodeOnly(Function const& function, Bytes const& record, nebtrace::Form form,
                    nebtrace::DecodedCall& call);
    void ExpectHead(Function const& function, nebtrace::DecodedCall const& call, uint32_t error);
    void ExpectResult(Function const& function, nebtrace::DecodedCall const& call, Word word);

    // Every argument of the API stands in the record under its own name, with its own value.
    void ExpectArguments(Function const& function, Outcome const& outcome, nebtrace::DecodedCall const& call);

    // Nothing takes more than a word, but the timeouts.
    static size_t ExpectedWidth(Argument const& argument);

    // The arguments stand in the order of the signature.
    void ExpectOrder(Function const& function, nebtrace::DecodedCall const& call);
    void ExpectContents(Function const& function, Outcome const& outcome, nebtrace::DecodedCall const& call);
    void ExpectBytes(Argument const& argument, void const* memory, nebtrace::DecodedField const& field);
    void ExpectTexts(char const* const* texts, nebtrace::DecodedField const& field);

    // The arrays that only a successful host call fills.
    static bool IsGated(Function const& function, Argument const& argument,
                        nebtrace::DecodedField const& field);
    void ExpectGatedArraysEmpty(Function const& function, nebtrace::DecodedCall const& call);
    void ExpectGatedArraysFilled(Function const& function, nebtrace::DecodedCall const& call);

    // The host gets the application's own words, in both GL tables' case from the right library.
    void ExpectHostGot(Function const& function, Outcome const& outcome, Call const& call);
    void ExpectReturned(Function const& function, Outcome const& outcome, Word word);

    // The result of a wrapper whose host is not called: the trailing argument that a snapshot passes, or the
    // table's default.
    Word ResultWithoutHost(Function const& function, Outcome const& outcome);

private:
    Buffers m_buffers;
    Buffers m_resultBuffers;
};
