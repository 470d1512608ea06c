// What holds for every function of the three APIs: its wrapper, called with distinct arguments, against the
// reader's layout of its record. Neither is derived from the other.
#include "tests/wrappers/functions.h"
#include "tests/wrappers/recorder.h"
#include "trace/decode.h"
#include <algorithm>
#include <set>

namespace
{

using nebtrace::DecodedCall;
using nebtrace::DecodedField;
using nebtrace::FieldSpec;
using nebtrace::Form;
using nebtrace::Kind;
using nebtrace::RecordSpec;
using Names = std::set<std::string>;

// These do not pass the host's own answer on, or take the error themselves.
Names const kOwnResult = {"eglGetError", "glGetError"};
// Arrays that the call fills, recorded whatever the host said. Text outputs are never gated.
Names const kNotGated = {"eglChooseConfig", "eglInitialize", "glReadPixels", "glReadnPixelsEXT"};
// Outputs of which this host, which stores nothing, leaves none; or that are never recorded at all.
Names const kEmptyOnSuccess = {"glGetClipPlanef",           "glGetClipPlanex",
                               "glGetClipPlanexOES",        "glGetClipPlanefOES",
                               "glQueryMatrixxOES",         "glGetSyncivAPPLE",
                               "glGetPerfMonitorGroupsAMD", "glGetPerfMonitorCountersAMD",
                               "glExtGetTexSubImageQCOM",   "glGetAttachedShaders",
                               "glGetProgramBinaryOES"};
// Non-const arrays that the call only reads, or whose names are the caller's to keep.
bool ReadsItsArrays(std::string const& name)
{
    return name.rfind("glGen", 0) == 0 || name == "glDeletePerfMonitorsAMD" ||
           name == "glSelectPerfMonitorCountersAMD";
}
// The host gets a count of the wrapper's own in place of the caller's.
std::map<std::string, std::string> const kSubstituted = {{"glGetAttachedShaders", "count"},
                                                         {"glGetProgramBinaryOES", "length"}};
// On purpose: the extension record without API byte, which has no size of the buffer either.
bool IsOddReadnPixels(Function const& function)
{
    return function.library == "es1" && function.name == "glReadnPixelsEXT";
}

bool IsLeftOut(Function const& function, Argument const& argument)
{
    return IsOddReadnPixels(function) && argument.name == "bufSize";
}

uint32_t ErrorOf(Function const& function) { return function.library == "egl" ? 0x3003 : 0x502; }
uint32_t NoErrorOf(Function const& function) { return function.library == "egl" ? 0x3000 : 0; }

uint64_t Masked(Word word, size_t size)
{
    return size >= 8 ? word : word & ((uint64_t(1) << (8 * size)) - 1);
}

RecordSpec const* LayoutOf(Function const& function)
{
    return nebtrace::FindRecord(function.api, function.id);
}

}  // namespace

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

    Word ScriptResult(Function const& function)
    {
        Word result = 3;
        if (function.resultKind == ResultKind::None || kOwnResult.count(function.name))
            return 0;
        if (function.resultKind == ResultKind::Pointer)
            result = fakehost::AsWord(m_resultBuffers.Pattern(0));
        if (function.resultKind == ResultKind::Text)
            result = fakehost::AsWord(m_resultBuffers.Text(0));
        Fake().Result(function.name, result);
        return result;
    }

    Outcome Run(Function const& function)
    {
        Outcome outcome;
        Fake().Forget();
        outcome.scripted = ScriptResult(function);
        outcome.arguments = function.makeArguments(m_buffers);
        Written();
        testing::internal::CaptureStdout();
        outcome.returned = function.call(function.wrapper, outcome.arguments);
        testing::internal::GetCapturedStdout();
        outcome.record = Written();
        return outcome;
    }

    // Decodes the one record that a call left, to its last byte.
    bool DecodeOnly(Function const& function, Bytes const& record, Form form, DecodedCall& call)
    {
        RecordSpec const* const spec = LayoutOf(function);
        if (!spec || record.size() < 6)
            return false;
        EXPECT_EQ(Joined(U32(record.size() - 6), U16(function.id)),
                  Bytes(record.begin(), record.begin() + 6));
        return nebtrace::DecodeAs(*spec, form, {record.data() + 6, record.size() - 6}, call);
    }

    void ExpectHead(Function const& function, DecodedCall const& call, uint32_t error)
    {
        EXPECT_EQ(error, call.error);
        bool const hasByte = function.library != "egl" && function.id >= 4000 && !IsOddReadnPixels(function);
        EXPECT_EQ(hasByte, call.spec->HasApiByte());
        if (hasByte && !call.fields.empty())
        {
            EXPECT_EQ(function.library == "es1" ? 1u : 2u, call.fields.front().value);
        }
        EXPECT_EQ(function.resultKind != ResultKind::None, call.Result() != nullptr);
    }

    void ExpectResult(Function const& function, DecodedCall const& call, Word word)
    {
        DecodedField const* const result = call.Result();
        if (!result || kOwnResult.count(function.name))
            return;
        EXPECT_EQ(Masked(word, std::min<size_t>(4, function.resultSize)), result->value);
        if (function.resultKind == ResultKind::Text && word)
        {
            EXPECT_EQ(fakehost::FromWord<char const*>(word), result->Text());
        }
    }

    // Every argument of the API stands in the record under its own name, with its own value.
    void ExpectArguments(Function const& function, Outcome const& outcome, DecodedCall const& call)
    {
        for (size_t i = 0; i < function.ApiArguments(); ++i)
        {
            Argument const& argument = function.arguments[i];
            if (IsLeftOut(function, argument))
                continue;
            SCOPED_TRACE(argument.name);
            DecodedField const* const field = call.Find(argument.name);
            ASSERT_NE(nullptr, field);
            size_t const width = nebtrace::ScalarSize(field->spec->kind);
            EXPECT_EQ(ExpectedWidth(argument), width);
            EXPECT_EQ(Masked(outcome.arguments[i], width), field->value);
        }
    }

    // Nothing takes more than a word, but the timeouts.
    static size_t ExpectedWidth(Argument const& argument)
    {
        return argument.name == "timeout" ? argument.size : std::min<size_t>(4, argument.size);
    }

    // The arguments stand in the order of the signature.
    void ExpectOrder(Function const& function, DecodedCall const& call)
    {
        std::vector<std::string> inRecord;
        for (DecodedField const& field : call.fields)
            if (field.spec->isArgument)
                inRecord.push_back(field.spec->name);
        std::vector<std::string> inSignature;
        for (size_t i = 0; i < function.ApiArguments(); ++i)
        {
            if (!IsLeftOut(function, function.arguments[i]))
                inSignature.push_back(function.arguments[i].name);
        }
        EXPECT_EQ(inSignature, inRecord);
    }

    void ExpectContents(Function const& function, Outcome const& outcome, DecodedCall const& call)
    {
        for (size_t i = 0; i < function.ApiArguments(); ++i)
        {
            Argument const& argument = function.arguments[i];
            DecodedField const* const field = call.Find(argument.name);
            if (!argument.isPointer || !field || !field->hasData)
                continue;
            SCOPED_TRACE(argument.name);
            ExpectBytes(argument, fakehost::FromWord<void const*>(outcome.arguments[i]), *field);
        }
    }

    void ExpectBytes(Argument const& argument, void const* memory, DecodedField const& field)
    {
        if (field.spec->kind == Kind::TextList)
            ExpectTexts(static_cast<char const* const*>(memory), field);
        else if (argument.pointsToPointer && field.spec->ElementSize() == 4)
            for (uint32_t i = 0; i < field.count; ++i)
                EXPECT_EQ(Masked(static_cast<Word const*>(memory)[i], 4), nebtrace::ValueAt(field, i));
        else
            EXPECT_EQ(Raw(memory, field.bytes.size), Bytes(field.bytes.begin(), field.bytes.end()));
    }

    void ExpectTexts(char const* const* texts, DecodedField const& field)
    {
        nebtrace::ItemReader reader(field);
        nebtrace::ItemReader::Item item;
        for (uint32_t i = 0; i < field.count; ++i)
        {
            ASSERT_TRUE(reader.Next(item));
            EXPECT_EQ(Masked(fakehost::AsWord(texts[i]), 4), item.pointer);
            EXPECT_EQ(Raw(texts[i], item.bytes.size), Bytes(item.bytes.begin(), item.bytes.end()));
        }
    }

    // The arrays that only a successful host call fills.
    static bool IsGated(Function const& function, Argument const& argument, DecodedField const& field)
    {
        bool const countable = field.spec->kind == Kind::Array || field.spec->kind == Kind::Image;
        return countable && argument.isPointer && !argument.pointsToConst &&
               !kNotGated.count(function.name) && !ReadsItsArrays(function.name);
    }

    void ExpectGatedArraysEmpty(Function const& function, DecodedCall const& call)
    {
        for (Argument const& argument : function.arguments)
        {
            DecodedField const* const field = argument.name.empty() ? nullptr : call.Find(argument.name);
            if (field && IsGated(function, argument, *field))
            {
                EXPECT_EQ(0u, field->count) << argument.name;
            }
        }
    }

    void ExpectGatedArraysFilled(Function const& function, DecodedCall const& call)
    {
        if (kEmptyOnSuccess.count(function.name))
            return;
        for (Argument const& argument : function.arguments)
        {
            DecodedField const* const field = argument.name.empty() ? nullptr : call.Find(argument.name);
            if (field && IsGated(function, argument, *field))
            {
                EXPECT_NE(0u, field->count) << argument.name;
            }
        }
    }

    // The host gets the application's own words, in both GL tables' case from the right library.
    void ExpectHostGot(Function const& function, Outcome const& outcome, Call const& call)
    {
        EXPECT_EQ(function.library, call.api);
        ASSERT_EQ(function.ApiArguments(), call.words.size());
        auto const substituted = kSubstituted.find(function.name);
        for (size_t i = 0; i < call.words.size(); ++i)
            if (substituted == kSubstituted.end() || substituted->second != function.arguments[i].name)
            {
                EXPECT_EQ(outcome.arguments[i], call.words[i]) << function.arguments[i].name;
            }
    }

    void ExpectReturned(Function const& function, Outcome const& outcome, Word word)
    {
        if (function.resultKind != ResultKind::None && !kOwnResult.count(function.name))
        {
            EXPECT_EQ(Masked(word, function.resultSize), outcome.returned);
        }
    }

    // The result of a wrapper whose host is not called: the trailing argument that a snapshot passes, or the
    // table's default.
    Word ResultWithoutHost(Function const& function, Outcome const& outcome)
    {
        bool const isReplayed =
            function.resultKind != ResultKind::None && function.ApiArguments() < function.arguments.size();
        return isReplayed ? outcome.arguments[function.ApiArguments()] : function.defaultResult;
    }

private:
    Buffers m_buffers;
    Buffers m_resultBuffers;
};

// A function is a line in the table, a wrapper (which the table declares, so that a missing one does not
// link) and a layout. This fails when the layout was forgotten, or stands for no function.
TEST_F(EveryWrapper, EachHasALayoutAndEachLayoutAFunction)
{
    EXPECT_EQ(std::vector<std::string>(), nebtrace::LayoutFaults());
    std::set<std::string> functions;
    for (Function const& function : AllFunctions())
    {
        RecordSpec const* const spec = LayoutOf(function);
        ASSERT_NE(nullptr, spec) << function.Title();
        EXPECT_EQ(function.name, spec->name);
        EXPECT_TRUE(functions.insert(function.Title()).second) << function.Title();
    }
    EXPECT_EQ(functions.size(), nebtrace::AllRecords().size());
    EXPECT_EQ(45u + 296u + 294u, functions.size());
}

// With contents: every byte of the record is known to the layout, and every field is what was passed.
TEST_F(EveryWrapper, RecordTheirArgumentsAndContents)
{
    for (Function const& function : AllFunctions())
    {
        SCOPED_TRACE(function.Title());
        Record();
        Outcome const outcome = Run(function);
        DecodedCall call;
        ASSERT_TRUE(DecodeOnly(function, outcome.record, Form::Long, call));
        ExpectHead(function, call, NoErrorOf(function));
        ExpectResult(function, call, outcome.scripted);
        ExpectArguments(function, outcome, call);
        ExpectOrder(function, call);
        ExpectContents(function, outcome, call);
        ExpectGatedArraysFilled(function, call);
    }
}

// Without contents: every pointer argument is its bare word.
TEST_F(EveryWrapper, RecordBarePointersWithoutData)
{
    for (Function const& function : AllFunctions())
    {
        SCOPED_TRACE(function.Title());
        RecordWithoutData();
        Outcome const outcome = Run(function);
        DecodedCall call;
        ASSERT_TRUE(DecodeOnly(function, outcome.record,
                               LayoutOf(function)->oneForm ? Form::Long : Form::Short, call));
        ExpectHead(function, call, NoErrorOf(function));
        ExpectResult(function, call, outcome.scripted);
        ExpectArguments(function, outcome, call);
        ExpectOrder(function, call);
    }
}

// A host error stands in the record, and what the host did not fill is not recorded.
TEST_F(EveryWrapper, RecordAHostErrorAndEmptyOutputs)
{
    for (Function const& function : AllFunctions())
    {
        if (kOwnResult.count(function.name))
            continue;
        SCOPED_TRACE(function.Title());
        Record();
        HostFails(ErrorOf(function));
        Outcome const outcome = Run(function);
        DecodedCall call;
        Form const form = IsOddReadnPixels(function) ? Form::Short : Form::Long;
        ASSERT_TRUE(DecodeOnly(function, outcome.record, form, call));
        ExpectHead(function, call, ErrorOf(function));
        ExpectResult(function, call, outcome.scripted);
        ExpectArguments(function, outcome, call);
        ExpectContents(function, outcome, call);
        ExpectGatedArraysEmpty(function, call);
    }
}

// An extension that the host lacks is recorded all the same, without error, with the default result and empty
// outputs, and nothing runs.
TEST_F(EveryWrapper, RecordAMissingExtension)
{
    for (Function const& function : AllFunctions())
    {
        if (!(function.kind & kExtension))
            continue;
        SCOPED_TRACE(function.Title());
        function.setEntry(nullptr);
        Record();
        HostFails(ErrorOf(function));
        Outcome const outcome = Run(function);
        DecodedCall call;
        ASSERT_TRUE(DecodeOnly(function, outcome.record, Form::Long, call));
        EXPECT_EQ(0u, HostCalls(function.name));
        ExpectHead(function, call, NoErrorOf(function));
        ExpectResult(function, call, function.defaultResult);
        ExpectReturned(function, outcome, function.defaultResult);
        ExpectArguments(function, outcome, call);
        ExpectGatedArraysEmpty(function, call);
        Fake().HostFails(0);
    }
}

// With the host call off, as in a snapshot, the record carries no error and the result that is to be
// replayed.
TEST_F(EveryWrapper, RecordWithTheHostCallOff)
{
    for (Function const& function : AllFunctions())
    {
        SCOPED_TRACE(function.Title());
        RecordWithHostOff();
        HostFails(ErrorOf(function));
        Outcome const outcome = Run(function);
        DecodedCall call;
        ASSERT_TRUE(DecodeOnly(function, outcome.record, Form::Long, call));
        EXPECT_EQ(0u, HostCalls(function.name));
        ExpectHead(function, call, NoErrorOf(function));
        ExpectResult(function, call, ResultWithoutHost(function, outcome));
        ExpectReturned(function, outcome, ResultWithoutHost(function, outcome));
        ExpectArguments(function, outcome, call);
        ExpectGatedArraysEmpty(function, call);
        Fake().HostFails(0);
    }
}

// Ahead of the recorded frames nothing is written; the host gets the call as it was made, once, and its
// answer goes back.
TEST_F(EveryWrapper, OnlyPassCallsOnAheadOfTheRecordedFrames)
{
    for (Function const& function : AllFunctions())
    {
        SCOPED_TRACE(function.Title());
        Play();
        Outcome const outcome = Run(function);
        EXPECT_EQ(Bytes(), outcome.record);
        ExpectReturned(function, outcome, outcome.scripted);
        std::vector<Call> const calls = Fake().Calls(function.name);
        if (kOwnResult.count(function.name))
            continue;
        ASSERT_EQ(1u, calls.size());
        ExpectHostGot(function, outcome, calls.front());
    }
}

// The default result of every function that gives an EGLBoolean is 1, of every other 0: a program that runs
// under an override must not take a held call for a failed one.
TEST_F(EveryWrapper, DefaultToTrueWhereEglAnswersTruth)
{
    Names const truths = {"eglChooseConfig",    "eglCopyBuffers",
                          "eglDestroyContext",  "eglDestroySurface",
                          "eglGetConfigAttrib", "eglGetConfigs",
                          "eglInitialize",      "eglMakeCurrent",
                          "eglQueryContext",    "eglQuerySurface",
                          "eglSwapBuffers",     "eglTerminate",
                          "eglWaitGL",          "eglWaitNative",
                          "eglBindTexImage",    "eglReleaseTexImage",
                          "eglSurfaceAttrib",   "eglSwapInterval",
                          "eglBindAPI",         "eglReleaseThread",
                          "eglWaitClient",      "eglSetSwapRectangleANDROID",
                          "eglLockSurfaceKHR",  "eglUnlockSurfaceKHR",
                          "eglDestroyImageKHR", "eglDestroySyncKHR",
                          "eglSignalSyncKHR",   "eglGetSyncAttribKHR"};
    EXPECT_EQ(28u, truths.size());
    for (Function const& function : AllFunctions())
        EXPECT_EQ(truths.count(function.name), function.defaultResult) << function.name;
}
