// The enumerants of the GLES1 shadow's arrays, in the order of the arrays.
#pragma once
#include "api/es1_enums.h"
#include "api/types.h"
#include "state/es1_context_state.h"

namespace Es1Names
{

using S = CEs1ContextState;

constexpr GLenum kServerStates[S::kServerStates] = {
    Es1Enum::kAlphaTest,
    GL_BLEND,
    Es1Enum::kClipPlane0,
    Es1Enum::kClipPlane0 + 1,
    Es1Enum::kClipPlane0 + 2,
    Es1Enum::kClipPlane0 + 3,
    Es1Enum::kClipPlane0 + 4,
    Es1Enum::kClipPlane0 + 5,
    Es1Enum::kColorLogicOp,
    Es1Enum::kColorMaterial,
    GL_CULL_FACE,
    GL_DEPTH_TEST,
    GL_DITHER,
    Es1Enum::kFog,
    Es1Enum::kLight0,
    Es1Enum::kLight0 + 1,
    Es1Enum::kLight0 + 2,
    Es1Enum::kLight0 + 3,
    Es1Enum::kLight0 + 4,
    Es1Enum::kLight0 + 5,
    Es1Enum::kLight0 + 6,
    Es1Enum::kLight0 + 7,
    Es1Enum::kLighting,
    Es1Enum::kLineSmooth,
    Es1Enum::kMultisample,
    Es1Enum::kNormalize,
    Es1Enum::kPointSmooth,
    Es1Enum::kPointSprite,
    GL_POLYGON_OFFSET_FILL,
    Es1Enum::kRescaleNormal,
    GL_SAMPLE_ALPHA_TO_COVERAGE,
    Es1Enum::kSampleAlphaToOne,
    GL_SCISSOR_TEST,
    GL_STENCIL_TEST,
};

constexpr GLenum kFogParameters[S::kFogParameters] = {Es1Enum::kFogMode, Es1Enum::kFogDensity,
                                                      Es1Enum::kFogStart, Es1Enum::kFogEnd};

constexpr GLenum kHints[S::kHints] = {Es1Enum::kFogHint, GL_GENERATE_MIPMAP_HINT, Es1Enum::kLineSmoothHint,
                                      Es1Enum::kPerspectiveCorrectionHint, Es1Enum::kPointSmoothHint};

// A light's parameters have the enumerants from this one on.
constexpr GLenum kFirstLightParameter = Es1Enum::kAmbient;

constexpr GLenum kMaterial[S::kMaterialParameters] = {
    Es1Enum::kAmbient, Es1Enum::kDiffuse, Es1Enum::kSpecular, Es1Enum::kEmission, Es1Enum::kShininess};

constexpr GLenum kPointParameters[S::kPointParameters] = {Es1Enum::kPointSizeMin, Es1Enum::kPointSizeMax,
                                                          Es1Enum::kPointFadeThresholdSize,
                                                          Es1Enum::kPointDistanceAttenuation};

constexpr GLenum kTextureEnvironment[S::kTextureEnvironmentIntegers] = {
    Es1Enum::kTextureEnvMode, Es1Enum::kCombineRgb,        Es1Enum::kCombineAlpha,
    Es1Enum::kSource0Rgb,     Es1Enum::kSource0Rgb + 1,    Es1Enum::kSource0Rgb + 2,
    Es1Enum::kSource0Alpha,   Es1Enum::kSource0Alpha + 1,  Es1Enum::kSource0Alpha + 2,
    Es1Enum::kOperand0Rgb,    Es1Enum::kOperand0Rgb + 1,   Es1Enum::kOperand0Rgb + 2,
    Es1Enum::kOperand0Alpha,  Es1Enum::kOperand0Alpha + 1, Es1Enum::kOperand0Alpha + 2,
};

// Those ahead of the texture coordinates.
constexpr GLenum kClientArrays[S::kTexCoordArray0] = {Es1Enum::kColorArray,       Es1Enum::kVertexArray,
                                                      Es1Enum::kNormalArray,      Es1Enum::kPointSizeArray,
                                                      Es1Enum::kMatrixIndexArray, Es1Enum::kWeightArray};

// A texture unit, of the server and of client arrays alike.
inline GLenum Unit(int unit) { return GL_TEXTURE0 + static_cast<GLenum>(unit); }

}  // namespace Es1Names
