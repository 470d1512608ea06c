// The records that the shadows of GLES1 and GLES2 have in common. Bulk data has an owner flag pair:
// externalData says that the bytes are somebody else's, deepCopy that assignment into the record copies them;
// otherwise it shares the pointer.
#pragma once
#include "support/export.h"
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

// One image: a texture's name, level and, where there are any, face.
struct NEBTRACE_API SImageDefinition
{
    SImageDefinition();
    // Computes a size of 0 from format and type where there is a type. Keeps the pointer as given if
    // `externalData` is set, else copies the pixels.
    SImageDefinition(unsigned int target, unsigned int name, int level, unsigned int format,
                     int internalformat, int width, int height, int border, unsigned int type,
                     unsigned char* pixels, int imageSize, bool isCompressed, bool externalData,
                     int alignment);
    SImageDefinition(SImageDefinition const& other);
    // With deepCopy set, the record keeps its own params.
    SImageDefinition& operator=(SImageDefinition const& other);
    ~SImageDefinition();

    // Frees what is owned and takes `size` zeroed bytes of its own.
    void Allocate(int size);
    // To be called before the bytes are changed in place: frozen copies that share them keep the old ones.
    void Unshare();

    unsigned int textureTarget = 0;  // as given: GL_TEXTURE_2D or a cube face
    unsigned int textureName = 0;
    int textureLevel = 0;
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

struct RBODefinition
{
    unsigned int name = 0;
    bool firstBind = false;
    int width = 0;
    int height = 0;
    unsigned int internalformat = 0;
};
