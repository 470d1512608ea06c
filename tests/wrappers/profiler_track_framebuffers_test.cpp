// What the profiler keeps of framebuffers, and the walks through a share group.
#include "host/hosts.h"
#include "tests/wrappers/tracked.h"

namespace
{

using SContext = CProfiler::SContext;
using SBinding = CProfiler::STextureBinding;

class ProfilerTrackFramebuffers : public Tracked
{
protected:
    // A framebuffer that is bound and has the texture for its colour.
    static void Attach(GLuint framebuffer, GLuint texture)
    {
        Es2::_glBindFramebuffer(GL_FRAMEBUFFER, framebuffer);
        Es2::_glFramebufferTexture2D(GL_FRAMEBUFFER, GL_COLOR_ATTACHMENT0, GL_TEXTURE_2D, texture, 0);
    }
};

// Framebuffers are known from their first binding.
TEST_F(ProfilerTrackFramebuffers, BoundFramebuffersAreKnown)
{
    Es2::_glBindFramebuffer(GL_FRAMEBUFFER, 8);
    Es1::_glBindFramebufferOES(GL_FRAMEBUFFER, 9);
    EXPECT_EQ(8u, Context().currentFBO);
    EXPECT_EQ(9u, Context().currentFBOEs1);
    ASSERT_EQ(2, Context().m_FBOs.Count());
    EXPECT_EQ(8u, Context().m_FBOs.KeyAt(0));
    EXPECT_EQ(0, Context().m_FBOs.ValueAt(0).Count());
    EXPECT_EQ(10, Context().m_FBOs.ValueAt(0).Capacity());
    EXPECT_EQ(9u, Context().m_FBOs.KeyAt(1));
    Es2::_glBindFramebuffer(GL_FRAMEBUFFER, 0);
    Es2::_glBindFramebuffer(0x8CA9, 7);  // GL_DRAW_FRAMEBUFFER
    Refused([] { Es2::_glBindFramebuffer(GL_FRAMEBUFFER, 7); });
    Refused([] { Es1::_glBindFramebufferOES(GL_FRAMEBUFFER, 7); });
    EXPECT_EQ(0u, Context().currentFBO);
    EXPECT_EQ(9u, Context().currentFBOEs1);
    EXPECT_EQ(2, Context().m_FBOs.Count());
}

// A framebuffer of the share group is not known twice, and one that is bound again keeps what it has.
TEST_F(ProfilerTrackFramebuffers, FramebuffersOfTheShareGroupAreFound)
{
    Attach(8, 5);
    Create(0x2000, kContext);
    MakeCurrent(0x2000);
    Es2::_glBindFramebuffer(GL_FRAMEBUFFER, 8);
    EXPECT_EQ(8u, Context(0x2000).currentFBO);
    EXPECT_EQ(0, Context(0x2000).m_FBOs.Count());
    EXPECT_EQ(1, Context().m_FBOs.ValueAt(0).Count());
    SContext* owner = nullptr;
    EXPECT_EQ(Context().m_FBOs.Find(8), Profiler().GetFBO(&Context(0x2000), 8, &owner));
    EXPECT_EQ(&Context(), owner);
    EXPECT_TRUE(Profiler().IsAttachment(&Context(0x2000), 5));
    EXPECT_FALSE(Profiler().IsAttachment(&Context(0x2000), 6));
    EXPECT_FALSE(Profiler().IsAttachment(nullptr, 5));
}

// What a framebuffer draws to is kept by attachment and target, and is marked wherever it is bound.
TEST_F(ProfilerTrackFramebuffers, Es2AttachedTexturesAreMarked)
{
    Es2::_glBindTexture(GL_TEXTURE_2D, 5);
    Es2::_glActiveTexture(GL_TEXTURE31);
    Es2::_glBindTexture(GL_TEXTURE_CUBE_MAP, 5);
    Es2::_glBindTexture(GL_TEXTURE_2D, 6);
    Es1::_glBindTexture(GL_TEXTURE_2D, 5);
    Es2::_glBindFramebuffer(GL_FRAMEBUFFER, 8);
    Refused([] { Es2::_glFramebufferTexture2D(GL_FRAMEBUFFER, GL_COLOR_ATTACHMENT0, GL_TEXTURE_2D, 5, 0); });
    EXPECT_FALSE(Es2Slot(0, 0).bIsAttachment);
    EXPECT_EQ((Texts{"glFramebufferTexture2D(36160, 36096, 34069, 5, 0)"}), HostCallsOf([] {
                  Es2::_glFramebufferTexture2D(GL_FRAMEBUFFER, GL_DEPTH_ATTACHMENT,
                                               GL_TEXTURE_CUBE_MAP_POSITIVE_X, 5, 0);
              }));
    ASSERT_EQ(1, Context().m_FBOs.ValueAt(0).Count());
    CProfiler::SFBOAttachment const* const attachment = Context().m_FBOs.Find(8)->Find(GL_DEPTH_ATTACHMENT);
    ASSERT_NE(nullptr, attachment);
    ASSERT_EQ(1, attachment->Count());
    EXPECT_EQ(5u, *attachment->Find(GL_TEXTURE_CUBE_MAP_POSITIVE_X));
    EXPECT_TRUE(Es2Slot(0, 0).bIsAttachment);
    EXPECT_TRUE(Es2Slot(31, 1).bIsAttachment);
    EXPECT_FALSE(Es2Slot(31, 0).bIsAttachment);
    EXPECT_FALSE(Es1Slot(0).bIsAttachment) << "the walk is GLES2's";
}

// GLES1's extension has units of its own.
TEST_F(ProfilerTrackFramebuffers, Es1AttachedTexturesAreMarked)
{
    Es1::_glActiveTexture(GL_TEXTURE31);
    Es1::_glBindTexture(GL_TEXTURE_2D, 5);
    Es1::_glActiveTexture(GL_TEXTURE0);
    Es1::_glBindTexture(GL_TEXTURE_2D, 6);
    Es2::_glBindTexture(GL_TEXTURE_2D, 5);
    Es1::_glBindFramebufferOES(GL_FRAMEBUFFER, 8);
    Refused(
        [] { Es1::_glFramebufferTexture2DOES(GL_FRAMEBUFFER, GL_COLOR_ATTACHMENT0, GL_TEXTURE_2D, 5, 0); });
    EXPECT_FALSE(Es1Slot(31).bIsAttachment);
    Es1::_glFramebufferTexture2DOES(GL_FRAMEBUFFER, GL_COLOR_ATTACHMENT0, GL_TEXTURE_2D, 5, 0);
    EXPECT_EQ(5u, *Context().m_FBOs.Find(8)->Find(GL_COLOR_ATTACHMENT0)->Find(GL_TEXTURE_2D));
    EXPECT_TRUE(Es1Slot(31).bIsAttachment);
    EXPECT_FALSE(Es1Slot(0).bIsAttachment);
    EXPECT_FALSE(Es2Slot(0, 0).bIsAttachment) << "the walk is GLES1's";
}

// A texture that gives way to another is drawn to no more, unless another framebuffer has it.
TEST_F(ProfilerTrackFramebuffers, ReplacedAttachmentsLoseTheirMark)
{
    Attach(8, 5);
    Es2::_glBindTexture(GL_TEXTURE_2D, 5);
    EXPECT_TRUE(Es2Slot(0, 0).bIsAttachment) << "marked at the binding";
    Attach(9, 5);
    Attach(8, 6);
    EXPECT_TRUE(Es2Slot(0, 0).bIsAttachment) << "still in the other framebuffer";
    Attach(9, 6);
    EXPECT_FALSE(Es2Slot(0, 0).bIsAttachment);
    Es2::_glBindTexture(GL_TEXTURE_2D, 6);
    EXPECT_TRUE(Es2Slot(0, 0).bIsAttachment);
    Es2::_glBindTexture(GL_TEXTURE_2D, 7);
    EXPECT_FALSE(Es2Slot(0, 0).bIsAttachment);
}

// A framebuffer that is not known leaves nothing to note but the mark.
TEST_F(ProfilerTrackFramebuffers, AnAttachmentWithoutAFramebufferIsMarkedAlone)
{
    Es2::_glBindTexture(GL_TEXTURE_2D, 5);
    Es2::_glFramebufferTexture2D(GL_FRAMEBUFFER, GL_COLOR_ATTACHMENT0, GL_TEXTURE_2D, 5, 0);
    EXPECT_EQ(0, Context().m_FBOs.Count());
    EXPECT_TRUE(Es2Slot(0, 0).bIsAttachment);
}

// The question is asked with the truth value that a name is 0: a texture that was attached stays so, also
// when it is gone, and an entry without one goes when there is a texture 1.
TEST_F(ProfilerTrackFramebuffers, OnlyEntriesWithoutATextureAreTidied)
{
    Attach(8, 5);
    Es2::_glFramebufferTexture2D(GL_FRAMEBUFFER, GL_DEPTH_ATTACHMENT, GL_TEXTURE_2D, 0, 0);
    EXPECT_EQ((Texts{"glBindFramebuffer(36160, 0)", "glIsTexture(0)", "es1 glIsTexture(0)", "glIsTexture(1)",
                     "es1 glIsTexture(1)"}),
              HostCallsOf([] {
                  Es1Host();
                  Es2::_glBindFramebuffer(GL_FRAMEBUFFER, 0);
              }));
    CProfiler::SFBO const& framebuffer = *Context().m_FBOs.Find(8);
    EXPECT_EQ(1, framebuffer.Find(GL_DEPTH_ATTACHMENT)->Count()) << "there is no texture 1";
    m_textures = {1};
    EXPECT_EQ(
        (Texts{"glBindFramebuffer(36160, 0)", "glIsTexture(0)", "es1 glIsTexture(0)", "glIsTexture(1)"}),
        HostCallsOf([] { Es2::_glBindFramebuffer(GL_FRAMEBUFFER, 0); }));
    EXPECT_EQ(0, framebuffer.Find(GL_DEPTH_ATTACHMENT)->Count());
    EXPECT_EQ(1, framebuffer.Find(GL_COLOR_ATTACHMENT0)->Count());
}

// Either API may know texture 1: GLES1 is asked when GLES2 does not.
TEST_F(ProfilerTrackFramebuffers, EitherApiErases)
{
    Es1Host();
    for (char const* api : {"es1", "es2"})
    {
        Attach(8, 0);
        Fake().On("glIsTexture", [api](Call const& call) {
            Fake().Result("glIsTexture", GLboolean{call.api == api && call.Argument<GLuint>(0) == 1});
        });
        Es2::_glBindFramebuffer(GL_FRAMEBUFFER, 0);
        EXPECT_EQ(0, Context().m_FBOs.Find(8)->Find(GL_COLOR_ATTACHMENT0)->Count()) << api;
    }
}

// The entry that takes the place of an erased one is passed over on that walk.
TEST_F(ProfilerTrackFramebuffers, TidyingSkipsBehindAnErasedEntry)
{
    Es2::_glBindFramebuffer(GL_FRAMEBUFFER, 8);
    for (GLenum face = GL_TEXTURE_CUBE_MAP_POSITIVE_X; face <= GL_TEXTURE_CUBE_MAP_POSITIVE_Y; ++face)
        Es2::_glFramebufferTexture2D(GL_FRAMEBUFFER, GL_COLOR_ATTACHMENT0, face, 0, 0);
    CProfiler::SFBOAttachment const& faces = *Context().m_FBOs.Find(8)->Find(GL_COLOR_ATTACHMENT0);
    ASSERT_EQ(3, faces.Count());
    m_textures = {1};
    Es2::_glBindFramebuffer(GL_FRAMEBUFFER, 8);
    ASSERT_EQ(1, faces.Count());
    EXPECT_EQ(GLenum{GL_TEXTURE_CUBE_MAP_POSITIVE_Y}, faces.KeyAt(0));
    Es2::_glBindFramebuffer(GL_FRAMEBUFFER, 8);
    EXPECT_EQ(0, faces.Count());
}

// The share group is tidied with the context, and a context that is not known ends the walk.
TEST_F(ProfilerTrackFramebuffers, TidyingGoesThroughTheShareGroup)
{
    Attach(8, 0);
    Create(0x2000, kContext);
    MakeCurrent(0x2000);
    m_textures = {1};
    Es1::_glBindFramebufferOES(GL_FRAMEBUFFER, 0);
    EXPECT_EQ(0, Context().m_FBOs.Find(8)->Find(GL_COLOR_ATTACHMENT0)->Count());
    Create(0x3000, 0x9000);
    MakeCurrent(0x3000);
    EXPECT_EQ((Texts{"glBindFramebuffer(36160, 0)"}),
              HostCallsOf([] { Es2::_glBindFramebuffer(GL_FRAMEBUFFER, 0); }));
    EXPECT_EQ((Texts{}), HostCallsOf([] { Profiler().TidyupDeadFBOAttachments(nullptr); }));
}

// Handles are used again, so that two contexts can come to share with each other: no walk goes round for
// ever.
TEST_F(ProfilerTrackFramebuffers, ARingOfContextsEndsEveryWalk)
{
    Create(0x2000, kContext);
    Create(kContext, 0x2000);
    Attach(8, 0);
    EXPECT_EQ(nullptr, Profiler().GetFBO(&Context(), 99, nullptr));
    EXPECT_EQ(nullptr, Profiler().GetProgram(&Context(), 99, nullptr));
    EXPECT_EQ(nullptr, Profiler().GetFragShader(&Context(), 99, nullptr));
    EXPECT_FALSE(Profiler().IsAttachment(&Context(), 99));
    Es2::_glUseProgram(0);
    EXPECT_EQ(8u, Context().currentFBO);
}

// An application of GLES2 alone makes GLES1's table too, which is empty where there is no such library.
TEST_F(ProfilerTrackFramebuffers, AMissingEs1LibraryIsNotAsked)
{
    ForgetHosts();
    STraceConfig::Instance().m_es1LibraryPath = "no/such/library.so";
    Printed([] {
        Es1Host();
        Attach(8, 0);
    });
    EXPECT_TRUE(Es1IsInit());
    EXPECT_EQ((Texts{"glBindFramebuffer(36160, 0)", "glIsTexture(1)"}),
              HostCallsOf([] { Es2::_glBindFramebuffer(GL_FRAMEBUFFER, 0); }));
}

}  // namespace
