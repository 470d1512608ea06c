// The GLES1 snapshot: its order, and plain state.
#include "tests/wrappers/es1_snapshot.h"

// A state without objects is the markers, the units, the plain state in its fixed order, the matrices, the
// default array object and the framebuffer. Nothing is pushed onto a stack, nothing is disabled but textures.
TEST_F(Es1Snapshot, OfAnEmptyStateIsTheFixedSequence)
{
    Lines const expected = {
        "-- 3",
        "glActiveTexture(texture = GL_TEXTURE0)",
        "glBindTexture(target = GL_TEXTURE_2D, texture = 0)",
        "glMultiTexCoord4f(target = GL_TEXTURE0, s = 0, t = 0, r = 0, q = 1)",
        "glDisable(cap = GL_TEXTURE_2D)",
        "glActiveTexture(texture = GL_TEXTURE1)",
        "glBindTexture(target = GL_TEXTURE_2D, texture = 0)",
        "glMultiTexCoord4f(target = GL_TEXTURE1, s = 0, t = 0, r = 0, q = 1)",
        "glDisable(cap = GL_TEXTURE_2D)",
        "glActiveTexture(texture = GL_TEXTURE0)",
        "glAlphaFunc(func = GL_ALWAYS, ref = 0)",
        "glBindBuffer(target = GL_ARRAY_BUFFER, buffer = 0)",
        "glBindBuffer(target = GL_ELEMENT_ARRAY_BUFFER, buffer = 0)",
        "glBlendFunc(sfactor = GL_ONE, dfactor = GL_ZERO)",
        "glClearColor(red = 0, green = 0, blue = 0, alpha = 0)",
        "glClearDepthf(d = 1)",
        "glClearStencil(s = 0)",
        "glClipPlanef(p = GL_CLIP_PLANE0, eqn = {0, 0, 0, 0})",
        "glColor4f(red = 1, green = 1, blue = 1, alpha = 1)",
        "glColorMask(red = GL_TRUE, green = GL_TRUE, blue = GL_TRUE, alpha = GL_TRUE)",
        "glCullFace(mode = GL_BACK)",
        "glDepthFunc(func = GL_LESS)",
        "glDepthMask(flag = GL_TRUE)",
        "glDepthRangef(n = 0, f = 1)",
        "glFogf(pname = GL_FOG_MODE, param = 2048)",
        "glFogf(pname = GL_FOG_DENSITY, param = 1)",
        "glFogf(pname = GL_FOG_START, param = 0)",
        "glFogf(pname = GL_FOG_END, param = 1)",
        "glFogfv(pname = GL_FOG_COLOR, params = {0, 0, 0, 0})",
        "glFrontFace(mode = GL_CCW)",
        "glHint(target = GL_FOG_HINT, mode = GL_DONT_CARE)",
        "glHint(target = GL_GENERATE_MIPMAP_HINT, mode = GL_DONT_CARE)",
        "glHint(target = GL_LINE_SMOOTH_HINT, mode = GL_DONT_CARE)",
        "glHint(target = GL_PERSPECTIVE_CORRECTION_HINT, mode = GL_DONT_CARE)",
        "glHint(target = GL_POINT_SMOOTH_HINT, mode = GL_DONT_CARE)",
        "glLightModelf(pname = GL_LIGHT_MODEL_TWO_SIDE, param = 0)",
        "glLightModelfv(pname = GL_LIGHT_MODEL_AMBIENT, params = {0.2, 0.2, 0.2, 1})",
        "glLightfv(light = GL_LIGHT0, pname = GL_AMBIENT, params = {0, 0, 0, 1})",
        "glLightfv(light = GL_LIGHT0, pname = GL_DIFFUSE, params = {1, 1, 1, 1})",
        "glLightfv(light = GL_LIGHT0, pname = GL_SPECULAR, params = {1, 1, 1, 1})",
        "glLightfv(light = GL_LIGHT0, pname = GL_POSITION, params = {0, 0, 1, 0})",
        "glLightfv(light = GL_LIGHT0, pname = GL_SPOT_DIRECTION, params = {0, 0, -1})",
        "glLightfv(light = GL_LIGHT0, pname = GL_SPOT_EXPONENT, params = {0})",
        "glLightfv(light = GL_LIGHT0, pname = GL_SPOT_CUTOFF, params = {180})",
        "glLightfv(light = GL_LIGHT0, pname = GL_CONSTANT_ATTENUATION, params = {1})",
        "glLightfv(light = GL_LIGHT0, pname = GL_LINEAR_ATTENUATION, params = {0})",
        "glLightfv(light = GL_LIGHT0, pname = GL_QUADRATIC_ATTENUATION, params = {0})",
        "glLineWidth(width = 1)",
        "glLogicOp(opcode = GL_COPY)",
        "glMaterialfv(face = GL_FRONT_AND_BACK, pname = GL_AMBIENT, params = {0.2, 0.2, 0.2, 1})",
        "glMaterialfv(face = GL_FRONT_AND_BACK, pname = GL_DIFFUSE, params = {0.8, 0.8, 0.8, 1})",
        "glMaterialfv(face = GL_FRONT_AND_BACK, pname = GL_SPECULAR, params = {0, 0, 0, 1})",
        "glMaterialfv(face = GL_FRONT_AND_BACK, pname = GL_EMISSION, params = {0, 0, 0, 1})",
        "glMaterialfv(face = GL_FRONT_AND_BACK, pname = GL_SHININESS, params = {0})",
        "glMatrixMode(mode = GL_MODELVIEW)",
        "glLoadMatrixf(m = {1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1})",
        "glMatrixMode(mode = GL_PROJECTION)",
        "glLoadMatrixf(m = {1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1})",
        "glMatrixMode(mode = GL_TEXTURE)",
        "glActiveTexture(texture = GL_TEXTURE0)",
        "glLoadMatrixf(m = {1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1})",
        "glMatrixMode(mode = GL_TEXTURE)",
        "glActiveTexture(texture = GL_TEXTURE1)",
        "glLoadMatrixf(m = {1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1})",
        "glMatrixMode(mode = GL_MODELVIEW)",
        "glNormal3f(nx = 0, ny = 0, nz = 1)",
        "glPixelStorei(pname = GL_PACK_ALIGNMENT, param = 4)",
        "glPixelStorei(pname = GL_UNPACK_ALIGNMENT, param = 4)",
        "glPointParameterfv(pname = GL_POINT_SIZE_MIN, params = {0})",
        "glPointParameterfv(pname = GL_POINT_SIZE_MAX, params = {1})",
        "glPointParameterfv(pname = GL_POINT_FADE_THRESHOLD_SIZE, params = {1})",
        "glPointParameterfv(pname = GL_POINT_DISTANCE_ATTENUATION, params = {1, 0, 0})",
        "glPointSize(size = 1)",
        "glPolygonOffset(factor = 0, units = 0)",
        "glSampleCoverage(value = 1, invert = GL_FALSE)",
        "glScissor(x = 0, y = 0, width = 0, height = 0)",
        "glShadeModel(mode = GL_SMOOTH)",
        "glStencilFunc(func = GL_ALWAYS, ref = 0, mask = 4294967295)",
        "glStencilMask(mask = 4294967295)",
        "glStencilOp(fail = GL_KEEP, zfail = GL_KEEP, zpass = GL_KEEP)",
        "glViewport(x = 0, y = 0, width = 0, height = 0)",
        "glBindVertexArrayOES(array = 0)",
        "glBindBuffer(target = GL_ARRAY_BUFFER, buffer = 0)",
        "glColorPointer(size = 4, type = GL_FLOAT, stride = 0, pointer = NULL)",
        "glBindBuffer(target = GL_ARRAY_BUFFER, buffer = 0)",
        "glVertexPointer(size = 4, type = GL_FLOAT, stride = 0, pointer = NULL)",
        "glBindBuffer(target = GL_ARRAY_BUFFER, buffer = 0)",
        "glNormalPointer(type = GL_FLOAT, stride = 0, pointer = NULL)",
        "glBindBuffer(target = GL_ARRAY_BUFFER, buffer = 0)",
        "glPointSizePointerOES(type = GL_FLOAT, stride = 0, pointer = NULL)",
        "glBindBuffer(target = GL_ARRAY_BUFFER, buffer = 0)",
        "glMatrixIndexPointerOES(size = 1, type = GL_UNSIGNED_BYTE, stride = 0, pointer = NULL)",
        "glBindBuffer(target = GL_ARRAY_BUFFER, buffer = 0)",
        "glWeightPointerOES(size = 1, type = GL_FLOAT, stride = 0, pointer = NULL)",
        "glClientActiveTexture(texture = GL_TEXTURE0)",
        "glBindBuffer(target = GL_ARRAY_BUFFER, buffer = 0)",
        "glTexCoordPointer(size = 0, type = 0x0, stride = 0, pointer = NULL)",
        "glClientActiveTexture(texture = GL_TEXTURE1)",
        "glBindBuffer(target = GL_ARRAY_BUFFER, buffer = 0)",
        "glTexCoordPointer(size = 0, type = 0x0, stride = 0, pointer = NULL)",
        "glDisableClientState(array = GL_COLOR_ARRAY)",
        "glDisableClientState(array = GL_VERTEX_ARRAY)",
        "glDisableClientState(array = GL_NORMAL_ARRAY)",
        "glDisableClientState(array = GL_POINT_SIZE_ARRAY_OES)",
        "glDisableClientState(array = GL_MATRIX_INDEX_ARRAY_OES)",
        "glDisableClientState(array = GL_WEIGHT_ARRAY_OES)",
        "glClientActiveTexture(texture = GL_TEXTURE0)",
        "glDisableClientState(array = GL_TEXTURE_COORD_ARRAY)",
        "glClientActiveTexture(texture = GL_TEXTURE1)",
        "glDisableClientState(array = GL_TEXTURE_COORD_ARRAY)",
        "glBindBuffer(target = GL_ELEMENT_ARRAY_BUFFER, buffer = 0)",
        "glBindVertexArrayOES(array = 0)",
        "glClientActiveTexture(texture = GL_TEXTURE0)",
        "glBindFramebufferOES(target = GL_FRAMEBUFFER, framebuffer = 0)",
        "-- 3"};
    EXPECT_EQ(expected, Taken());
}

// Each unit has its texture, its coordinates and its switch; the active unit stands behind them.
TEST_F(Es1Snapshot, EachUnitIsAskedAndWrittenForItself)
{
    HostAnswers(GL_ACTIVE_TEXTURE, GL_TEXTURE1);
    Fake().On("glIsEnabled", [this](Call const& call) {
        bool const on = call.Argument<GLenum>(0) == GL_TEXTURE_2D && Unit() == 1;
        Fake().Result("glIsEnabled", on ? 1u : 0u);
    });
    Fake().On("glActiveTexture", [this](Call const& call) {
        bool const second = call.Argument<GLenum>(0) == GL_TEXTURE1;
        SetUnit(second ? 1 : 0);
        BindTexture(second ? 8 : 7);
        HostAnswersFloats(0x0B03,
                          second ? std::vector<GLfloat>{5, 6, 7, 8} : std::vector<GLfloat>{1, 2, 3, 4});
    });
    Lines const expected = {"glActiveTexture(texture = GL_TEXTURE0)",
                            "glBindTexture(target = GL_TEXTURE_2D, texture = 7)",
                            "glMultiTexCoord4f(target = GL_TEXTURE0, s = 1, t = 2, r = 3, q = 4)",
                            "glDisable(cap = GL_TEXTURE_2D)",
                            "glActiveTexture(texture = GL_TEXTURE1)",
                            "glBindTexture(target = GL_TEXTURE_2D, texture = 8)",
                            "glMultiTexCoord4f(target = GL_TEXTURE1, s = 5, t = 6, r = 7, q = 8)",
                            "glEnable(cap = GL_TEXTURE_2D)",
                            "glActiveTexture(texture = GL_TEXTURE1)"};
    Lines const calls = Taken();
    EXPECT_EQ(expected, Lines(calls.begin() + 1, calls.begin() + 10));
}

// Of the capabilities those that are on are enabled, in their order, and none is disabled: not even
// dithering.
TEST_F(Es1Snapshot, CapabilitiesThatAreOnAreEnabled)
{
    GLenum const names[34] = {0x0BC0, 0x0BE2, 0x3000, 0x3001, 0x3002, 0x3003, 0x3004, 0x3005, 0x0BF2,
                              0x0B57, 0x0B44, 0x0B71, 0x0BD0, 0x0B60, 0x4000, 0x4001, 0x4002, 0x4003,
                              0x4004, 0x4005, 0x4006, 0x4007, 0x0B50, 0x0B20, 0x809D, 0x0BA1, 0x0B10,
                              0x8861, 0x8037, 0x803A, 0x809E, 0x809F, 0x0C11, 0x0B90};
    HostEnables({});
    EXPECT_EQ(Lines(), Only(Taken(), {"glEnable"}));
    Bytes expected;
    for (GLenum name : names)
        expected = Joined(expected, Expected(3038, Joined(U32(0), U32(name))));
    HostEnables(std::vector<GLenum>(names, names + 34));
    Capture();
    STraceConfig::m_bDoNativeCall = false;
    CTraceRecordManager::saveRenderStatePhase2(false, false);
    STraceConfig::m_bDoNativeCall = true;
    Bytes const written = Written();
    EXPECT_NE(written.end(), std::search(written.begin(), written.end(), expected.begin(), expected.end()));
    // But for the textures of the two units, that is.
    Capture();
    EXPECT_EQ(Lines({"glDisable", "glDisable"}), NamesOf(Only(Write(false), {"glDisable"})));
    for (GLenum name : names)
    {
        HostEnables({name});
        EXPECT_EQ(1u, Only(Taken(), {"glEnable"}).size());
    }
}

// Alpha test, blending, clearing, colour and depth are as the host says.
TEST_F(Es1Snapshot, PixelStateIsAsTheHostSays)
{
    HostAnswers(0x0BC1, 0x0206);
    HostAnswersFloats(0x0BC2, {0.5f});
    HostAnswers(0x0BE1, 0x0302);
    HostAnswers(0x0BE0, 0x0303);
    HostAnswersFloats(0x0C22, {0.25f, 0.5f, 0.75f, 1.0f});
    HostAnswersFloats(0x0B73, {0.125f});
    HostAnswers(0x0B91, 3);
    HostAnswersFloats(0x0B00, {0.5f, 0.25f, 0.125f, 0.0f});
    Fake().On("glGetBooleanv", [](Call const& call) {
        GLboolean* const values = call.Pointer<GLboolean>(1);
        values[0] = call.Argument<GLenum>(0) != 0x0B72;
        if (call.Argument<GLenum>(0) == 0x0C23)
            values[1] = 0;
    });
    HostAnswers(0x0B45, 0x0404);
    HostAnswers(0x0B74, 0x0207);
    HostAnswersFloats(0x0B70, {0.25f, 0.75f});
    Lines const calls = Taken();
    EXPECT_EQ(Lines({"glAlphaFunc(func = GL_GEQUAL, ref = 0.5)"}), Only(calls, {"glAlphaFunc"}));
    Lines const blend = {"glBlendFunc(sfactor = GL_SRC_ALPHA, dfactor = GL_ONE_MINUS_SRC_ALPHA)",
                         "glClearColor(red = 0.25, green = 0.5, blue = 0.75, alpha = 1)",
                         "glClearDepthf(d = 0.125)", "glClearStencil(s = 3)"};
    EXPECT_EQ(blend, From(calls, "glBlendFunc", "glClearStencil"));
    Lines const color = {"glColor4f(red = 0.5, green = 0.25, blue = 0.125, alpha = 0)",
                         "glColorMask(red = GL_TRUE, green = GL_FALSE, blue = GL_TRUE, alpha = GL_TRUE)",
                         "glCullFace(mode = GL_FRONT)",
                         "glDepthFunc(func = GL_ALWAYS)",
                         "glDepthMask(flag = GL_FALSE)",
                         "glDepthRangef(n = 0.25, f = 0.75)"};
    EXPECT_EQ(color, From(calls, "glColor4f", "glDepthRangef"));
}

// Clip planes are asked and written as far as the host has them, and no more than there is room for.
TEST_F(Es1Snapshot, ClipPlanesAreThoseOfTheHost)
{
    Fake().On("glGetClipPlanef", [](Call const& call) {
        call.Pointer<GLfloat>(1)[3] = static_cast<GLfloat>(call.Argument<GLenum>(0) - 0x3000);
    });
    HostAnswers(0x0D32, 2);
    EXPECT_EQ(Lines({"glClipPlanef(p = GL_CLIP_PLANE0, eqn = {0, 0, 0, 0})",
                     "glClipPlanef(p = GL_CLIP_PLANE1, eqn = {0, 0, 0, 1})"}),
              Only(Taken(), {"glClipPlanef"}));
    HostAnswers(0x0D32, 7);
    EXPECT_EQ(6u, Only(Taken(), {"glClipPlanef"}).size());
}

// Fog and hints are as the host says.
TEST_F(Es1Snapshot, FogAndHintsAreAsTheHostSays)
{
    HostAnswersFloats(0x0B65, {9729.0f});
    HostAnswersFloats(0x0B62, {0.5f});
    HostAnswersFloats(0x0B63, {2.0f});
    HostAnswersFloats(0x0B64, {3.0f});
    HostAnswersFloats(0x0B66, {0.25f, 0.5f, 0.75f, 1.0f});
    HostAnswers(0x0B46, 0x0900);
    HostAnswers(0x0C54, 0x1101);
    HostAnswers(0x8192, 0x1102);
    HostAnswers(0x0C50, 0x1101);
    Lines const expected = {"glFogf(pname = GL_FOG_MODE, param = 9729)",
                            "glFogf(pname = GL_FOG_DENSITY, param = 0.5)",
                            "glFogf(pname = GL_FOG_START, param = 2)",
                            "glFogf(pname = GL_FOG_END, param = 3)",
                            "glFogfv(pname = GL_FOG_COLOR, params = {0.25, 0.5, 0.75, 1})",
                            "glFrontFace(mode = GL_CW)",
                            "glHint(target = GL_FOG_HINT, mode = GL_FASTEST)",
                            "glHint(target = GL_GENERATE_MIPMAP_HINT, mode = GL_NICEST)",
                            "glHint(target = GL_LINE_SMOOTH_HINT, mode = GL_DONT_CARE)",
                            "glHint(target = GL_PERSPECTIVE_CORRECTION_HINT, mode = GL_FASTEST)",
                            "glHint(target = GL_POINT_SMOOTH_HINT, mode = GL_DONT_CARE)"};
    EXPECT_EQ(expected, From(Taken(), "glFogf(", "glHint"));
}

// Lights are asked and written as far as the host has them, and no more than eight, each with ten parameters.
TEST_F(Es1Snapshot, LightsAreThoseOfTheHost)
{
    Fake().On("glGetLightfv", [](Call const& call) {
        call.Pointer<GLfloat>(2)[0] = static_cast<GLfloat>((call.Argument<GLenum>(0) - 0x4000) * 100 +
                                                           call.Argument<GLenum>(1) - 0x1200);
    });
    HostAnswersFloats(0x0B53, {0.5f, 0.25f, 0.125f, 1.0f});
    Fake().On("glGetBooleanv", [](Call const& call) {
        if (call.Argument<GLenum>(0) == 0x0B52)
            *call.Pointer<GLboolean>(1) = 1;
    });
    HostAnswers(0x0D31, 2);
    Lines const calls = Taken();
    EXPECT_EQ(Lines({"glLightModelf(pname = GL_LIGHT_MODEL_TWO_SIDE, param = 1)",
                     "glLightModelfv(pname = GL_LIGHT_MODEL_AMBIENT, params = {0.5, 0.25, 0.125, 1})"}),
              From(calls, "glLightModelf(", "glLightModelfv"));
    Lines const lights = Only(calls, {"glLightfv"});
    ASSERT_EQ(20u, lights.size());
    EXPECT_EQ("glLightfv(light = GL_LIGHT0, pname = GL_QUADRATIC_ATTENUATION, params = {9})", lights[9]);
    EXPECT_EQ("glLightfv(light = GL_LIGHT1, pname = GL_AMBIENT, params = {100, 0, 0, 1})", lights[10]);
    EXPECT_EQ("glLightfv(light = GL_LIGHT1, pname = GL_SPOT_DIRECTION, params = {104, 0, -1})", lights[14]);
    HostAnswers(0x0D31, 9);
    EXPECT_EQ(80u, Only(Taken(), {"glLightfv"}).size());
}

// Material, line width and logic operation are as the host says. The material is asked of the front face and
// written for both, which is all that the API takes.
TEST_F(Es1Snapshot, MaterialIsAsTheHostSays)
{
    HostAnswersFloats(0x0B21, {2.0f});
    HostAnswers(0x0BF0, 0x1506);
    Fake().Forget();
    Fake().On("glGetMaterialfv", [](Call const& call) {
        EXPECT_EQ(0x0404u, call.Argument<GLenum>(0));
        GLenum const name = call.Argument<GLenum>(1);
        call.Pointer<GLfloat>(2)[0] = static_cast<GLfloat>(name - 0x1200);
    });
    Lines const expected = {
        "glLineWidth(width = 2)",
        "glLogicOp(opcode = GL_XOR)",
        "glMaterialfv(face = GL_FRONT_AND_BACK, pname = GL_AMBIENT, params = {0, 0.2, 0.2, 1})",
        "glMaterialfv(face = GL_FRONT_AND_BACK, pname = GL_DIFFUSE, params = {1, 0.8, 0.8, 1})",
        "glMaterialfv(face = GL_FRONT_AND_BACK, pname = GL_SPECULAR, params = {2, 0, 0, 1})",
        "glMaterialfv(face = GL_FRONT_AND_BACK, pname = GL_EMISSION, params = {1024, 0, 0, 1})",
        "glMaterialfv(face = GL_FRONT_AND_BACK, pname = GL_SHININESS, params = {1025})"};
    EXPECT_EQ(expected, From(Taken(), "glLineWidth", "glMaterialfv"));
}

// What stands behind the matrices is as the host says, the scissor box and the viewport whatever they are.
TEST_F(Es1Snapshot, RasterStateIsAsTheHostSays)
{
    HostAnswersFloats(0x0B02, {0.5f, 0.25f, 0.125f});
    HostAnswers(0x0D05, 1);
    HostAnswers(0x0CF5, 2);
    HostAnswersFloats(0x8126, {2.0f});
    HostAnswersFloats(0x8127, {64.0f});
    HostAnswersFloats(0x8128, {3.0f});
    HostAnswersFloats(0x8129, {0.5f, 0.25f, 0.125f});
    HostAnswersFloats(0x0B11, {5.0f});
    HostAnswersFloats(0x8038, {1.5f});
    HostAnswersFloats(0x2A00, {2.5f});
    HostAnswersFloats(0x80AA, {0.75f});
    Fake().On("glGetBooleanv", [](Call const& call) {
        if (call.Argument<GLenum>(0) == 0x80AB)
            *call.Pointer<GLboolean>(1) = 1;
    });
    HostAnswers(0x0C10, {1, 2, 3, 4});
    HostAnswers(0x0B54, 0x1D00);
    HostAnswers(0x0B92, 0x0202);
    HostAnswers(0x0B97, 7);
    HostAnswers(0x0B93, 15);
    HostAnswers(0x0B98, 31);
    HostAnswers(0x0B94, 0x1E01);
    HostAnswers(0x0B95, 0x1E02);
    HostAnswers(0x0B96, 0x1E03);
    HostAnswers(0x0BA2, {5, 6, 7, 8});
    Lines const expected = {
        "glNormal3f(nx = 0.5, ny = 0.25, nz = 0.125)",
        "glPixelStorei(pname = GL_PACK_ALIGNMENT, param = 1)",
        "glPixelStorei(pname = GL_UNPACK_ALIGNMENT, param = 2)",
        "glPointParameterfv(pname = GL_POINT_SIZE_MIN, params = {2})",
        "glPointParameterfv(pname = GL_POINT_SIZE_MAX, params = {64})",
        "glPointParameterfv(pname = GL_POINT_FADE_THRESHOLD_SIZE, params = {3})",
        "glPointParameterfv(pname = GL_POINT_DISTANCE_ATTENUATION, params = {0.5, 0.25, 0.125})",
        "glPointSize(size = 5)",
        "glPolygonOffset(factor = 1.5, units = 2.5)",
        "glSampleCoverage(value = 0.75, invert = GL_TRUE)",
        "glScissor(x = 1, y = 2, width = 3, height = 4)",
        "glShadeModel(mode = GL_FLAT)",
        "glStencilFunc(func = GL_EQUAL, ref = 7, mask = 15)",
        "glStencilMask(mask = 31)",
        "glStencilOp(fail = GL_REPLACE, zfail = GL_INCR, zpass = GL_DECR)",
        "glViewport(x = 5, y = 6, width = 7, height = 8)"};
    EXPECT_EQ(expected, From(Taken(), "glNormal3f", "glViewport"));
}

// The texture environments are asked for and have their place in the shadow, but no call is written of them.
TEST_F(Es1Snapshot, TextureEnvironmentsAreNotWritten)
{
    Fake().On("glGetTexEnviv", [](Call const& call) { *call.Pointer<GLint>(2) = 5; });
    Lines const names = NamesOf(Taken());
    for (std::string const& name : names)
        EXPECT_NE(0u, name.rfind("glTexEnv", 0)) << name;
    EXPECT_EQ(5, CTraceRecordManager::m_Es1FileStateLastGet.m_sTextureEnvironments[1].integers[14]);
}
