// What a GLES1 snapshot asks the host for.
#include "host/hosts.h"
#include "state/es1_matrices.h"
#include "state/host_capture.h"
#include "wrappers/host_queries.h"
#include <algorithm>

namespace
{

using HostCapture::Ask;
using HostCapture::FieldOf;
using S = CEs1ContextState;
using SQuery = HostCapture::SQuery<S>;

constexpr SQuery kBeforeBindings[] = {
    {Es1Enum::kMaxTextureUnits, [](S& s) { return FieldOf(&s.m_iMaxTextureUnits); }},
    {GL_ACTIVE_TEXTURE, [](S& s) { return FieldOf(&s.m_eActiveTexture); }},
    {Es1Enum::kAlphaTestFunc, [](S& s) { return FieldOf(&s.m_eAlphaFunc); }},
    {Es1Enum::kAlphaTestRef, [](S& s) { return FieldOf(&s.m_fAlphaRef); }},
    {GL_ARRAY_BUFFER_BINDING, [](S& s) { return FieldOf(&s.m_uBoundArrayBuffer); }},
};

constexpr SQuery kBeforeClipPlanes[] = {
    {Es1Enum::kBlendSrc, [](S& s) { return FieldOf(&s.m_eBlendSource); }},
    {Es1Enum::kBlendDst, [](S& s) { return FieldOf(&s.m_eBlendDest); }},
    {GL_COLOR_CLEAR_VALUE, [](S& s) { return FieldOf(s.m_fClearColor); }},
    {GL_DEPTH_CLEAR_VALUE, [](S& s) { return FieldOf(&s.m_fClearDepth); }},
    {GL_STENCIL_CLEAR_VALUE, [](S& s) { return FieldOf(&s.m_iClearStencil); }},
    {Es1Enum::kClientActiveTexture, [](S& s) { return FieldOf(&s.m_eClientActiveTexture); }},
};

constexpr SQuery kBeforeCapabilities[] = {
    {Es1Enum::kCurrentColor, [](S& s) { return FieldOf(s.m_faCurrentColor); }},
    {GL_COLOR_WRITEMASK, [](S& s) { return FieldOf(s.m_bColorMask, 4); }},
    {GL_CULL_FACE_MODE, [](S& s) { return FieldOf(&s.m_eCullFaceMode); }},
    {GL_DEPTH_FUNC, [](S& s) { return FieldOf(&s.m_eDepthFunc); }},
    {GL_DEPTH_WRITEMASK, [](S& s) { return FieldOf(&s.m_bDepthMask); }},
    {GL_DEPTH_RANGE, [](S& s) { return FieldOf(s.m_fDepthRangeNearFar); }},
};

constexpr SQuery kBeforeHints[] = {
    {Es1Enum::kFogColor, [](S& s) { return FieldOf(s.m_faFogColor); }},
    {GL_FRONT_FACE, [](S& s) { return FieldOf(&s.m_eFrontFaceMode); }},
};

constexpr SQuery kBeforeMaterial[] = {
    {Es1Enum::kLightModelTwoSide, [](S& s) { return FieldOf(&s.m_bLightModelTwoSide); }},
    {Es1Enum::kLightModelAmbient, [](S& s) { return FieldOf(s.m_faLightModelAmbient); }},
    {GL_LINE_WIDTH, [](S& s) { return FieldOf(&s.m_fLineWidth); }},
    {Es1Enum::kLogicOpMode, [](S& s) { return FieldOf(&s.m_eLogicOpMode); }},
};

constexpr SQuery kBeforeMatrices[] = {
    {Es1Enum::kMatrixMode, [](S& s) { return FieldOf(&s.m_eMatrixMode); }},
};

// Asked ahead of the matrices, whose number depends on it.
constexpr SQuery kPalette[] = {
    {Es1Enum::kMaxPaletteMatrices, [](S& s) { return FieldOf(&s.m_iMaxPaletteMatrices); }},
    {Es1Enum::kCurrentPaletteMatrix, [](S& s) { return FieldOf(&s.m_iCurrentPaletteMatrix); }},
};

constexpr SQuery kBeforePointParameters[] = {
    {Es1Enum::kCurrentNormal, [](S& s) { return FieldOf(s.m_faCurrentNormal); }},
    {GL_PACK_ALIGNMENT, [](S& s) { return FieldOf(&s.m_iPixelStorePackAlignment); }},
    {GL_UNPACK_ALIGNMENT, [](S& s) { return FieldOf(&s.m_iPixelStoreUnpackAlignment); }},
};

constexpr SQuery kBeforeTextureEnvironments[] = {
    {Es1Enum::kPointSize, [](S& s) { return FieldOf(&s.m_fPointSize); }},
    {GL_POLYGON_OFFSET_FACTOR, [](S& s) { return FieldOf(&s.m_fPolygonOffsetFactor); }},
    {GL_POLYGON_OFFSET_UNITS, [](S& s) { return FieldOf(&s.m_fPolygonOffsetUnits); }},
    {GL_SAMPLE_COVERAGE_VALUE, [](S& s) { return FieldOf(&s.m_fSampleCoverageValue); }},
    {GL_SAMPLE_COVERAGE_INVERT, [](S& s) { return FieldOf(&s.m_bSampleCoverageInvert); }},
    {GL_SCISSOR_BOX, [](S& s) { return FieldOf(s.m_iaScissorBox); }},
    {Es1Enum::kShadeModel, [](S& s) { return FieldOf(&s.m_eShadeModel); }},
    {GL_STENCIL_FUNC, [](S& s) { return FieldOf(&s.m_eStencilFunc); }},
    {GL_STENCIL_REF, [](S& s) { return FieldOf(&s.m_iStencilFuncRef); }},
    {GL_STENCIL_VALUE_MASK, [](S& s) { return FieldOf(&s.m_uStencilFuncMask); }},
    {GL_STENCIL_WRITEMASK, [](S& s) { return FieldOf(&s.m_uStencilMask); }},
    {GL_STENCIL_FAIL, [](S& s) { return FieldOf(&s.m_eStencilOpFail); }},
    {GL_STENCIL_PASS_DEPTH_FAIL, [](S& s) { return FieldOf(&s.m_eStencilOpZFail); }},
    {GL_STENCIL_PASS_DEPTH_PASS, [](S& s) { return FieldOf(&s.m_eStencilOpZPass); }},
};

constexpr SQuery kBehindTextureEnvironments[] = {
    {GL_VIEWPORT, [](S& s) { return FieldOf(s.m_iaViewport); }},
};

constexpr SQuery kBindings[] = {
    {GL_FRAMEBUFFER_BINDING, [](S& s) { return FieldOf(&s.m_iBoundFBO); }},
    {GL_RENDERBUFFER_BINDING, [](S& s) { return FieldOf(&s.m_iBoundRB); }},
};

// Asks something of each texture unit, and makes the application's active again.
template <typename AskUnit>
void ForEachUnit(S& state, AskUnit askUnit)
{
    for (int unit = 0; unit < state.TextureUnits(); ++unit)
    {
        Es1Host()->glActiveTexture(Es1Names::Unit(unit));
        askUnit(unit);
    }
    Es1Host()->glActiveTexture(state.m_eActiveTexture);
}

void AskClipPlanes(S& state)
{
    int const planes = std::min(Es1::HostInteger(Es1Enum::kMaxClipPlanes), S::kClipPlanes);
    for (int i = 0; i < planes; ++i)
        Es1Host()->glGetClipPlanef(Es1Enum::kClipPlane0 + static_cast<GLenum>(i), state.m_faClipPlanes[i]);
}

void AskCapabilities(S& state)
{
    for (int i = 0; i < S::kServerStates; ++i)
        state.m_baServerState[i] = Es1Host()->glIsEnabled(Es1Names::kServerStates[i]) != GL_FALSE;
    ForEachUnit(state, [&](int unit) {
        state.m_baTexture2DEnabled[unit] = Es1Host()->glIsEnabled(GL_TEXTURE_2D) != GL_FALSE;
    });
}

void AskLights(S& state)
{
    int const lights = std::min(Es1::HostInteger(Es1Enum::kMaxLights), S::kLights);
    for (int i = 0; i < lights; ++i)
        for (int parameter = 0; parameter < S::kLightParameters; ++parameter)
            Es1Host()->glGetLightfv(Es1Enum::kLight0 + static_cast<GLenum>(i),
                                    Es1Names::kFirstLightParameter + static_cast<GLenum>(parameter),
                                    state.m_faLights[i][parameter]);
}

// Out of the host's stack from the top down, and back onto it from the bottom up.
void AskMatrixStack(S& state, int stack, GLenum matrix)
{
    auto& matrices = state.m_faMatrixStacks[stack];
    int const depth = std::clamp(state.m_iaMatrixStackDepth[stack], 0, S::kMatrixStackDepth - 1);
    for (int entry = depth; entry >= 0; --entry)
    {
        Es1Host()->glGetFloatv(matrix, matrices[entry]);
        if (entry > 0)
            Es1Host()->glPopMatrix();
    }
    for (int entry = 0; entry < depth; ++entry)
    {
        Es1Host()->glPushMatrix();
        Es1Host()->glLoadMatrixf(matrices[entry + 1]);
    }
}

void AskMatrices(S& state)
{
    SEs1Host& host = *Es1Host();
    bool const hasPalette = host.glCurrentPaletteMatrixOES != nullptr;
    state.m_iMaxPaletteMatrices = 0;
    if (hasPalette)
        Ask(host, state, kPalette);
    Es1Matrices::SSelector const select = {host.glMatrixMode, host.glCurrentPaletteMatrixOES,
                                           host.glActiveTexture};
    for (int stack = 0; stack < state.MatrixStacks(); ++stack)
        AskMatrixStack(state, stack, Es1Matrices::Select(state, select, stack));
    if (hasPalette)
        host.glCurrentPaletteMatrixOES(static_cast<GLuint>(state.m_iCurrentPaletteMatrix));
    host.glActiveTexture(state.m_eActiveTexture);
    host.glMatrixMode(state.m_eMatrixMode);
}

void AskTextureEnvironment(S::textureEnvironment& environment)
{
    SEs1Host& host = *Es1Host();
    for (int i = 0; i < S::kTextureEnvironmentIntegers; ++i)
        host.glGetTexEnviv(Es1Enum::kTextureEnv, Es1Names::kTextureEnvironment[i], &environment.integers[i]);
    host.glGetTexEnvfv(Es1Enum::kTextureEnv, Es1Enum::kTextureEnvColor, environment.color);
    host.glGetTexEnvfv(Es1Enum::kTextureEnv, Es1Enum::kRgbScale, &environment.rgbScale);
    host.glGetTexEnvfv(Es1Enum::kTextureEnv, Es1Enum::kAlphaScale, &environment.alphaScale);
    host.glGetTexEnviv(Es1Enum::kPointSprite, Es1Enum::kCoordReplace, &environment.coordReplace);
}

// On purpose: unlike GLES2's, these bindings are put back.
void AskMappedBuffers(S& state)
{
    if (!Es1Host()->glMapBufferOES)
        return;
    auto const elements = static_cast<GLuint>(Es1::HostInteger(GL_ELEMENT_ARRAY_BUFFER_BINDING));
    HostCapture::AskMappedBuffers(*Es1Host(), state.m_sBufferDatas);
    Es1Host()->glBindBuffer(GL_ARRAY_BUFFER, state.m_uBoundArrayBuffer);
    Es1Host()->glBindBuffer(GL_ELEMENT_ARRAY_BUFFER, elements);
}

}  // namespace

void CEs1ContextState::getRenderState()
{
    SEs1Host& host = *Es1Host();
    Ask(host, *this, kBeforeBindings);
    ForEachUnit(*this, [this](int unit) {
        m_uBound2DTextures[unit] = static_cast<GLuint>(Es1::HostInteger(GL_TEXTURE_BINDING_2D));
    });
    Ask(host, *this, kBeforeClipPlanes);
    AskClipPlanes(*this);
    Ask(host, *this, kBeforeCapabilities);
    AskCapabilities(*this);
    for (int i = 0; i < kFogParameters; ++i)
        host.glGetFloatv(Es1Names::kFogParameters[i], &m_faFogParameters[i]);
    Ask(host, *this, kBeforeHints);
    for (int i = 0; i < kHints; ++i)
        m_eaHints[i] = static_cast<GLenum>(Es1::HostInteger(Es1Names::kHints[i]));
    AskLights(*this);
    Ask(host, *this, kBeforeMaterial);
    for (int i = 0; i < kMaterialParameters; ++i)
        host.glGetMaterialfv(GL_FRONT, Es1Names::kMaterial[i], m_faMaterial[i]);
    Ask(host, *this, kBeforeMatrices);
    AskMatrices(*this);
    ForEachUnit(*this, [&](int unit) {
        host.glGetFloatv(Es1Enum::kCurrentTextureCoords, m_faCurrentTexCoords[unit]);
    });
    Ask(host, *this, kBeforePointParameters);
    for (int i = 0; i < kPointParameters; ++i)
        host.glGetFloatv(Es1Names::kPointParameters[i], m_faPointParameters[i]);
    Ask(host, *this, kBeforeTextureEnvironments);
    ForEachUnit(*this, [this](int unit) { AskTextureEnvironment(m_sTextureEnvironments[unit]); });
    Ask(host, *this, kBehindTextureEnvironments);
    AskArrayObjects();
    Ask(host, *this, kBindings);
    AskMappedBuffers(*this);
    AskFramebuffers();
    host.glGetError();  // swallows what the queries may have raised
}
