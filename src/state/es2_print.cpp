// The shadow state as text, for debugging: nothing in the library calls this.
#include "state/es2_context_state.h"
#include "support/log.h"
#include <cstdio>

namespace
{

template <typename T>
void Print(char const* label, T value)
{
    LogMessage("%s:%d", label, static_cast<int>(value));
}
void Print(char const* label, float value) { LogMessage("%s:%f", label, static_cast<double>(value)); }

template <typename T, std::size_t N>
void Print(char const* label, T const (&values)[N])
{
    for (std::size_t i = 0; i < N; ++i)
        Print(NEBTStringFromFormattedStr("%s[%d]", label, static_cast<int>(i)).c_str(), values[i]);
}

// One field of a record in a map: "m_sBufferDatas[%d] st->bufferName:%d".
template <typename T>
void PrintField(char const* map, int key, char const* field, T value)
{
    Print(NEBTStringFromFormattedStr("%s[%d] st->%s", map, key, field).c_str(), value);
}

#define PRINT(field) Print(#field, s.field)

void PrintPlainState(CEs2ContextState const& s)
{
    PRINT(m_usClientVersion);
    PRINT(m_iMaxTextureUnits);
    PRINT(m_eActiveTexture);
    PRINT(m_uBound2DTextures);
    PRINT(m_uBoundCubeMapTextures);
    PRINT(m_uBound3DTexturesOES);
    PRINT(m_eBlendEquationAlpha);
    PRINT(m_eBlendEquationRGB);
    PRINT(m_faBlendColor);
    PRINT(m_eBlendFuncRGBSourceDest);
    PRINT(m_eBlendFuncAlphaSourceDest);
    PRINT(m_fClearColor);
    PRINT(m_fClearDepth);
    PRINT(m_iClearStencil);
    PRINT(m_bColorMask);
    PRINT(m_eCullFaceMode);
    PRINT(m_eDepthFunc);
    PRINT(m_bDepthMask);
    PRINT(m_fDepthRangeNearFar);
    PRINT(m_baServerState);
    PRINT(m_iBoundFBO);
    PRINT(m_eFrontFaceMode);
    PRINT(m_eaHints);
    PRINT(m_iPixelStorePackAlignment);
    PRINT(m_iPixelStoreUnpackAlignment);
    PRINT(m_fPolygonOffsetFactor);
    PRINT(m_fPolygonOffsetUnits);
    PRINT(m_bDeleteUsedProgram);
    PRINT(m_bShaderCompilerReleased);
    PRINT(m_iBoundRB);
    PRINT(m_fSampleCoverageValue);
    PRINT(m_bSampleCoverageInvert);
    PRINT(m_iaScissorBox);
    PRINT(m_eStencilFunc);
    PRINT(m_iStencilFuncRef);
    PRINT(m_uStencilFuncMask);
    PRINT(m_uStencilMask);
    PRINT(m_eStencilOpFail);
    PRINT(m_eStencilOpZFail);
    PRINT(m_eStencilOpZPass);
    PRINT(m_iaViewport);
    PRINT(mBoundVAO);
}

#undef PRINT

void PrintBuffers(CEs2ContextState const& s, FILE* contents)
{
    for (int slot = 0; slot < s.m_sBufferDatas.Count(); ++slot)
    {
        BufferDefinition const& st = s.m_sBufferDatas.ValueAt(slot);
        PrintField("m_sBufferDatas", slot, "bufferName", st.bufferName);
        PrintField("m_sBufferDatas", slot, "bufferTarget", st.bufferTarget);
        PrintField("m_sBufferDatas", slot, "bufferDataSize", st.bufferDataSize);
        PrintField("m_sBufferDatas", slot, "bufferUsage", st.bufferUsage);
        PrintField("m_sBufferDatas", slot, "isMappedOES", st.isMappedOES);
        if (contents && st.bufferData && st.bufferDataSize > 0)
            std::fwrite(st.bufferData, static_cast<std::size_t>(st.bufferDataSize), 1, contents);
    }
}

void PrintFramebuffers(CEs2ContextState const& s)
{
    for (int slot = 0; slot < s.mFramebufferObjects.Count(); ++slot)
    {
        FBODefinition const& st = s.mFramebufferObjects.ValueAt(slot);
        PrintField("mFramebufferObjects", slot, "name", st.name);
        PrintField("mFramebufferObjects", slot, "firstBind", st.firstBind);
        PrintField("mFramebufferObjects", slot, "NumColorAttachments()", st.NumColorAttachments);
        PrintField("mFramebufferObjects", slot, "DepthAttachment.name", st.DepthAttachment.name);
        PrintField("mFramebufferObjects", slot, "StencilAttachment.name", st.StencilAttachment.name);
        PrintField("mFramebufferObjects", slot, "NumDrawBuffers", st.NumDrawBuffers);
    }
    for (int slot = 0; slot < s.m_sRenderbuffers.Count(); ++slot)
    {
        RBODefinition const& st = s.m_sRenderbuffers.ValueAt(slot);
        PrintField("m_sRenderbuffers", slot, "name", st.name);
        PrintField("m_sRenderbuffers", slot, "firstBind", st.firstBind);
        PrintField("m_sRenderbuffers", slot, "width", st.width);
        PrintField("m_sRenderbuffers", slot, "height", st.height);
        PrintField("m_sRenderbuffers", slot, "internalformat", st.internalformat);
    }
}

void PrintPrograms(CEs2ContextState const& s)
{
    for (int slot = 0; slot < s.m_sShaderMap.Count(); ++slot)
    {
        ShaderDefinition const& st = s.m_sShaderMap.ValueAt(slot);
        PrintField("m_sShaderMap", slot, "name", st.name);
        PrintField("m_sShaderMap", slot, "type", st.type);
        PrintField("m_sShaderMap", slot, "bCompiled", st.bCompiled);
        PrintField("m_sShaderMap", slot, "bDeleted", st.bDeleted);
        LogMessage("m_sShaderMap[%d] st->source:%s", slot, st.source.c_str());
    }
    for (int slot = 0; slot < s.m_sProgramMap.Count(); ++slot)
    {
        ProgramDefinition const& st = s.m_sProgramMap.ValueAt(slot);
        PrintField("m_sProgramMap", slot, "name", st.name);
        PrintField("m_sProgramMap", slot, "vertShaderName", st.vertShaderName);
        PrintField("m_sProgramMap", slot, "fragShaderName", st.fragShaderName);
        PrintField("m_sProgramMap", slot, "bLinked", st.bLinked);
    }
    Print("m_sUsedProgram.name", s.m_sUsedProgram.name);
}

void PrintImage(TextureDefinition const& st)
{
    int const key = static_cast<int>(st.textureName);
    PrintField("m_sTexImageTextures", key, "textureTarget", st.textureTarget);
    PrintField("m_sTexImageTextures", key, "textureLevel", st.textureLevel);
    PrintField("m_sTexImageTextures", key, "format", st.format);
    PrintField("m_sTexImageTextures", key, "internalformat", st.internalformat);
    PrintField("m_sTexImageTextures", key, "width", st.width);
    PrintField("m_sTexImageTextures", key, "height", st.height);
    PrintField("m_sTexImageTextures", key, "type", st.type);
    PrintField("m_sTexImageTextures", key, "alignment", st.alignment);
    PrintField("m_sTexImageTextures", key, "imageSize", st.imageSize);
    PrintField("m_sTexImageTextures", key, "mipsGenerated", st.mipsGenerated);
    PrintField("m_sTexImageTextures", key, "isDirty", st.isDirty);
    PrintField("m_sTexImageTextures", key, "isCompressed", st.isCompressed);
}

void PrintTextures(CEs2ContextState const& s)
{
    for (int name = 0; name < s.m_sTexImageTextures.Count(); ++name)
    {
        auto const& faces = s.m_sTexImageTextures.ValueAt(name);
        for (int face = 0; face < faces.Count(); ++face)
            for (int level = 0; level < faces.ValueAt(face).Count(); ++level)
                PrintImage(faces.ValueAt(face).ValueAt(level));
    }
}

void PrintArray(int object, int index, VertexAttributeArray const& array)
{
    auto const print = [&](char const* field, int value) {
        LogMessage("mVertexArrayObjects[%d].vertexattributearrays[%d].%s: %d", object, index, field, value);
    };
    print("enabled", array.enabled);
    print("normalized", array.normalized);
    print("size", array.size);
    print("type", static_cast<int>(array.type));
    print("stride", array.stride);
    print("boundarraybuffer", static_cast<int>(array.boundarraybuffer));
}

}  // namespace

void CEs2ContextState::PrintRenderState(bool writeBuffers)
{
    PrintPlainState(*this);
    FILE* const contents = writeBuffers ? std::fopen("c:\\temp\\bufferData", "wb") : nullptr;
    PrintBuffers(*this, contents);
    if (contents)
        std::fclose(contents);
    PrintFramebuffers(*this);
    PrintPrograms(*this);
    PrintTextures(*this);
    PrintVAOState();
}

void CEs2ContextState::PrintVAOState()
{
    for (int slot = 0; slot < mVertexArrayObjects.Count(); ++slot)
    {
        VAODefinition const& vertexArray = mVertexArrayObjects.ValueAt(slot);
        LogMessage("mVertexArrayObjects[%d].name: %d", slot, vertexArray.name);
        LogMessage("mVertexArrayObjects[%d].boundarraybuffer: %d", slot, vertexArray.boundarraybuffer);
        LogMessage("mVertexArrayObjects[%d].boundelementbuffer: %d", slot, vertexArray.boundelementbuffer);
        auto const& arrays = vertexArray.vertexattributearrays;
        for (int i = 0; i < arrays.Count(); ++i)
            PrintArray(slot, static_cast<int>(arrays.KeyAt(i)), arrays.ValueAt(i));
    }
}
