// Programs, whose alternates are built beside them.
#include "tests/wrappers/tracked.h"

namespace
{

using SContext = CProfiler::SContext;
using SProgram = CProfiler::SProgram;

// A program of the application has name 1, its alternates 2 and 3; the next ones are 4, 5 and 6.
class ProfilerPrograms : public Tracked
{
protected:
    ProfilerPrograms() { Es2::_glCreateProgram(0); }

    static SProgram* Record(GLuint program) { return Context().m_Programs.Find(program); }
    // The words of the colours that flat programs were given.
    static std::vector<std::vector<fakehost::Word>> ColoursOf(GLuint program)
    {
        Fake().Forget();
        Es2::_glLinkProgram(program);
        std::vector<std::vector<fakehost::Word>> colours;
        for (Call const& call : Fake().Calls("glUniform4f"))
            colours.push_back(call.words);
        return colours;
    }
};

// Records of programs and shaders name nothing until the host has made it.
TEST(ProfilerRecords, BeginEmpty)
{
    SProgram const program;
    EXPECT_EQ(0u, program.flatProgram);
    EXPECT_EQ(0, program.flatLocations.Count());
    EXPECT_EQ(10, program.flatLocations.Capacity());
    EXPECT_EQ(0u, program.noDiscardProgram);
    EXPECT_EQ(0, program.noDiscardLocations.Count());
    EXPECT_EQ(10, program.noDiscardLocations.Capacity());
    EXPECT_FALSE(program.bDeleted);
    CProfiler::SShader const shader;
    EXPECT_EQ(0u, shader.rewrittenShader);
    EXPECT_FALSE(shader.bDeleted);
}

// A record that is copied has maps of its own.
TEST(ProfilerRecords, AreCopiedDeeply)
{
    SContext from;
    from.m_Programs[1].flatLocations[5] = 6;
    from.m_FBOs[8][GL_COLOR_ATTACHMENT0][GL_TEXTURE_2D] = 9;
    SContext to;
    to.m_Programs[2].flatProgram = 3;
    to = from;
    from.m_Programs[1].flatLocations[5] = 7;
    from.m_FBOs[8][GL_COLOR_ATTACHMENT0][GL_TEXTURE_2D] = 10;
    EXPECT_EQ(nullptr, to.m_Programs.Find(2));
    EXPECT_EQ(6, to.m_Programs[1].flatLocations[5]);
    EXPECT_EQ(9u, to.m_FBOs[8][GL_COLOR_ATTACHMENT0][GL_TEXTURE_2D]);
}

// Both alternates are there from the beginning, whatever the switches say.
TEST_F(ProfilerPrograms, AProgramGetsItsAlternatesAtItsMaking)
{
    EXPECT_EQ((Texts{"glCreateProgram()", "glCreateProgram()", "glCreateProgram()"}),
              HostCallsOf([] { EXPECT_EQ(4u, Es2::_glCreateProgram(0)); }));
    ASSERT_EQ(2, Context().m_Programs.Count());
    EXPECT_EQ(2u, Record(1)->flatProgram);
    EXPECT_EQ(3u, Record(1)->noDiscardProgram);
    EXPECT_EQ(5u, Record(4)->flatProgram);
    EXPECT_EQ(6u, Record(4)->noDiscardProgram);
    EXPECT_FALSE(Record(4)->bDeleted);
}

// The name of a refused call is none.
TEST_F(ProfilerPrograms, ARefusedProgramHasNoAlternates)
{
    EXPECT_EQ((Texts{"glCreateProgram()"}),
              HostCallsOf([this] { Refused([] { Es2::_glCreateProgram(0); }); }));
    EXPECT_EQ(1, Context().m_Programs.Count());
}

// A host that makes but one of the two leaves the program without a record; the one stays with the host.
TEST_F(ProfilerPrograms, AProgramHasBothAlternatesOrNone)
{
    for (GLuint failing : {21u, 22u})
    {
        GLuint next = 20;
        Fake().On("glCreateProgram", [&](Call const&) {
            Fake().Result("glCreateProgram", next == failing ? 0u : next);
            ++next;
        });
        EXPECT_EQ((Texts{"glCreateProgram()", "glCreateProgram()", "glCreateProgram()"}),
                  HostCallsOf([] { EXPECT_EQ(20u, Es2::_glCreateProgram(0)); }));
        EXPECT_EQ(nullptr, Record(20));
        EXPECT_EQ((Texts{"glLinkProgram(20)"}), HostCallsOf([] { Es2::_glLinkProgram(20); }));
    }
}

// A creation that gives no name gets alternates all the same, and they are kept in step with nothing.
TEST_F(ProfilerPrograms, TheProgramOfNoNameIsNotKeptInStep)
{
    GLuint next = 0;
    Fake().On("glCreateProgram", [&](Call const&) { Fake().Result("glCreateProgram", next++); });
    EXPECT_EQ(0u, Es2::_glCreateProgram(0));
    ASSERT_NE(nullptr, Record(0));
    Record(0)->flatLocations[5] = 6;
    EXPECT_EQ((Texts{"glLinkProgram(0)", "glBindAttribLocation(0, 7, \"a\")", "glUniform1i(5, 9)"}),
              HostCallsOf([] {
                  Es2::_glLinkProgram(0);
                  Es2::_glBindAttribLocation(0, 7, "a");
                  Es2::_glUniform1i(5, 9);
              }));
}

// The record is found, or made together with its alternates, in the current context.
TEST_F(ProfilerPrograms, GetShaderProgramFindsOrMakes)
{
    EXPECT_EQ((Texts{}), HostCallsOf([] { EXPECT_EQ(Record(1), Profiler().GetShaderProgram(1)); }));
    SProgram* made = nullptr;
    EXPECT_EQ((Texts{"glCreateProgram()", "glCreateProgram()"}),
              HostCallsOf([&] { made = Profiler().GetShaderProgram(40); }));
    ASSERT_NE(nullptr, made);
    EXPECT_EQ(Record(40), made);
    EXPECT_EQ(4u, made->flatProgram);
    EXPECT_EQ(5u, made->noDiscardProgram);
    MakeCurrent(0);
    EXPECT_EQ((Texts{}), HostCallsOf([] { EXPECT_EQ(nullptr, Profiler().GetShaderProgram(1)); }));
}

// The alternates have the application's attribute numbers.
TEST_F(ProfilerPrograms, AttributesAreBoundInTheAlternates)
{
    EXPECT_EQ((Texts{"glBindAttribLocation(1, 7, \"a\")", "glBindAttribLocation(2, 7, \"a\")",
                     "glBindAttribLocation(3, 7, \"a\")"}),
              HostCallsOf([] { Es2::_glBindAttribLocation(1, 7, "a"); }));
    EXPECT_EQ((Texts{"glBindAttribLocation(1, 7, \"a\")"}),
              HostCallsOf([this] { Refused([] { Es2::_glBindAttribLocation(1, 7, "a"); }); }));
    EXPECT_EQ((Texts{"glBindAttribLocation(0, 7, \"a\")", "glBindAttribLocation(40, 7, \"a\")"}),
              HostCallsOf([] {
                  Es2::_glBindAttribLocation(0, 7, "a");
                  Es2::_glBindAttribLocation(40, 7, "a");
              }));
}

// An alternate that is not there is left out.
TEST_F(ProfilerPrograms, AMissingAlternateIsLeftOut)
{
    Record(1)->flatProgram = 0;
    EXPECT_EQ((Texts{"glBindAttribLocation(1, 7, \"a\")", "glBindAttribLocation(3, 7, \"a\")"}),
              HostCallsOf([] { Es2::_glBindAttribLocation(1, 7, "a"); }));
    EXPECT_EQ((Texts{"glLinkProgram(1)", "glLinkProgram(3)"}), HostCallsOf([] { Es2::_glLinkProgram(1); }));
    Record(1)->noDiscardProgram = 0;
    EXPECT_EQ((Texts{"glLinkProgram(1)"}), HostCallsOf([] { Es2::_glLinkProgram(1); }));
}

// Both alternates are linked with the program, and the program in use stays in use.
TEST_F(ProfilerPrograms, AlternatesAreLinkedWithTheProgram)
{
    Es2::_glCreateProgram(0);
    Es2::_glUseProgram(4);
    HostFinds(2, "colour", 9);
    // The colour's bits as signed words: 176 / 255, 54 / 255, 0, 1.
    EXPECT_EQ(
        (Texts{"glLinkProgram(1)", "glLinkProgram(2)", "glUseProgram(2)",
               "glGetUniformLocation(2, \"colour\")", "glUniform4f(9, 1060155569, 1046010073, 0, 1065353216)",
               "glUseProgram(4)", "glLinkProgram(3)"}),
        HostCallsOf([] { Es2::_glLinkProgram(1); }));
    EXPECT_EQ((Texts{"glLinkProgram(1)"}), HostCallsOf([this] { Refused([] { Es2::_glLinkProgram(1); }); }));
    EXPECT_EQ((Texts{"glLinkProgram(0)", "glLinkProgram(40)"}), HostCallsOf([] {
                  Es2::_glLinkProgram(0);
                  Es2::_glLinkProgram(40);
              }));
}

// A program's colour is the low three bytes of the product of its names and 7000, also where that wraps.
TEST_F(ProfilerPrograms, AFlatProgramHasAColourOfItsOwn)
{
    HostFinds(2, "colour", 9);
    // 0x0036B0: red 0xB0 / 255, green 0x36 / 255, blue 0, alpha 1
    EXPECT_EQ((std::vector<std::vector<fakehost::Word>>{{9, 0x3F30B0B1, 0x3E58D8D9, 0, 0x3F800000}}),
              ColoursOf(1));
    Es2::_glCreateProgram(0);
    HostFinds(5, "colour", 10);
    // 4 * 5 * 7000 = 0x0222E0: red 0xE0 / 255, green 0x22 / 255, blue 0x02 / 255, alpha 1
    EXPECT_EQ(
        (std::vector<std::vector<fakehost::Word>>{{10, 0x3F60E0E1, 0x3E088889, 0x3C008081, 0x3F800000}}),
        ColoursOf(4));
    m_nextProgram = 100000;
    Es2::_glCreateProgram(0);
    HostFinds(100001, "colour", 0);
    // 100000 * 100001 * 7000 modulo 2^32 = 0x4EDB8700: red 0, green 0x87 / 255, blue 0xDB / 255, alpha 1
    EXPECT_EQ((std::vector<std::vector<fakehost::Word>>{{0, 0, 0x3F078788, 0x3F5BDBDC, 0x3F800000}}),
              ColoursOf(100000));
}

// The alternates' locations are asked for together with the application's, and kept under its own.
TEST_F(ProfilerPrograms, LocationsAreAskedOfTheAlternates)
{
    HostFinds(1, "u", 0);
    HostFinds(2, "u", 6);
    HostFinds(3, "u", 7);
    HostFinds(1, "v", 11);
    HostFinds(3, "v", 13);
    EXPECT_EQ((Texts{"glGetUniformLocation(1, \"u\")", "glGetUniformLocation(2, \"u\")",
                     "glGetUniformLocation(3, \"u\")"}),
              HostCallsOf([] { EXPECT_EQ(0, Es2::_glGetUniformLocation(1, "u", 0)); }));
    EXPECT_EQ(11, Es2::_glGetUniformLocation(1, "v", 0));
    EXPECT_EQ(1, Record(1)->flatLocations.Count()) << "the flat program does not use v";
    EXPECT_EQ(6, *Record(1)->flatLocations.Find(0));
    EXPECT_EQ(2, Record(1)->noDiscardLocations.Count());
    EXPECT_EQ(7, *Record(1)->noDiscardLocations.Find(0));
    EXPECT_EQ(13, *Record(1)->noDiscardLocations.Find(11));
}

// A uniform that the program does not have is not looked for in the alternates.
TEST_F(ProfilerPrograms, ALocationOfNothingIsNotKept)
{
    HostFinds(2, "u", 6);
    HostFinds(3, "u", 7);
    EXPECT_EQ((Texts{"glGetUniformLocation(1, \"u\")"}),
              HostCallsOf([] { EXPECT_EQ(-1, Es2::_glGetUniformLocation(1, "u", 0)); }));
    HostFinds(1, "u", 5);
    EXPECT_EQ((Texts{"glGetUniformLocation(1, \"u\")"}),
              HostCallsOf([this] { Refused([] { Es2::_glGetUniformLocation(1, "u", 0); }); }));
    HostFinds(40, "u", 5);
    EXPECT_EQ((Texts{"glGetUniformLocation(40, \"u\")"}),
              HostCallsOf([] { Es2::_glGetUniformLocation(40, "u", 0); }));
    EXPECT_EQ(0, Record(1)->flatLocations.Count());
    EXPECT_EQ(0, Record(1)->noDiscardLocations.Count());
}

// The program in use is what is put back behind each draw with an alternate.
TEST_F(ProfilerPrograms, TheProgramInUseIsKept)
{
    EXPECT_EQ((Texts{"glUseProgram(1)"}), HostCallsOf([] { Es2::_glUseProgram(1); }));
    EXPECT_EQ(1u, Context().currentProgram);
    Refused([] { Es2::_glUseProgram(4); });
    EXPECT_EQ(1u, Context().currentProgram);
    Es2::_glUseProgram(0);
    EXPECT_EQ(0u, Context().currentProgram);
}

// A program that the host no longer knows goes with its alternates.
TEST_F(ProfilerPrograms, ADeletedProgramTakesItsAlternatesAlong)
{
    EXPECT_EQ((Texts{"glDeleteProgram(1)"}),
              HostCallsOf([this] { Refused([] { Es2::_glDeleteProgram(1); }); }));
    m_programs.erase(1);
    EXPECT_EQ((Texts{"glDeleteProgram(1)", "glIsProgram(1)", "glDeleteProgram(2)", "glDeleteProgram(3)"}),
              HostCallsOf([] { Es2::_glDeleteProgram(1); }));
    EXPECT_EQ(0, Context().m_Programs.Count());
    EXPECT_EQ((Texts{"glDeleteProgram(40)"}), HostCallsOf([] { Es2::_glDeleteProgram(40); }));
}

// A program in use lives on, and its alternates with it, until another one is used.
TEST_F(ProfilerPrograms, ADeletedProgramInUseGoesWithTheNext)
{
    Es2::_glCreateProgram(0);
    Es2::_glUseProgram(1);
    EXPECT_EQ((Texts{"glDeleteProgram(1)", "glIsProgram(1)"}), HostCallsOf([] { Es2::_glDeleteProgram(1); }));
    EXPECT_TRUE(Record(1)->bDeleted);
    EXPECT_EQ((Texts{"glUseProgram(1)", "glIsProgram(1)"}), HostCallsOf([] { Es2::_glUseProgram(1); }));
    ASSERT_NE(nullptr, Record(1)) << "the host still knows it";
    m_programs.erase(1);
    EXPECT_EQ((Texts{"glUseProgram(4)", "glIsProgram(1)", "glDeleteProgram(2)", "glDeleteProgram(3)"}),
              HostCallsOf([] { Es2::_glUseProgram(4); }));
    EXPECT_EQ(nullptr, Record(1));
    EXPECT_EQ(4u, Context().currentProgram);
}

// The record that moves into an erased one's place is tidied in the same walk.
TEST_F(ProfilerPrograms, TidyingPassesOverNone)
{
    for (GLuint program : {4u, 7u, 10u})
        EXPECT_EQ(program, Es2::_glCreateProgram(0));
    for (GLuint program : {1u, 4u, 10u})
        Es2::_glDeleteProgram(program);
    m_programs = {7};
    EXPECT_EQ((Texts{"glUseProgram(0)", "glIsProgram(1)", "glDeleteProgram(2)", "glDeleteProgram(3)",
                     "glIsProgram(10)", "glDeleteProgram(11)", "glDeleteProgram(12)", "glIsProgram(4)",
                     "glDeleteProgram(5)", "glDeleteProgram(6)"}),
              HostCallsOf([] { Es2::_glUseProgram(0); }));
    ASSERT_EQ(1, Context().m_Programs.Count());
    EXPECT_EQ(7u, Context().m_Programs.KeyAt(0));
}

// A sharing context finds the program, and whose it is; what keeps alternates in step does not look there.
TEST_F(ProfilerPrograms, ASharedProgramIsFoundButNotKeptInStep)
{
    Create(0x2000, kContext);
    MakeCurrent(0x2000);
    HostFinds(1, "u", 5);
    SContext* owner = nullptr;
    EXPECT_EQ(Record(1), Profiler().GetProgram(&Context(0x2000), 1, &owner));
    EXPECT_EQ(&Context(), owner);
    EXPECT_EQ((Texts{"glLinkProgram(1)", "glBindAttribLocation(1, 7, \"a\")",
                     "glGetUniformLocation(1, \"u\")", "glUseProgram(1)", "glUniform1i(5, 6)"}),
              HostCallsOf([] {
                  Es2::_glLinkProgram(1);
                  Es2::_glBindAttribLocation(1, 7, "a");
                  Es2::_glGetUniformLocation(1, "u", 0);
                  Es2::_glUseProgram(1);
                  Es2::_glUniform1i(5, 6);
              }));
}

// A lookup that finds nothing names no owner, and one may go without asking for it.
TEST_F(ProfilerPrograms, AMissNamesNoOwner)
{
    Create(0x2000, 0x9000);
    SContext* owner = nullptr;
    EXPECT_EQ(nullptr, Profiler().GetProgram(&Context(0x2000), 1, &owner));
    EXPECT_EQ(nullptr, Profiler().GetProgram(nullptr, 1, &owner));
    EXPECT_EQ(nullptr, owner);
    EXPECT_EQ(Record(1), Profiler().GetProgram(&Context(), 1, nullptr));
    EXPECT_EQ(Record(1), Profiler().GetProgram(&Context(), 1, &owner));
    EXPECT_EQ(&Context(), owner);
}

// A program that a sharing context deletes leaves the records of its owner.
TEST_F(ProfilerPrograms, ASharedProgramIsDeletedAtItsOwner)
{
    Create(0x2000, kContext);
    MakeCurrent(0x2000);
    m_programs.erase(1);
    EXPECT_EQ((Texts{"glDeleteProgram(1)", "glIsProgram(1)", "glDeleteProgram(2)", "glDeleteProgram(3)"}),
              HostCallsOf([] { Es2::_glDeleteProgram(1); }));
    EXPECT_EQ(0, Context().m_Programs.Count());
}

// Records of the share group are tidied, too; a context that is not known ends the walk.
TEST_F(ProfilerPrograms, TidyingGoesThroughTheShareGroup)
{
    Es2::_glDeleteProgram(1);
    m_programs.erase(1);
    Create(0x3000, 0x9000);
    MakeCurrent(0x3000);
    EXPECT_EQ((Texts{"glUseProgram(0)"}), HostCallsOf([] { Es2::_glUseProgram(0); }));
    Create(0x2000, kContext);
    MakeCurrent(0x2000);
    EXPECT_EQ((Texts{"glUseProgram(0)", "glIsProgram(1)", "glDeleteProgram(2)", "glDeleteProgram(3)"}),
              HostCallsOf([] { Es2::_glUseProgram(0); }));
    EXPECT_EQ(0, Context().m_Programs.Count());
    EXPECT_EQ((Texts{}), HostCallsOf([] { Profiler().TidyupDeadShadersAndPrograms(nullptr); }));
}

}  // namespace
