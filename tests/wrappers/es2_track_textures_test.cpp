// What the shadow keeps of GLES2 textures.
#include "tests/wrappers/shadow.h"

class TrackTextures : public Shadow
{
protected:
    // Fails where there is none.
    static TextureDefinition& Image(GLuint name, int face, int level)
    {
        auto* const faces = State().m_sTexImageTextures.Find(name);
        auto* const levels = faces ? faces->Find(face) : nullptr;
        TextureDefinition* const image = levels ? levels->Find(level) : nullptr;
        EXPECT_NE(nullptr, image) << name << " " << face << " " << level;
        static TextureDefinition none;
        return image ? *image : none;
    }
    static bool IsEmpty() { return State().m_sTexImageTextures.Count() == 0; }
    void Upload(GLenum target = GL_TEXTURE_2D)
    {
        Es2::_glTexImage2D(target, 0, GL_RGBA, 2, 1, 0, GL_RGBA, GL_UNSIGNED_BYTE, m_pixels, 0);
    }

    uint8_t m_pixels[64] = {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16};
};

// An image has a record of its own with a copy of its pixels: the application may overwrite them at once.
TEST_F(TrackTextures, AnImageIsCopied)
{
    HostAnswers({{GL_TEXTURE_BINDING_2D, 5}, {GL_PACK_ALIGNMENT, 2}, {GL_UNPACK_ALIGNMENT, 2}});
    Es2::_glTexImage2D(GL_TEXTURE_2D, 3, GL_RGBA, 2, 1, 0, GL_RGBA, GL_UNSIGNED_BYTE, m_pixels, 0);
    m_pixels[0] = 99;
    TextureDefinition const& image = Image(5, 0, 3);
    EXPECT_EQ(0x0DE1u, image.textureTarget);
    EXPECT_EQ(0x0DE1u, image.bindTarget);
    EXPECT_EQ(5u, image.textureName);
    EXPECT_EQ(3, image.textureLevel);
    EXPECT_EQ(0, image.depth);
    EXPECT_EQ(0x1908u, image.format);
    EXPECT_EQ(0x1908, image.internalformat);
    EXPECT_EQ(2, image.width);
    EXPECT_EQ(1, image.height);
    EXPECT_EQ(0x1401u, image.type);
    EXPECT_EQ(2, image.alignment);
    EXPECT_EQ(0, image.border);
    ASSERT_EQ(8, image.imageSize);
    EXPECT_EQ((Bytes{1, 2, 3, 4, 5, 6, 7, 8}), Raw(image.pixels, 8));
    EXPECT_TRUE(image.deepCopy);
    EXPECT_FALSE(image.externalData || image.mipsGenerated || image.isDirty || image.isCompressed);
}

// A face of a cube map is found under the cube map's name and its own number.
TEST_F(TrackTextures, AFaceHasItsNumber)
{
    HostAnswers({{GL_TEXTURE_BINDING_2D, 5}, {GL_TEXTURE_BINDING_CUBE_MAP, 9}});
    Upload(GL_TEXTURE_CUBE_MAP_POSITIVE_Y);
    TextureDefinition const& image = Image(9, 2, 0);
    EXPECT_EQ(0x8517u, image.textureTarget);
    EXPECT_EQ(0x8513u, image.bindTarget);
    EXPECT_EQ(9u, image.textureName);
    Upload(GL_TEXTURE_CUBE_MAP_POSITIVE_X);
    EXPECT_EQ(0x8515u, Image(9, 0, 0).textureTarget);
    EXPECT_EQ(nullptr, State().m_sTexImageTextures.Find(5));
}

// The name is what the host has bound to the target, and the alignment its pack alignment.
TEST_F(TrackTextures, AnImageAsksForItsBinding)
{
    EXPECT_EQ((std::vector<GLenum>{0x0D05, 0x8069}), AskedBy([this] { Upload(); }));
    EXPECT_EQ((std::vector<GLenum>{0x0D05, 0x8514}), AskedBy([this] { Upload(0x851A); }));
}

// On purpose: the alignment is the host's pack alignment, or the trailing argument while calls are timed.
TEST_F(TrackTextures, ATimedImageKeepsItsTrailingAlignment)
{
    HostAnswers({{GL_PACK_ALIGNMENT, 8}});
    Es2::_glTexImage2D(GL_TEXTURE_2D, 0, GL_RGBA, 1, 1, 0, GL_RGBA, GL_UNSIGNED_BYTE, m_pixels, 2);
    EXPECT_EQ(8, Image(0, 0, 0).alignment);
    EXPECT_EQ(8, Image(0, 0, 0).imageSize);
    STraceConfig::m_bProfile = true;
    Es2::_glTexImage2D(GL_TEXTURE_2D, 0, GL_RGBA, 1, 1, 0, GL_RGBA, GL_UNSIGNED_BYTE, m_pixels, 2);
    EXPECT_EQ(2, Image(0, 0, 0).alignment);
    EXPECT_EQ(4, Image(0, 0, 0).imageSize);
}

// Images are kept when the host took them and contents are wanted.
TEST_F(TrackTextures, ImagesPassTheDataGate)
{
    ExpectDataGate([this] { Upload(); }, [] { return !IsEmpty(); });
}

// A failed glTexImage2D changes nothing in the shadow.
TEST_F(TrackTextures, AFailedImageChangesNothing)
{
    Upload();
    Refused([this] {
        Es2::_glTexImage2D(GL_TEXTURE_2D, 0, GL_RGB, 4, 4, 0, GL_RGB, GL_UNSIGNED_BYTE, m_pixels, 0);
    });
    EXPECT_EQ(0x1908u, Image(0, 0, 0).format);
    EXPECT_EQ(8, Image(0, 0, 0).imageSize);
}

// Null pixels make a record without pixels whose size is computed all the same.
TEST_F(TrackTextures, NullPixelsMakeARecordWithASize)
{
    HostAnswers({{GL_PACK_ALIGNMENT, 4}});
    Es2::_glTexImage2D(GL_TEXTURE_2D, 0, GL_RGB, 3, 2, 0, GL_RGB, GL_UNSIGNED_BYTE, nullptr, 0);
    EXPECT_EQ(nullptr, Image(0, 0, 0).pixels);
    EXPECT_EQ(24, Image(0, 0, 0).imageSize);
    EXPECT_TRUE(Image(0, 0, 0).externalData);
}

// Parameters that were set ahead of the image stay with it, since the record is told to keep its own.
TEST_F(TrackTextures, ParametersOutliveALaterImage)
{
    HostAnswers({{GL_TEXTURE_BINDING_2D, 5}});
    Es2::_glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, GL_NEAREST);
    EXPECT_EQ(0, Image(5, 0, 0).width);
    EXPECT_EQ(0u, Image(5, 0, 0).textureTarget);
    EXPECT_EQ(nullptr, Image(5, 0, 0).pixels);
    EXPECT_FALSE(Image(5, 0, 0).deepCopy);
    Upload();
    EXPECT_EQ(2, Image(5, 0, 0).width);
    EXPECT_EQ((Bytes{0x02, 0x27, 0, 0, 0x00, 0x26, 0, 0, 0x01, 0x29, 0, 0, 0x01, 0x29, 0, 0}),
              Raw(Image(5, 0, 0).params, 16));
}

// A new image takes the place of the old one, whatever size that had.
TEST_F(TrackTextures, ANewImageReplacesTheOld)
{
    Upload();
    Es2::_glTexImage2D(GL_TEXTURE_2D, 0, GL_ALPHA, 1, 1, 0, GL_ALPHA, GL_UNSIGNED_BYTE, m_pixels + 7, 0);
    EXPECT_EQ(1, Image(0, 0, 0).imageSize);
    EXPECT_EQ(8, Image(0, 0, 0).pixels[0]);
    Es2::_glTexImage2D(GL_TEXTURE_2D, 0, GL_ALPHA, 9, 9, 0, GL_ALPHA, GL_UNSIGNED_BYTE, nullptr, 0);
    EXPECT_EQ(nullptr, Image(0, 0, 0).pixels);
}

// A compressed image: both formats are the call's, there is no type, and the size is the call's.
TEST_F(TrackTextures, ACompressedImageHasTheSizeOfTheCall)
{
    HostAnswers({{GL_TEXTURE_BINDING_2D, 5}, {GL_PACK_ALIGNMENT, 4}});
    EXPECT_EQ((std::vector<GLenum>{0x0D05, 0x8069}), AskedBy([this] {
                  Es2::_glCompressedTexImage2D(GL_TEXTURE_2D, 1, 0x8D64, 4, 4, 0, 8, m_pixels);
              }));
    m_pixels[0] = 99;
    TextureDefinition const& image = Image(5, 0, 1);
    EXPECT_EQ(0x8D64u, image.format);
    EXPECT_EQ(0x8D64, image.internalformat);
    EXPECT_EQ(0u, image.type);
    EXPECT_EQ(4, image.alignment);
    EXPECT_TRUE(image.isCompressed);
    EXPECT_FALSE(image.externalData);
    ASSERT_EQ(8, image.imageSize);
    EXPECT_EQ((Bytes{1, 2, 3, 4, 5, 6, 7, 8}), Raw(image.pixels, 8));
}

// Compressed images pass the same gate as others.
TEST_F(TrackTextures, CompressedImagesPassTheDataGate)
{
    ExpectDataGate([this] { Es2::_glCompressedTexImage2D(GL_TEXTURE_2D, 0, 0x8D64, 4, 4, 0, 8, m_pixels); },
                   [] { return !IsEmpty(); });
}

// An image without type, should a host take one, has no size, and is not taken for a compressed one.
TEST_F(TrackTextures, AnImageWithoutTypeIsNotCompressed)
{
    Es2::_glTexImage2D(GL_TEXTURE_2D, 0, GL_RGBA, 2, 1, 0, GL_RGBA, 0, m_pixels, 0);
    EXPECT_FALSE(Image(0, 0, 0).isCompressed);
    EXPECT_EQ(0, Image(0, 0, 0).imageSize);
    EXPECT_EQ(nullptr, Image(0, 0, 0).pixels);
}

// The four parameters that are kept, and where; all others leave no record.
TEST_F(TrackTextures, FourParametersAreKept)
{
    Es2::_glTexParameteri(GL_TEXTURE_2D, 0x84FE, 2);  // anisotropy
    EXPECT_TRUE(IsEmpty());
    Es2::_glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, 11);
    Es2::_glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, 22);
    Es2::_glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_S, 33);
    Es2::_glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_T, 44);
    EXPECT_EQ(Words({11, 22, 33, 44}), Raw(Image(0, 0, 0).params, 16));
}

// The integer form asks for the binding of each of three targets, and of no other.
TEST_F(TrackTextures, TexParameteriAsksForThreeBindings)
{
    auto const asked = [](GLenum target) {
        return AskedBy([=] { Es2::_glTexParameteri(target, GL_TEXTURE_WRAP_S, GL_REPEAT); });
    };
    EXPECT_EQ(std::vector<GLenum>{0x8069}, asked(GL_TEXTURE_2D));
    EXPECT_EQ(std::vector<GLenum>{0x806A}, asked(0x806F));  // a volume
    EXPECT_EQ(std::vector<GLenum>{0x8514}, asked(GL_TEXTURE_CUBE_MAP));
    EXPECT_EQ(std::vector<GLenum>{}, asked(0x8514));
}

// On purpose: the other forms take the enumerant of the cube map's binding for its target. A true cube map is
// not asked for and goes to name 0.
TEST_F(TrackTextures, TheOtherFormsDoNotKnowACubeMap)
{
    HostAnswers({{GL_TEXTURE_BINDING_2D, 5}, {0x806A, 6}, {GL_TEXTURE_BINDING_CUBE_MAP, 9}});
    GLfloat const asFloat = GL_NEAREST;
    GLint const asInt = GL_NEAREST;
    auto const set = [&](GLenum target, int form) {
        if (form == 0)
            Es2::_glTexParameterf(target, GL_TEXTURE_MAG_FILTER, asFloat);
        else if (form == 1)
            Es2::_glTexParameterfv(target, GL_TEXTURE_MAG_FILTER, &asFloat);
        else
            Es2::_glTexParameteriv(target, GL_TEXTURE_MAG_FILTER, &asInt);
    };
    for (int form = 0; form < 3; ++form)
    {
        State().m_sTexImageTextures = {};
        EXPECT_EQ(std::vector<GLenum>{0x8069}, AskedBy([&] { set(GL_TEXTURE_2D, form); }));
        EXPECT_EQ(std::vector<GLenum>{0x806A}, AskedBy([&] { set(0x806F, form); }));
        EXPECT_EQ(std::vector<GLenum>{}, AskedBy([&] { set(GL_TEXTURE_CUBE_MAP, form); }));
        EXPECT_EQ(0x2600, Image(5, 0, 0).params[1]);
        EXPECT_EQ(0x2600, Image(6, 0, 0).params[1]);
        EXPECT_EQ(0x2600, Image(0, 0, 0).params[1]);
        EXPECT_EQ(nullptr, State().m_sTexImageTextures.Find(9));
        EXPECT_EQ(std::vector<GLenum>{0x8514}, AskedBy([&] { set(0x8514, form); }));
        EXPECT_EQ(0x2600, Image(9, 0, 0).params[1]);
    }
}

// Parameters belong to the texture: they always go to face 0, level 0.
TEST_F(TrackTextures, ParametersGoToTheFirstImage)
{
    HostAnswers({{GL_TEXTURE_BINDING_CUBE_MAP, 9}});
    Upload(GL_TEXTURE_CUBE_MAP_NEGATIVE_Z);
    Es2::_glTexParameteri(GL_TEXTURE_CUBE_MAP, GL_TEXTURE_WRAP_T, GL_CLAMP_TO_EDGE);
    EXPECT_EQ(0x812F, Image(9, 0, 0).params[3]);
    EXPECT_EQ(0x2901, Image(9, 5, 0).params[3]);
}

// Floats are cut off to unsigned integers; what none holds has a defined value.
TEST_F(TrackTextures, FloatParametersAreTruncated)
{
    auto const kept = [](GLfloat value) {
        Es2::_glTexParameterf(GL_TEXTURE_2D, GL_TEXTURE_WRAP_S, value);
        return Image(0, 0, 0).params[2];
    };
    EXPECT_EQ(10497, kept(10497.9f));
    EXPECT_EQ(0, kept(0.9f));
    EXPECT_EQ(0, kept(-3.5f));
    EXPECT_EQ(-1, kept(1e20f));
    EXPECT_EQ(static_cast<int>(0xFFFFFF00u), kept(4294967040.0f));
}

// A null array of parameters is not read.
TEST_F(TrackTextures, NullParametersAreNotRead)
{
    Es2::_glTexParameterfv(GL_TEXTURE_2D, GL_TEXTURE_WRAP_S, nullptr);
    Es2::_glTexParameteriv(GL_TEXTURE_2D, GL_TEXTURE_WRAP_S, nullptr);
    EXPECT_TRUE(IsEmpty());
}

// Each form passes the plain gate: contents are of no account.
TEST_F(TrackTextures, ParametersPassThePlainGate)
{
    GLfloat const asFloat = GL_NEAREST;
    GLint const asInt = GL_NEAREST;
    auto const isTracked = [] {
        bool const tracked = !IsEmpty();
        State().m_sTexImageTextures = {};
        return tracked;
    };
    ExpectPlainGate([=] { Es2::_glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_S, asInt); }, isTracked);
    ExpectPlainGate([=] { Es2::_glTexParameterf(GL_TEXTURE_2D, GL_TEXTURE_WRAP_S, asFloat); }, isTracked);
    ExpectPlainGate([&] { Es2::_glTexParameterfv(GL_TEXTURE_2D, GL_TEXTURE_WRAP_S, &asFloat); }, isTracked);
    ExpectPlainGate([&] { Es2::_glTexParameteriv(GL_TEXTURE_2D, GL_TEXTURE_WRAP_S, &asInt); }, isTracked);
}

// Generated levels are noted on the first image; a target of no texture marks name 0 without asking.
TEST_F(TrackTextures, GeneratedLevelsAreNoted)
{
    HostAnswers({{GL_TEXTURE_BINDING_2D, 5}, {GL_TEXTURE_BINDING_CUBE_MAP, 9}});
    auto const asked = [](GLenum target) { return AskedBy([=] { Es2::_glGenerateMipmap(target); }); };
    EXPECT_EQ(std::vector<GLenum>{0x8069}, asked(GL_TEXTURE_2D));
    EXPECT_EQ(std::vector<GLenum>{0x8514}, asked(GL_TEXTURE_CUBE_MAP));
    EXPECT_EQ(nullptr, State().m_sTexImageTextures.Find(0));
    EXPECT_EQ(std::vector<GLenum>{}, asked(GL_TEXTURE_CUBE_MAP_POSITIVE_X));
    EXPECT_TRUE(Image(5, 0, 0).mipsGenerated);
    EXPECT_TRUE(Image(9, 0, 0).mipsGenerated);
    EXPECT_TRUE(Image(0, 0, 0).mipsGenerated);
}

// Which passes the plain gate.
TEST_F(TrackTextures, GeneratedLevelsPassThePlainGate)
{
    ExpectPlainGate([] { Es2::_glGenerateMipmap(GL_TEXTURE_2D); }, [] { return !IsEmpty(); });
}

// A deleted texture stays in the map.
TEST_F(TrackTextures, ADeletedTextureStays)
{
    HostAnswers({{GL_TEXTURE_BINDING_2D, 5}});
    Upload();
    GLuint const name = 5;
    Es2::_glDeleteTextures(1, &name);
    EXPECT_EQ(8, Image(5, 0, 0).imageSize);
}

// On purpose: what these calls put into a texture is not kept.
TEST_F(TrackTextures, SomeImagesAreNotKept)
{
    Es2::_glCopyTexImage2D(GL_TEXTURE_2D, 0, GL_RGBA, 0, 0, 2, 2, 0);
    Es2::_glCopyTexSubImage2D(GL_TEXTURE_2D, 0, 0, 0, 0, 0, 2, 2);
    Es2::_glCompressedTexSubImage2D(GL_TEXTURE_2D, 0, 0, 0, 4, 4, 0x8D64, 8, m_pixels);
    Es2::_glTexImage3DOES(0x806F, 0, GL_RGBA, 1, 1, 1, 0, GL_RGBA, GL_UNSIGNED_BYTE, m_pixels);
    Es2::_glTexSubImage3DOES(0x806F, 0, 0, 0, 0, 1, 1, 1, GL_RGBA, GL_UNSIGNED_BYTE, m_pixels);
    Es2::_glCompressedTexImage3DOES(0x806F, 0, 0x8D64, 4, 4, 1, 0, 8, m_pixels);
    Es2::_glCompressedTexSubImage3DOES(0x806F, 0, 0, 0, 0, 4, 4, 1, 0x8D64, 8, m_pixels);
    Es2::_glEGLImageTargetTexture2DOES(GL_TEXTURE_2D, m_pixels);
    Es2::_glBindTexture(GL_TEXTURE_2D, 5);
    EXPECT_TRUE(IsEmpty());
}
