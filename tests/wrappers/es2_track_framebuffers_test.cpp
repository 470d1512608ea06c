// What the shadow keeps of GLES2 framebuffers and renderbuffers, and of the images of those that go.
#include "tests/wrappers/shadow.h"

class TrackFramebuffers : public Shadow
{
protected:
    static FBODefinition* Find(GLuint name) { return State().mFramebufferObjects.Find(name); }
    static RBODefinition* FindRenderbuffer(GLuint name) { return State().m_sRenderbuffers.Find(name); }
    static void Texture(GLenum attachment, GLenum target = GL_TEXTURE_2D)
    {
        Es2::_glFramebufferTexture2D(GL_FRAMEBUFFER, attachment, target, 21, 3);
    }
    static void Renderbuffer(GLenum attachment)
    {
        Es2::_glFramebufferRenderbuffer(GL_FRAMEBUFFER, attachment, GL_RENDERBUFFER, 31);
    }
    static Bytes Words4(FBOAttachmentDefinition const& attachment) { return Raw(&attachment, 16); }
};

// Each generated name has a record with it.
TEST_F(TrackFramebuffers, GeneratedNamesHaveRecords)
{
    GLuint names[] = {4, 9};
    Es2::_glGenFramebuffers(2, names);
    Es2::_glGenRenderbuffers(2, names);
    ASSERT_TRUE(Find(4) && Find(9) && FindRenderbuffer(4) && FindRenderbuffer(9));
    EXPECT_EQ(4u, Find(4)->name);
    EXPECT_EQ(9u, Find(9)->name);
    EXPECT_FALSE(Find(9)->firstBind);
    EXPECT_EQ(9u, FindRenderbuffer(9)->name);
    EXPECT_FALSE(FindRenderbuffer(9)->firstBind);
    Es2::_glGenFramebuffers(2, nullptr);
    EXPECT_EQ(2, State().mFramebufferObjects.Count());
}

// Names pass the plain gate.
TEST_F(TrackFramebuffers, GeneratedNamesPassThePlainGate)
{
    GLuint name = 4;
    ExpectPlainGate([&] { Es2::_glGenFramebuffers(1, &name); }, [] { return Find(4) != nullptr; });
    ExpectPlainGate([&] { Es2::_glGenRenderbuffers(1, &name); },
                    [] { return FindRenderbuffer(4) != nullptr; });
}

// A bound framebuffer is known as such, whether its name was generated or not; name 0 has no record.
TEST_F(TrackFramebuffers, BindingIsNoted)
{
    Es2::_glBindFramebuffer(GL_FRAMEBUFFER, 4);
    EXPECT_EQ(4u, State().m_iBoundFBO);
    ASSERT_NE(nullptr, Find(4));
    EXPECT_EQ(4u, Find(4)->name);
    EXPECT_TRUE(Find(4)->firstBind);
    Es2::_glBindFramebuffer(GL_FRAMEBUFFER, 0);
    EXPECT_EQ(0u, State().m_iBoundFBO);
    EXPECT_EQ(nullptr, Find(0));
}

// A bound renderbuffer as well, with a record for name 0 too, and without its name where none was generated.
TEST_F(TrackFramebuffers, BindingARenderbufferIsNoted)
{
    Es2::_glBindRenderbuffer(GL_RENDERBUFFER, 4);
    EXPECT_EQ(4u, State().m_iBoundRB);
    ASSERT_NE(nullptr, FindRenderbuffer(4));
    EXPECT_EQ(0u, FindRenderbuffer(4)->name);
    EXPECT_TRUE(FindRenderbuffer(4)->firstBind);
    Es2::_glBindRenderbuffer(GL_RENDERBUFFER, 0);
    EXPECT_EQ(0u, State().m_iBoundRB);
    EXPECT_NE(nullptr, FindRenderbuffer(0));
}

// Bindings pass the plain gate.
TEST_F(TrackFramebuffers, BindingPassesThePlainGate)
{
    ExpectPlainGate([] { Es2::_glBindFramebuffer(GL_FRAMEBUFFER, 4); },
                    [] { return State().m_iBoundFBO == 4; });
    ExpectPlainGate([] { Es2::_glBindRenderbuffer(GL_RENDERBUFFER, 4); },
                    [] { return State().m_iBoundRB == 4; });
}

// Deleted objects lose their records, under the plain gate.
TEST_F(TrackFramebuffers, DeletingRemovesTheRecords)
{
    GLuint const names[] = {4, 9};
    State().mFramebufferObjects[4].ColorAttachment(3);
    State().mFramebufferObjects[7].name = 7;
    State().m_sRenderbuffers[9].name = 9;
    ExpectPlainGate([&] { Es2::_glDeleteFramebuffers(2, names); }, [] { return Find(4) == nullptr; });
    ExpectPlainGate([&] { Es2::_glDeleteRenderbuffers(2, names); },
                    [] { return FindRenderbuffer(9) == nullptr; });
    EXPECT_NE(nullptr, Find(7));
}

// A texture as depth or stencil attachment is kept with level and face, in the bound framebuffer's record.
TEST_F(TrackFramebuffers, TexturesOfDepthAndStencilAreKept)
{
    Es2::_glBindFramebuffer(GL_FRAMEBUFFER, 4);
    Texture(GL_DEPTH_ATTACHMENT, GL_TEXTURE_CUBE_MAP_NEGATIVE_Y);
    Texture(GL_STENCIL_ATTACHMENT);
    EXPECT_EQ(Words({21, 3, 0x8518, 0x1702}), Words4(Find(4)->DepthAttachment));
    EXPECT_EQ(Words({21, 3, 0, 0x1702}), Words4(Find(4)->StencilAttachment));
}

// On purpose: a plain 2D target leaves the face as it was.
TEST_F(TrackFramebuffers, APlainTextureKeepsTheOldFace)
{
    Texture(GL_DEPTH_ATTACHMENT, GL_TEXTURE_CUBE_MAP_NEGATIVE_Y);
    Texture(GL_DEPTH_ATTACHMENT, GL_TEXTURE_2D);
    EXPECT_EQ(0x8518u, Find(0)->DepthAttachment.cubeface);
}

// On purpose: textures as colour attachments are not kept; the record is made all the same.
TEST_F(TrackFramebuffers, ATextureOfColorIsNotKept)
{
    Texture(GL_COLOR_ATTACHMENT0);
    ASSERT_NE(nullptr, Find(0));
    EXPECT_EQ(0, Find(0)->NumColorAttachments);
    EXPECT_EQ(Words({0, 0, 0, 0}), Words4(Find(0)->DepthAttachment));
    EXPECT_EQ(Words({0, 0, 0, 0}), Words4(Find(0)->StencilAttachment));
}

// Renderbuffers are kept for depth and stencil, and as the first colour attachment.
TEST_F(TrackFramebuffers, RenderbuffersAreKept)
{
    Es2::_glBindFramebuffer(GL_FRAMEBUFFER, 4);
    Renderbuffer(GL_DEPTH_ATTACHMENT);
    Renderbuffer(GL_STENCIL_ATTACHMENT);
    EXPECT_EQ(0, Find(4)->NumColorAttachments);
    Renderbuffer(GL_COLOR_ATTACHMENT0);
    Renderbuffer(GL_COLOR_ATTACHMENT0 + 1);
    EXPECT_EQ(Words({31, 0, 0, 0x8D41}), Words4(Find(4)->DepthAttachment));
    EXPECT_EQ(Words({31, 0, 0, 0x8D41}), Words4(Find(4)->StencilAttachment));
    ASSERT_EQ(1, Find(4)->NumColorAttachments);
    EXPECT_EQ(Words({31, 0, 0, 0x8D41}), Words4(Find(4)->ColorAttachments[0]));
}

// On purpose: attachments are followed whatever the host said of them, in the recorded frames as well.
TEST_F(TrackFramebuffers, AttachmentsPassWhenTheHostWasAsked)
{
    auto const isTracked = [] {
        bool const tracked = Find(0) != nullptr;
        State().mFramebufferObjects.removeElement(0);
        return tracked;
    };
    ExpectAskedGate([] { Texture(GL_DEPTH_ATTACHMENT); }, isTracked);
    ExpectAskedGate([] { Renderbuffer(GL_DEPTH_ATTACHMENT); }, isTracked);
    ExpectAskedGate(
        [] {
            Es2::_glFramebufferTexture2DMultisampleNBX(GL_FRAMEBUFFER, GL_DEPTH_ATTACHMENT, GL_TEXTURE_2D, 21,
                                                       3, 4);
        },
        isTracked);
    HostLacks("glFramebufferTexture2DMultisampleNBX");
    Es2::_glFramebufferTexture2DMultisampleNBX(GL_FRAMEBUFFER, GL_DEPTH_ATTACHMENT, GL_TEXTURE_2D, 21, 3, 4);
    EXPECT_FALSE(isTracked());
}

// A multisampled texture is kept as a plain one.
TEST_F(TrackFramebuffers, AMultisampledTextureIsKept)
{
    Es2::_glFramebufferTexture2DMultisampleNBX(GL_FRAMEBUFFER, GL_STENCIL_ATTACHMENT, GL_TEXTURE_2D, 21, 3,
                                               4);
    EXPECT_EQ(Words({21, 3, 0, 0x1702}), Words4(Find(0)->StencilAttachment));
}

// The size of a renderbuffer is the host's to tell.
TEST_F(TrackFramebuffers, StorageIsNotFollowed)
{
    Es2::_glBindRenderbuffer(GL_RENDERBUFFER, 4);
    Es2::_glRenderbufferStorage(GL_RENDERBUFFER, GL_RGB565, 64, 32);
    EXPECT_EQ(0, FindRenderbuffer(4)->width);
    EXPECT_EQ(0, FindRenderbuffer(4)->height);
    EXPECT_EQ(0u, FindRenderbuffer(4)->internalformat);
}

class SaveFboTexture : public TrackFramebuffers
{
protected:
    // Framebuffer 4 renders to texture 21, which has an image of this size in the shadow.
    static TextureDefinition& RenderTarget(int width, int height)
    {
        State().mFramebufferObjects[4].name = 4;
        State().mFramebufferObjects[4].ColorAttachment(0) = {21, 0, 0, GL_TEXTURE};
        State().m_iBoundFBO = 7;
        TextureDefinition& image = State().m_sTexImageTextures[21][0][0];
        image.width = width;
        image.height = height;
        image.format = GL_RGB;
        image.type = GL_UNSIGNED_SHORT_5_6_5;
        image.imageSize = 2 * width * height;
        return image;
    }
    // The host stores its pixels at rows of this many bytes.
    static void HostReads(size_t row)
    {
        Fake().On("glReadPixels", [row](Call const& call) {
            for (int y = 0; y < call.Argument<GLsizei>(3); ++y)
                for (size_t i = 0; i < row; ++i)
                    call.Pointer<uint8_t>(6)[static_cast<size_t>(y) * row + i] =
                        static_cast<uint8_t>(0x10 * (y + 1));
        });
    }
};

// Ahead of the host's deletion the render target is read into the shadow image, as RGBA bytes.
TEST_F(SaveFboTexture, IsReadAheadOfTheDeletion)
{
    TextureDefinition const& image = RenderTarget(2, 2);
    HostReads(8);
    GLuint const name = 4;
    Fake().Forget();
    Printed([&] { Es2::_glDeleteFramebuffers(1, &name); });
    EXPECT_EQ((std::vector<std::string>{"glBindFramebuffer", "glReadPixels", "glBindFramebuffer",
                                        "glDeleteFramebuffers", "glGetError"}),
              Fake().Names());
    EXPECT_EQ(4u, Fake().Calls()[0].Argument<GLuint>(1));
    EXPECT_EQ(7u, Fake().Calls()[2].Argument<GLuint>(1));
    Call const read = Fake().Calls()[1];
    GLint const arguments[] = {0, 0, 2, 2, 0x1908, 0x1401};
    for (size_t i = 0; i < 6; ++i)
        EXPECT_EQ(arguments[i], read.Argument<GLint>(i)) << i;
    ASSERT_EQ(image.pixels, read.Pointer<uint8_t>(6));
    EXPECT_EQ(Joined(Bytes(8, 0x10), Bytes(8, 0x20)), Raw(image.pixels, 16));
}

// On purpose: the record's format, type and size still describe the image that the application uploaded.
TEST_F(SaveFboTexture, LeavesFormatAndSize)
{
    TextureDefinition const& image = RenderTarget(2, 2);
    Printed([] { State().SaveFBOTexture(4); });
    EXPECT_EQ(0x1907u, image.format);
    EXPECT_EQ(0x8363u, image.type);
    EXPECT_EQ(8, image.imageSize);
    EXPECT_FALSE(image.externalData);
}

// Two lines say so, the second with the address of the record.
TEST_F(SaveFboTexture, IsLogged)
{
    TextureDefinition const& image = RenderTarget(1, 1);
    char second[80];
    std::snprintf(second, sizeof second, "NEBTRACE(M) Saving FBO(4) Target:21 TexturePointer:0x%x\n",
                  static_cast<unsigned int>(reinterpret_cast<uintptr_t>(&image)));
    EXPECT_EQ(std::string("NEBTRACE(M) Saving FBO Target Texture\n\n") + second,
              Printed([] { State().SaveFBOTexture(4); }));
}

// A texture without a record is logged with a null address, and nothing is read.
TEST_F(SaveFboTexture, ATextureWithoutRecordIsNotRead)
{
    RenderTarget(1, 1);
    State().m_sTexImageTextures.removeElement(21);
    Fake().Forget();
    EXPECT_EQ("NEBTRACE(M) Saving FBO Target Texture\n\n"
              "NEBTRACE(M) Saving FBO(4) Target:21 TexturePointer:0x0\n",
              Printed([] { State().SaveFBOTexture(4); }));
    EXPECT_EQ((std::vector<std::string>{"glBindFramebuffer", "glBindFramebuffer"}), Fake().Names());
    EXPECT_EQ(nullptr, State().m_sTexImageTextures.Find(21));
}

// The image is that of the texture's first face and level, in the order of their records.
TEST_F(SaveFboTexture, TakesTheFirstFaceAndLevel)
{
    RenderTarget(1, 1);
    State().m_sTexImageTextures.removeElement(21);
    TextureDefinition& first = State().m_sTexImageTextures[21][3][2];
    first.width = 1;
    first.height = 1;
    State().m_sTexImageTextures[21][0][0].width = 5;
    HostReads(4);
    Printed([] { State().SaveFBOTexture(4); });
    ASSERT_NE(nullptr, first.pixels);
    EXPECT_EQ(Bytes(4, 0x10), Raw(first.pixels, 4));
}

// No framebuffer of that name, one without name, a renderbuffer, and an empty attachment: nothing to save.
TEST_F(SaveFboTexture, NothingToSave)
{
    RenderTarget(1, 1);
    Fake().Forget();
    State().SaveFBOTexture(5);
    EXPECT_EQ(nullptr, Find(5));
    State().mFramebufferObjects[4].ColorAttachments[0].type = GL_RENDERBUFFER;
    State().SaveFBOTexture(4);
    State().mFramebufferObjects[4].ColorAttachments[0].type = GL_TEXTURE;
    State().mFramebufferObjects[4].name = 0;
    State().SaveFBOTexture(4);
    EXPECT_TRUE(Fake().Calls().empty());
}

// Looking for the attachment makes room for it; a context of another version has none to look for.
TEST_F(SaveFboTexture, MakesRoomForTheAttachment)
{
    State().mFramebufferObjects[4].name = 4;
    State().m_usClientVersion = 3;
    State().SaveFBOTexture(4);
    EXPECT_EQ(0, State().mFramebufferObjects[4].NumColorAttachments);
    State().m_usClientVersion = 2;
    State().SaveFBOTexture(4);
    EXPECT_EQ(1, State().mFramebufferObjects[4].NumColorAttachments);
}

// Rows that the host pads have room: the pack alignment is the application's.
TEST_F(SaveFboTexture, PaddedRowsHaveRoom)
{
    TextureDefinition const& image = RenderTarget(3, 2);
    HostReads(16);
    Printed([] { State().SaveFBOTexture(4); });
    EXPECT_EQ(0x20, image.pixels[31]);
}

// It is done for each name in order, whenever the host is called: recorded or not, refused or not.
TEST_F(SaveFboTexture, IsDoneForEachName)
{
    RenderTarget(1, 1);
    State().mFramebufferObjects[5] = State().mFramebufferObjects[4];
    State().mFramebufferObjects[5].name = 5;
    GLuint const names[] = {5, 4};
    RecordFromHere();
    Fake().Forget();
    WithoutHost([&] { Es2::_glDeleteFramebuffers(2, names); });
    EXPECT_TRUE(Fake().Calls().empty());
    Refused([&] { Es2::_glDeleteFramebuffers(2, names); });
    std::vector<Call> const binds = Fake().Calls("glBindFramebuffer");
    ASSERT_EQ(4u, binds.size());
    EXPECT_EQ(5u, binds[0].Argument<GLuint>(1));
    EXPECT_EQ(4u, binds[2].Argument<GLuint>(1));
}
