// The EGL snapshot: which calls stand in it, in which order, for scripted states.
#include "tests/wrappers/snapshot_calls.h"

class EglSnapshot : public Snapshot
{
protected:
    EglSnapshot()
    {
        STraceConfig::m_bEGLUsed = true;
        STraceConfig::m_bES2Used = false;
    }

    static void* Handle(uintptr_t value) { return reinterpret_cast<void*>(value); }

    static void Display(uintptr_t result, intptr_t native)
    {
        Fake().Result("eglGetDisplay", result);
        Egl::_eglGetDisplay(native, nullptr);
    }
    static void Context(uintptr_t result, void* share)
    {
        EGLint const attributes[] = {EGL_CONTEXT_CLIENT_VERSION, 2, EGL_NONE};
        Fake().Result("eglCreateContext", result);
        Egl::_eglCreateContext(Handle(1), Handle(2), share, attributes, nullptr, nullptr);
    }
    static void Window(uintptr_t result, int width, int height)
    {
        Fake().Result("eglCreateWindowSurface", result);
        Egl::_eglCreateWindowSurface(Handle(1), Handle(2), Handle(0x77), nullptr, nullptr, nullptr, width,
                                     height);
    }
    static Lines Names(Lines const& lines) { return NamesOf(lines); }
};

// Displays, windows, contexts, what is current, and the swap interval, between two markers.
TEST_F(EglSnapshot, HasItsFixedOrder)
{
    Display(1, 5);
    Egl::_eglInitialize(Handle(1), nullptr, nullptr);
    Context(30, nullptr);
    Window(20, 640, 480);
    Lines const expected = {
        "-- 2",           "eglGetDisplay",   "eglInitialize", "eglCreateWindowSurface", "eglCreateContext",
        "eglMakeCurrent", "eglSwapInterval", "-- 2"};
    EXPECT_EQ(expected, NamesOf(Taken()));
}

// A display that was got but not initialised is not initialised in the snapshot either.
TEST_F(EglSnapshot, InitialisesOnlyWhatWasInitialised)
{
    Display(1, 5);
    EXPECT_EQ(Lines({"eglGetDisplay(display_id = 0x5) = 0x1"}),
              Only(Taken(), {"eglGetDisplay", "eglInitialize"}));
}

// A destroyed surface is gone; a destroyed context comes back.
TEST_F(EglSnapshot, ForgetsSurfacesButNotContexts)
{
    Window(20, 640, 480);
    Egl::_eglDestroySurface(Handle(1), Handle(20));
    Context(30, nullptr);
    Egl::_eglDestroyContext(Handle(1), Handle(30));
    EXPECT_EQ(Lines({"eglCreateContext"}),
              Names(Only(Taken(), {"eglCreateWindowSurface", "eglCreateContext"})));
}

// A share partner stands before the context that names it, and the name is the application's.
TEST_F(EglSnapshot, NamesShareContextsAsGiven)
{
    Context(30, nullptr);
    Context(31, Handle(30));
    Lines const calls = Only(Taken(), {"eglCreateContext"});
    ASSERT_EQ(2u, calls.size());
    EXPECT_NE(std::string::npos, calls[0].find("share_context = 0x0")) << calls[0];
    EXPECT_NE(std::string::npos, calls[1].find("share_context = 0x1e")) << calls[1];
}

// What the host calls current goes into eglMakeCurrent; its display's interval is 1 unless it was set.
TEST_F(EglSnapshot, MakesTheHostsCurrentContextCurrent)
{
    Display(1, 0);
    Context(30, nullptr);
    Fake().Result("eglGetCurrentContext", 30);
    Fake().Result("eglGetCurrentDisplay", 1);
    Fake().Result("eglGetCurrentSurface", 20);
    Lines calls = Only(Taken(), {"eglMakeCurrent", "eglSwapInterval"});
    ASSERT_EQ(2u, calls.size());
    EXPECT_EQ(0u, calls[0].find("eglMakeCurrent(dpy = 0x1, draw = 0x14, read = 0x14, ctx = 0x1e, "))
        << calls[0];
    EXPECT_EQ("eglSwapInterval(dpy = 0x1, interval = 1) = EGL_TRUE", calls[1]);
    Egl::_eglSwapInterval(Handle(1), 3);
    calls = Only(Taken(), {"eglSwapInterval"});
    EXPECT_EQ(Lines({"eglSwapInterval(dpy = 0x1, interval = 3) = EGL_TRUE"}), calls);
}

// With nothing current the handles are null.
TEST_F(EglSnapshot, WritesNullHandlesWhenNothingIsCurrent)
{
    Lines const calls = Only(Taken(), {"eglMakeCurrent"});
    ASSERT_EQ(1u, calls.size());
    EXPECT_EQ(0u, calls[0].find("eglMakeCurrent(dpy = 0x0, draw = 0x0, read = 0x0, ctx = 0x0, ")) << calls[0];
}

// A window keeps the size that it was made with.
TEST_F(EglSnapshot, KeepsAWindowsSize)
{
    Window(20, 640, 480);
    Lines const calls = Only(Taken(), {"eglCreateWindowSurface"});
    ASSERT_EQ(1u, calls.size());
    EXPECT_NE(std::string::npos, calls[0].find("640")) << calls[0];
    EXPECT_NE(std::string::npos, calls[0].find("480")) << calls[0];
}
