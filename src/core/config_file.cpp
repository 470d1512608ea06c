// The configuration file: its keys, and how lines are read.
#include "core/config.h"
#include "core/trace_record_manager.h"
#include "support/log.h"
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <unistd.h>

namespace
{

constexpr char kSystemConfig[] = "/etc/nebtrace.cfg";
constexpr char kAlwaysExcluded[] = "neb.tools.NEBTraceApp";

// True unless the value starts with "0".
bool AsBool(CNEBTString const& value) { return value.c_str()[0] != '0'; }

int AsNumber(CNEBTString const& value) { return std::atoi(value.c_str()); }

void SetEs3LibraryPath(STraceConfig& config, CNEBTString const& value)
{
    config.m_es3LibraryPath = value;
    if (value.length() > 2)
        config.m_es2LibraryPath = value;
}

void SetRecordData(STraceConfig&, CNEBTString const& value)
{
    CTraceRecordManager::m_FileInit->m_bRecordData = AsBool(value);
    // On purpose: the key's mere presence turns contents on; its value goes only into the file header.
    STraceConfig::m_bRecordData = true;
}

void SetSaveFrameBuffer(STraceConfig&, CNEBTString const& value)
{
    STraceConfig::m_saveFrameBuffer = AsBool(value);
    CTraceRecordManager::m_FileInit->m_bFrameBuffer = AsBool(value);
}

void SetNetwork(STraceConfig&, CNEBTString const& value)
{
    STraceConfig::m_bNetworkControl = AsBool(value);
    if (!STraceConfig::m_bNetworkControl)
        return;
    STraceConfig::m_networkInstance = CNetworkServer::Instance();
    if (!STraceConfig::m_optimizationRSWasSet)
        STraceConfig::m_optimizationRS = true;
}

void SetNetworkBufferSize(STraceConfig&, CNEBTString const& value)
{
    if (!STraceConfig::m_bNetworkControl)
        return;
    STraceConfig::m_bufferSizeNetwork = AsNumber(value);
    CNetworkServer::Instance()->SetBufferSize(STraceConfig::m_bufferSizeNetwork);
}

void SetNetworkSendData(STraceConfig&, CNEBTString const& value)
{
    if (STraceConfig::m_bNetworkControl)
        STraceConfig::m_sendOverNetwork = AsBool(value);
}

void SetProcessNameExclude(STraceConfig&, CNEBTString const& value)
{
    STraceConfig::m_processNameExclude += ";";
    STraceConfig::m_processNameExclude += value;
}

void SetOptimizeRS(STraceConfig&, CNEBTString const& value)
{
    STraceConfig::m_optimizationRS = AsBool(value);
    STraceConfig::m_optimizationRSWasSet = true;
}

template <bool* setting>
void SetFlag(STraceConfig&, CNEBTString const& value)
{
    *setting = AsBool(value);
}

template <typename T, T* setting>
void SetNumber(STraceConfig&, CNEBTString const& value)
{
    *setting = static_cast<T>(AsNumber(value));
}

template <CNEBTString* setting>
void SetText(STraceConfig&, CNEBTString const& value)
{
    *setting = value;
}

template <CNEBTString STraceConfig::*path>
void SetPath(STraceConfig& config, CNEBTString const& value)
{
    config.*path = value;
}

struct SKey
{
    char const* name;
    void (*set)(STraceConfig& config, CNEBTString const& value);
};

// Those that do no more than store their value.
constexpr auto SetEglLibraryPath = SetPath<&STraceConfig::m_eglLibraryPath>;
constexpr auto SetEs1LibraryPath = SetPath<&STraceConfig::m_es1LibraryPath>;
constexpr auto SetEs2LibraryPath = SetPath<&STraceConfig::m_es2LibraryPath>;
constexpr auto SetTraceFile = SetText<&STraceConfig::m_traceOutfilePath>;
constexpr auto SetStartFrame = SetNumber<uint32_t, &STraceConfig::m_ui32StartFrame>;
constexpr auto SetEndFrame = SetNumber<uint32_t, &STraceConfig::m_ui32EndFrame>;
constexpr auto SetNetworkWait = SetFlag<&STraceConfig::m_bNetworkWait>;
constexpr auto SetSaveFileToDisk = SetFlag<&STraceConfig::m_saveFileToDisk>;
constexpr auto SetProcessNameWrite = SetText<&STraceConfig::m_processNameWrite>;
constexpr auto SetExitOnLastFrame = SetFlag<&STraceConfig::m_exitAfterLastFrame>;
constexpr auto SetDebugInfo = SetNumber<int, &STraceConfig::m_debugInfo>;
constexpr auto SetSwapInterval = SetNumber<int, &STraceConfig::m_i32SwapInterval>;
constexpr auto SetProfile = SetFlag<&STraceConfig::m_bProfile>;
constexpr auto SetFileWindow = SetNumber<int, &STraceConfig::m_fileWindow>;

constexpr SKey kKeys[] = {
#define CONFIG_KEY(group, name, value, initial, effect) {#name, Set##name},
#include "api/config_keys.def"
#undef CONFIG_KEY
};

void StripBlanksAndNewlinesFromEndOf(CNEBTString& text)
{
    while (!text.empty() && (text[text.length() - 1] == ' ' || text[text.length() - 1] == '\n'))
        text.erase(text.length() - 1, 1);
}

CNEBTString Stripped(CNEBTString const& text)
{
    CNEBTString stripped = NEBTStringStripWhiteSpaceFromStartOf(text);
    StripBlanksAndNewlinesFromEndOf(stripped);
    return stripped;
}

void ReadSetting(STraceConfig& config, CNEBTString const& line, unsigned int equals)
{
    CNEBTString const key = Stripped(line.substr(0, equals));
    CNEBTString const value = Stripped(line.substr(equals + 1));
    for (SKey const& known : kKeys)
        if (key == known.name)
            known.set(config, value);
}

void ReadLine(STraceConfig& config, char const* text)
{
    CNEBTString const line = NEBTStringStripWhiteSpaceFromEndOf(NEBTStringStripWhiteSpaceFromStartOf(text));
    if (line.empty() || line[0] == '\'' || line[0] == '#' || line[0] == '[')
        return;  // comments; and section headers, which have no effect: keys are global
    unsigned int const equals = line.find('=');
    if (equals != CNEBTString::npos)
        ReadSetting(config, line, equals);
}

void ReadLines(STraceConfig& config, FILE* file)
{
    char buffer[500] = {};
    while (std::fgets(buffer, sizeof buffer, file))
    {
        ReadLine(config, buffer);
        std::memset(buffer, 0, sizeof buffer);
    }
}

void ReadWorkingDirectory(char (&directory)[256])
{
    if (!getcwd(directory, sizeof directory))
        directory[0] = 0;
    directory[sizeof directory - 1] = 0;
}

// The named file in the working directory, else the system's; without either the process ends here.
FILE* OpenConfig(char const* name)
{
    FILE* file = std::fopen(name, "rb");
    char directory[256];
    ReadWorkingDirectory(directory);
    STraceConfig::m_processNameExclude = kAlwaysExcluded;
    LogMessage("The current working directory is %s", directory);
    if (file)
    {
        LogMessage("Config file found: %s/%s\n", directory, name);
        return file;
    }
    LogWarning("Config file not found: %s/%s\n", directory, name);
    file = std::fopen(kSystemConfig, "rb");
    if (!file)
    {
        LogWarning("Config file not found: %s\n", kSystemConfig);
        LogWarning("Recording Aborted.Exit");
        std::exit(-1);
    }
    LogMessage("Config file found: %s", kSystemConfig);
    return file;
}

}  // namespace

void STraceConfig::Read(char const* name)
{
    m_bDoNativeCall = true;
    m_recordEnable = false;
    FILE* const file = OpenConfig(name);
    m_recordEnable = true;
    CTraceRecordManager::CreateFileStructures();
    ReadLines(*this, file);
    std::fclose(file);

    LogMessage(m_bNetworkControl ? "NetworkControl(I): Enabled" : "NetworkControl(I): Disabled");
    LogMessage("Config File HostEglLibPath: %s", m_eglLibraryPath.c_str());
    LogMessage("Config File HostEs1LibPath: %s", m_es1LibraryPath.c_str());
    LogMessage("Config File HostEs2LibPath: %s", m_es2LibraryPath.c_str());
    LogMessage("Config File HostEs3LibPath: %s", m_es3LibraryPath.c_str());
    if (m_bNetworkControl && m_recordEnable && !m_networkInstance->InitializeServer())
    {
        m_bNetworkControl = false;
        m_recordEnable = false;
        LogMessage("InitServer has failed. Network option no available. Record disabed.");
    }
    if (m_bProfile && m_recordEnable)
    {
        m_recordEnable = false;
        m_bRecordData = false;
        m_saveFrameBuffer = false;
        LogMessage("Profiling is enabled, disabling recording.");
    }
}

bool STraceConfig::Write(char const* name)
{
    FILE* const file = std::fopen(name, "w+b");
    LogMessage("Writing to File \n");
    if (!file)
        return false;
    std::fprintf(file, "[host]\nEglLibraryPath = %s\nEs1LibraryPath = %s\nEs2LibraryPath = %s\n\n",
                 m_eglLibraryPath.c_str(), m_es1LibraryPath.c_str(), m_es2LibraryPath.c_str());
    std::fprintf(file, "[record]\nTraceFile = %s\nRecordData = 0\nStartFrame = 0\nEndFrame = 1\n\n",
                 m_traceOutfilePath.c_str());
    std::fclose(file);
    LogMessage("Writing to file complete, please check host library paths.\n");
    return true;
}
