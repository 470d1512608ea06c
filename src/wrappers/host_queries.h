// Questions that the wrappers ask the host for themselves, neither recorded nor counted.
#pragma once
#include "api/types.h"

namespace Es1
{
GLint HostInteger(GLenum pname);
}
namespace Es2
{
GLint HostInteger(GLenum pname);
}
