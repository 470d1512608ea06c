// What the shadow keeps of GLES2 shaders and programs.
#include "tests/wrappers/shadow.h"

class TrackPrograms : public Shadow
{
protected:
    static ShaderDefinition* FindShader(GLuint name) { return State().m_sShaderMap.Find(name); }
    static ProgramDefinition* Find(GLuint name) { return State().m_sProgramMap.Find(name); }
    static void MakeShader(GLenum type, GLuint name)
    {
        Fake().Result("glCreateShader", name);
        Es2::_glCreateShader(type, 0);
    }
    static void MakeProgram(GLuint name)
    {
        Fake().Result("glCreateProgram", name);
        Es2::_glCreateProgram(0);
    }
    static bool HasUniforms(GLuint program) { return State().m_sUniformMap.Find(program) != nullptr; }
    static bool HasPre(GLuint program) { return State().m_sPreAttribMap.Find(program) != nullptr; }
    static bool HasPost(GLuint program) { return State().m_sPostAttribMap.Find(program) != nullptr; }
};

// A lookup of program 0 always hits.
TEST_F(TrackPrograms, ProgramZeroIsThereFromTheStart)
{
    ASSERT_NE(nullptr, Find(0));
    EXPECT_EQ(0u, Find(0)->name);
    EXPECT_EQ(1, State().m_sProgramMap.Count());
}

// A created shader has a record with its type, a created program one with its name.
TEST_F(TrackPrograms, CreatedObjectsHaveRecords)
{
    MakeShader(GL_FRAGMENT_SHADER, 7);
    MakeProgram(9);
    ASSERT_TRUE(FindShader(7) && Find(9));
    EXPECT_EQ(7u, FindShader(7)->name);
    EXPECT_EQ(0x8B30u, FindShader(7)->type);
    EXPECT_FALSE(FindShader(7)->bCompiled || FindShader(7)->bDeleted);
    EXPECT_EQ(9u, Find(9)->name);
    EXPECT_FALSE(Find(9)->bLinked);
}

// Both pass the plain gate.
TEST_F(TrackPrograms, CreatingPassesThePlainGate)
{
    ExpectPlainGate([] { MakeShader(GL_VERTEX_SHADER, 7); }, [] { return FindShader(7) != nullptr; });
    ExpectPlainGate([] { MakeProgram(9); }, [] { return Find(9) != nullptr; });
}

// Replayed calls carry the name that the object had: it is the result where the host is not called.
TEST_F(TrackPrograms, ReplayedCallsCarryTheName)
{
    WithoutHost([] {
        EXPECT_EQ(7u, Es2::_glCreateShader(GL_VERTEX_SHADER, 7));
        EXPECT_EQ(9u, Es2::_glCreateProgram(9));
        EXPECT_EQ(-1, Es2::_glGetUniformLocation(9, "u", 0xFFFFFFFF));
    });
    EXPECT_EQ(Joined(Expected(2027, U32(0), U32(7), U32(0x8B31)), Expected(2026, U32(0), U32(9))), [this] {
        Bytes all = Written();
        return Bytes(all.begin(), all.begin() + 18 + 14);
    }());
}

// The texts of a shader are joined, and replace the ones before.
TEST_F(TrackPrograms, SourcesAreJoined)
{
    char const* const texts[] = {"void ", nullptr, "main"};
    Es2::_glShaderSource(7, 3, texts, nullptr);
    EXPECT_STREQ("void main", FindShader(7)->source.c_str());
    Es2::_glShaderSource(7, 1, texts, nullptr);
    EXPECT_STREQ("void ", FindShader(7)->source.c_str());
}

// On purpose: lengths are not looked at. A text is read up to its terminator, beyond its length.
TEST_F(TrackPrograms, SourcesIgnoreTheirLengths)
{
    char const* const texts[] = {"void main", "() {}"};
    GLint const lengths[] = {4, -1};
    Es2::_glShaderSource(7, 2, texts, lengths);
    EXPECT_STREQ("void main() {}", FindShader(7)->source.c_str());
}

// Sources are contents: they pass the data gate.
TEST_F(TrackPrograms, SourcesPassTheDataGate)
{
    char const* const text = "void main";
    ExpectDataGate([&] { Es2::_glShaderSource(7, 1, &text, nullptr); },
                   [] { return FindShader(7) != nullptr; });
}

// A deleted shader keeps its record, marked.
TEST_F(TrackPrograms, ADeletedShaderIsMarked)
{
    MakeShader(GL_VERTEX_SHADER, 7);
    ExpectPlainGate([] { Es2::_glDeleteShader(7); }, [] { return FindShader(7)->bDeleted; });
    EXPECT_EQ(7u, FindShader(7)->name);
}

// A shader goes into the slot of its type, and leaves it when it is detached.
TEST_F(TrackPrograms, ShadersHaveSlots)
{
    MakeShader(GL_VERTEX_SHADER, 7);
    MakeShader(GL_FRAGMENT_SHADER, 8);
    MakeProgram(9);
    ExpectPlainGate([] { Es2::_glAttachShader(9, 7); }, [] { return Find(9)->vertShaderName == 7; });
    Es2::_glAttachShader(9, 8);
    EXPECT_EQ(7u, Find(9)->vertShaderName);
    EXPECT_EQ(8u, Find(9)->fragShaderName);
    ExpectPlainGate([] { Es2::_glDetachShader(9, 8); }, [] { return Find(9)->fragShaderName == 0; });
    EXPECT_EQ(7u, Find(9)->vertShaderName);
    // A shader of unknown type has no slot.
    Es2::_glAttachShader(9, 55);
    EXPECT_EQ(7u, Find(9)->vertShaderName);
    EXPECT_EQ(0u, Find(9)->fragShaderName);
}

// A bound location is put beside what the last link brought into force.
TEST_F(TrackPrograms, ABoundLocationWaitsForTheLink)
{
    ExpectPlainGate([] { Es2::_glBindAttribLocation(9, 3, "normal"); }, [] { return HasPost(9); });
    ProgramAttribute const& attribute = State().m_sPostAttribMap[9][3];
    EXPECT_TRUE(attribute.bDirectBind);
    EXPECT_EQ(3, attribute.location);
    EXPECT_STREQ("normal", attribute.name.c_str());
    EXPECT_EQ(0, attribute.numValues);
    EXPECT_FALSE(HasPre(9));
}

// A link marks the program, forgets its uniforms and copies all attributes into force with their values.
TEST_F(TrackPrograms, ALinkBringsAttributesIntoForce)
{
    MakeProgram(9);
    Es2::_glBindAttribLocation(9, 3, "normal");
    State().m_sPostAttribMap[9][3].numValues = 1;
    State().m_sPostAttribMap[9][3].afValues.Append(0.5f);
    Es2::_glBindAttribLocation(9, 1, "color");
    Es2::_glGetUniformLocation(9, "u", 0);
    ExpectPlainGate([] { Es2::_glLinkProgram(9); }, [] { return Find(9)->bLinked; });
    EXPECT_FALSE(HasUniforms(9));
    auto const& inForce = State().m_sPreAttribMap[9];
    ASSERT_EQ(2, inForce.Count());
    EXPECT_EQ(3, inForce.KeyAt(0));
    EXPECT_STREQ("normal", inForce.ValueAt(0).name.c_str());
    EXPECT_EQ(1, inForce.ValueAt(0).numValues);
    ASSERT_EQ(1u, inForce.ValueAt(0).afValues.m_ui32Count);
    EXPECT_EQ(0.5f, inForce.ValueAt(0).afValues.m_pData[0]);
    EXPECT_EQ(1, inForce.KeyAt(1));
    EXPECT_EQ(2, State().m_sPostAttribMap[9].Count());
}

// A relink forgets all uniform records; they come back through new calls only.
TEST_F(TrackPrograms, ARelinkForgetsTheUniforms)
{
    MakeProgram(9);
    Es2::_glLinkProgram(9);
    Es2::_glUseProgram(9);
    Es2::_glUniform1i(4, 1);
    EXPECT_TRUE(HasUniforms(9));
    Es2::_glLinkProgram(9);
    EXPECT_FALSE(HasUniforms(9));
    Es2::_glUniform1i(4, 1);
    EXPECT_TRUE(HasUniforms(9));
}

// The program in use is a copy, taken at glUseProgram and refreshed when it is linked.
TEST_F(TrackPrograms, TheProgramInUseIsACopy)
{
    MakeShader(GL_VERTEX_SHADER, 7);
    MakeProgram(9);
    MakeProgram(10);
    ExpectPlainGate([] { Es2::_glUseProgram(9); }, [] { return State().m_sUsedProgram.name == 9; });
    Es2::_glAttachShader(9, 7);
    EXPECT_EQ(0u, State().m_sUsedProgram.vertShaderName);
    Es2::_glLinkProgram(10);
    EXPECT_EQ(9u, State().m_sUsedProgram.name);
    EXPECT_FALSE(State().m_sUsedProgram.bLinked);
    Es2::_glLinkProgram(9);
    EXPECT_EQ(7u, State().m_sUsedProgram.vertShaderName);
    EXPECT_TRUE(State().m_sUsedProgram.bLinked);
}

// A deleted program loses its uniforms, its record and the attributes set since its link. On purpose: those
// in force stay.
TEST_F(TrackPrograms, ADeletedProgramKeepsWhatWasInForce)
{
    MakeProgram(9);
    Es2::_glBindAttribLocation(9, 3, "normal");
    Es2::_glLinkProgram(9);
    Es2::_glGetUniformLocation(9, "u", 0);
    ExpectPlainGate([] { Es2::_glDeleteProgram(9); }, [] { return Find(9) == nullptr; });
    EXPECT_FALSE(HasUniforms(9));
    EXPECT_FALSE(HasPost(9));
    EXPECT_TRUE(HasPre(9));
    EXPECT_FALSE(State().m_bDeleteUsedProgram);
}

// The program in use stays in use when it is deleted; its attributes go with the next glUseProgram.
TEST_F(TrackPrograms, ADeletedProgramInUseGoesWithTheNext)
{
    MakeProgram(9);
    Es2::_glBindAttribLocation(9, 3, "normal");
    Es2::_glLinkProgram(9);
    Es2::_glUseProgram(9);
    Es2::_glDeleteProgram(9);
    EXPECT_TRUE(State().m_bDeleteUsedProgram);
    EXPECT_EQ(9u, State().m_sUsedProgram.name);
    EXPECT_TRUE(State().m_sUsedProgram.bLinked);
    EXPECT_TRUE(HasPre(9));
    Es2::_glUseProgram(0);
    EXPECT_FALSE(State().m_bDeleteUsedProgram);
    EXPECT_FALSE(HasPre(9));
    EXPECT_EQ(0u, State().m_sUsedProgram.name);
}

// A uniform's location gives its record program, location and name; its value is left alone.
TEST_F(TrackPrograms, AUniformLocationNamesTheRecord)
{
    MakeProgram(9);
    Es2::_glUseProgram(9);
    Es2::_glUniform2f(4, 0.25f, 0.5f);
    Fake().Result("glGetUniformLocation", 4);
    EXPECT_EQ(4, Es2::_glGetUniformLocation(9, "scale", 0));
    UniformDefinition const& uniform = State().m_sUniformMap[9][4];
    EXPECT_EQ(9u, uniform.program);
    EXPECT_EQ(4, uniform.location);
    EXPECT_STREQ("scale", uniform.name.c_str());
    EXPECT_EQ(2u, uniform.numValues);
    EXPECT_EQ(1, uniform.valueType);
    EXPECT_EQ(2u, uniform.afValues.m_ui32Count);
}

// A location that was only asked for has no value: 9999 says so.
TEST_F(TrackPrograms, AUniformWithoutValueIsUnset)
{
    ExpectPlainGate([] { Es2::_glGetUniformLocation(9, "scale", 0); }, [] { return HasUniforms(9); });
    EXPECT_EQ(9999, State().m_sUniformMap[9][0].valueType);
    EXPECT_EQ(0u, State().m_sUniformMap[9][0].numValues);
}

// Null names are taken for empty ones.
TEST_F(TrackPrograms, NullNamesAreEmpty)
{
    Es2::_glBindAttribLocation(9, 3, nullptr);
    Es2::_glGetUniformLocation(9, nullptr, 0);
    EXPECT_STREQ("", State().m_sPostAttribMap[9][3].name.c_str());
    EXPECT_STREQ("", State().m_sUniformMap[9][0].name.c_str());
}
