// How many values a uniform query returns, found by experiment.
#include "tests/wrappers/recorder.h"
#include <algorithm>

class UniformProbe : public Recorder
{
protected:
    // The host writes these values.
    static void UniformIs(std::vector<GLfloat> values)
    {
        Fake().On("glGetUniformfv", [values](Call const& call) {
            std::copy(values.begin(), values.end(), call.Pointer<GLfloat>(2));
        });
    }
    void ExpectCount(uint32_t count)
    {
        GLfloat values[16] = {};
        Es2::_glGetUniformfv(3, 4, values);
        EXPECT_EQ(Expected(2075, U32(0), U32(3), U32(4), Ptr(values), U32(count), Raw(values, 4 * count)),
                  Written());
    }
};

// How many values the host writes is found by two more calls into arrays of zeros and of ones.
TEST_F(UniformProbe, CountsWhatTheHostWrites)
{
    Record();
    UniformIs({2.0f});
    ExpectCount(1);
    EXPECT_EQ(3u, HostCalls("glGetUniformfv"));
    UniformIs({5.0f, 6.0f, 7.0f});
    ExpectCount(3);
    UniformIs(std::vector<GLfloat>(16, 9.0f));
    ExpectCount(16);
}

// Values that equal the sentinels are told from them: both arrays come back alike in every written entry.
TEST_F(UniformProbe, SentinelValuesAreCounted)
{
    Record();
    UniformIs({2.0f, 3.0f, 0.0f, 1.0f});
    ExpectCount(4);
    UniformIs({});
    ExpectCount(1);
}

// Without errors, without success or without the caller's array there is no probe, or no count.
TEST_F(UniformProbe, IsMadeUnderTheGate)
{
    UniformIs({5.0f, 6.0f, 7.0f});
    Record();
    STraceConfig::m_getErrors = false;
    ExpectCount(0);
    EXPECT_EQ(1u, HostCalls("glGetUniformfv"));
    STraceConfig::m_getErrors = true;
    Fake().On("glGetUniformfv", [](Call const&) {});
    Es2::_glGetUniformfv(3, 4, nullptr);
    EXPECT_EQ(Expected(2075, U32(0), U32(3), U32(4), U32(0), U32(0)), Written());
}

// On purpose: the integer query is probed with floats, its bounded twin with integers.
TEST_F(UniformProbe, IsMadeWithTheOddQueries)
{
    Record();
    GLint values[16] = {};
    UniformIs({5.0f, 6.0f});
    Fake().Forget();
    Es2::_glGetUniformiv(3, 4, values);
    EXPECT_EQ(2u, HostCalls("glGetUniformfv"));
    EXPECT_EQ(1u, HostCalls("glGetUniformiv"));
    EXPECT_EQ(Expected(2076, U32(0), U32(3), U32(4), Ptr(values), Words({2, 0, 0})), Written());
    Fake().On("glGetUniformiv", [](Call const& call) { std::fill_n(call.Pointer<GLint>(2), 3, 8); });
    Es2::_glGetnUniformivEXT(3, 4, 64, values);
    EXPECT_EQ(Expected(4170, U32(0), U8(2), U32(3), U32(4), U32(64), Ptr(values), Words({3, 0, 0, 0})),
              Written());
    GLfloat floats[16] = {};
    Es2::_glGetnUniformfvEXT(3, 4, 64, floats);
    EXPECT_EQ(Expected(4169, U32(0), U8(2), U32(3), U32(4), U32(64), Ptr(floats), Words({2, 0, 0})),
              Written());
}
