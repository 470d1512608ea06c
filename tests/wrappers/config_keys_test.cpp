// What is told about the keys of the configuration, held against the recorder. Each test runs in a process of
// its own, in which nothing has been set yet.
#include "core/config.h"
#include "core/trace_record_manager.h"
#include "tests/wrappers/scratch_folder.h"
#include <functional>
#include <gtest/gtest.h>
#include <map>

namespace
{

struct Key
{
    std::string group;
    std::string name;
    std::string value;
    std::string initial;
};

std::vector<Key> const& Table()
{
    static std::vector<Key> const table = {
#define CONFIG_KEY(group, name, value, initial, effect) {group, #name, value, initial},
#include "api/config_keys.def"
#undef CONFIG_KEY
    };
    return table;
}

std::string Text(bool value) { return value ? "1" : "0"; }
std::string Text(int value) { return std::to_string(value); }
std::string Text(uint32_t value) { return std::to_string(value); }
std::string Text(CNEBTString const& value) { return value.c_str(); }

// Contents have no value that turns them off.
std::string Contents() { return STraceConfig::m_bRecordData ? "1" : ""; }

// Where each key can be seen.
std::map<std::string, std::function<std::string()>> const& Fields()
{
    using C = STraceConfig;
    static std::map<std::string, std::function<std::string()>> const fields = {
        {"EglLibraryPath", [] { return Text(C::Instance().m_eglLibraryPath); }},
        {"Es1LibraryPath", [] { return Text(C::Instance().m_es1LibraryPath); }},
        {"Es2LibraryPath", [] { return Text(C::Instance().m_es2LibraryPath); }},
        {"Es3LibraryPath", [] { return Text(C::Instance().m_es3LibraryPath); }},
        {"TraceFile", [] { return Text(C::m_traceOutfilePath); }},
        {"StartFrame", [] { return Text(C::m_ui32StartFrame); }},
        {"EndFrame", [] { return Text(C::m_ui32EndFrame); }},
        {"RecordData", Contents},
        {"SaveFrameBuffer", [] { return Text(C::m_saveFrameBuffer); }},
        {"OptimizeRS", [] { return Text(C::m_optimizationRS); }},
        {"FileWindow", [] { return Text(C::m_fileWindow); }},
        {"SaveFileToDisk", [] { return Text(C::m_saveFileToDisk); }},
        {"ExitOnLastFrame", [] { return Text(C::m_exitAfterLastFrame); }},
        {"SwapInterval", [] { return Text(C::m_i32SwapInterval); }},
        {"DebugInfo", [] { return Text(C::m_debugInfo); }},
        // The server's port may be another's, and then the network goes off again.
        {"Network", [] { return Text(C::m_networkInstance != nullptr); }},
        {"NetworkSendData", [] { return Text(C::m_sendOverNetwork); }},
        {"NetworkBufferSize", [] { return Text(C::m_bufferSizeNetwork); }},
        {"NetworkWait", [] { return Text(C::m_bNetworkWait); }},
        {"Profile", [] { return Text(C::m_bProfile); }},
        {"ProcessNameExclude", [] { return Text(C::m_processNameExclude); }},
        {"ProcessNameWrite", [] { return Text(C::m_processNameWrite); }}};
    return fields;
}

std::string ValueOf(Key const& key) { return Fields().at(key.name)(); }

void Read(ScratchFolder& folder, std::string const& text)
{
    folder.Write("nebtrace.cfg", text);
    testing::internal::CaptureStdout();
    STraceConfig::Instance().Read("nebtrace.cfg");
    testing::internal::GetCapturedStdout();
}

// A value of the key's kind that is not the default.
std::string OtherThanDefault(Key const& key)
{
    if (key.value == "switch")
        return key.initial == "1" ? "0" : "1";
    if (key.value == "number")
        return "7";
    EXPECT_TRUE(key.value == "path" || key.value == "text") << key.name;
    return "other";
}

}  // namespace

// A key that the test does not know has no default that anybody looked at.
TEST(ConfigKeys, EveryKeyHasItsField)
{
    EXPECT_EQ(Fields().size(), Table().size());
    for (Key const& key : Table())
        EXPECT_EQ(1u, Fields().count(key.name)) << key.name;
}

// The defaults that are told hold before anything is read, and with a configuration that says nothing.
TEST(ConfigKeys, EachDefaultIsTheRecorders)
{
    for (Key const& key : Table())
        EXPECT_EQ(key.initial, ValueOf(key)) << key.name;
    ScratchFolder folder;
    Read(folder, "# nothing\n");
    for (Key const& key : Table())
        EXPECT_EQ(key.initial, ValueOf(key)) << key.name;
}

// Each key that is told changes what it is said to change.
TEST(ConfigKeys, EachKeyIsTaken)
{
    ScratchFolder folder;
    for (Key const& key : Table())
    {
        std::string const value = OtherThanDefault(key);
        std::string const added = key.name == "ProcessNameExclude" ? key.initial + ";" + value : value;
        bool const needsNetwork = key.group == "network" && key.name != "Network";
        Read(folder, (needsNetwork ? "Network = 1\n" : "") + key.name + " = " + value + "\n");
        EXPECT_EQ(added, ValueOf(key)) << key.name;
        STraceConfig::m_bNetworkControl = false;
    }
}
