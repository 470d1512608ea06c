// What the profiler keeps of bound textures and their filters.
#include "tests/wrappers/tracked.h"
#include <limits>

namespace
{

using SBinding = CProfiler::STextureBinding;

using ProfilerTrackTextures = Tracked;

// The unit is one of the 32 that are kept, or below them.
TEST_F(ProfilerTrackTextures, TheActiveUnitIsTestedAsASignedNumber)
{
    Es2::_glActiveTexture(GL_TEXTURE31);
    EXPECT_EQ(31, Context().activeTexture);
    Es2::_glActiveTexture(GL_TEXTURE0 + 32);
    EXPECT_EQ(31, Context().activeTexture);
    Refused([] { Es2::_glActiveTexture(GL_TEXTURE2); });
    EXPECT_EQ(31, Context().activeTexture);
    Es2::_glActiveTexture(GL_TEXTURE0 - 1);
    EXPECT_EQ(-1, Context().activeTexture);
    EXPECT_EQ(0, Context().activeTextureEs1);
    Es1::_glActiveTexture(GL_TEXTURE7);
    EXPECT_EQ(7, Context().activeTextureEs1);
    Es1::_glActiveTexture(GL_TEXTURE0 + 32);
    EXPECT_EQ(7, Context().activeTextureEs1);
    Es1::_glActiveTexture(0);
    EXPECT_EQ(-0x84C0, Context().activeTextureEs1);
}

// A driver need not refuse a unit below the first: nothing of ours is read or written there.
TEST_F(ProfilerTrackTextures, AUnitBelowTheFirstHasNoTextures)
{
    Es2::_glActiveTexture(GL_TEXTURE0 - 1);
    Es1::_glActiveTexture(0);
    GLuint const names[] = {5};
    EXPECT_EQ((Texts{"glBindTexture(3553, 5)", "glTexParameteri(3553, 10241, 9728)",
                     "glTexParameterf(3553, 10241, 1175977984)"}),
              HostCallsOf([] {
                  Es2::_glBindTexture(GL_TEXTURE_2D, 5);
                  Es2::_glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_NEAREST);
                  Es2::_glTexParameterf(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_NEAREST);
              }));
    Es2::_glDeleteTextures(1, names);
    Es1::_glBindTexture(GL_TEXTURE_2D, 5);
    Es1::_glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_NEAREST);
    Es1::_glTexParameterf(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_NEAREST);
    Es1::_glDeleteTextures(1, names);
    ExpectDefaults(Es2Slot(0, 0));
    ExpectDefaults(Es1Slot(0));
    EXPECT_EQ(-0x84C0, Context().activeTextureEs1);
}

// The host is asked for the filters of what is bound, which an override puts back.
TEST_F(ProfilerTrackTextures, Es2BoundTexturesAreKeptWithTheirFilters)
{
    m_textureParameters = {{{GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER}, GL_LINEAR},
                           {{GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER}, GL_NEAREST},
                           {{GL_TEXTURE_CUBE_MAP, GL_TEXTURE_MIN_FILTER}, GL_NEAREST_MIPMAP_NEAREST},
                           {{GL_TEXTURE_CUBE_MAP, GL_TEXTURE_MAG_FILTER}, GL_LINEAR}};
    Es2::_glActiveTexture(GL_TEXTURE3);
    // GL_TEXTURE_2D; GL_TEXTURE_MIN_FILTER, GL_TEXTURE_MAG_FILTER
    EXPECT_EQ((Texts{"glBindTexture(3553, 5)", "glGetTexParameteriv(3553, 10241)",
                     "glGetTexParameteriv(3553, 10240)"}),
              HostCallsOf([] { Es2::_glBindTexture(GL_TEXTURE_2D, 5); }));
    // GL_TEXTURE_CUBE_MAP
    EXPECT_EQ((Texts{"glBindTexture(34067, 6)", "glGetTexParameteriv(34067, 10241)",
                     "glGetTexParameteriv(34067, 10240)"}),
              HostCallsOf([] { Es2::_glBindTexture(GL_TEXTURE_CUBE_MAP, 6); }));
    EXPECT_EQ(5u, Es2Slot(3, 0).name);
    EXPECT_EQ(GLenum{GL_LINEAR}, Es2Slot(3, 0).minFilter);
    EXPECT_EQ(GLenum{GL_NEAREST}, Es2Slot(3, 0).magFilter);
    EXPECT_EQ(6u, Es2Slot(3, 1).name);
    EXPECT_EQ(GLenum{GL_NEAREST_MIPMAP_NEAREST}, Es2Slot(3, 1).minFilter);
    EXPECT_EQ(GLenum{GL_LINEAR}, Es2Slot(3, 1).magFilter);
    for (SBinding const& other : {Es2Slot(3, 2), Es2Slot(3, 3), Es2Slot(0, 0), Es1Slot(3)})
        ExpectDefaults(other);
}

// GLES1 has no cube maps.
TEST_F(ProfilerTrackTextures, Es1BoundTexturesAreKeptWithTheirFilters)
{
    m_textureParameters = {{{GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER}, GL_LINEAR},
                           {{GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER}, GL_NEAREST}};
    Es1::_glActiveTexture(GL_TEXTURE3);
    EXPECT_EQ((Texts{"es1 glBindTexture(3553, 5)", "es1 glGetTexParameteriv(3553, 10241)",
                     "es1 glGetTexParameteriv(3553, 10240)"}),
              HostCallsOf([] { Es1::_glBindTexture(GL_TEXTURE_2D, 5); }));
    EXPECT_EQ((Texts{"es1 glBindTexture(34067, 6)"}),
              HostCallsOf([] { Es1::_glBindTexture(GL_TEXTURE_CUBE_MAP, 6); }));
    EXPECT_EQ(5u, Es1Slot(3).name);
    EXPECT_EQ(GLenum{GL_LINEAR}, Es1Slot(3).minFilter);
    EXPECT_EQ(GLenum{GL_NEAREST}, Es1Slot(3).magFilter);
    for (SBinding const& other : {Es1Slot(0), Es2Slot(3, 0), Es2Slot(3, 1)})
        ExpectDefaults(other);
}

// Other targets have no slot, and a binding that the host refuses is none.
TEST_F(ProfilerTrackTextures, OtherBindingsAreNotKept)
{
    EXPECT_EQ((Texts{"glBindTexture(1, 5)"}), HostCallsOf([] { Es2::_glBindTexture(1, 5); }));
    Refused([] { Es2::_glBindTexture(GL_TEXTURE_2D, 5); });
    Refused([] { Es1::_glBindTexture(GL_TEXTURE_2D, 5); });
    ExpectDefaults(Es2Slot(0, 0));
    ExpectDefaults(Es2Slot(0, 1));
    ExpectDefaults(Es1Slot(0));
}

// Filters that are set behind the binding are the ones to put back.
TEST_F(ProfilerTrackTextures, Es2FiltersAreFollowed)
{
    Es2::_glActiveTexture(GL_TEXTURE2);
    Es2::_glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_NEAREST);
    Es2::_glTexParameterf(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, 9728.0f);
    Es2::_glTexParameterf(GL_TEXTURE_CUBE_MAP, GL_TEXTURE_MIN_FILTER, 9985.0f);
    Es2::_glTexParameteri(GL_TEXTURE_CUBE_MAP, GL_TEXTURE_MAG_FILTER, GL_NEAREST);
    EXPECT_EQ(0x2600u, Es2Slot(2, 0).minFilter);
    EXPECT_EQ(0x2600u, Es2Slot(2, 0).magFilter);
    EXPECT_EQ(0x2701u, Es2Slot(2, 1).minFilter);
    EXPECT_EQ(0x2600u, Es2Slot(2, 1).magFilter);
    Es2::_glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_S, GL_REPEAT);
    Es2::_glTexParameteri(1, GL_TEXTURE_MIN_FILTER, GL_LINEAR);
    Refused([] { Es2::_glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_LINEAR); });
    EXPECT_EQ(0x2600u, Es2Slot(2, 0).minFilter);
    ExpectDefaults(Es2Slot(0, 0));
    ExpectDefaults(Es1Slot(2));
}

// In GLES1 likewise, for its one target.
TEST_F(ProfilerTrackTextures, Es1FiltersAreFollowed)
{
    Es1::_glActiveTexture(GL_TEXTURE2);
    Es1::_glTexParameterf(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, 9728.0f);
    Es1::_glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, GL_NEAREST);
    Es1::_glTexParameteri(GL_TEXTURE_CUBE_MAP, GL_TEXTURE_MAG_FILTER, GL_LINEAR);
    Es1::_glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_S, GL_REPEAT);
    Refused([] { Es1::_glTexParameterf(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, 9729.0f); });
    EXPECT_EQ(0x2600u, Es1Slot(2).minFilter);
    EXPECT_EQ(0x2600u, Es1Slot(2).magFilter);
    ExpectDefaults(Es1Slot(0));
    ExpectDefaults(Es2Slot(2, 0));
}

// A driver may take any float: what is no unsigned number becomes the nearest one.
TEST_F(ProfilerTrackTextures, AFilterThatIsNoNumberIsTheNearest)
{
    std::pair<float, uint32_t> const filters[] = {{-1.0f, 0u},
                                                  {1e30f, 0xFFFFFFFFu},
                                                  {std::numeric_limits<float>::quiet_NaN(), 0u},
                                                  {4294967040.0f, 0xFFFFFF00u},
                                                  {9728.9f, 0x2600u}};
    for (auto const& [value, filter] : filters)
    {
        Es2::_glTexParameterf(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, value);
        EXPECT_EQ(filter, Es2Slot(0, 0).minFilter) << value;
    }
}

// A unit with a texture on both targets loses those that are deleted.
TEST_F(ProfilerTrackTextures, DeletedEs2TexturesGoFromAUnitThatHasBoth)
{
    Es2::_glBindTexture(GL_TEXTURE_2D, 5);
    Es2::_glBindTexture(GL_TEXTURE_CUBE_MAP, 6);
    GLuint const both[] = {9, 6, 5};
    Refused([&] { Es2::_glDeleteTextures(3, both); });
    EXPECT_EQ(5u, Es2Slot(0, 0).name);
    GLuint const cube[] = {6};
    Es2::_glDeleteTextures(1, cube);
    EXPECT_EQ(5u, Es2Slot(0, 0).name);
    EXPECT_EQ(0u, Es2Slot(0, 1).name);
    Es2::_glBindTexture(GL_TEXTURE_CUBE_MAP, 6);
    Es2::_glDeleteTextures(3, both);
    EXPECT_EQ(0u, Es2Slot(0, 0).name);
    EXPECT_EQ(0u, Es2Slot(0, 1).name);
}

// A texture on one target alone, or on another unit, keeps its name.
TEST_F(ProfilerTrackTextures, DeletedEs2TexturesStayElsewhere)
{
    GLuint const names[] = {5, 6};
    Es2::_glBindTexture(GL_TEXTURE_2D, 5);
    Es2::_glDeleteTextures(2, names);
    EXPECT_EQ(5u, Es2Slot(0, 0).name) << "no cube map";
    Es2::_glBindTexture(GL_TEXTURE_CUBE_MAP, 6);
    Es2::_glActiveTexture(GL_TEXTURE1);
    Es2::_glBindTexture(GL_TEXTURE_CUBE_MAP, 6);
    Es2::_glDeleteTextures(2, names);
    EXPECT_EQ(6u, Es2Slot(1, 1).name) << "no 2D texture";
    EXPECT_EQ(5u, Es2Slot(0, 0).name) << "another unit";
    EXPECT_EQ(6u, Es2Slot(0, 1).name) << "another unit";
}

// GLES1's unit has one texture, and loses it.
TEST_F(ProfilerTrackTextures, DeletedEs1TexturesGoFromTheActiveUnit)
{
    GLuint const names[] = {9, 5};
    Es1::_glBindTexture(GL_TEXTURE_2D, 5);
    Es1::_glActiveTexture(GL_TEXTURE1);
    Es1::_glBindTexture(GL_TEXTURE_2D, 5);
    Refused([&] { Es1::_glDeleteTextures(2, names); });
    EXPECT_EQ(5u, Es1Slot(1).name);
    Es1::_glDeleteTextures(2, names);
    EXPECT_EQ(0u, Es1Slot(1).name);
    EXPECT_EQ(5u, Es1Slot(0).name) << "another unit";
    Es1::_glActiveTexture(GL_TEXTURE0);
    Es1::_glDeleteTextures(2, nullptr);
    Es1::_glDeleteTextures(-1, names);
    EXPECT_EQ(5u, Es1Slot(0).name) << "no names";
}

}  // namespace
