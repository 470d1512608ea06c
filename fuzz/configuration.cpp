// The configuration file.
#include "core/config.h"
#include "core/trace_record_manager.h"
#include "fuzz/memory_file.h"

// The server that "Network" starts finds no port.
extern "C" int __wrap_bind(int /*socket*/, void const* /*address*/, unsigned /*size*/) { return -1; }

namespace
{
STraceConfig& Settings()
{
    static STraceConfig settings;
    STraceConfig::m_bNetworkControl = false;
    STraceConfig::m_optimizationRSWasSet = false;
    STraceConfig::m_bProfile = false;
    STraceConfig::m_bRecordData = false;
    return settings;
}

void RequireTexts(STraceConfig const& settings)
{
    CNEBTString const* const texts[] = {&settings.m_eglLibraryPath,        &settings.m_es1LibraryPath,
                                        &settings.m_es2LibraryPath,        &settings.m_es3LibraryPath,
                                        &STraceConfig::m_traceOutfilePath, &STraceConfig::m_processNameWrite};
    for (CNEBTString const* const text : texts)
    {
        fuzz::Require(text->length() < 500, "a value is no longer than a line");
        fuzz::Require(text->empty() || text->c_str()[text->length() - 1] != '\n', "no value ends a line");
    }
}
}  // namespace

int LLVMFuzzerTestOneInput(uint8_t const* data, size_t size)
{
    static fuzz::MemoryFile const file;
    file.Hold(data, size);
    STraceConfig& settings = Settings();
    settings.Read(file.Path().c_str());
    RequireTexts(settings);
    fuzz::Require(!STraceConfig::m_bProfile || !STraceConfig::m_recordEnable, "profiling or recording");
    return 0;
}
