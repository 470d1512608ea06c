// EGL wrappers: contexts, and what is current.
#include "wrappers/calls.h"
#include "wrappers/egl/config_attribs.h"
#include "wrappers/egl/track.h"

namespace Egl
{

EGLContext _eglCreateContext(EGLDisplay dpy, EGLConfig config, EGLContext share_context,
                             const EGLint* attrib_list, void* replayedContext, void* configAttribs)
{
    CFrame frame(Calls::eglCreateContext, dpy, config, share_context, attrib_list);
    frame.SetDefault(replayedContext);
    frame.CallHost();
    if (frame.HostChecked())
    {
        CConfigAttribs known(configAttribs);
        int const* const attribs = known.Ask(config, dpy);
        if (frame.MayTrackData())
            Track::CreateContext(dpy, config, share_context, attrib_list, attribs, frame.Result());
    }
    if (!frame.RecordsData())
        frame.Record(dpy, config, share_context, attrib_list);
    else if (frame.IsRecording())
    {
        CConfigAttribs recorded;
        frame.Record(dpy, config, share_context, AttribList(attrib_list),
                     AttribList(recorded.Ask(config, dpy)));
    }
    return frame.Result();
}

EGLBoolean _eglDestroyContext(EGLDisplay dpy, EGLContext ctx)
{
    return Trace(Calls::eglDestroyContext, dpy, ctx);
}

EGLBoolean _eglMakeCurrent(EGLDisplay dpy, EGLSurface draw, EGLSurface read, EGLContext ctx)
{
    CFrame frame(Calls::eglMakeCurrent, dpy, draw, read, ctx);
    frame.CallHost();
    if (frame.MayTrackData())
        Track::MakeCurrent(ctx);
    if (frame.IsRecording())
    {
        // On purpose: a context that is not known gets an empty entry by this, the null one too.
        void* const config = Track::ConfigOf(ctx);
        CConfigAttribs attribs;
        frame.Record(dpy, draw, read, ctx, config, Always(AttribList(attribs.Ask(config, dpy))));
    }
    return frame.Result();
}

EGLBoolean _eglQueryContext(EGLDisplay dpy, EGLContext ctx, EGLint attribute, EGLint* value)
{
    return Trace(Calls::eglQueryContext, dpy, ctx, attribute, OutArray(value, 1));
}

EGLContext _eglGetCurrentContext() { return Trace(Calls::eglGetCurrentContext); }

EGLDisplay _eglGetCurrentDisplay() { return Trace(Calls::eglGetCurrentDisplay); }

EGLSurface _eglGetCurrentSurface(EGLint readdraw) { return Trace(Calls::eglGetCurrentSurface, readdraw); }

}  // namespace Egl
