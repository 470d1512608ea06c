// Containers and shadow states as they lie in the memory of a 32-bit ARM device; the state of OpenGL ES 1
// stands in es1_state_size.cpp. It is compiled for that machine and runs nowhere: what it says holds if it
// compiles.
#include "core/trace_record_manager.h"
#include "field_order.h"
#include "host/hosts.h"
#include "state/buffer_object_list.h"
#include "state/dyn_array.h"
#include "state/egl_render_state.h"
#include "state/es2_context_state.h"
#include "state/trace_map.h"
#include "state/trace_scoped_ptr.h"
#include "state/vertex_attribs_handler.h"

// The containers.
using Map = TraceMap<int, int>;
static_assert(offsetof(Map, m_ppSlots) == 0);
static_assert(offsetof(Map, m_i32Count) == 4);
static_assert(offsetof(Map, m_i32Capacity) == 8);
static_assert(sizeof(Map) == 12);
static_assert(offsetof(Map::SNode, key) == 0 && offsetof(Map::SNode, value) == 4);
static_assert(sizeof(TraceMap<void*, CEglRenderState::eglWindowDefinition>) == 12, "whatever it holds");

using Array = DynArray<float>;
static_assert(offsetof(Array, m_pData) == 0);
static_assert(offsetof(Array, m_ui32Count) == 4);
static_assert(offsetof(Array, m_ui32Capacity) == 8);
static_assert(sizeof(Array) == 12 && sizeof(DynArray<int>) == 12);

static_assert(sizeof(TraceScopedPtr<SEs2Host>) == 4);

using BufferObject = CBufferObjectList::SBufferObject;
static_assert(offsetof(CBufferObjectList, m_pHead) == 0 && offsetof(CBufferObjectList, m_pTail) == 4);
static_assert(sizeof(CBufferObjectList) == 8);
static_assert(offsetof(BufferObject, data) == 0);
static_assert(offsetof(BufferObject, size) == 4);
static_assert(offsetof(BufferObject, name) == 8);
static_assert(offsetof(BufferObject, next) == 12);
static_assert(sizeof(BufferObject) == 16);

// The client arrays of OpenGL ES 1.
using Attrib = CVertexAttribsHandler::SAttrib;
static_assert(offsetof(CVertexAttribsHandler, pAttribs) == 0);
static_assert(offsetof(CVertexAttribsHandler, attribCount) == 4);
static_assert(offsetof(CVertexAttribsHandler, pfnGetCount) == 8);
static_assert(offsetof(CVertexAttribsHandler, clientActiveTexture) == 12);
static_assert(sizeof(CVertexAttribsHandler) == 16);
static_assert(offsetof(Attrib, size) == 0);
static_assert(offsetof(Attrib, type) == 4);
static_assert(offsetof(Attrib, normalized) == 8);
static_assert(offsetof(Attrib, stride) == 12);
static_assert(offsetof(Attrib, pointer) == 16);
static_assert(offsetof(Attrib, enabled) == 20);
static_assert(offsetof(Attrib, arrayBuffer) == 24);
static_assert(sizeof(Attrib) == 28);

// EGL.
using EglState = CEglRenderState;
static_assert(offsetof(EglState, m_sConfigs) == 0);
static_assert(offsetof(EglState, m_sContexts) == 12);
static_assert(offsetof(EglState, m_sDisplays) == 24);
static_assert(offsetof(EglState, m_sWindows) == 36);
static_assert(offsetof(EglState, m_pCurrentContext) == 48);
static_assert(offsetof(EglState, m_pCurrentDisplay) == 52);
static_assert(offsetof(EglState, m_pCurrentDraw) == 56);
static_assert(offsetof(EglState, m_pCurrentRead) == 60);
static_assert(offsetof(EglState, m_iClientVersion) == 68, "behind a pointer that nothing uses");
static_assert(sizeof(EglState) == 72);

static_assert(offsetof(EglState::eglAttributeList, data) == 0 &&
              offsetof(EglState::eglAttributeList, count) == 4);
static_assert(sizeof(EglState::eglAttributeList) == 8);

using Config = EglState::eglConfigDefinition;
static_assert(Rising({offsetof(Config, config), offsetof(Config, display), offsetof(Config, attributes)}));
static_assert(sizeof(Config) == 4 + 4 + 8);

using Context = EglState::eglContextDefinition;
static_assert(Rising({offsetof(Context, context), offsetof(Context, display), offsetof(Context, config),
                      offsetof(Context, shareContext), offsetof(Context, attributes),
                      offsetof(Context, configAttributes)}));
static_assert(sizeof(Context) == 4 * 4 + 2 * 8);

using Display = EglState::eglDisplayDefinition;
static_assert(Rising({offsetof(Display, display), offsetof(Display, nativeDisplay),
                      offsetof(Display, swapInterval), offsetof(Display, initialized)}));
static_assert(sizeof(Display::nativeDisplay) == 4);
static_assert(sizeof(Display) == 4 * 4);

using Window = EglState::eglWindowDefinition;
static_assert(Rising({offsetof(Window, surface), offsetof(Window, display), offsetof(Window, config),
                      offsetof(Window, window), offsetof(Window, attributes),
                      offsetof(Window, configAttributes), offsetof(Window, height),
                      offsetof(Window, width)}));
static_assert(sizeof(Window) == 4 * 4 + 2 * 8 + 2 * 4);

// OpenGL ES 2: the fields in their order, and what the larger of them take.
using State = CEs2ContextState;
static_assert(Rising({offsetof(State, m_usClientVersion),
                      offsetof(State, m_iMaxTextureUnits),
                      offsetof(State, m_iUnused),
                      offsetof(State, m_eActiveTexture),
                      offsetof(State, m_uBound2DTextures),
                      offsetof(State, m_uBoundCubeMapTextures),
                      offsetof(State, m_uBound3DTexturesOES),
                      offsetof(State, m_uUnusedTextures),
                      offsetof(State, m_eBlendEquationAlpha),
                      offsetof(State, m_eBlendEquationRGB),
                      offsetof(State, m_faBlendColor),
                      offsetof(State, m_eBlendFuncRGBSourceDest),
                      offsetof(State, m_eBlendFuncAlphaSourceDest),
                      offsetof(State, m_sUsedTextures),
                      offsetof(State, m_sUsedBuffers),
                      offsetof(State, m_sBufferDatas),
                      offsetof(State, m_fClearColor),
                      offsetof(State, m_fClearDepth),
                      offsetof(State, m_iClearStencil),
                      offsetof(State, m_bColorMask),
                      offsetof(State, m_eCullFaceMode),
                      offsetof(State, m_eDepthFunc),
                      offsetof(State, m_bDepthMask),
                      offsetof(State, m_fDepthRangeNearFar),
                      offsetof(State, m_baServerState),
                      offsetof(State, mFramebufferObjects),
                      offsetof(State, m_iBoundFBO),
                      offsetof(State, m_eFrontFaceMode),
                      offsetof(State, m_eaHints),
                      offsetof(State, m_iPixelStorePackAlignment),
                      offsetof(State, m_iPixelStoreUnpackAlignment),
                      offsetof(State, m_fPolygonOffsetFactor),
                      offsetof(State, m_fPolygonOffsetUnits),
                      offsetof(State, m_sProgramMap),
                      offsetof(State, m_sUsedProgram),
                      offsetof(State, m_bDeleteUsedProgram),
                      offsetof(State, m_bShaderCompilerReleased),
                      offsetof(State, m_sRenderbuffers),
                      offsetof(State, m_iBoundRB),
                      offsetof(State, m_fSampleCoverageValue),
                      offsetof(State, m_bSampleCoverageInvert),
                      offsetof(State, m_iaScissorBox),
                      offsetof(State, m_sShaderMap),
                      offsetof(State, m_eStencilFunc),
                      offsetof(State, m_iStencilFuncRef),
                      offsetof(State, m_uStencilFuncMask),
                      offsetof(State, m_uStencilMask),
                      offsetof(State, m_eStencilOpFail),
                      offsetof(State, m_eStencilOpZFail),
                      offsetof(State, m_eStencilOpZPass),
                      offsetof(State, m_sTexImageTextures),
                      offsetof(State, m_sUniformMap),
                      offsetof(State, m_sPreAttribMap),
                      offsetof(State, m_sPostAttribMap),
                      offsetof(State, m_iaViewport),
                      offsetof(State, mBoundVAO),
                      offsetof(State, mVertexArrayObjects),
                      offsetof(State, m_sUnusedMaps)}));
static_assert(sizeof(State::m_usClientVersion) == 2);
static_assert(offsetof(State, m_iMaxTextureUnits) == 4);
static_assert(offsetof(State, m_uBound2DTextures) == 16);
static_assert(offsetof(State, m_eBlendEquationAlpha) == 16 + 5 * 128, "five arrays of 32 names");
static_assert(sizeof(State::m_baServerState) == 9);
static_assert(sizeof(State::m_sUsedProgram) == 16);
// Arrays of the plain state between its stores.
static_assert(offsetof(State, m_sUsedTextures) == 696);
static_assert(offsetof(State, mFramebufferObjects) == 792);
static_assert(offsetof(State, m_sTexImageTextures) == 972);
static_assert(offsetof(State, m_sUnusedMaps) == 1052);
static_assert(sizeof(State) == offsetof(State, m_sUnusedMaps) + 2 * 12);

// The records that the stores hold, each in a node of its own.
static_assert(Rising({offsetof(BufferDefinition, bufferName), offsetof(BufferDefinition, bufferTarget),
                      offsetof(BufferDefinition, bufferData), offsetof(BufferDefinition, bufferDataSize),
                      offsetof(BufferDefinition, bufferUsage), offsetof(BufferDefinition, isMappedOES),
                      offsetof(BufferDefinition, externalData), offsetof(BufferDefinition, deepCopy)}));
static_assert(sizeof(BufferDefinition) == 5 * 4 + 3 + 1);
static_assert(sizeof(FBOAttachmentDefinition) == 4 * 4);
static_assert(sizeof(RBODefinition) == 4 + 1 + 3 + 3 * 4);
static_assert(sizeof(ProgramDefinition) == 3 * 4 + 2 + 2);
static_assert(sizeof(VertexAttributeArray) == 1 + 3 + 7 * 4);
static_assert(Rising({offsetof(VAODefinition, name), offsetof(VAODefinition, boundarraybuffer),
                      offsetof(VAODefinition, boundelementbuffer),
                      offsetof(VAODefinition, createdwithextension),
                      offsetof(VAODefinition, vertexattributearrays)}));
static_assert(sizeof(VAODefinition) == 3 * 4 + 1 + 3 + 12);
