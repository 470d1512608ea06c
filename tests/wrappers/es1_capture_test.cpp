// What a GLES1 snapshot asks the host for, in which order, and what is put back.
#include "tests/wrappers/es1_capture.h"

// The questions have one order. What they change on the host is put back at once.
TEST_F(Es1Capture, AsksInOneOrder)
{
    HostAnswers(Es1Enum::kMaxTextureUnits, 1);
    Lines const expected = {
        // Units, alpha test, array buffer.
        "glGetIntegerv 84E2", "glGetIntegerv 84E0", "glGetIntegerv 0BC1", "glGetFloatv 0BC2",
        "glGetIntegerv 8894",
        // The textures of the units, of which the host has one here.
        "glActiveTexture 84C0", "glGetIntegerv 8069", "glActiveTexture 84C0",
        // Blending, clearing, the client unit, clip planes.
        "glGetIntegerv 0BE1", "glGetIntegerv 0BE0", "glGetFloatv 0C22", "glGetFloatv 0B73",
        "glGetIntegerv 0B91", "glGetIntegerv 84E1", "glGetIntegerv 0D32", "glGetClipPlanef 3000",
        // Colour, culling and depth.
        "glGetFloatv 0B00", "glGetBooleanv 0C23", "glGetIntegerv 0B45", "glGetIntegerv 0B74",
        "glGetBooleanv 0B72", "glGetFloatv 0B70",
        // Capabilities.
        "glIsEnabled 0BC0", "glIsEnabled 0BE2", "glIsEnabled 3000", "glIsEnabled 3001", "glIsEnabled 3002",
        "glIsEnabled 3003", "glIsEnabled 3004", "glIsEnabled 3005", "glIsEnabled 0BF2", "glIsEnabled 0B57",
        "glIsEnabled 0B44", "glIsEnabled 0B71", "glIsEnabled 0BD0", "glIsEnabled 0B60", "glIsEnabled 4000",
        "glIsEnabled 4001", "glIsEnabled 4002", "glIsEnabled 4003", "glIsEnabled 4004", "glIsEnabled 4005",
        "glIsEnabled 4006", "glIsEnabled 4007", "glIsEnabled 0B50", "glIsEnabled 0B20", "glIsEnabled 809D",
        "glIsEnabled 0BA1", "glIsEnabled 0B10", "glIsEnabled 8861", "glIsEnabled 8037", "glIsEnabled 803A",
        "glIsEnabled 809E", "glIsEnabled 809F", "glIsEnabled 0C11", "glIsEnabled 0B90",
        // The units' switches.
        "glActiveTexture 84C0", "glIsEnabled 0DE1", "glActiveTexture 84C0",
        // Fog, front face, hints.
        "glGetFloatv 0B65", "glGetFloatv 0B62", "glGetFloatv 0B63", "glGetFloatv 0B64", "glGetFloatv 0B66",
        "glGetIntegerv 0B46", "glGetIntegerv 0C54", "glGetIntegerv 8192", "glGetIntegerv 0C52",
        "glGetIntegerv 0C50", "glGetIntegerv 0C51",
        // Lights.
        "glGetIntegerv 0D31", "glGetLightfv 4000 1200", "glGetLightfv 4000 1201", "glGetLightfv 4000 1202",
        "glGetLightfv 4000 1203", "glGetLightfv 4000 1204", "glGetLightfv 4000 1205",
        "glGetLightfv 4000 1206", "glGetLightfv 4000 1207", "glGetLightfv 4000 1208",
        "glGetLightfv 4000 1209",
        // Light model, line width, logic operation, material.
        "glGetBooleanv 0B52", "glGetFloatv 0B53", "glGetFloatv 0B21", "glGetIntegerv 0BF0",
        "glGetMaterialfv 0404 1200", "glGetMaterialfv 0404 1201", "glGetMaterialfv 0404 1202",
        "glGetMaterialfv 0404 1600", "glGetMaterialfv 0404 1601",
        // Matrices. The unit and the mode are put back.
        "glGetIntegerv 0BA0", "glMatrixMode 1700", "glGetFloatv 0BA6", "glMatrixMode 1701",
        "glGetFloatv 0BA7", "glMatrixMode 1702", "glActiveTexture 84C0", "glGetFloatv 0BA8",
        "glActiveTexture 84C0", "glMatrixMode 1700",
        // The units' coordinates.
        "glActiveTexture 84C0", "glGetFloatv 0B03", "glActiveTexture 84C0",
        // Normal, alignments, points.
        "glGetFloatv 0B02", "glGetIntegerv 0D05", "glGetIntegerv 0CF5", "glGetFloatv 8126",
        "glGetFloatv 8127", "glGetFloatv 8128", "glGetFloatv 8129", "glGetFloatv 0B11",
        // Polygon offset, coverage, scissor box, shading, stencil.
        "glGetFloatv 8038", "glGetFloatv 2A00", "glGetFloatv 80AA", "glGetBooleanv 80AB",
        "glGetIntegerv 0C10", "glGetIntegerv 0B54", "glGetIntegerv 0B92", "glGetIntegerv 0B97",
        "glGetIntegerv 0B93", "glGetIntegerv 0B98", "glGetIntegerv 0B94", "glGetIntegerv 0B95",
        "glGetIntegerv 0B96",
        // Texture environments.
        "glActiveTexture 84C0", "glGetTexEnviv 2300 2200", "glGetTexEnviv 2300 8571",
        "glGetTexEnviv 2300 8572", "glGetTexEnviv 2300 8580", "glGetTexEnviv 2300 8581",
        "glGetTexEnviv 2300 8582", "glGetTexEnviv 2300 8588", "glGetTexEnviv 2300 8589",
        "glGetTexEnviv 2300 858A", "glGetTexEnviv 2300 8590", "glGetTexEnviv 2300 8591",
        "glGetTexEnviv 2300 8592", "glGetTexEnviv 2300 8598", "glGetTexEnviv 2300 8599",
        "glGetTexEnviv 2300 859A", "glGetTexEnvfv 2300 2201", "glGetTexEnvfv 2300 8573",
        "glGetTexEnvfv 2300 0D1C", "glGetTexEnviv 8861 8862", "glActiveTexture 84C0",
        // Viewport.
        "glGetIntegerv 0BA2",
        // The default array object, bound for it; what was bound is bound again.
        "glGetIntegerv 85B5", "glBindVertexArrayOES 0000", "glIsEnabled 8076", "glIsEnabled 8074",
        "glIsEnabled 8075", "glIsEnabled 8B9C", "glIsEnabled 8844", "glIsEnabled 86AD",
        "glClientActiveTexture 84C0", "glIsEnabled 8078", "glClientActiveTexture 84C0", "glGetIntegerv 8B9F",
        "glGetIntegerv 898A", "glGetIntegerv 898B", "glGetPointerv 898C", "glGetIntegerv 8B9E",
        "glGetIntegerv 8846", "glGetIntegerv 8847", "glGetIntegerv 8848", "glGetPointerv 8849",
        "glGetIntegerv 889E", "glGetIntegerv 86AB", "glGetIntegerv 86A9", "glGetIntegerv 86AA",
        "glGetPointerv 86AC", "glGetIntegerv 8895", "glBindVertexArrayOES 0000",
        // Framebuffer bindings.
        "glGetIntegerv 8CA6", "glGetIntegerv 8CA7",
        // Mapped buffers would be here. Their bindings are put back.
        "glGetIntegerv 8895", "glBindBuffer 8892 0000", "glBindBuffer 8893 0000",
        // Framebuffers and renderbuffers would be here. Their bindings are put back.
        "glBindFramebufferOES 8D40 0000", "glBindRenderbufferOES 8D41 0000",
        // Errors are swallowed.
        "glGetError"};
    EXPECT_EQ(expected, Asked());
}

// Each unit is made active for its questions, and the application's again behind them: for the textures, the
// switches, the matrices, the coordinates and the environments.
TEST_F(Es1Capture, TheActiveUnitIsPutBack)
{
    HostAnswers(GL_ACTIVE_TEXTURE, GL_TEXTURE1);
    Lines const group = {"glActiveTexture 84C0", "glActiveTexture 84C1", "glActiveTexture 84C1"};
    Lines expected;
    for (int i = 0; i < 5; ++i)
        expected.insert(expected.end(), group.begin(), group.end());
    EXPECT_EQ(expected, OnlyCalls(Asked(), {"glActiveTexture"}));
}

// Every buffer is bound to its target and asked whether it is mapped. Unlike GLES2's, the bindings are put
// back.
TEST_F(Es1Capture, BufferBindingsArePutBack)
{
    Buffer(GL_ARRAY_BUFFER, 11, {1});
    Buffer(GL_ELEMENT_ARRAY_BUFFER, 12, {2});
    HostAnswers(GL_ARRAY_BUFFER_BINDING, 13);
    HostAnswers(GL_ELEMENT_ARRAY_BUFFER_BINDING, 14);
    Fake().On("glGetBufferParameteriv", [](Call const& call) {
        *call.Pointer<GLint>(2) = call.Argument<GLenum>(0) == GL_ARRAY_BUFFER ? 1 : 0;
    });
    Lines const expected = {"glBindBuffer 8892 000B", "glGetBufferParameteriv 8892 88BC",
                            "glBindBuffer 8893 000C", "glGetBufferParameteriv 8893 88BC",
                            "glBindBuffer 8892 000D", "glBindBuffer 8893 000E"};
    EXPECT_EQ(expected, OnlyCalls(Asked(), {"glBindBuffer", "glGetBufferParameteriv"}));
    EXPECT_TRUE(State().m_sBufferDatas[11].isMappedOES);
    EXPECT_FALSE(State().m_sBufferDatas[12].isMappedOES);
}

// A host that maps no buffers is not asked, and keeps its bindings.
TEST_F(Es1Capture, WithoutMappingNoBufferIsAsked)
{
    Buffer(GL_ARRAY_BUFFER, 11, {1});
    HostLacks("glMapBufferOES");
    EXPECT_EQ(Lines(), OnlyCalls(Asked(), {"glBindBuffer", "glGetBufferParameteriv"}));
}

// Framebuffers and renderbuffers that have been bound are bound and asked; what was bound is bound again.
TEST_F(Es1Capture, FramebufferBindingsArePutBack)
{
    GLuint names[] = {31, 32};
    Es1::_glGenFramebuffersOES(2, names);
    Es1::_glGenRenderbuffersOES(2, names);
    Es1::_glBindFramebufferOES(GL_FRAMEBUFFER, 32);
    Es1::_glBindRenderbufferOES(GL_RENDERBUFFER, 31);
    HostAnswers(GL_FRAMEBUFFER_BINDING, 5);
    HostAnswers(GL_RENDERBUFFER_BINDING, 6);
    Lines const asked = Asked();
    Lines const expected = {"glBindFramebufferOES 8D40 0020",
                            "glGetFramebufferAttachmentParameterivOES 8D40 8CE0 8CD0",
                            "glGetFramebufferAttachmentParameterivOES 8D40 8CE0 8CD1",
                            "glGetFramebufferAttachmentParameterivOES 8D40 8CE0 8CD2",
                            "glGetFramebufferAttachmentParameterivOES 8D40 8D00 8CD0",
                            "glGetFramebufferAttachmentParameterivOES 8D40 8D00 8CD1",
                            "glGetFramebufferAttachmentParameterivOES 8D40 8D00 8CD2",
                            "glGetFramebufferAttachmentParameterivOES 8D40 8D20 8CD0",
                            "glGetFramebufferAttachmentParameterivOES 8D40 8D20 8CD1",
                            "glGetFramebufferAttachmentParameterivOES 8D40 8D20 8CD2",
                            "glBindRenderbufferOES 8D41 001F",
                            "glGetRenderbufferParameterivOES 8D41 8D42",
                            "glGetRenderbufferParameterivOES 8D41 8D43",
                            "glGetRenderbufferParameterivOES 8D41 8D44",
                            "glBindFramebufferOES 8D40 0005",
                            "glBindRenderbufferOES 8D41 0006",
                            "glGetError"};
    ASSERT_LT(17u, asked.size());
    EXPECT_EQ(expected, Lines(asked.end() - 17, asked.end()));
}

// What the application never asked for by name is asked of EGL, which does not count as used by that.
TEST_F(Es1Capture, FunctionsThatTheApplicationDoesNotKnowAreAskedOfEgl)
{
    GLuint name = 31;
    Es1::_glGenFramebuffersOES(1, &name);
    Es1::_glBindFramebufferOES(GL_FRAMEBUFFER, 31);
    Es1::_glBindRenderbufferOES(GL_RENDERBUFFER, 41);
    HostLacks("glGetFramebufferAttachmentParameterivOES");
    HostLacks("glGetRenderbufferParameterivOES");
    Fake().On("glGetFramebufferAttachmentParameterivOES",
              [](Call const& call) { *call.Pointer<GLint>(3) = 0x1702; });
    Capture();
    EXPECT_EQ(0x1702u, State().mFramebufferObjects[31].StencilAttachment.type);
    EXPECT_EQ(3u, HostCalls("glGetRenderbufferParameterivOES"));
    EXPECT_FALSE(STraceConfig::m_bEGLUsed);
}

// A host without framebuffer objects and array objects is not called for them.
TEST_F(Es1Capture, MissingExtensionsAreNotCalled)
{
    for (char const* name : {"glBindFramebufferOES", "glBindRenderbufferOES", "glBindVertexArrayOES",
                             "glMatrixIndexPointerOES", "glWeightPointerOES", "glPointSizePointerOES"})
        HostLacks(name);
    State().mFramebufferObjects[31].firstBind = true;
    State().m_sRenderbuffers[31].firstBind = true;
    State().m_sRenderbuffers[31].name = 31;
    Lines const asked = Asked();
    EXPECT_EQ(Lines({"glGetIntegerv 8895", "glGetIntegerv 8CA6", "glGetIntegerv 8CA7"}),
              Lines(asked.end() - 7, asked.end() - 4));
    EXPECT_EQ(Lines(), OnlyCalls(asked, {"glGetPointerv", "glGetRenderbufferParameterivOES",
                                         "glGetFramebufferAttachmentParameterivOES"}));
}

// Each array object is bound and asked for its switches, its element buffer, and the arrays that no wrapper
// follows; what the host has bound is bound again.
TEST_F(Es1Capture, ArrayObjectsAreAskedEachByItself)
{
    GLuint name = 5;
    Es1::_glGenVertexArraysOES(1, &name);
    HostAnswers(GL_VERTEX_ARRAY_BINDING_OES, 7);
    HostAnswers(0x8B9F, 21);
    HostAnswers(0x898A, GL_FIXED);
    HostAnswers(0x898B, 8);
    HostAnswers(0x8846, 3);
    Fake().On("glGetPointerv",
              [](Call const& call) { *call.Pointer<uintptr_t>(1) = call.Argument<GLenum>(0); });
    HostAnswers(GL_ELEMENT_ARRAY_BUFFER_BINDING, 23);
    HostEnables({0x8075, 0x8B9C});
    Fake().On("glBindVertexArrayOES", [this](Call const& call) {
        HostAnswers(GL_ELEMENT_ARRAY_BUFFER_BINDING, call.Argument<GLint>(0) + 20);
    });
    EXPECT_EQ(Lines({"glBindVertexArrayOES 0005", "glBindVertexArrayOES 0000", "glBindVertexArrayOES 0007"}),
              OnlyCalls(Asked(), {"glBindVertexArrayOES"}));
    CEs1ContextState::vaoDefinition const& object = State().mVertexArrayObjects[5];
    for (int i = 0; i < 38; ++i)
        EXPECT_EQ(i == 2 || i == 3, object.enabled[i]) << i;
    EXPECT_EQ(25u, object.boundelementbuffer);
    EXPECT_EQ(20u, State().mVertexArrayObjects[0].boundelementbuffer);
    EXPECT_EQ(21u, object.arrays[3].boundarraybuffer);
    EXPECT_EQ(0, object.arrays[3].size);
    EXPECT_EQ(0x140Cu, object.arrays[3].type);
    EXPECT_EQ(8, object.arrays[3].stride);
    EXPECT_EQ(reinterpret_cast<void*>(0x898C), object.arrays[3].pointer);
    EXPECT_EQ(3, object.arrays[4].size);
    EXPECT_EQ(reinterpret_cast<void*>(0x8849), object.arrays[4].pointer);
    EXPECT_EQ(reinterpret_cast<void*>(0x86AC), object.arrays[5].pointer);
    EXPECT_EQ(nullptr, object.arrays[1].pointer);
}

// The switches of texture coordinates are asked unit by unit, and the client unit is put back.
TEST_F(Es1Capture, TheClientUnitIsPutBack)
{
    HostAnswers(Es1Enum::kClientActiveTexture, GL_TEXTURE1);
    EXPECT_EQ(
        Lines({"glClientActiveTexture 84C0", "glClientActiveTexture 84C1", "glClientActiveTexture 84C1"}),
        OnlyCalls(Asked(), {"glClientActiveTexture"}));
}

// Texture environments go into the shadow, each of its unit.
TEST_F(Es1Capture, TextureEnvironmentsAreKept)
{
    Fake().On("glGetTexEnviv", [this](Call const& call) {
        *call.Pointer<GLint>(2) = static_cast<GLint>(call.Argument<GLenum>(1) + Unit());
    });
    Fake().On("glGetTexEnvfv", [](Call const& call) {
        GLfloat* const values = call.Pointer<GLfloat>(2);
        GLenum const name = call.Argument<GLenum>(1);
        values[0] = static_cast<GLfloat>(name);
        if (name == 0x2201)
            values[3] = 4.0f;
    });
    Capture();
    GLenum const names[15] = {0x2200, 0x8571, 0x8572, 0x8580, 0x8581, 0x8582, 0x8588, 0x8589,
                              0x858A, 0x8590, 0x8591, 0x8592, 0x8598, 0x8599, 0x859A};
    for (GLenum unit = 0; unit < 2; ++unit)
    {
        CEs1ContextState::textureEnvironment const& environment = State().m_sTextureEnvironments[unit];
        for (int i = 0; i < 15; ++i)
            EXPECT_EQ(static_cast<int>(names[i] + unit), environment.integers[i]);
        EXPECT_EQ(0x2201, environment.color[0]);
        EXPECT_EQ(4.0f, environment.color[3]);
        EXPECT_EQ(0x8573, environment.rgbScale);
        EXPECT_EQ(0x0D1C, environment.alphaScale);
        EXPECT_EQ(static_cast<int>(0x8862 + unit), environment.coordReplace);
    }
}

// A host with more units than there is room for is served for the first 32.
TEST_F(Es1Capture, MoreThan32UnitsAreServedForTheFirst32)
{
    HostAnswers(Es1Enum::kMaxTextureUnits, 33);
    EXPECT_EQ(5u * 33, OnlyCalls(Asked(), {"glActiveTexture"}).size());
    EXPECT_EQ(34, State().MatrixStacks());
}

// An error that the questions raise is neither told of nor left for the call that is waiting.
TEST_F(Es1Capture, ErrorsAreSwallowed)
{
    HostAnswers(GL_VIEWPORT, 5);
    HostFails(0x0500);
    EXPECT_EQ("", Printed([this] { Capture(); }));
    EXPECT_EQ(0u, Es1Host()->glGetError());
    EXPECT_EQ(5, State().m_iaViewport[0]);
}
