#include "tests/wrappers/every_wrapper.h"
#include <algorithm>
#include <set>

namespace
{

using nebtrace::DecodedCall;
using nebtrace::DecodedField;
using nebtrace::Form;
using nebtrace::Kind;
using nebtrace::RecordSpec;
using Names = std::set<std::string>;

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

uint64_t Masked(Word word, size_t size)
{
    return size >= 8 ? word : word & ((uint64_t(1) << (8 * size)) - 1);
}

bool IsLeftOut(Function const& function, Argument const& argument)
{
    return IsOddReadnPixels(function) && argument.name == "bufSize";
}

}  // namespace

bool HasOwnResult(Function const& function)
{
    return function.name == "eglGetError" || function.name == "glGetError";
}

bool IsOddReadnPixels(Function const& function)
{
    return function.library == "es1" && function.name == "glReadnPixelsEXT";
}

uint32_t ErrorOf(Function const& function) { return function.library == "egl" ? 0x3003 : 0x502; }
uint32_t NoErrorOf(Function const& function) { return function.library == "egl" ? 0x3000 : 0; }

RecordSpec const* LayoutOf(Function const& function)
{
    return nebtrace::FindRecord(function.api, function.id);
}

Word EveryWrapper::ScriptResult(Function const& function)
{
    Word result = 3;
    if (function.resultKind == ResultKind::None || HasOwnResult(function))
        return 0;
    if (function.resultKind == ResultKind::Pointer)
        result = fakehost::AsWord(m_resultBuffers.Pattern(0));
    if (function.resultKind == ResultKind::Text)
        result = fakehost::AsWord(m_resultBuffers.Text(0));
    Fake().Result(function.name, result);
    return result;
}

EveryWrapper::Outcome EveryWrapper::Run(Function const& function)
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

bool EveryWrapper::DecodeOnly(Function const& function, Bytes const& record, Form form, DecodedCall& call)
{
    RecordSpec const* const spec = LayoutOf(function);
    if (!spec || record.size() < 6)
        return false;
    EXPECT_EQ(Joined(U32(record.size() - 6), U16(function.id)), Bytes(record.begin(), record.begin() + 6));
    return nebtrace::DecodeAs(*spec, form, {record.data() + 6, record.size() - 6}, call);
}

void EveryWrapper::ExpectHead(Function const& function, DecodedCall const& call, uint32_t error)
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

void EveryWrapper::ExpectResult(Function const& function, DecodedCall const& call, Word word)
{
    DecodedField const* const result = call.Result();
    if (!result || HasOwnResult(function))
        return;
    EXPECT_EQ(Masked(word, std::min<size_t>(4, function.resultSize)), result->value);
    if (function.resultKind == ResultKind::Text && word)
    {
        EXPECT_EQ(fakehost::FromWord<char const*>(word), result->Text());
    }
}

void EveryWrapper::ExpectArguments(Function const& function, Outcome const& outcome, DecodedCall const& call)
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

size_t EveryWrapper::ExpectedWidth(Argument const& argument)
{
    return argument.name == "timeout" ? argument.size : std::min<size_t>(4, argument.size);
}

void EveryWrapper::ExpectOrder(Function const& function, DecodedCall const& call)
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

void EveryWrapper::ExpectContents(Function const& function, Outcome const& outcome, DecodedCall const& call)
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

void EveryWrapper::ExpectBytes(Argument const& argument, void const* memory, DecodedField const& field)
{
    if (field.spec->kind == Kind::TextList)
        ExpectTexts(static_cast<char const* const*>(memory), field);
    else if (argument.pointsToPointer && field.spec->ElementSize() == 4)
        for (uint32_t i = 0; i < field.count; ++i)
            EXPECT_EQ(Masked(fakehost::AsWord(static_cast<void const* const*>(memory)[i]), 4),
                      nebtrace::ValueAt(field, i));
    else
        EXPECT_EQ(Raw(memory, field.bytes.size), Bytes(field.bytes.begin(), field.bytes.end()));
}

void EveryWrapper::ExpectTexts(char const* const* texts, DecodedField const& field)
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

bool EveryWrapper::IsGated(Function const& function, Argument const& argument, DecodedField const& field)
{
    bool const countable = field.spec->kind == Kind::Array || field.spec->kind == Kind::Image;
    return countable && argument.isPointer && !argument.pointsToConst && !kNotGated.count(function.name) &&
           !ReadsItsArrays(function.name);
}

void EveryWrapper::ExpectGatedArraysEmpty(Function const& function, DecodedCall const& call)
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

void EveryWrapper::ExpectGatedArraysFilled(Function const& function, DecodedCall const& call)
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

void EveryWrapper::ExpectHostGot(Function const& function, Outcome const& outcome, Call const& call)
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

void EveryWrapper::ExpectReturned(Function const& function, Outcome const& outcome, Word word)
{
    if (function.resultKind != ResultKind::None && !HasOwnResult(function))
    {
        EXPECT_EQ(Masked(word, function.resultSize), outcome.returned);
    }
}

Word EveryWrapper::ResultWithoutHost(Function const& function, Outcome const& outcome)
{
    bool const isReplayed =
        function.resultKind != ResultKind::None && function.ApiArguments() < function.arguments.size();
    return isReplayed ? outcome.arguments[function.ApiArguments()] : function.defaultResult;
}
