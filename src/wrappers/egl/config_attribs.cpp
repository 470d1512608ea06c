#include "wrappers/egl/config_attribs.h"
#include "api/types.h"
#include "host/hosts.h"

namespace
{

constexpr unsigned int kListInts = 67;

// The attributes asked for: all of EGL 1.4 but EGL_CONFIG_ID, in the order of their values.
constexpr bool IsAsked(EGLint attribute) { return attribute != EGL_CONFIG_ID && attribute != EGL_NONE; }
constexpr EGLint kFirst = EGL_BUFFER_SIZE;
constexpr EGLint kLastInRow = EGL_RENDERABLE_TYPE;
constexpr EGLint kLast = EGL_CONFORMANT;
static_assert(kFirst == 0x3020 && kLastInRow == 0x3040 && kLast == 0x3042, "one gap, at 0x3041");

}  // namespace

SEglAttribListR Egl::getConfigAttribs(void* config, void* display)
{
    int* const list = new int[kListInts]();
    unsigned int used = 0;
    // The host writes into the value's slot; the next attribute reuses the slots of one that it refuses.
    auto const ask = [&](EGLint attribute) {
        list[used] = attribute;
        if (EglHost()->eglGetConfigAttrib(display, config, attribute, &list[used + 1]) == EGL_TRUE)
            used += 2;
    };
    for (EGLint attribute = kFirst; attribute <= kLastInRow; ++attribute)
        if (IsAsked(attribute))
            ask(attribute);
    ask(kLast);
    list[used] = EGL_NONE;
    return SEglAttribListR(list);
}
