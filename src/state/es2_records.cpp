#include "state/es2_records.h"
#include "api/types.h"
#include "state/copy_of.h"

static bool IsCubeFace(unsigned int target)
{
    return target >= GL_TEXTURE_CUBE_MAP_POSITIVE_X && target <= GL_TEXTURE_CUBE_MAP_NEGATIVE_Z;
}

TextureDefinition::TextureDefinition(int target, unsigned int name, int level, unsigned int imageFormat,
                                     int imageInternalformat, int imageWidth, int imageHeight,
                                     int imageBorder, unsigned int imageType, unsigned char* imagePixels,
                                     int size, bool compressed, bool external, int imageAlignment,
                                     int imageDepth)
    : SImageDefinition(static_cast<unsigned int>(target), name, level, imageFormat, imageInternalformat,
                       imageWidth, imageHeight, imageBorder, imageType, imagePixels, size, compressed,
                       external, imageAlignment),
      bindTarget(IsCubeFace(textureTarget) ? GL_TEXTURE_CUBE_MAP : textureTarget), depth(imageDepth)
{
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
