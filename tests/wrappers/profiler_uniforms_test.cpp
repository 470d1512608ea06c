// Uniform values, which the alternates of a program get as the program does.
#include "tests/wrappers/tracked.h"

namespace
{

using fakehost::AsWord;
using fakehost::Word;
using Words = std::vector<Word>;

// Program 1 is in use. Its uniform has location 5, and 6 and 7 in the alternates 2 and 3.
class ProfilerUniforms : public Tracked
{
protected:
    ProfilerUniforms()
    {
        Es2::_glCreateProgram(0);
        HostFinds(1, "u", 5);
        HostFinds(2, "u", 6);
        HostFinds(3, "u", 7);
        Es2::_glGetUniformLocation(1, "u", 0);
        Es2::_glUseProgram(1);
    }

    // The calls without their location: this, with each of the three, is what the host gets.
    template <typename... Values>
    void ExpectForwarded(std::string const& name, void (*wrapper)(GLint, Values...), Values... values)
    {
        Fake().Forget();
        wrapper(5, values...);
        std::vector<Words> uses;
        std::vector<Words> uniforms;
        Texts names;
        for (Call const& call : Fake().Calls())
        {
            if (call.name == "glGetError")
                continue;
            names.push_back(call.name);
            (call.name == "glUseProgram" ? uses : uniforms).push_back(call.words);
        }
        EXPECT_EQ((Texts{name, "glUseProgram", name, "glUseProgram", "glUseProgram", name, "glUseProgram"}),
                  names);
        EXPECT_EQ((std::vector<Words>{{2}, {1}, {3}, {1}}), uses);
        EXPECT_EQ(
            (std::vector<Words>{{5, AsWord(values)...}, {6, AsWord(values)...}, {7, AsWord(values)...}}),
            uniforms);
    }
};

// One to four floats and integers, plain.
TEST_F(ProfilerUniforms, PlainValuesReachTheAlternates)
{
    ExpectForwarded("glUniform1f", Es2::_glUniform1f, 1.5f);
    ExpectForwarded("glUniform2f", Es2::_glUniform2f, 1.5f, 2.5f);
    ExpectForwarded("glUniform3f", Es2::_glUniform3f, 1.5f, 2.5f, 3.5f);
    ExpectForwarded("glUniform4f", Es2::_glUniform4f, 1.5f, 2.5f, 3.5f, 4.5f);
    ExpectForwarded("glUniform1i", Es2::_glUniform1i, -1);
    ExpectForwarded("glUniform2i", Es2::_glUniform2i, -1, 2);
    ExpectForwarded("glUniform3i", Es2::_glUniform3i, -1, 2, -3);
    ExpectForwarded("glUniform4i", Es2::_glUniform4i, -1, 2, -3, 4);
}

// Arrays go on with their count and the application's pointer.
TEST_F(ProfilerUniforms, ArraysReachTheAlternates)
{
    GLfloat const floats[16] = {};
    GLint const integers[8] = {};
    ExpectForwarded<GLsizei, GLfloat const*>("glUniform1fv", Es2::_glUniform1fv, 2, floats);
    ExpectForwarded<GLsizei, GLfloat const*>("glUniform2fv", Es2::_glUniform2fv, 2, floats);
    ExpectForwarded<GLsizei, GLfloat const*>("glUniform3fv", Es2::_glUniform3fv, 2, floats);
    ExpectForwarded<GLsizei, GLfloat const*>("glUniform4fv", Es2::_glUniform4fv, 2, floats);
    ExpectForwarded<GLsizei, GLint const*>("glUniform1iv", Es2::_glUniform1iv, 2, integers);
    ExpectForwarded<GLsizei, GLint const*>("glUniform2iv", Es2::_glUniform2iv, 2, integers);
    ExpectForwarded<GLsizei, GLint const*>("glUniform3iv", Es2::_glUniform3iv, 2, integers);
    ExpectForwarded<GLsizei, GLint const*>("glUniform4iv", Es2::_glUniform4iv, 2, integers);
}

// Matrices have a flag besides.
TEST_F(ProfilerUniforms, MatricesReachTheAlternates)
{
    GLfloat const floats[16] = {};
    ExpectForwarded<GLsizei, GLboolean, GLfloat const*>("glUniformMatrix2fv", Es2::_glUniformMatrix2fv, 1,
                                                        GL_TRUE, floats);
    ExpectForwarded<GLsizei, GLboolean, GLfloat const*>("glUniformMatrix3fv", Es2::_glUniformMatrix3fv, 1,
                                                        GL_TRUE, floats);
    ExpectForwarded<GLsizei, GLboolean, GLfloat const*>("glUniformMatrix4fv", Es2::_glUniformMatrix4fv, 1,
                                                        GL_TRUE, floats);
}

// An alternate that does not have the uniform is left out, and one whose location is 0 is not.
TEST_F(ProfilerUniforms, AnAlternateWithoutTheUniformIsLeftOut)
{
    HostFinds(1, "v", 15);
    HostFinds(3, "v", 0);
    Es2::_glGetUniformLocation(1, "v", 0);
    EXPECT_EQ((Texts{"glUniform1i(15, 9)", "glUseProgram(3)", "glUniform1i(0, 9)", "glUseProgram(1)"}),
              HostCallsOf([] { Es2::_glUniform1i(15, 9); }));
    HostFinds(1, "w", 25);
    HostFinds(2, "w", 26);
    Es2::_glGetUniformLocation(1, "w", 0);
    EXPECT_EQ((Texts{"glUniform1i(25, 9)", "glUseProgram(2)", "glUniform1i(26, 9)", "glUseProgram(1)"}),
              HostCallsOf([] { Es2::_glUniform1i(25, 9); }));
}

// Locations that nobody has asked for, and the location of nothing, go no further.
TEST_F(ProfilerUniforms, UnknownLocationsAreNotForwarded)
{
    EXPECT_EQ((Texts{"glUniform1i(8, 9)", "glUniform1i(-1, 9)"}), HostCallsOf([] {
                  Es2::_glUniform1i(8, 9);
                  Es2::_glUniform1i(-1, 9);
              }));
}

// What the host refuses does not reach the alternates.
TEST_F(ProfilerUniforms, ARefusedValueIsNotForwarded)
{
    EXPECT_EQ((Texts{"glUniform1i(5, 9)"}),
              HostCallsOf([this] { Refused([] { Es2::_glUniform1i(5, 9); }); }));
}

// Without a program, or with one that is not known, there are no alternates.
TEST_F(ProfilerUniforms, OnlyAKnownProgramForwards)
{
    for (GLuint program : {0u, 40u})
    {
        Es2::_glUseProgram(program);
        EXPECT_EQ((Texts{"glUniform1i(5, 9)"}), HostCallsOf([] { Es2::_glUniform1i(5, 9); }));
    }
}

// The switches are of no account: the alternates are kept in step at all times, in use or not.
TEST_F(ProfilerUniforms, OverridesAreOfNoAccount)
{
    CProfiler::m_ForceFlatColourFrag = true;
    ExpectForwarded("glUniform1i", Es2::_glUniform1i, 9);
}

}  // namespace
