// What a snapshot asks the host for.
#include "host/hosts.h"
#include "state/es2_context_state.h"
#include "state/host_capture.h"
#include "support/log.h"
#include "wrappers/host_queries.h"
#include <algorithm>

namespace
{

using HostCapture::Ask;
using HostCapture::FieldOf;
using S = CEs2ContextState;
using SQuery = HostCapture::SQuery<S>;

constexpr SQuery kBeforeCapabilities[] = {
    {GL_BLEND_COLOR, [](S& s) { return FieldOf(s.m_faBlendColor); }},
    {GL_BLEND_EQUATION_ALPHA, [](S& s) { return FieldOf(&s.m_eBlendEquationAlpha); }},
    {GL_BLEND_EQUATION_RGB, [](S& s) { return FieldOf(&s.m_eBlendEquationRGB); }},
    {GL_BLEND_SRC_RGB, [](S& s) { return FieldOf(&s.m_eBlendFuncRGBSourceDest[0]); }},
    {GL_BLEND_DST_RGB, [](S& s) { return FieldOf(&s.m_eBlendFuncRGBSourceDest[1]); }},
    {GL_BLEND_SRC_ALPHA, [](S& s) { return FieldOf(&s.m_eBlendFuncAlphaSourceDest[0]); }},
    {GL_BLEND_DST_ALPHA, [](S& s) { return FieldOf(&s.m_eBlendFuncAlphaSourceDest[1]); }},
    {GL_COLOR_CLEAR_VALUE, [](S& s) { return FieldOf(s.m_fClearColor); }},
    {GL_DEPTH_CLEAR_VALUE, [](S& s) { return FieldOf(&s.m_fClearDepth); }},
    {GL_STENCIL_CLEAR_VALUE, [](S& s) { return FieldOf(&s.m_iClearStencil); }},
    {GL_COLOR_WRITEMASK, [](S& s) { return FieldOf(s.m_bColorMask, 4); }},
    {GL_CULL_FACE_MODE, [](S& s) { return FieldOf(&s.m_eCullFaceMode); }},
    {GL_DEPTH_FUNC, [](S& s) { return FieldOf(&s.m_eDepthFunc); }},
    {GL_DEPTH_WRITEMASK, [](S& s) { return FieldOf(&s.m_bDepthMask); }},
    {GL_DEPTH_RANGE, [](S& s) { return FieldOf(s.m_fDepthRangeNearFar); }},
};

constexpr SQuery kBeforeShaders[] = {
    {GL_FRONT_FACE, [](S& s) { return FieldOf(&s.m_eFrontFaceMode); }},
    {GL_GENERATE_MIPMAP_HINT, [](S& s) { return FieldOf(&s.m_eaHints[0]); }},
    {GL_PACK_ALIGNMENT, [](S& s) { return FieldOf(&s.m_iPixelStorePackAlignment); }},
    {GL_UNPACK_ALIGNMENT, [](S& s) { return FieldOf(&s.m_iPixelStoreUnpackAlignment); }},
    {GL_POLYGON_OFFSET_FACTOR, [](S& s) { return FieldOf(&s.m_fPolygonOffsetFactor); }},
    {GL_POLYGON_OFFSET_UNITS, [](S& s) { return FieldOf(&s.m_fPolygonOffsetUnits); }},
    {GL_SAMPLE_COVERAGE_VALUE, [](S& s) { return FieldOf(&s.m_fSampleCoverageValue); }},
    {GL_SAMPLE_COVERAGE_INVERT, [](S& s) { return FieldOf(&s.m_bSampleCoverageInvert); }},
    {GL_SCISSOR_BOX, [](S& s) { return FieldOf(s.m_iaScissorBox); }},
};

constexpr SQuery kBehindShaders[] = {
    {GL_STENCIL_FUNC, [](S& s) { return FieldOf(&s.m_eStencilFunc[0]); }},
    {GL_STENCIL_BACK_FUNC, [](S& s) { return FieldOf(&s.m_eStencilFunc[1]); }},
    {GL_STENCIL_REF, [](S& s) { return FieldOf(&s.m_iStencilFuncRef[0]); }},
    {GL_STENCIL_BACK_REF, [](S& s) { return FieldOf(&s.m_iStencilFuncRef[1]); }},
    {GL_STENCIL_VALUE_MASK, [](S& s) { return FieldOf(&s.m_uStencilFuncMask[0]); }},
    {GL_STENCIL_BACK_VALUE_MASK, [](S& s) { return FieldOf(&s.m_uStencilFuncMask[1]); }},
    {GL_STENCIL_WRITEMASK, [](S& s) { return FieldOf(&s.m_uStencilMask[0]); }},
    {GL_STENCIL_BACK_WRITEMASK, [](S& s) { return FieldOf(&s.m_uStencilMask[1]); }},
    {GL_STENCIL_FAIL, [](S& s) { return FieldOf(&s.m_eStencilOpFail[0]); }},
    {GL_STENCIL_BACK_FAIL, [](S& s) { return FieldOf(&s.m_eStencilOpFail[1]); }},
    {GL_STENCIL_PASS_DEPTH_FAIL, [](S& s) { return FieldOf(&s.m_eStencilOpZFail[0]); }},
    {GL_STENCIL_BACK_PASS_DEPTH_FAIL, [](S& s) { return FieldOf(&s.m_eStencilOpZFail[1]); }},
    {GL_STENCIL_PASS_DEPTH_PASS, [](S& s) { return FieldOf(&s.m_eStencilOpZPass[0]); }},
    {GL_STENCIL_BACK_PASS_DEPTH_PASS, [](S& s) { return FieldOf(&s.m_eStencilOpZPass[1]); }},
    {GL_VIEWPORT, [](S& s) { return FieldOf(s.m_iaViewport); }},
};

GLuint Name(GLenum binding) { return static_cast<GLuint>(Es2::HostInteger(binding)); }

void AskTextureUnits(CEs2ContextState& state)
{
    state.m_eActiveTexture = Name(GL_ACTIVE_TEXTURE);
    state.m_iMaxTextureUnits = Es2::HostInteger(GL_MAX_TEXTURE_IMAGE_UNITS);
    int const units = std::min(state.m_iMaxTextureUnits, CEs2ContextState::kTextureUnits);
    for (int unit = 0; unit < units; ++unit)
    {
        Es2Host()->glActiveTexture(GL_TEXTURE0 + static_cast<GLenum>(unit));
        state.m_uBound2DTextures[unit] = Name(GL_TEXTURE_BINDING_2D);
        state.m_uBoundCubeMapTextures[unit] = Name(GL_TEXTURE_BINDING_CUBE_MAP);
    }
    Es2Host()->glActiveTexture(state.m_eActiveTexture);
}

void AskRenderbuffers(CEs2ContextState& state)
{
    HostCapture::AskRenderbuffers(state.m_sRenderbuffers, Es2Host()->glBindRenderbuffer,
                                  Es2Host()->glGetRenderbufferParameteriv);
    Es2Host()->glBindFramebuffer(GL_FRAMEBUFFER, state.m_iBoundFBO);
    Es2Host()->glBindRenderbuffer(GL_RENDERBUFFER, state.m_iBoundRB);
}

void AskShaders(CEs2ContextState& state)
{
    for (int slot = 0; slot < state.m_sShaderMap.Count(); ++slot)
    {
        ShaderDefinition& shader = state.m_sShaderMap.ValueAt(slot);
        if (shader.name == 0 || !Es2Host()->glIsShader(shader.name))
            continue;
        GLint compiled = 0;
        Es2Host()->glGetShaderiv(shader.name, GL_COMPILE_STATUS, &compiled);
        if (compiled == 1)
            shader.bCompiled = true;
    }
}

// On purpose: the host's buffer bindings are left as this loop leaves them.
void AskMappedBuffers(CEs2ContextState& state)
{
    if (Es2Host()->glMapBufferOES)
        HostCapture::AskMappedBuffers(*Es2Host(), state.m_sBufferDatas);
}

void ReportError()
{
    if (Es2Host()->glGetError() != GL_NO_ERROR)
        LogRaw("%s\n", "Problem with ES2?\n");
}

}  // namespace

void CEs2ContextState::getRenderState()
{
    AskTextureUnits(*this);
    Ask(*Es2Host(), *this, kBeforeCapabilities);
    for (int i = 0; i < kServerStates; ++i)
        m_baServerState[i] = Es2Host()->glIsEnabled(kServerStateNames[i]) != GL_FALSE;
    ReportError();
    AskRenderbuffers(*this);
    Ask(*Es2Host(), *this, kBeforeShaders);
    AskShaders(*this);
    Ask(*Es2Host(), *this, kBehindShaders);
    AskMappedBuffers(*this);
    ReportError();
}
