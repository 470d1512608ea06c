// Loader of the real drivers. The only place that calls dlopen, dlsym and dlclose for the host tables.
#pragma once
#include "support/export.h"
#include "support/string.h"

// Opens a library by path, then by "./" and the path; null when neither worked. Failures are logged.
NEBTRACE_API void* OpenLibrary(char const* path);
// The named entry, or null for a null handle or an unknown name.
NEBTRACE_API void* GetLibFunction(void* handle, char const* name);
NEBTRACE_API void CloseLibrary(void* handle);

// Base of the host tables: owns the library's handle. A failure leaves an empty shell, never an exception.
class NEBTRACE_API SHostLib
{
public:
    explicit SHostLib(CNEBTString path);
    virtual ~SHostLib();
    SHostLib(SHostLib const&) = delete;
    SHostLib& operator=(SHostLib const&) = delete;

    // Looks an entry up; a missing one is logged and kept as a failure.
    void* GetFunction(char const* name);
    // Closes the library if it is open.
    void CloseLib();
    bool LoadFailed() const;
    // Unless it is, no core entry may be called: what it points at has gone with the library.
    bool IsOpen() const { return m_pHandle != nullptr; }

protected:
    void* m_pHandle;
    bool m_bLoadFailed;
    bool m_bAllowMissing;  // a missing entry is no failure; nothing sets it
};
