// GLES2 wrappers: performance monitors.
#include "wrappers/calls.h"
#include <algorithm>

namespace Es2
{

void _glGetPerfMonitorGroupsAMD(GLint* numGroups, GLsizei groupsSize, GLuint* groups)
{
    CFrame frame(Calls::glGetPerfMonitorGroupsAMD, numGroups, groupsSize, groups);
    frame.CallHost();
    GLint available = 0;
    if (frame.RecordsOutput())
        Es2Host()->glGetPerfMonitorGroupsAMD(&available, 0, nullptr);
    frame.Record(OutArray(numGroups, 1), groupsSize,
                 OutArray(groups, CountOf(std::min(available, groupsSize))));
}

void _glGetPerfMonitorCountersAMD(GLuint group, GLint* numCounters, GLint* maxActiveCounters,
                                  GLsizei counterSize, GLuint* counters)
{
    CFrame frame(Calls::glGetPerfMonitorCountersAMD, group, numCounters, maxActiveCounters, counterSize,
                 counters);
    frame.CallHost();
    GLint available = 0;
    if (frame.RecordsOutput())
        Es2Host()->glGetPerfMonitorCountersAMD(group, &available, nullptr, 0, nullptr);
    frame.Record(group, OutArray(numCounters, 1), OutArray(maxActiveCounters, 1), counterSize,
                 OutArray(counters, CountOf(std::min(available, counterSize))));
}

void _glGetPerfMonitorGroupStringAMD(GLuint group, GLsizei bufSize, GLsizei* length, GLchar* groupString)
{
    Trace(Calls::glGetPerfMonitorGroupStringAMD, group, bufSize, OutArray(length, 1),
          OutText(groupString, bufSize));
}

void _glGetPerfMonitorCounterStringAMD(GLuint group, GLuint counter, GLsizei bufSize, GLsizei* length,
                                       GLchar* counterString)
{
    Trace(Calls::glGetPerfMonitorCounterStringAMD, group, counter, bufSize, OutArray(length, 1),
          OutText(counterString, bufSize));
}

void _glGetPerfMonitorCounterInfoAMD(GLuint group, GLuint counter, GLenum pname, void* data)
{
    Trace(Calls::glGetPerfMonitorCounterInfoAMD, group, counter, pname, data);
}

void _glGenPerfMonitorsAMD(GLsizei n, GLuint* monitors)
{
    Trace(Calls::glGenPerfMonitorsAMD, n, InArray(monitors, n));
}

void _glDeletePerfMonitorsAMD(GLsizei n, GLuint* monitors)
{
    Trace(Calls::glDeletePerfMonitorsAMD, n, InArray(monitors, n));
}

void _glSelectPerfMonitorCountersAMD(GLuint monitor, GLboolean enable, GLuint group, GLint numCounters,
                                     GLuint* counterList)
{
    Trace(Calls::glSelectPerfMonitorCountersAMD, monitor, enable, group, numCounters,
          InArray(counterList, numCounters));
}

void _glBeginPerfMonitorAMD(GLuint monitor) { Trace(Calls::glBeginPerfMonitorAMD, monitor); }

void _glEndPerfMonitorAMD(GLuint monitor) { Trace(Calls::glEndPerfMonitorAMD, monitor); }

void _glGetPerfMonitorCounterDataAMD(GLuint monitor, GLenum pname, GLsizei dataSize, GLuint* data,
                                     GLint* bytesWritten)
{
    Trace(Calls::glGetPerfMonitorCounterDataAMD, monitor, pname, dataSize, data, bytesWritten);
}

}  // namespace Es2
