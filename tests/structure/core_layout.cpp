// Strings, timer, decision, record buffer and host tables as they lie in the memory of a 32-bit ARM device.
// It is compiled for that machine and runs nowhere: what it says holds if it compiles.
#include "core/config.h"
#include "core/trace_block.h"
#include "core/trace_file_init.h"
#include "field_order.h"
#include "host/hosts.h"
#include "support/stopwatch.h"
#include "support/string.h"
#include "wrappers/argument_records.h"

// Behind the pointer to its virtual destructor.
static_assert(offsetof(CNEBTString, pChars) == 4);
static_assert(offsetof(CNEBTString, charCount) == 8);
static_assert(offsetof(CNEBTString, allocatedBytes) == 12);
static_assert(sizeof(CNEBTString) == 16);
static_assert(CNEBTString::npos == 0xFFFFFFFF);

static_assert(offsetof(CStopwatch, m_start) == 0);
static_assert(offsetof(CStopwatch, m_stop) == 4);
static_assert(sizeof(CStopwatch) == 8);

// The decision for one call: two pointers and six flags.
using Decision = STraceConfig::SFunctionConfig;
static_assert(offsetof(Decision, pProfiler) == 0);
static_assert(offsetof(Decision, pStopwatch) == 4);
static_assert(offsetof(Decision, bCallHost) == 8);
static_assert(offsetof(Decision, bGetErrors) == 9);
static_assert(offsetof(Decision, bUpdateRenderState) == 10);
static_assert(offsetof(Decision, bSaveCall) == 11);
static_assert(offsetof(Decision, bRecordData) == 12);
static_assert(offsetof(Decision, bSaveFrameBuffer) == 13);
static_assert(sizeof(Decision) == 16);

// The settings' object is its four paths: all else is static.
static_assert(offsetof(STraceConfig, m_eglLibraryPath) == 0);
static_assert(offsetof(STraceConfig, m_es1LibraryPath) == 16);
static_assert(offsetof(STraceConfig, m_es2LibraryPath) == 32);
static_assert(offsetof(STraceConfig, m_es3LibraryPath) == 48);
static_assert(sizeof(STraceConfig) == 64);

// A thread's record buffer. Its thread ID has 64 bits here, too.
static_assert(offsetof(STraceBlockImpl, threadId) == 0);
static_assert(offsetof(STraceBlockImpl, totalSize) == 8);
static_assert(offsetof(STraceBlockImpl, bBusy) == 12);
static_assert(offsetof(STraceBlockImpl, pDataRefs) == 16);
static_assert(offsetof(STraceBlockImpl, dataRefCount) == 20);
static_assert(offsetof(STraceBlockImpl, dataRefCapacity) == 24);
static_assert(offsetof(STraceBlockImpl, pValues) == 28);
static_assert(offsetof(STraceBlockImpl, valueSize) == 32);
static_assert(offsetof(STraceBlockImpl, valueCapacity) == 36);
static_assert(sizeof(STraceBlockImpl) == 40);
static_assert(sizeof(STraceBlockImpl::threadId) == 8);

static_assert(offsetof(STraceDataRef, position) == 0);
static_assert(offsetof(STraceDataRef, size) == 4);
static_assert(offsetof(STraceDataRef, data) == 8);
static_assert(sizeof(STraceDataRef) == 12);
static_assert(sizeof(CTraceBlock) == sizeof(STraceBlockImpl*));

static_assert(sizeof(CTraceFileInit::SDataFooter) == 8, "as it stands in the file");
static_assert(sizeof(CTraceFileInit) == 8, "two flags and a pointer");

// The records of pointer arguments.
static_assert(offsetof(SArrayR, m_pArray) == 0 && offsetof(SArrayR, m_ui32Count) == 4 &&
              sizeof(SArrayR) == 8);
static_assert(offsetof(SStringR, m_pText) == 0 && sizeof(SStringR) == 4);
static_assert(offsetof(SStringListR, m_pTexts) == 0 && offsetof(SStringListR, m_ui32Count) == 4);
static_assert(offsetof(SStringListR, m_pSizes) == 8 && sizeof(SStringListR) == 12);
static_assert(offsetof(SEglAttribListR, m_pAttribs) == 0 && offsetof(SEglAttribListR, m_ui32Count) == 4);
static_assert(sizeof(SEglAttribListR) == 8);
static_assert(offsetof(SImage2DR, m_pPixels) == 0 && offsetof(SImage2DR, m_ui32Size) == 4 &&
              sizeof(SImage2DR) == 8);
static_assert(offsetof(SImage3DR, m_pPixels) == 0 && offsetof(SImage3DR, m_ui32Size) == 4 &&
              sizeof(SImage3DR) == 8);

// The host tables: the handle and two flags behind the pointer to the virtual destructor, then the entries.
static_assert(offsetof(SHostLib, m_pHandle) == 4);
static_assert(offsetof(SHostLib, m_bLoadFailed) == 8);
static_assert(offsetof(SHostLib, m_bAllowMissing) == 9);
static_assert(sizeof(SHostLib) == 12);

constexpr std::size_t kEntries = sizeof(SHostLib);
constexpr std::size_t kEntry = 4;

// 34 core entries, then 11 extensions.
static_assert(offsetof(SEglHost, eglChooseConfig) == kEntries);
static_assert(offsetof(SEglHost, eglSetSwapRectangleANDROID) == kEntries + 34 * kEntry);
static_assert(sizeof(SEglHost) == kEntries + (34 + 11) * kEntry);

// 145 core entries, then 141 extensions and, in their midst, 10 that stay null.
static_assert(offsetof(SEs1Host, glActiveTexture) == kEntries);
static_assert(offsetof(SEs1Host, glDiscardFramebufferEXT) == kEntries + 145 * kEntry);
static_assert(offsetof(SEs1Host, glFramebufferTexture2DMultisampleNBX) == kEntries + (145 + 150) * kEntry);
static_assert(sizeof(SEs1Host) == kEntries + (145 + 141 + 10) * kEntry);

// 142 core entries, then 138 extensions and, in their midst, 14 that stay null.
static_assert(offsetof(SEs2Host, glActiveTexture) == kEntries);
static_assert(offsetof(SEs2Host, glRenderbufferStorageMultisampleNBX) == kEntries + 142 * kEntry);
static_assert(offsetof(SEs2Host, glGetnUniformivEXT) == kEntries + (142 + 151) * kEntry);
static_assert(sizeof(SEs2Host) == kEntries + (142 + 138 + 14) * kEntry);
