// The records of the GLES2 shadow.
#pragma once
#include "state/dyn_array.h"
#include "state/shared_records.h"
#include "state/trace_map.h"
#include "support/export.h"
#include "support/string.h"

// One image: a texture's name, face and level.
struct NEBTRACE_API TextureDefinition : SImageDefinition
{
    TextureDefinition() = default;
    // Computes a size of 0 from format and type where there is a type. Keeps the pointer as given if
    // `externalData` is set, else copies the pixels.
    TextureDefinition(int target, unsigned int name, int level, unsigned int format, int internalformat,
                      int width, int height, int border, unsigned int type, unsigned char* pixels,
                      int imageSize, bool isCompressed, bool externalData, int alignment, int depth);

    unsigned int bindTarget = 0;  // GL_TEXTURE_CUBE_MAP for a face
    int depth = 0;
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
