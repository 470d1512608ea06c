// A snapshot as calls: textures and their bindings.
#include "state/es2_context_state.h"
#include "support/log.h"
#include "wrappers/es2.h"
#include <algorithm>

namespace
{

// Gets the texture its name, its binding and its parameters. Later faces and levels rely on this binding.
void BeginTexture(TextureDefinition& image, bool withParameters)
{
    constexpr GLenum kParameters[4] = {GL_TEXTURE_MIN_FILTER, GL_TEXTURE_MAG_FILTER, GL_TEXTURE_WRAP_S,
                                       GL_TEXTURE_WRAP_T};
    Es2::_glGenTextures(1, &image.textureName);
    Es2::_glBindTexture(image.bindTarget, image.textureName);
    for (int i = 0; withParameters && i < 4; ++i)
        Es2::_glTexParameteri(image.bindTarget, kParameters[i], image.params[i]);
}

bool IsImageTarget(GLenum target)
{
    return target == GL_TEXTURE_2D ||
           (target >= GL_TEXTURE_CUBE_MAP && target <= GL_TEXTURE_CUBE_MAP_NEGATIVE_Z);
}

void WriteImage(TextureDefinition& image, bool withParameters)
{
    bool const isFirst = image.textureLevel == 0 && (image.textureTarget == GL_TEXTURE_2D ||
                                                     image.textureTarget == GL_TEXTURE_CUBE_MAP_POSITIVE_X);
    if (isFirst)
        BeginTexture(image, withParameters);
    if (image.isCompressed)
        Es2::_glCompressedTexImage2D(image.textureTarget, image.textureLevel, image.format, image.width,
                                     image.height, image.border, image.imageSize, image.pixels);
    else if (IsImageTarget(image.textureTarget))
        Es2::_glTexImage2D(image.textureTarget, image.textureLevel, image.internalformat, image.width,
                           image.height, image.border, image.format, image.type, image.pixels,
                           image.alignment);
    // On purpose: at once, ahead of the texture's other levels, and by the target of that image.
    if (image.mipsGenerated)
        Es2::_glGenerateMipmap(image.textureTarget);
}

void WriteBinding(int unit, GLenum target, GLuint name)
{
    if (name == 0)
        return;
    Es2::_glActiveTexture(GL_TEXTURE0 + static_cast<GLenum>(unit));
    Es2::_glBindTexture(target, name);
}

// On purpose: in the order of their upload, whatever faces and levels they are. An image that was uploaded
// ahead of its texture's first one stands ahead of the binding.
template <typename Visit>
void ForEachImage(CEs2ContextState::Textures& textures, Visit visit)
{
    for (int name = 0; name < textures.Count(); ++name)
    {
        auto& faces = textures.ValueAt(name);
        for (int face = 0; face < faces.Count(); ++face)
            for (int level = 0; level < faces.ValueAt(face).Count(); ++level)
                visit(faces.ValueAt(face).ValueAt(level));
    }
}

}  // namespace

void CEs2ContextState::TraceTextures(bool optimize)
{
    ForEachImage(m_sTexImageTextures, [&](TextureDefinition& image) {
        if (optimize && !m_sUsedTextures.Find(image.textureName))
            LogMessage("Texture not used: %d. Ignored", image.textureName);
        else
            WriteImage(image, m_usClientVersion == 2);
    });
    for (int unit = 0; unit < std::min(m_iMaxTextureUnits, kTextureUnits); ++unit)
    {
        WriteBinding(unit, GL_TEXTURE_2D, m_uBound2DTextures[unit]);
        WriteBinding(unit, GL_TEXTURE_CUBE_MAP, m_uBoundCubeMapTextures[unit]);
    }
    Es2::_glActiveTexture(m_eActiveTexture);
}
