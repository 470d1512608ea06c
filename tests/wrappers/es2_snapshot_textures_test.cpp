// The GLES2 snapshot: textures and their bindings.
#include "tests/wrappers/es2_snapshot.h"
#include <algorithm>

class Es2SnapshotTextures : public Es2Snapshot
{
protected:
    // The calls of textures alone.
    Lines OfTextures(bool optimize = false)
    {
        return Only(Taken(optimize), {"glGenTextures", "glBindTexture", "glTexParameteri", "glTexImage2D",
                                      "glCompressedTexImage2D", "glGenerateMipmap", "glActiveTexture"});
    }
    // The images of the fixture, behind their target and level.
    static std::string ImageLine(std::string const& targetAndLevel)
    {
        return "glTexImage2D(target = " + targetAndLevel +
               ", internalformat = GL_ALPHA, width = 1, height = 1, border = 0, format = GL_ALPHA, type = "
               "GL_UNSIGNED_BYTE, pixels = [1 bytes], alignment = 0)";
    }
};

// A texture gets its name, binding and parameters with its first image; its levels follow under that binding,
// in the order of their upload. Behind all textures stand the bindings of the units, and the active one.
TEST_F(Es2SnapshotTextures, AreWrittenLevelByLevel)
{
    BindTexture(9);
    Es2::_glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_S, GL_CLAMP_TO_EDGE);
    Image(GL_TEXTURE_2D, 0, 1);
    Image(GL_TEXTURE_2D, 2, 2);
    Image(GL_TEXTURE_2D, 1, 3);
    Lines const expected = {
        "glGenTextures(n = 1, textures = {9})",
        "glBindTexture(target = GL_TEXTURE_2D, texture = 9)",
        "glTexParameteri(target = GL_TEXTURE_2D, pname = GL_TEXTURE_MIN_FILTER, param = "
        "GL_NEAREST_MIPMAP_LINEAR)",
        "glTexParameteri(target = GL_TEXTURE_2D, pname = GL_TEXTURE_MAG_FILTER, param = GL_LINEAR)",
        "glTexParameteri(target = GL_TEXTURE_2D, pname = GL_TEXTURE_WRAP_S, param = GL_CLAMP_TO_EDGE)",
        "glTexParameteri(target = GL_TEXTURE_2D, pname = GL_TEXTURE_WRAP_T, param = GL_REPEAT)",
        ImageLine("GL_TEXTURE_2D, level = 0"),
        ImageLine("GL_TEXTURE_2D, level = 2"),
        ImageLine("GL_TEXTURE_2D, level = 1"),
        "glActiveTexture(texture = GL_TEXTURE0)",
        "glBindTexture(target = GL_TEXTURE_2D, texture = 9)",
        "glActiveTexture(texture = GL_TEXTURE1)",
        "glBindTexture(target = GL_TEXTURE_2D, texture = 9)",
        "glActiveTexture(texture = GL_TEXTURE0)"};
    EXPECT_EQ(expected, OfTextures());
}

// The record of an image holds the application's pixels and the alignment of its upload.
TEST_F(Es2SnapshotTextures, AnImageHoldsItsPixels)
{
    HostAnswers(GL_PACK_ALIGNMENT, 2);
    HostAnswers(GL_UNPACK_ALIGNMENT, 2);
    BindTexture(9);
    GLubyte const pixels[] = {1, 2, 3, 0, 5, 6, 7};  // two rows of 3 bytes, the first one padded
    Es2::_glTexImage2D(GL_TEXTURE_2D, 0, GL_RGB, 1, 2, 0, GL_RGB, GL_UNSIGNED_BYTE, pixels, 0);
    Capture();
    STraceConfig::m_bDoNativeCall = false;
    CTraceRecordManager::m_Es2FileStateLastGet.TraceTextures(false);
    STraceConfig::m_bDoNativeCall = true;
    Bytes const written = Written();
    Bytes const head = Words({0, 0x0DE1, 0, 0x1907, 1, 2, 0, 0x1907, 0x1401});
    auto const image = std::search(written.begin(), written.end(), head.begin(), head.end());
    ASSERT_LE(50, written.end() - image);
    // Behind the pointer: the size, two rows at an alignment of 2, the alignment.
    EXPECT_EQ(Joined(U32(8), Bytes{1, 2, 3, 0, 5, 6, 7}), Bytes(image + 40, image + 51));
    EXPECT_EQ(U32(2), Bytes(image + 52, image + 56));
}

// All faces of a cube map are uploaded under the binding that the first one's level 0 makes.
TEST_F(Es2SnapshotTextures, ACubeMapIsBoundOnce)
{
    BindCubeMap(9);
    for (GLenum face = 0; face < 6; ++face)
        for (GLint level = 0; level < 2; ++level)
            Image(GL_TEXTURE_CUBE_MAP_POSITIVE_X + face, level, 1);
    BindCubeMap(0);
    Lines const expected = {
        "glGenTextures(n = 1, textures = {9})",
        "glBindTexture(target = GL_TEXTURE_CUBE_MAP, texture = 9)",
        "glTexParameteri(target = GL_TEXTURE_CUBE_MAP, pname = GL_TEXTURE_MIN_FILTER, param = "
        "GL_NEAREST_MIPMAP_LINEAR)",
        "glTexParameteri(target = GL_TEXTURE_CUBE_MAP, pname = GL_TEXTURE_MAG_FILTER, param = GL_LINEAR)",
        "glTexParameteri(target = GL_TEXTURE_CUBE_MAP, pname = GL_TEXTURE_WRAP_S, param = GL_REPEAT)",
        "glTexParameteri(target = GL_TEXTURE_CUBE_MAP, pname = GL_TEXTURE_WRAP_T, param = GL_REPEAT)",
        ImageLine("GL_TEXTURE_CUBE_MAP_POSITIVE_X, level = 0"),
        ImageLine("GL_TEXTURE_CUBE_MAP_POSITIVE_X, level = 1"),
        ImageLine("GL_TEXTURE_CUBE_MAP_NEGATIVE_X, level = 0"),
        ImageLine("GL_TEXTURE_CUBE_MAP_NEGATIVE_X, level = 1"),
        ImageLine("GL_TEXTURE_CUBE_MAP_POSITIVE_Y, level = 0"),
        ImageLine("GL_TEXTURE_CUBE_MAP_POSITIVE_Y, level = 1"),
        ImageLine("GL_TEXTURE_CUBE_MAP_NEGATIVE_Y, level = 0"),
        ImageLine("GL_TEXTURE_CUBE_MAP_NEGATIVE_Y, level = 1"),
        ImageLine("GL_TEXTURE_CUBE_MAP_POSITIVE_Z, level = 0"),
        ImageLine("GL_TEXTURE_CUBE_MAP_POSITIVE_Z, level = 1"),
        ImageLine("GL_TEXTURE_CUBE_MAP_NEGATIVE_Z, level = 0"),
        ImageLine("GL_TEXTURE_CUBE_MAP_NEGATIVE_Z, level = 1"),
        "glActiveTexture(texture = GL_TEXTURE0)"};
    EXPECT_EQ(expected, OfTextures());
}

// On purpose: the order is that of the upload. An image ahead of the first face's level 0 stands ahead of the
// binding.
TEST_F(Es2SnapshotTextures, ImagesKeepTheOrderOfTheirUpload)
{
    BindCubeMap(9);
    Image(GL_TEXTURE_CUBE_MAP_NEGATIVE_X, 0, 1);
    Image(GL_TEXTURE_CUBE_MAP_POSITIVE_X, 0, 1);
    BindCubeMap(0);
    Lines const calls = Only(OfTextures(), {"glGenTextures", "glBindTexture", "glTexImage2D"});
    Lines const expected = {ImageLine("GL_TEXTURE_CUBE_MAP_NEGATIVE_X, level = 0"),
                            "glGenTextures(n = 1, textures = {9})",
                            "glBindTexture(target = GL_TEXTURE_CUBE_MAP, texture = 9)",
                            ImageLine("GL_TEXTURE_CUBE_MAP_POSITIVE_X, level = 0")};
    EXPECT_EQ(expected, calls);
}

// Textures come in the order in which they first were heard of.
TEST_F(Es2SnapshotTextures, TexturesComeInTheirOrder)
{
    for (GLuint name : {9u, 3u, 7u})
    {
        BindTexture(name);
        Image(GL_TEXTURE_2D, 0, 1);
    }
    BindTexture(9);
    Image(GL_TEXTURE_2D, 0, 2);
    EXPECT_EQ(Lines({"glGenTextures(n = 1, textures = {9})", "glGenTextures(n = 1, textures = {3})",
                     "glGenTextures(n = 1, textures = {7})"}),
              Only(OfTextures(), {"glGenTextures"}));
}

// Parameters belong to a context of version 2.
TEST_F(Es2SnapshotTextures, OtherVersionsHaveNoParameters)
{
    CTraceRecordManager::m_EglFileState->m_iClientVersion = 3;
    BindTexture(9);
    Image(GL_TEXTURE_2D, 0, 1);
    EXPECT_EQ(Lines({"glGenTextures", "glTexImage2D"}),
              NamesOf(Only(OfTextures(), {"glGenTextures", "glTexParameteri", "glTexImage2D"})));
}

// A texture that has parameters alone has no image to be made with: it is left out.
TEST_F(Es2SnapshotTextures, ATextureWithoutImageIsLeftOut)
{
    BindTexture(9);
    Es2::_glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_S, GL_CLAMP_TO_EDGE);
    BindTexture(0);
    EXPECT_EQ(Lines({"glActiveTexture(texture = GL_TEXTURE0)"}), OfTextures());
}

// The flag of generated mipmaps lives on the first image. On purpose: they are generated at once behind it,
// ahead of the other levels, and by the first face of a cube map.
TEST_F(Es2SnapshotTextures, GenerateMipmapsBehindTheFirstImage)
{
    BindTexture(8);
    Image(GL_TEXTURE_2D, 0, 1);
    Image(GL_TEXTURE_2D, 1, 1);
    Es2::_glGenerateMipmap(GL_TEXTURE_2D);
    BindCubeMap(9);
    Image(GL_TEXTURE_CUBE_MAP_POSITIVE_X, 0, 1);
    Image(GL_TEXTURE_CUBE_MAP_NEGATIVE_X, 0, 1);
    Es2::_glGenerateMipmap(GL_TEXTURE_CUBE_MAP);
    Lines const expected = {ImageLine("GL_TEXTURE_2D, level = 0"),
                            "glGenerateMipmap(target = GL_TEXTURE_2D)",
                            ImageLine("GL_TEXTURE_2D, level = 1"),
                            ImageLine("GL_TEXTURE_CUBE_MAP_POSITIVE_X, level = 0"),
                            "glGenerateMipmap(target = GL_TEXTURE_CUBE_MAP_POSITIVE_X)",
                            ImageLine("GL_TEXTURE_CUBE_MAP_NEGATIVE_X, level = 0")};
    EXPECT_EQ(expected, Only(OfTextures(), {"glTexImage2D", "glGenerateMipmap"}));
}

// Compressed images have a call of their own, with the size of the upload.
TEST_F(Es2SnapshotTextures, CompressedImagesAreWrittenAsSuch)
{
    GLubyte const block[8] = {1, 2, 3, 4, 5, 6, 7, 8};
    BindTexture(9);
    Es2::_glCompressedTexImage2D(GL_TEXTURE_2D, 0, 0x8D64, 4, 4, 0, 8, block);
    Lines const expected = {"glGenTextures(n = 1, textures = {9})",
                            "glCompressedTexImage2D(target = GL_TEXTURE_2D, level = 0, internalformat = "
                            "GL_ETC1_RGB8_OES, width = 4, height = 4, border = 0, imageSize = 8, data = [8 "
                            "bytes])"};
    EXPECT_EQ(expected, Only(OfTextures(), {"glGenTextures", "glTexImage2D", "glCompressedTexImage2D"}));
}

// An image without pixels is written without data.
TEST_F(Es2SnapshotTextures, ImagesWithoutPixelsHaveNoData)
{
    BindTexture(9);
    Es2::_glTexImage2D(GL_TEXTURE_2D, 0, GL_RGBA, 2, 2, 0, GL_RGBA, GL_UNSIGNED_BYTE, nullptr, 0);
    EXPECT_EQ(Lines({"glTexImage2D(target = GL_TEXTURE_2D, level = 0, internalformat = GL_RGBA, width = 2, "
                     "height = 2, border = 0, format = GL_RGBA, type = GL_UNSIGNED_BYTE, pixels = NULL, "
                     "alignment = 0)"}),
              Only(OfTextures(), {"glTexImage2D"}));
}

// Each unit's bindings of both kinds follow its selection; a unit without a binding is not selected.
TEST_F(Es2SnapshotTextures, UnitsHaveTheirBindings)
{
    HostAnswers(GL_MAX_TEXTURE_IMAGE_UNITS, 3);
    HostAnswers(GL_ACTIVE_TEXTURE, GL_TEXTURE2);
    Fake().On("glActiveTexture", [this](Call const& call) {
        GLenum const unit = call.Argument<GLenum>(0) - GL_TEXTURE0;
        BindTexture(unit == 1 ? 0 : 10 + unit);
        BindCubeMap(unit == 2 ? 20 : 0);
    });
    Lines const expected = {
        "glActiveTexture(texture = GL_TEXTURE0)", "glBindTexture(target = GL_TEXTURE_2D, texture = 10)",
        "glActiveTexture(texture = GL_TEXTURE2)", "glBindTexture(target = GL_TEXTURE_2D, texture = 12)",
        "glActiveTexture(texture = GL_TEXTURE2)", "glBindTexture(target = GL_TEXTURE_CUBE_MAP, texture = 20)",
        "glActiveTexture(texture = GL_TEXTURE2)"};
    EXPECT_EQ(expected, OfTextures());
}

// With the optimisation, a texture that no draw used writes nothing, though the unit's binding is still
// written.
TEST_F(Es2SnapshotTextures, UnusedOnesAreLeftOutWhenOptimised)
{
    BindTexture(9);
    Image(GL_TEXTURE_2D, 0, 1);
    EXPECT_EQ(
        Lines({"glActiveTexture(texture = GL_TEXTURE0)", "glBindTexture(target = GL_TEXTURE_2D, texture = 9)",
               "glActiveTexture(texture = GL_TEXTURE1)", "glBindTexture(target = GL_TEXTURE_2D, texture = 9)",
               "glActiveTexture(texture = GL_TEXTURE0)"}),
        OfTextures(true));
    State().m_sUsedTextures[9] = 9;
    EXPECT_EQ(1u, Only(Write(true), {"glTexImage2D"}).size());
}

// Each image that is left out is told of.
TEST_F(Es2SnapshotTextures, EachUnusedImageIsLogged)
{
    BindTexture(9);
    Image(GL_TEXTURE_2D, 0, 1);
    Image(GL_TEXTURE_2D, 1, 1);
    BindTexture(3);
    Image(GL_TEXTURE_2D, 0, 1);
    State().m_sUsedTextures[3] = 3;
    Capture();
    CTraceRecordManager::m_Es2FileStateLastGet.CombineTrack(&State());
    STraceConfig::m_bDoNativeCall = false;
    EXPECT_EQ("NEBTRACE(M) Texture not used: 9. Ignored\nNEBTRACE(M) Texture not used: 9. Ignored\n",
              Printed([] { CTraceRecordManager::m_Es2FileStateLastGet.TraceTextures(true); }));
    EXPECT_EQ("", Printed([] { CTraceRecordManager::m_Es2FileStateLastGet.TraceTextures(false); }));
    STraceConfig::m_bDoNativeCall = true;
}
