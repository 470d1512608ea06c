// Counter and override engine. The wrappers talk to it through a pointer that is null unless profiling is on.
//
// For every call it takes in what the performance server has changed, decides whether the call reaches the
// host, counts it, and keeps the little state that the overrides must put back. The counters go out at each
// swap.
//
// An override never lasts: it is applied before each draw and undone behind it, straight through the host
// tables, so that it passes neither wrappers nor records. Turning a switch off needs no step of its own.
#pragma once
#include "profiler/npl.h"
#include "state/trace_map.h"
#include "support/export.h"
#include <cstddef>
#include <cstdint>

class CNEBTString;

class NEBTRACE_API CProfiler
{
public:
    // All are cumulative and wrap silently: a receiver takes differences. The order is the one of
    // m_aszCounterNames.
    enum ECounters
    {
        eIndexedDraws,
        eNonIndexedDraws,
        ePoints,
        eLineList,
        eLineLoop,
        eLineStrip,
        eLines,
        eTriangleList,
        eTriangleStrip,
        eTriangleFan,
        eTriangles,
        eTextureUploads,
        eTextureModifications,
        eScissorCalls,
        eViewportCalls,
        eFrameBufferAccesses,
        eVertexShaderCompiles,
        eFragmentShaderCompiles,
        eProgramLinks,
        eDriverTime,              // microseconds
        eFrameBufferAccessBytes,  // nothing adds to it
        eTextureUploadBytes,
        eTextureModificationBytes,
        eBufferUploadBytes,
        eBufferModificationBytes,
        eUniformUploads,
        eContextBinds,
        eCounterCount
    };
    // The library items by their index, which is what the server sends.
    enum EItems
    {
        eItemForceViewport,
        eItemDisableBlending,
        eItemForce2x2Textures,
        eItemForceFlatColourFrag,
        eItemDisableStencilTest,
        eItemDisableDepthTest,
        eItemDisableScissorTest,
        eItemDisableDrawCalls,
        eItemDisableFlushNFinish,
        eItemDisableTextureModifications,
        eItemDisableTextureFiltering,
        eItemDisableAlphaTest,
        eItemDisableFBAccess,
        eItemCullingMode,
        eItemCount
    };
    // What m_CullingModeSelection selects.
    enum ECullingMode
    {
        eCullAppDefined,
        eCullNone,
        eCullBack,
        eCullFront,
        eCullModeCount
    };

    // What is kept of each context, program, fragment shader and framebuffer: profiler/profiler_context.h.
    struct STextureBinding;
    struct SEnables;
    struct SProgram;
    struct SShader;
    struct SContext;
    // Texture names by texture target.
    using SFBOAttachment = TraceMap<unsigned int, unsigned int>;
    // By attachment point.
    using SFBO = TraceMap<unsigned int, SFBOAttachment>;

    CProfiler();
    // Tells the server of the end, and frees memory only: what the profiler made on the host lives until the
    // driver frees it.
    ~CProfiler();
    CProfiler(CProfiler const&) = delete;
    CProfiler& operator=(CProfiler const&) = delete;

    // The one instance, made on first use and destroyed at process exit.
    static CProfiler* getInstance();
    static void Destroy();
    // In the child of a fork: leaves the link to the parent. The child opens one of its own at its next swap.
    static void AbandonAfterFork();

    // Opens the link to the performance server and describes items and counters; returns whether it is open.
    // There need not be a server yet.
    bool OpenComms();
    void CloseComms();
    // Publishes the counters, once a frame. False when no server has taken them.
    bool SendCounters();
    void ResetCounters();
    // Without a lock: what two threads add at once may count once.
    void IncrementCounter(ECounters counter, unsigned int amount);

    // Before the host call. `args`: an int count, then the address of each argument. Takes in the server's
    // changes, then clears `bCallHost` for a call that a switch suppresses; never sets it.
    void DoCall(int id, void const* const* args, bool& bCallHost);
    // A timed host call took this long.
    void DidCall(int id, unsigned long microseconds);
    // A host call succeeded. `result` points at the wrapper's copy of the host's result, or is null.
    void DidCall(int id, void const* const* args);
    void TrackState(int id, void const* const* args, void* result);
    // Around a draw's host call: the overrides of state and programs, and their undoing.
    void PreDrawCall();
    void PostDrawCall();

    // As the free function of that name (profiler/remove_discard.h).
    bool RemoveDiscard(CNEBTString& source);
    // The filter without interpolation that needs the same mipmaps.
    unsigned int GetNearestFilter(unsigned int filter) const;

    // Look in the context's own records, then in those of the contexts that it shares with. The owner, where
    // asked for, is the context whose record it is. Null for a null context, and when there is none.
    SProgram* GetProgram(SContext* context, unsigned int name, SContext** owner);
    SShader* GetFragShader(SContext* context, unsigned int name, SContext** owner);
    SFBO* GetFBO(SContext* context, unsigned int name, SContext** owner);
    // Whether a framebuffer of the context, or of those that it shares with, has the texture attached.
    bool IsAttachment(SContext* context, unsigned int texture);
    // The current context's record of an application's program, made together with its alternates where there
    // is none. Null without a current context, and when the host makes no programs.
    SProgram* GetShaderProgram(unsigned int program);
    // Erase records of objects that the host no longer knows.
    void TidyupDeadFBOAttachments(SContext* context);
    void TidyupDeadShadersAndPrograms(SContext* context);

    static CProfiler* m_pInstance;
    static char const* const m_aszCounterNames[eCounterCount];
    static SLibraryItem m_aLibraryItems[eItemCount];

    // The switches. The server's bytes are copied over them as they are: ask for one with IsOn.
    static bool m_ForceViewport;
    static bool m_DisableBlending;
    static bool m_Force2x2Textures;
    static bool m_ForceFlatColourFrag;
    static bool m_DisableStencilTest;
    static bool m_DisableDepthTest;
    static bool m_DisableScissorTest;
    static bool m_DisableDrawCalls;
    static bool m_DisableFlushNFinish;
    static bool m_DisableTextureModifications;
    static bool m_DisableTextureFiltering;
    static bool m_DisableAlphaTest;
    static bool m_DisableFBAccess;
    static char* m_CullingMode;  // the item's text: the selection, then the choices
    static int32_t m_CullingModeSelection;

    // Any byte but 0 is on.
    static bool IsOn(bool const& item);

    // The counters come first: the object's first 108 bytes are what nplCountersUpdate is handed.
    uint32_t m_aCounters[eCounterCount];
    SSPSCommsData* m_pComms;  // null while comms are closed
    int32_t m_swapInterval;   // nothing reads it
    TraceMap<void*, SContext> m_Contexts;
    void* m_pCurrentContext;  // the last one that any thread has made current

private:
    // Destroyed, while a thread was still inside a call: this object must not be touched.
    bool HasEnded() const { return this != m_pInstance; }
    // Null when no context is current, or when it was made before profiling began.
    SContext* CurrentContext();

    // DoCall
    void TakeChanges();
    void GiveUpPrivateTexture(unsigned int texture);

    // TrackState, by family; each ignores the calls that are not its own.
    void TrackEgl(int id, void const* const* args, void const* result);
    void TrackEnables(SContext& context, int id, void const* const* args);
    void TrackTextures(SContext& context, int id, void const* const* args);
    void TrackFramebuffers(SContext& context, int id, void const* const* args);
    void TrackShaders(SContext& context, int id, void const* const* args);
    void TrackPrograms(SContext& context, int id, void const* const* args, void const* result);
    void TrackUniforms(SContext& context, int id, void const* const* args);
};

static_assert(CProfiler::eCounterCount == 27 && CProfiler::eItemCount == 14, "what a server is told");
