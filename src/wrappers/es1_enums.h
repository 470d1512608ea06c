// Enumerants of OpenGL ES 1 that no GLES2 header names.
#pragma once

namespace Es1Enum
{

enum : unsigned int
{
    kCurrentColor = 0x0B00,
    kCurrentNormal = 0x0B02,
    kCurrentTextureCoords = 0x0B03,
    kSmoothPointSizeRange = 0x0B12,
    kSmoothLineWidthRange = 0x0B22,
    kLightModelAmbient = 0x0B53,
    kFogColor = 0x0B66,
    kModelviewMatrix = 0x0BA6,
    kProjectionMatrix = 0x0BA7,
    kTextureMatrix = 0x0BA8,
    kAmbient = 0x1200,
    kDiffuse = 0x1201,
    kSpecular = 0x1202,
    kPosition = 0x1203,
    kSpotDirection = 0x1204,
    kEmission = 0x1600,
    kAmbientAndDiffuse = 0x1602,
    kTextureEnvColor = 0x2201,
    kTextureGenMode = 0x2500,
    kPointDistanceAttenuation = 0x8129,
    kVertexArray = 0x8074,
    kNormalArray = 0x8075,
    kColorArray = 0x8076,
    kTextureCoordArray = 0x8078,
    kWeightArray = 0x86AD,
    kMatrixIndexArray = 0x8844,
    kPointSizeArray = 0x8B9C
};

}  // namespace Es1Enum
