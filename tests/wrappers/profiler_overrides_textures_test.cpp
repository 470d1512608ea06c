// Private textures of 2x2 pixels, and textures without filtering, for one draw.
#include "tests/wrappers/profiler_overrides.h"

namespace
{

using STextureBinding = CProfiler::STextureBinding;

// The four pixels, RGBA; level 1 is the first of them.
std::string const kReds = "644040ff8c6464ffc88c8cffffc8c8ff";
std::string const kRed = "644040ff";
std::string const kBlues = "404064ff64648cff8c8cc8ffc8c8ffff";
std::string const kBlue = "404064ff";

class OverriddenTextures : public Overrides
{
protected:
    // Names of textures that the host makes: 21, 22 and so on, in hex.
    OverriddenTextures()
    {
        Fake().On("glGenTextures", [this](Call const& call) { *call.Pointer<GLuint>(1) = m_nextName++; });
    }

    // The context has its private textures already.
    void HasPrivateTextures()
    {
        Context().tex2x2Es2 = 0x21;
        Context().texCube2x2Es2 = 0x22;
        Context().tex2x2Es1 = 0x11;
    }

    // A making of a private texture, and the binding of the application's own.
    static Lines Made(std::string const& api, uint32_t& name, std::string const& number,
                      std::string const& own)
    {
        return {Line(api, "glGenTextures", 1, &name), api + " glBindTexture de1 " + number,
                api + " glTexImage2D de1 0 1908 2 2 0 1908 1401 " + kReds,
                api + " glTexImage2D de1 1 1908 1 1 0 1908 1401 " + kRed, api + " glBindTexture de1 " + own};
    }
    static Lines CubeMade(uint32_t& name, std::string const& number, std::string const& own)
    {
        Lines lines = {Line("es2", "glGenTextures", 1, &name), "es2 glBindTexture 8513 " + number};
        for (char const* const face : {"8515", "8516", "8517", "8518", "8519", "851a"})
        {
            lines.push_back("es2 glTexImage2D " + std::string(face) + " 0 1908 2 2 0 1908 1401 " + kBlues);
            lines.push_back("es2 glTexImage2D " + std::string(face) + " 1 1908 1 1 0 1908 1401 " + kBlue);
        }
        lines.push_back("es2 glBindTexture 8513 " + own);
        return lines;
    }

private:
    GLuint m_nextName = 0x21;
};

// GLES2's private textures are uploaded pixel by pixel as stated, at the first draw under the switch and
// never again; the application's textures of the active unit are bound behind it.
TEST_F(OverriddenTextures, Gles2HasTwoThatAreMadeOnce)
{
    OnlyHas("es2");
    CProfiler::m_Force2x2Textures = true;
    Context().activeTexture = 2;
    Context().textures[2][0] = {7, GL_LINEAR, GL_NEAREST, true};
    Context().textures[2][1] = {8, GL_LINEAR, GL_NEAREST, true};
    Lines const active = {"es2 glActiveTexture 84c2"};
    Lines const behind = {"es2 glActiveTexture 84c2", "es2 glBindTexture de1 7", "es2 glActiveTexture 84c2",
                          "es2 glBindTexture 8513 8", "es2 glActiveTexture 84c2"};
    EXPECT_EQ(Around("es2",
                     Made("es2", Context().tex2x2Es2, "21", "7") +
                         CubeMade(Context().texCube2x2Es2, "22", "8") + active,
                     behind),
              Drawn("es2"));
    EXPECT_EQ(0x21u, Context().tex2x2Es2);
    EXPECT_EQ(0x22u, Context().texCube2x2Es2);
    EXPECT_EQ(Around("es2", active, behind), Drawn("es2"));
}

// GLES1 has one, of its own name.
TEST_F(OverriddenTextures, Gles1HasOneThatIsMadeOnce)
{
    OnlyHas("es1");
    CProfiler::m_Force2x2Textures = true;
    Context().activeTextureEs1 = 1;
    Context().texturesEs1[1] = {7, GL_LINEAR, GL_NEAREST, true};
    Lines const active = {"es1 glActiveTexture 84c1"};
    Lines const behind = {"es1 glActiveTexture 84c1", "es1 glBindTexture de1 7", "es1 glActiveTexture 84c1"};
    EXPECT_EQ(Around("es1", Made("es1", Context().tex2x2Es1, "21", "7") + active, behind), Drawn("es1"));
    EXPECT_EQ(0x21u, Context().tex2x2Es1);
    EXPECT_EQ(0u, Context().tex2x2Es2);
    EXPECT_EQ(Around("es1", active, behind), Drawn("es1"));
}

// With both libraries each makes its own, and sets the slots of its own units.
TEST_F(OverriddenTextures, BothLibrariesHaveTheirOwn)
{
    CProfiler::m_Force2x2Textures = true;
    Context().texCube2x2Es2 = 0x31;
    EXPECT_EQ(Around("es2",
                     Made("es2", Context().tex2x2Es2, "21", "0") + Lines{"es2 glActiveTexture 84c0"} +
                         Made("es1", Context().tex2x2Es1, "22", "0") + Lines{"es1 glActiveTexture 84c0"},
                     {"es2 glActiveTexture 84c0", "es1 glActiveTexture 84c0"}),
              Drawn("es2"));
}

// Each slot that the application has bound gets the private texture with the application's filters, by unit
// and 2D first. Slots without a texture are left alone, and so are the two that stand for nothing.
TEST_F(OverriddenTextures, EachBoundSlotIsReplaced)
{
    OnlyHas("es2");
    HasPrivateTextures();
    CProfiler::m_Force2x2Textures = true;
    Context().activeTexture = 3;
    Context().textures[0][0] = {5, GL_LINEAR_MIPMAP_LINEAR, GL_LINEAR, false};
    Context().textures[0][1] = {6, GL_NEAREST, GL_NEAREST, false};
    Context().textures[1][2] = {9, GL_LINEAR, GL_LINEAR, false};
    Context().textures[1][3] = {9, GL_LINEAR, GL_LINEAR, false};
    Context().textures[31][1].name = 7;
    EXPECT_EQ(
        Around("es2",
               {"es2 glActiveTexture 84c0", "es2 glBindTexture de1 21", "es2 glTexParameteri de1 2801 2703",
                "es2 glTexParameteri de1 2800 2601", "es2 glActiveTexture 84c0", "es2 glBindTexture 8513 22",
                "es2 glTexParameteri 8513 2801 2600", "es2 glTexParameteri 8513 2800 2600",
                "es2 glActiveTexture 84df", "es2 glBindTexture 8513 22", "es2 glTexParameteri 8513 2801 2702",
                "es2 glTexParameteri 8513 2800 2601", "es2 glActiveTexture 84c3"},
               {"es2 glActiveTexture 84c0", "es2 glBindTexture de1 5", "es2 glActiveTexture 84c0",
                "es2 glBindTexture 8513 6", "es2 glActiveTexture 84df", "es2 glBindTexture 8513 7",
                "es2 glActiveTexture 84c3"}),
        Drawn("es2"));
}

// GLES1 has a 2D texture in each of its units.
TEST_F(OverriddenTextures, EachUnitOfGles1IsReplaced)
{
    OnlyHas("es1");
    HasPrivateTextures();
    CProfiler::m_Force2x2Textures = true;
    Context().activeTextureEs1 = 1;
    Context().texturesEs1[0] = {5, GL_LINEAR, GL_NEAREST, false};
    Context().texturesEs1[31] = {6, GL_NEAREST, GL_LINEAR, false};
    EXPECT_EQ(
        Around("es1",
               {"es1 glActiveTexture 84c0", "es1 glBindTexture de1 11", "es1 glTexParameteri de1 2801 2601",
                "es1 glTexParameteri de1 2800 2600", "es1 glActiveTexture 84df", "es1 glBindTexture de1 11",
                "es1 glTexParameteri de1 2801 2600", "es1 glTexParameteri de1 2800 2601",
                "es1 glActiveTexture 84c1"},
               {"es1 glActiveTexture 84c0", "es1 glBindTexture de1 5", "es1 glActiveTexture 84df",
                "es1 glBindTexture de1 6", "es1 glActiveTexture 84c1"}),
        Drawn("es1"));
}

// What is drawn to keeps its image: replacing it would change what a later draw samples. It is bound again
// behind the draw all the same.
TEST_F(OverriddenTextures, AnAttachmentKeepsItsImage)
{
    OnlyHas("es2");
    HasPrivateTextures();
    CProfiler::m_Force2x2Textures = true;
    Context().textures[4][0] = {5, GL_LINEAR, GL_LINEAR, true};
    Context().textures[4][1] = {6, GL_LINEAR, GL_LINEAR, true};
    EXPECT_EQ(Around("es2", {"es2 glActiveTexture 84c0"},
                     {"es2 glActiveTexture 84c4", "es2 glBindTexture de1 5", "es2 glActiveTexture 84c4",
                      "es2 glBindTexture 8513 6", "es2 glActiveTexture 84c0"}),
              Drawn("es2"));
}

// A unit below the first, which a driver may have taken, is selected again and has nothing to bind again.
TEST_F(OverriddenTextures, AUnitOutsideTheRecordsHasNoTextures)
{
    OnlyHas("es1");
    CProfiler::m_Force2x2Textures = true;
    Context().activeTextureEs1 = -1;
    EXPECT_EQ(Around("es1", Made("es1", Context().tex2x2Es1, "21", "0") + Lines{"es1 glActiveTexture 84bf"},
                     {"es1 glActiveTexture 84bf"}),
              Drawn("es1"));
}

// An application that binds the name of a private texture gets it for its own, and the next draw makes
// another one.
TEST_F(OverriddenTextures, ANameThatTheApplicationBindsIsGivenUp)
{
    OnlyHas("es2");
    HasPrivateTextures();
    CProfiler::m_Force2x2Textures = true;
    Es2::_glBindTexture(GL_TEXTURE_3D_OES, 0x21);
    EXPECT_EQ(1u, HostCalls("glDeleteTextures"));
    EXPECT_EQ(Around("es2", Made("es2", Context().tex2x2Es2, "21", "0") + Lines{"es2 glActiveTexture 84c0"},
                     {"es2 glActiveTexture 84c0"}),
              Drawn("es2"));
}

// Without filtering a slot that needs mipmaps keeps them, and the recorded filters are back behind the draw;
// what is drawn to is no exception here.
TEST_F(OverriddenTextures, FilteringIsOffForOneDraw)
{
    OnlyHas("es2");
    CProfiler::m_DisableTextureFiltering = true;
    Context().activeTexture = 1;
    Context().textures[0][0] = {5, GL_LINEAR_MIPMAP_LINEAR, GL_LINEAR, false};
    Context().textures[31][0] = {5, GL_LINEAR, GL_NEAREST, true};
    Context().textures[31][1] = {6, GL_LINEAR_MIPMAP_NEAREST, GL_LINEAR, false};
    EXPECT_EQ(Around("es2",
                     {"es2 glActiveTexture 84c0", "es2 glTexParameteri de1 2801 2700",
                      "es2 glTexParameteri de1 2800 2600", "es2 glActiveTexture 84df",
                      "es2 glTexParameteri de1 2801 2600", "es2 glTexParameteri de1 2800 2600",
                      "es2 glActiveTexture 84df", "es2 glTexParameteri 8513 2801 2700",
                      "es2 glTexParameteri 8513 2800 2600", "es2 glActiveTexture 84c1"},
                     {"es2 glActiveTexture 84c0", "es2 glTexParameteri de1 2801 2703",
                      "es2 glTexParameteri de1 2800 2601", "es2 glActiveTexture 84df",
                      "es2 glTexParameteri de1 2801 2601", "es2 glTexParameteri de1 2800 2600",
                      "es2 glActiveTexture 84df", "es2 glTexParameteri 8513 2801 2701",
                      "es2 glTexParameteri 8513 2800 2601", "es2 glActiveTexture 84c1"}),
              Drawn("es2"));
}

// The same of GLES1's one slot.
TEST_F(OverriddenTextures, FilteringIsOffForOneDrawOfGles1)
{
    OnlyHas("es1");
    CProfiler::m_DisableTextureFiltering = true;
    Context().textures[0][0].name = 4;
    Context().texturesEs1[1] = {5, GL_NEAREST_MIPMAP_LINEAR, GL_LINEAR, false};
    EXPECT_EQ(Around("es1",
                     {"es1 glActiveTexture 84c1", "es1 glTexParameteri de1 2801 2700",
                      "es1 glTexParameteri de1 2800 2600", "es1 glActiveTexture 84c0"},
                     {"es1 glActiveTexture 84c1", "es1 glTexParameteri de1 2801 2702",
                      "es1 glTexParameteri de1 2800 2601", "es1 glActiveTexture 84c0"}),
              Drawn("es1"));
}

// The four filters with mipmaps have one that is nearest with mipmaps, all else the plain one.
TEST_F(OverriddenTextures, TheNearestFilter)
{
    std::map<unsigned int, unsigned int> const filters = {
        {0x26FF, 0x2600}, {0x2600, 0x2600}, {0x2601, 0x2600}, {0x2700, 0x2700}, {0x2701, 0x2700},
        {0x2702, 0x2700}, {0x2703, 0x2700}, {0x2704, 0x2600}, {0, 0x2600},      {0xFFFFFFFF, 0x2600},
    };
    for (auto const& [filter, nearest] : filters)
        EXPECT_EQ(nearest, Profiler().GetNearestFilter(filter)) << filter;
}

}  // namespace
