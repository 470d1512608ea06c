// What each call adds to the counters.
#include "tests/wrappers/functions.h"
#include "tests/wrappers/profiled.h"
#include <set>

namespace
{

// By their place, as the server knows them.
enum : int
{
    kIndexedDraws,
    kOtherDraws,
    kPoints,
    kLineList,
    kLineLoop,
    kLineStrip,
    kLines,
    kTriangleList,
    kTriangleStrip,
    kTriangleFan,
    kTriangles,
    kTextureUploads,
    kTextureModifications,
    kScissors,
    kViewports,
    kFrameBuffer,
    kVertexShaders,
    kFragmentShaders,
    kLinks,
    kTextureUploadBytes = 21,
    kTextureModificationBytes,
    kBufferUploadBytes,
    kBufferModificationBytes,
    kUniforms,
    kContextBinds
};

// The calls that count, each with its wrapper's arguments as functions.h makes them.
std::map<std::string, Changes> const kCalls = {
    {"glDrawArrays", {{kOtherDraws, 1}}},      // the mode is 20
    {"glDrawElements", {{kIndexedDraws, 1}}},  // likewise
    {"glTexImage2D", {{kTextureUploads, 1}}},  // the format is 26, which no pixel has
    {"glTexImage3DOES", {{kTextureUploads, 1}}},
    {"glCompressedTexImage2D", {{kTextureUploads, 1}, {kTextureUploadBytes, 8}}},
    {"glCompressedTexImage3DOES", {{kTextureUploads, 1}, {kTextureUploadBytes, 9}}},
    {"glTexSubImage2D", {{kTextureModifications, 1}}},
    {"glTexSubImage3DOES", {{kTextureModifications, 1}}},
    {"glCompressedTexSubImage2D", {{kTextureModifications, 1}, {kTextureModificationBytes, 9}}},
    {"glCompressedTexSubImage3DOES", {{kTextureModifications, 1}, {kTextureModificationBytes, 11}}},
    {"glScissor", {{kScissors, 1}}},
    {"glViewport", {{kViewports, 1}}},
    {"glReadPixels", {{kFrameBuffer, 1}}},
    {"glLinkProgram", {{kLinks, 1}}},
    {"glBufferData", {{kBufferUploadBytes, 3}}},
    {"glBufferSubData", {{kBufferModificationBytes, 4}}},
    {"glUniform1f", {{kUniforms, 1}}},
    {"glUniform1fv", {{kUniforms, 1}}},
    {"glUniform1i", {{kUniforms, 1}}},
    {"glUniform1iv", {{kUniforms, 1}}},
    {"glUniform2f", {{kUniforms, 1}}},
    {"glUniform2fv", {{kUniforms, 1}}},
    {"glUniform2i", {{kUniforms, 1}}},
    {"glUniform2iv", {{kUniforms, 1}}},
    {"glUniform3f", {{kUniforms, 1}}},
    {"glUniform3fv", {{kUniforms, 1}}},
    {"glUniform3i", {{kUniforms, 1}}},
    {"glUniform3iv", {{kUniforms, 1}}},
    {"glUniform4f", {{kUniforms, 1}}},
    {"glUniform4fv", {{kUniforms, 1}}},
    {"glUniform4i", {{kUniforms, 1}}},
    {"glUniform4iv", {{kUniforms, 1}}},
    {"glUniformMatrix2fv", {{kUniforms, 1}}},
    {"glUniformMatrix3fv", {{kUniforms, 1}}},
    {"glUniformMatrix4fv", {{kUniforms, 1}}},
    {"eglMakeCurrent", {{kContextBinds, 1}}},
};

// GLES1's compressed sub-images are the one call that counts in GLES2 alone.
Changes ExpectedOf(Function const& function)
{
    auto const found = kCalls.find(function.name);
    if (found == kCalls.end() || function.Title() == "es1::glCompressedTexSubImage2D")
        return {};
    return found->second;
}

class ProfilerCounters : public Profiled
{
protected:
    static Changes DrawsArrays(GLenum mode, GLsizei count)
    {
        Changes const changes = Counted([=] { Es2::_glDrawArrays(mode, 9, count); });
        EXPECT_EQ(changes, Counted([=] { Es1::_glDrawArrays(mode, 9, count); })) << mode << ' ' << count;
        return changes;
    }
    static Changes DrawsElements(GLenum mode, GLsizei count)
    {
        Changes const changes =
            Counted([=] { Es2::_glDrawElements(mode, count, GL_UNSIGNED_BYTE, nullptr); });
        EXPECT_EQ(changes, Counted([=] { Es1::_glDrawElements(mode, count, GL_UNSIGNED_BYTE, nullptr); }))
            << mode << ' ' << count;
        return changes;
    }
    // Both kinds of draws add the primitives and one draw.
    static void ExpectPrimitives(GLenum mode, GLsizei count, Changes const& primitives)
    {
        Changes arrays = primitives;
        arrays[kOtherDraws] = 1;
        EXPECT_EQ(arrays, DrawsArrays(mode, count)) << mode << ' ' << count;
        Changes elements = primitives;
        elements[kIndexedDraws] = 1;
        EXPECT_EQ(elements, DrawsElements(mode, count)) << mode << ' ' << count;
    }

    static Changes Compiles(GLuint shader, GLint type)
    {
        Fake().On("glGetShaderiv", [=](Call const& call) {
            EXPECT_EQ(shader, call.Argument<GLuint>(0));
            if (call.Argument<GLenum>(1) == GL_SHADER_TYPE)
                *call.Pointer<GLint>(2) = type;
        });
        return Counted([=] { Es2::_glCompileShader(shader); });
    }

    uint8_t m_pixels[4096] = {};
};

}  // namespace

// Every call of the three APIs adds to its own counters, and to no other.
TEST_F(ProfilerCounters, EachCallAddsToItsOwnAndNoOther)
{
    Buffers buffers;
    std::set<std::string> met;
    for (Function const& function : AllFunctions())
    {
        std::vector<Word> const arguments = function.makeArguments(buffers);
        Changes const changes = Counted([&] { function.call(function.wrapper, arguments); });
        EXPECT_EQ(ExpectedOf(function), changes) << function.Title();
        if (!changes.empty())
            met.insert(function.name);
    }
    EXPECT_EQ(kCalls.size(), met.size());
    EXPECT_EQ(0u, Profiler().m_aCounters[20]);
}

// A call that the host refused counts nowhere.
TEST_F(ProfilerCounters, ACallThatFailedCountsNowhere)
{
    Buffers buffers;
    for (Function const& function : AllFunctions())
        if (kCalls.count(function.name))
        {
            HostFails(function.library == "egl" ? 0x3003 : 0x502);
            std::vector<Word> const arguments = function.makeArguments(buffers);
            Printed([&] {
                EXPECT_EQ(Changes{}, Counted([&] { function.call(function.wrapper, arguments); }))
                    << function.Title();
            });
        }
}

// Without error queries nobody knows which calls succeeded.
TEST_F(ProfilerCounters, WithoutErrorQueriesNothingCounts)
{
    STraceConfig::m_getErrors = false;
    EXPECT_EQ(Changes{}, Counted([] { Es2::_glScissor(1, 2, 3, 4); }));
}

// A draw without vertices, and one of an unknown kind, is a draw and no more.
TEST_F(ProfilerCounters, ADrawOfNothingIsADraw)
{
    for (GLenum mode = GL_POINTS; mode <= GL_TRIANGLE_FAN; ++mode)
        ExpectPrimitives(mode, 0, {});
    for (GLenum const mode : {7u, 8u, 0x80000000u, 0xFFFFFFFFu})
        ExpectPrimitives(mode, 12, {});
}

// Each kind of primitive has a counter of its own, and but for points one with its relatives.
TEST_F(ProfilerCounters, PrimitivesByTheirKind)
{
    ExpectPrimitives(GL_POINTS, 1, {{kPoints, 1}});
    ExpectPrimitives(GL_POINTS, 5, {{kPoints, 5}});
    ExpectPrimitives(GL_LINES, 1, {});
    ExpectPrimitives(GL_LINES, 4, {{kLineList, 2}, {kLines, 2}});
    ExpectPrimitives(GL_LINES, 5, {{kLineList, 2}, {kLines, 2}});
    ExpectPrimitives(GL_LINE_LOOP, 1, {{kLineLoop, 1}, {kLines, 1}});
    ExpectPrimitives(GL_LINE_LOOP, 5, {{kLineLoop, 5}, {kLines, 5}});
    ExpectPrimitives(GL_LINE_STRIP, 1, {});
    ExpectPrimitives(GL_LINE_STRIP, 5, {{kLineStrip, 4}, {kLines, 4}});
    ExpectPrimitives(GL_TRIANGLES, 2, {});
    ExpectPrimitives(GL_TRIANGLES, 6, {{kTriangleList, 2}, {kTriangles, 2}});
    ExpectPrimitives(GL_TRIANGLES, 7, {{kTriangleList, 2}, {kTriangles, 2}});
    ExpectPrimitives(GL_TRIANGLE_STRIP, 2, {});
    ExpectPrimitives(GL_TRIANGLE_STRIP, 5, {{kTriangleStrip, 3}, {kTriangles, 3}});
    ExpectPrimitives(GL_TRIANGLE_FAN, 2, {});
    ExpectPrimitives(GL_TRIANGLE_FAN, 5, {{kTriangleFan, 3}, {kTriangles, 3}});
}

// The rule knows no least count: a strip of one vertex takes one triangle from the sums.
TEST_F(ProfilerCounters, AStripThatIsTooShortTakesFromTheSums)
{
    ExpectPrimitives(GL_TRIANGLE_STRIP, 1, {{kTriangleStrip, 0xFFFFFFFF}, {kTriangles, 0xFFFFFFFF}});
    ExpectPrimitives(GL_TRIANGLE_FAN, 1, {{kTriangleFan, 0xFFFFFFFF}, {kTriangles, 0xFFFFFFFF}});
    ExpectPrimitives(GL_LINES, -5, {{kLineList, 0xFFFFFFFE}, {kLines, 0xFFFFFFFE}});
    ExpectPrimitives(GL_TRIANGLES, -7, {{kTriangleList, 0xFFFFFFFE}, {kTriangles, 0xFFFFFFFE}});
    ExpectPrimitives(GL_TRIANGLE_FAN, INT32_MIN, {{kTriangleFan, 0x7FFFFFFE}, {kTriangles, 0x7FFFFFFE}});
}

// Draws of several instances, multi draws and rectangles count neither as draws nor by their primitives.
TEST_F(ProfilerCounters, OtherDrawsCountNowhere)
{
    GLint const firsts[] = {0, 3};
    GLsizei const counts[] = {3, 3};
    void const* const indices[] = {m_pixels, m_pixels};
    EXPECT_EQ(Changes{}, Counted([&] {
                  Es2::_glDrawArraysInstancedANGLE(GL_TRIANGLES, 0, 6, 2);
                  Es2::_glDrawElementsInstancedANGLE(GL_TRIANGLES, 6, GL_UNSIGNED_BYTE, m_pixels, 2);
                  Es2::_glMultiDrawArraysEXT(GL_TRIANGLES, firsts, counts, 2);
                  Es2::_glMultiDrawElementsEXT(GL_TRIANGLES, counts, GL_UNSIGNED_BYTE, indices, 2);
                  Es1::_glMultiDrawArraysEXT(GL_TRIANGLES, firsts, counts, 2);
                  Es1::_glMultiDrawElementsEXT(GL_TRIANGLES, counts, GL_UNSIGNED_BYTE, indices, 2);
                  Es1::_glDrawTexiOES(0, 0, 0, 4, 4);
              }));
}

// Rows are padded as the host has it at that moment, and a border stands on both sides.
TEST_F(ProfilerCounters, TheBytesOfAnImage)
{
    auto const es1 = [&](GLint border) {
        return Counted([&] {
            Es1::_glTexImage2D(GL_TEXTURE_2D, 0, GL_RGB, 3, 2, border, GL_RGB, GL_UNSIGNED_BYTE, m_pixels);
        });
    };
    auto const es2 = [&](GLint border) {
        return Counted([&] {
            Es2::_glTexImage2D(GL_TEXTURE_2D, 0, GL_RGB, 3, 2, border, GL_RGB, GL_UNSIGNED_BYTE, m_pixels, 0);
        });
    };
    HostHas(GL_UNPACK_ALIGNMENT, 1);
    EXPECT_EQ((Changes{{kTextureUploads, 1}, {kTextureUploadBytes, 18}}), es1(0));
    EXPECT_EQ((Changes{{kTextureUploads, 1}, {kTextureUploadBytes, 18}}), es2(0));
    HostHas(GL_UNPACK_ALIGNMENT, 4);
    EXPECT_EQ((Changes{{kTextureUploads, 1}, {kTextureUploadBytes, 24}}), es1(0));
    EXPECT_EQ((Changes{{kTextureUploads, 1}, {kTextureUploadBytes, 24}}), es2(0));
    EXPECT_EQ((Changes{{kTextureUploads, 1}, {kTextureUploadBytes, 64}}), es1(1)) << "4 rows of 15, padded";
    EXPECT_EQ((Changes{{kTextureUploads, 1}, {kTextureUploadBytes, 64}}), es2(1));
}

// The alignment is asked of the API whose call it is.
TEST_F(ProfilerCounters, EachApiIsAskedForItsAlignment)
{
    Fake().On("glGetIntegerv", [](Call const& call) {
        if (call.Argument<GLenum>(0) == GL_UNPACK_ALIGNMENT)
            *call.Pointer<GLint>(1) = call.api == "es1" ? 8 : 2;
    });
    EXPECT_EQ((Changes{{kTextureUploads, 1}, {kTextureUploadBytes, 8}}), Counted([&] {
                  Es1::_glTexImage2D(GL_TEXTURE_2D, 0, GL_ALPHA, 1, 1, 0, GL_ALPHA, GL_UNSIGNED_BYTE,
                                     m_pixels);
              }));
    EXPECT_EQ((Changes{{kTextureUploads, 1}, {kTextureUploadBytes, 2}}), Counted([&] {
                  Es2::_glTexImage2D(GL_TEXTURE_2D, 0, GL_ALPHA, 1, 1, 0, GL_ALPHA, GL_UNSIGNED_BYTE,
                                     m_pixels, 0);
              }));
    EXPECT_EQ((Changes{{kTextureModifications, 1}, {kTextureUploadBytes, 8}}), Counted([&] {
                  Es1::_glTexSubImage2D(GL_TEXTURE_2D, 0, 0, 0, 1, 1, GL_ALPHA, GL_UNSIGNED_BYTE, m_pixels);
              }));
    EXPECT_EQ((Changes{{kTextureModifications, 1}, {kTextureUploadBytes, 2}}), Counted([&] {
                  Es2::_glTexSubImage2D(GL_TEXTURE_2D, 0, 0, 0, 1, 1, GL_ALPHA, GL_UNSIGNED_BYTE, m_pixels);
              }));
}

// An image without data counts like any other: the host makes it all the same.
TEST_F(ProfilerCounters, AnImageWithoutDataCountsItsBytes)
{
    HostHas(GL_UNPACK_ALIGNMENT, 4);
    EXPECT_EQ((Changes{{kTextureUploads, 1}, {kTextureUploadBytes, 32}}), Counted([] {
                  Es2::_glTexImage2D(GL_TEXTURE_2D, 0, GL_RGBA, 4, 2, 0, GL_RGBA, GL_UNSIGNED_BYTE, nullptr,
                                     0);
              }));
}

// The bytes of a sub-image are counted as uploaded, those of a compressed one as modified.
TEST_F(ProfilerCounters, TheBytesOfSubImages)
{
    HostHas(GL_UNPACK_ALIGNMENT, 4);
    for (auto const sub : {&Es1::_glTexSubImage2D, &Es2::_glTexSubImage2D})
        EXPECT_EQ((Changes{{kTextureModifications, 1}, {kTextureUploadBytes, 8}}), Counted([&] {
                      sub(GL_TEXTURE_2D, 0, 7, 9, 3, 2, GL_LUMINANCE, GL_UNSIGNED_BYTE, m_pixels);
                  }));
    EXPECT_EQ((Changes{{kTextureModifications, 1}, {kTextureModificationBytes, 40}}), Counted([&] {
                  Es2::_glCompressedTexSubImage2D(GL_TEXTURE_2D, 0, 0, 0, 8, 8, 0x8D64, 40, m_pixels);
              }));
    EXPECT_EQ(Changes{}, Counted([&] {
                  Es1::_glCompressedTexSubImage2D(GL_TEXTURE_2D, 0, 0, 0, 8, 8, 0x8D64, 40, m_pixels);
              }));
}

// Volumes have a depth, to which the border is not applied.
TEST_F(ProfilerCounters, TheBytesOfVolumes)
{
    HostHas(GL_UNPACK_ALIGNMENT, 4);
    EXPECT_EQ((Changes{{kTextureUploads, 1}, {kTextureUploadBytes, 3 * 4 * 8}}), Counted([&] {
                  Es2::_glTexImage3DOES(GL_TEXTURE_3D_OES, 0, GL_ALPHA, 3, 2, 3, 1, GL_ALPHA,
                                        GL_UNSIGNED_BYTE, m_pixels);
              }));
    EXPECT_EQ((Changes{{kTextureModifications, 1}, {kTextureUploadBytes, 2 * 3 * 12}}), Counted([&] {
                  Es2::_glTexSubImage3DOES(GL_TEXTURE_3D_OES, 0, 5, 6, 7, 3, 2, 3, GL_RGB, GL_UNSIGNED_BYTE,
                                           m_pixels);
              }));
    EXPECT_EQ((Changes{{kTextureUploads, 1}, {kTextureUploadBytes, 50}}), Counted([&] {
                  Es2::_glCompressedTexImage3DOES(GL_TEXTURE_3D_OES, 0, 0x8D64, 4, 4, 4, 0, 50, m_pixels);
              }));
    EXPECT_EQ((Changes{{kTextureModifications, 1}, {kTextureModificationBytes, 60}}), Counted([&] {
                  Es2::_glCompressedTexSubImage3DOES(GL_TEXTURE_3D_OES, 0, 0, 0, 0, 4, 4, 4, 0x8D64, 60,
                                                     m_pixels);
              }));
}

// Calls and bytes of a read stand in one counter; rows are not padded, and counter 20 stays 0.
TEST_F(ProfilerCounters, AReadAddsItsBytesToItsCall)
{
    HostHas(GL_PACK_ALIGNMENT, 4);
    for (auto const read : {&Es1::_glReadPixels, &Es2::_glReadPixels})
        EXPECT_EQ((Changes{{kFrameBuffer, 1 + 18}}),
                  Counted([&] { read(0, 0, 3, 2, GL_RGB, GL_UNSIGNED_BYTE, m_pixels); }));
    EXPECT_EQ(0u, Profiler().m_aCounters[20]);
}

// A buffer that is only made, without data, is no upload; the full size counts, to 32 bits.
TEST_F(ProfilerCounters, TheBytesOfBuffers)
{
    for (auto const data : {&Es1::_glBufferData, &Es2::_glBufferData})
    {
        EXPECT_EQ((Changes{{kBufferUploadBytes, 4096}}),
                  Counted([&] { data(GL_ARRAY_BUFFER, 4096, m_pixels, GL_STATIC_DRAW); }));
        EXPECT_EQ(Changes{}, Counted([&] { data(GL_ARRAY_BUFFER, 4096, nullptr, GL_STATIC_DRAW); }));
    }
    for (auto const data : {&Es1::_glBufferSubData, &Es2::_glBufferSubData})
    {
        EXPECT_EQ((Changes{{kBufferModificationBytes, 100}}),
                  Counted([&] { data(GL_ARRAY_BUFFER, 7, 100, m_pixels); }));
        EXPECT_EQ(Changes{}, Counted([&] { data(GL_ARRAY_BUFFER, 7, 100, nullptr); }));
    }
}

// The host tells a shader's type; a shader of another type, and none, count nowhere.
TEST_F(ProfilerCounters, CompilesByTheShadersType)
{
    EXPECT_EQ((Changes{{kVertexShaders, 1}}), Compiles(5, GL_VERTEX_SHADER));
    EXPECT_EQ((Changes{{kFragmentShaders, 1}}), Compiles(6, GL_FRAGMENT_SHADER));
    EXPECT_EQ(Changes{}, Compiles(7, 0));
    EXPECT_EQ(Changes{}, Compiles(7, 0x91B9));
    Fake().Forget();
    EXPECT_EQ(Changes{}, Compiles(0, GL_VERTEX_SHADER));
    EXPECT_EQ(0u, HostCalls("glGetShaderiv"));
}

// A uniform counts once, however many elements it has.
TEST_F(ProfilerCounters, AUniformCountsOnceForEachCall)
{
    GLfloat const values[32] = {};
    EXPECT_EQ((Changes{{kUniforms, 2}}), Counted([&] {
                  Es2::_glUniform4fv(3, 8, values);
                  Es2::_glUniformMatrix4fv(3, 0, GL_FALSE, values);
              }));
}

// Counters go on from frame to frame, and begin again behind their largest value.
TEST_F(ProfilerCounters, CountersAreCumulativeAndWrap)
{
    Profiler().m_aCounters[kScissors] = 0xFFFFFFFF;
    Es2::_glScissor(1, 2, 3, 4);
    Egl::_eglSwapBuffers(nullptr, nullptr);
    Es1::_glScissor(1, 2, 3, 4);
    EXPECT_EQ(1u, Profiler().m_aCounters[kScissors]);
}
