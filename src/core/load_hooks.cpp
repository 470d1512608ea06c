// What happens when the library is loaded and unloaded. Kept apart from everything else, so that tests can
// link the library's code without starting a recorder.
#include "core/init_order.h"
#include "core/trace_block.h"
#include "core/trace_record_manager.h"
#include <cstdlib>

namespace
{

// Set in the environment of a process that loads the library only to look at it, whatever the value.
constexpr char kQueryOnly[] = "NEBTRACE_INSTALLER_HOST_QUERY_WD48LZ";

// An object, not a pair of constructor and destructor functions: its place in the order of static
// construction is then given, and at exit it goes ahead of everything that it uses.
struct SLoadHooks
{
    SLoadHooks()
    {
        if (std::getenv(kQueryOnly))
            return;
        CreateThreadBlockKey();
        WatchForks();
        CTraceRecordManager::Initialize();
    }
    ~SLoadHooks()
    {
        if (std::getenv(kQueryOnly))
            return;
        DeleteThreadBlockKey();
        CTraceRecordManager::TraceClose(true);
    }
};

NEBTRACE_INIT_HOOK SLoadHooks s_loadHooks;

}  // namespace
