#include "core/config.h"
#include "core/init_order.h"
#include "platform/platform.h"
#include "support/log.h"
#include "support/relaxed.h"
#include <array>
#include <cstdlib>
#include <dlfcn.h>

STraceConfig* STraceConfig::s_pInstance = nullptr;
NEBTRACE_INIT_FIRST CNEBTString STraceConfig::m_traceOutfilePath;
NEBTRACE_INIT_FIRST CNEBTString STraceConfig::m_processNameExclude("neb.tools.NEBTraceApp");
NEBTRACE_INIT_FIRST CNEBTString STraceConfig::m_processNameWrite;
bool STraceConfig::m_recordEnable = true;
bool STraceConfig::m_bRecordData = false;
bool STraceConfig::m_saveFrameBuffer = false;
uint32_t STraceConfig::m_ui32StartFrame = 0;
uint32_t STraceConfig::m_ui32EndFrame = 0;
bool STraceConfig::m_bNetworkControl = false;
bool STraceConfig::m_bNetworkWait = false;
bool STraceConfig::m_saveFileToDisk = true;
int STraceConfig::m_bufferSizeNetwork = 256;
bool STraceConfig::m_sendOverNetwork = false;
bool STraceConfig::m_exitAfterLastFrame = false;
int STraceConfig::m_debugInfo = 1;
int STraceConfig::m_i32SwapInterval = -1;
bool STraceConfig::m_bProfile = false;
bool STraceConfig::m_optimizationRS = false;
bool STraceConfig::m_optimizationRSWasSet = false;
int STraceConfig::m_fileWindow = 0;
bool STraceConfig::m_getErrors = true;
bool STraceConfig::m_noCallHost = false;

uint32_t STraceConfig::m_ui32CurrentFrame = 0;
uint32_t STraceConfig::m_ui32LastFrame = 0;
bool STraceConfig::m_bDoNativeCall = true;
bool STraceConfig::m_writeRenderState = false;
bool STraceConfig::m_renderStateWritten = false;
bool STraceConfig::m_writingRenderState = false;
bool STraceConfig::m_fileClosed = false;
bool STraceConfig::m_bPreventSaving = false;
bool STraceConfig::m_isNewFrame = false;
bool STraceConfig::m_bEGLUsed = false;
bool STraceConfig::m_bES1Used = false;
bool STraceConfig::m_bES2Used = false;
bool STraceConfig::m_bES3Used = false;

bool STraceConfig::m_headerWrite = false;
CNetworkServer::SNetControl STraceConfig::m_netControl;
CNetworkServer* STraceConfig::m_networkInstance = nullptr;

bool STraceConfig::m_stepPlay = false;
bool STraceConfig::m_stepPlayControlerEnable = false;

STraceConfig::STraceConfig()
    : m_eglLibraryPath("libEGL.so"), m_es1LibraryPath("libGLES_CM.so"), m_es2LibraryPath("libGLESv2.so")
{
    m_headerWrite = true;
    m_netControl.bConnected = false;
    m_netControl.bRunning = true;
    m_netControl.bRecording = false;
    m_traceOutfilePath = "trace.nebt";
    // On purpose: the handles are dropped and failures ignored. The default libraries stay mapped with global
    // visibility from here on, before any configuration has been read.
    for (CNEBTString const* path : {&m_eglLibraryPath, &m_es2LibraryPath, &m_es1LibraryPath})
        dlopen(path->c_str(), RTLD_NOW | RTLD_GLOBAL);
    dlerror();  // a failure's text is not the application's to find
    constexpr int kSystemLogCode = 0x6600008;
    constexpr int kSystemLogSeverity = 5;
    Platform::SystemLog(kSystemLogCode, kSystemLogSeverity, "NEBTRACE record start");
    m_i32SwapInterval = -1;
}

STraceConfig::~STraceConfig()
{
    if (m_bNetworkControl && m_networkInstance)
        m_networkInstance->Close();
}

void STraceConfig::Create()
{
    s_pInstance = new STraceConfig;
    // On purpose: no configuration has been read yet. Where it does not ask for profiling, the link rests.
    CProfiler::getInstance()->OpenComms();
}

namespace
{

struct SIdRange
{
    int first;
    int last;
    int position;  // of the first ID in the table of names
};

// In the order in which the ranges are tested and laid out.
constexpr SIdRange kIdRanges[] = {
    {4000, 4239, 0}, {2000, 2142, 240}, {3000, 3145, 383}, {1100, 1110, 529}, {1000, 1034, 540}};
constexpr int kIdCount = 575;

constexpr int PositionOf(int id)
{
    for (SIdRange const& range : kIdRanges)
        if (id >= range.first && id <= range.last)
            return range.position + id - range.first;
    return -1;
}

constexpr std::array<char const*, kIdCount> MakeNames()
{
    std::array<char const*, kIdCount> names{};
    for (char const*& name : names)
        name = "";
#define EGL(id, kind, defaultResult, result, name, parameters, arguments) names[PositionOf(id)] = #name;
#define EGL_REPLAYED(id, kind, defaultResult, result, name, parameters, arguments, wrapperParameters)        \
    names[PositionOf(id)] = #name;
#include "api/egl.def"
#define ES1(id, kind, defaultResult, result, name, parameters, arguments) names[PositionOf(id)] = #name;
#include "api/es1.def"
#define ES2(id, kind, defaultResult, result, name, parameters, arguments) names[PositionOf(id)] = #name;
#define ES2_REPLAYED(id, kind, defaultResult, result, name, parameters, arguments, wrapperParameters)        \
    names[PositionOf(id)] = #name;
#include "api/es2.def"
    return names;
}

constexpr std::array<char const*, kIdCount> kNames = MakeNames();

}  // namespace

char const* STraceConfig::TranslateID(int id)
{
    int const position = PositionOf(id);
    return position < 0 ? nullptr : kNames[static_cast<size_t>(position)];
}
