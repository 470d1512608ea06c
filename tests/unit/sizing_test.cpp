// Counts of elements by enumerant. The enumerants stand as numbers: the tables are part of the trace format,
// and a wrong name must not hide behind itself.
#include "wrappers/sizing.h"
#include <gtest/gtest.h>
#include <set>

namespace
{

using Sizer = unsigned int (*)(unsigned int);

// Every enumerant up to the end of the GL ranges that is not listed gives the default.
void ExpectOnly(Sizer sizer, unsigned int count, std::set<unsigned int> const& enumerants)
{
    for (unsigned int value = 0; value < 0x10000; ++value)
        EXPECT_EQ(enumerants.count(value) == 1, sizer(value) == count) << value << " for " << count;
}

void ExpectRange(Sizer sizer, std::set<unsigned int> const& counts)
{
    for (unsigned int value = 0; value < 0x10000; ++value)
        EXPECT_EQ(1u, counts.count(sizer(value))) << value;
}

}  // namespace

// The parameters of fixed-function state: colours are four, the spot direction three.
TEST(Sizing, FixedFunctionParameters)
{
    ExpectOnly(GlFogParamSize, 4, {2918});
    ExpectRange(GlFogParamSize, {1, 4});
    ExpectOnly(GlLightModelParamSize, 4, {2899});
    ExpectRange(GlLightModelParamSize, {1, 4});
    ExpectOnly(GlLightParamSize, 3, {4612});
    ExpectOnly(GlLightParamSize, 4, {4608, 4609, 4610, 4611, 5632});
    ExpectRange(GlLightParamSize, {1, 3, 4});
    ExpectOnly(GlMaterialParamSize, 4, {4608, 4609, 4610, 5632, 5634});
    ExpectRange(GlMaterialParamSize, {1, 4});
    ExpectOnly(GlPointParamSize, 3, {33065});
    ExpectRange(GlPointParamSize, {1, 3});
}

// Texture and attribute parameters. Generation alone is four by default.
TEST(Sizing, TextureAndAttributeParameters)
{
    ExpectOnly(GlTexEnvParamSize, 4, {8705});
    ExpectRange(GlTexEnvParamSize, {1, 4});
    ExpectRange(GlTexParamSize, {1});
    ExpectRange(GlClearBufferSize, {1});
    ExpectOnly(GlTexGenParamSize, 1, {9472});
    ExpectRange(GlTexGenParamSize, {1, 4});
    ExpectOnly(GlVertexAttribSize, 4, {34342});
    ExpectRange(GlVertexAttribSize, {1, 4});
}

// State queries. The current normal counts four, and lists of unknown length count one.
TEST(Sizing, StateQueries)
{
    ExpectOnly(GlStateSize, 16, {2982, 2983, 2984});
    ExpectOnly(GlStateSize, 4, {2816, 2818, 2819, 2899, 2918, 2978, 3088, 3106, 3107, 32773});
    ExpectOnly(GlStateSize, 2, {2834, 2850, 2928, 3386, 33901, 33902});
    ExpectRange(GlStateSize, {1, 2, 4, 16});
    EXPECT_EQ(4u, GlStateSize(0x0B02));  // GL_CURRENT_NORMAL
    EXPECT_EQ(1u, GlStateSize(0x86A3));  // GL_COMPRESSED_TEXTURE_FORMATS
}

// Components of uniform and attribute types; what is not known has none.
TEST(Sizing, ShaderTypes)
{
    ExpectOnly(GlShaderTypeSize, 1, {5124, 5126, 35670, 35678, 35680});
    ExpectOnly(GlShaderTypeSize, 2, {35664, 35667, 35671});
    ExpectOnly(GlShaderTypeSize, 3, {35665, 35668, 35672});
    ExpectOnly(GlShaderTypeSize, 4, {35666, 35669, 35673, 35674});
    ExpectOnly(GlShaderTypeSize, 9, {35675});
    ExpectOnly(GlShaderTypeSize, 16, {35676});
    ExpectRange(GlShaderTypeSize, {0, 1, 2, 3, 4, 9, 16});
}

// Bytes of component types; an unknown type is 0, so that no payload is recorded for it.
TEST(Sizing, ComponentTypes)
{
    ExpectOnly(GlTypeSize, 1, {5120, 5121});
    ExpectOnly(GlTypeSize, 2, {5122, 5123, 32819, 32820, 33635, 36193});
    ExpectOnly(GlTypeSize, 4, {5124, 5125, 5126, 5132});
    ExpectRange(GlTypeSize, {0, 1, 2, 4});
}
