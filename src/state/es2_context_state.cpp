#include "state/es2_context_state.h"
#include "host/hosts.h"
#include "wrappers/es2.h"

unsigned int const CEs2ContextState::kServerStateNames[kServerStates] = {
    GL_BLEND,           GL_CULL_FACE,           GL_DEPTH_TEST,
    GL_DITHER,          GL_POLYGON_OFFSET_FILL, GL_SAMPLE_ALPHA_TO_COVERAGE,
    GL_SAMPLE_COVERAGE, GL_SCISSOR_TEST,        GL_STENCIL_TEST};

CEs2ContextState::CEs2ContextState()
    : m_eActiveTexture(GL_TEXTURE0), m_eBlendEquationAlpha(GL_FUNC_ADD), m_eBlendEquationRGB(GL_FUNC_ADD),
      m_eBlendFuncRGBSourceDest{GL_ONE, GL_ZERO}, m_eBlendFuncAlphaSourceDest{GL_ONE, GL_ZERO},
      m_eCullFaceMode(GL_BACK), m_eDepthFunc(GL_LESS),
      m_eFrontFaceMode(GL_CCW), m_eaHints{GL_DONT_CARE}, m_eStencilFunc{GL_ALWAYS, GL_ALWAYS},
      m_eStencilOpFail{GL_KEEP, GL_KEEP}, m_eStencilOpZFail{GL_KEEP, GL_KEEP}, m_eStencilOpZPass{GL_KEEP,
                                                                                                 GL_KEEP}
{
    m_sProgramMap[0];  // a lookup of program 0 always hits
}

int CEs2ContextState::GetMaxColorAttachments() const { return m_usClientVersion == 2 ? 1 : 0; }

void CEs2ContextState::Trace_BindVertexArray(unsigned int name)
{
    if (m_usClientVersion != 3)
        Es2::_glBindVertexArrayOES(name);
}

void CEs2ContextState::Trace_GenVertexArrays(unsigned int count, unsigned int* names)
{
    if (m_usClientVersion != 3)
        Es2::_glGenVertexArraysOES(static_cast<GLsizei>(count), names);
}

void CEs2ContextState::Host_BindVertexArray(unsigned int name)
{
    if (m_usClientVersion != 3 && Es2Host()->glBindVertexArrayOES)
        Es2Host()->glBindVertexArrayOES(name);
}
