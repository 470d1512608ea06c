// What a recorded draw is found to use: CEs2ContextState::TrackData.
#include "tests/wrappers/shadow.h"

class TrackData : public Shadow
{
protected:
    TrackData() { RecordFromHere(); }

    static std::vector<unsigned int> Names(TraceMap<unsigned int, unsigned int> const& used)
    {
        std::vector<unsigned int> names;
        for (int slot = 0; slot < used.Count(); ++slot)
        {
            EXPECT_EQ(used.KeyAt(slot), used.ValueAt(slot));
            names.push_back(used.KeyAt(slot));
        }
        return names;
    }
    static std::vector<unsigned int> Textures() { return Names(State().m_sUsedTextures); }
    static std::vector<unsigned int> Buffers() { return Names(State().m_sUsedBuffers); }
    // The second arguments of a function's calls.
    static std::vector<GLuint> Second(char const* function)
    {
        std::vector<GLuint> values;
        for (Call const& call : Fake().Calls(function))
            values.push_back(call.Argument<GLuint>(1));
        return values;
    }
    static std::vector<GLuint> First(char const* function)
    {
        std::vector<GLuint> values;
        for (Call const& call : Fake().Calls(function))
            values.push_back(call.Argument<GLuint>(0));
        return values;
    }
    // The host has this many names bound to every unit: 10 and 20 more than the unit's number.
    static void HostHasTextures()
    {
        static GLenum unit;
        unit = 0;
        Fake().On("glActiveTexture", [](Call const& call) { unit = call.Argument<GLenum>(0) - GL_TEXTURE0; });
        Fake().On("glGetIntegerv", [](Call const& call) {
            GLenum const name = call.Argument<GLenum>(0);
            *call.Pointer<GLint>(1) = static_cast<GLint>(name == GL_TEXTURE_BINDING_2D         ? 10 + unit
                                                         : name == GL_TEXTURE_BINDING_CUBE_MAP ? 20 + unit
                                                         : name == GL_ACTIVE_TEXTURE ? GL_TEXTURE0 + 1
                                                                                     : 0);
        });
    }
};

// Each unit is selected and its two bindings entered; the active unit is selected again.
TEST_F(TrackData, EntersTheTexturesOfAllUnits)
{
    HostHasTextures();
    State().m_iMaxTextureUnits = 3;
    State().TrackData();
    EXPECT_EQ((std::vector<unsigned int>{10, 20, 11, 21, 12, 22}), Textures());
    EXPECT_EQ((std::vector<GLuint>{0x84C0, 0x84C1, 0x84C2, 0x84C1}), First("glActiveTexture"));
}

// Until a snapshot has asked the host there is one unit.
TEST_F(TrackData, BeginsWithOneUnit)
{
    State().TrackData();
    EXPECT_EQ(2u, HostCalls("glActiveTexture"));
}

// A host with more units is served for the first 32: the shadow has room for no more.
TEST_F(TrackData, MoreThan32UnitsAreServedForTheFirst32)
{
    HostHasTextures();
    for (int units : {33, 80, 0x7FFFFFFF})
    {
        Fake().Forget();
        State().m_iMaxTextureUnits = units;
        State().TrackData();
        EXPECT_EQ(33u, HostCalls("glActiveTexture")) << units;
        EXPECT_EQ(0x84DFu, First("glActiveTexture")[31]) << units;
    }
    EXPECT_EQ(nullptr, State().m_sUsedTextures.Find(20 + 32));
}

// Name 0 is entered like any other.
TEST_F(TrackData, EntersNameZero)
{
    State().TrackData();
    EXPECT_EQ((std::vector<unsigned int>{0}), Textures());
    EXPECT_EQ((std::vector<unsigned int>{0}), Buffers());
}

// Every framebuffer with a name is bound and asked for its textures; the one that was bound is bound again.
TEST_F(TrackData, EntersTheTexturesOfFramebuffers)
{
    State().mFramebufferObjects[4].name = 4;
    State().mFramebufferObjects[4].ColorAttachment(1);
    State().mFramebufferObjects[0].ColorAttachment(0);
    State().mFramebufferObjects[9].name = 9;
    HostAnswers({{GL_FRAMEBUFFER_BINDING, 6}});
    Fake().On("glGetFramebufferAttachmentParameteriv", [](Call const& call) {
        EXPECT_EQ(0x8D40u, call.Argument<GLenum>(0));
        GLenum const attachment = call.Argument<GLenum>(1);
        *call.Pointer<GLint>(3) = call.Argument<GLenum>(2) == GL_FRAMEBUFFER_ATTACHMENT_OBJECT_NAME
                                      ? static_cast<GLint>(attachment & 0xFF)
                                  : attachment == GL_STENCIL_ATTACHMENT ? GL_RENDERBUFFER
                                                                        : GL_TEXTURE;
    });
    State().TrackData();
    EXPECT_EQ((std::vector<GLuint>{4, 9, 6}), Second("glBindFramebuffer"));
    // Of the first: two of colour, one of depth, each asked for its type and its name; one of stencil, which
    // is no texture. The second has none of colour.
    EXPECT_EQ(
        (std::vector<GLuint>{0x8CE0, 0x8CE0, 0x8CE1, 0x8CE1, 0x8D00, 0x8D00, 0x8D20, 0x8D00, 0x8D00, 0x8D20}),
        Second("glGetFramebufferAttachmentParameteriv"));
    EXPECT_EQ((std::vector<unsigned int>{0, 0xE0, 0xE1}), Textures());
}

// The first question about an attachment is for its type, by the enumerant 0x8CD0, the second for its name.
TEST_F(TrackData, AsksAttachmentsForTypeAndName)
{
    Fake().On("glGetFramebufferAttachmentParameteriv",
              [](Call const& call) { *call.Pointer<GLint>(3) = GL_TEXTURE; });
    TraceMap<unsigned int, unsigned int> used;
    TrackFBOAttachment(GL_DEPTH_ATTACHMENT, &used);
    std::vector<Call> const asked = Fake().Calls("glGetFramebufferAttachmentParameteriv");
    ASSERT_EQ(2u, asked.size());
    EXPECT_EQ(0x8CD0u, asked[0].Argument<GLenum>(2));
    EXPECT_EQ(0x8CD1u, asked[1].Argument<GLenum>(2));
    EXPECT_EQ((std::vector<unsigned int>{0x1702}), Names(used));
}

// The array object's attributes: as many as it has arrays are asked of the host by number, and of the arrays
// in the same slots the enabled ones enter their buffers. On purpose: slots are no attribute numbers.
TEST_F(TrackData, EntersTheBuffersOfArrays)
{
    State().mBoundVAO = 3;
    auto& arrays = State().mVertexArrayObjects[3].vertexattributearrays;
    arrays[7].enabled = true;
    arrays[7].boundarraybuffer = 70;
    arrays[2].boundarraybuffer = 20;
    Fake().On("glGetVertexAttribiv", [](Call const& call) {
        EXPECT_EQ(0x889Fu, call.Argument<GLenum>(1));
        *call.Pointer<GLint>(2) = static_cast<GLint>(100 + call.Argument<GLuint>(0));
    });
    HostAnswers({{GL_ARRAY_BUFFER_BINDING, 5}, {GL_ELEMENT_ARRAY_BUFFER_BINDING, 6}});
    State().TrackData();
    EXPECT_EQ((std::vector<unsigned int>{100, 70, 101, 5, 6}), Buffers());
}

// The record of the current array object is made where there is none.
TEST_F(TrackData, MakesTheArrayObjectsRecord)
{
    State().mBoundVAO = 3;
    State().TrackData();
    ASSERT_NE(nullptr, State().mVertexArrayObjects.Find(3));
    EXPECT_EQ(10, State().mVertexArrayObjects[3].vertexattributearrays.Capacity());
}

// What its questions raise is swallowed: the next call's record has no error that is not its own.
TEST_F(TrackData, LeavesNoErrorBehind)
{
    Fake().On("glActiveTexture", [](Call const&) { Fake().HostFails(GL_INVALID_ENUM); });
    Es2::_glDrawArrays(GL_POINTS, 0, 1);
    Es2::_glFlush();
    EXPECT_EQ(Joined(Expected(2041, Words({0, 0, 0, 1})), Expected(2046, U32(0))), Written());
}

// It is done for draws that are recorded, with or without contents, and for none of the other draws.
TEST_F(TrackData, IsDoneForRecordedDraws)
{
    auto const tracksWith = [](auto draw) {
        Fake().Forget();
        draw();
        return Fake().Calls("glActiveTexture").size() == 2;
    };
    auto const arrays = [] { Es2::_glDrawArrays(GL_POINTS, 0, 1); };
    auto const elements = [] { Es2::_glDrawElements(GL_POINTS, 0, GL_UNSIGNED_BYTE, nullptr); };
    EXPECT_TRUE(tracksWith(arrays) && tracksWith(elements));
    WithoutData([&] { EXPECT_TRUE(tracksWith(arrays) && tracksWith(elements)); });
    EXPECT_FALSE(tracksWith([] { Es2::_glDrawArraysInstancedANGLE(GL_POINTS, 0, 1, 2); }));
    EXPECT_FALSE(tracksWith([] { Es2::_glDrawElementsInstancedANGLE(GL_POINTS, 1, 0x1401, nullptr, 2); }));
    EXPECT_FALSE(tracksWith([] { Es2::_glMultiDrawArraysEXT(GL_POINTS, nullptr, nullptr, 0); }));
    EXPECT_FALSE(tracksWith([] { Es2::_glMultiDrawElementsEXT(GL_POINTS, nullptr, 0x1401, nullptr, 0); }));
    EXPECT_FALSE(tracksWith([] { Es2::_glDrawBuffersNV(0, nullptr); }));
    EXPECT_FALSE(tracksWith([] { Es2::_glDrawBuffersIndexedEXT(0, nullptr, nullptr); }));
    Play();
    EXPECT_FALSE(tracksWith(arrays) || tracksWith(elements));
}
