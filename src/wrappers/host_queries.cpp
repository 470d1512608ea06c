#include "wrappers/host_queries.h"
#include "host/hosts.h"

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
