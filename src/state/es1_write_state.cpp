// A GLES1 snapshot as calls: the order of everything, and plain state.
#include "core/trace_block.h"
#include "host/hosts.h"
#include "state/es1_matrices.h"
#include "wrappers/es1.h"
#include "wrappers/host_queries.h"
#include <algorithm>

namespace
{

using S = CEs1ContextState;

constexpr unsigned short kEs1StateMarker = 3;

void WriteMarker() { CTraceBlock const marker(kEs1StateMarker); }

void WriteUnits(S const& s)
{
    for (int unit = 0; unit < s.TextureUnits(); ++unit)
    {
        float const(&at)[4] = s.m_faCurrentTexCoords[unit];
        Es1::_glActiveTexture(Es1Names::Unit(unit));
        Es1::_glBindTexture(GL_TEXTURE_2D, s.m_uBound2DTextures[unit]);
        Es1::_glMultiTexCoord4f(Es1Names::Unit(unit), at[0], at[1], at[2], at[3]);
        if (s.m_baTexture2DEnabled[unit])
            Es1::_glEnable(GL_TEXTURE_2D);
        else
            Es1::_glDisable(GL_TEXTURE_2D);
    }
    Es1::_glActiveTexture(s.m_eActiveTexture);
}

// On purpose: nothing is turned off, not even what is on in a new context.
void WriteCapabilities(S const& s)
{
    for (int i = 0; i < S::kServerStates; ++i)
        if (s.m_baServerState[i])
            Es1::_glEnable(Es1Names::kServerStates[i]);
}

void WriteBlendAndClear(S const& s)
{
    Es1::_glBlendFunc(s.m_eBlendSource, s.m_eBlendDest);
    Es1::_glClearColor(s.m_fClearColor[0], s.m_fClearColor[1], s.m_fClearColor[2], s.m_fClearColor[3]);
    Es1::_glClearDepthf(s.m_fClearDepth);
    Es1::_glClearStencil(s.m_iClearStencil);
}

void WriteClipPlanes(S const& s)
{
    int const planes = std::min(Es1::HostInteger(Es1Enum::kMaxClipPlanes), S::kClipPlanes);
    for (int i = 0; i < planes; ++i)
        Es1::_glClipPlanef(Es1Enum::kClipPlane0 + static_cast<GLenum>(i), s.m_faClipPlanes[i]);
}

void WriteColorAndDepth(S const& s)
{
    float const(&color)[4] = s.m_faCurrentColor;
    Es1::_glColor4f(color[0], color[1], color[2], color[3]);
    Es1::_glColorMask(s.m_bColorMask[0], s.m_bColorMask[1], s.m_bColorMask[2], s.m_bColorMask[3]);
    Es1::_glCullFace(s.m_eCullFaceMode);
    Es1::_glDepthFunc(s.m_eDepthFunc);
    Es1::_glDepthMask(s.m_bDepthMask);
    Es1::_glDepthRangef(s.m_fDepthRangeNearFar[0], s.m_fDepthRangeNearFar[1]);
}

void WriteFogAndHints(S const& s)
{
    for (int i = 0; i < S::kFogParameters; ++i)
        Es1::_glFogf(Es1Names::kFogParameters[i], s.m_faFogParameters[i]);
    Es1::_glFogfv(Es1Enum::kFogColor, s.m_faFogColor);
    Es1::_glFrontFace(s.m_eFrontFaceMode);
    for (int i = 0; i < S::kHints; ++i)
        Es1::_glHint(Es1Names::kHints[i], s.m_eaHints[i]);
}

void WriteLights(S const& s)
{
    Es1::_glLightModelf(Es1Enum::kLightModelTwoSide, s.m_bLightModelTwoSide ? 1.0f : 0.0f);
    Es1::_glLightModelfv(Es1Enum::kLightModelAmbient, s.m_faLightModelAmbient);
    int const lights = std::min(Es1::HostInteger(Es1Enum::kMaxLights), S::kLights);
    for (int i = 0; i < lights; ++i)
        for (int parameter = 0; parameter < S::kLightParameters; ++parameter)
            Es1::_glLightfv(Es1Enum::kLight0 + static_cast<GLenum>(i),
                            Es1Names::kFirstLightParameter + static_cast<GLenum>(parameter),
                            s.m_faLights[i][parameter]);
}

// Both faces, the only argument that GLES1 takes.
void WriteMaterial(S const& s)
{
    Es1::_glLineWidth(s.m_fLineWidth);
    Es1::_glLogicOp(s.m_eLogicOpMode);
    for (int i = 0; i < S::kMaterialParameters; ++i)
        Es1::_glMaterialfv(GL_FRONT_AND_BACK, Es1Names::kMaterial[i], s.m_faMaterial[i]);
}

void WritePointsAndPixels(S const& s)
{
    Es1::_glNormal3f(s.m_faCurrentNormal[0], s.m_faCurrentNormal[1], s.m_faCurrentNormal[2]);
    Es1::_glPixelStorei(GL_PACK_ALIGNMENT, s.m_iPixelStorePackAlignment);
    Es1::_glPixelStorei(GL_UNPACK_ALIGNMENT, s.m_iPixelStoreUnpackAlignment);
    for (int i = 0; i < S::kPointParameters; ++i)
        Es1::_glPointParameterfv(Es1Names::kPointParameters[i], s.m_faPointParameters[i]);
    Es1::_glPointSize(s.m_fPointSize);
    Es1::_glPolygonOffset(s.m_fPolygonOffsetFactor, s.m_fPolygonOffsetUnits);
    Es1::_glSampleCoverage(s.m_fSampleCoverageValue, s.m_bSampleCoverageInvert);
}

void WriteRasterState(S const& s)
{
    int const(&box)[4] = s.m_iaScissorBox;
    Es1::_glScissor(box[0], box[1], box[2], box[3]);
    Es1::_glShadeModel(s.m_eShadeModel);
    Es1::_glStencilFunc(s.m_eStencilFunc, s.m_iStencilFuncRef, s.m_uStencilFuncMask);
    Es1::_glStencilMask(s.m_uStencilMask);
    Es1::_glStencilOp(s.m_eStencilOpFail, s.m_eStencilOpZFail, s.m_eStencilOpZPass);
    int const(&view)[4] = s.m_iaViewport;
    Es1::_glViewport(view[0], view[1], view[2], view[3]);
}

}  // namespace

// On purpose: the texture unit of the last stack is left active.
void CEs1ContextState::WriteMatrices()
{
    Es1Matrices::SSelector const select = {Es1::_glMatrixMode, Es1::_glCurrentPaletteMatrixOES,
                                           Es1::_glActiveTexture};
    for (int stack = 0; stack < MatrixStacks(); ++stack)
    {
        Es1Matrices::Select(*this, select, stack);
        int const depth = std::clamp(m_iaMatrixStackDepth[stack], 0, kMatrixStackDepth - 1);
        for (int entry = 0; entry <= depth; ++entry)
        {
            if (entry > 0)
                Es1::_glPushMatrix();
            Es1::_glLoadMatrixf(m_faMatrixStacks[stack][entry]);
        }
    }
    if (Es1Host()->glCurrentPaletteMatrixOES)
        Es1::_glCurrentPaletteMatrixOES(static_cast<GLuint>(m_iCurrentPaletteMatrix));
    Es1::_glMatrixMode(m_eMatrixMode);
}

// Lights and clip planes stand ahead of the matrices: as the host tells them they are in eye coordinates,
// which a modelview matrix would transform once more.
void CEs1ContextState::writeAsCalls()
{
    WriteMarker();
    WriteTextures();
    WriteUnits(*this);
    WriteCapabilities(*this);
    Es1::_glAlphaFunc(m_eAlphaFunc, m_fAlphaRef);
    WriteBuffers();
    WriteBlendAndClear(*this);
    WriteClipPlanes(*this);
    WriteColorAndDepth(*this);
    WriteFogAndHints(*this);
    WriteLights(*this);
    WriteMaterial(*this);
    WriteMatrices();
    WritePointsAndPixels(*this);
    WriteRasterState(*this);
    WriteArrayObjects();
    WriteFramebuffers();
    WriteMarker();
}
