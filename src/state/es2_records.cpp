#include "state/es2_records.h"
#include "api/types.h"
#include "state/shared_bytes.h"
#include "wrappers/sizing.h"
#include <algorithm>
#include <cstring>

namespace
{

bool IsCubeFace(unsigned int target)
{
    return target >= GL_TEXTURE_CUBE_MAP_POSITIVE_X && target <= GL_TEXTURE_CUBE_MAP_NEGATIVE_Z;
}

constexpr int kDefaultParams[4] = {GL_NEAREST_MIPMAP_LINEAR, GL_LINEAR, GL_REPEAT, GL_REPEAT};

template <typename T>
T* CopyOf(T const* from, int count)
{
    if (!from || count <= 0)
        return nullptr;
    T* const copy = new T[static_cast<std::size_t>(count)];
    std::copy(from, from + count, copy);
    return copy;
}

// The bytes of a buffer or an image, with the flags of the record that they stand in.
struct SBulkData
{
    uint8_t*& bytes;
    bool& externalData;
    bool const deepCopy;

    void Free() const
    {
        if (bytes && externalData)
            SharedBytes::Release(bytes);
        else if (bytes)
            SharedBytes::Disown(bytes);
        bytes = nullptr;
    }

    void Assign(uint8_t* source, int size) const
    {
        uint8_t* const taken = size > 0 ? source : nullptr;
        uint8_t* const kept = deepCopy ? CopyOf(taken, size) : taken;
        if (kept && !deepCopy)
            SharedBytes::Retain(kept);
        Free();
        bytes = kept;
        externalData = !(kept && deepCopy);
    }

    void Allocate(int size) const
    {
        Free();
        bytes = size > 0 ? new uint8_t[static_cast<std::size_t>(size)]() : nullptr;
        externalData = false;
    }

    // Before bytes of `size` are changed in place: a frozen copy keeps the old ones.
    void Unshare(int size) const
    {
        if (externalData || !bytes || !SharedBytes::IsShared(bytes))
            return;
        uint8_t* const own = CopyOf(bytes, size);
        Free();
        bytes = own;
    }
};

SBulkData DataOf(BufferDefinition& buffer)
{
    return {buffer.bufferData, buffer.externalData, buffer.deepCopy};
}

SBulkData DataOf(TextureDefinition& image) { return {image.pixels, image.externalData, image.deepCopy}; }

}  // namespace

BufferDefinition::~BufferDefinition() { DataOf(*this).Free(); }

void BufferDefinition::Unshare() { DataOf(*this).Unshare(bufferDataSize); }

void BufferDefinition::Allocate(int size) { DataOf(*this).Allocate(size); }

BufferDefinition& BufferDefinition::operator=(BufferDefinition const& other)
{
    if (this == &other)
        return *this;
    bufferName = other.bufferName;
    bufferTarget = other.bufferTarget;
    bufferDataSize = other.bufferDataSize;
    bufferUsage = other.bufferUsage;
    isMappedOES = other.isMappedOES;
    DataOf(*this).Assign(other.bufferData, bufferDataSize);
    return *this;
}

TextureDefinition::TextureDefinition() { std::copy(kDefaultParams, kDefaultParams + 4, params); }

TextureDefinition::TextureDefinition(int target, unsigned int name, int level, unsigned int imageFormat,
                                     int imageInternalformat, int imageWidth, int imageHeight,
                                     int imageBorder, unsigned int imageType, unsigned char* imagePixels,
                                     int size, bool compressed, bool external, int imageAlignment,
                                     int imageDepth)
    : textureTarget(static_cast<unsigned int>(target)),
      bindTarget(IsCubeFace(textureTarget) ? GL_TEXTURE_CUBE_MAP : textureTarget), textureName(name),
      textureLevel(level), depth(imageDepth), format(imageFormat), internalformat(imageInternalformat),
      width(imageWidth), height(imageHeight), type(imageType), alignment(imageAlignment), border(imageBorder),
      imageSize(size), externalData(external), isCompressed(compressed)
{
    std::copy(kDefaultParams, kDefaultParams + 4, params);
    if (imageSize == 0 && type != 0)
        imageSize = static_cast<int>(GlImage2DSize(format, type, width, height, alignment, border));
    pixels = external ? imagePixels : CopyOf(imagePixels, imageSize);
}

TextureDefinition::~TextureDefinition() { DataOf(*this).Free(); }

void TextureDefinition::Unshare() { DataOf(*this).Unshare(imageSize); }

void TextureDefinition::Allocate(int size) { DataOf(*this).Allocate(size); }

TextureDefinition::TextureDefinition(TextureDefinition const& other) : TextureDefinition() { *this = other; }

TextureDefinition& TextureDefinition::operator=(TextureDefinition const& other)
{
    if (this == &other)
        return *this;
    textureTarget = other.textureTarget;
    bindTarget = other.bindTarget;
    textureName = other.textureName;
    textureLevel = other.textureLevel;
    depth = other.depth;
    format = other.format;
    internalformat = other.internalformat;
    width = other.width;
    height = other.height;
    type = other.type;
    alignment = other.alignment;
    border = other.border;
    if (!deepCopy)
        std::copy(other.params, other.params + 4, params);
    std::copy(other.iTextureCropRectangleOES, other.iTextureCropRectangleOES + 4, iTextureCropRectangleOES);
    imageSize = other.imageSize;
    mipsGenerated = other.mipsGenerated;
    isDirty = other.isDirty;
    isCompressed = other.isCompressed;
    DataOf(*this).Assign(other.pixels, imageSize);
    return *this;
}

FBODefinition& FBODefinition::operator=(FBODefinition const& other)
{
    if (this == &other)
        return *this;
    name = other.name;
    firstBind = other.firstBind;
    unused = other.unused;
    DepthAttachment = other.DepthAttachment;
    StencilAttachment = other.StencilAttachment;
    DepthStencilAttachment = other.DepthStencilAttachment;
    delete[] ColorAttachments;
    ColorAttachments = CopyOf(other.ColorAttachments, other.NumColorAttachments);
    NumColorAttachments = other.NumColorAttachments;
    delete[] DrawBuffers;
    DrawBuffers = CopyOf(other.DrawBuffers, other.NumDrawBuffers);
    NumDrawBuffers = other.NumDrawBuffers;
    return *this;
}

FBODefinition::~FBODefinition()
{
    delete[] ColorAttachments;
    delete[] DrawBuffers;
}

FBOAttachmentDefinition& FBODefinition::ColorAttachment(int index)
{
    if (index >= NumColorAttachments)
    {
        auto* const grown = new FBOAttachmentDefinition[static_cast<std::size_t>(index) + 1];
        if (ColorAttachments)
            std::copy(ColorAttachments, ColorAttachments + NumColorAttachments, grown);
        delete[] ColorAttachments;
        ColorAttachments = grown;
        NumColorAttachments = index + 1;
    }
    return ColorAttachments[index];
}
