// The GLES2 snapshot as a whole: its order, and its life between capture and writing.
#include "tests/wrappers/es2_snapshot.h"
#include <algorithm>

// A state without objects is the markers, the plain state in its fixed order, and the default array object.
TEST_F(Es2Snapshot, OfAnEmptyStateIsTheFixedSequence)
{
    Lines const expected = {
        "-- 4",
        "glReleaseShaderCompiler()",
        "glBlendColor(red = 0, green = 0, blue = 0, alpha = 0)",
        "glBlendEquationSeparate(modeRGB = GL_FUNC_ADD, modeAlpha = GL_FUNC_ADD)",
        "glBlendFuncSeparate(sfactorRGB = GL_ONE, dfactorRGB = GL_ZERO, sfactorAlpha = GL_ONE, "
        "dfactorAlpha = GL_ZERO)",
        "glClearColor(red = 0, green = 0, blue = 0, alpha = 0)",
        "glClearDepthf(d = 1)",
        "glClearStencil(s = 0)",
        "glColorMask(red = GL_TRUE, green = GL_TRUE, blue = GL_TRUE, alpha = GL_TRUE)",
        "glCullFace(mode = GL_BACK)",
        "glDepthFunc(func = GL_LESS)",
        "glDepthMask(flag = GL_TRUE)",
        "glDepthRangef(n = 0, f = 1)",
        "glDisable(cap = GL_BLEND)",
        "glDisable(cap = GL_CULL_FACE)",
        "glDisable(cap = GL_DEPTH_TEST)",
        "glDisable(cap = GL_DITHER)",
        "glDisable(cap = GL_POLYGON_OFFSET_FILL)",
        "glDisable(cap = GL_SAMPLE_ALPHA_TO_COVERAGE)",
        "glDisable(cap = GL_SAMPLE_COVERAGE)",
        "glDisable(cap = GL_SCISSOR_TEST)",
        "glDisable(cap = GL_STENCIL_TEST)",
        "glFrontFace(mode = GL_CCW)",
        "glHint(target = GL_GENERATE_MIPMAP_HINT, mode = GL_DONT_CARE)",
        "glPixelStorei(pname = GL_PACK_ALIGNMENT, param = 4)",
        "glPixelStorei(pname = GL_UNPACK_ALIGNMENT, param = 4)",
        "glPolygonOffset(factor = 0, units = 0)",
        "glSampleCoverage(value = 1, invert = GL_FALSE)",
        "glStencilFuncSeparate(face = GL_FRONT, func = GL_ALWAYS, ref = 0, mask = 4294967295)",
        "glStencilFuncSeparate(face = GL_BACK, func = GL_ALWAYS, ref = 0, mask = 4294967295)",
        "glStencilMaskSeparate(face = GL_FRONT, mask = 4294967295)",
        "glStencilMaskSeparate(face = GL_BACK, mask = 4294967295)",
        "glStencilOpSeparate(face = GL_FRONT, sfail = GL_KEEP, dpfail = GL_KEEP, dppass = GL_KEEP)",
        "glStencilOpSeparate(face = GL_BACK, sfail = GL_KEEP, dpfail = GL_KEEP, dppass = GL_KEEP)",
        "glActiveTexture(texture = GL_TEXTURE0)",
        "glBindFramebuffer(target = GL_FRAMEBUFFER, framebuffer = 0)",
        "glBindVertexArrayOES(array = 0)",
        "glBindBuffer(target = GL_ARRAY_BUFFER, buffer = 0)",
        "glBindBuffer(target = GL_ELEMENT_ARRAY_BUFFER, buffer = 0)",
        "glBindVertexArrayOES(array = 0)",
        "glBindBuffer(target = GL_ARRAY_BUFFER, buffer = 0)",
        "glBindBuffer(target = GL_ELEMENT_ARRAY_BUFFER, buffer = 0)",
        "-- 4"};
    EXPECT_EQ(expected, Taken());
}

// A snapshot has no form of its own: its records are those of the calls, behind and ahead of an empty one.
TEST_F(Es2Snapshot, BeginsAndEndsWithAnEmptyRecord)
{
    Capture();
    STraceConfig::m_bDoNativeCall = false;
    CTraceRecordManager::saveRenderStatePhase2(false, false);
    STraceConfig::m_bDoNativeCall = true;
    Bytes const written = Written();
    Bytes const marker = Joined(U32(0), U16(4));
    Bytes const first = Joined(marker, Expected(2094, U32(0)));  // glReleaseShaderCompiler
    Bytes const last = Joined(Expected(2004, U32(0), U32(0x8893), U32(0)), marker);  // glBindBuffer
    ASSERT_LT(first.size() + last.size(), written.size());
    EXPECT_EQ(first, Bytes(written.begin(), written.begin() + static_cast<std::ptrdiff_t>(first.size())));
    EXPECT_EQ(last, Bytes(written.end() - static_cast<std::ptrdiff_t>(last.size()), written.end()));
}

// Boxes of zeros are not written; with one value they are.
TEST_F(Es2Snapshot, LeavesOutBoxesOfZeros)
{
    EXPECT_EQ(Lines(), Only(Taken(), {"glScissor", "glViewport"}));
    HostAnswers(GL_VIEWPORT, 5);  // the first value; the others stay 0
    EXPECT_EQ(Lines({"glViewport(x = 5, y = 0, width = 0, height = 0)"}),
              Only(Taken(), {"glScissor", "glViewport"}));
    HostAnswers(GL_VIEWPORT, 0);
    HostAnswers(GL_SCISSOR_BOX, -1);
    EXPECT_EQ(Lines({"glScissor(x = -1, y = 0, width = 0, height = 0)"}),
              Only(Taken(), {"glScissor", "glViewport"}));
}

// Whether the shader compiler is released follows its field.
TEST_F(Es2Snapshot, ReleasesTheShaderCompilerWhereItWas)
{
    State().m_bShaderCompilerReleased = false;
    EXPECT_EQ(Lines(), Only(Taken(), {"glReleaseShaderCompiler"}));
}

// All families in one: shaders, programs, deleted shaders, plain state, textures and their bindings,
// renderbuffers, framebuffers and the bound one, array objects, buffers.
TEST_F(Es2Snapshot, OfAnApplicationHasItsFamiliesInOrder)
{
    GLuint name = 41;
    Es2::_glGenVertexArraysOES(1, &name);
    Es2::_glBindVertexArrayOES(41);
    Buffer(GL_ARRAY_BUFFER, 11, {1, 2});
    Es2::_glVertexAttribPointer(0, 2, GL_BYTE, GL_FALSE, 2, nullptr);
    name = 31;
    Es2::_glGenFramebuffers(1, &name);
    Es2::_glBindFramebuffer(GL_FRAMEBUFFER, 31);
    name = 21;
    Es2::_glGenRenderbuffers(1, &name);
    Es2::_glBindRenderbuffer(GL_RENDERBUFFER, 21);
    Es2::_glFramebufferRenderbuffer(GL_FRAMEBUFFER, GL_DEPTH_ATTACHMENT, GL_RENDERBUFFER, 21);
    BindTexture(9);
    Image(GL_TEXTURE_2D, 0, 7);
    Shader(GL_VERTEX_SHADER, 3, "v");
    Shader(GL_FRAGMENT_SHADER, 4, "f");
    Program(5, 3, 4);
    Es2::_glLinkProgram(5);
    Es2::_glDeleteShader(4);
    HostAnswers(GL_MAX_TEXTURE_IMAGE_UNITS, 1);
    Lines calls = Taken();
    // The plain state stands between these two.
    auto const plain = std::find(calls.begin(), calls.end(), "glReleaseShaderCompiler()");
    auto const textures = std::find(plain, calls.end(), "glGenTextures(n = 1, textures = {9})");
    EXPECT_EQ(33, textures - plain);
    calls.erase(plain, textures);
    Lines const expected = {
        "-- 4", "glCreateShader(type = GL_VERTEX_SHADER) = 3",
        "glShaderSource(shader = 3, count = 1, string = {\"v\"}, length = NULL)",
        "glCreateShader(type = GL_FRAGMENT_SHADER) = 4",
        "glShaderSource(shader = 4, count = 1, string = {\"f\"}, length = NULL)", "glCreateProgram() = 5",
        "glAttachShader(program = 5, shader = 4)", "glAttachShader(program = 5, shader = 3)",
        "glLinkProgram(program = 5)", "glUseProgram(program = 5)", "glDeleteShader(shader = 4)",
        // The plain state is taken out here.
        "glGenTextures(n = 1, textures = {9})", "glBindTexture(target = GL_TEXTURE_2D, texture = 9)",
        "glTexParameteri(target = GL_TEXTURE_2D, pname = GL_TEXTURE_MIN_FILTER, param = "
        "GL_NEAREST_MIPMAP_LINEAR)",
        "glTexParameteri(target = GL_TEXTURE_2D, pname = GL_TEXTURE_MAG_FILTER, param = GL_LINEAR)",
        "glTexParameteri(target = GL_TEXTURE_2D, pname = GL_TEXTURE_WRAP_S, param = GL_REPEAT)",
        "glTexParameteri(target = GL_TEXTURE_2D, pname = GL_TEXTURE_WRAP_T, param = GL_REPEAT)",
        "glTexImage2D(target = GL_TEXTURE_2D, level = 0, internalformat = GL_ALPHA, width = 1, height = 1, "
        "border = 0, format = GL_ALPHA, type = GL_UNSIGNED_BYTE, pixels = [1 bytes], alignment = 0)",
        "glActiveTexture(texture = GL_TEXTURE0)", "glBindTexture(target = GL_TEXTURE_2D, texture = 9)",
        "glActiveTexture(texture = GL_TEXTURE0)", "glGenRenderbuffers(n = 1, renderbuffers = {21})",
        "glBindRenderbuffer(target = GL_RENDERBUFFER, renderbuffer = 21)",
        "glGenFramebuffers(n = 1, framebuffers = {31})",
        "glBindFramebuffer(target = GL_FRAMEBUFFER, framebuffer = 31)",
        "glFramebufferRenderbuffer(target = GL_FRAMEBUFFER, attachment = GL_DEPTH_ATTACHMENT, "
        "renderbuffertarget = GL_RENDERBUFFER, renderbuffer = 21)",
        "glBindFramebuffer(target = GL_FRAMEBUFFER, framebuffer = 31)",
        "glGenVertexArraysOES(n = 1, arrays = {41})", "glBindVertexArrayOES(array = 41)",
        "glBindBuffer(target = GL_ARRAY_BUFFER, buffer = 11)",
        "glVertexAttribPointer(index = 0, size = 2, type = GL_BYTE, normalized = GL_FALSE, stride = 2, "
        "pointer = NULL)",
        "glDisableVertexAttribArray(index = 0)", "glBindBuffer(target = GL_ARRAY_BUFFER, buffer = 11)",
        "glBindBuffer(target = GL_ELEMENT_ARRAY_BUFFER, buffer = 0)", "glBindVertexArrayOES(array = 0)",
        "glBindBuffer(target = GL_ARRAY_BUFFER, buffer = 0)",
        "glBindBuffer(target = GL_ELEMENT_ARRAY_BUFFER, buffer = 0)", "glBindVertexArrayOES(array = 41)",
        "glBindBuffer(target = GL_ARRAY_BUFFER, buffer = 11)",
        "glBufferData(target = GL_ARRAY_BUFFER, size = 2, data = {1, 2}, usage = GL_STATIC_DRAW)",
        "glBindBuffer(target = GL_ARRAY_BUFFER, buffer = 11)",
        "glBindBuffer(target = GL_ELEMENT_ARRAY_BUFFER, buffer = 0)", "-- 4"};
    EXPECT_EQ(expected, calls);
}

// The host sees nothing of the calls; it is told once what the application had bound, and on the host alone.
TEST_F(Es2Snapshot, PutsTheHostsBindingsBack)
{
    Es2::_glBindFramebuffer(GL_FRAMEBUFFER, 31);
    Es2::_glBindRenderbuffer(GL_RENDERBUFFER, 21);
    Capture();
    Fake().Forget();
    Lines const calls = Write(false);
    std::vector<Call> const host = Fake().Calls();
    ASSERT_EQ(2u, host.size());
    EXPECT_EQ("glBindFramebuffer", host[0].name);
    EXPECT_EQ(0x8D40u, host[0].Argument<GLenum>(0));
    EXPECT_EQ(31u, host[0].Argument<GLuint>(1));
    EXPECT_EQ("glBindRenderbuffer", host[1].name);
    EXPECT_EQ(0x8D41u, host[1].Argument<GLenum>(0));
    EXPECT_EQ(21u, host[1].Argument<GLuint>(1));
    // On purpose: the renderbuffer's binding is no call of the trace.
    EXPECT_EQ(Lines(), Only(calls, {"glBindRenderbuffer"}));
}

// Asked not to, it leaves the host alone altogether.
TEST_F(Es2Snapshot, LeavesTheHostAloneWhenAskedTo)
{
    Capture();
    Fake().Forget();
    STraceConfig::m_bDoNativeCall = false;
    CTraceRecordManager::m_Es2FileStateLastGet.writeAsCalls(false, false);
    STraceConfig::m_bDoNativeCall = true;
    EXPECT_TRUE(Fake().Calls().empty());
}

// What is uploaded between capture and writing does not reach the snapshot, nor does it free what it shares.
TEST_F(Es2Snapshot, KeepsItsContentsFromLaterUploads)
{
    GLubyte const old[] = {1, 2, 3, 4};
    GLubyte const later[] = {9, 9, 9, 9};
    HostAnswers(GL_ARRAY_BUFFER_BINDING, 11);
    BindTexture(9);
    Es2::_glBufferData(GL_ARRAY_BUFFER, 4, old, GL_STATIC_DRAW);
    Es2::_glTexImage2D(GL_TEXTURE_2D, 0, GL_RGBA, 1, 1, 0, GL_RGBA, GL_UNSIGNED_BYTE, old, 0);
    Capture();
    Es2::_glBufferSubData(GL_ARRAY_BUFFER, 0, 4, later);
    Es2::_glBufferData(GL_ARRAY_BUFFER, 4, later, GL_STATIC_DRAW);
    Es2::_glTexSubImage2D(GL_TEXTURE_2D, 0, 0, 0, 1, 1, GL_RGBA, GL_UNSIGNED_BYTE, later);
    Es2::_glTexImage2D(GL_TEXTURE_2D, 0, GL_RGBA, 1, 1, 0, GL_RGBA, GL_UNSIGNED_BYTE, later, 0);
    Written();
    STraceConfig::m_bDoNativeCall = false;
    Printed([] { CTraceRecordManager::saveRenderStatePhase2(false, false); });
    STraceConfig::m_bDoNativeCall = true;
    Bytes const written = Written();
    std::string const bytes(written.begin(), written.end());
    EXPECT_NE(std::string::npos, bytes.find("\1\2\3\4"));
    EXPECT_EQ(std::string::npos, bytes.find("\x9\x9\x9\x9"));
}

// The next capture has what was uploaded behind the last one, whoever still shared the bytes then.
TEST_F(Es2Snapshot, ALaterCaptureHasTheLaterContents)
{
    auto const expect = [this](std::string const& data) {
        EXPECT_EQ(Lines({"glBufferData(target = GL_ARRAY_BUFFER, size = 2, data = " + data +
                         ", usage = GL_STATIC_DRAW)"}),
                  Only(Write(false), {"glBufferData"}));
    };
    GLubyte const later[] = {8, 9};
    Buffer(GL_ARRAY_BUFFER, 11, {1, 2});
    Capture();
    Es2::_glBufferSubData(GL_ARRAY_BUFFER, 1, 1, later);
    expect("{1, 2}");
    Capture();
    expect("{1, 8}");
    Es2::_glBufferData(GL_ARRAY_BUFFER, 2, later, GL_STATIC_DRAW);
    Capture();
    expect("{8, 9}");
}

// The live state may go with its bytes still shared: the frozen one keeps them.
TEST_F(Es2Snapshot, OutlivesTheLiveState)
{
    Buffer(GL_ARRAY_BUFFER, 11, {1, 2});
    BindTexture(9);
    Image(GL_TEXTURE_2D, 0, 7);
    Capture();
    Lines const before = Write(false);
    CTraceRecordManager::DeleteFileStructures();
    EXPECT_EQ(before, Write(false));
    CTraceRecordManager::CreateFileStructures();
}

// Objects that come, change or go between capture and writing do so in the live state alone; with bulk data
// the bytes are shared, all else is copied.
TEST_F(Es2Snapshot, IsOfTheMomentOfTheCapture)
{
    Shader(GL_VERTEX_SHADER, 3, "old");
    UseProgram(5);
    Locate(5, "u", 0);
    Es2::_glUniform1f(0, 0.5f);
    Es2::_glBindFramebuffer(GL_FRAMEBUFFER, 31);
    Es2::_glFramebufferRenderbuffer(GL_FRAMEBUFFER, GL_COLOR_ATTACHMENT0, GL_RENDERBUFFER, 21);
    Es2::_glVertexAttribPointer(0, 2, GL_BYTE, GL_FALSE, 2, nullptr);
    Buffer(GL_ARRAY_BUFFER, 11, {1, 2});
    Capture();
    EXPECT_EQ(State().m_sBufferDatas[11].bufferData,
              CTraceRecordManager::m_Es2FileStateLastGet.m_sBufferDatas[11].bufferData);
    Lines const before = Write(false);
    char const* const source = "new";
    Es2::_glShaderSource(3, 1, &source, nullptr);
    Shader(GL_VERTEX_SHADER, 4, "more");
    Es2::_glUniform1f(0, 0.75f);
    Es2::_glFramebufferRenderbuffer(GL_FRAMEBUFFER, GL_COLOR_ATTACHMENT0, GL_RENDERBUFFER, 22);
    Es2::_glVertexAttribPointer(0, 4, GL_BYTE, GL_FALSE, 4, nullptr);
    Buffer(GL_ARRAY_BUFFER, 12, {3, 4});
    Es2::_glDeleteProgram(5);
    EXPECT_EQ(before, Write(false));
}

// The calls of a snapshot are not followed: neither the live state nor the frozen one is another behind it.
TEST_F(Es2Snapshot, DoesNotDisturbTheShadow)
{
    Buffer(GL_ARRAY_BUFFER, 11, {1, 2});
    UseProgram(5);
    BindTexture(9);
    Image(GL_TEXTURE_2D, 0, 7);
    Capture();
    Lines const first = Write(false);
    EXPECT_EQ(first, Write(false));
    EXPECT_EQ(first, Taken());
    EXPECT_EQ(1, State().m_sBufferDatas.Count());
    EXPECT_EQ(2, State().m_sProgramMap.Count());  // 0 and 5
    EXPECT_EQ(5u, State().m_sUsedProgram.name);
}

// A second snapshot in one process replaces the first: what has gone since is in it no more, and what was
// used is what the live state says.
TEST_F(Es2Snapshot, ASecondOneReplacesTheFirst)
{
    GLuint name = 31;
    Es2::_glGenFramebuffers(1, &name);
    BindTexture(8);
    Image(GL_TEXTURE_2D, 0, 7);
    State().m_sUsedTextures[8] = 8;
    EXPECT_EQ(2u, Only(Taken(true), {"glGenFramebuffers", "glGenTextures"}).size());
    Es2::_glDeleteFramebuffers(1, &name);
    BindTexture(9);
    Image(GL_TEXTURE_2D, 0, 7);
    State().m_sUsedTextures.removeElement(8);
    State().m_sUsedTextures[9] = 9;
    EXPECT_EQ(Lines({"glGenTextures(n = 1, textures = {9})"}),
              Only(Taken(true), {"glGenFramebuffers", "glGenTextures"}));
}

// What the recorded frames used is taken over from the live state in place of what was known, not joined to
// it.
TEST_F(Es2Snapshot, TakesOverWhatWasUsed)
{
    CEs2ContextState frozen;
    frozen.m_sUsedTextures[1] = 1;
    frozen.m_sUsedBuffers[2] = 2;
    State().m_sUsedTextures[3] = 3;
    State().m_sUsedBuffers[4] = 4;
    frozen.CombineTrack(&State());
    EXPECT_EQ(nullptr, frozen.m_sUsedTextures.Find(1));
    EXPECT_NE(nullptr, frozen.m_sUsedTextures.Find(3));
    EXPECT_EQ(nullptr, frozen.m_sUsedBuffers.Find(2));
    EXPECT_NE(nullptr, frozen.m_sUsedBuffers.Find(4));
    frozen.CombineTrack(&frozen);
    EXPECT_EQ(1, frozen.m_sUsedTextures.Count());
}
