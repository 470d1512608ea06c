// The GLES1 shadow as it lies in the memory of a 32-bit ARM device: 60,628 bytes, of which the matrix stacks
// take 55,040. It is compiled for that machine, and runs nowhere: what it says holds if it compiles.
//
// The object is a static one, and its copy at the first recorded frame is a plain block. Whoever gives it a
// field sees here what that costs.
#include "field_order.h"
#include "state/es1_context_state.h"
#include <type_traits>

using S = CEs1ContextState;

static_assert(std::is_standard_layout_v<S>, "so that the fields lie in their order");

// The stacks: 43 of 20 matrices of 16 floats, and behind the scenes a depth for each.
static_assert(sizeof(S::m_faMatrixStacks) == 55040);
static_assert(sizeof(S::m_iaMatrixStackDepth) == 172);
static_assert(offsetof(S, m_faMatrixStacks) == 2020);
static_assert(offsetof(S, m_faCurrentTexCoords) == 2020 + 55040);

// The other large members, in their order.
static_assert(sizeof(S::m_uBound2DTextures) == 128);
static_assert(sizeof(S::m_faClipPlanes) == 96);
static_assert(sizeof(S::m_baServerState) == 34);
static_assert(sizeof(S::m_baTexture2DEnabled) == 32);
static_assert(sizeof(S::m_faLights) == 1280);
static_assert(sizeof(S::m_faMaterial) == 80);
static_assert(sizeof(S::m_faCurrentTexCoords) == 512);
static_assert(sizeof(S::m_faPointParameters) == 64);
static_assert(sizeof(S::textureEnvironment) == 15 * 4 + 16 + 4 + 4 + 4);
static_assert(offsetof(S::textureEnvironment, color) == 15 * 4);
static_assert(offsetof(S::textureEnvironment, rgbScale) == 15 * 4 + 16);
static_assert(offsetof(S::textureEnvironment, alphaScale) == 15 * 4 + 16 + 4);
static_assert(offsetof(S::textureEnvironment, coordReplace) == 15 * 4 + 16 + 4 + 4);
static_assert(sizeof(S::m_sTextureEnvironments) == 2816);
static_assert(sizeof(S::m_sTexImageTextures) == 12, "a store is a pointer and two counts");

// What is left when those are taken away: fields of a few words each, five stores, and what aligns them.
constexpr std::size_t kLarge =
    sizeof(S::m_faMatrixStacks) + sizeof(S::m_iaMatrixStackDepth) + sizeof(S::m_uBound2DTextures) +
    sizeof(S::m_faClipPlanes) + sizeof(S::m_baServerState) + sizeof(S::m_baTexture2DEnabled) +
    sizeof(S::m_faLights) + sizeof(S::m_faMaterial) + sizeof(S::m_faCurrentTexCoords) +
    sizeof(S::m_faPointParameters) + sizeof(S::m_sTextureEnvironments);
static_assert(kLarge == 60254);
static_assert(sizeof(S) - kLarge == 374);

// The head up to the first store, the plain state, the stacks, and the tail behind the environments.
static_assert(offsetof(S, m_sBufferDatas) == 156);
static_assert(offsetof(S, m_faClipPlanes) == 196);
static_assert(offsetof(S, m_baServerState) == 332);
static_assert(offsetof(S, m_faLights) == 456);
static_assert(offsetof(S, m_faMaterial) == 1764);
static_assert(offsetof(S, m_iaMatrixStackDepth) == 1848);
static_assert(offsetof(S, m_faPointParameters) == 57596);
static_assert(offsetof(S, m_sTextureEnvironments) == 57728);
static_assert(offsetof(S, m_sTexImageTextures) == 60544);
static_assert(offsetof(S, m_iBoundRB) == 60624);
static_assert(sizeof(S) == 60628);

// All fields, in their order.
static_assert(Rising({offsetof(S, m_iMaxTextureUnits),
                      offsetof(S, m_eActiveTexture),
                      offsetof(S, m_eAlphaFunc),
                      offsetof(S, m_fAlphaRef),
                      offsetof(S, m_uBoundArrayBuffer),
                      offsetof(S, m_uBound2DTextures),
                      offsetof(S, m_eBlendSource),
                      offsetof(S, m_eBlendDest),
                      offsetof(S, m_sBufferDatas),
                      offsetof(S, m_fClearColor),
                      offsetof(S, m_fClearDepth),
                      offsetof(S, m_iClearStencil),
                      offsetof(S, m_eClientActiveTexture),
                      offsetof(S, m_faClipPlanes),
                      offsetof(S, m_faCurrentColor),
                      offsetof(S, m_bColorMask),
                      offsetof(S, m_eCullFaceMode),
                      offsetof(S, m_eDepthFunc),
                      offsetof(S, m_bDepthMask),
                      offsetof(S, m_fDepthRangeNearFar),
                      offsetof(S, m_baServerState),
                      offsetof(S, m_baTexture2DEnabled),
                      offsetof(S, m_faFogParameters),
                      offsetof(S, m_faFogColor),
                      offsetof(S, m_eFrontFaceMode),
                      offsetof(S, m_eaHints),
                      offsetof(S, m_faLights),
                      offsetof(S, m_bLightModelTwoSide),
                      offsetof(S, m_faLightModelAmbient),
                      offsetof(S, m_fLineWidth),
                      offsetof(S, m_eLogicOpMode),
                      offsetof(S, m_faMaterial),
                      offsetof(S, m_eMatrixMode),
                      offsetof(S, m_iaMatrixStackDepth),
                      offsetof(S, m_faMatrixStacks),
                      offsetof(S, m_faCurrentTexCoords),
                      offsetof(S, m_faCurrentNormal),
                      offsetof(S, m_iPixelStorePackAlignment),
                      offsetof(S, m_iPixelStoreUnpackAlignment),
                      offsetof(S, m_faPointParameters),
                      offsetof(S, m_fPointSize),
                      offsetof(S, m_fPolygonOffsetFactor),
                      offsetof(S, m_fPolygonOffsetUnits),
                      offsetof(S, m_fSampleCoverageValue),
                      offsetof(S, m_bSampleCoverageInvert),
                      offsetof(S, m_iaScissorBox),
                      offsetof(S, m_eShadeModel),
                      offsetof(S, m_eStencilFunc),
                      offsetof(S, m_iStencilFuncRef),
                      offsetof(S, m_uStencilFuncMask),
                      offsetof(S, m_uStencilMask),
                      offsetof(S, m_eStencilOpFail),
                      offsetof(S, m_eStencilOpZFail),
                      offsetof(S, m_eStencilOpZPass),
                      offsetof(S, m_sTextureEnvironments),
                      offsetof(S, m_sTexImageTextures),
                      offsetof(S, m_iaViewport),
                      offsetof(S, mBoundVAO),
                      offsetof(S, mVertexArrayObjects),
                      offsetof(S, m_iMaxPaletteMatrices),
                      offsetof(S, m_iCurrentPaletteMatrix),
                      offsetof(S, mFramebufferObjects),
                      offsetof(S, m_sRenderbuffers),
                      offsetof(S, m_iBoundFBO),
                      offsetof(S, m_iBoundRB)}));

// The records that the stores hold, each in a node of its own.
static_assert(Rising({offsetof(S::clientArray, boundarraybuffer), offsetof(S::clientArray, size),
                      offsetof(S::clientArray, type), offsetof(S::clientArray, stride),
                      offsetof(S::clientArray, pointer)}));
static_assert(sizeof(S::clientArray) == 20);
static_assert(S::kColorArray == 0 && S::kVertexArray == 1 && S::kNormalArray == 2 &&
              S::kPointSizeArray == 3 && S::kMatrixIndexArray == 4 && S::kWeightArray == 5 &&
              S::kTexCoordArray0 == 6);
static_assert(Rising({offsetof(S::vaoDefinition, arrays), offsetof(S::vaoDefinition, enabled),
                      offsetof(S::vaoDefinition, boundelementbuffer)}));
static_assert(sizeof(S::vaoDefinition) == 38 * 20 + 38 + 2 + 4);
static_assert(sizeof(S::bufferDefinition) == 24);
static_assert(sizeof(S::renderbufferDefinition) == 20);
static_assert(sizeof(S::framebufferDefinition) == 8 + 3 * 16);
static_assert(sizeof(S::textureDefinition) == 88);
