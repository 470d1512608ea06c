// The error words of the three APIs.
#include "host/hosts.h"
#include "support/log.h"
#include "wrappers/egl.h"
#include "wrappers/es1.h"
#include "wrappers/es2.h"

namespace
{

// Threads that call at once have one word between them: it stays in the caches of all while it does not
// change.
void Set(unsigned int& word, unsigned int value)
{
    if (word != value)
        word = value;
}

}  // namespace

namespace Egl
{
unsigned int error = EGL_SUCCESS;

unsigned int getError() { return error; }

void ClearError() { Set(error, EGL_SUCCESS); }

void CheckHostError()
{
    Set(error, static_cast<unsigned int>(EglHost()->eglGetError()));
    if (error != EGL_SUCCESS)
        LogMessage("EGL Error: 0x%lx\n", static_cast<unsigned long>(error));
}
}  // namespace Egl

namespace Es1
{
unsigned int error = GL_NO_ERROR;

unsigned int getError() { return error; }

void ClearError() { Set(error, GL_NO_ERROR); }

void CheckHostError()
{
    Set(error, Es1Host()->glGetError());
    if (error != GL_NO_ERROR)
        LogMessage("\n ES1 CheckHostError: ERROR!! \n");
}
}  // namespace Es1

namespace Es2
{
unsigned int error = GL_NO_ERROR;

unsigned int getError() { return error; }

void ClearError() { Set(error, GL_NO_ERROR); }

void CheckHostError()
{
    Set(error, Es2Host()->glGetError());
    if (error != GL_NO_ERROR)
        LogMessage("\n ES2 CheckHostError: ERROR!! %d\n", error);
}
}  // namespace Es2
