#include "state/es1_context_state.h"
#include "api/types.h"
#include "host/hosts.h"
#include "state/es1_names.h"
#include "support/log.h"
#include <algorithm>

using S = CEs1ContextState;

// On purpose: told by a rectangle that is still clear, so that the flag is never set here.
S::textureDefinition::textureDefinition(unsigned int target, unsigned int name, unsigned int imageFormat,
                                        unsigned int imageInternalformat, int imageWidth, int imageHeight,
                                        int imageBorder, unsigned int imageType, unsigned char* imagePixels,
                                        unsigned int size, bool compressed, bool external, int imageAlignment)
    : SImageDefinition(target, name, 0, imageFormat, static_cast<int>(imageInternalformat), imageWidth,
                       imageHeight, imageBorder, imageType, imagePixels, static_cast<int>(size), compressed,
                       external, imageAlignment)
{
    mipsGenerated = iTextureCropRectangleOES[0] == 1;
}

S::vaoDefinition::vaoDefinition()
{
    constexpr GLenum kByte = GL_UNSIGNED_BYTE;
    constexpr clientArray kNamed[kTexCoordArray0] = {
        {0, 4, GL_FLOAT, 0, nullptr}, {0, 4, GL_FLOAT, 0, nullptr}, {0, 0, GL_FLOAT, 0, nullptr},
        {0, 0, GL_FLOAT, 0, nullptr}, {0, 1, kByte, 0, nullptr},    {0, 1, GL_FLOAT, 0, nullptr}};
    std::copy(kNamed, kNamed + kTexCoordArray0, arrays);
    std::fill(arrays + kTexCoordArray0, arrays + kClientArrays, clientArray{0, 0, 0, 0, nullptr});
}

namespace
{

template <std::size_t N>
void Set(float (&field)[N], float const (&values)[N])
{
    std::copy(values, values + N, field);
}

void SetLights(CEs1ContextState& state)
{
    for (int i = 0; i < S::kLights; ++i)
    {
        auto& light = state.m_faLights[i];
        float const strength = i == 0 ? 1.0f : 0.0f;
        Set(light[0], {0.0f, 0.0f, 0.0f, 1.0f});              // ambient
        Set(light[1], {strength, strength, strength, 1.0f});  // diffuse
        Set(light[2], {strength, strength, strength, 1.0f});  // specular
        Set(light[3], {0.0f, 0.0f, 1.0f, 0.0f});              // position
        Set(light[4], {0.0f, 0.0f, -1.0f, 0.0f});             // spot direction
        light[6][0] = 180.0f;                                 // spot cutoff
        light[7][0] = 1.0f;                                   // constant attenuation
    }
}

void SetMatrices(CEs1ContextState& state)
{
    for (auto& stack : state.m_faMatrixStacks)
        for (int i = 0; i < 4; ++i)
            stack[0][5 * i] = 1.0f;
}

void SetMaterial(CEs1ContextState& state)
{
    Set(state.m_faMaterial[0], {0.2f, 0.2f, 0.2f, 1.0f});
    Set(state.m_faMaterial[1], {0.8f, 0.8f, 0.8f, 1.0f});
    Set(state.m_faMaterial[2], {0.0f, 0.0f, 0.0f, 1.0f});
    Set(state.m_faMaterial[3], {0.0f, 0.0f, 0.0f, 1.0f});
    Set(state.m_faMaterial[4], {0.0f, 0.0f, 0.0f, 0.0f});
}

}  // namespace

// A context's values as the API starts with them.
CEs1ContextState::CEs1ContextState()
    : m_eActiveTexture(GL_TEXTURE0), m_eAlphaFunc(GL_ALWAYS), m_eBlendSource(GL_ONE), m_eBlendDest(GL_ZERO),
      m_eClientActiveTexture(GL_TEXTURE0), m_eCullFaceMode(GL_BACK),
      m_eDepthFunc(GL_LESS), m_faFogParameters{static_cast<float>(Es1Enum::kExp), 1.0f, 0.0f, 1.0f},
      m_eFrontFaceMode(GL_CCW), m_eLogicOpMode(Es1Enum::kCopy),
      m_eMatrixMode(Es1Enum::kModelview), m_faPointParameters{{0.0f}, {1.0f}, {1.0f}, {1.0f}},
      m_eShadeModel(Es1Enum::kSmooth), m_eStencilFunc(GL_ALWAYS), m_eStencilOpFail(GL_KEEP),
      m_eStencilOpZFail(GL_KEEP), m_eStencilOpZPass(GL_KEEP)
{
    for (int i = 0; i < kServerStates; ++i)
        m_baServerState[i] =
            Es1Names::kServerStates[i] == GL_DITHER || Es1Names::kServerStates[i] == Es1Enum::kMultisample;
    std::fill(m_eaHints, m_eaHints + kHints, static_cast<unsigned int>(GL_DONT_CARE));
    SetLights(*this);
    SetMaterial(*this);
    SetMatrices(*this);
    for (auto& coordinates : m_faCurrentTexCoords)
        Set(coordinates, {0.0f, 0.0f, 0.0f, 1.0f});
}

int CEs1ContextState::TextureUnits() const { return std::clamp(m_iMaxTextureUnits, 0, kTextureUnits); }

int CEs1ContextState::PaletteMatrices() const
{
    return std::clamp(m_iMaxPaletteMatrices, 0, kMatrixStacks - 2 - TextureUnits());
}

void CEs1ContextState::CombineTrack(CEs1ContextState* /*live*/) {}

void CEs1ContextState::CheckErrorTracking()
{
    if (Es1Host()->glGetError() != GL_NO_ERROR)
        LogRaw("%s\n", "Problem with ES1?\n");
}
