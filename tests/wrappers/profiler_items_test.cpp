// The library items: what the server is told of them, and what becomes of its changes.
#include "tests/profiler/scripted_path.h"
#include "tests/wrappers/profiled.h"

namespace
{

struct Item
{
    char const* name;
    uint32_t nameLength;
    uint32_t type;
    void const* data;
    uint32_t dataSize;
};

Item const kItems[14] = {
    {"NEBTrace.Force zero viewport", 28, 4, &CProfiler::m_ForceViewport, 1},
    {"NEBTrace.Disable blending", 25, 4, &CProfiler::m_DisableBlending, 1},
    {"NEBTrace.Force 2x2 textures", 27, 4, &CProfiler::m_Force2x2Textures, 1},
    {"NEBTrace.Force flat colour frag shader", 38, 4, &CProfiler::m_ForceFlatColourFrag, 1},
    {"NEBTrace.Disable stencil test", 29, 4, &CProfiler::m_DisableStencilTest, 1},
    {"NEBTrace.Disable depth test", 27, 4, &CProfiler::m_DisableDepthTest, 1},
    {"NEBTrace.Disable scissor test", 29, 4, &CProfiler::m_DisableScissorTest, 1},
    {"NEBTrace.Disable draw calls", 27, 4, &CProfiler::m_DisableDrawCalls, 1},
    {"NEBTrace.Disable flush and finish", 33, 4, &CProfiler::m_DisableFlushNFinish, 1},
    {"NEBTrace.Disable texture modifications", 38, 4, &CProfiler::m_DisableTextureModifications, 1},
    {"NEBTrace.Disable texture filtering", 34, 4, &CProfiler::m_DisableTextureFiltering, 1},
    {"NEBTrace.Disable discard / alpha test", 37, 4, &CProfiler::m_DisableAlphaTest, 1},
    {"NEBTrace.Disable frame buffer accesses", 38, 4, &CProfiler::m_DisableFBAccess, 1},
    {"NEBTrace.Culling mode", 21, 3, CProfiler::m_CullingMode, 29},
};

char const* const kCounters[27] = {
    "Indexed draw calls",
    "Non-indexed draw calls",
    "Points no.",
    "Line no. (list)",
    "Line no. (loop)",
    "Line no. (strip)",
    "Total line no.",
    "Triangle no. (list)",
    "Triangle no. (strip)",
    "Triangle no. (fan)",
    "Total triangle no.",
    "Texture uploads",
    "Texture modifications",
    "Scissor calls",
    "Viewport calls",
    "Frame buffer accesses",
    "Vertex shader compiles",
    "Fragment shader compiles",
    "Program links",
    "CPU driver time (us)",
    "Framebuffer access (bytes)",
    "Texture uploads (bytes)",
    "Texture modifications (bytes)",
    "Buffer object uploads (bytes)",
    "Buffer object modifications (bytes)",
    "Uniform uploads",
    "Context binds",
};

// Over a path on which the test says what the server writes.
class ProfilerItems : public Profiled
{
protected:
    void SetUp() override
    {
        delete Profiler().m_pComms->pDataPath;
        m_path = new ScriptedPath;
        Profiler().m_pComms->pDataPath = m_path;
        Es2::_glFlush();
        m_path->TakeSent();
        Fake().Forget();
    }

    // The server changes an item.
    void Change(uint32_t item, std::string const& value)
    {
        m_path->Say(
            Joined(U32(112u << 24 | static_cast<uint32_t>(4 + value.size())), U32(item), Chars(value)));
    }
    // What is printed in the call that follows the change.
    std::string PrintedOn(uint32_t item, std::string const& value)
    {
        Change(item, value);
        return Printed([] { Es2::_glFlush(); });
    }
    int SelectionOf(std::string const& text, int before = 0)
    {
        CProfiler::m_CullingModeSelection = before;
        EXPECT_EQ("", PrintedOn(13, text));
        return CProfiler::m_CullingModeSelection;
    }

    ScriptedPath* m_path = nullptr;
};

}  // namespace

// The items as the server sees them, byte for byte: names, types, and where the values lie.
TEST_F(ProfilerItems, TheTable)
{
    for (int i = 0; i < 14; ++i)
    {
        SLibraryItem const& item = CProfiler::m_aLibraryItems[i];
        EXPECT_STREQ(kItems[i].name, item.pszName);
        EXPECT_EQ(kItems[i].nameLength, item.nameLength) << i;
        EXPECT_EQ(kItems[i].type, item.type) << i;
        EXPECT_EQ(kItems[i].data, item.pData) << i;
        EXPECT_EQ(kItems[i].dataSize, item.dataSize) << i;
    }
    EXPECT_STREQ("0\nApp defined\nNone\nBack\nFront", CProfiler::m_CullingMode);
}

// The counters' names, in the order of their values.
TEST_F(ProfilerItems, TheCountersNames)
{
    for (int i = 0; i < 27; ++i)
        EXPECT_STREQ(kCounters[i], CProfiler::m_aszCounterNames[i]) << i;
}

// Everything is off until the server says otherwise.
TEST_F(ProfilerItems, AllSwitchesBeginOff)
{
    for (int i = 0; i < 13; ++i)
        EXPECT_EQ(0, *static_cast<char const*>(CProfiler::m_aLibraryItems[i].pData)) << i;
    EXPECT_EQ(0, CProfiler::m_CullingModeSelection);
}

// A change is told on standard output, and switches; the same value again does neither.
TEST_F(ProfilerItems, AChangeIsToldOnce)
{
    EXPECT_EQ("NEBTRACE(M) ChangeItem: NEBTrace.Disable blending\n", PrintedOn(1, "\1"));
    EXPECT_TRUE(CProfiler::m_DisableBlending);
    EXPECT_EQ("", PrintedOn(1, "\1"));
    EXPECT_TRUE(CProfiler::m_DisableBlending);
    EXPECT_EQ("NEBTRACE(M) ChangeItem: NEBTrace.Disable blending\n", PrintedOn(1, std::string(1, '\0')));
    EXPECT_FALSE(CProfiler::m_DisableBlending);
}

// Each index is its own switch's.
TEST_F(ProfilerItems, EachIndexSwitchesItsOwn)
{
    for (uint32_t i = 0; i < 13; ++i)
    {
        EXPECT_EQ(std::string("NEBTRACE(M) ChangeItem: ") + kItems[i].name + "\n", PrintedOn(i, "\1"));
        for (uint32_t other = 0; other < 13; ++other)
            EXPECT_EQ(other <= i, *static_cast<char const*>(kItems[other].data) == 1) << i << ' ' << other;
    }
}

// A value that is not one byte is refused in silence.
TEST_F(ProfilerItems, AValueOfAnotherLengthIsRefused)
{
    for (std::string const value : {"", "\1\1", "\1\1\1\1"})
    {
        EXPECT_EQ("", PrintedOn(1, value)) << value.size();
        EXPECT_FALSE(CProfiler::m_DisableBlending);
    }
}

// An item of a type that no switch has takes no change.
TEST_F(ProfilerItems, OnlyPlainTypesAreChanged)
{
    uint32_t& type = CProfiler::m_aLibraryItems[1].type;
    for (uint32_t const plain : {1u, 2u, 4u})
    {
        type = plain;
        EXPECT_NE("", PrintedOn(1, "\1")) << plain;
        PrintedOn(1, std::string(1, '\0'));
    }
    for (uint32_t const other : {0u, 3u, 5u})
    {
        type = other;
        EXPECT_EQ("", PrintedOn(1, "\1")) << other;
        EXPECT_FALSE(CProfiler::m_DisableBlending);
    }
    type = 4;
}

// All changes that came since the last call are taken in by the next one, and it is decided by them.
TEST_F(ProfilerItems, AChangeIsLiveForTheCallThatTakesItIn)
{
    Change(8, "\1");
    EXPECT_EQ("NEBTRACE(M) ChangeItem: NEBTrace.Disable flush and finish\n",
              Printed([] { Es2::_glFlush(); }));
    EXPECT_EQ(0u, HostCalls("glFlush"));
    Change(8, std::string(1, '\0'));
    Change(7, "\1");
    Change(13, "3");
    EXPECT_EQ("NEBTRACE(M) ChangeItem: NEBTrace.Disable flush and finish\n"
              "NEBTRACE(M) ChangeItem: NEBTrace.Disable draw calls\n",
              Printed([] {
                  Es2::_glDrawArrays(GL_TRIANGLES, 0, 3);
                  Es2::_glFlush();
              }));
    EXPECT_EQ(1u, HostCalls("glFlush"));
    EXPECT_EQ(0u, HostCalls("glDrawArrays"));
    EXPECT_EQ(3, CProfiler::m_CullingModeSelection);
}

// Calls that do not reach the host take nothing in.
TEST_F(ProfilerItems, ACallWithoutAHostTakesNothingIn)
{
    STraceConfig::m_bDoNativeCall = false;
    EXPECT_EQ("", PrintedOn(1, "\1"));
    EXPECT_FALSE(CProfiler::m_DisableBlending);
    STraceConfig::m_bDoNativeCall = true;
    EXPECT_EQ("NEBTRACE(M) ChangeItem: NEBTrace.Disable blending\n", Printed([] { Es2::_glFlush(); }));
}

// The culling mode's text begins with the selection.
TEST_F(ProfilerItems, TheCullingModesSelection)
{
    EXPECT_EQ(2, SelectionOf("2\nApp defined\nNone\nBack\nFront"));
    EXPECT_EQ(0, SelectionOf("0\nApp defined\nNone\nBack\nFront", 3));
    EXPECT_EQ(1, SelectionOf("1\n", 2));
    EXPECT_EQ(3, SelectionOf("3")) << "not terminated";
    EXPECT_EQ(1, SelectionOf(" +1x", 2)) << "a number as the C library reads it";
    EXPECT_EQ(0, SelectionOf("Back", 2)) << "no number is 0";
    EXPECT_STREQ("0\nApp defined\nNone\nBack\nFront", CProfiler::m_CullingMode) << "the text stays";
}

// A selection that there is not, an empty text and an empty first line leave the mode alone.
TEST_F(ProfilerItems, ASelectionThatThereIsNotIsDropped)
{
    for (std::string const text : {"7\nApp defined", "4", "-1", "99999999999", "", "\n3"})
        EXPECT_EQ(2, SelectionOf(text, 2)) << text;
    EXPECT_EQ(2, SelectionOf(std::string("\0003", 2), 2));
}
