#include "wrappers/host_queries.h"
#include "core/config.h"
#include "wrappers/keep_mark.h"

AnyFunction HostFunction(char const* name)
{
    CKeepMark const keep(STraceConfig::m_bEGLUsed);
    return reinterpret_cast<AnyFunction>(EglHost()->eglGetProcAddress(name));
}

GLint Es1::HostInteger(GLenum pname)
{
    GLint value = 0;
    Es1Host()->glGetIntegerv(pname, &value);
    return value;
}

GLint Es2::HostInteger(GLenum pname)
{
    GLint value = 0;
    Es2Host()->glGetIntegerv(pname, &value);
    return value;
}
