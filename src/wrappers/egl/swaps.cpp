// EGL wrappers: the swap, which is the frame's clock.
#include "wrappers/calls.h"
#include "wrappers/egl/track.h"
#include "wrappers/keep_mark.h"
#include <cstdlib>

namespace
{

// The frame's pixels as they were read before the swap; one buffer, reused from frame to frame.
uint8_t* s_pFramePixels = nullptr;
std::size_t s_framePixelsCapacity = 0;

struct SFrameSize
{
    EGLint width = 0;
    EGLint height = 0;

    uint32_t Bytes() const { return static_cast<uint32_t>(width) * static_cast<uint32_t>(height) * 4; }
};

// Room for rows that a pack alignment of 8 pads, which the record does not count.
bool ReservePixels(SFrameSize size)
{
    uint64_t const row = (static_cast<uint64_t>(size.width) * 4 + 7) / 8 * 8;
    uint64_t const padded = row * static_cast<uint64_t>(size.height);
    if (padded > UINT32_MAX)
        return false;  // more than a record can count
    auto const needed = static_cast<std::size_t>(padded);
    if (needed <= s_framePixelsCapacity && s_pFramePixels)
        return true;
    void* const larger = std::realloc(s_pFramePixels, needed ? needed : 1);
    if (!larger)
        return false;
    s_pFramePixels = static_cast<uint8_t*>(larger);
    s_framePixelsCapacity = needed;
    return true;
}

// Reads the finished frame, before the swap takes it away. Leaves GLES2 unmarked: the application need not
// have used it.
SFrameSize ReadFrame(EGLDisplay display, EGLSurface surface)
{
    SFrameSize size;
    EglHost()->eglQuerySurface(display, surface, EGL_WIDTH, &size.width);
    EglHost()->eglQuerySurface(display, surface, EGL_HEIGHT, &size.height);
    if (size.width < 0 || size.height < 0 || !ReservePixels(size))
        return {};
    CKeepMark const keep(STraceConfig::m_bES2Used);
    Es2Host()->glReadPixels(0, 0, size.width, size.height, GL_RGBA, GL_UNSIGNED_BYTE, s_pFramePixels);
    return size;
}

}  // namespace

namespace Egl
{

EGLBoolean _eglSwapBuffers(EGLDisplay dpy, EGLSurface surface)
{
    CFrame frame(Calls::eglSwapBuffers, dpy, surface);
    SFrameSize size;
    if (frame.SavesFrameBuffer())
        size = ReadFrame(dpy, surface);
    if (STraceConfig::m_i32SwapInterval != -1)
        EglHost()->eglSwapInterval(dpy, STraceConfig::m_i32SwapInterval);
    frame.CallHost();
    frame.Record(dpy, surface, STraceConfig::m_ui32CurrentFrame, size.width, size.height,
                 Always(Bytes(s_pFramePixels, size.Bytes())));
    if (frame.Profiler())
        frame.Profiler()->SendCounters();
    ++STraceConfig::m_ui32CurrentFrame;
    STraceConfig::Instance().DoSwapBuffer();
    return frame.Result();
}

EGLBoolean _eglSwapInterval(EGLDisplay dpy, EGLint interval)
{
    CFrame frame(Calls::eglSwapInterval, dpy, interval);
    frame.CallHost();
    if (frame.MayTrack())
        Track::SwapInterval(dpy, interval);
    frame.Record(dpy, interval);
    return frame.Result();
}

}  // namespace Egl
