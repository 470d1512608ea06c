// What leaves no trace in a picture: labels, markers, waits, counters, and the driver's messages.
#include "player/gl_player.h"

namespace nebtrace::player
{
namespace
{
void Skip(GlPlayer&, Call const&) {}
}  // namespace

std::vector<GlEntry> GlSkippedHandlers()
{
    std::vector<GlEntry> entries;
    for (char const* const name : {"glGetError",
                                   "glGetPointerv",
                                   "glGetVertexAttribPointerv",
                                   "glObjectLabel",
                                   "glObjectPtrLabel",
                                   "glLabelObjectEXT",
                                   "glGetObjectLabel",
                                   "glGetObjectLabelEXT",
                                   "glGetObjectPtrLabel",
                                   "glPushDebugGroup",
                                   "glPopDebugGroup",
                                   "glPushGroupMarkerEXT",
                                   "glPopGroupMarkerEXT",
                                   "glInsertEventMarkerEXT",
                                   "glDebugMessageCallback",
                                   "glDebugMessageControl",
                                   "glDebugMessageInsert",
                                   "glGetDebugMessageLog",
                                   "glFenceSyncAPPLE",
                                   "glDeleteSyncAPPLE",
                                   "glIsSyncAPPLE",
                                   "glClientWaitSyncAPPLE",
                                   "glWaitSyncAPPLE",
                                   "glGetSyncivAPPLE",
                                   "glSetFenceNV",
                                   "glFinishFenceNV",
                                   "glTestFenceNV",
                                   "glGetFenceivNV",
                                   "glIsFenceNV",
                                   "glGenPerfMonitorsAMD",
                                   "glDeletePerfMonitorsAMD",
                                   "glSelectPerfMonitorCountersAMD",
                                   "glBeginPerfMonitorAMD",
                                   "glEndPerfMonitorAMD",
                                   "glGetPerfMonitorCounterDataAMD",
                                   "glGetPerfMonitorCounterInfoAMD"})
        entries.push_back({name, Skip});
    return entries;
}
}  // namespace nebtrace::player
