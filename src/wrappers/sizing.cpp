#include "wrappers/sizing.h"
#include "api/es1_enums.h"
#include "api/types.h"

using namespace Es1Enum;

unsigned int GlFogParamSize(unsigned int pname) { return pname == kFogColor ? 4 : 1; }
unsigned int GlLightModelParamSize(unsigned int pname) { return pname == kLightModelAmbient ? 4 : 1; }

unsigned int GlLightParamSize(unsigned int pname)
{
    switch (pname)
    {
    case kSpotDirection:
        return 3;
    case kAmbient:
    case kDiffuse:
    case kSpecular:
    case kPosition:
    case kEmission:
        return 4;
    default:
        return 1;
    }
}

unsigned int GlMaterialParamSize(unsigned int pname)
{
    switch (pname)
    {
    case kAmbient:
    case kDiffuse:
    case kSpecular:
    case kEmission:
    case kAmbientAndDiffuse:
        return 4;
    default:
        return 1;
    }
}

unsigned int GlTexEnvParamSize(unsigned int pname) { return pname == kTextureEnvColor ? 4 : 1; }
unsigned int GlTexParamSize(unsigned int) { return 1; }
unsigned int GlClearBufferSize(unsigned int) { return 1; }
unsigned int GlTexGenParamSize(unsigned int pname) { return pname == kTextureGenMode ? 1 : 4; }
unsigned int GlPointParamSize(unsigned int pname) { return pname == kPointDistanceAttenuation ? 3 : 1; }
unsigned int GlVertexAttribSize(unsigned int pname) { return pname == GL_CURRENT_VERTEX_ATTRIB ? 4 : 1; }

unsigned int GlStateSize(unsigned int pname)
{
    switch (pname)
    {
    case kModelviewMatrix:
    case kProjectionMatrix:
    case kTextureMatrix:
        return 16;
    case kCurrentColor:
    case kCurrentNormal:  // On purpose: 4, although a normal has three components.
    case kCurrentTextureCoords:
    case kLightModelAmbient:
    case kFogColor:
    case GL_VIEWPORT:
    case GL_SCISSOR_BOX:
    case GL_COLOR_CLEAR_VALUE:
    case GL_COLOR_WRITEMASK:
    case GL_BLEND_COLOR:
        return 4;
    case kSmoothPointSizeRange:
    case kSmoothLineWidthRange:
    case GL_DEPTH_RANGE:
    case GL_MAX_VIEWPORT_DIMS:
    case GL_ALIASED_POINT_SIZE_RANGE:
    case GL_ALIASED_LINE_WIDTH_RANGE:
        return 2;
    default:
        // On purpose: also for what returns more, such as GL_COMPRESSED_TEXTURE_FORMATS.
        return 1;
    }
}

unsigned int GlShaderTypeSize(unsigned int type)
{
    switch (type)
    {
    case GL_INT:
    case GL_FLOAT:
    case GL_BOOL:
    case GL_SAMPLER_2D:
    case GL_SAMPLER_CUBE:
        return 1;
    case GL_FLOAT_VEC2:
    case GL_INT_VEC2:
    case GL_BOOL_VEC2:
        return 2;
    case GL_FLOAT_VEC3:
    case GL_INT_VEC3:
    case GL_BOOL_VEC3:
        return 3;
    case GL_FLOAT_VEC4:
    case GL_INT_VEC4:
    case GL_BOOL_VEC4:
    case GL_FLOAT_MAT2:
        return 4;
    case GL_FLOAT_MAT3:
        return 9;
    case GL_FLOAT_MAT4:
        return 16;
    default:
        return 0;
    }
}

unsigned int GlTypeSize(unsigned int type)
{
    switch (type)
    {
    case GL_BYTE:
    case GL_UNSIGNED_BYTE:
        return 1;
    case GL_SHORT:
    case GL_UNSIGNED_SHORT:
    case GL_UNSIGNED_SHORT_4_4_4_4:
    case GL_UNSIGNED_SHORT_5_5_5_1:
    case GL_UNSIGNED_SHORT_5_6_5:
    case GL_HALF_FLOAT_OES:
        return 2;
    case GL_INT:
    case GL_UNSIGNED_INT:
    case GL_FLOAT:
    case GL_FIXED:
        return 4;
    default:
        return 0;
    }
}
