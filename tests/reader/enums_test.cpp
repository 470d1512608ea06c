// Enumerants by value.
#include "trace/enums.h"
#include "trace/layout.h"
#include <gtest/gtest.h>

using namespace nebtrace;

// The same value has a name in each group that it stands in.
TEST(Enums, TheGroupDecidesTheName)
{
    EXPECT_STREQ("GL_ONE", EnumName("BlendingFactor", 1));
    EXPECT_STREQ("GL_LINES", EnumName("PrimitiveType", 1));
    EXPECT_STREQ("GL_ZERO", EnumName("StencilOp", 0));
    EXPECT_STREQ("GL_NO_ERROR", EnumName("ErrorCode", 0));
    EXPECT_STREQ("GL_NONE", EnumName("DrawBufferMode", 0));
    EXPECT_STREQ("EGL_FALSE", EnumName("EGLBoolean", 0));
}

// A value that its group does not know is looked for among all of its API.
TEST(Enums, OtherGroupsHelpOut)
{
    EXPECT_STREQ("GL_ARRAY_BUFFER", EnumName("TextureTarget", 0x8892));
    EXPECT_STREQ("GL_ARRAY_BUFFER", EnumName(nullptr, 0x8892));
    EXPECT_STREQ("GL_CLIP_PLANE0", EnumName("TextureTarget", 0x3000));
    EXPECT_STREQ("EGL_SUCCESS", EnumName("EGLEnum", 0x3000));
}

// A small value means too many things to be named by guess, and a bit is no enumerant.
TEST(Enums, SmallValuesAndBitsAreNotGuessed)
{
    EXPECT_EQ(nullptr, EnumName("TextureTarget", 1));
    EXPECT_EQ(nullptr, EnumName("TextureTarget", 0x0100));  // GL_DEPTH_BUFFER_BIT
    EXPECT_EQ(nullptr, EnumName("TextureTarget", 0xFFFFFFFE));
}

// Core names go before those of extensions.
TEST(Enums, TheOlderNameIsGiven)
{
    EXPECT_STREQ("GL_FRAMEBUFFER", EnumName("FramebufferTarget", 0x8D40));
    EXPECT_STREQ("GL_CLAMP_TO_EDGE", EnumName("TextureParameterValue", 0x812F));
    EXPECT_STREQ("GL_WRITE_ONLY", EnumName("BufferAccessARB", 0x88B9));
}

// Bits are named one by one; the unknown rest stays a number.
TEST(Enums, BitsAreNamedOneByOne)
{
    EnumGroup const* const clear = FindEnumGroup("ClearBufferMask");
    ASSERT_TRUE(clear);
    EXPECT_EQ("0", BitsText(clear, 0));
    EXPECT_EQ("GL_COLOR_BUFFER_BIT", BitsText(clear, 0x4000));
    EXPECT_EQ("GL_DEPTH_BUFFER_BIT | GL_STENCIL_BUFFER_BIT | GL_COLOR_BUFFER_BIT", BitsText(clear, 0x4500));
    EXPECT_EQ("GL_COLOR_BUFFER_BIT | 0x80000001", BitsText(clear, 0x80004001));
    EXPECT_EQ("0x10", BitsText(nullptr, 0x10));
}

// All shader stages together have a name of their own.
TEST(Enums, ANameForAllBitsIsGiven)
{
    EXPECT_EQ("GL_ALL_SHADER_BITS", BitsText(FindEnumGroup("UseProgramStageMask"), 0xFFFFFFFF));
}

// The enumerants that applications of both APIs use are in the groups of their arguments.
TEST(Enums, EverydayValuesHaveNamesInTheirGroups)
{
    struct
    {
        char const* group;
        uint32_t value;
        char const* name;
    } const everyday[] = {
        {"TextureTarget", 0x0DE1, "GL_TEXTURE_2D"},
        {"TextureTarget", 0x8D65, "GL_TEXTURE_EXTERNAL_OES"},
        {"TextureTarget", 0x8515, "GL_TEXTURE_CUBE_MAP_POSITIVE_X"},
        {"TextureUnit", 0x84C1, "GL_TEXTURE1"},
        {"EnableCap", 0x0B71, "GL_DEPTH_TEST"},
        {"EnableCap", 0x8074, "GL_VERTEX_ARRAY"},
        {"EnableCap", 0x4000, "GL_LIGHT0"},
        {"PixelFormat", 0x80E1, "GL_BGRA_EXT"},
        {"PixelType", 0x8363, "GL_UNSIGNED_SHORT_5_6_5"},
        {"InternalFormat", 0x1908, "GL_RGBA"},
        {"InternalFormat", 0x8D64, "GL_ETC1_RGB8_OES"},
        {"InternalFormat", 0x81A5, "GL_DEPTH_COMPONENT16"},
        {"VertexAttribPointerType", 0x1406, "GL_FLOAT"},
        {"DrawElementsType", 0x1403, "GL_UNSIGNED_SHORT"},
        {"BufferUsageARB", 0x88E4, "GL_STATIC_DRAW"},
        {"ShaderType", 0x8B30, "GL_FRAGMENT_SHADER"},
        {"GetPName", 0x0D33, "GL_MAX_TEXTURE_SIZE"},
        {"ProgramPropertyARB", 0x8B82, "GL_LINK_STATUS"},
        {"StringName", 0x1F03, "GL_EXTENSIONS"},
        {"FramebufferAttachment", 0x8D00, "GL_DEPTH_ATTACHMENT"},
        {"FramebufferStatus", 0x8CD5, "GL_FRAMEBUFFER_COMPLETE"},
        {"MatrixMode", 0x1700, "GL_MODELVIEW"},
        {"LightParameter", 0x1203, "GL_POSITION"},
        {"TextureEnvParameter", 0x2200, "GL_TEXTURE_ENV_MODE"},
        {"EGLEnum", 0x3098, "EGL_CONTEXT_CLIENT_VERSION"},
        {"EGLEnum", 0x30A0, "EGL_OPENGL_ES_API"},
    };
    for (auto const& each : everyday)
    {
        EnumGroup const* const group = FindEnumGroup(each.group);
        ASSERT_TRUE(group) << each.group;
        EXPECT_STREQ(each.name, group->Find(each.value)) << each.group;
    }
}
