// Shadow copy of a GLES1 context, so that a recording can begin at any frame.
//
// As for GLES2, the wrappers write objects and their contents here as calls pass, and a snapshot reads the
// rest from the host. There is much more of the rest: all of the fixed-function state. It stands inline,
// without any allocation, so that the frozen copy can be a static object; the matrix stacks are most of its
// size.
#pragma once
#include "state/shared_records.h"
#include "state/trace_map.h"
#include "support/export.h"

class NEBTRACE_API CEs1ContextState
{
public:
    // Fixed limits. A host with more is served for the first so many.
    static constexpr int kTextureUnits = 32;
    static constexpr int kClipPlanes = 6;
    static constexpr int kLights = 8;
    static constexpr int kMatrixStacks = 43;
    static constexpr int kMatrixStackDepth = 20;
    // The lengths of the tables in es1_names.h.
    static constexpr int kServerStates = 34;
    static constexpr int kFogParameters = 4;
    static constexpr int kHints = 5;
    static constexpr int kLightParameters = 10;
    static constexpr int kMaterialParameters = 5;
    static constexpr int kPointParameters = 4;
    static constexpr int kTextureEnvironmentIntegers = 15;

    struct NEBTRACE_API textureDefinition : SImageDefinition
    {
        textureDefinition() = default;
        textureDefinition(unsigned int target, unsigned int name, unsigned int format,
                          unsigned int internalformat, int width, int height, int border, unsigned int type,
                          unsigned char* pixels, unsigned int imageSize, bool isCompressed, bool externalData,
                          int alignment);
    };
    using bufferDefinition = BufferDefinition;
    using renderbufferDefinition = RBODefinition;

    struct framebufferDefinition
    {
        unsigned int name = 0;
        bool firstBind = false;  // has been bound
        // Read from the host by a snapshot.
        FBOAttachmentDefinition ColorAttachment0;
        FBOAttachmentDefinition DepthAttachment;
        FBOAttachmentDefinition StencilAttachment;
    };

    struct clientArray
    {
        unsigned int boundarraybuffer;
        int size;
        unsigned int type;
        int stride;
        void const* pointer;  // the offset or pointer as given
    };
    enum EClientArray
    {
        kColorArray,
        kVertexArray,
        kNormalArray,
        kPointSizeArray,
        kMatrixIndexArray,
        kWeightArray,
        kTexCoordArray0,  // that of the first texture unit; the others follow
        kClientArrays = kTexCoordArray0 + kTextureUnits
    };
    // Key 0 is the default array object.
    struct NEBTRACE_API vaoDefinition
    {
        vaoDefinition();

        clientArray arrays[kClientArrays];
        bool enabled[kClientArrays] = {};
        unsigned int boundelementbuffer = 0;
    };

    struct textureEnvironment
    {
        int integers[kTextureEnvironmentIntegers];
        float color[4];
        float rgbScale;
        float alphaScale;
        int coordReplace;
    };

    CEs1ContextState();

    // Asks the host for everything that can be asked. Reads the matrices out of the host's stacks, and puts
    // them back. Leaves no error behind.
    void getRenderState();
    // Writes the state as calls, through the wrappers.
    void writeAsCalls();
    // Empty: what the recorded frames use is not followed.
    void CombineTrack(CEs1ContextState* live);
    // Says so if the host has an error to tell of. For debugging: nothing in the library calls it.
    void CheckErrorTracking();

    // Parts of getRenderState.
    void AskArrayObjects();
    void AskFramebuffers();
    // Parts of writeAsCalls.
    void WriteTextures();
    void WriteBuffers();
    void WriteMatrices();
    void WriteArrayObjects();
    void WriteFramebuffers();

    // What there is room for of what the host has.
    int TextureUnits() const;
    int PaletteMatrices() const;
    // Modelview, projection, one for each palette matrix, one for each texture unit.
    int MatrixStacks() const { return 2 + PaletteMatrices() + TextureUnits(); }
    // The current array object's record, made with defaults where there is none.
    vaoDefinition& BoundVertexArray() { return mVertexArrayObjects[mBoundVAO]; }

    int m_iMaxTextureUnits = 1;
    unsigned int m_eActiveTexture;
    unsigned int m_eAlphaFunc;
    float m_fAlphaRef = 0.0f;
    unsigned int m_uBoundArrayBuffer = 0;
    unsigned int m_uBound2DTextures[kTextureUnits] = {};
    unsigned int m_eBlendSource;
    unsigned int m_eBlendDest;
    TraceMap<unsigned int, bufferDefinition> m_sBufferDatas;
    float m_fClearColor[4] = {};
    float m_fClearDepth = 1.0f;
    int m_iClearStencil = 0;
    unsigned int m_eClientActiveTexture;
    float m_faClipPlanes[kClipPlanes][4] = {};
    float m_faCurrentColor[4] = {1.0f, 1.0f, 1.0f, 1.0f};
    bool m_bColorMask[4] = {true, true, true, true};
    unsigned int m_eCullFaceMode;
    unsigned int m_eDepthFunc;
    bool m_bDepthMask = true;
    float m_fDepthRangeNearFar[2] = {0.0f, 1.0f};
    bool m_baServerState[kServerStates] = {};
    bool m_baTexture2DEnabled[kTextureUnits] = {};
    float m_faFogParameters[kFogParameters];
    float m_faFogColor[4] = {};
    unsigned int m_eFrontFaceMode;
    unsigned int m_eaHints[kHints];
    float m_faLights[kLights][kLightParameters][4] = {};
    bool m_bLightModelTwoSide = false;
    float m_faLightModelAmbient[4] = {0.2f, 0.2f, 0.2f, 1.0f};
    float m_fLineWidth = 1.0f;
    unsigned int m_eLogicOpMode;
    float m_faMaterial[kMaterialParameters][4];
    unsigned int m_eMatrixMode;
    // Nothing but tests sets a depth: of each stack the top matrix alone is read and written.
    int m_iaMatrixStackDepth[kMatrixStacks] = {};
    // Bottom first, in the order that MatrixStacks tells.
    float m_faMatrixStacks[kMatrixStacks][kMatrixStackDepth][16] = {};
    float m_faCurrentTexCoords[kTextureUnits][4];
    float m_faCurrentNormal[4] = {0.0f, 0.0f, 1.0f, 0.0f};  // the fourth is there for its room alone
    int m_iPixelStorePackAlignment = 4;
    int m_iPixelStoreUnpackAlignment = 4;
    float m_faPointParameters[kPointParameters][4];
    float m_fPointSize = 1.0f;
    float m_fPolygonOffsetFactor = 0.0f;
    float m_fPolygonOffsetUnits = 0.0f;
    float m_fSampleCoverageValue = 1.0f;
    bool m_bSampleCoverageInvert = false;
    int m_iaScissorBox[4] = {};
    unsigned int m_eShadeModel;
    unsigned int m_eStencilFunc;
    int m_iStencilFuncRef = 0;
    unsigned int m_uStencilFuncMask = ~0u;
    unsigned int m_uStencilMask = ~0u;
    unsigned int m_eStencilOpFail;
    unsigned int m_eStencilOpZFail;
    unsigned int m_eStencilOpZPass;
    textureEnvironment m_sTextureEnvironments[kTextureUnits] = {};
    // By name, then level.
    TraceMap<unsigned int, TraceMap<int, textureDefinition>> m_sTexImageTextures;
    int m_iaViewport[4] = {};
    int mBoundVAO = 0;
    TraceMap<int, vaoDefinition> mVertexArrayObjects;
    int m_iMaxPaletteMatrices = 0;
    int m_iCurrentPaletteMatrix = 0;
    TraceMap<unsigned int, framebufferDefinition> mFramebufferObjects;
    TraceMap<unsigned int, renderbufferDefinition> m_sRenderbuffers;
    unsigned int m_iBoundFBO = 0;
    unsigned int m_iBoundRB = 0;
};
