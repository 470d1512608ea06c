// Shadow copy of a GLES2 context, so that a recording can begin at any frame.
//
// Objects and their contents cannot be read back from the host: the wrappers write them here as calls pass.
// Plain context state can be queried, so nobody tracks it; it holds its defaults until a snapshot reads it.
// There is one object for the process: all contexts fold into it.
#pragma once
#include "state/es2_records.h"

class NEBTRACE_API CEs2ContextState
{
public:
    // A fixed limit. A host with more units is served for the first 32.
    static constexpr int kTextureUnits = 32;
    static constexpr int kServerStates = 9;
    // The capabilities of m_baServerState, in its order.
    static unsigned int const kServerStateNames[kServerStates];

    CEs2ContextState();

    // Collects what a recorded draw really uses. Makes many host calls, and leaves no error behind.
    void TrackData();
    void TrackFBOData();
    void TrackFBOColorAttachments(int count);
    void TrackFBODepthStencilAttachment();
    // How many colour attachments a framebuffer of this client version has: 1 for GLES2, else 0.
    int GetMaxColorAttachments() const;
    // Keeps the image of a render target whose framebuffer is about to be deleted.
    void SaveFBOTexture(unsigned int framebuffer);

    // Through the wrappers, so that they are recorded. Nothing for client version 3.
    void Trace_BindVertexArray(unsigned int name);
    void Trace_GenVertexArrays(unsigned int count, unsigned int* names);
    // On the host, unrecorded.
    void Host_BindVertexArray(unsigned int name);

    // Asks the host for everything that can be asked.
    void getRenderState();
    // Takes over what the recorded frames used, dropping what was known of it.
    void CombineTrack(CEs2ContextState* live);
    // Writes the state as calls, through the wrappers. With `optimize` set, objects that no recorded draw
    // used are left out; with `restoreHost` set, the host's framebuffer and renderbuffer bindings are put
    // back on the way.
    void writeAsCalls(bool optimize, bool restoreHost);
    void TraceTextures(bool optimize);
    void Trace_Programs();
    void WriteVAOState();
    void WriteBufferData(bool optimize);

    using UsedNames = TraceMap<unsigned int, unsigned int>;
    using Textures = TraceMap<unsigned int, TraceMap<int, TraceMap<int, TextureDefinition>>>;
    void WriteFBOState(bool optimize);
    void WriteFBOAttachmentState(FBODefinition& framebuffer, UsedNames& used, Textures& textures,
                                 bool optimize);
    void WriteFBOColorAttachmentState(FBODefinition& framebuffer, UsedNames& used, Textures& textures,
                                      bool optimize);
    // Empty: 0, nothing was written.
    int WriteFBODepthStencilAttachmentState(FBODefinition& framebuffer, UsedNames& used, Textures& textures);
    // 1 if the attachment was written or skipped, 0 for a type that is not known.
    int WriteAttachmentState(unsigned int framebuffer, unsigned int attachment,
                             FBOAttachmentDefinition const& kept, UsedNames& used, Textures& textures,
                             bool optimize);

    // Every field to the log; with the flag set, the buffers' contents to a file as well. For debugging.
    void PrintRenderState(bool writeBuffers);
    void PrintVAOState();

    // The current array object's record, made with defaults where there is none.
    VAODefinition& BoundVertexArray() { return mVertexArrayObjects[mBoundVAO]; }

    unsigned short m_usClientVersion = 2;
    int m_iMaxTextureUnits = 1;
    int m_iUnused = 0;
    unsigned int m_eActiveTexture;
    unsigned int m_uBound2DTextures[kTextureUnits] = {};
    unsigned int m_uBoundCubeMapTextures[kTextureUnits] = {};
    unsigned int m_uBound3DTexturesOES[kTextureUnits] = {};
    unsigned int m_uUnusedTextures[2][kTextureUnits] = {};
    unsigned int m_eBlendEquationAlpha;
    unsigned int m_eBlendEquationRGB;
    float m_faBlendColor[4] = {};
    unsigned int m_eBlendFuncRGBSourceDest[2];
    unsigned int m_eBlendFuncAlphaSourceDest[2];
    UsedNames m_sUsedTextures;
    UsedNames m_sUsedBuffers;
    TraceMap<unsigned int, BufferDefinition> m_sBufferDatas;
    float m_fClearColor[4] = {};
    float m_fClearDepth = 1.0f;
    int m_iClearStencil = 0;
    bool m_bColorMask[4] = {true, true, true, true};
    unsigned int m_eCullFaceMode;
    unsigned int m_eDepthFunc;
    bool m_bDepthMask = true;
    float m_fDepthRangeNearFar[2] = {0.0f, 1.0f};
    bool m_baServerState[kServerStates] = {false, false, false, true, false, false, false, false, false};
    TraceMap<unsigned int, FBODefinition> mFramebufferObjects;
    unsigned int m_iBoundFBO = 0;
    unsigned int m_eFrontFaceMode;
    unsigned int m_eaHints[1];
    int m_iPixelStorePackAlignment = 4;
    int m_iPixelStoreUnpackAlignment = 4;
    float m_fPolygonOffsetFactor = 0.0f;
    float m_fPolygonOffsetUnits = 0.0f;
    TraceMap<unsigned int, ProgramDefinition> m_sProgramMap;
    ProgramDefinition m_sUsedProgram;
    bool m_bDeleteUsedProgram = false;
    bool m_bShaderCompilerReleased = true;
    TraceMap<unsigned int, RBODefinition> m_sRenderbuffers;
    unsigned int m_iBoundRB = 0;
    float m_fSampleCoverageValue = 1.0f;
    bool m_bSampleCoverageInvert = false;
    int m_iaScissorBox[4] = {};
    TraceMap<unsigned int, ShaderDefinition> m_sShaderMap;
    // Front face first, back face second.
    unsigned int m_eStencilFunc[2];
    int m_iStencilFuncRef[2] = {};
    unsigned int m_uStencilFuncMask[2] = {~0u, ~0u};
    unsigned int m_uStencilMask[2] = {~0u, ~0u};
    unsigned int m_eStencilOpFail[2];
    unsigned int m_eStencilOpZFail[2];
    unsigned int m_eStencilOpZPass[2];
    // By name, then face (0 for a 2D texture), then level.
    Textures m_sTexImageTextures;
    // By program, then location. Pre: in force at the last link; Post: set since.
    TraceMap<unsigned int, TraceMap<int, UniformDefinition>> m_sUniformMap;
    TraceMap<unsigned int, TraceMap<int, ProgramAttribute>> m_sPreAttribMap;
    TraceMap<unsigned int, TraceMap<int, ProgramAttribute>> m_sPostAttribMap;
    int m_iaViewport[4] = {};
    unsigned int mBoundVAO = 0;
    TraceMap<unsigned int, VAODefinition> mVertexArrayObjects;
    UsedNames m_sUnusedMaps[2];  // only copied
};

// Enters the texture at an attachment point of the bound framebuffer, if there is one, into `used`.
NEBTRACE_API void TrackFBOAttachment(unsigned int attachment, TraceMap<unsigned int, unsigned int>* used);
