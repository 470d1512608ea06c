// What a snapshot asks the host for.
#include "host/hosts.h"
#include "state/es2_context_state.h"
#include "support/log.h"
#include "wrappers/host_queries.h"
#include <algorithm>

namespace
{

// One question: the enumerant, and where its answer goes. The kind of the field says which getter asks.
struct SFieldOf
{
    void* field;
    int booleans;  // how many bools there are, or 0
    bool isFloat;
};
template <typename T>
SFieldOf FieldOf(T* field, int count = 1)
{
    return {field, std::is_same_v<T, bool> ? count : 0, std::is_same_v<T, float>};
}
struct SQuery
{
    GLenum name;
    SFieldOf (*field)(CEs2ContextState& state);
};
using S = CEs2ContextState;

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

void AskBooleans(GLenum name, bool* field, int count)
{
    GLboolean values[4] = {};
    std::copy(field, field + count, values);  // what the host does not answer stays
    Es2Host()->glGetBooleanv(name, values);
    std::transform(values, values + count, field, [](GLboolean value) { return value != GL_FALSE; });
}

template <std::size_t N>
void Ask(CEs2ContextState& state, SQuery const (&queries)[N])
{
    for (SQuery const& query : queries)
    {
        SFieldOf const field = query.field(state);
        if (field.booleans)
            AskBooleans(query.name, static_cast<bool*>(field.field), field.booleans);
        else if (field.isFloat)
            Es2Host()->glGetFloatv(query.name, static_cast<GLfloat*>(field.field));
        else
            Es2Host()->glGetIntegerv(query.name, static_cast<GLint*>(field.field));
    }
}

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
    auto const ask = [](GLenum name, GLint* value) {
        Es2Host()->glGetRenderbufferParameteriv(GL_RENDERBUFFER, name, value);
    };
    for (int slot = 0; slot < state.m_sRenderbuffers.Count(); ++slot)
    {
        RBODefinition& renderbuffer = state.m_sRenderbuffers.ValueAt(slot);
        if (!renderbuffer.firstBind || renderbuffer.name == 0)
            continue;
        Es2Host()->glBindRenderbuffer(GL_RENDERBUFFER, renderbuffer.name);
        ask(GL_RENDERBUFFER_WIDTH, &renderbuffer.width);
        ask(GL_RENDERBUFFER_HEIGHT, &renderbuffer.height);
        ask(GL_RENDERBUFFER_INTERNAL_FORMAT, reinterpret_cast<GLint*>(&renderbuffer.internalformat));
    }
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
    if (!Es2Host()->glMapBufferOES)
        return;
    for (int slot = 0; slot < state.m_sBufferDatas.Count(); ++slot)
    {
        BufferDefinition& buffer = state.m_sBufferDatas.ValueAt(slot);
        GLint mapped = 0;
        Es2Host()->glBindBuffer(buffer.bufferTarget, buffer.bufferName);
        Es2Host()->glGetBufferParameteriv(buffer.bufferTarget, GL_BUFFER_MAPPED_OES, &mapped);
        buffer.isMappedOES = mapped == 1;
    }
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
    Ask(*this, kBeforeCapabilities);
    for (int i = 0; i < kServerStates; ++i)
        m_baServerState[i] = Es2Host()->glIsEnabled(kServerStateNames[i]) != GL_FALSE;
    ReportError();
    AskRenderbuffers(*this);
    Ask(*this, kBeforeShaders);
    AskShaders(*this);
    Ask(*this, kBehindShaders);
    AskMappedBuffers(*this);
    ReportError();
}
