// The records of the GLES2 shadow. Bulk data has an owner flag pair: externalData says that the bytes are
// somebody else's, deepCopy that assignment into the record copies them; otherwise it shares the pointer.
#pragma once
#include "state/dyn_array.h"
#include "state/trace_map.h"
#include "support/export.h"
#include "support/string.h"
#include <cstdint>

struct NEBTRACE_API BufferDefinition
{
    BufferDefinition() = default;
    BufferDefinition(BufferDefinition const& other) { *this = other; }
    BufferDefinition& operator=(BufferDefinition const& other);
    ~BufferDefinition();

    // Frees what is owned and takes `size` zeroed bytes of its own.
    void Allocate(int size);
    // To be called before the bytes are changed in place: frozen copies that share them keep the old ones.
    void Unshare();

    unsigned int bufferName = 0;
    unsigned int bufferTarget = 0;
    uint8_t* bufferData = nullptr;
    int bufferDataSize = 0;
    unsigned int bufferUsage = 0;
    bool isMappedOES = false;
    bool externalData = false;
    bool deepCopy = false;
};

// One image: a texture's name, face and level.
struct NEBTRACE_API TextureDefinition
{
    TextureDefinition();
    // Computes a size of 0 from format and type where there is a type. Keeps the pointer as given if
    // `externalData` is set, else copies the pixels.
    TextureDefinition(int target, unsigned int name, int level, unsigned int format, int internalformat,
                      int width, int height, int border, unsigned int type, unsigned char* pixels,
                      int imageSize, bool isCompressed, bool externalData, int alignment, int depth);
    TextureDefinition(TextureDefinition const& other);
    // With deepCopy set, the record keeps its own params.
    TextureDefinition& operator=(TextureDefinition const& other);
    ~TextureDefinition();

    // Frees what is owned and takes `size` zeroed bytes of its own.
    void Allocate(int size);
    // To be called before the bytes are changed in place: frozen copies that share them keep the old ones.
    void Unshare();

    unsigned int textureTarget = 0;  // as given: GL_TEXTURE_2D or a cube face
    unsigned int bindTarget = 0;     // GL_TEXTURE_CUBE_MAP for a face
    unsigned int textureName = 0;
    int textureLevel = 0;
    int depth = 0;
    uint8_t* pixels = nullptr;
    unsigned int format = 0;
    int internalformat = 0;
    int width = 0;
    int height = 0;
    unsigned int type = 0;  // 0 for a compressed image
    int alignment = 0;
    int border = 0;
    int params[4];  // min filter, mag filter, wrap s, wrap t
    int iTextureCropRectangleOES[4] = {};
    int imageSize = 0;  // bytes of the pixels
    bool externalData = false;
    bool deepCopy = false;
    bool mipsGenerated = false;
    bool isDirty = false;  // only copied
    bool isCompressed = false;
};

struct FBOAttachmentDefinition
{
    unsigned int name = 0;
    int lod = 0;
    unsigned int cubeface = 0;  // 0 for a plain 2D target
    unsigned int type = 0;      // GL_TEXTURE, GL_RENDERBUFFER, or 0 for an empty attachment
};

struct NEBTRACE_API FBODefinition
{
    FBODefinition() = default;
    FBODefinition(FBODefinition const& other) { *this = other; }
    FBODefinition& operator=(FBODefinition const& other);
    ~FBODefinition();

    // Grows the array to hold the index.
    FBOAttachmentDefinition& ColorAttachment(int index);

    unsigned int name = 0;
    bool firstBind = false;  // has been bound
    int unused = 0;          // only copied
    int NumColorAttachments = 0;
    FBOAttachmentDefinition* ColorAttachments = nullptr;
    FBOAttachmentDefinition DepthAttachment;
    FBOAttachmentDefinition StencilAttachment;
    FBOAttachmentDefinition DepthStencilAttachment;  // stays empty
    int NumDrawBuffers = 0;
    unsigned int* DrawBuffers = nullptr;
};

struct RBODefinition
{
    unsigned int name = 0;
    bool firstBind = false;
    int width = 0;
    int height = 0;
    unsigned int internalformat = 0;
};

struct ProgramDefinition
{
    unsigned int name = 0;
    unsigned int vertShaderName = 0;
    unsigned int fragShaderName = 0;
    bool bLinked = false;
    bool unused = false;
};

struct ShaderDefinition
{
    unsigned int name = 0;
    unsigned int type = 0;
    CNEBTString source;
    int unused[2] = {};
    bool bCompiled = false;
    bool bDeleted = false;
    int attached = 0;
};

enum EUniformValueType : int
{
    kUniformInteger = 0,
    kUniformFloat = 1,
    kUniformMatrix = 2,
    kUniformUnset = 9999,
};

struct UniformDefinition
{
    unsigned int program = 0;
    int location = 0;
    CNEBTString name;
    unsigned int numValues = 0;  // components of an element
    int valueType = kUniformUnset;
    DynArray<float> afValues;
    DynArray<int> aiValues;
};

struct ProgramAttribute
{
    CNEBTString name;
    unsigned int program = 0;
    int location = 0;
    bool bDirectBind = false;  // set through glBindAttribLocation
    int numValues = 0;         // components of a generic constant value, 0 for none
    DynArray<float> afValues;
};

struct VertexAttributeArray
{
    bool enabled = false;
    int unused = 0;
    int normalized = 0;
    int size = 0;
    unsigned int type = 0;
    int stride = 0;
    void const* pointer = nullptr;      // the offset or pointer as given
    unsigned int boundarraybuffer = 0;  // the binding at glVertexAttribPointer
};

// Key 0 is the default array object.
struct VAODefinition
{
    unsigned int name = 0;
    unsigned int boundarraybuffer = 0;
    unsigned int boundelementbuffer = 0;
    bool createdwithextension = false;
    TraceMap<unsigned int, VertexAttributeArray> vertexattributearrays;
};
