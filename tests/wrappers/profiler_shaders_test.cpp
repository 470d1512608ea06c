// Shaders, and what the alternates of programs are built from.
#include "tests/wrappers/tracked.h"

namespace
{

using SShader = CProfiler::SShader;

// The application's fragment shader is 51, and its form without discard 52; its program is 1, whose
// alternates are 2 and 3.
class ProfilerShaders : public Tracked
{
protected:
    static constexpr char const* kDiscards = " discard;";
    static constexpr char const* kRewritten = " b_tier4_1974_tier5_1975 = true; return;";

    ProfilerShaders()
    {
        Es2::_glCreateProgram(0);
        Es2::_glCreateShader(GL_FRAGMENT_SHADER, 0);
    }

    static SShader* Record(GLuint shader, uintptr_t context = kContext)
    {
        return Context(context).m_Shaders.Find(shader);
    }
    static void Source(GLuint shader, char const* text) { Es2::_glShaderSource(shader, 1, &text, nullptr); }
    // The rewritten form's text; empty where there is none.
    std::string RewrittenFrom(GLsizei count, char const* const* strings, GLint const* lengths)
    {
        Es2::_glShaderSource(51, count, strings, lengths);
        SShader const* const record = Record(51);
        return record ? m_sources[record->rewrittenShader] : "";
    }
};

// A fragment shader with a discard gets a form without.
TEST_F(ProfilerShaders, ADiscardIsRewritten)
{
    // GL_SHADER_TYPE, GL_FRAGMENT_SHADER
    EXPECT_EQ((Texts{"glShaderSource(51, 1, strings)", "glGetShaderiv(51, 35663)", "glCreateShader(35632)",
                     "glShaderSource(52, 1, strings)"}),
              HostCallsOf([] { Source(51, kDiscards); }));
    EXPECT_EQ(0u, Fake().Calls("glShaderSource")[1].words[3]) << "no lengths";
    EXPECT_EQ(kDiscards, m_sources[51]) << "the application's is let be";
    EXPECT_EQ(kRewritten, m_sources[52]);
    ASSERT_EQ(1, Context().m_Shaders.Count());
    EXPECT_EQ(52u, Record(51)->rewrittenShader);
    EXPECT_FALSE(Record(51)->bDeleted);
}

// Any other source leaves no record.
TEST_F(ProfilerShaders, WithoutADiscardThereIsNoRecord)
{
    EXPECT_EQ((Texts{"glShaderSource(51, 1, strings)", "glGetShaderiv(51, 35663)"}),
              HostCallsOf([] { Source(51, "void main() {}"); }));
    Es2::_glCreateShader(GL_VERTEX_SHADER, 0);
    EXPECT_EQ((Texts{"glShaderSource(52, 1, strings)", "glGetShaderiv(52, 35663)"}),
              HostCallsOf([] { Source(52, kDiscards); }));
    EXPECT_EQ((Texts{"glShaderSource(0, 1, strings)"}), HostCallsOf([] { Source(0, kDiscards); }));
    EXPECT_EQ((Texts{"glShaderSource(51, 1, strings)"}),
              HostCallsOf([this] { Refused([] { Source(51, kDiscards); }); }));
    EXPECT_EQ(0, Context().m_Shaders.Count());
}

// A second source without discard leaves the old form in force.
TEST_F(ProfilerShaders, ASourceWithoutDiscardKeepsTheOldForm)
{
    Source(51, kDiscards);
    Source(51, "void main() {}");
    EXPECT_EQ(52u, Record(51)->rewrittenShader);
    Es2::_glAttachShader(1, 51);
    EXPECT_EQ(52u, Fake().Calls("glAttachShader").back().Argument<GLuint>(1));
}

// A second rewrite takes the record, and leaves the first form with the host.
TEST_F(ProfilerShaders, ASecondRewriteDeletesNothing)
{
    Source(51, kDiscards);
    Record(51)->bDeleted = true;
    EXPECT_EQ((Texts{"glShaderSource(51, 1, strings)", "glGetShaderiv(51, 35663)", "glCreateShader(35632)",
                     "glShaderSource(53, 1, strings)"}),
              HostCallsOf([] { Source(51, kDiscards); }));
    EXPECT_EQ(1, Context().m_Shaders.Count());
    EXPECT_EQ(53u, Record(51)->rewrittenShader);
    EXPECT_FALSE(Record(51)->bDeleted);
}

// Without lengths there is only the first string, however many there are.
TEST_F(ProfilerShaders, WithoutLengthsOnlyTheFirstStringIsSeen)
{
    char const* const strings[] = {kDiscards, " float x;"};
    EXPECT_EQ(kRewritten, RewrittenFrom(2, strings, nullptr));
    char const* const reversed[] = {" float x;", kDiscards};
    Es2::_glCreateShader(GL_FRAGMENT_SHADER, 0);
    Es2::_glShaderSource(53, 2, reversed, nullptr);
    EXPECT_EQ(nullptr, Record(53));
}

// Behind the first, strings are found by the sum of the lengths up to them: here 0, 1, 10, 11, and then none.
TEST_F(ProfilerShaders, StringsAreFoundByASumOfLengths)
{
    auto const* const wild = reinterpret_cast<char const*>(1);
    char const* const strings[] = {"a",  " discard;", wild, wild, wild, wild, wild,
                                   wild, wild,        wild, "k",  "lm", wild, wild};
    GLint const lengths[] = {1, 9, 1, 1, 5, 5, 5, 5, 5, 5, -1, 1};
    // The host sees them all: only the profiler's walk is of interest here.
    EXPECT_EQ("a b_tier4_1974_tier5_1975 = true; return;kl", RewrittenFrom(12, strings, lengths));
}

// Terminated strings have no lengths, and lead the walk below the array.
TEST_F(ProfilerShaders, NegativeLengthsMeanTerminatedStrings)
{
    auto const* const wild = reinterpret_cast<char const*>(1);
    char const* const strings[] = {wild, wild, kDiscards, wild, wild};
    GLint const lengths[] = {-1, -1, -1};
    EXPECT_EQ(kRewritten, RewrittenFrom(3, strings + 2, lengths));
}

// A sum that would leave the numbers stays outside the array.
TEST_F(ProfilerShaders, LengthsMayBeHuge)
{
    char const* const strings[] = {kDiscards, "x", "y", "z"};
    GLint const lengths[] = {0x7FFFFFFF, 0x7FFFFFFF, 2, 1};
    Fake().On("glShaderSource", [this](Call const& call) {
        if (call.Argument<GLuint>(0) != 51)
            m_sources[call.Argument<GLuint>(0)] = *call.Pointer<char const*>(2);
    });
    EXPECT_EQ(kRewritten, RewrittenFrom(4, strings, lengths));
}

// A string with a length need not end, and one with a longer length ends at its terminator.
TEST_F(ProfilerShaders, LengthsBoundWhatIsRead)
{
    char const text[] = {' ', 'd', 'i', 's', 'c', 'a', 'r', 'd', ';', 'x', 'y'};
    char const* const strings[] = {text};
    GLint const lengths[] = {9};
    EXPECT_EQ(kRewritten, RewrittenFrom(1, strings, lengths));
    GLint const longer[] = {10};
    EXPECT_EQ(kRewritten, RewrittenFrom(1, &kDiscards, longer));
}

// Missing strings, and none at all, are nobody's source.
TEST_F(ProfilerShaders, MissingStringsAreLeftOut)
{
    char const* const none[] = {nullptr, kDiscards};
    GLint const lengths[] = {1, 9};
    EXPECT_EQ(kRewritten, RewrittenFrom(2, none, lengths));
    Es2::_glCreateShader(GL_FRAGMENT_SHADER, 0);
    EXPECT_EQ((Texts{"glShaderSource(53, 0, strings)", "glShaderSource(53, -1, strings)",
                     "glShaderSource(53, 1, strings)"}),
              HostCallsOf([] {
                  Es2::_glShaderSource(53, 0, &kDiscards, nullptr);
                  Es2::_glShaderSource(53, -1, &kDiscards, nullptr);
                  Es2::_glShaderSource(53, 1, nullptr, nullptr);
              }));
    EXPECT_EQ(nullptr, Record(53));
}

// The form without discard is compiled with the shader.
TEST_F(ProfilerShaders, TheRewrittenFormIsCompiledToo)
{
    // The question in between is the one of the counters.
    EXPECT_EQ((Texts{"glCompileShader(51)", "glGetShaderiv(51, 35663)"}),
              HostCallsOf([] { Es2::_glCompileShader(51); }));
    Source(51, kDiscards);
    EXPECT_EQ((Texts{"glCompileShader(51)", "glGetShaderiv(51, 35663)", "glCompileShader(52)"}),
              HostCallsOf([] { Es2::_glCompileShader(51); }));
    EXPECT_EQ((Texts{"glCompileShader(51)"}),
              HostCallsOf([this] { Refused([] { Es2::_glCompileShader(51); }); }));
    EXPECT_EQ((Texts{"glCompileShader(0)"}), HostCallsOf([] { Es2::_glCompileShader(0); }));
}

// The flat program gets the context's one flat shader, the other alternate the application's.
TEST_F(ProfilerShaders, FragmentShadersAreReplacedInTheFlatProgram)
{
    EXPECT_EQ((Texts{"glAttachShader(1, 51)", "glGetShaderiv(51, 35663)", "glCreateShader(35632)",
                     "glShaderSource(52, 1, strings)", "glCompileShader(52)", "glAttachShader(2, 52)",
                     "glAttachShader(3, 51)"}),
              HostCallsOf([] { Es2::_glAttachShader(1, 51); }));
    EXPECT_EQ(0u, Fake().Calls("glShaderSource")[0].words[3]) << "no lengths";
    EXPECT_EQ("\t\t\t\t\t\t\tuniform lowp vec4 colour;\t\t\t\t\t\t\tvoid main (void)\t\t\t\t\t\t\t{"
              "\t\t\t\t\t\t\tgl_FragColor = colour;\t\t\t\t\t\t\t}",
              m_sources[52]);
    EXPECT_EQ(52u, Context().flatFragShader);
    Es2::_glCreateProgram(0);
    EXPECT_EQ((Texts{"glAttachShader(4, 51)", "glGetShaderiv(51, 35663)", "glAttachShader(5, 52)",
                     "glAttachShader(6, 51)"}),
              HostCallsOf([] { Es2::_glAttachShader(4, 51); }));
}

// Where a shader was rewritten, that form is attached in its place.
TEST_F(ProfilerShaders, TheRewrittenFormIsAttached)
{
    Source(51, kDiscards);
    EXPECT_EQ((Texts{"glAttachShader(1, 51)", "glGetShaderiv(51, 35663)", "glCreateShader(35632)",
                     "glShaderSource(53, 1, strings)", "glCompileShader(53)", "glAttachShader(2, 53)",
                     "glAttachShader(3, 52)"}),
              HostCallsOf([] { Es2::_glAttachShader(1, 51); }));
}

// Any other shader is the alternates' as well.
TEST_F(ProfilerShaders, VertexShadersAreAttachedAsTheyAre)
{
    Es2::_glCreateShader(GL_VERTEX_SHADER, 0);
    EXPECT_EQ((Texts{"glAttachShader(1, 52)", "glGetShaderiv(52, 35663)", "glAttachShader(2, 52)",
                     "glAttachShader(3, 52)"}),
              HostCallsOf([] { Es2::_glAttachShader(1, 52); }));
    EXPECT_EQ(0u, Context().flatFragShader);
}

// A program of unknown origin gets its alternates when a shader comes to it.
TEST_F(ProfilerShaders, AnUnknownProgramGetsAlternatesAtTheFirstShader)
{
    Es2::_glCreateShader(GL_VERTEX_SHADER, 0);
    EXPECT_EQ((Texts{"glAttachShader(40, 52)", "glCreateProgram()", "glCreateProgram()",
                     "glGetShaderiv(52, 35663)", "glAttachShader(4, 52)", "glAttachShader(5, 52)"}),
              HostCallsOf([] { Es2::_glAttachShader(40, 52); }));
    EXPECT_NE(nullptr, Context().m_Programs.Find(40));
}

// Names of nothing, and calls that the host refused, attach nothing.
TEST_F(ProfilerShaders, NothingIsAttachedToNothing)
{
    EXPECT_EQ((Texts{"glAttachShader(0, 51)", "glAttachShader(1, 0)"}), HostCallsOf([] {
                  Es2::_glAttachShader(0, 51);
                  Es2::_glAttachShader(1, 0);
              }));
    EXPECT_EQ((Texts{"glAttachShader(1, 51)"}),
              HostCallsOf([this] { Refused([] { Es2::_glAttachShader(1, 51); }); }));
    Fake().On("glCreateProgram", [](Call const&) { Fake().Result("glCreateProgram", 0u); });
    EXPECT_EQ((Texts{"glAttachShader(40, 51)", "glCreateProgram()", "glCreateProgram()"}),
              HostCallsOf([] { Es2::_glAttachShader(40, 51); }));
}

// A host that makes no shaders gets no calls for one without a name.
TEST_F(ProfilerShaders, AHostWithoutMoreShadersIsLetBe)
{
    Fake().On("glCreateShader", [](Call const&) { Fake().Result("glCreateShader", 0u); });
    EXPECT_EQ((Texts{"glShaderSource(51, 1, strings)", "glGetShaderiv(51, 35663)", "glCreateShader(35632)"}),
              HostCallsOf([] { Source(51, kDiscards); }));
    EXPECT_EQ(0u, Record(51)->rewrittenShader);
    EXPECT_EQ((Texts{"glCompileShader(51)", "glGetShaderiv(51, 35663)"}),
              HostCallsOf([] { Es2::_glCompileShader(51); }));
    EXPECT_EQ((Texts{"glAttachShader(1, 51)", "glGetShaderiv(51, 35663)", "glCreateShader(35632)",
                     "glAttachShader(3, 51)"}),
              HostCallsOf([] { Es2::_glAttachShader(1, 51); }));
}

// Alternates keep what was attached.
TEST_F(ProfilerShaders, DetachingIsNotFollowed)
{
    Es2::_glAttachShader(1, 51);
    EXPECT_EQ((Texts{"glDetachShader(1, 51)"}), HostCallsOf([] { Es2::_glDetachShader(1, 51); }));
}

// The flat shader is the context's own; a rewritten one is found through the share group.
TEST_F(ProfilerShaders, ASharedShadersFormIsFound)
{
    Source(51, kDiscards);
    Es2::_glAttachShader(1, 51);
    Create(0x2000, kContext);
    MakeCurrent(0x2000);
    Es2::_glCreateProgram(0);
    EXPECT_EQ((Texts{"glAttachShader(4, 51)", "glGetShaderiv(51, 35663)", "glCreateShader(35632)",
                     "glShaderSource(54, 1, strings)", "glCompileShader(54)", "glAttachShader(5, 54)",
                     "glAttachShader(6, 52)"}),
              HostCallsOf([] { Es2::_glAttachShader(4, 51); }));
    EXPECT_EQ(53u, Context().flatFragShader);
    EXPECT_EQ(54u, Context(0x2000).flatFragShader);
    CProfiler::SContext* owner = nullptr;
    EXPECT_EQ(Record(51), Profiler().GetFragShader(&Context(0x2000), 51, &owner));
    EXPECT_EQ(&Context(), owner);
}

// The form is kept where the source was given.
TEST_F(ProfilerShaders, ASharedShaderIsRewrittenInTheCurrentContext)
{
    Source(51, kDiscards);
    Create(0x2000, kContext);
    MakeCurrent(0x2000);
    Source(51, kDiscards);
    EXPECT_EQ(52u, Record(51)->rewrittenShader);
    EXPECT_EQ(53u, Record(51, 0x2000)->rewrittenShader);
}

// A shader that the host no longer knows takes its form along.
TEST_F(ProfilerShaders, ADeletedShaderTakesItsFormAlong)
{
    EXPECT_EQ((Texts{"glDeleteShader(51)"}), HostCallsOf([] { Es2::_glDeleteShader(51); })) << "no record";
    Source(51, kDiscards);
    EXPECT_EQ((Texts{"glDeleteShader(51)"}),
              HostCallsOf([this] { Refused([] { Es2::_glDeleteShader(51); }); }));
    m_shaders.erase(51);
    EXPECT_EQ((Texts{"glDeleteShader(51)", "glIsShader(51)", "glDeleteShader(52)"}),
              HostCallsOf([] { Es2::_glDeleteShader(51); }));
    EXPECT_EQ(0, Context().m_Shaders.Count());
}

// An attached shader lives on with its form, until a program is used after its end.
TEST_F(ProfilerShaders, ADeletedShaderThatIsAttachedGoesLater)
{
    Source(51, kDiscards);
    EXPECT_EQ((Texts{"glDeleteShader(51)", "glIsShader(51)"}), HostCallsOf([] { Es2::_glDeleteShader(51); }));
    EXPECT_TRUE(Record(51)->bDeleted);
    EXPECT_EQ((Texts{"glUseProgram(1)", "glIsShader(51)"}), HostCallsOf([] { Es2::_glUseProgram(1); }));
    ASSERT_NE(nullptr, Record(51));
    m_shaders.erase(51);
    EXPECT_EQ((Texts{"glUseProgram(1)", "glIsShader(51)", "glDeleteShader(52)"}),
              HostCallsOf([] { Es2::_glUseProgram(1); }));
    EXPECT_EQ(nullptr, Record(51));
}

// Of the share group, the owner's record goes; shaders go ahead of programs, context by context.
TEST_F(ProfilerShaders, SharedShadersGoFromTheirOwner)
{
    Source(51, kDiscards);
    Es2::_glCreateShader(GL_FRAGMENT_SHADER, 0);
    Source(53, kDiscards);
    Es2::_glDeleteShader(53);
    Es2::_glDeleteProgram(1);
    Create(0x2000, kContext);
    MakeCurrent(0x2000);
    m_shaders.clear();
    m_programs.clear();
    EXPECT_EQ((Texts{"glDeleteShader(51)", "glIsShader(51)", "glDeleteShader(52)"}),
              HostCallsOf([] { Es2::_glDeleteShader(51); }));
    EXPECT_EQ((Texts{"glUseProgram(0)", "glIsShader(53)", "glDeleteShader(54)", "glIsProgram(1)",
                     "glDeleteProgram(2)", "glDeleteProgram(3)"}),
              HostCallsOf([] { Es2::_glUseProgram(0); }));
    EXPECT_EQ(0, Context().m_Shaders.Count());
    EXPECT_EQ(0, Context().m_Programs.Count());
}

}  // namespace
