// What a GLES1 snapshot asks the host for of array objects and framebuffers.
#include "host/hosts.h"
#include "state/es1_names.h"
#include "state/host_capture.h"
#include "wrappers/host_queries.h"

namespace
{

using S = CEs1ContextState;

// The names by which an array is asked for that no wrapper follows.
struct SArrayNames
{
    S::EClientArray array;
    GLenum boundBuffer;
    GLenum size;  // 0: there is none
    GLenum type;
    GLenum stride;
    GLenum pointer;
};
constexpr SArrayNames kPointSizes = {
    S::kPointSizeArray,           Es1Enum::kPointSizeArrayBufferBinding, 0,
    Es1Enum::kPointSizeArrayType, Es1Enum::kPointSizeArrayStride,        Es1Enum::kPointSizeArrayPointer};
constexpr SArrayNames kMatrixIndices = {S::kMatrixIndexArray,
                                        Es1Enum::kMatrixIndexArrayBufferBinding,
                                        Es1Enum::kMatrixIndexArraySize,
                                        Es1Enum::kMatrixIndexArrayType,
                                        Es1Enum::kMatrixIndexArrayStride,
                                        Es1Enum::kMatrixIndexArrayPointer};
constexpr SArrayNames kWeights = {
    S::kWeightArray,           Es1Enum::kWeightArrayBufferBinding, Es1Enum::kWeightArraySize,
    Es1Enum::kWeightArrayType, Es1Enum::kWeightArrayStride,        Es1Enum::kWeightArrayPointer};

void AskInteger(GLenum name, unsigned int& field)
{
    Es1Host()->glGetIntegerv(name, reinterpret_cast<GLint*>(&field));
}

void AskArray(S::vaoDefinition& object, SArrayNames const& names)
{
    S::clientArray& array = object.arrays[names.array];
    AskInteger(names.boundBuffer, array.boundarraybuffer);
    if (names.size)
        Es1Host()->glGetIntegerv(names.size, &array.size);
    AskInteger(names.type, array.type);
    Es1Host()->glGetIntegerv(names.stride, &array.stride);
    Es1Host()->glGetPointerv(names.pointer, const_cast<void**>(&array.pointer));
}

// Of the bound array object.
void AskArrayObject(S const& state, S::vaoDefinition& object)
{
    SEs1Host& host = *Es1Host();
    for (int i = 0; i < S::kTexCoordArray0; ++i)
        object.enabled[i] = host.glIsEnabled(Es1Names::kClientArrays[i]) != GL_FALSE;
    for (int unit = 0; unit < state.TextureUnits(); ++unit)
    {
        host.glClientActiveTexture(Es1Names::Unit(unit));
        object.enabled[S::kTexCoordArray0 + unit] = host.glIsEnabled(Es1Enum::kTextureCoordArray) != GL_FALSE;
    }
    host.glClientActiveTexture(state.m_eClientActiveTexture);
    if (host.glPointSizePointerOES)
        AskArray(object, kPointSizes);
    if (host.glMatrixIndexPointerOES)
        AskArray(object, kMatrixIndices);
    if (host.glWeightPointerOES)
        AskArray(object, kWeights);
    AskInteger(GL_ELEMENT_ARRAY_BUFFER_BINDING, object.boundelementbuffer);
}

using AskParameter = void (*)(GLenum, GLenum, GLenum, GLint*);

void AskAttachment(AskParameter ask, GLenum point, FBOAttachmentDefinition& attachment)
{
    GLint type = 0;
    GLint name = 0;
    attachment = {};
    ask(GL_FRAMEBUFFER, point, GL_FRAMEBUFFER_ATTACHMENT_OBJECT_TYPE, &type);
    ask(GL_FRAMEBUFFER, point, GL_FRAMEBUFFER_ATTACHMENT_OBJECT_NAME, &name);
    ask(GL_FRAMEBUFFER, point, GL_FRAMEBUFFER_ATTACHMENT_TEXTURE_LEVEL, &attachment.lod);
    attachment.type = static_cast<GLenum>(type);
    attachment.name = static_cast<GLuint>(name);
}

}  // namespace

void CEs1ContextState::AskArrayObjects()
{
    mVertexArrayObjects[0];  // the default array object is always written
    vaoDefinition& current = BoundVertexArray();
    auto const bind = Es1Host()->glBindVertexArrayOES;
    if (!bind)
        return AskArrayObject(*this, current);
    auto const bound = static_cast<GLuint>(Es1::HostInteger(GL_VERTEX_ARRAY_BINDING_OES));
    for (int slot = 0; slot < mVertexArrayObjects.Count(); ++slot)
    {
        bind(static_cast<GLuint>(mVertexArrayObjects.KeyAt(slot)));
        AskArrayObject(*this, mVertexArrayObjects.ValueAt(slot));
    }
    bind(bound);
}

static void AskAttachments(TraceMap<unsigned int, S::framebufferDefinition>& framebuffers)
{
    SEs1Host& host = *Es1Host();
    if (framebuffers.Count() == 0 || !host.glBindFramebufferOES)
        return;
    AskParameter const ask =
        HostEntry(host.glGetFramebufferAttachmentParameterivOES, "glGetFramebufferAttachmentParameterivOES");
    for (int slot = 0; ask && slot < framebuffers.Count(); ++slot)
    {
        S::framebufferDefinition& framebuffer = framebuffers.ValueAt(slot);
        if (!framebuffer.firstBind)
            continue;
        host.glBindFramebufferOES(GL_FRAMEBUFFER, framebuffer.name);
        AskAttachment(ask, GL_COLOR_ATTACHMENT0, framebuffer.ColorAttachment0);
        AskAttachment(ask, GL_DEPTH_ATTACHMENT, framebuffer.DepthAttachment);
        AskAttachment(ask, GL_STENCIL_ATTACHMENT, framebuffer.StencilAttachment);
    }
}

static void AskStorage(TraceMap<unsigned int, S::renderbufferDefinition>& renderbuffers)
{
    SEs1Host& host = *Es1Host();
    if (renderbuffers.Count() == 0 || !host.glBindRenderbufferOES)
        return;
    auto const ask = HostEntry(host.glGetRenderbufferParameterivOES, "glGetRenderbufferParameterivOES");
    if (ask)
        HostCapture::AskRenderbuffers(renderbuffers, host.glBindRenderbufferOES, ask);
}

void CEs1ContextState::AskFramebuffers()
{
    AskAttachments(mFramebufferObjects);
    AskStorage(m_sRenderbuffers);
    if (Es1Host()->glBindFramebufferOES)
        Es1Host()->glBindFramebufferOES(GL_FRAMEBUFFER, m_iBoundFBO);
    if (Es1Host()->glBindRenderbufferOES)
        Es1Host()->glBindRenderbufferOES(GL_RENDERBUFFER, m_iBoundRB);
}
