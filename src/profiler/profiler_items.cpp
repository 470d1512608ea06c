// The library items, which the performance server sees and changes.
#include "profiler/profiler.h"
#include "support/log.h"
#include "support/string.h"
#include <cstdlib>
#include <cstring>

bool CProfiler::m_ForceViewport = false;
bool CProfiler::m_DisableBlending = false;
bool CProfiler::m_Force2x2Textures = false;
bool CProfiler::m_ForceFlatColourFrag = false;
bool CProfiler::m_DisableStencilTest = false;
bool CProfiler::m_DisableDepthTest = false;
bool CProfiler::m_DisableScissorTest = false;
bool CProfiler::m_DisableDrawCalls = false;
bool CProfiler::m_DisableFlushNFinish = false;
bool CProfiler::m_DisableTextureModifications = false;
bool CProfiler::m_DisableTextureFiltering = false;
bool CProfiler::m_DisableAlphaTest = false;
bool CProfiler::m_DisableFBAccess = false;
int32_t CProfiler::m_CullingModeSelection = eCullAppDefined;

namespace
{

// How an item's value is to be read.
enum EItemType : uint32_t
{
    // What these two mean is the owner's affair; none of ours has them.
    eTypeOpaque1 = 1,
    eTypeOpaque2 = 2,
    eTypeList = 3,  // a text: the selected index, then a line for each choice
    eTypeBool = 4,  // one byte
};

char cullingMode[] = "0\nApp defined\nNone\nBack\nFront";

template <uint32_t size>
constexpr SLibraryItem Switch(char const (&name)[size], bool& value)
{
    return {name, size - 1, eTypeBool, &value, sizeof value};
}

template <uint32_t nameSize, uint32_t textSize>
constexpr SLibraryItem List(char const (&name)[nameSize], char (&text)[textSize])
{
    return {name, nameSize - 1, eTypeList, text, textSize - 1};
}

// Returns whether the item is changed.
bool ChangeItem(SLibraryItem const& item, void const* data, unsigned int size)
{
    if (item.type != eTypeOpaque1 && item.type != eTypeOpaque2 && item.type != eTypeBool)
        return false;
    if (size != item.dataSize || std::memcmp(data, item.pData, size) == 0)
        return false;
    LogMessage("ChangeItem: %s", item.pszName);
    std::memcpy(item.pData, data, size);
    return true;
}

// The number that the text begins with, and whatever else it holds does not count; a text that is empty, or
// whose first line is, selects nothing. It need not be terminated.
bool ReadSelection(char const* text, unsigned int size, long& selection)
{
    if (size == 0 || text[0] == '\0' || text[0] == '\n')
        return false;
    // On purpose: a text without a number is 0.
    selection = std::strtol(CNEBTString(text, size).c_str(), nullptr, 10);
    return true;
}

}  // namespace

char* CProfiler::m_CullingMode = cullingMode;

SLibraryItem CProfiler::m_aLibraryItems[eItemCount] = {
    Switch("NEBTrace.Force zero viewport", m_ForceViewport),
    Switch("NEBTrace.Disable blending", m_DisableBlending),
    Switch("NEBTrace.Force 2x2 textures", m_Force2x2Textures),
    Switch("NEBTrace.Force flat colour frag shader", m_ForceFlatColourFrag),
    Switch("NEBTrace.Disable stencil test", m_DisableStencilTest),
    Switch("NEBTrace.Disable depth test", m_DisableDepthTest),
    Switch("NEBTrace.Disable scissor test", m_DisableScissorTest),
    Switch("NEBTrace.Disable draw calls", m_DisableDrawCalls),
    Switch("NEBTrace.Disable flush and finish", m_DisableFlushNFinish),
    Switch("NEBTrace.Disable texture modifications", m_DisableTextureModifications),
    Switch("NEBTrace.Disable texture filtering", m_DisableTextureFiltering),
    Switch("NEBTrace.Disable discard / alpha test", m_DisableAlphaTest),
    Switch("NEBTrace.Disable frame buffer accesses", m_DisableFBAccess),
    List("NEBTrace.Culling mode", cullingMode),
};

bool CProfiler::IsOn(bool const& item)
{
    unsigned char byte;
    std::memcpy(&byte, &item, sizeof byte);
    return byte != 0;
}

void CProfiler::TakeChanges()
{
    if (!m_pComms)
        return;
    unsigned int index = 0;
    unsigned int size = 0;
    char const* data = nullptr;
    // This moves the link on as well: there is no other place that does so for every call.
    while (nplLibraryDirtyGetFirst(m_pComms, &index, &size, &data))
    {
        long selection = 0;
        if (index < eItemCullingMode)
            ChangeItem(m_aLibraryItems[index], data, size);
        else if (index == eItemCullingMode && ReadSelection(data, size, selection) &&
                 selection >= eCullAppDefined && selection < eCullModeCount)
            m_CullingModeSelection = static_cast<int32_t>(selection);
    }
}
