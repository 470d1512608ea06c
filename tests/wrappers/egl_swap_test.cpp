// The swap, which is the frame's clock, and EGL's own ways with errors and look-ups.
#include "tests/wrappers/recorder.h"

class EglSwap : public Recorder
{
protected:
    static void* Handle(uintptr_t value) { return reinterpret_cast<void*>(value); }

    static void SurfaceIs(int width, int height)
    {
        Fake().On("eglQuerySurface", [=](Call const& call) {
            *call.Pointer<int>(3) = call.Argument<int>(2) == EGL_WIDTH ? width : height;
        });
    }
    // The host's pixels: each byte the low byte of its place.
    static void HostReadsPixels(size_t bytes)
    {
        Fake().On("glReadPixels", [=](Call const& call) {
            for (size_t i = 0; i < bytes; ++i)
                call.Pointer<uint8_t>(6)[i] = static_cast<uint8_t>(i);
        });
    }
    static Bytes Pixels(size_t bytes)
    {
        Bytes pixels(bytes);
        for (size_t i = 0; i < bytes; ++i)
            pixels[i] = static_cast<uint8_t>(i);
        return pixels;
    }
    // Error word, result, display, surface, frame, width, height, pointer, size: behind the record's head.
    static size_t const kPointerAt = 6 + 7 * 4;
    static Bytes WithoutPointer(Bytes record)
    {
        record.erase(record.begin() + kPointerAt, record.begin() + kPointerAt + 4);
        return record;
    }
};

// Without saved frames the picture's size is 0 and there are no pixels.
TEST_F(EglSwap, AFrameIsNotSavedUnlessAsked)
{
    Record();
    Fake().Forget();
    Egl::_eglSwapBuffers(Handle(3), Handle(4));
    EXPECT_EQ(WithoutPointer(Expected(1022, U32(0x3000), U32(1), U32(3), U32(4), U32(0), U32(0), U32(0),
                                      U32(0), U32(0))),
              WithoutPointer(Written()));
    EXPECT_EQ((std::vector<std::string>{"eglSwapBuffers", "eglGetError"}), Fake().Names());
}

// A saved frame is read ahead of the swap and written behind the number of the frame that ends.
TEST_F(EglSwap, ASavedFrameStandsInTheRecord)
{
    Record();
    STraceConfig::m_saveFrameBuffer = true;
    STraceConfig::m_ui32CurrentFrame = 6;
    SurfaceIs(3, 2);
    HostReadsPixels(24);
    Fake().Forget();
    Egl::_eglSwapBuffers(Handle(3), Handle(4));
    EXPECT_EQ(WithoutPointer(Expected(1022, U32(0x3000), U32(1), U32(3), U32(4), U32(6), U32(3), U32(2),
                                      U32(0), U32(24), Pixels(24))),
              WithoutPointer(Written()));
    EXPECT_EQ((std::vector<std::string>{"eglQuerySurface", "eglQuerySurface", "glReadPixels",
                                        "eglSwapBuffers", "eglGetError"}),
              Fake().Names());
    Call const read = Fake().Calls("glReadPixels").front();
    EXPECT_EQ("es2", read.api);
    EXPECT_EQ(3, read.Argument<int>(2));
    EXPECT_EQ(2, read.Argument<int>(3));
    EXPECT_EQ(0x1908u, read.Argument<GLenum>(4));
    EXPECT_EQ(0x1401u, read.Argument<GLenum>(5));
}

// The pixels are recorded without contents as well: the swap has one form.
TEST_F(EglSwap, ASavedFrameStandsInTheShortFormToo)
{
    RecordWithoutData();
    STraceConfig::m_saveFrameBuffer = true;
    SurfaceIs(1, 1);
    HostReadsPixels(4);
    Egl::_eglSwapBuffers(Handle(3), Handle(4));
    EXPECT_EQ(WithoutPointer(Expected(1022, U32(0x3000), U32(1), U32(3), U32(4), U32(0), U32(1), U32(1),
                                      U32(0), U32(4), Pixels(4))),
              WithoutPointer(Written()));
}

// A first frame of 640 by 480 is 1228800 bytes; a later, larger one is read and recorded at its full size.
TEST_F(EglSwap, ALargerSurfaceIsRecordedWhole)
{
    Record();
    STraceConfig::m_saveFrameBuffer = true;
    SurfaceIs(640, 480);
    HostReadsPixels(1228800);
    Egl::_eglSwapBuffers(Handle(3), Handle(4));
    EXPECT_EQ(kPointerAt + 8 + 1228800, Written().size());
    SurfaceIs(800, 600);
    HostReadsPixels(1920000);
    Egl::_eglSwapBuffers(Handle(3), Handle(4));
    Bytes const record = Written();
    ASSERT_EQ(kPointerAt + 8 + 1920000, record.size());
    EXPECT_EQ(Pixels(1920000), Bytes(record.begin() + kPointerAt + 8, record.end()));
}

// With saving off again the frame is empty, although the buffer of an earlier one is still there.
TEST_F(EglSwap, AnEarlierFramesBufferAddsNoPixels)
{
    Record();
    STraceConfig::m_saveFrameBuffer = true;
    SurfaceIs(2, 2);
    Egl::_eglSwapBuffers(Handle(3), Handle(4));
    Written();
    STraceConfig::m_saveFrameBuffer = false;
    Egl::_eglSwapBuffers(Handle(3), Handle(4));
    EXPECT_EQ(WithoutPointer(Expected(1022, U32(0x3000), U32(1), U32(3), U32(4), U32(1), U32(0), U32(0),
                                      U32(0), U32(0))),
              WithoutPointer(Written()));
}

// The reading back is not the application's use of GLES2.
TEST_F(EglSwap, ReadingBackLeavesNoMark)
{
    Play();
    STraceConfig::m_saveFrameBuffer = true;
    SurfaceIs(1, 1);
    Egl::_eglSwapBuffers(Handle(3), Handle(4));
    EXPECT_FALSE(STraceConfig::m_bES2Used);
    EXPECT_EQ(1u, HostCalls("glReadPixels"));
}

// An interval of -1 leaves the application's alone; 0 does not. It is set again ahead of every swap.
TEST_F(EglSwap, TheConfiguredIntervalIsSetAtEverySwap)
{
    Record();
    Egl::_eglSwapBuffers(Handle(3), Handle(4));
    EXPECT_EQ(0u, HostCalls("eglSwapInterval"));
    STraceConfig::m_i32SwapInterval = 0;
    Fake().Forget();
    Egl::_eglSwapBuffers(Handle(3), Handle(4));
    Egl::_eglSwapBuffers(Handle(3), Handle(4));
    EXPECT_EQ((std::vector<std::string>{"eglSwapInterval", "eglSwapBuffers", "eglGetError", "eglSwapInterval",
                                        "eglSwapBuffers", "eglGetError"}),
              Fake().Names());
    Call const set = Fake().Calls("eglSwapInterval").front();
    EXPECT_EQ(Handle(3), set.Argument<void*>(0));
    EXPECT_EQ(0, set.Argument<int>(1));
}

// The swap counts its frame and says that a new one begins, recorded or not.
TEST_F(EglSwap, TheSwapCountsFrames)
{
    Play();
    Egl::_eglSwapBuffers(Handle(3), Handle(4));
    EXPECT_EQ(1u, STraceConfig::m_ui32CurrentFrame);
    EXPECT_TRUE(STraceConfig::m_isNewFrame);
    EXPECT_EQ(Bytes(), Written());
}

// On purpose: an application never sees an EGL error; a failed swap stands in its own record alone.
TEST_F(EglSwap, GetErrorAlwaysSucceeds)
{
    Record();
    HostFails(EGL_BAD_SURFACE);
    Fake().Result("eglSwapBuffers", 0u);
    Printed([] { EXPECT_EQ(0u, Egl::_eglSwapBuffers(Handle(3), Handle(4))); });
    EXPECT_EQ(WithoutPointer(Expected(1022, U32(0x300D), U32(0), U32(3), U32(4), U32(0), U32(0), U32(0),
                                      U32(0), U32(0))),
              WithoutPointer(Written()));
    Fake().Forget();
    EXPECT_EQ(0x3000, Egl::_eglGetError());
    EXPECT_EQ(Expected(1015, U32(0x3000), U32(0x3000)), Written());
    EXPECT_TRUE(Fake().Calls().empty());
}

// With the host off the answer is 0, with errors off success all the same.
TEST_F(EglSwap, GetErrorWithoutHostOrErrors)
{
    RecordWithHostOff();
    EXPECT_EQ(0, Egl::_eglGetError());
    EXPECT_EQ(Expected(1015, U32(0x3000), U32(0)), Written());
    Record();
    STraceConfig::m_getErrors = false;
    EXPECT_EQ(0x3000, Egl::_eglGetError());
    EXPECT_EQ(Expected(1015, U32(0x3000), U32(0x3000)), Written());
}

// While profiling the host is called, for its time alone.
TEST_F(EglSwap, GetErrorIsTimedWhileProfiling)
{
    Record();
    STraceConfig::m_bProfile = true;
    HostFails(EGL_BAD_SURFACE);
    EXPECT_EQ(0x3000, Egl::_eglGetError());
    EXPECT_EQ(1u, HostCalls("eglGetError"));
    EXPECT_EQ(Expected(1015, U32(0x3000), U32(0x3000)), Written());
}

// The record of a look-up holds the host's pointer, not the wrapper that the application gets, in both forms.
TEST_F(EglSwap, ALookUpRecordsTheHostsPointer)
{
    char const* const name = "glClear";
    Bytes const expected =
        Expected(1016, U32(0x3000), Ptr(Fake().Entry("es2", "glClear")), Ptr(name), U32(7), Chars("glClear"));
    Record();
    EXPECT_EQ(reinterpret_cast<fakehost::AnyFunction>(&Es2::_glClear), Egl::_eglGetProcAddress(name));
    EXPECT_EQ(expected, Written());
    RecordWithoutData();
    Egl::_eglGetProcAddress(name);
    EXPECT_EQ(expected, Written());
}

// The timeout alone takes 8 bytes.
TEST_F(EglSwap, TheTimeoutIsRecordedWhole)
{
    Record();
    Fake().Result("eglClientWaitSyncKHR", 0x30F6);
    EXPECT_EQ(0x30F6, Egl::_eglClientWaitSyncKHR(Handle(3), Handle(4), 1, 0x1122334455667788));
    EXPECT_EQ(Expected(1108, U32(0x3000), U32(0x30F6), U32(3), U32(4), U32(1), U64(0x1122334455667788)),
              Written());
}

// Ahead of the range the interval that the application sets is kept for its display.
TEST_F(EglSwap, TheApplicationsIntervalIsTracked)
{
    Play();
    Egl::_eglSwapInterval(Handle(3), 2);
    auto const* const display = CTraceRecordManager::m_EglFileState->m_sDisplays.Find(Handle(3));
    ASSERT_NE(nullptr, display);
    EXPECT_EQ(2, display->swapInterval);
}

// A destroyed surface leaves the shadow state; the last one takes its place.
TEST_F(EglSwap, ADestroyedSurfaceLeavesTheShadow)
{
    Play();
    for (uintptr_t surface : {uintptr_t(0x11), uintptr_t(0x22), uintptr_t(0x33)})
    {
        Fake().Result("eglCreateWindowSurface", Handle(surface));
        Egl::_eglCreateWindowSurface(Handle(3), Handle(4), Handle(5), nullptr, nullptr, nullptr, 7, 8);
    }
    Egl::_eglDestroySurface(Handle(3), Handle(0x11));
    Egl::_eglDestroySurface(Handle(3), Handle(0x99));
    auto const& windows = CTraceRecordManager::m_EglFileState->m_sWindows;
    ASSERT_EQ(2, windows.Count());
    EXPECT_EQ(Handle(0x33), windows.KeyAt(0));
    EXPECT_EQ(Handle(0x22), windows.KeyAt(1));
}
