// A snapshot as calls: the order of everything, and plain state.
#include "core/trace_block.h"
#include "host/hosts.h"
#include "state/es2_context_state.h"
#include "wrappers/es2.h"
#include <algorithm>
#include <iterator>

namespace
{

constexpr unsigned short kEs2StateMarker = 4;

void WriteMarker() { CTraceBlock const marker(kEs2StateMarker); }

bool AnyNonZero(int const (&values)[4])
{
    return std::any_of(std::begin(values), std::end(values), [](int value) { return value != 0; });
}

void WriteShaders(CEs2ContextState& state)
{
    for (int slot = 0; slot < state.m_sShaderMap.Count(); ++slot)
    {
        ShaderDefinition const& shader = state.m_sShaderMap.ValueAt(slot);
        char const* const source = shader.source.c_str();
        Es2::_glCreateShader(shader.type, shader.name);
        Es2::_glShaderSource(shader.name, 1, &source, nullptr);
        if (shader.bCompiled)
            Es2::_glCompileShader(shader.name);
    }
}

// Only now: programs needed them attached first.
void WriteDeletedShaders(CEs2ContextState& state)
{
    for (int slot = 0; slot < state.m_sShaderMap.Count(); ++slot)
        if (state.m_sShaderMap.ValueAt(slot).bDeleted)
            Es2::_glDeleteShader(state.m_sShaderMap.ValueAt(slot).name);
}

void WriteBlendAndClear(CEs2ContextState const& s)
{
    Es2::_glBlendColor(s.m_faBlendColor[0], s.m_faBlendColor[1], s.m_faBlendColor[2], s.m_faBlendColor[3]);
    Es2::_glBlendEquationSeparate(s.m_eBlendEquationRGB, s.m_eBlendEquationAlpha);
    Es2::_glBlendFuncSeparate(s.m_eBlendFuncRGBSourceDest[0], s.m_eBlendFuncRGBSourceDest[1],
                              s.m_eBlendFuncAlphaSourceDest[0], s.m_eBlendFuncAlphaSourceDest[1]);
    Es2::_glClearColor(s.m_fClearColor[0], s.m_fClearColor[1], s.m_fClearColor[2], s.m_fClearColor[3]);
    Es2::_glClearDepthf(s.m_fClearDepth);
    Es2::_glClearStencil(s.m_iClearStencil);
    Es2::_glColorMask(s.m_bColorMask[0], s.m_bColorMask[1], s.m_bColorMask[2], s.m_bColorMask[3]);
    Es2::_glCullFace(s.m_eCullFaceMode);
    Es2::_glDepthFunc(s.m_eDepthFunc);
    Es2::_glDepthMask(s.m_bDepthMask);
    Es2::_glDepthRangef(s.m_fDepthRangeNearFar[0], s.m_fDepthRangeNearFar[1]);
}

void WriteCapabilities(CEs2ContextState const& s)
{
    for (int i = 0; i < CEs2ContextState::kServerStates; ++i)
        if (s.m_baServerState[i])
            Es2::_glEnable(CEs2ContextState::kServerStateNames[i]);
        else
            Es2::_glDisable(CEs2ContextState::kServerStateNames[i]);
}

void WriteRasterState(CEs2ContextState const& s)
{
    Es2::_glFrontFace(s.m_eFrontFaceMode);
    Es2::_glHint(GL_GENERATE_MIPMAP_HINT, s.m_eaHints[0]);
    Es2::_glPixelStorei(GL_PACK_ALIGNMENT, s.m_iPixelStorePackAlignment);
    Es2::_glPixelStorei(GL_UNPACK_ALIGNMENT, s.m_iPixelStoreUnpackAlignment);
    Es2::_glPolygonOffset(s.m_fPolygonOffsetFactor, s.m_fPolygonOffsetUnits);
    Es2::_glSampleCoverage(s.m_fSampleCoverageValue, s.m_bSampleCoverageInvert);
    int const(&box)[4] = s.m_iaScissorBox;
    if (AnyNonZero(box))
        Es2::_glScissor(box[0], box[1], box[2], box[3]);
    int const(&view)[4] = s.m_iaViewport;
    if (AnyNonZero(view))
        Es2::_glViewport(view[0], view[1], view[2], view[3]);
}

void WriteStencil(CEs2ContextState const& s)
{
    constexpr GLenum kFaces[2] = {GL_FRONT, GL_BACK};
    for (int i = 0; i < 2; ++i)
        Es2::_glStencilFuncSeparate(kFaces[i], s.m_eStencilFunc[i], s.m_iStencilFuncRef[i],
                                    s.m_uStencilFuncMask[i]);
    for (int i = 0; i < 2; ++i)
        Es2::_glStencilMaskSeparate(kFaces[i], s.m_uStencilMask[i]);
    for (int i = 0; i < 2; ++i)
        Es2::_glStencilOpSeparate(kFaces[i], s.m_eStencilOpFail[i], s.m_eStencilOpZFail[i],
                                  s.m_eStencilOpZPass[i]);
}

void WriteRenderbuffers(CEs2ContextState& state)
{
    for (int slot = 0; slot < state.m_sRenderbuffers.Count(); ++slot)
    {
        RBODefinition& renderbuffer = state.m_sRenderbuffers.ValueAt(slot);
        if (renderbuffer.name == 0)
            continue;
        Es2::_glGenRenderbuffers(1, &renderbuffer.name);
        if (!renderbuffer.firstBind)
            continue;
        Es2::_glBindRenderbuffer(GL_RENDERBUFFER, renderbuffer.name);
        if (renderbuffer.internalformat != 0)
            Es2::_glRenderbufferStorage(GL_RENDERBUFFER, renderbuffer.internalformat, renderbuffer.width,
                                        renderbuffer.height);
    }
}

}  // namespace

void CEs2ContextState::CombineTrack(CEs2ContextState* live)
{
    if (!live || live == this)
        return;
    m_sUsedBuffers = live->m_sUsedBuffers;
    m_sUsedTextures = live->m_sUsedTextures;
}

// Textures and renderbuffers stand ahead of the framebuffers that attach them, array objects ahead of the
// buffers, whose end leaves the bindings that the first recorded draw sees.
void CEs2ContextState::writeAsCalls(bool optimize, bool restoreHost)
{
    WriteMarker();
    WriteShaders(*this);
    Trace_Programs();
    WriteDeletedShaders(*this);
    if (m_bShaderCompilerReleased)
        Es2::_glReleaseShaderCompiler();
    WriteBlendAndClear(*this);
    WriteCapabilities(*this);
    WriteRasterState(*this);
    WriteStencil(*this);
    TraceTextures(optimize);
    WriteRenderbuffers(*this);
    WriteFBOState(optimize);
    Es2::_glBindFramebuffer(GL_FRAMEBUFFER, m_iBoundFBO);
    if (restoreHost)
    {
        // On purpose: the renderbuffer's binding is the host's alone; in the trace the last one made stays
        // bound.
        Es2Host()->glBindFramebuffer(GL_FRAMEBUFFER, m_iBoundFBO);
        Es2Host()->glBindRenderbuffer(GL_RENDERBUFFER, m_iBoundRB);
    }
    WriteVAOState();
    WriteBufferData(optimize);
    WriteMarker();
}
