#include "tests/wrappers/recorder.h"
#include "host/hosts.h"
#include "tests/wrappers/functions.h"
#include <cstdio>
#include <dlfcn.h>
#include <fstream>
#include <unistd.h>

namespace
{

// Opened once and kept: the fake host's entries stay where they are while host tables come and go.
void KeepFakeHostLoaded()
{
    static bool const loaded = [] {
        for (char const* name : {"fakeEGL", "fakeGLESv1", "fakeGLESv2"})
            if (!dlopen(FakeLibrary(name).c_str(), RTLD_NOW | RTLD_LOCAL))
                std::fprintf(stderr, "%s\n", dlerror());
        return true;
    }();
    static_cast<void>(loaded);
}

std::string ScratchFile()
{
    static int number = 0;
    return testing::TempDir() + "recorder_" + std::to_string(getpid()) + "_" + std::to_string(number++) +
           ".nebt";
}

}  // namespace

std::string FakeLibrary(std::string const& name)
{
    return std::string(FAKE_HOST_DIR) + "/lib" + name + ".so";
}

void ResetSettings()
{
    STraceConfig& config = STraceConfig::Instance();
    config.m_eglLibraryPath = FakeLibrary("fakeEGL").c_str();
    config.m_es1LibraryPath = FakeLibrary("fakeGLESv1").c_str();
    config.m_es2LibraryPath = FakeLibrary("fakeGLESv2").c_str();
    config.m_es3LibraryPath = "";
    for (bool* off :
         {&STraceConfig::m_bRecordData, &STraceConfig::m_saveFrameBuffer, &STraceConfig::m_bNetworkControl,
          &STraceConfig::m_bNetworkWait, &STraceConfig::m_sendOverNetwork,
          &STraceConfig::m_exitAfterLastFrame, &STraceConfig::m_bProfile, &STraceConfig::m_optimizationRS,
          &STraceConfig::m_optimizationRSWasSet, &STraceConfig::m_noCallHost,
          &STraceConfig::m_writeRenderState, &STraceConfig::m_renderStateWritten,
          &STraceConfig::m_writingRenderState, &STraceConfig::m_fileClosed, &STraceConfig::m_bPreventSaving,
          &STraceConfig::m_isNewFrame, &STraceConfig::m_bEGLUsed, &STraceConfig::m_bES1Used,
          &STraceConfig::m_bES2Used})
        *off = false;
    for (bool* on : {&STraceConfig::m_recordEnable, &STraceConfig::m_saveFileToDisk,
                     &STraceConfig::m_getErrors, &STraceConfig::m_bDoNativeCall})
        *on = true;
    STraceConfig::m_debugInfo = 0;
    STraceConfig::m_fileWindow = 0;
    STraceConfig::m_i32SwapInterval = -1;
    STraceConfig::m_ui32CurrentFrame = 0;
    STraceConfig::m_ui32LastFrame = 0;
    STraceConfig::m_ui32StartFrame = 0;
    STraceConfig::m_ui32EndFrame = 0xFFFFFFFF;
}

void ForgetHosts()
{
    delete SEglHost::s_pInstance;
    SEglHost::s_pInstance = nullptr;
    delete SEs1Host::s_pInstance;
    SEs1Host::s_pInstance = nullptr;
    SEs2Host::s_pInstance.Reset(nullptr);
}

Recorder::Recorder() : m_path(ScratchFile())
{
    KeepFakeHostLoaded();
    ResetSettings();
    Fake().Reset();
    testing::internal::CaptureStdout();
    CTraceRecordManager::TraceOpen(m_path.c_str());
    HostHasEverything();
    testing::internal::GetCapturedStdout();
    CTraceRecordManager::CreateFileStructures();
    CTraceRecordManager::m_u64LastThreadId = get_id();
    Egl::ClearError();
    Es1::ClearError();
    Es2::ClearError();
    ResetSettings();
}

Recorder::~Recorder()
{
    CTraceRecordManager::TraceClose(true);
    CTraceRecordManager::m_currentFileIndex = 0;
    ResetSettings();
    ForgetHosts();
    Fake().Reset();
    std::remove(m_path.c_str());
}

void Recorder::Record()
{
    STraceConfig::m_bDoNativeCall = true;
    STraceConfig::m_ui32StartFrame = 0;
    STraceConfig::m_bRecordData = true;
    STraceConfig::m_writeRenderState = false;  // a test of single calls wants no state ahead of them
}

void Recorder::RecordWithoutData()
{
    Record();
    STraceConfig::m_bRecordData = false;
}

void Recorder::RecordWithHostOff()
{
    Record();
    STraceConfig::m_bDoNativeCall = false;
}

void Recorder::Play()
{
    Record();
    STraceConfig::m_ui32StartFrame = STraceConfig::m_ui32CurrentFrame + 1;
}

Bytes Recorder::Written()
{
    std::ifstream file(m_path, std::ios::binary);
    file.seekg(static_cast<std::streamoff>(m_read));
    Bytes bytes((std::istreambuf_iterator<char>(file)), std::istreambuf_iterator<char>());
    m_read += bytes.size();
    return bytes;
}

void Recorder::HostHasEverything()
{
    for (Function const& function : AllFunctions())
        if (function.kind & kExtension)
            function.setEntry(Fake().Entry(function.library, function.name));
}

void Recorder::HostLacks(std::string const& name)
{
    for (Function const& function : AllFunctions())
        if (function.name == name)
            function.setEntry(nullptr);
}
