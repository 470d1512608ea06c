// The tables of layouts: each can be read, and they know the functions that api/*.def know, no more, no less.
#include "trace/enums.h"
#include "trace/format.h"
#include "trace/layout.h"
#include <gtest/gtest.h>
#include <map>
#include <set>

using namespace nebtrace;

namespace
{
struct Function
{
    Api api;
    unsigned id;
    std::string result;
    std::string name;
    std::string arguments;  // "(a, b)"
};

std::vector<Function> const& Functions()
{
    static std::vector<Function> const functions = {
#define EGL(id, kind, def, result, name, params, args) {Api::Egl, id, #result, #name, #args},
#define EGL_REPLAYED(id, kind, def, result, name, params, args, wrapper)                                     \
    {Api::Egl, id, #result, #name, #args},
#include "api/egl.def"
#define ES1(id, kind, def, result, name, params, args) {Api::Es1, id, #result, #name, #args},
#include "api/es1.def"
#define ES2(id, kind, def, result, name, params, args) {Api::Es2, id, #result, #name, #args},
#define ES2_REPLAYED(id, kind, def, result, name, params, args, wrapper)                                     \
    {Api::Es2, id, #result, #name, #args},
#include "api/es2.def"
    };
    return functions;
}

std::string ArgumentsOf(std::vector<FieldSpec> const& fields)
{
    std::string text;
    for (FieldSpec const& field : fields)
        if (field.isArgument)
            text += (text.empty() ? "" : ", ") + field.name;
    return "(" + text + ")";
}

std::vector<FieldSpec> Parsed(std::string_view text)
{
    std::vector<FieldSpec> fields;
    std::string error;
    EXPECT_TRUE(ParseLayout(text, fields, error)) << text << ": " << error;
    return fields;
}

bool Parses(std::string_view text)
{
    std::vector<FieldSpec> fields;
    std::string error;
    bool const parses = ParseLayout(text, fields, error);
    EXPECT_EQ(parses, error.empty());
    return parses;
}
}  // namespace

// A slip in a layout text would leave its records undecodable.
TEST(Layouts, EveryLayoutCanBeRead)
{
    EXPECT_EQ(std::vector<std::string>(), LayoutFaults());
    EXPECT_EQ(45u + 296u + 294u, AllRecords().size());
}

// A function added in one of the two places must be added in the other.
TEST(Layouts, EveryFunctionHasALayoutAndEveryLayoutAFunction)
{
    EXPECT_EQ(Functions().size(), AllRecords().size());
    for (Function const& function : Functions())
    {
        RecordSpec const* const record = FindRecord(function.api, function.name);
        ASSERT_TRUE(record) << function.name;
        EXPECT_EQ(function.id, record->id) << function.name;
        EXPECT_EQ(record, FindRecord(function.api, record->id)) << function.name;
    }
}

// A record holds all arguments of its function, in their order, under their names; only one leaves one out.
TEST(Layouts, TheLongFormHasTheFunctionsArguments)
{
    for (Function const& function : Functions())
    {
        RecordSpec const& record = *FindRecord(function.api, function.name);
        if (function.api == Api::Es1 && function.name == "glReadnPixelsEXT")
            EXPECT_EQ("(x, y, width, height, format, type, data)", ArgumentsOf(record.longForm));
        else
            EXPECT_EQ(function.arguments, ArgumentsOf(record.longForm)) << function.name;
    }
}

// The short form has the same arguments as the long one.
TEST(Layouts, TheShortFormHasTheSameArguments)
{
    for (RecordSpec const& record : AllRecords())
        EXPECT_EQ(record.oneForm ? "()" : ArgumentsOf(record.longForm), ArgumentsOf(record.shortForm))
            << record.name;
}

// A record has a result exactly if its function has one, in front of the arguments.
TEST(Layouts, TheResultIsTheFunctions)
{
    for (Function const& function : Functions())
    {
        RecordSpec const& record = *FindRecord(function.api, function.name);
        EXPECT_EQ(function.result != "void", record.HasResult()) << function.name;
        for (size_t i = 0; i < record.longForm.size(); ++i)
            EXPECT_TRUE(!record.longForm[i].isResult || i == (record.HasApiByte() ? 1u : 0u))
                << function.name;
    }
}

// Results are words, but for the truth values of GL, which are bytes, and the texts.
TEST(Layouts, TheResultsWidthIsItsTypes)
{
    std::map<std::string, size_t> const sizes = {{"GLboolean", 1}, {"EGLBoolean", 4}, {"GLenum", 4},
                                                 {"GLint", 4},     {"GLuint", 4},     {"void*", 4},
                                                 {"GLbitfield", 4}};
    for (Function const& function : Functions())
    {
        auto const size = sizes.find(function.result);
        if (size == sizes.end())
            continue;
        RecordSpec const& record = *FindRecord(function.api, function.name);
        EXPECT_EQ(size->second, ScalarSize(record.longForm[record.HasApiByte() ? 1 : 0].kind))
            << function.name;
    }
}

// The API byte tells ES 1 from ES 2 where they share an ID; one record does without.
TEST(Layouts, SharedIdsHaveTheApiByteInFront)
{
    for (RecordSpec const& record : AllRecords())
    {
        bool const exception = record.api == Api::Es1 && record.name == "glReadnPixelsEXT";
        EXPECT_EQ(record.id >= kFirstSharedId && !exception, record.HasApiByte()) << record.name;
        for (size_t i = 1; i < record.longForm.size(); ++i)
            EXPECT_NE(Kind::ApiByte, record.longForm[i].kind) << record.name;
    }
}

// A field is found by its name, so no record may have a name twice.
TEST(Layouts, FieldNamesAreUniqueInARecord)
{
    for (RecordSpec const& record : AllRecords())
    {
        std::set<std::string> names;
        for (FieldSpec const& field : record.longForm)
            EXPECT_TRUE(names.insert(field.name).second) << record.name << " " << field.name;
    }
}

// Where a domain is a group of enumerants, the group is there.
TEST(Layouts, EveryGroupNamedExists)
{
    for (RecordSpec const& record : AllRecords())
        for (FieldSpec const& field : record.longForm)
        {
            bool const isClass = field.element == Kind::Object;
            EXPECT_EQ(!field.domain.empty() && !isClass, field.group != nullptr)
                << record.name << " " << field.name;
        }
}

// Only what has no form without data has one form.
TEST(Layouts, TheRecordsWithOneFormAreTheKnownOnes)
{
    std::set<std::string> names;
    for (RecordSpec const& record : AllRecords())
        if (record.oneForm)
            names.insert(std::string(record.name));
    std::set<std::string> const expected = {"eglGetProcAddress",
                                            "eglMakeCurrent",
                                            "eglQueryString",
                                            "eglSwapBuffers",
                                            "glUnmapBufferOES",
                                            "glGetString",
                                            "glGetTexStreamDeviceNameNBX"};
    EXPECT_EQ(expected, names);
}

// IDs that two APIs share are found in each, and in the ES 2 table without an API.
TEST(Layouts, SharedIdsAreFoundByApi)
{
    EXPECT_EQ(Api::Es1, FindRecord(Api::Es1, 4168)->api);
    EXPECT_EQ(Api::Es2, FindRecord(Api::Es2, 4168)->api);
    EXPECT_EQ(Api::Es2, FindRecord(Api::Any, 4168)->api);
    EXPECT_EQ(Api::Es1, FindRecord(Api::Any, 4088)->api);
    EXPECT_EQ(Api::Egl, FindRecord(Api::Any, 1022)->api);
    EXPECT_FALSE(FindRecord(Api::Es2, 4088));
    EXPECT_FALSE(FindRecord(Api::Any, 4000));
    EXPECT_FALSE(FindRecord(Api::Es2, "eglSwapBuffers"));
}

// The notation of a scalar: name, kind, group.
TEST(LayoutNotation, ScalarsHaveKindAndGroup)
{
    auto const fields =
        Parsed("api =b target:e<TextureTarget> texture:o<texture> +extra:u v:i<TextureParameterValue>");
    ASSERT_EQ(6u, fields.size());
    EXPECT_EQ(Kind::ApiByte, fields[0].kind);
    EXPECT_TRUE(fields[1].isResult);
    EXPECT_EQ("result", fields[1].name);
    EXPECT_EQ(Kind::Enum, fields[2].kind);
    EXPECT_EQ(FindEnumGroup("TextureTarget"), fields[2].group);
    EXPECT_TRUE(fields[2].isArgument);
    EXPECT_EQ("texture", fields[3].domain);
    EXPECT_FALSE(fields[4].isArgument);
    EXPECT_EQ(Kind::Signed, fields[5].kind);
    EXPECT_EQ(FindEnumGroup("TextureParameterValue"), fields[5].group);
}

// The notation of an array: the kind of its values, and how many make an element.
TEST(LayoutNotation, ArraysHaveElements)
{
    auto const fields = Parsed("a:A[f*16] b:A[l] c:F[s*5] d:A[e]");
    ASSERT_EQ(4u, fields.size());
    EXPECT_EQ(Kind::Array, fields[0].kind);
    EXPECT_EQ(Kind::Float, fields[0].element);
    EXPECT_EQ(64u, fields[0].ElementSize());
    EXPECT_EQ(8u, fields[1].ElementSize());
    EXPECT_EQ(Kind::FixedArray, fields[2].kind);
    EXPECT_EQ(10u, fields[2].ElementSize());
    EXPECT_EQ(nullptr, fields[3].group);
}

// Every slip that a text can have is refused, not guessed at.
TEST(LayoutNotation, SlipsAreRefused)
{
    for (char const* const text : {"a",
                                   "a:",
                                   ":i",
                                   "a:z",
                                   "a:ii",
                                   "a:A",
                                   "a:A[",
                                   "a:A[]",
                                   "a:A[i",
                                   "a:A[i*]",
                                   "a:A[i*0]",
                                   "a:A[i*100000]",
                                   "a:A[S]",
                                   "a:F",
                                   "a:e<",
                                   "a:e<>",
                                   "a:e<NoSuchGroup>",
                                   "a:o",
                                   "a:o<>",
                                   "a:S<x>",
                                   "=",
                                   "+",
                                   "+:i",
                                   "a:i  b:i",
                                   "a:V b:i",
                                   " a:i"})
        EXPECT_FALSE(Parses(text)) << text;
}

// A record without arguments is the empty text.
TEST(LayoutNotation, TheEmptyTextHasNoFields) { EXPECT_TRUE(Parsed("").empty()); }
