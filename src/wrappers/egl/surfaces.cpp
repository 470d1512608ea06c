// EGL wrappers: surfaces.
#include "wrappers/calls.h"
#include "wrappers/egl/config_attribs.h"
#include "wrappers/egl/track.h"

namespace Egl
{

EGLSurface _eglCreateWindowSurface(EGLDisplay dpy, EGLConfig config, void* win, const EGLint* attrib_list,
                                   void* replayedSurface, void* configAttribs, int width, int height)
{
    CFrame frame(Calls::eglCreateWindowSurface, dpy, config, win, attrib_list);
    frame.SetDefault(replayedSurface);
    frame.CallHost();
    CConfigAttribs known(configAttribs);
    if (frame.HostChecked())
        known.Ask(config, dpy);
    if (frame.Succeeded() && width == 0 && height == 0)
    {
        // The application's own call: only the host knows the window's size.
        EglHost()->eglQuerySurface(dpy, frame.Result(), EGL_WIDTH, &width);
        EglHost()->eglQuerySurface(dpy, frame.Result(), EGL_HEIGHT, &height);
    }
    if (frame.MayTrackData())
        Track::CreateWindowSurface(
            {frame.Result(), dpy, config, win, attrib_list, known.Ask(config, dpy), width, height});
    if (!frame.RecordsData())
        frame.Record(dpy, config, win, attrib_list);
    else if (frame.IsRecording())
    {
        CConfigAttribs recorded;
        frame.Record(dpy, config, win, width, height, AttribList(attrib_list),
                     AttribList(known.Ask(config, dpy)), config, AttribList(recorded.Ask(config, dpy)));
    }
    return frame.Result();
}

EGLSurface _eglCreatePbufferSurface(EGLDisplay dpy, EGLConfig config, const EGLint* attrib_list,
                                    void* replayedSurface)
{
    CFrame frame(Calls::eglCreatePbufferSurface, dpy, config, attrib_list);
    frame.SetDefault(replayedSurface);
    frame.CallHost();
    if (!frame.RecordsData())
        frame.Record(dpy, config, attrib_list);
    else if (frame.IsRecording())
    {
        CConfigAttribs attribs;
        frame.Record(dpy, config, AttribList(attrib_list), config, AttribList(attribs.Ask(config, dpy)));
    }
    return frame.Result();
}

EGLSurface _eglCreatePixmapSurface(EGLDisplay dpy, EGLConfig config, void* pixmap, const EGLint* attrib_list,
                                   void* replayedSurface)
{
    CFrame frame(Calls::eglCreatePixmapSurface, dpy, config, pixmap, attrib_list);
    frame.SetDefault(replayedSurface);
    frame.CallHost();
    if (!frame.RecordsData())
        frame.Record(dpy, config, pixmap, attrib_list);
    else if (frame.IsRecording())
    {
        CConfigAttribs attribs;
        uint32_t const nothing = 0;
        frame.Record(dpy, config, pixmap, nothing, AttribList(attrib_list),
                     AttribList(attribs.Ask(config, dpy)));
    }
    return frame.Result();
}

EGLSurface _eglCreatePbufferFromClientBuffer(EGLDisplay dpy, EGLenum buftype, EGLClientBuffer buffer,
                                             EGLConfig config, const EGLint* attrib_list)
{
    CFrame frame(Calls::eglCreatePbufferFromClientBuffer, dpy, buftype, buffer, config, attrib_list);
    frame.CallHost();
    if (!frame.RecordsData())
        frame.Record(dpy, buftype, buffer, config, attrib_list);
    else if (frame.IsRecording())
    {
        CConfigAttribs attribs;
        frame.Record(dpy, buftype, buffer, config, AttribList(attrib_list),
                     AttribList(attribs.Ask(config, dpy)));
    }
    return frame.Result();
}

EGLBoolean _eglDestroySurface(EGLDisplay dpy, EGLSurface surface)
{
    CFrame frame(Calls::eglDestroySurface, dpy, surface);
    frame.CallHost();
    if (frame.MayTrackData())
        Track::DestroySurface(surface);
    frame.Record(dpy, surface);
    return frame.Result();
}

EGLBoolean _eglQuerySurface(EGLDisplay dpy, EGLSurface surface, EGLint attribute, EGLint* value)
{
    return Trace(Calls::eglQuerySurface, dpy, surface, attribute, OutArray(value, 1));
}

EGLBoolean _eglSurfaceAttrib(EGLDisplay dpy, EGLSurface surface, EGLint attribute, EGLint value)
{
    return Trace(Calls::eglSurfaceAttrib, dpy, surface, attribute, value);
}

EGLBoolean _eglBindTexImage(EGLDisplay dpy, EGLSurface surface, EGLint buffer)
{
    return Trace(Calls::eglBindTexImage, dpy, surface, buffer);
}

EGLBoolean _eglReleaseTexImage(EGLDisplay dpy, EGLSurface surface, EGLint buffer)
{
    return Trace(Calls::eglReleaseTexImage, dpy, surface, buffer);
}

EGLBoolean _eglCopyBuffers(EGLDisplay dpy, EGLSurface surface, void* target)
{
    return Trace(Calls::eglCopyBuffers, dpy, surface, target);
}

}  // namespace Egl
