#include "host/host_lib.h"
#include "support/log.h"
#include <dlfcn.h>

static void* OpenOrLog(char const* path)
{
    void* const handle = dlopen(path, RTLD_LAZY | RTLD_GLOBAL);
    if (handle)
        return handle;
    if (char const* const text = dlerror())
        LogError("dlopen failed with error: %s => %s", text, path);
    return nullptr;
}

void* OpenLibrary(char const* path)
{
    if (void* const handle = OpenOrLog(path))
        return handle;
    CNEBTString const localPath = CNEBTString("./") + path;
    void* const handle = OpenOrLog(localPath.c_str());
    if (handle)
        LogMessage("dlopen loaded (MOD PATH) %s", localPath.c_str());
    return handle;
}

void* GetLibFunction(void* handle, char const* name) { return handle ? dlsym(handle, name) : nullptr; }

void CloseLibrary(void* handle) { dlclose(handle); }

SHostLib::SHostLib(CNEBTString path) : m_pHandle(nullptr), m_bLoadFailed(false), m_bAllowMissing(false)
{
    LogMessage("Loading Host library.... %s", path.c_str());
    m_pHandle = OpenLibrary(path.c_str());
    if (!m_pHandle)
        m_pHandle = OpenLibrary(path.substr(0, path.length() - 1).c_str());
    if (m_pHandle)
    {
        LogMessage("Host Library Loaded: %s", path.c_str());
        return;
    }
    LogMessage("RECORD. Could not load Host library.... %s Please check library paths in nebtrace.cfg",
               path.c_str());
    m_bLoadFailed = true;
}

SHostLib::~SHostLib() { CloseLib(); }

void* SHostLib::GetFunction(char const* name)
{
    void* const function = GetLibFunction(m_pHandle, name);
    if (!function && !m_bAllowMissing)
    {
        m_bLoadFailed = true;
        LogMessage("Error loading library %s", name);
    }
    return function;
}

bool SHostLib::LoadFailed() const { return m_bLoadFailed; }

void SHostLib::CloseLib()
{
    if (m_pHandle)
        CloseLibrary(m_pHandle);
    m_pHandle = nullptr;
}
