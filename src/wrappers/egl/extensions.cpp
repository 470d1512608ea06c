// EGL wrappers: extensions.
#include "wrappers/calls.h"

namespace Egl
{

EGLBoolean _eglSetSwapRectangleANDROID(EGLDisplay dpy, EGLSurface draw, EGLint left, EGLint top, EGLint width,
                                       EGLint height)
{
    return Trace(Calls::eglSetSwapRectangleANDROID, dpy, draw, left, top, width, height);
}

EGLClientBuffer _eglGetRenderBufferANDROID(EGLDisplay dpy, EGLSurface draw)
{
    return Trace(Calls::eglGetRenderBufferANDROID, dpy, draw);
}

EGLBoolean _eglLockSurfaceKHR(EGLDisplay dpy, EGLSurface surface, const EGLint* attrib_list)
{
    return Trace(Calls::eglLockSurfaceKHR, dpy, surface, AttribList(attrib_list));
}

EGLBoolean _eglUnlockSurfaceKHR(EGLDisplay dpy, EGLSurface surface)
{
    return Trace(Calls::eglUnlockSurfaceKHR, dpy, surface);
}

EGLImageKHR _eglCreateImageKHR(EGLDisplay dpy, EGLContext ctx, EGLenum target, EGLClientBuffer buffer,
                               const EGLint* attrib_list)
{
    return Trace(Calls::eglCreateImageKHR, dpy, ctx, target, buffer, AttribList(attrib_list));
}

EGLBoolean _eglDestroyImageKHR(EGLDisplay dpy, EGLImageKHR image)
{
    return Trace(Calls::eglDestroyImageKHR, dpy, image);
}

EGLSyncKHR _eglCreateSyncKHR(EGLDisplay dpy, EGLenum type, const EGLint* attrib_list)
{
    return Trace(Calls::eglCreateSyncKHR, dpy, type, AttribList(attrib_list));
}

EGLBoolean _eglDestroySyncKHR(EGLDisplay dpy, EGLSyncKHR sync)
{
    return Trace(Calls::eglDestroySyncKHR, dpy, sync);
}

EGLint _eglClientWaitSyncKHR(EGLDisplay dpy, EGLSyncKHR sync, EGLint flags, EGLTimeKHR timeout)
{
    return Trace(Calls::eglClientWaitSyncKHR, dpy, sync, flags, Wide(timeout));
}

EGLBoolean _eglSignalSyncKHR(EGLDisplay dpy, EGLSyncKHR sync, EGLenum mode)
{
    return Trace(Calls::eglSignalSyncKHR, dpy, sync, mode);
}

EGLBoolean _eglGetSyncAttribKHR(EGLDisplay dpy, EGLSyncKHR sync, EGLint attribute, EGLint* value)
{
    return Trace(Calls::eglGetSyncAttribKHR, dpy, sync, attribute, OutArray(value, 1));
}

}  // namespace Egl
