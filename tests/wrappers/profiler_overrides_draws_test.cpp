// Which wrappers run the overrides, and where around the host call.
#include "tests/unit/fake_clock.h"
#include "tests/wrappers/functions.h"
#include "tests/wrappers/profiler_overrides.h"
#include <algorithm>
#include <set>

namespace
{

using DrawOverrides = Overrides;

std::set<std::string> const kDraws = {
    "es1::glDrawArrays",
    "es1::glDrawElements",
    "es1::glDrawTexfOES",
    "es1::glDrawTexfvOES",
    "es1::glDrawTexiOES",
    "es1::glDrawTexivOES",
    "es1::glDrawTexsOES",
    "es1::glDrawTexsvOES",
    "es1::glDrawTexxOES",
    "es1::glDrawTexxvOES",
    "es1::glMultiDrawArraysEXT",
    "es1::glMultiDrawElementsEXT",
    "es2::glDrawArrays",
    "es2::glDrawElements",
    "es2::glDrawArraysInstancedANGLE",
    "es2::glDrawElementsInstancedANGLE",
    "es2::glMultiDrawArraysEXT",
    "es2::glMultiDrawElementsEXT",
    "es2::glDrawBuffersNV",
    "es2::glDrawBuffersIndexedEXT",
};

// What a wrapper makes of any arguments, as the names of the host's calls.
std::vector<std::string> NamesOf(Function const& function, Buffers& buffers)
{
    Fake().Forget();
    Printed([&] { function.call(function.wrapper, function.makeArguments(buffers)); });
    return Fake().Names();
}

// Every draw is enclosed by both halves, a failed one, too, and so are the choices of draw buffers, which
// draw nothing.
TEST_F(DrawOverrides, TheTwentyRunBothHalves)
{
    Buffers buffers;
    CProfiler::m_DisableBlending = true;
    size_t draws = 0;
    for (Function const& function : AllFunctions())
    {
        if (kDraws.count(function.Title()) == 0)
            continue;
        SCOPED_TRACE(function.Title());
        ++draws;
        Enables("es1").bBlend = function.library == "es1";
        Enables("es2").bBlend = function.library == "es2";
        std::vector<std::string> const whole = {"glDisable", function.name, "glGetError", "glEnable"};
        EXPECT_EQ(whole, NamesOf(function, buffers));
        HostFails(GL_INVALID_OPERATION);
        EXPECT_EQ(whole, NamesOf(function, buffers));
    }
    EXPECT_EQ(20u, draws);
    EXPECT_EQ(kDraws.size(), draws);
}

// No other call is worth the price, and none but a draw is an end that the state could be put back at. The
// context is made anew for each: some of the calls replace or drop it.
TEST_F(DrawOverrides, NoOtherWrapperRunsEither)
{
    Buffers buffers;
    GLint const mark = 0x7A7A;
    CProfiler::m_ForceViewport = true;
    for (Function const& function : AllFunctions())
    {
        if (kDraws.count(function.Title()) != 0)
            continue;
        SCOPED_TRACE(function.Title());
        CProfiler::SContext& context = MakeContextCurrent();
        context.viewport[0] = context.viewportEs1[0] = mark;
        NamesOf(function, buffers);
        for (Call const& call : Fake().Calls("glViewport"))
            EXPECT_TRUE(call.Argument<GLint>(2) != 0 && call.Argument<GLint>(0) != mark) << Line(call);
        Profiler().CloseComms();
    }
}

// A draw that is held back is neither prepared nor cleaned up after.
TEST_F(DrawOverrides, ASuppressedDrawRunsNeitherHalf)
{
    CProfiler::m_ForceViewport = CProfiler::m_DisableDrawCalls = true;
    EXPECT_EQ(Lines(), Drawn("es2"));
    EXPECT_EQ(Lines(), Drawn("es1"));
}

// An extension that the host lacks calls nothing at all.
TEST_F(DrawOverrides, AMissingExtensionRunsNeitherHalf)
{
    CProfiler::m_ForceViewport = true;
    HostLacks("glDrawArraysInstancedANGLE");
    Es2::_glDrawArraysInstancedANGLE(GL_TRIANGLES, 0, 3, 2);
    EXPECT_TRUE(Fake().Calls().empty());
}

// The state is put back whatever the host says of the draw, and whether it is asked or not.
TEST_F(DrawOverrides, AFailedDrawIsCleanedUpAfter)
{
    OnlyHas("es2");
    CProfiler::m_DisableBlending = true;
    Enables("es2").bBlend = true;
    HostFails(GL_INVALID_OPERATION);
    Lines lines;
    Printed([&] { lines = Drawn("es2"); });
    EXPECT_EQ(Around("es2", {"es2 glDisable be2"}, {"es2 glEnable be2"}), lines);
    STraceConfig::m_getErrors = false;
    EXPECT_EQ((Lines{"es2 glDisable be2", "es2 glDrawArrays 4 0 3", "es2 glEnable be2"}), Drawn("es2"));
}

// The draw is counted by the time that its state is put back, and not before it is drawn.
TEST_F(DrawOverrides, TheDrawIsCountedBetweenTheHalves)
{
    OnlyHas("es2");
    CProfiler::m_DisableBlending = true;
    Enables("es2").bBlend = true;
    std::vector<uint32_t> counted;
    for (char const* const name : {"glDisable", "glDrawArrays", "glEnable"})
        Fake().On(name, [&](Call const&) {
            counted.push_back(Profiler().m_aCounters[CProfiler::eNonIndexedDraws]);
        });
    Drawn("es2");
    EXPECT_EQ((std::vector<uint32_t>{0, 0, 1}), counted);
}

// The driver's time is that of the draw alone: what the overrides take would hide what they are to show.
TEST_F(DrawOverrides, TheStopwatchRunsBetweenTheHalves)
{
    OnlyHas("es2");
    CProfiler::m_DisableBlending = true;
    Enables("es2").bBlend = true;
    long now = 0;
    auto const takes = [&now](char const* name, long microseconds) {
        Fake().On(name, [&now, microseconds](Call const&) { SetClock(0, now += microseconds); });
    };
    SetClock(0, now);
    takes("glDisable", 1000);
    takes("glDrawArrays", 7);
    takes("glEnable", 20000);
    Drawn("es2");
    EXPECT_EQ(21007, now);
    EXPECT_EQ(7u, Profiler().m_aCounters[CProfiler::eDriverTime]);
}

// The overrides are in no record. What goes wrong in one ahead of the draw is found with the draw's error,
// and behind it with the next call's.
TEST_F(DrawOverrides, ErrorsOfOverridesAreThoseOfCalls)
{
    OnlyHas("es2");
    Record();
    STraceConfig::m_recordEnable = true;
    CProfiler::m_DisableBlending = true;
    Enables("es2").bBlend = true;
    GLenum error = GL_INVALID_ENUM;
    Fake().On("glDisable", [&](Call const&) { Fake().HostFails(error); });
    Fake().On("glEnable", [](Call const&) { Fake().HostFails(GL_OUT_OF_MEMORY); });
    GLenum const buffers[] = {GL_BACK};
    auto const call = [&] { Es2::_glDrawBuffersNV(1, buffers); };
    Printed(call);
    // Error word, API byte, count, and the buffers: pointer, count, values.
    EXPECT_EQ(Expected(4236, U32(GL_INVALID_ENUM), U8(2), I32(1), Ptr(buffers), U32(1), U32(GL_BACK)),
              Written());
    Printed([] { Es2::_glFlush(); });
    EXPECT_EQ(Expected(2046, U32(GL_OUT_OF_MEMORY)), Written());
}

}  // namespace
