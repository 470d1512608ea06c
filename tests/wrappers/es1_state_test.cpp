// The GLES1 shadow as an object: its defaults, its copies, and the operations that do nothing.
#include "tests/wrappers/es1_snapshot.h"

// A state that no host was asked for is a context as the API starts with it.
TEST(Es1State, StartsAsAContextDoes)
{
    CEs1ContextState const state;
    EXPECT_EQ(1, state.m_iMaxTextureUnits);
    EXPECT_EQ(0x84C0u, state.m_eActiveTexture);
    EXPECT_EQ(0x0207u, state.m_eAlphaFunc);
    EXPECT_EQ(1u, state.m_eBlendSource);
    EXPECT_EQ(0u, state.m_eBlendDest);
    EXPECT_EQ(0x84C0u, state.m_eClientActiveTexture);
    EXPECT_EQ(0x0405u, state.m_eCullFaceMode);
    EXPECT_EQ(0x0201u, state.m_eDepthFunc);
    EXPECT_EQ(0x0800, state.m_faFogParameters[0]);
    EXPECT_EQ(0x0901u, state.m_eFrontFaceMode);
    for (unsigned int hint : state.m_eaHints)
        EXPECT_EQ(0x1100u, hint);
    EXPECT_EQ(0x1503u, state.m_eLogicOpMode);
    EXPECT_EQ(0x1700u, state.m_eMatrixMode);
    EXPECT_EQ(0x1D01u, state.m_eShadeModel);
    EXPECT_EQ(~0u, state.m_uStencilMask);
    for (int i = 0; i < 34; ++i)
        EXPECT_EQ(i == 12 || i == 24, state.m_baServerState[i]) << i;  // dithering and multisampling
    for (int depth : state.m_iaMatrixStackDepth)
        EXPECT_EQ(0, depth);
    for (auto const& stack : state.m_faMatrixStacks)
        for (int i = 0; i < 16; ++i)
            EXPECT_EQ(i % 5 == 0 ? 1.0f : 0.0f, stack[0][i]);
    EXPECT_EQ(1.0f, state.m_faLights[0][1][0]);
    EXPECT_EQ(0.0f, state.m_faLights[1][1][0]);
    EXPECT_EQ(180.0f, state.m_faLights[7][6][0]);
    EXPECT_EQ(0, state.mVertexArrayObjects.Count());
}

// An array object's arrays have their own sizes and types; they are off, and in no buffer.
TEST(Es1State, ArrayObjectsStartWithTheirDefaults)
{
    CEs1ContextState::vaoDefinition const object;
    struct
    {
        int size;
        unsigned int type;
    } const expected[] = {{4, 0x1406}, {4, 0x1406}, {0, 0x1406}, {0, 0x1406}, {1, 0x1401}, {1, 0x1406}};
    for (int i = 0; i < 38; ++i)
    {
        EXPECT_EQ(i < 6 ? expected[i].size : 0, object.arrays[i].size) << i;
        EXPECT_EQ(i < 6 ? expected[i].type : 0u, object.arrays[i].type) << i;
        EXPECT_EQ(0, object.arrays[i].stride);
        EXPECT_EQ(nullptr, object.arrays[i].pointer);
        EXPECT_EQ(0u, object.arrays[i].boundarraybuffer);
        EXPECT_FALSE(object.enabled[i]);
    }
    EXPECT_EQ(0u, object.boundelementbuffer);
}

// An image's size is computed where it is not given; one that is not somebody else's is copied.
TEST(Es1State, AnImageIsMeasured)
{
    unsigned char bytes[8] = {1, 2, 3, 4, 5, 6, 7, 8};
    CEs1ContextState::textureDefinition const image(0x0DE1, 5, 0x1908, 0x1908, 2, 1, 0, 0x1401, bytes, 0,
                                                    false, false, 4);
    EXPECT_EQ(0x0DE1u, image.textureTarget);
    EXPECT_EQ(5u, image.textureName);
    EXPECT_EQ(0x1908u, image.format);
    EXPECT_EQ(0x1908, image.internalformat);
    EXPECT_EQ(2, image.width);
    EXPECT_EQ(1, image.height);
    EXPECT_EQ(0x1401u, image.type);
    EXPECT_EQ(4, image.alignment);
    EXPECT_EQ(8, image.imageSize);
    EXPECT_NE(bytes, image.pixels);
    EXPECT_EQ(8, image.pixels[7]);
    int const parameters[] = {0x2702, 0x2601, 0x2901, 0x2901};
    for (int i = 0; i < 4; ++i)
        EXPECT_EQ(parameters[i], image.params[i]);
    EXPECT_FALSE(image.isDirty);
}

// On purpose: whether mipmaps were generated is told by the crop rectangle, which is still clear.
TEST(Es1State, ANewImageHasNoMipmaps)
{
    EXPECT_FALSE(CEs1ContextState::textureDefinition().mipsGenerated);
    CEs1ContextState::textureDefinition const image(0x0DE1, 5, 0, 0, 0, 0, 0, 0, nullptr, 0, true, true, 4);
    EXPECT_FALSE(image.mipsGenerated);
    EXPECT_EQ(0, image.iTextureCropRectangleOES[0]);
}

// A copy shares the bytes of textures and buffers, and has the rest for itself.
TEST(Es1State, ACopySharesBulkDataAlone)
{
    CEs1ContextState live;
    live.m_fAlphaRef = 0.5f;
    live.m_faMatrixStacks[42][19][15] = 7.0f;
    live.m_sBufferDatas[3].bufferDataSize = 2;
    live.m_sBufferDatas[3].Allocate(2);
    live.m_sTexImageTextures[9][1].imageSize = 4;
    live.m_sTexImageTextures[9][1].Allocate(4);
    live.mVertexArrayObjects[5].enabled[37] = true;
    live.mFramebufferObjects[6].DepthAttachment.name = 8;
    CEs1ContextState frozen;
    frozen = live;
    EXPECT_EQ(0.5f, frozen.m_fAlphaRef);
    EXPECT_EQ(7.0f, frozen.m_faMatrixStacks[42][19][15]);
    EXPECT_EQ(live.m_sBufferDatas[3].bufferData, frozen.m_sBufferDatas[3].bufferData);
    EXPECT_TRUE(frozen.m_sBufferDatas[3].externalData);
    EXPECT_EQ(live.m_sTexImageTextures[9][1].pixels, frozen.m_sTexImageTextures[9][1].pixels);
    live.mVertexArrayObjects[5].enabled[37] = false;
    EXPECT_TRUE(frozen.mVertexArrayObjects[5].enabled[37]);
    EXPECT_EQ(8u, frozen.mFramebufferObjects[6].DepthAttachment.name);
}

// A host with more units or palette matrices than there is room for is served for the first ones.
TEST(Es1State, StacksAreLimited)
{
    CEs1ContextState state;
    EXPECT_EQ(3, state.MatrixStacks());
    state.m_iMaxTextureUnits = 33;
    state.m_iMaxPaletteMatrices = 10;
    EXPECT_EQ(32, state.TextureUnits());
    EXPECT_EQ(9, state.PaletteMatrices());
    EXPECT_EQ(43, state.MatrixStacks());
    state.m_iMaxTextureUnits = 2;
    state.m_iMaxPaletteMatrices = 40;
    EXPECT_EQ(39, state.PaletteMatrices());
    EXPECT_EQ(43, state.MatrixStacks());
    state.m_iMaxTextureUnits = -1;
    state.m_iMaxPaletteMatrices = -1;
    EXPECT_EQ(2, state.MatrixStacks());
}

// What the recorded frames use is not followed: the frozen state stays as it was frozen.
TEST_F(Es1Snapshot, CombiningChangesNothing)
{
    CEs1ContextState frozen;
    CEs1ContextState live;
    live.m_fAlphaRef = 0.5f;
    live.m_sBufferDatas[3].bufferName = 3;
    frozen.CombineTrack(&live);
    EXPECT_EQ(0.0f, frozen.m_fAlphaRef);
    EXPECT_EQ(0, frozen.m_sBufferDatas.Count());
}

// The debugging aid tells of an error of the host, and says nothing without one.
TEST_F(Es1Snapshot, ErrorsCanBeAskedFor)
{
    EXPECT_EQ("", Printed([] { State().CheckErrorTracking(); }));
    HostFails(0x0502);
    EXPECT_EQ("Problem with ES1?\n\n", Printed([] { State().CheckErrorTracking(); }));
}
