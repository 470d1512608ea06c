// The GLES1 shadow as it lies in the memory of a 32-bit ARM device: 60,628 bytes, of which the matrix stacks
// take 55,040. It is compiled for that machine, and runs nowhere: what it says holds if it compiles.
//
// The object is a static one, and its copy at the first recorded frame is a plain block. Whoever gives it a
// field sees here what that costs.
#include "state/es1_context_state.h"
#include <cstddef>
#include <type_traits>

using S = CEs1ContextState;

static_assert(sizeof(void*) == 4, "to be compiled for a 32-bit machine");
static_assert(std::is_standard_layout_v<S>, "so that the fields lie in their order");

// The stacks: 43 of 20 matrices of 16 floats, and behind the scenes a depth for each.
static_assert(sizeof(S::m_faMatrixStacks) == 55040);
static_assert(sizeof(S::m_iaMatrixStackDepth) == 172);
static_assert(offsetof(S, m_faMatrixStacks) == 2020);
static_assert(offsetof(S, m_faCurrentTexCoords) == 2020 + 55040);

// The other large members, in their order.
static_assert(sizeof(S::m_uBound2DTextures) == 128);
static_assert(sizeof(S::m_faClipPlanes) == 96);
static_assert(sizeof(S::m_baServerState) + sizeof(S::m_baTexture2DEnabled) == 66);
static_assert(sizeof(S::m_faLights) == 1280);
static_assert(sizeof(S::m_faMaterial) == 80);
static_assert(sizeof(S::m_faCurrentTexCoords) == 512);
static_assert(sizeof(S::m_faPointParameters) == 64);
static_assert(sizeof(S::textureEnvironment) == 15 * 4 + 16 + 4 + 4 + 4);
static_assert(sizeof(S::m_sTextureEnvironments) == 2816);
static_assert(sizeof(S::m_sTexImageTextures) == 12, "a store is a pointer and two counts");

// What is left when those are taken away: fields of a few words each, five stores, and what aligns them.
constexpr std::size_t kLarge =
    sizeof(S::m_faMatrixStacks) + sizeof(S::m_iaMatrixStackDepth) + sizeof(S::m_uBound2DTextures) +
    sizeof(S::m_faClipPlanes) + sizeof(S::m_baServerState) + sizeof(S::m_baTexture2DEnabled) +
    sizeof(S::m_faLights) + sizeof(S::m_faMaterial) + sizeof(S::m_faCurrentTexCoords) +
    sizeof(S::m_faPointParameters) + sizeof(S::m_sTextureEnvironments);
static_assert(kLarge == 60254);
static_assert(sizeof(S) - kLarge == 374);

// The head up to the first store, the plain state, the stacks, and the tail behind the environments.
static_assert(offsetof(S, m_sBufferDatas) == 156);
static_assert(offsetof(S, m_faClipPlanes) == 196);
static_assert(offsetof(S, m_baServerState) == 332);
static_assert(offsetof(S, m_faLights) == 456);
static_assert(offsetof(S, m_faMaterial) == 1764);
static_assert(offsetof(S, m_iaMatrixStackDepth) == 1848);
static_assert(offsetof(S, m_faPointParameters) == 57596);
static_assert(offsetof(S, m_sTextureEnvironments) == 57728);
static_assert(offsetof(S, m_sTexImageTextures) == 60544);
static_assert(offsetof(S, m_iBoundRB) == 60624);
static_assert(sizeof(S) == 60628);

// The records that the stores hold, each in a node of its own.
static_assert(sizeof(S::clientArray) == 20);
static_assert(sizeof(S::vaoDefinition) == 38 * 20 + 38 + 2 + 4);
static_assert(sizeof(S::bufferDefinition) == 24);
static_assert(sizeof(S::renderbufferDefinition) == 20);
static_assert(sizeof(S::framebufferDefinition) == 8 + 3 * 16);
static_assert(sizeof(S::textureDefinition) == 88);
