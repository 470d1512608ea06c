// The error words of the three APIs.
#include "host/hosts.h"
#include "support/log.h"
#include "wrappers/egl.h"
#include "wrappers/es1.h"
#include "wrappers/es2.h"

namespace Egl
{
unsigned int error = EGL_SUCCESS;

unsigned int getError() { return error; }

void ClearError() { error = EGL_SUCCESS; }

void CheckHostError()
{
    error = static_cast<unsigned int>(EglHost()->eglGetError());
    if (error != EGL_SUCCESS)
        LogMessage("EGL Error: 0x%lx\n", static_cast<unsigned long>(error));
}
}  // namespace Egl

namespace Es1
{
unsigned int error = GL_NO_ERROR;

unsigned int getError() { return error; }

void ClearError() { error = GL_NO_ERROR; }

void CheckHostError()
{
    error = Es1Host()->glGetError();
    if (error != GL_NO_ERROR)
        LogMessage("\n ES1 CheckHostError: ERROR!! \n");
}
}  // namespace Es1

namespace Es2
{
unsigned int error = GL_NO_ERROR;

unsigned int getError() { return error; }

void ClearError() { error = GL_NO_ERROR; }

void CheckHostError()
{
    error = Es2Host()->glGetError();
    if (error != GL_NO_ERROR)
        LogMessage("\n ES2 CheckHostError: ERROR!! %d\n", error);
}
}  // namespace Es2
