// What the profiler keeps of each context: what it takes to undo an override behind a draw, and the
// alternates of each program. It is apart from the shadow state of a snapshot, and much smaller.
#pragma once
#include "api/types.h"
#include "profiler/profiler.h"

struct CProfiler::STextureBinding
{
    uint32_t name = 0;
    uint32_t minFilter = GL_NEAREST_MIPMAP_LINEAR;
    uint32_t magFilter = GL_LINEAR;
    bool bIsAttachment = false;  // drawn to, and so never replaced
};

struct CProfiler::SEnables
{
    bool bBlend = false;
    bool bAlphaTest = false;  // GLES1 only, like the next but one
    bool bScissor = false;
    bool bTexture2D = false;
    bool bStencil = false;
    bool bDepth = false;
    bool bCull = false;
};

// The two alternates of an application's program. They get its attribute bindings and uniforms at all times,
// so that an override takes effect on the next draw.
struct CProfiler::SProgram
{
    uint32_t flatProgram = 0;
    TraceMap<int, int> flatLocations;  // by the application's location
    uint32_t noDiscardProgram = 0;
    TraceMap<int, int> noDiscardLocations;
    bool bDeleted = false;  // by the application, while the host still needs it
};

// A fragment shader that has a form without discard.
struct CProfiler::SShader
{
    uint32_t rewrittenShader = 0;
    bool bDeleted = false;
};

struct CProfiler::SContext
{
    static constexpr int kUnits = 32;
    static constexpr int kSlots = 4;  // the two below, and two that nothing uses
    enum
    {
        eSlot2D,
        eSlotCube,
        eUsedSlots
    };
    static bool IsUnit(int32_t unit) { return unit >= 0 && unit < kUnits; }

    int32_t viewport[4] = {};  // GLES2's, while a draw has none
    SEnables enables;
    int32_t activeTexture = 0;  // counted from 0; ask IsUnit before it indexes anything
    uint32_t currentFBO = 0;
    uint32_t cullFace = GL_BACK;
    STextureBinding textures[kUnits][kSlots];
    uint32_t currentProgram = 0;

    int32_t viewportEs1[4] = {};
    SEnables enablesEs1;
    int32_t activeTextureEs1 = 0;
    uint32_t currentFBOEs1 = 0;
    uint32_t cullFaceEs1 = GL_BACK;
    STextureBinding texturesEs1[kUnits];

    // The profiler's own, made on demand.
    uint32_t tex2x2Es2 = 0;
    uint32_t texCube2x2Es2 = 0;
    uint32_t tex2x2Es1 = 0;
    uint32_t flatFragShader = 0;

    TraceMap<unsigned int, SProgram> m_Programs;  // by the application's names
    TraceMap<unsigned int, SShader> m_Shaders;    // likewise
    TraceMap<unsigned int, SFBO> m_FBOs;
    void* shareContext = nullptr;
};
