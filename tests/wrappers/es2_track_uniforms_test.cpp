// What the shadow keeps of uniform values.
#include "tests/wrappers/shadow.h"

class TrackUniforms : public Shadow
{
protected:
    TrackUniforms()
    {
        State().m_sUsedProgram.name = 9;
        for (int i = 0; i < 32; ++i)
        {
            m_floats[i] = static_cast<GLfloat>(i + 1);
            m_ints[i] = i + 1;
        }
    }
    static UniformDefinition& Kept() { return State().m_sUniformMap[9][4]; }
    static void ExpectFloats(uint32_t components, int type, std::vector<GLfloat> const& values)
    {
        EXPECT_EQ(components, Kept().numValues);
        EXPECT_EQ(type, Kept().valueType);
        ASSERT_EQ(values.size(), Kept().afValues.m_ui32Count);
        EXPECT_EQ(values, std::vector<GLfloat>(Kept().afValues.m_pData,
                                               Kept().afValues.m_pData + Kept().afValues.m_ui32Count));
    }
    static void ExpectInts(uint32_t components, std::vector<GLint> const& values)
    {
        EXPECT_EQ(components, Kept().numValues);
        EXPECT_EQ(0, Kept().valueType);
        ASSERT_EQ(values.size(), Kept().aiValues.m_ui32Count);
        EXPECT_EQ(values, std::vector<GLint>(Kept().aiValues.m_pData,
                                             Kept().aiValues.m_pData + Kept().aiValues.m_ui32Count));
    }

    GLfloat m_floats[32];
    GLint m_ints[32];
};

// One element of one to four components.
TEST_F(TrackUniforms, SingleValuesAreKept)
{
    Es2::_glUniform1f(4, 1);
    ExpectFloats(1, 1, {1});
    Es2::_glUniform2f(4, 1, 2);
    ExpectFloats(2, 1, {1, 2});
    Es2::_glUniform3f(4, 1, 2, 3);
    ExpectFloats(3, 1, {1, 2, 3});
    Es2::_glUniform4f(4, 1, 2, 3, 4);
    ExpectFloats(4, 1, {1, 2, 3, 4});
    Es2::_glUniform1i(4, 1);
    ExpectInts(1, {1});
    Es2::_glUniform2i(4, 1, 2);
    ExpectInts(2, {1, 2});
    Es2::_glUniform3i(4, 1, 2, 3);
    ExpectInts(3, {1, 2, 3});
    Es2::_glUniform4i(4, 1, 2, 3, 4);
    ExpectInts(4, {1, 2, 3, 4});
}

// Arrays: as many elements as the call says.
TEST_F(TrackUniforms, ArraysAreKept)
{
    Es2::_glUniform1fv(4, 3, m_floats);
    ExpectFloats(1, 1, {1, 2, 3});
    Es2::_glUniform2fv(4, 2, m_floats);
    ExpectFloats(2, 1, {1, 2, 3, 4});
    Es2::_glUniform3fv(4, 1, m_floats);
    ExpectFloats(3, 1, {1, 2, 3});
    Es2::_glUniform4fv(4, 2, m_floats);
    ExpectFloats(4, 1, {1, 2, 3, 4, 5, 6, 7, 8});
    Es2::_glUniform1iv(4, 3, m_ints);
    ExpectInts(1, {1, 2, 3});
    Es2::_glUniform2iv(4, 2, m_ints);
    ExpectInts(2, {1, 2, 3, 4});
    Es2::_glUniform3iv(4, 1, m_ints);
    ExpectInts(3, {1, 2, 3});
    Es2::_glUniform4iv(4, 2, m_ints);
    ExpectInts(4, {1, 2, 3, 4, 5, 6, 7, 8});
}

// Matrices have the square of their order as components, and a kind of their own.
TEST_F(TrackUniforms, MatricesAreKept)
{
    Es2::_glUniformMatrix2fv(4, 1, GL_FALSE, m_floats);
    ExpectFloats(4, 2, std::vector<GLfloat>(m_floats, m_floats + 4));
    Es2::_glUniformMatrix3fv(4, 2, GL_FALSE, m_floats);
    ExpectFloats(9, 2, std::vector<GLfloat>(m_floats, m_floats + 18));
    Es2::_glUniformMatrix4fv(4, 2, GL_TRUE, m_floats);
    ExpectFloats(16, 2, std::vector<GLfloat>(m_floats, m_floats + 32));
}

// A new value replaces the old one of its kind.
TEST_F(TrackUniforms, ANewValueReplacesTheOld)
{
    Es2::_glUniform4fv(4, 2, m_floats);
    Es2::_glUniform1i(4, 7);
    Es2::_glUniform1f(4, 8);
    ExpectFloats(1, 1, {8});
    EXPECT_EQ(1u, Kept().aiValues.m_ui32Count);
}

// A count of nothing, and a null array, leave a record without values.
TEST_F(TrackUniforms, NothingIsReadForNothing)
{
    Es2::_glUniform4fv(4, 0, m_floats);
    ExpectFloats(4, 1, {});
    Es2::_glUniform4fv(4, -1, m_floats);
    ExpectFloats(4, 1, {});
    Es2::_glUniform2iv(4, 3, nullptr);
    ExpectInts(2, {});
}

// A value belongs to the program in use, and tells nothing of its name: that is for glGetUniformLocation.
TEST_F(TrackUniforms, AValueKnowsNoName)
{
    Es2::_glUniform1f(4, 1);
    EXPECT_EQ(0u, Kept().program);
    EXPECT_EQ(0, Kept().location);
    EXPECT_STREQ("", Kept().name.c_str());
}

// A uniform that is set ahead of any glUseProgram goes to program 0.
TEST_F(TrackUniforms, WithoutAProgramTheMapIsThatOfProgramZero)
{
    State().m_sUsedProgram = {};
    Es2::_glUniform1f(4, 1);
    ASSERT_NE(nullptr, State().m_sUniformMap.Find(0));
    EXPECT_NE(nullptr, State().m_sUniformMap[0].Find(4));
    EXPECT_EQ(nullptr, State().m_sUniformMap.Find(9));
}

// A location of -1, which GL ignores, is a key like any other.
TEST_F(TrackUniforms, TheLocationOfNothingIsAKey)
{
    Es2::_glUniform1f(-1, 1);
    EXPECT_NE(nullptr, State().m_sUniformMap[9].Find(-1));
}

// Uniforms pass the plain gate: single ones, arrays and matrices.
TEST_F(TrackUniforms, UniformsPassThePlainGate)
{
    auto const isTracked = [] {
        bool const tracked = State().m_sUniformMap.Count() > 0;
        State().m_sUniformMap = {};
        return tracked;
    };
    ExpectPlainGate([] { Es2::_glUniform1f(4, 1); }, isTracked);
    ExpectPlainGate([] { Es2::_glUniform3i(4, 1, 2, 3); }, isTracked);
    ExpectPlainGate([this] { Es2::_glUniform2fv(4, 1, m_floats); }, isTracked);
    ExpectPlainGate([this] { Es2::_glUniform4iv(4, 1, m_ints); }, isTracked);
    ExpectPlainGate([this] { Es2::_glUniformMatrix4fv(4, 1, GL_FALSE, m_floats); }, isTracked);
}

// On purpose: values that reach a program by its name stay out of the shadow.
TEST_F(TrackUniforms, ProgramUniformsAreNotKept)
{
    Es2::_glProgramUniform1fEXT(9, 4, 1);
    Es2::_glProgramUniform4fvEXT(9, 4, 1, m_floats);
    Es2::_glProgramUniformMatrix4fvEXT(9, 4, 1, GL_FALSE, m_floats);
    EXPECT_EQ(0, State().m_sUniformMap.Count());
}
