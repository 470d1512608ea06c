// What the host says of a config.
#pragma once
#include "support/export.h"
#include "wrappers/argument_records.h"
#include <memory>

namespace Egl
{
// The attributes that the host knows of a config, as (attribute, value) pairs ended by EGL_NONE. The array
// behind the list is a fresh allocation of 67 ints that belongs to the caller.
NEBTRACE_API SEglAttribListR getConfigAttribs(void* config, void* display);

// A config's attributes: those that a snapshot hands in, or the host's.
class CConfigAttribs
{
public:
    explicit CConfigAttribs(void* given = nullptr) : m_list(static_cast<int const*>(given)) {}

    // Asks the host unless the list is known.
    int const* Ask(void* config, void* display)
    {
        if (!m_list)
        {
            m_owned.reset(getConfigAttribs(config, display).m_pAttribs);
            m_list = m_owned.get();
        }
        return m_list;
    }

private:
    int const* m_list;
    std::unique_ptr<int const[]> m_owned;
};
}  // namespace Egl
