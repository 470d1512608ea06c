// The GLES2 snapshot: which calls stand in it, in which order, for scripted states.
#include "tests/wrappers/snapshot_calls.h"

class Es2Snapshot : public Snapshot
{
protected:
    // Makes the host name the object that its next glCreateShader or glCreateProgram returns.
    static GLuint Shader(GLenum type, GLuint name, char const* source)
    {
        Fake().Result("glCreateShader", name);
        Es2::_glCreateShader(type, 0);
        Es2::_glShaderSource(name, 1, &source, nullptr);
        return name;
    }
    static GLuint Program(GLuint name, GLuint vertexShader, GLuint fragmentShader)
    {
        Fake().Result("glCreateProgram", name);
        Es2::_glCreateProgram(0);
        Es2::_glAttachShader(name, vertexShader);
        Es2::_glAttachShader(name, fragmentShader);
        return name;
    }
    void BindTexture(GLuint name) { HostAnswers(GL_TEXTURE_BINDING_2D, static_cast<GLint>(name)); }
    void Image(GLenum target, GLint level, GLsizei size)
    {
        std::vector<GLubyte> const pixels(static_cast<size_t>(size * size * 4), GLubyte(level + 1));
        Es2::_glTexImage2D(target, level, GL_RGBA, size, size, 0, GL_RGBA, GL_UNSIGNED_BYTE, pixels.data(),
                           0);
    }
};

// A state without objects is the markers, the plain state in its fixed order, and the default array object.
TEST_F(Es2Snapshot, OfAnEmptyStateIsTheFixedSequence)
{
    Lines const expected = {"-- 4",
                            "glReleaseShaderCompiler",
                            "glBlendColor",
                            "glBlendEquationSeparate",
                            "glBlendFuncSeparate",
                            "glClearColor",
                            "glClearDepthf",
                            "glClearStencil",
                            "glColorMask",
                            "glCullFace",
                            "glDepthFunc",
                            "glDepthMask",
                            "glDepthRangef",
                            "glDisable",
                            "glDisable",
                            "glDisable",
                            "glDisable",
                            "glDisable",
                            "glDisable",
                            "glDisable",
                            "glDisable",
                            "glDisable",
                            "glFrontFace",
                            "glHint",
                            "glPixelStorei",
                            "glPixelStorei",
                            "glPolygonOffset",
                            "glSampleCoverage",
                            "glStencilFuncSeparate",
                            "glStencilFuncSeparate",
                            "glStencilMaskSeparate",
                            "glStencilMaskSeparate",
                            "glStencilOpSeparate",
                            "glStencilOpSeparate",
                            "glActiveTexture",
                            "glBindFramebuffer",
                            "glBindVertexArrayOES",
                            "glBindBuffer",
                            "glBindBuffer",
                            "glBindVertexArrayOES",
                            "glBindBuffer",
                            "glBindBuffer",
                            "-- 4"};
    EXPECT_EQ(expected, NamesOf(Taken()));
}

// The capabilities are asked and written in one fixed order.
TEST_F(Es2Snapshot, HasTheCapabilitiesInTheirOrder)
{
    Fake().On("glIsEnabled", [](Call const& call) {
        Fake().Result("glIsEnabled", call.Argument<GLenum>(0) == GL_DEPTH_TEST ? 1 : 0);
    });
    Lines const calls = Only(Taken(), {"glEnable", "glDisable"});
    Lines const order = {"GL_BLEND",           "GL_CULL_FACE",           "GL_DEPTH_TEST",
                         "GL_DITHER",          "GL_POLYGON_OFFSET_FILL", "GL_SAMPLE_ALPHA_TO_COVERAGE",
                         "GL_SAMPLE_COVERAGE", "GL_SCISSOR_TEST",        "GL_STENCIL_TEST"};
    ASSERT_EQ(order.size(), calls.size());
    for (size_t i = 0; i < order.size(); ++i)
        EXPECT_NE(std::string::npos, calls[i].find("(cap = " + order[i] + ")")) << calls[i];
}

// Boxes of zeros are not written; with one value they are.
TEST_F(Es2Snapshot, LeavesOutBoxesOfZeros)
{
    EXPECT_EQ(Lines(), Only(Taken(), {"glScissor", "glViewport"}));
    HostAnswers(GL_VIEWPORT, 5);  // the first value; the others stay 0
    EXPECT_EQ(Lines({"glViewport(x = 5, y = 0, width = 0, height = 0)"}),
              Only(Taken(), {"glScissor", "glViewport"}));
}

// A deleted shader that a program needs is made, attached and linked before it is deleted.
TEST_F(Es2Snapshot, DeletesShadersOnlyBehindThePrograms)
{
    Fake().Result("glIsShader", 1);
    Fake().On("glGetShaderiv", [](Call const& call) { *call.Pointer<GLint>(2) = 1; });
    Shader(GL_VERTEX_SHADER, 3, "v");
    Shader(GL_FRAGMENT_SHADER, 4, "f");
    Es2::_glCompileShader(3);
    Es2::_glCompileShader(4);
    Program(7, 3, 4);
    Es2::_glDeleteShader(3);
    Es2::_glLinkProgram(7);
    Lines const expected = {"glCreateShader(type = GL_VERTEX_SHADER) = 3",
                            "glShaderSource(shader = 3, count = 1, string = {\"v\"}, length = NULL)",
                            "glCompileShader(shader = 3)",
                            "glCreateShader(type = GL_FRAGMENT_SHADER) = 4",
                            "glShaderSource(shader = 4, count = 1, string = {\"f\"}, length = NULL)",
                            "glCompileShader(shader = 4)",
                            "glCreateProgram() = 7",
                            "glAttachShader(program = 7, shader = 4)",
                            "glAttachShader(program = 7, shader = 3)",
                            "glLinkProgram(program = 7)",
                            "glUseProgram(program = 7)",
                            "glDeleteShader(shader = 3)"};
    EXPECT_EQ(expected,
              Only(Taken(), {"glCreateShader", "glShaderSource", "glCompileShader", "glCreateProgram",
                             "glAttachShader", "glLinkProgram", "glUseProgram", "glDeleteShader"}));
}

// The program in use is written twice more behind all programs: as it was when used, then as its record says.
TEST_F(Es2Snapshot, BringsTheProgramInUseToItsRecord)
{
    Shader(GL_VERTEX_SHADER, 3, "v");
    Shader(GL_FRAGMENT_SHADER, 4, "f");
    Shader(GL_FRAGMENT_SHADER, 5, "g");
    Program(7, 3, 4);
    Es2::_glLinkProgram(7);
    Es2::_glUseProgram(7);
    Es2::_glDetachShader(7, 4);
    Es2::_glAttachShader(7, 5);
    Lines const expected = {
        // As recorded in the map.
        "glCreateProgram() = 7", "glAttachShader(program = 7, shader = 5)",
        "glAttachShader(program = 7, shader = 3)", "glLinkProgram(program = 7)", "glUseProgram(program = 7)",
        // As it was when it was used.
        "glDetachShader(program = 7, shader = 5)", "glDetachShader(program = 7, shader = 3)",
        "glAttachShader(program = 7, shader = 4)", "glAttachShader(program = 7, shader = 3)",
        "glLinkProgram(program = 7)", "glUseProgram(program = 7)",
        // And back.
        "glDetachShader(program = 7, shader = 4)", "glDetachShader(program = 7, shader = 3)",
        "glAttachShader(program = 7, shader = 5)", "glAttachShader(program = 7, shader = 3)",
        "glLinkProgram(program = 7)", "glUseProgram(program = 7)"};
    EXPECT_EQ(expected, Only(Taken(), {"glCreateProgram", "glAttachShader", "glDetachShader", "glLinkProgram",
                                       "glUseProgram"}));
}

// A program deleted while in use is not created: only the pass for the program in use writes it.
TEST_F(Es2Snapshot, DoesNotCreateAProgramDeletedInUse)
{
    Shader(GL_VERTEX_SHADER, 3, "v");
    Shader(GL_FRAGMENT_SHADER, 4, "f");
    Program(7, 3, 4);
    Es2::_glLinkProgram(7);
    Es2::_glUseProgram(7);
    Es2::_glDeleteProgram(7);
    Lines const expected = {"glAttachShader(program = 7, shader = 4)",
                            "glAttachShader(program = 7, shader = 3)", "glLinkProgram(program = 7)",
                            "glUseProgram(program = 7)"};
    EXPECT_EQ(expected, Only(Taken(), {"glCreateProgram", "glAttachShader", "glDetachShader", "glLinkProgram",
                                       "glUseProgram"}));
}

// Locations bound before the link stand ahead of it, those bound since behind it.
TEST_F(Es2Snapshot, BindsLocationsAroundTheLink)
{
    Program(7, 0, 0);
    Es2::_glBindAttribLocation(7, 2, "before");
    Es2::_glLinkProgram(7);
    Es2::_glBindAttribLocation(7, 3, "since");
    Lines const expected = {"glBindAttribLocation(program = 7, index = 2, name = \"before\")",
                            "glLinkProgram(program = 7)",
                            "glBindAttribLocation(program = 7, index = 2, name = \"before\")",
                            "glBindAttribLocation(program = 7, index = 3, name = \"since\")"};
    EXPECT_EQ(expected, Only(Taken(), {"glBindAttribLocation", "glLinkProgram"}));
}

// A uniform is written behind the query of its location, by the call that its values make.
TEST_F(Es2Snapshot, WritesUniformsByTheirKindAndCount)
{
    Program(7, 0, 0);
    Es2::_glLinkProgram(7);
    Es2::_glUseProgram(7);
    auto const locate = [](char const* name, GLint location) {
        Fake().Result("glGetUniformLocation", static_cast<uint32_t>(location));
        Es2::_glGetUniformLocation(7, name, 0);
    };
    GLint const integers[] = {1, 2, 3, 4};
    GLfloat const floats[16] = {1.5f};
    locate("one", 0);
    Es2::_glUniform2i(0, 8, 9);
    locate("many", 1);
    Es2::_glUniform2iv(1, 2, integers);
    locate("f", 3);
    Es2::_glUniform1f(3, 0.5f);
    locate("m", 4);
    Es2::_glUniformMatrix2fv(4, 1, GL_FALSE, floats);
    locate("unset", 5);
    Es2::_glUniform1f(6, 2.0f);  // its location was never asked for
    Lines const calls = Only(Taken(), {"glGetUniformLocation", "glUniform2i", "glUniform2iv", "glUniform1f",
                                       "glUniformMatrix2fv"});
    Lines const expected = {
        "glGetUniformLocation(program = 7, name = \"one\") = 0",
        "glUniform2i(location = 0, v0 = 8, v1 = 9)",
        "glGetUniformLocation(program = 7, name = \"many\") = 1",
        "glUniform2iv(location = 1, count = 2, value = {{1, 2}, {3, 4}})",
        "glGetUniformLocation(program = 7, name = \"f\") = 3",
        "glUniform1f(location = 3, v0 = 0.5)",
        "glGetUniformLocation(program = 7, name = \"m\") = 4",
        "glUniformMatrix2fv(location = 4, count = 1, transpose = GL_FALSE, value = {{1.5, 0, "
        "0, 0}})",
        "glGetUniformLocation(program = 7, name = \"unset\") = 5"};
    // Three times: as recorded, and in the two passes of the program in use.
    ASSERT_EQ(3 * expected.size(), calls.size());
    for (size_t i = 0; i < calls.size(); ++i)
        EXPECT_EQ(expected[i % expected.size()], calls[i]);
}

// A constant attribute that never went through a bound location and a link is written at location 0.
TEST_F(Es2Snapshot, WritesUnboundConstantsAtLocationZero)
{
    Program(7, 0, 0);
    Es2::_glLinkProgram(7);
    Es2::_glUseProgram(7);
    Es2::_glVertexAttrib2f(5, 0.5f, 1.5f);
    EXPECT_EQ(Lines(3, "glVertexAttrib2f(index = 0, x = 0.5, y = 1.5)"), Only(Taken(), {"glVertexAttrib2f"}));
}

// A texture gets its name, binding and parameters with its first image; its levels follow under that binding.
TEST_F(Es2Snapshot, WritesTexturesLevelByLevel)
{
    BindTexture(9);
    Es2::_glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_S, GL_CLAMP_TO_EDGE);
    Image(GL_TEXTURE_2D, 0, 2);
    Image(GL_TEXTURE_2D, 1, 1);
    Lines const expected = {"glGenTextures",   "glBindTexture",   "glTexParameteri", "glTexParameteri",
                            "glTexParameteri", "glTexParameteri", "glTexImage2D",    "glTexImage2D",
                            "glActiveTexture", "glBindTexture",   "glActiveTexture", "glBindTexture",
                            "glActiveTexture"};
    EXPECT_EQ(expected, NamesOf(Only(Taken(), {"glGenTextures", "glBindTexture", "glTexParameteri",
                                               "glTexImage2D", "glActiveTexture"})));
}

// All faces of a cube map are uploaded under the binding of the first one's level 0.
TEST_F(Es2Snapshot, BindsACubeMapOnce)
{
    HostAnswers(GL_TEXTURE_BINDING_CUBE_MAP, 9);
    for (GLenum face = 0; face < 6; ++face)
        for (GLint level = 0; level < 2; ++level)
            Image(GL_TEXTURE_CUBE_MAP_POSITIVE_X + face, level, 2 >> level);
    HostAnswers(GL_TEXTURE_BINDING_CUBE_MAP, 0);
    Lines const calls = Only(Taken(), {"glGenTextures", "glBindTexture", "glTexImage2D"});
    ASSERT_EQ(14u, calls.size());
    EXPECT_EQ("glGenTextures(n = 1, textures = {9})", calls[0]);
    EXPECT_EQ("glBindTexture(target = GL_TEXTURE_CUBE_MAP, texture = 9)", calls[1]);
}

// The flag of generated mipmaps lives on the first image, so that they are generated at once behind it.
TEST_F(Es2Snapshot, GeneratesMipmapsBehindTheFirstImage)
{
    BindTexture(9);
    Image(GL_TEXTURE_2D, 0, 2);
    Es2::_glGenerateMipmap(GL_TEXTURE_2D);
    Image(GL_TEXTURE_2D, 1, 1);
    EXPECT_EQ(Lines({"glTexImage2D", "glGenerateMipmap", "glTexImage2D"}),
              NamesOf(Only(Taken(), {"glTexImage2D", "glGenerateMipmap"})));
}

// With the optimisation, a texture that no draw used writes nothing, though the unit's binding is still
// written.
TEST_F(Es2Snapshot, LeavesOutUnusedTexturesWhenOptimised)
{
    BindTexture(9);
    Image(GL_TEXTURE_2D, 0, 2);
    EXPECT_EQ(Lines({"glBindTexture(target = GL_TEXTURE_2D, texture = 9)",
                     "glBindTexture(target = GL_TEXTURE_2D, texture = 9)"}),
              Only(Taken(true), {"glGenTextures", "glTexParameteri", "glTexImage2D", "glBindTexture"}));
    CTraceRecordManager::m_Es2FileState->m_sUsedTextures[9] = 9;
    EXPECT_EQ(1u, Only(Write(true), {"glTexImage2D"}).size());
}

// An image without pixels is written without data.
TEST_F(Es2Snapshot, WritesImagesWithoutPixels)
{
    BindTexture(9);
    Es2::_glTexImage2D(GL_TEXTURE_2D, 0, GL_RGBA, 2, 2, 0, GL_RGBA, GL_UNSIGNED_BYTE, nullptr, 0);
    Lines const calls = Only(Taken(), {"glTexImage2D"});
    ASSERT_EQ(1u, calls.size());
    EXPECT_NE(std::string::npos, calls[0].find("pixels = NULL")) << calls[0];
}

// Framebuffers come behind the textures and renderbuffers that they attach.
TEST_F(Es2Snapshot, WritesFramebuffersBehindTheirAttachments)
{
    GLuint names[] = {21};
    Es2::_glGenRenderbuffers(1, names);
    Es2::_glBindRenderbuffer(GL_RENDERBUFFER, 21);
    Fake().On("glGetRenderbufferParameteriv", [](Call const& call) {
        *call.Pointer<GLint>(2) =
            call.Argument<GLenum>(1) == GL_RENDERBUFFER_INTERNAL_FORMAT ? GL_RGB565 : 16;
    });
    names[0] = 31;
    Es2::_glGenFramebuffers(1, names);
    Es2::_glBindFramebuffer(GL_FRAMEBUFFER, 31);
    Es2::_glFramebufferRenderbuffer(GL_FRAMEBUFFER, GL_COLOR_ATTACHMENT0, GL_RENDERBUFFER, 21);
    Lines const expected = {"glGenRenderbuffers(n = 1, renderbuffers = {21})",
                            "glBindRenderbuffer(target = GL_RENDERBUFFER, renderbuffer = 21)",
                            "glRenderbufferStorage(target = GL_RENDERBUFFER, internalformat = GL_RGB565, "
                            "width = 16, height = 16)",
                            "glGenFramebuffers(n = 1, framebuffers = {31})",
                            "glBindFramebuffer(target = GL_FRAMEBUFFER, framebuffer = 31)",
                            "glFramebufferRenderbuffer(target = GL_FRAMEBUFFER, attachment = "
                            "GL_COLOR_ATTACHMENT0, renderbuffertarget "
                            "= GL_RENDERBUFFER, renderbuffer = 21)",
                            "glBindFramebuffer(target = GL_FRAMEBUFFER, framebuffer = 31)"};
    EXPECT_EQ(expected,
              Only(Taken(), {"glGenRenderbuffers", "glBindRenderbuffer", "glRenderbufferStorage",
                             "glGenFramebuffers", "glBindFramebuffer", "glFramebufferRenderbuffer"}));
}

// Array objects come ahead of the buffers; the end binds the buffers of the current array object.
TEST_F(Es2Snapshot, EndsWithTheBindingsOfTheCurrentArrayObject)
{
    GLubyte const bytes[] = {1, 2, 3, 4};
    HostAnswers(GL_ARRAY_BUFFER_BINDING, 11);
    Es2::_glBindBuffer(GL_ARRAY_BUFFER, 11);
    Es2::_glBufferData(GL_ARRAY_BUFFER, 4, bytes, GL_STATIC_DRAW);
    Es2::_glVertexAttribPointer(0, 2, GL_FLOAT, GL_FALSE, 8, nullptr);
    Es2::_glVertexAttribPointer(2, 3, GL_FLOAT, GL_FALSE, 12, nullptr);  // a gap at 1
    Es2::_glEnableVertexAttribArray(2);
    Lines const calls = Taken();
    Lines const expected = {
        "glBindVertexArrayOES(array = 0)",
        "glBindBuffer(target = GL_ARRAY_BUFFER, buffer = 11)",
        "glVertexAttribPointer(index = 0, size = 2, type = GL_FLOAT, normalized = GL_FALSE, stride = 8, "
        "pointer = "
        "NULL)",
        "glDisableVertexAttribArray(index = 0)",
        "glBindBuffer(target = GL_ARRAY_BUFFER, buffer = 11)",
        "glVertexAttribPointer(index = 2, size = 3, type = GL_FLOAT, normalized = GL_FALSE, stride = 12, "
        "pointer = "
        "NULL)",
        "glEnableVertexAttribArray(index = 2)",
        "glBindBuffer(target = GL_ARRAY_BUFFER, buffer = 11)",
        "glBindBuffer(target = GL_ELEMENT_ARRAY_BUFFER, buffer = 0)",
        "glBindVertexArrayOES(array = 0)",
        "glBindBuffer(target = GL_ARRAY_BUFFER, buffer = 11)",
        "glBufferData(target = GL_ARRAY_BUFFER, size = 4, data = {1, 2, 3, 4}, usage = GL_STATIC_DRAW)",
        "glBindBuffer(target = GL_ARRAY_BUFFER, buffer = 11)",
        "glBindBuffer(target = GL_ELEMENT_ARRAY_BUFFER, buffer = 0)",
        "-- 4"};
    auto const length = static_cast<std::ptrdiff_t>(expected.size());
    ASSERT_GE(calls.size(), expected.size());
    EXPECT_EQ(expected, Lines(calls.end() - length, calls.end()));
}

// What the host has mapped is left mapped for the player.
TEST_F(Es2Snapshot, LeavesMappedBuffersMapped)
{
    GLubyte const bytes[] = {1, 2, 3, 4};
    HostAnswers(GL_ARRAY_BUFFER_BINDING, 11);
    Es2::_glBufferData(GL_ARRAY_BUFFER, 4, bytes, GL_STATIC_DRAW);
    Fake().On("glGetBufferParameteriv", [](Call const& call) { *call.Pointer<GLint>(2) = 1; });
    EXPECT_EQ(Lines({"glBufferData", "glMapBufferOES"}),
              NamesOf(Only(Taken(), {"glBufferData", "glMapBufferOES"})));
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
