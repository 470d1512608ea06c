// The profiler and its link to the performance server as they lie in the memory of a 32-bit ARM device. It is
// compiled for that machine and runs nowhere: what it says holds if it compiles.
#include "field_order.h"
#include "profiler/comms_blocks.h"
#include "profiler/data_path_herd.h"
#include "profiler/data_path_shared_mem.h"
#include "profiler/npl.h"
#include "profiler/profiler.h"
#include "profiler/profiler_context.h"

// The counters come first: the object's first 108 bytes are what goes to the server.
static_assert(offsetof(CProfiler, m_aCounters) == 0);
static_assert(sizeof(CProfiler::m_aCounters) == 108);
static_assert(offsetof(CProfiler, m_pComms) == 108);
static_assert(offsetof(CProfiler, m_swapInterval) == 112);
static_assert(offsetof(CProfiler, m_Contexts) == 116);
static_assert(offsetof(CProfiler, m_pCurrentContext) == 128);
static_assert(sizeof(CProfiler) == 132);

// The library's items.
static_assert(offsetof(SLibraryItem, pszName) == 0);
static_assert(offsetof(SLibraryItem, nameLength) == 4);
static_assert(offsetof(SLibraryItem, type) == 8);
static_assert(offsetof(SLibraryItem, pData) == 12);
static_assert(offsetof(SLibraryItem, dataSize) == 16);
static_assert(sizeof(SLibraryItem) == 20);
static_assert(sizeof(CProfiler::m_aLibraryItems) == 280);
static_assert(sizeof(CProfiler::m_aszCounterNames) == 27 * 4);
static_assert(sizeof(CProfiler::m_ForceViewport) == 1, "a switch is one byte on the wire");
static_assert(sizeof(CProfiler::m_CullingModeSelection) == 4);

// What is kept of a context: OpenGL ES 2, then the same of OpenGL ES 1, then what both share.
using Context = CProfiler::SContext;
using Enables = CProfiler::SEnables;
static_assert(offsetof(Context, viewport) == 0);
static_assert(offsetof(Context, enables) == 16);
static_assert(offsetof(Context, activeTexture) == 24);
static_assert(offsetof(Context, currentFBO) == 28);
static_assert(offsetof(Context, cullFace) == 32);
static_assert(offsetof(Context, textures) == 36);
static_assert(sizeof(Context::textures) == 32 * 4 * 16);
static_assert(offsetof(Context, currentProgram) == 2084);
static_assert(offsetof(Context, viewportEs1) == 2088);
static_assert(offsetof(Context, enablesEs1) == 2104);
static_assert(offsetof(Context, activeTextureEs1) == 2112);
static_assert(offsetof(Context, currentFBOEs1) == 2116);
static_assert(offsetof(Context, cullFaceEs1) == 2120);
static_assert(offsetof(Context, texturesEs1) == 2124);
static_assert(sizeof(Context::texturesEs1) == 32 * 16);
static_assert(offsetof(Context, tex2x2Es2) == 2636);
static_assert(offsetof(Context, texCube2x2Es2) == 2640);
static_assert(offsetof(Context, tex2x2Es1) == 2644);
static_assert(offsetof(Context, flatFragShader) == 2648);
static_assert(offsetof(Context, m_Programs) == 2652);
static_assert(offsetof(Context, m_Shaders) == 2664);
static_assert(offsetof(Context, m_FBOs) == 2676);
static_assert(offsetof(Context, shareContext) == 2688);
static_assert(sizeof(Context) == 2692);

static_assert(offsetof(Enables, bBlend) == 0);
static_assert(offsetof(Enables, bAlphaTest) == 1);
static_assert(offsetof(Enables, bScissor) == 2);
static_assert(offsetof(Enables, bTexture2D) == 3);
static_assert(offsetof(Enables, bStencil) == 4);
static_assert(offsetof(Enables, bDepth) == 5);
static_assert(offsetof(Enables, bCull) == 6);
static_assert(sizeof(Enables) == 7);

static_assert(offsetof(CProfiler::STextureBinding, name) == 0);
static_assert(offsetof(CProfiler::STextureBinding, minFilter) == 4);
static_assert(offsetof(CProfiler::STextureBinding, magFilter) == 8);
static_assert(offsetof(CProfiler::STextureBinding, bIsAttachment) == 12);
static_assert(sizeof(CProfiler::STextureBinding) == 16);

static_assert(offsetof(CProfiler::SProgram, flatProgram) == 0);
static_assert(offsetof(CProfiler::SProgram, flatLocations) == 4);
static_assert(offsetof(CProfiler::SProgram, noDiscardProgram) == 16);
static_assert(offsetof(CProfiler::SProgram, noDiscardLocations) == 20);
static_assert(offsetof(CProfiler::SProgram, bDeleted) == 32);
static_assert(sizeof(CProfiler::SProgram) == 36);
static_assert(offsetof(CProfiler::SShader, rewrittenShader) == 0);
static_assert(offsetof(CProfiler::SShader, bDeleted) == 4);
static_assert(sizeof(CProfiler::SShader) == 8);
static_assert(sizeof(CProfiler::SFBO) == 12 && sizeof(CProfiler::SFBOAttachment) == 12);

// The handle of the link, and its items.
static_assert(offsetof(SSPSCommsData, pName) == 0);
static_assert(offsetof(SSPSCommsData, nameLength) == 4);
static_assert(offsetof(SSPSCommsData, pDataPath) == 8);
static_assert(offsetof(SSPSCommsData, bConnected) == 12);
static_assert(offsetof(SSPSCommsData, pItems) == 16);
static_assert(offsetof(SSPSCommsData, itemCount) == 20);
static_assert(offsetof(SSPSCommsData, pDirtyHead) == 24);
static_assert(offsetof(SSPSCommsData, pCounters) == 28);
static_assert(offsetof(SSPSCommsData, counterCount) == 32);
static_assert(sizeof(SSPSCommsData) == 36);

static_assert(offsetof(SCommsItem, bDirty) == 0 && sizeof(SCommsItem::bDirty) == 1);
static_assert(offsetof(SCommsItem, pNextDirty) == 4);
static_assert(offsetof(SCommsItem, pName) == 8);
static_assert(offsetof(SCommsItem, nameLength) == 12);
static_assert(offsetof(SCommsItem, type) == 16);
static_assert(offsetof(SCommsItem, pData) == 20);
static_assert(offsetof(SCommsItem, dataSize) == 24);
static_assert(sizeof(SCommsItem) == 28);
static_assert(sizeof(SCommsCounter) == 8);

// Payloads of blocks that are sent as they lie here.
static_assert(sizeof(SCommsInitialData) == 7 * 4 + 4 * 4);
static_assert(sizeof(SNEBScopeEvent) == 17 * 4);
static_assert(sizeof(SCommsCPUUsage) == 3 * 4);
static_assert(sizeof(SNEBScopeRegReadHost) == 15 * 4);

// The shared-memory transport.
static_assert(offsetof(CDataPath, bytesSent) == 4, "behind the pointer to the virtual operations");
static_assert(offsetof(CDataPath, bytesReceived) == 8);
static_assert(offsetof(CDataPath, pPrintf) == 12);
static_assert(sizeof(CDataPath) == 16);

static_assert(offsetof(CSharedMem, pName) == 0);
static_assert(offsetof(CSharedMem, bCreator) == 4);
static_assert(offsetof(CSharedMem, fd) == 8);
static_assert(offsetof(CSharedMem, size) == 12);
static_assert(sizeof(CSharedMem) == 16);
static_assert(offsetof(CMutex, mem) == 0 && offsetof(CMutex, pMutex) == 16 && sizeof(CMutex) == 20);
static_assert(offsetof(SSharedBuffer, mem) == 0);
static_assert(offsetof(SSharedBuffer, pData) == 16);
static_assert(offsetof(SSharedBuffer, mutex) == 20);
static_assert(sizeof(SSharedBuffer) == 40);
static_assert(offsetof(SSharedRing, buffers) == 0 && offsetof(SSharedRing, index) == 120);
static_assert(sizeof(SSharedRing) == 124);

static_assert(offsetof(CDataPathSharedMem, pszName) == 16);
static_assert(offsetof(CDataPathSharedMem, U) == 20);
static_assert(offsetof(CDataPathSharedMem, D) == 144);
static_assert(offsetof(CDataPathSharedMem, pSendRing) == 268);
static_assert(offsetof(CDataPathSharedMem, pReceiveRing) == 272);
static_assert(offsetof(CDataPathSharedMem, id) == 276);
static_assert(offsetof(CDataPathSharedMem, state) == 280);
static_assert(sizeof(CDataPathSharedMem) == 284);

// What lies in shared memory is the same on every machine, but for the mutex: see docs/limits.md.
static_assert(offsetof(SRingPositions, read) == 0 && offsetof(SRingPositions, write) == 4);
static_assert(kRingBufferSize == 32768 && kRingRoom == 32760 && kRendezvousSize == 256);
