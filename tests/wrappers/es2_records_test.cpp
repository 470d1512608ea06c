// The records of the GLES2 shadow: what they begin with, and who owns their bytes.
#include "api/types.h"
#include "state/es2_context_state.h"
#include <cstring>
#include <gtest/gtest.h>

namespace
{

uint8_t g_bytes[16] = {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16};

TextureDefinition External(int width = 2)
{
    return TextureDefinition(GL_TEXTURE_2D, 5, 1, GL_RGBA, GL_RGBA, width, 1, 0, GL_UNSIGNED_BYTE, g_bytes, 0,
                             false, true, 4, 0);
}

}  // namespace

// A record that an index made is empty but for the four parameters.
TEST(TextureRecord, BeginsWithTheParametersOfGl)
{
    TextureDefinition const image;
    EXPECT_EQ(0x2702, image.params[0]);
    EXPECT_EQ(0x2601, image.params[1]);
    EXPECT_EQ(0x2901, image.params[2]);
    EXPECT_EQ(0x2901, image.params[3]);
    EXPECT_EQ(nullptr, image.pixels);
    EXPECT_EQ(0, image.alignment);
    EXPECT_EQ(0, image.imageSize);
    EXPECT_FALSE(image.externalData || image.deepCopy || image.mipsGenerated || image.isCompressed);
    for (int value : image.iTextureCropRectangleOES)
        EXPECT_EQ(0, value);
}

// The six faces, and nothing else, are bound as a cube map.
TEST(TextureRecord, FacesAreBoundAsACubeMap)
{
    auto const bound = [](int target) {
        return TextureDefinition(target, 1, 0, 0, 0, 0, 0, 0, 0, nullptr, 0, false, true, 0, 0).bindTarget;
    };
    for (int face = 0x8515; face <= 0x851A; ++face)
        EXPECT_EQ(0x8513u, bound(face));
    EXPECT_EQ(0x0DE1u, bound(0x0DE1));
    EXPECT_EQ(0x8514u, bound(0x8514));
    EXPECT_EQ(0x851Bu, bound(0x851B));
}

// A size of 0 is computed from the type; without one it stays, and so does a size that was given.
TEST(TextureRecord, ASizeOfZeroIsComputed)
{
    EXPECT_EQ(8, External().imageSize);
    EXPECT_EQ(0,
              TextureDefinition(GL_TEXTURE_2D, 5, 0, 0x8D64, 0x8D64, 4, 4, 0, 0, nullptr, 0, true, true, 4, 0)
                  .imageSize);
    EXPECT_EQ(3, TextureDefinition(GL_TEXTURE_2D, 5, 0, GL_RGBA, GL_RGBA, 4, 4, 0, GL_UNSIGNED_BYTE, nullptr,
                                   3, false, true, 4, 0)
                     .imageSize);
}

// Pixels of its own are copied at once, external ones are kept as given.
TEST(TextureRecord, ExternalPixelsAreKeptAsGiven)
{
    EXPECT_EQ(g_bytes, External().pixels);
    TextureDefinition const own(GL_TEXTURE_2D, 5, 1, GL_RGBA, GL_RGBA, 2, 1, 0, GL_UNSIGNED_BYTE, g_bytes, 0,
                                false, false, 4, 0);
    ASSERT_NE(g_bytes, own.pixels);
    EXPECT_EQ(0, std::memcmp(g_bytes, own.pixels, 8));
}

// Assignment shares the bytes.
TEST(TextureRecord, AssignmentSharesTheBytes)
{
    TextureDefinition const source = External();
    TextureDefinition target;
    target = source;
    EXPECT_EQ(g_bytes, target.pixels);
    EXPECT_TRUE(target.externalData);
    EXPECT_EQ(5u, target.textureName);
    EXPECT_EQ(4, target.alignment);
}

// Assignment into a record that wants a copy makes one, and leaves the record its parameters and that wish.
TEST(TextureRecord, ARecordThatWantsACopyGetsOne)
{
    TextureDefinition source = External();
    source.params[0] = 7;
    source.mipsGenerated = source.isDirty = source.isCompressed = true;
    TextureDefinition target;
    target.deepCopy = true;
    target.params[0] = 3;
    target = source;
    ASSERT_NE(g_bytes, target.pixels);
    EXPECT_EQ(0, std::memcmp(g_bytes, target.pixels, 8));
    EXPECT_FALSE(target.externalData);
    EXPECT_TRUE(target.deepCopy);
    EXPECT_EQ(3, target.params[0]);
    EXPECT_TRUE(target.mipsGenerated && target.isDirty && target.isCompressed);
    TextureDefinition shared;
    shared = source;
    EXPECT_EQ(7, shared.params[0]);
}

// Without bytes there is nothing to own, copy wanted or not.
TEST(TextureRecord, WithoutBytesNothingIsOwned)
{
    TextureDefinition source = External();
    source.imageSize = 0;
    for (bool deepCopy : {false, true})
    {
        TextureDefinition target;
        target.deepCopy = deepCopy;
        target = External();
        target = source;
        EXPECT_EQ(nullptr, target.pixels);
        EXPECT_TRUE(target.externalData);
        EXPECT_EQ(0, target.imageSize);
    }
}

// A record assigned to itself stays what it is.
TEST(TextureRecord, AssignmentToItselfDoesNothing)
{
    TextureDefinition image;
    image.deepCopy = true;
    image = External();
    uint8_t const* const pixels = image.pixels;
    TextureDefinition const& same = image;
    image = same;
    EXPECT_EQ(pixels, image.pixels);
}

// Buffers follow the same rule.
TEST(BufferRecord, SharesUnlessItWantsACopy)
{
    BufferDefinition source;
    source.bufferName = 5;
    source.bufferTarget = GL_ARRAY_BUFFER;
    source.bufferUsage = GL_STATIC_DRAW;
    source.bufferData = g_bytes;
    source.bufferDataSize = 4;
    source.isMappedOES = true;
    source.externalData = true;
    BufferDefinition shared;
    shared = source;
    EXPECT_EQ(g_bytes, shared.bufferData);
    EXPECT_TRUE(shared.externalData);
    EXPECT_EQ(5u, shared.bufferName);
    EXPECT_EQ(0x8892u, shared.bufferTarget);
    EXPECT_EQ(0x88E4u, shared.bufferUsage);
    EXPECT_TRUE(shared.isMappedOES);
    BufferDefinition copied;
    copied.deepCopy = true;
    copied = source;
    ASSERT_NE(g_bytes, copied.bufferData);
    EXPECT_EQ(0, std::memcmp(g_bytes, copied.bufferData, 4));
    EXPECT_FALSE(copied.externalData);
    source.bufferDataSize = 0;
    copied = source;
    EXPECT_EQ(nullptr, copied.bufferData);
    EXPECT_TRUE(copied.externalData);
}

// Asking for an attachment makes room for it, keeping those before it.
TEST(FramebufferRecord, GrowsToTheAttachmentAskedFor)
{
    FBODefinition framebuffer;
    framebuffer.ColorAttachment(0).name = 21;
    EXPECT_EQ(1, framebuffer.NumColorAttachments);
    framebuffer.ColorAttachment(3).name = 24;
    EXPECT_EQ(4, framebuffer.NumColorAttachments);
    EXPECT_EQ(21u, framebuffer.ColorAttachment(0).name);
    EXPECT_EQ(0u, framebuffer.ColorAttachment(1).name);
    EXPECT_EQ(0u, framebuffer.ColorAttachment(2).type);
    EXPECT_EQ(24u, framebuffer.ColorAttachment(3).name);
    EXPECT_EQ(4, framebuffer.NumColorAttachments);
}

// A copy has attachments of its own.
TEST(FramebufferRecord, ACopyHasItsOwnAttachments)
{
    FBODefinition source;
    source.name = 4;
    source.firstBind = true;
    source.ColorAttachment(1).name = 22;
    source.DepthAttachment.name = 31;
    source.StencilAttachment.name = 32;
    source.NumDrawBuffers = 1;
    source.DrawBuffers = new unsigned int[1]{77};
    FBODefinition copy;
    copy.ColorAttachment(5);
    copy = source;
    source.ColorAttachment(1).name = 99;
    EXPECT_EQ(4u, copy.name);
    EXPECT_TRUE(copy.firstBind);
    EXPECT_EQ(2, copy.NumColorAttachments);
    EXPECT_EQ(22u, copy.ColorAttachment(1).name);
    EXPECT_EQ(31u, copy.DepthAttachment.name);
    EXPECT_EQ(32u, copy.StencilAttachment.name);
    ASSERT_EQ(1, copy.NumDrawBuffers);
    EXPECT_EQ(77u, copy.DrawBuffers[0]);
}

// A uniform's record says that it has no value.
TEST(UniformRecord, BeginsUnset)
{
    UniformDefinition const uniform;
    EXPECT_EQ(9999, uniform.valueType);
    EXPECT_EQ(0u, uniform.numValues);
    EXPECT_EQ(0u, uniform.program);
}

// A context begins with the defaults of GL.
TEST(ContextState, BeginsWithTheDefaultsOfGl)
{
    CEs2ContextState const state;
    EXPECT_EQ(2, state.m_usClientVersion);
    EXPECT_EQ(1, state.m_iMaxTextureUnits);
    EXPECT_EQ(0x84C0u, state.m_eActiveTexture);
    EXPECT_EQ(0x8006u, state.m_eBlendEquationAlpha);
    EXPECT_EQ(0x8006u, state.m_eBlendEquationRGB);
    EXPECT_EQ(1u, state.m_eBlendFuncRGBSourceDest[0]);
    EXPECT_EQ(0u, state.m_eBlendFuncRGBSourceDest[1]);
    EXPECT_EQ(1u, state.m_eBlendFuncAlphaSourceDest[0]);
    EXPECT_EQ(0u, state.m_eBlendFuncAlphaSourceDest[1]);
    EXPECT_EQ(1.0f, state.m_fClearDepth);
    EXPECT_TRUE(state.m_bColorMask[0] && state.m_bColorMask[3] && state.m_bDepthMask);
    EXPECT_EQ(0x0405u, state.m_eCullFaceMode);
    EXPECT_EQ(0x0201u, state.m_eDepthFunc);
    EXPECT_EQ(0.0f, state.m_fDepthRangeNearFar[0]);
    EXPECT_EQ(1.0f, state.m_fDepthRangeNearFar[1]);
    for (int i = 0; i < 9; ++i)
        EXPECT_EQ(i == 3, state.m_baServerState[i]) << i;
    EXPECT_EQ(0x0901u, state.m_eFrontFaceMode);
    EXPECT_EQ(0x1100u, state.m_eaHints[0]);
    EXPECT_EQ(4, state.m_iPixelStorePackAlignment);
    EXPECT_EQ(4, state.m_iPixelStoreUnpackAlignment);
    EXPECT_FALSE(state.m_bDeleteUsedProgram);
    EXPECT_TRUE(state.m_bShaderCompilerReleased);
    EXPECT_EQ(1.0f, state.m_fSampleCoverageValue);
    EXPECT_FALSE(state.m_bSampleCoverageInvert);
}

// Front and back face alike; all units empty; all maps with room for ten.
TEST(ContextState, BeginsWithEqualFacesAndEmptyMaps)
{
    CEs2ContextState const state;
    for (int face = 0; face < 2; ++face)
    {
        EXPECT_EQ(0x0207u, state.m_eStencilFunc[face]);
        EXPECT_EQ(0, state.m_iStencilFuncRef[face]);
        EXPECT_EQ(0xFFFFFFFFu, state.m_uStencilFuncMask[face]);
        EXPECT_EQ(0xFFFFFFFFu, state.m_uStencilMask[face]);
        EXPECT_EQ(0x1E00u, state.m_eStencilOpFail[face]);
        EXPECT_EQ(0x1E00u, state.m_eStencilOpZFail[face]);
        EXPECT_EQ(0x1E00u, state.m_eStencilOpZPass[face]);
    }
    for (int unit = 0; unit < 32; ++unit)
        EXPECT_EQ(0u, state.m_uBound2DTextures[unit] | state.m_uBoundCubeMapTextures[unit] |
                          state.m_uBound3DTexturesOES[unit]);
    EXPECT_EQ(1, state.m_sProgramMap.Count());
    EXPECT_EQ(0, state.m_sTexImageTextures.Count() + state.m_sBufferDatas.Count() +
                     state.mFramebufferObjects.Count() + state.m_sRenderbuffers.Count() +
                     state.m_sShaderMap.Count() + state.m_sUniformMap.Count() +
                     state.m_sPreAttribMap.Count() + state.m_sPostAttribMap.Count() +
                     state.mVertexArrayObjects.Count() + state.m_sUsedTextures.Count() +
                     state.m_sUsedBuffers.Count());
    EXPECT_EQ(10, state.mVertexArrayObjects.Capacity());
    EXPECT_EQ(0u, state.m_iBoundFBO + state.m_iBoundRB + state.mBoundVAO);
}

// A framebuffer of GLES2 has one colour attachment; for any other version none is looked for.
TEST(ContextState, HasOneColorAttachmentInEs2)
{
    CEs2ContextState state;
    EXPECT_EQ(1, state.GetMaxColorAttachments());
    state.m_usClientVersion = 3;
    EXPECT_EQ(0, state.GetMaxColorAttachments());
}
