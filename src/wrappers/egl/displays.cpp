// EGL wrappers: displays, configs, and the API bound to a thread.
#include "wrappers/calls.h"
#include "wrappers/control_code.h"
#include "wrappers/egl/track.h"

namespace Egl
{

EGLDisplay _eglGetDisplay(intptr_t display_id, void* replayedDisplay)
{
    CFrame frame(Calls::eglGetDisplay, display_id);
    frame.SetDefault(replayedDisplay);
    frame.CallHost();
    if (frame.MayTrack())
        Track::GetDisplay(frame.Result(), display_id);
    frame.Record(display_id);
    return frame.Result();
}

EGLBoolean _eglInitialize(EGLDisplay dpy, EGLint* major, EGLint* minor)
{
    CFrame frame(Calls::eglInitialize, dpy, major, minor);
    frame.CallHost();
    if (frame.MayTrackData())
        Track::Initialize(dpy);
    // On purpose: not gated.
    frame.Record(dpy, InArray(major, 1u), InArray(minor, 1u));
    return frame.Result();
}

EGLBoolean _eglTerminate(EGLDisplay dpy) { return Trace(Calls::eglTerminate, dpy); }

const char* _eglQueryString(EGLDisplay dpy, EGLint name) { return Trace(Calls::eglQueryString, dpy, name); }

EGLBoolean _eglGetConfigs(EGLDisplay dpy, EGLConfig* configs, EGLint config_size, EGLint* num_config)
{
    return Trace(Calls::eglGetConfigs, dpy, OutArrayBehind(configs, num_config, config_size), config_size,
                 OutArray(num_config, 1));
}

EGLBoolean _eglChooseConfig(EGLDisplay dpy, const EGLint* attrib_list, EGLConfig* configs, EGLint config_size,
                            EGLint* num_config)
{
    // On purpose: not gated. What stands behind num_config after a failure is the caller's, and is believed
    // only up to the room that it gave.
    return Trace(Calls::eglChooseConfig, dpy, AttribList(attrib_list),
                 InArrayBehind(configs, num_config, config_size), config_size, InArray(num_config, 1u));
}

EGLBoolean _eglGetConfigAttrib(EGLDisplay dpy, EGLConfig config, EGLint attribute, EGLint* value)
{
    return Trace(Calls::eglGetConfigAttrib, dpy, config, attribute, OutArray(value, 1));
}

EGLBoolean _eglBindAPI(EGLenum api)
{
    if (api == kPreventSavingCode)
    {
        STraceConfig::PreventSaving();
        return EGL_TRUE;
    }
    return Trace(Calls::eglBindAPI, api);
}

EGLenum _eglQueryAPI() { return Trace(Calls::eglQueryAPI); }

EGLBoolean _eglReleaseThread() { return Trace(Calls::eglReleaseThread); }

EGLBoolean _eglWaitClient() { return Trace(Calls::eglWaitClient); }

EGLBoolean _eglWaitGL() { return Trace(Calls::eglWaitGL); }

EGLBoolean _eglWaitNative(EGLint engine) { return Trace(Calls::eglWaitNative, engine); }

}  // namespace Egl
