// The shadow state as text, for debugging: nothing in the library calls this.
#include "state/es2_context_state.h"
#include "support/log.h"
#include <cstdio>

namespace
{

using S = CEs2ContextState;

CNEBTString At(char const* label, int index) { return NEBTStringFromFormattedStr("%s[%d]", label, index); }

// One value, whatever it is, behind its label.
template <typename T>
void Print(char const* label, T value)
{
    LogMessage("%s:%d", label, static_cast<int>(value));
}
void Print(char const* label, float value) { LogMessage("%s:%f", label, static_cast<double>(value)); }
void Print(char const* label, CNEBTString const& value) { LogMessage("%s:%s", label, value.c_str()); }
void Print(char const* label, uint8_t* value)
{
    LogMessage("%s:0x%llx", label, static_cast<unsigned long long>(reinterpret_cast<uintptr_t>(value)));
}
void Print(char const* label, FBOAttachmentDefinition const& attachment)
{
    LogMessage("%s.name:%d", label, attachment.name);
    LogMessage("%s.lod:%d", label, attachment.lod);
    LogMessage("%s.cubeface:%d", label, attachment.cubeface);
    LogMessage("%s.type:%d", label, attachment.type);
}

// Arrays, value by value.
template <typename T>
void PrintValues(char const* label, T const* values, int count)
{
    for (int i = 0; values && i < count; ++i)
        Print(At(label, i).c_str(), values[i]);
}
template <typename T, std::size_t N>
void Print(char const* label, T const (&values)[N])
{
    PrintValues(label, values, static_cast<int>(N));
}
template <typename T>
void Print(char const* label, DynArray<T> const& values)
{
    PrintValues(label, values.m_pData, static_cast<int>(values.m_ui32Count));
}

// A field of a record: its name, and how it is printed behind a label that ends with that name.
template <typename T>
struct SField
{
    char const* name;
    void (*print)(char const* label, T const& record);
};
#define FIELD(record, field)                                                                                 \
    {                                                                                                        \
#field, [](char const* label, record const& r) { Print(label, r.field); }                            \
    }

constexpr SField<S> kPlainFields[] = {
    FIELD(S, m_usClientVersion),
    FIELD(S, m_iMaxTextureUnits),
    FIELD(S, m_eActiveTexture),
    FIELD(S, m_uBound2DTextures),
    FIELD(S, m_uBoundCubeMapTextures),
    FIELD(S, m_uBound3DTexturesOES),
    FIELD(S, m_eBlendEquationAlpha),
    FIELD(S, m_eBlendEquationRGB),
    FIELD(S, m_faBlendColor),
    FIELD(S, m_eBlendFuncRGBSourceDest),
    FIELD(S, m_eBlendFuncAlphaSourceDest),
    FIELD(S, m_fClearColor),
    FIELD(S, m_fClearDepth),
    FIELD(S, m_iClearStencil),
    FIELD(S, m_bColorMask),
    FIELD(S, m_eCullFaceMode),
    FIELD(S, m_eDepthFunc),
    FIELD(S, m_bDepthMask),
    FIELD(S, m_fDepthRangeNearFar),
    FIELD(S, m_baServerState),
    FIELD(S, m_iBoundFBO),
    FIELD(S, m_eFrontFaceMode),
    FIELD(S, m_eaHints),
    FIELD(S, m_iPixelStorePackAlignment),
    FIELD(S, m_iPixelStoreUnpackAlignment),
    FIELD(S, m_fPolygonOffsetFactor),
    FIELD(S, m_fPolygonOffsetUnits),
    FIELD(S, m_bDeleteUsedProgram),
    FIELD(S, m_bShaderCompilerReleased),
    FIELD(S, m_iBoundRB),
    FIELD(S, m_fSampleCoverageValue),
    FIELD(S, m_bSampleCoverageInvert),
    FIELD(S, m_iaScissorBox),
    FIELD(S, m_eStencilFunc),
    FIELD(S, m_iStencilFuncRef),
    FIELD(S, m_uStencilFuncMask),
    FIELD(S, m_uStencilMask),
    FIELD(S, m_eStencilOpFail),
    FIELD(S, m_eStencilOpZFail),
    FIELD(S, m_eStencilOpZPass),
    FIELD(S, m_iaViewport),
    FIELD(S, mBoundVAO),
};

constexpr SField<BufferDefinition> kBufferFields[] = {
    FIELD(BufferDefinition, bufferName),   FIELD(BufferDefinition, bufferTarget),
    FIELD(BufferDefinition, bufferData),   FIELD(BufferDefinition, bufferDataSize),
    FIELD(BufferDefinition, bufferUsage),  FIELD(BufferDefinition, isMappedOES),
    FIELD(BufferDefinition, externalData), FIELD(BufferDefinition, deepCopy),
};

constexpr SField<TextureDefinition> kTextureFields[] = {
    FIELD(TextureDefinition, textureTarget),
    FIELD(TextureDefinition, bindTarget),
    FIELD(TextureDefinition, textureName),
    FIELD(TextureDefinition, textureLevel),
    FIELD(TextureDefinition, depth),
    FIELD(TextureDefinition, pixels),
    FIELD(TextureDefinition, format),
    FIELD(TextureDefinition, internalformat),
    FIELD(TextureDefinition, width),
    FIELD(TextureDefinition, height),
    FIELD(TextureDefinition, type),
    FIELD(TextureDefinition, alignment),
    FIELD(TextureDefinition, border),
    FIELD(TextureDefinition, params),
    FIELD(TextureDefinition, iTextureCropRectangleOES),
    FIELD(TextureDefinition, imageSize),
    FIELD(TextureDefinition, externalData),
    FIELD(TextureDefinition, deepCopy),
    FIELD(TextureDefinition, mipsGenerated),
    FIELD(TextureDefinition, isDirty),
    FIELD(TextureDefinition, isCompressed),
};

constexpr SField<RBODefinition> kRenderbufferFields[] = {
    FIELD(RBODefinition, name),   FIELD(RBODefinition, firstBind),      FIELD(RBODefinition, width),
    FIELD(RBODefinition, height), FIELD(RBODefinition, internalformat),
};

constexpr SField<ShaderDefinition> kShaderFields[] = {
    FIELD(ShaderDefinition, name),      FIELD(ShaderDefinition, type),     FIELD(ShaderDefinition, source),
    FIELD(ShaderDefinition, bCompiled), FIELD(ShaderDefinition, bDeleted), FIELD(ShaderDefinition, attached),
};

constexpr SField<ProgramDefinition> kProgramFields[] = {
    FIELD(ProgramDefinition, name),
    FIELD(ProgramDefinition, vertShaderName),
    FIELD(ProgramDefinition, fragShaderName),
    FIELD(ProgramDefinition, bLinked),
};

constexpr SField<UniformDefinition> kUniformFields[] = {
    FIELD(UniformDefinition, program),   FIELD(UniformDefinition, location),
    FIELD(UniformDefinition, name),      FIELD(UniformDefinition, numValues),
    FIELD(UniformDefinition, valueType), FIELD(UniformDefinition, afValues),
    FIELD(UniformDefinition, aiValues),
};

constexpr SField<ProgramAttribute> kAttributeFields[] = {
    FIELD(ProgramAttribute, name),      FIELD(ProgramAttribute, program),
    FIELD(ProgramAttribute, location),  FIELD(ProgramAttribute, bDirectBind),
    FIELD(ProgramAttribute, numValues), FIELD(ProgramAttribute, afValues),
};

constexpr SField<FBODefinition> kFramebufferFields[] = {
    FIELD(FBODefinition, name),
    FIELD(FBODefinition, firstBind),
    {"NumColorAttachments()",
     [](char const* label, FBODefinition const& r) { Print(label, r.NumColorAttachments); }},
    {"ColorAttachments",
     [](char const* label, FBODefinition const& r) {
         PrintValues(label, r.ColorAttachments, r.NumColorAttachments);
     }},
    FIELD(FBODefinition, DepthAttachment),
    FIELD(FBODefinition, StencilAttachment),
    FIELD(FBODefinition, DepthStencilAttachment),
    FIELD(FBODefinition, NumDrawBuffers),
    {"DrawBuffers",
     [](char const* label, FBODefinition const& r) { PrintValues(label, r.DrawBuffers, r.NumDrawBuffers); }},
};

#undef FIELD

// `separator` stands between the record's place and its fields.
template <typename T, std::size_t N>
void PrintRecord(char const* place, char const* separator, T const& record, SField<T> const (&fields)[N])
{
    for (SField<T> const& field : fields)
        field.print(NEBTStringFromFormattedStr("%s%s%s", place, separator, field.name).c_str(), record);
}

// "m_sBufferDatas[%d] st->bufferName:%d". A record that knows its own name is told by its slot.
template <typename T, std::size_t N>
void PrintRecords(char const* map, TraceMap<unsigned int, T> const& records, SField<T> const (&fields)[N])
{
    for (int slot = 0; slot < records.Count(); ++slot)
        PrintRecord(At(map, slot).c_str(), " st->", records.ValueAt(slot), fields);
}

// One that does not is told by its keys.
template <typename T, std::size_t N>
void PrintByKeys(char const* map, TraceMap<int, T> const& records, SField<T> const (&fields)[N])
{
    for (int slot = 0; slot < records.Count(); ++slot)
        PrintRecord(At(map, records.KeyAt(slot)).c_str(), " st->", records.ValueAt(slot), fields);
}
template <typename K, typename V, typename T, std::size_t N>
void PrintByKeys(char const* map, TraceMap<K, TraceMap<int, V>> const& maps, SField<T> const (&fields)[N])
{
    for (int slot = 0; slot < maps.Count(); ++slot)
        PrintByKeys(At(map, static_cast<int>(maps.KeyAt(slot))).c_str(), maps.ValueAt(slot), fields);
}

void PrintNames(char const* map, S::UsedNames const& names)
{
    for (int slot = 0; slot < names.Count(); ++slot)
        Print(At(map, slot).c_str(), names.ValueAt(slot));
}

void WriteBuffers(S const& s)
{
    FILE* const contents = std::fopen("c:\\temp\\bufferData", "wb");
    if (!contents)
        return;
    for (int slot = 0; slot < s.m_sBufferDatas.Count(); ++slot)
    {
        BufferDefinition const& buffer = s.m_sBufferDatas.ValueAt(slot);
        if (buffer.bufferData && buffer.bufferDataSize > 0)
            std::fwrite(buffer.bufferData, static_cast<std::size_t>(buffer.bufferDataSize), 1, contents);
    }
    std::fclose(contents);
}

void PrintArray(int object, unsigned int index, VertexAttributeArray const& array)
{
    CNEBTString const label = NEBTStringFromFormattedStr("mVertexArrayObjects[%d].vertexattributearrays[%d]",
                                                         object, static_cast<int>(index));
    auto const print = [&](char const* field, int value) {
        LogMessage("%s.%s: %d", label.c_str(), field, value);
    };
    print("enabled", array.enabled);
    print("normalized", array.normalized);
    print("size", array.size);
    print("type", static_cast<int>(array.type));
    print("stride", array.stride);
    LogMessage("%s.pointer: 0x%llx", label.c_str(),
               static_cast<unsigned long long>(reinterpret_cast<uintptr_t>(array.pointer)));
    print("boundarraybuffer", static_cast<int>(array.boundarraybuffer));
}

}  // namespace

void CEs2ContextState::PrintRenderState(bool writeBuffers)
{
    for (SField<S> const& field : kPlainFields)
        field.print(field.name, *this);
    PrintNames("m_sUsedTextures", m_sUsedTextures);
    PrintNames("m_sUsedBuffers", m_sUsedBuffers);
    PrintRecords("m_sBufferDatas", m_sBufferDatas, kBufferFields);
    if (writeBuffers)
        WriteBuffers(*this);
    PrintRecords("mFramebufferObjects", mFramebufferObjects, kFramebufferFields);
    PrintRecords("m_sRenderbuffers", m_sRenderbuffers, kRenderbufferFields);
    PrintRecords("m_sShaderMap", m_sShaderMap, kShaderFields);
    PrintRecords("m_sProgramMap", m_sProgramMap, kProgramFields);
    PrintRecord("m_sUsedProgram", ".", m_sUsedProgram, kProgramFields);
    PrintByKeys("m_sTexImageTextures", m_sTexImageTextures, kTextureFields);
    PrintByKeys("m_sUniformMap", m_sUniformMap, kUniformFields);
    PrintByKeys("m_sPreAttribMap", m_sPreAttribMap, kAttributeFields);
    PrintByKeys("m_sPostAttribMap", m_sPostAttribMap, kAttributeFields);
    PrintVAOState();
}

void CEs2ContextState::PrintVAOState()
{
    for (int slot = 0; slot < mVertexArrayObjects.Count(); ++slot)
    {
        VAODefinition const& object = mVertexArrayObjects.ValueAt(slot);
        auto const print = [&](char const* field, unsigned int value) {
            LogMessage("mVertexArrayObjects[%d].%s: %d", slot, field, static_cast<int>(value));
        };
        print("name", object.name);
        print("boundarraybuffer", object.boundarraybuffer);
        print("boundelementbuffer", object.boundelementbuffer);
        print("createdwithextension", object.createdwithextension);
        auto const& arrays = object.vertexattributearrays;
        for (int i = 0; i < arrays.Count(); ++i)
            PrintArray(slot, arrays.KeyAt(i), arrays.ValueAt(i));
    }
}
