// What a GLES2 snapshot asks the host for, in which order, and where each answer goes.
#include "tests/wrappers/es2_snapshot.h"
#include <algorithm>
#include <cstdio>
#include <map>

class Es2Capture : public Es2Snapshot
{
protected:
    // The host's calls as lines: the name, and the arguments that are no addresses of ours.
    static std::string LineOf(Call const& call)
    {
        std::string line = call.name;
        size_t const values = call.name.rfind("glGetRenderbuffer", 0) == 0 ||
                                      call.name.rfind("glGetBufferParameter", 0) == 0 ||
                                      call.name == "glGetShaderiv"
                                  ? 2
                              : call.name.rfind("glGet", 0) == 0 ? 1
                                                                 : call.words.size();
        for (size_t i = 0; i < values && i < call.words.size(); ++i)
        {
            char word[24];
            std::snprintf(word, sizeof word, " %04X", static_cast<unsigned int>(call.words[i]));
            line += word;
        }
        return line;
    }
    Lines Asked()
    {
        Fake().Forget();
        Capture();
        Lines lines;
        for (Call const& call : Fake().Calls())
            lines.push_back(LineOf(call));
        return lines;
    }
    // The lines between the first `from` and the first `to` behind it.
    static Lines Between(Lines const& lines, std::string const& from, std::string const& to)
    {
        auto const first = std::find(lines.begin(), lines.end(), from);
        auto const last = std::find(first, lines.end(), to);
        EXPECT_NE(lines.end(), last) << from << " to " << to;
        return first == last ? Lines() : Lines(first + 1, last);
    }
};

// The questions have one order; between those for the capabilities and those for the shaders the bindings are
// put back that the questions for renderbuffers disturb.
TEST_F(Es2Capture, AsksInOneOrder)
{
    Lines const expected = {
        // Texture units, of which the host has two.
        "glGetIntegerv 84E0", "glGetIntegerv 8872",                          //
        "glActiveTexture 84C0", "glGetIntegerv 8069", "glGetIntegerv 8514",  //
        "glActiveTexture 84C1", "glGetIntegerv 8069", "glGetIntegerv 8514",  //
        "glActiveTexture 84C0",
        // Blending, clearing, masks, culling and depth.
        "glGetFloatv 8005", "glGetIntegerv 883D", "glGetIntegerv 8009", "glGetIntegerv 80C9",
        "glGetIntegerv 80C8", "glGetIntegerv 80CB", "glGetIntegerv 80CA", "glGetFloatv 0C22",
        "glGetFloatv 0B73", "glGetIntegerv 0B91", "glGetBooleanv 0C23", "glGetIntegerv 0B45",
        "glGetIntegerv 0B74", "glGetBooleanv 0B72", "glGetFloatv 0B70",
        // Capabilities.
        "glIsEnabled 0BE2", "glIsEnabled 0B44", "glIsEnabled 0B71", "glIsEnabled 0BD0", "glIsEnabled 8037",
        "glIsEnabled 809E", "glIsEnabled 80A0", "glIsEnabled 0C11", "glIsEnabled 0B90",  //
        "glGetError",
        // Renderbuffers would be here.
        "glBindFramebuffer 8D40 0000", "glBindRenderbuffer 8D41 0000",
        // Front face, hint, alignments, offset, coverage, scissor box.
        "glGetIntegerv 0B46", "glGetIntegerv 8192", "glGetIntegerv 0D05", "glGetIntegerv 0CF5",
        "glGetFloatv 8038", "glGetFloatv 2A00", "glGetFloatv 80AA", "glGetBooleanv 80AB",
        "glGetIntegerv 0C10",
        // Shaders would be here. Stencil, front face first, and the viewport.
        "glGetIntegerv 0B92", "glGetIntegerv 8800", "glGetIntegerv 0B97", "glGetIntegerv 8CA3",
        "glGetIntegerv 0B93", "glGetIntegerv 8CA4", "glGetIntegerv 0B98", "glGetIntegerv 8CA5",
        "glGetIntegerv 0B94", "glGetIntegerv 8801", "glGetIntegerv 0B95", "glGetIntegerv 8802",
        "glGetIntegerv 0B96", "glGetIntegerv 8803", "glGetIntegerv 0BA2",
        // Mapped buffers would be here.
        "glGetError"};
    EXPECT_EQ(expected, Asked());
}

// Every answer of the host is written by the call that sets it.
TEST_F(Es2Capture, EachAnswerHasItsPlace)
{
    std::map<GLenum, std::vector<GLint>> const integers = {
        {0x84E0, {0x84C1}},          // GL_ACTIVE_TEXTURE: GL_TEXTURE1
        {0x8872, {2}},               // GL_MAX_TEXTURE_IMAGE_UNITS
        {0x883D, {0x800B}},          // GL_BLEND_EQUATION_ALPHA: GL_FUNC_REVERSE_SUBTRACT
        {0x8009, {0x800A}},          // GL_BLEND_EQUATION_RGB: GL_FUNC_SUBTRACT
        {0x80C9, {0x0302}},          // GL_BLEND_SRC_RGB: GL_SRC_ALPHA
        {0x80C8, {0x0303}},          // GL_BLEND_DST_RGB: GL_ONE_MINUS_SRC_ALPHA
        {0x80CB, {0x0304}},          // GL_BLEND_SRC_ALPHA: GL_DST_ALPHA
        {0x80CA, {0x0305}},          // GL_BLEND_DST_ALPHA: GL_ONE_MINUS_DST_ALPHA
        {0x0B91, {7}},               // GL_STENCIL_CLEAR_VALUE
        {0x0B45, {0x0404}},          // GL_CULL_FACE_MODE: GL_FRONT
        {0x0B74, {0x0206}},          // GL_DEPTH_FUNC: GL_GEQUAL
        {0x0B46, {0x0900}},          // GL_FRONT_FACE: GL_CW
        {0x8192, {0x1102}},          // GL_GENERATE_MIPMAP_HINT: GL_NICEST
        {0x0D05, {1}},               // GL_PACK_ALIGNMENT
        {0x0CF5, {2}},               // GL_UNPACK_ALIGNMENT
        {0x0C10, {11, 12, 13, 14}},  // GL_SCISSOR_BOX
        {0x0B92, {0x0201}},          // GL_STENCIL_FUNC: GL_LESS
        {0x8800, {0x0202}},          // GL_STENCIL_BACK_FUNC: GL_EQUAL
        {0x0B97, {21}},              // GL_STENCIL_REF
        {0x8CA3, {22}},              // GL_STENCIL_BACK_REF
        {0x0B93, {23}},              // GL_STENCIL_VALUE_MASK
        {0x8CA4, {24}},              // GL_STENCIL_BACK_VALUE_MASK
        {0x0B98, {25}},              // GL_STENCIL_WRITEMASK
        {0x8CA5, {26}},              // GL_STENCIL_BACK_WRITEMASK
        {0x0B94, {0x1E01}},          // GL_STENCIL_FAIL: GL_REPLACE
        {0x8801, {0x1E02}},          // GL_STENCIL_BACK_FAIL: GL_INCR
        {0x0B95, {0x1E03}},          // GL_STENCIL_PASS_DEPTH_FAIL: GL_DECR
        {0x8802, {0x8507}},          // GL_STENCIL_BACK_PASS_DEPTH_FAIL: GL_INCR_WRAP
        {0x0B96, {0x150A}},          // GL_STENCIL_PASS_DEPTH_PASS: GL_INVERT
        {0x8803, {0x8508}},          // GL_STENCIL_BACK_PASS_DEPTH_PASS: GL_DECR_WRAP
        {0x0BA2, {31, 32, 33, 34}},  // GL_VIEWPORT
    };
    Fake().On("glGetIntegerv", [integers](Call const& call) {
        auto const found = integers.find(call.Argument<GLenum>(0));
        if (found != integers.end())
            std::copy(found->second.begin(), found->second.end(), call.Pointer<GLint>(1));
    });
    std::map<GLenum, std::vector<GLfloat>> const floats = {
        {0x8005, {0.25f, 0.5f, 0.75f, 1.0f}},  // GL_BLEND_COLOR
        {0x0C22, {1.5f, 2.5f, 3.5f, 4.5f}},    // GL_COLOR_CLEAR_VALUE
        {0x0B73, {0.125f}},                    // GL_DEPTH_CLEAR_VALUE
        {0x0B70, {0.375f, 0.625f}},            // GL_DEPTH_RANGE
        {0x8038, {-1.0f}},                     // GL_POLYGON_OFFSET_FACTOR
        {0x2A00, {-2.0f}},                     // GL_POLYGON_OFFSET_UNITS
        {0x80AA, {0.875f}},                    // GL_SAMPLE_COVERAGE_VALUE
    };
    Fake().On("glGetFloatv", [floats](Call const& call) {
        auto const found = floats.find(call.Argument<GLenum>(0));
        if (found != floats.end())
            std::copy(found->second.begin(), found->second.end(), call.Pointer<GLfloat>(1));
    });
    Fake().On("glGetBooleanv", [](Call const& call) {
        auto* const value = call.Pointer<GLboolean>(1);
        if (call.Argument<GLenum>(0) == 0x0C23)  // GL_COLOR_WRITEMASK
            value[1] = GL_FALSE;
        else
            *value = call.Argument<GLenum>(0) == 0x80AB;  // GL_SAMPLE_COVERAGE_INVERT, GL_DEPTH_WRITEMASK
    });
    Lines const expected = {
        "glBlendColor(red = 0.25, green = 0.5, blue = 0.75, alpha = 1)",
        "glBlendEquationSeparate(modeRGB = GL_FUNC_SUBTRACT, modeAlpha = GL_FUNC_REVERSE_SUBTRACT)",
        "glBlendFuncSeparate(sfactorRGB = GL_SRC_ALPHA, dfactorRGB = GL_ONE_MINUS_SRC_ALPHA, "
        "sfactorAlpha = GL_DST_ALPHA, dfactorAlpha = GL_ONE_MINUS_DST_ALPHA)",
        "glClearColor(red = 1.5, green = 2.5, blue = 3.5, alpha = 4.5)",
        "glClearDepthf(d = 0.125)",
        "glClearStencil(s = 7)",
        "glColorMask(red = GL_TRUE, green = GL_FALSE, blue = GL_TRUE, alpha = GL_TRUE)",
        "glCullFace(mode = GL_FRONT)",
        "glDepthFunc(func = GL_GEQUAL)",
        "glDepthMask(flag = GL_FALSE)",
        "glDepthRangef(n = 0.375, f = 0.625)",
        "glFrontFace(mode = GL_CW)",
        "glHint(target = GL_GENERATE_MIPMAP_HINT, mode = GL_NICEST)",
        "glPixelStorei(pname = GL_PACK_ALIGNMENT, param = 1)",
        "glPixelStorei(pname = GL_UNPACK_ALIGNMENT, param = 2)",
        "glPolygonOffset(factor = -1, units = -2)",
        "glSampleCoverage(value = 0.875, invert = GL_TRUE)",
        "glScissor(x = 11, y = 12, width = 13, height = 14)",
        "glViewport(x = 31, y = 32, width = 33, height = 34)",
        "glStencilFuncSeparate(face = GL_FRONT, func = GL_LESS, ref = 21, mask = 23)",
        "glStencilFuncSeparate(face = GL_BACK, func = GL_EQUAL, ref = 22, mask = 24)",
        "glStencilMaskSeparate(face = GL_FRONT, mask = 25)",
        "glStencilMaskSeparate(face = GL_BACK, mask = 26)",
        "glStencilOpSeparate(face = GL_FRONT, sfail = GL_REPLACE, dpfail = GL_DECR, dppass = GL_INVERT)",
        "glStencilOpSeparate(face = GL_BACK, sfail = GL_INCR, dpfail = GL_INCR_WRAP, dppass = GL_DECR_WRAP)",
        "glActiveTexture(texture = GL_TEXTURE1)"};
    Lines const calls = Taken();
    EXPECT_EQ(expected, Only(calls, NamesOf(expected)));
}

// Each capability is asked for by its own name: the one that is on is the one that is enabled.
TEST_F(Es2Capture, EachCapabilityIsItsOwn)
{
    Lines const names = {"GL_BLEND",           "GL_CULL_FACE",           "GL_DEPTH_TEST",
                         "GL_DITHER",          "GL_POLYGON_OFFSET_FILL", "GL_SAMPLE_ALPHA_TO_COVERAGE",
                         "GL_SAMPLE_COVERAGE", "GL_SCISSOR_TEST",        "GL_STENCIL_TEST"};
    GLenum const values[] = {0x0BE2, 0x0B44, 0x0B71, 0x0BD0, 0x8037, 0x809E, 0x80A0, 0x0C11, 0x0B90};
    for (size_t on = 0; on < names.size(); ++on)
    {
        GLenum const name = values[on];
        Fake().On("glIsEnabled", [name](Call const& call) {
            Fake().Result("glIsEnabled", call.Argument<GLenum>(0) == name ? 1 : 0);
        });
        Lines expected;
        for (size_t i = 0; i < names.size(); ++i)
            expected.push_back((i == on ? "glEnable(cap = " : "glDisable(cap = ") + names[i] + ")");
        EXPECT_EQ(expected, Only(Taken(), {"glEnable", "glDisable"}));
    }
}

// Of the renderbuffers only those with a name that have been bound are asked, each bound for it. What the
// application had bound is bound again behind them, there or not.
TEST_F(Es2Capture, AsksRenderbuffersForTheirStorage)
{
    GLuint names[] = {21, 22, 23};
    Es2::_glGenRenderbuffers(3, names);
    Es2::_glBindRenderbuffer(GL_RENDERBUFFER, 23);
    Es2::_glBindRenderbuffer(GL_RENDERBUFFER, 21);
    Es2::_glBindRenderbuffer(GL_RENDERBUFFER, 29);  // a name that was not generated is not known
    Es2::_glBindFramebuffer(GL_FRAMEBUFFER, 31);
    Fake().On("glGetRenderbufferParameteriv", [](Call const& call) {
        GLenum const name = call.Argument<GLenum>(1);
        *call.Pointer<GLint>(2) = name == 0x8D42 ? 64 : name == 0x8D43 ? 32 : 0x81A5;
    });
    Lines const expected = {"glBindRenderbuffer 8D41 0015",
                            "glGetRenderbufferParameteriv 8D41 8D42",
                            "glGetRenderbufferParameteriv 8D41 8D43",
                            "glGetRenderbufferParameteriv 8D41 8D44",
                            "glBindRenderbuffer 8D41 0017",
                            "glGetRenderbufferParameteriv 8D41 8D42",
                            "glGetRenderbufferParameteriv 8D41 8D43",
                            "glGetRenderbufferParameteriv 8D41 8D44",
                            "glBindFramebuffer 8D40 001F",
                            "glBindRenderbuffer 8D41 001D"};
    EXPECT_EQ(expected, Between(Asked(), "glGetError", "glGetIntegerv 0B46"));
    RBODefinition const& renderbuffer = State().m_sRenderbuffers[21];
    EXPECT_EQ(64, renderbuffer.width);
    EXPECT_EQ(32, renderbuffer.height);
    EXPECT_EQ(0x81A5u, renderbuffer.internalformat);
}

// A shader that the host still knows is asked whether it has been compiled; 1 alone says so.
TEST_F(Es2Capture, AsksShadersWhetherTheyAreCompiled)
{
    for (GLuint name : {3u, 4u, 5u})
        Shader(GL_VERTEX_SHADER, name, "s");
    Fake().On("glIsShader",
              [](Call const& call) { Fake().Result("glIsShader", call.Argument<GLuint>(0) == 4 ? 0u : 1u); });
    Fake().On("glGetShaderiv",
              [](Call const& call) { *call.Pointer<GLint>(2) = call.Argument<GLuint>(0) == 3 ? 1 : 0; });
    Lines const expected = {"glIsShader 0003", "glGetShaderiv 0003 8B81", "glIsShader 0004",
                            "glIsShader 0005", "glGetShaderiv 0005 8B81"};
    EXPECT_EQ(expected, Between(Asked(), "glGetIntegerv 0C10", "glGetIntegerv 0B92"));
    EXPECT_TRUE(State().m_sShaderMap[3].bCompiled);
    EXPECT_FALSE(State().m_sShaderMap[4].bCompiled);
    EXPECT_FALSE(State().m_sShaderMap[5].bCompiled);
}

// Every buffer is bound to its target and asked whether it is mapped. On purpose: nothing puts the bindings
// back.
TEST_F(Es2Capture, AsksBuffersWhetherTheyAreMapped)
{
    Buffer(GL_ARRAY_BUFFER, 11, {1});
    Buffer(GL_ELEMENT_ARRAY_BUFFER, 12, {2});
    Fake().On("glGetBufferParameteriv", [](Call const& call) {
        *call.Pointer<GLint>(2) = call.Argument<GLenum>(0) == GL_ARRAY_BUFFER ? 1 : 0;
    });
    Lines const asked = Asked();
    Lines const expected = {
        "glGetIntegerv 0BA2",     "glBindBuffer 8892 000B",           "glGetBufferParameteriv 8892 88BC",
        "glBindBuffer 8893 000C", "glGetBufferParameteriv 8893 88BC", "glGetError"};
    EXPECT_EQ(expected, Lines(asked.end() - 6, asked.end()));
    EXPECT_TRUE(State().m_sBufferDatas[11].isMappedOES);
    EXPECT_FALSE(State().m_sBufferDatas[12].isMappedOES);
    // Unmapped again, the record says so at the next capture.
    Fake().On("glGetBufferParameteriv", [](Call const& call) { *call.Pointer<GLint>(2) = 0; });
    Capture();
    EXPECT_FALSE(State().m_sBufferDatas[11].isMappedOES);
}

// A host that maps no buffers is not asked, and keeps its bindings.
TEST_F(Es2Capture, WithoutMappingNoBufferIsAsked)
{
    Buffer(GL_ARRAY_BUFFER, 11, {1});
    HostLacks("glMapBufferOES");
    Lines const asked = Asked();
    EXPECT_EQ(Lines({"glGetIntegerv 0BA2", "glGetError"}), Lines(asked.end() - 2, asked.end()));
}

// An error that the questions raise is told of at the two places where it is looked for, and the capture goes
// on.
TEST_F(Es2Capture, ErrorsAreToldOfAndPassed)
{
    Fake().Result("glGetError", 0x0502u);
    HostAnswers(GL_VIEWPORT, 5);
    EXPECT_EQ("Problem with ES2?\n\nProblem with ES2?\n\n", Printed([this] { Capture(); }));
    EXPECT_EQ(5, State().m_iaViewport[0]);
    Fake().Result("glGetError", 0u);
    EXPECT_EQ("", Printed([this] { Capture(); }));
}

// A host with more units is served for the first 32, at the capture and in the calls.
TEST_F(Es2Capture, MoreThan32UnitsAreServedForTheFirst32)
{
    HostAnswers(GL_MAX_TEXTURE_IMAGE_UNITS, 33);
    BindTexture(9);
    Fake().Forget();
    Lines const calls = Only(Taken(), {"glActiveTexture"});
    EXPECT_EQ(33u, HostCalls("glActiveTexture"));  // and the active one again
    ASSERT_EQ(33u, calls.size());
    EXPECT_EQ("glActiveTexture(texture = GL_TEXTURE31)", calls[31]);
    EXPECT_EQ("glActiveTexture(texture = GL_TEXTURE0)", calls[32]);
}

// The client version is the low half of what EGL says of the current context, also where that is another.
TEST_F(Es2Capture, TheClientVersionIsThatOfTheContext)
{
    CTraceRecordManager::m_EglFileState->m_iClientVersion = 0x70003;
    Capture();
    EXPECT_EQ(3, State().m_usClientVersion);
    EXPECT_EQ(3, CTraceRecordManager::m_Es2FileStateLastGet.m_usClientVersion);
}
