// The GLES2 snapshot: renderbuffers, framebuffers and what is attached to them.
#include "tests/wrappers/es2_snapshot.h"
#include <algorithm>

class Es2SnapshotFramebuffers : public Es2Snapshot
{
protected:
    // A framebuffer that has been bound, with a texture as depth; the texture has an image of 2 by 1.
    static FBODefinition& WithDepthTexture(GLuint name, GLuint texture)
    {
        FBODefinition& framebuffer = State().mFramebufferObjects[name];
        framebuffer.name = name;
        framebuffer.firstBind = true;
        framebuffer.DepthAttachment = {texture, 0, 0, GL_TEXTURE};
        TextureDefinition& image = State().m_sTexImageTextures[texture][0][0];
        image.width = 2;
        image.height = 1;
        return framebuffer;
    }
    Lines OfFramebuffers(bool optimize = false)
    {
        return Only(Taken(optimize), {"glGenFramebuffers", "glBindFramebuffer", "glFramebufferTexture2D",
                                      "glFramebufferRenderbuffer", "glTexSubImage2D", "glBindTexture"});
    }
    static std::string Texture2D(std::string const& attachment, GLuint texture)
    {
        return "glFramebufferTexture2D(target = GL_FRAMEBUFFER, attachment = " + attachment +
               ", textarget = GL_TEXTURE_2D, texture = " + std::to_string(texture) + ", level = 0)";
    }
    // The whole image of 2 by 1, RGBA.
    static std::string PresentImage()
    {
        return "glTexSubImage2D(target = GL_TEXTURE_2D, level = 0, xoffset = 0, yoffset = 0, width = 2, "
               "height = 1, format = GL_RGBA, type = GL_UNSIGNED_BYTE, pixels = [8 bytes], alignment = 0)";
    }
};

// A renderbuffer has storage where it was bound and the host knows of a format, a binding where it was bound,
// and at least a name where it has one.
TEST_F(Es2SnapshotFramebuffers, RenderbuffersHaveWhatTheyHad)
{
    GLuint names[] = {21, 22, 23};
    Es2::_glGenRenderbuffers(3, names);
    for (GLuint name : {23u, 21u, 29u})
        Es2::_glBindRenderbuffer(GL_RENDERBUFFER, name);
    GLuint bound = 0;
    Fake().On("glBindRenderbuffer", [&bound](Call const& call) { bound = call.Argument<GLuint>(1); });
    Fake().On("glGetRenderbufferParameteriv", [&bound](Call const& call) {
        GLenum const name = call.Argument<GLenum>(1);
        *call.Pointer<GLint>(2) = bound == 23                               ? 0
                                  : name == GL_RENDERBUFFER_WIDTH           ? 16
                                  : name == GL_RENDERBUFFER_INTERNAL_FORMAT ? GL_RGB565
                                                                            : 8;
    });
    Lines const expected = {"glGenRenderbuffers(n = 1, renderbuffers = {21})",
                            "glBindRenderbuffer(target = GL_RENDERBUFFER, renderbuffer = 21)",
                            "glRenderbufferStorage(target = GL_RENDERBUFFER, internalformat = GL_RGB565, "
                            "width = 16, height = 8)",
                            "glGenRenderbuffers(n = 1, renderbuffers = {22})",
                            "glGenRenderbuffers(n = 1, renderbuffers = {23})",
                            "glBindRenderbuffer(target = GL_RENDERBUFFER, renderbuffer = 23)"};
    EXPECT_EQ(expected, Only(Taken(), {"glGenRenderbuffers", "glBindRenderbuffer", "glRenderbufferStorage"}));
}

// Framebuffers come behind the renderbuffers that they attach: colour, then depth, then stencil; the bound
// one is bound at the end. One that was never bound is a name.
TEST_F(Es2SnapshotFramebuffers, ComeBehindTheirAttachments)
{
    GLuint names[] = {21, 22};
    Es2::_glGenRenderbuffers(2, names);
    names[0] = 31;
    names[1] = 32;
    Es2::_glGenFramebuffers(2, names);
    Es2::_glBindFramebuffer(GL_FRAMEBUFFER, 31);
    Es2::_glFramebufferRenderbuffer(GL_FRAMEBUFFER, GL_STENCIL_ATTACHMENT, GL_RENDERBUFFER, 22);
    Es2::_glFramebufferRenderbuffer(GL_FRAMEBUFFER, GL_DEPTH_ATTACHMENT, GL_RENDERBUFFER, 22);
    Es2::_glFramebufferRenderbuffer(GL_FRAMEBUFFER, GL_COLOR_ATTACHMENT0, GL_RENDERBUFFER, 21);
    Es2::_glBindFramebuffer(GL_FRAMEBUFFER, 0);
    std::string const attach = "glFramebufferRenderbuffer(target = GL_FRAMEBUFFER, attachment = ";
    Lines const expected = {"glGenRenderbuffers(n = 1, renderbuffers = {21})",
                            "glGenRenderbuffers(n = 1, renderbuffers = {22})",
                            "glGenFramebuffers(n = 1, framebuffers = {31})",
                            "glBindFramebuffer(target = GL_FRAMEBUFFER, framebuffer = 31)",
                            attach + "GL_COLOR_ATTACHMENT0, renderbuffertarget = GL_RENDERBUFFER, "
                                     "renderbuffer = 21)",
                            attach + "GL_DEPTH_ATTACHMENT, renderbuffertarget = GL_RENDERBUFFER, "
                                     "renderbuffer = 22)",
                            attach + "GL_STENCIL_ATTACHMENT, renderbuffertarget = GL_RENDERBUFFER, "
                                     "renderbuffer = 22)",
                            "glGenFramebuffers(n = 1, framebuffers = {32})",
                            "glBindFramebuffer(target = GL_FRAMEBUFFER, framebuffer = 0)"};
    EXPECT_EQ(expected, Only(Taken(), {"glGenRenderbuffers", "glBindRenderbuffer", "glGenFramebuffers",
                                       "glBindFramebuffer", "glFramebufferRenderbuffer"}));
}

// The attachments of the default framebuffer make a record without name, which is not written.
TEST_F(Es2SnapshotFramebuffers, TheDefaultOneIsOnlyBound)
{
    Es2::_glFramebufferRenderbuffer(GL_FRAMEBUFFER, GL_DEPTH_ATTACHMENT, GL_RENDERBUFFER, 21);
    EXPECT_EQ(1, State().mFramebufferObjects.Count());
    EXPECT_EQ(Lines({"glBindFramebuffer(target = GL_FRAMEBUFFER, framebuffer = 0)"}), OfFramebuffers());
}

// An attached texture is given the image that the render target has at that moment: read on the host, with
// its framebuffer bound for it, and written under a binding that is put back.
TEST_F(Es2SnapshotFramebuffers, AnAttachedTextureGetsItsPresentImage)
{
    WithDepthTexture(31, 9);
    Capture();
    HostAnswers(GL_FRAMEBUFFER_BINDING, 33);
    HostAnswers(GL_TEXTURE_BINDING_2D, 5);
    HostAnswers(GL_UNPACK_ALIGNMENT, 4);
    Fake().On("glReadPixels", [](Call const& call) {
        for (size_t i = 0; i < 8; ++i)
            call.Pointer<GLubyte>(6)[i] = static_cast<GLubyte>(0x50 + i);
    });
    Fake().Forget();
    STraceConfig::m_bDoNativeCall = false;
    CTraceRecordManager::m_Es2FileStateLastGet.WriteFBOState(false);
    STraceConfig::m_bDoNativeCall = true;
    GLuint const names[] = {31, 9};
    Bytes const written = Written();
    // glGenFramebuffers, glBindFramebuffer, glFramebufferTexture2D, glBindTexture.
    Bytes const head = Joined(Expected(2005, Words({0, 0x8D40, names[0]})),
                              Expected(2048, Words({0, 0x8D40, 0x8D00, 0x0DE1, names[1], 0})),
                              Expected(2007, Words({0, 0x0DE1, names[1]})));
    // The pixels behind their pointer, the alignment, and glBindTexture.
    Bytes const tail = Joined(U32(8), Bytes{0x50, 0x51, 0x52, 0x53, 0x54, 0x55, 0x56, 0x57}, U32(4),
                              Expected(2007, Words({0, 0x0DE1, 5})));
    EXPECT_NE(written.end(), std::search(written.begin(), written.end(), head.begin(), head.end()));
    ASSERT_LT(tail.size(), written.size());
    EXPECT_EQ(tail, Bytes(written.end() - static_cast<std::ptrdiff_t>(tail.size()), written.end()));
    // On the host: the framebuffer around the reading, and no texture.
    EXPECT_EQ(0u, HostCalls("glBindTexture") + HostCalls("glTexSubImage2D"));
    std::vector<Call> const bound = Fake().Calls("glBindFramebuffer");
    ASSERT_EQ(2u, bound.size());
    EXPECT_EQ(31u, bound[0].Argument<GLuint>(1));
    EXPECT_EQ(33u, bound[1].Argument<GLuint>(1));
    std::vector<Call> const read = Fake().Calls("glReadPixels");
    ASSERT_EQ(1u, read.size());
    GLint const arguments[] = {0, 0, 2, 1, 0x1908, 0x1401};
    for (size_t i = 0; i < 6; ++i)
        EXPECT_EQ(arguments[i], read[0].Argument<GLint>(i)) << i;
}

// Depth and stencil stand in that order, each with its image, in the record's face and level.
TEST_F(Es2SnapshotFramebuffers, DepthStandsAheadOfStencil)
{
    WithDepthTexture(31, 9).StencilAttachment = {8, 3, GL_TEXTURE_CUBE_MAP_NEGATIVE_Y, GL_TEXTURE};
    State().m_sTexImageTextures[8][0][0].width = 2;
    State().m_sTexImageTextures[8][0][0].height = 1;
    Lines const expected = {
        "glGenFramebuffers(n = 1, framebuffers = {31})",
        "glBindFramebuffer(target = GL_FRAMEBUFFER, framebuffer = 31)",
        Texture2D("GL_DEPTH_ATTACHMENT", 9),
        "glBindTexture(target = GL_TEXTURE_2D, texture = 9)",
        PresentImage(),
        "glBindTexture(target = GL_TEXTURE_2D, texture = 0)",
        "glFramebufferTexture2D(target = GL_FRAMEBUFFER, attachment = GL_STENCIL_ATTACHMENT, textarget = "
        "GL_TEXTURE_CUBE_MAP_NEGATIVE_Y, texture = 8, level = 3)",
        "glBindTexture(target = GL_TEXTURE_2D, texture = 8)",
        PresentImage(),
        "glBindTexture(target = GL_TEXTURE_2D, texture = 0)",
        "glBindFramebuffer(target = GL_FRAMEBUFFER, framebuffer = 0)"};
    EXPECT_EQ(expected, OfFramebuffers());
}

// The image's size is that of the first level of the first face in the order of upload.
TEST_F(Es2SnapshotFramebuffers, TheFirstImageSaysHowMuchIsRead)
{
    WithDepthTexture(31, 9);
    State().m_sTexImageTextures.removeElement(9);
    TextureDefinition& first = State().m_sTexImageTextures[9][3][2];
    first.width = 2;
    first.height = 1;
    State().m_sTexImageTextures[9][0][0].width = 64;
    EXPECT_EQ(Lines({PresentImage()}), Only(OfFramebuffers(), {"glTexSubImage2D"}));
}

// An attached texture of which no image is known is attached without one; nothing is read.
TEST_F(Es2SnapshotFramebuffers, ATextureWithoutImageIsNotRead)
{
    WithDepthTexture(31, 9);
    State().m_sTexImageTextures.removeElement(9);
    Lines const expected = {"glGenFramebuffers(n = 1, framebuffers = {31})",
                            "glBindFramebuffer(target = GL_FRAMEBUFFER, framebuffer = 31)",
                            Texture2D("GL_DEPTH_ATTACHMENT", 9),
                            "glBindFramebuffer(target = GL_FRAMEBUFFER, framebuffer = 0)"};
    EXPECT_EQ(expected, OfFramebuffers());
    EXPECT_EQ(0u, HostCalls("glReadPixels"));
    EXPECT_EQ(nullptr, CTraceRecordManager::m_Es2FileStateLastGet.m_sTexImageTextures.Find(9));
}

// An attachment's fate is told by a number: 1 for one that was written or left out, 0 for one of no known
// kind.
TEST_F(Es2SnapshotFramebuffers, AnAttachmentSaysWhetherItIsKnown)
{
    auto const write = [this](FBOAttachmentDefinition const& attachment, bool optimize) {
        int result = -1;
        STraceConfig::m_bDoNativeCall = false;
        Printed([&] {
            result =
                State().WriteAttachmentState(31, GL_COLOR_ATTACHMENT0, attachment, State().m_sUsedTextures,
                                             State().m_sTexImageTextures, optimize);
        });
        STraceConfig::m_bDoNativeCall = true;
        return std::pair<int, Lines>(result, NamesOf(CallsIn(Written(), nebtrace::Api::Es2)));
    };
    Written();
    EXPECT_EQ((std::pair<int, Lines>(1, {"glFramebufferRenderbuffer"})),
              write({21, 0, 0, GL_RENDERBUFFER}, true));
    EXPECT_EQ((std::pair<int, Lines>(1, {"glFramebufferTexture2D"})), write({9, 0, 0, GL_TEXTURE}, false));
    EXPECT_EQ((std::pair<int, Lines>(1, {})), write({9, 0, 0, GL_TEXTURE}, true));
    EXPECT_EQ((std::pair<int, Lines>(0, {})), write({9, 0, 0, 0}, false));
    FBODefinition framebuffer;
    EXPECT_EQ(0, State().WriteFBODepthStencilAttachmentState(framebuffer, State().m_sUsedTextures,
                                                             State().m_sTexImageTextures));
}

// With the optimisation, a texture as colour attachment that no draw used is left out and told of; depth and
// stencil are written whether they were used or not.
TEST_F(Es2SnapshotFramebuffers, UnusedColorTexturesAreLeftOutWhenOptimised)
{
    WithDepthTexture(31, 9).ColorAttachment(1) = {8, 0, 0, GL_TEXTURE};
    State().m_sTexImageTextures[8][0][0].width = 2;
    State().m_sTexImageTextures[8][0][0].height = 1;
    Lines const depth = {Texture2D("GL_DEPTH_ATTACHMENT", 9)};
    Lines const both = {
        "glFramebufferTexture2D(target = GL_FRAMEBUFFER, attachment = GL_COLOR_ATTACHMENT1, textarget = "
        "GL_TEXTURE_2D, texture = 8, level = 0)",
        depth[0]};
    EXPECT_EQ(both, Only(OfFramebuffers(), {"glFramebufferTexture2D"}));
    EXPECT_EQ(depth, Only(OfFramebuffers(true), {"glFramebufferTexture2D"}));
    STraceConfig::m_bDoNativeCall = false;
    EXPECT_EQ("NEBTRACE(M) Unused texture: 8. Ignored glFramebufferTexture2D\n",
              Printed([] { CTraceRecordManager::m_Es2FileStateLastGet.WriteFBOState(true); }));
    STraceConfig::m_bDoNativeCall = true;
    State().m_sUsedTextures[8] = 8;
    EXPECT_EQ(both, Only(OfFramebuffers(true), {"glFramebufferTexture2D"}));
}
