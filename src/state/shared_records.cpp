#include "state/shared_records.h"
#include "api/types.h"
#include "state/copy_of.h"
#include "state/shared_bytes.h"
#include "wrappers/sizing.h"
#include <algorithm>

namespace
{

constexpr int kDefaultParams[4] = {GL_NEAREST_MIPMAP_LINEAR, GL_LINEAR, GL_REPEAT, GL_REPEAT};

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

SBulkData DataOf(SImageDefinition& image) { return {image.pixels, image.externalData, image.deepCopy}; }

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

SImageDefinition::SImageDefinition() { std::copy(kDefaultParams, kDefaultParams + 4, params); }

SImageDefinition::SImageDefinition(unsigned int target, unsigned int name, int level,
                                   unsigned int imageFormat, int imageInternalformat, int imageWidth,
                                   int imageHeight, int imageBorder, unsigned int imageType,
                                   unsigned char* imagePixels, int size, bool compressed, bool external,
                                   int imageAlignment)
    : textureTarget(target), textureName(name), textureLevel(level), format(imageFormat),
      internalformat(imageInternalformat), width(imageWidth), height(imageHeight), type(imageType),
      alignment(imageAlignment), border(imageBorder), imageSize(size), externalData(external),
      isCompressed(compressed)
{
    std::copy(kDefaultParams, kDefaultParams + 4, params);
    if (imageSize == 0 && type != 0)
        imageSize = static_cast<int>(GlImage2DSize(format, type, width, height, alignment, border));
    pixels = external ? imagePixels : CopyOf(imagePixels, imageSize);
}

SImageDefinition::SImageDefinition(SImageDefinition const& other) : SImageDefinition() { *this = other; }

SImageDefinition::~SImageDefinition() { DataOf(*this).Free(); }

void SImageDefinition::Unshare() { DataOf(*this).Unshare(imageSize); }

void SImageDefinition::Allocate(int size) { DataOf(*this).Allocate(size); }

SImageDefinition& SImageDefinition::operator=(SImageDefinition const& other)
{
    if (this == &other)
        return *this;
    textureTarget = other.textureTarget;
    textureName = other.textureName;
    textureLevel = other.textureLevel;
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
