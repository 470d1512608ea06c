// The EGL snapshot: what it asks the host for, and which calls stand in it, in which order.
#include "tests/wrappers/snapshot_calls.h"

class EglSnapshot : public Snapshot
{
protected:
    EglSnapshot()
    {
        STraceConfig::m_bEGLUsed = true;
        STraceConfig::m_bES2Used = false;
        Fake().Result("eglGetConfigAttrib", 0u);  // no attributes of configs but those that a test gives
    }

    static void* Handle(uintptr_t value) { return reinterpret_cast<void*>(value); }
    static CEglRenderState& State() { return *CTraceRecordManager::m_EglFileState; }

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
    static void Window(uintptr_t result, int width, int height, EGLint const* attributes = nullptr)
    {
        Fake().Result("eglCreateWindowSurface", result);
        Egl::_eglCreateWindowSurface(Handle(1), Handle(2), Handle(0x77), attributes, nullptr, nullptr, width,
                                     height);
    }
    // The host's thread has this context, its display and its surfaces current.
    static void Current(uintptr_t context, uintptr_t display)
    {
        Fake().Result("eglGetCurrentContext", context);
        Fake().Result("eglGetCurrentDisplay", display);
        Fake().On("eglGetCurrentSurface", [](Call const& call) {
            Fake().Result("eglGetCurrentSurface", call.Argument<EGLint>(0) == EGL_READ ? 0x52u : 0x44u);
        });
    }

    // Lines of the fixture's objects.
    static std::string WindowLine(std::string const& result, std::string const& attributes = "NULL")
    {
        return "eglCreateWindowSurface(dpy = 0x1, config = 0x2, win = 0x77, window_width = 640, "
               "window_height = 480, attrib_list = " +
               attributes +
               ", saved_config_attribs = {EGL_NONE}, config_again = 0x2, config_attribs = {EGL_NONE}) = " +
               result;
    }
    static std::string ContextLine(std::string const& result, std::string const& share)
    {
        return "eglCreateContext(dpy = 0x1, config = 0x2, share_context = " + share +
               ", attrib_list = {EGL_CONTEXT_CLIENT_VERSION = 2, EGL_NONE}, config_attribs = {EGL_NONE}) = " +
               result;
    }
};

// Five questions: the context, its display, the surface that is read, the one that is drawn to, and the
// version, which is asked of what the first two answered.
TEST_F(EglSnapshot, AsksTheHostWhatIsCurrent)
{
    Current(30, 1);
    Fake().On("eglQueryContext", [](Call const& call) { *call.Pointer<EGLint>(3) = 2; });
    Fake().Forget();
    Capture();
    EXPECT_EQ((Lines{"eglGetCurrentContext", "eglGetCurrentDisplay", "eglGetCurrentSurface",
                     "eglGetCurrentSurface", "eglQueryContext"}),
              Fake().Names());
    EXPECT_EQ(0x305A, Fake().Calls()[2].Argument<EGLint>(0));  // EGL_READ
    EXPECT_EQ(0x3059, Fake().Calls()[3].Argument<EGLint>(0));  // EGL_DRAW
    Call const query = Fake().Calls()[4];
    EXPECT_EQ(Handle(1), query.Argument<void*>(0));
    EXPECT_EQ(Handle(30), query.Argument<void*>(1));
    EXPECT_EQ(0x3098, query.Argument<EGLint>(2));  // EGL_CONTEXT_CLIENT_VERSION
    EXPECT_EQ(Handle(30), State().m_pCurrentContext);
    EXPECT_EQ(Handle(1), State().m_pCurrentDisplay);
    EXPECT_EQ(Handle(0x52), State().m_pCurrentRead);
    EXPECT_EQ(Handle(0x44), State().m_pCurrentDraw);
    EXPECT_EQ(2, State().m_iClientVersion);
}

// Displays, windows, contexts, what is current, and the swap interval, between two markers. A display that
// was got but not initialised is not initialised in the snapshot either.
TEST_F(EglSnapshot, HasItsFixedOrder)
{
    Context(30, nullptr);
    Window(20, 640, 480);
    Display(1, 5);
    Display(3, 0);
    Egl::_eglInitialize(Handle(1), nullptr, nullptr);
    Context(31, Handle(30));
    Window(21, 640, 480);
    Current(31, 1);
    Egl::_eglSwapInterval(Handle(1), 3);
    Egl::_eglSwapInterval(Handle(3), 4);
    Lines const expected = {
        "-- 2",
        "eglGetDisplay(display_id = 0x5) = 0x1",
        "eglInitialize(dpy = 0x1, major = NULL, minor = NULL) = EGL_TRUE",
        "eglGetDisplay(display_id = NULL) = 0x3",
        WindowLine("0x14"),
        WindowLine("0x15"),
        ContextLine("0x1e", "0x0"),
        ContextLine("0x1f", "0x1e"),
        "eglMakeCurrent(dpy = 0x1, draw = 0x44, read = 0x52, ctx = 0x1f, config = 0x2, config_attribs = "
        "{EGL_NONE}) = EGL_TRUE",
        "eglSwapInterval(dpy = 0x1, interval = 3) = EGL_TRUE",
        "-- 2"};
    EXPECT_EQ(expected, Taken());
}

// The markers are empty records.
TEST_F(EglSnapshot, BeginsAndEndsWithAnEmptyRecord)
{
    Capture();
    STraceConfig::m_bDoNativeCall = false;
    CTraceRecordManager::saveRenderStatePhase2(false, false);
    STraceConfig::m_bDoNativeCall = true;
    Bytes const written = Written();
    Bytes const marker = Joined(U32(0), U16(2));
    ASSERT_LT(2 * marker.size(), written.size());
    EXPECT_EQ(marker, Bytes(written.begin(), written.begin() + 6));
    EXPECT_EQ(marker, Bytes(written.end() - 6, written.end()));
}

// The attributes of a window are the application's, and those of its config what the recorder knew of it.
TEST_F(EglSnapshot, AttributeListsAreTheApplications)
{
    EGLint const single[] = {EGL_RENDER_BUFFER, EGL_SINGLE_BUFFER, EGL_NONE};
    EGLint const none[] = {EGL_NONE};
    Window(20, 640, 480, single);
    Window(21, 640, 480, none);
    Window(22, 640, 480, nullptr);
    EXPECT_EQ(1u, State().m_sWindows[Handle(21)].attributes.count);
    Lines const expected = {WindowLine("0x14", "{EGL_RENDER_BUFFER = EGL_SINGLE_BUFFER, EGL_NONE}"),
                            WindowLine("0x15", "{EGL_NONE}"), WindowLine("0x16", "NULL")};
    EXPECT_EQ(expected, Only(Taken(), {"eglCreateWindowSurface"}));
}

// A destroyed surface is gone, and the last one has its place; a destroyed context comes back.
TEST_F(EglSnapshot, ForgetsSurfacesButNotContexts)
{
    for (uintptr_t surface : {20u, 21u, 22u})
        Window(surface, 640, 480);
    Egl::_eglDestroySurface(Handle(1), Handle(20));
    Context(30, nullptr);
    Egl::_eglDestroyContext(Handle(1), Handle(30));
    EXPECT_EQ(Lines({WindowLine("0x16"), WindowLine("0x15"), ContextLine("0x1e", "0x0")}),
              Only(Taken(), {"eglCreateWindowSurface", "eglCreateContext"}));
}

// What has no place in the state leaves no call: surfaces without a window, their attributes, the bound API,
// and the end of a display.
TEST_F(EglSnapshot, LeavesOutWhatIsNotFollowed)
{
    Display(1, 5);
    Egl::_eglInitialize(Handle(1), nullptr, nullptr);
    Context(30, nullptr);
    Current(30, 1);
    Lines const before = Taken();
    Fake().Result("eglCreatePbufferSurface", Handle(23));
    Fake().Result("eglCreatePixmapSurface", Handle(24));
    Egl::_eglCreatePbufferSurface(Handle(1), Handle(2), nullptr, nullptr);
    Egl::_eglCreatePixmapSurface(Handle(1), Handle(2), Handle(3), nullptr, nullptr);
    Egl::_eglSurfaceAttrib(Handle(1), Handle(23), EGL_SWAP_BEHAVIOR, EGL_BUFFER_PRESERVED);
    Egl::_eglBindAPI(EGL_OPENGL_ES_API);
    Egl::_eglTerminate(Handle(1));
    EXPECT_EQ(before, Taken());
}

// Made current, a context has its config's ID in place of the handle. On purpose: it is written as it stands.
TEST_F(EglSnapshot, AContextThatWasCurrentHasItsConfigsId)
{
    Context(30, nullptr);
    Current(30, 6);
    Fake().On("eglQueryContext", [](Call const& call) { *call.Pointer<EGLint>(3) = 44; });
    Egl::_eglMakeCurrent(Handle(1), Handle(20), Handle(20), Handle(30));
    Lines const expected = {
        "eglCreateContext(dpy = 0x6, config = 0x2c, share_context = 0x0, attrib_list = "
        "{EGL_CONTEXT_CLIENT_VERSION = 2, EGL_NONE}, config_attribs = {EGL_NONE}) = 0x1e",
        "eglMakeCurrent(dpy = 0x6, draw = 0x44, read = 0x52, ctx = 0x1e, config = 0x2c, config_attribs = "
        "{EGL_NONE}) = EGL_TRUE"};
    EXPECT_EQ(expected, Only(Taken(), {"eglCreateContext", "eglMakeCurrent"}));
}

// The interval is that of the current context's display, and 1 where the application set none.
TEST_F(EglSnapshot, TheIntervalIsOneUnlessItWasSet)
{
    Display(1, 0);
    Context(30, nullptr);
    Current(30, 1);
    EXPECT_EQ(Lines({"eglSwapInterval(dpy = 0x1, interval = 1) = EGL_TRUE"}),
              Only(Taken(), {"eglSwapInterval"}));
    Egl::_eglSwapInterval(Handle(1), 0);
    EXPECT_EQ(Lines({"eglSwapInterval(dpy = 0x1, interval = 0) = EGL_TRUE"}),
              Only(Taken(), {"eglSwapInterval"}));
}

// With nothing current the handles are null. On purpose: the records of null that the writing needs are made
// in the frozen state.
TEST_F(EglSnapshot, WritesNullHandlesWhenNothingIsCurrent)
{
    Lines const expected = {
        "-- 2",
        "eglMakeCurrent(dpy = 0x0, draw = 0x0, read = 0x0, ctx = 0x0, config = 0x0, config_attribs = "
        "{EGL_NONE}) = EGL_TRUE",
        "eglSwapInterval(dpy = 0x0, interval = 1) = EGL_TRUE", "-- 2"};
    EXPECT_EQ(expected, Taken());
    CEglRenderState& frozen = CTraceRecordManager::m_EglFileStateLastGet;
    EXPECT_NE(nullptr, frozen.m_sContexts.Find(nullptr));
    EXPECT_NE(nullptr, frozen.m_sDisplays.Find(nullptr));
    EXPECT_EQ(nullptr, State().m_sDisplays.Find(nullptr));
}

// On purpose: the record of eglMakeCurrent enters the null context into the live state, as that of any such
// call does, so that the next snapshot of the process creates it.
TEST_F(EglSnapshot, TheNullContextComesBack)
{
    Taken();
    EXPECT_NE(nullptr, State().m_sContexts.Find(nullptr));
    EXPECT_EQ(Lines({"eglCreateContext(dpy = 0x0, config = 0x0, share_context = 0x0, attrib_list = NULL, "
                     "config_attribs = {EGL_NONE}) = 0x0"}),
              Only(Taken(), {"eglCreateContext"}));
}

// What comes, changes or goes between capture and writing does so in the live state alone: nothing is shared.
TEST_F(EglSnapshot, IsOfTheMomentOfTheCapture)
{
    EGLint const none[] = {EGL_NONE};
    Display(1, 5);
    Window(20, 640, 480, none);
    Context(30, nullptr);
    Current(30, 1);
    Capture();
    Lines const before = Write(false);
    EXPECT_NE(State().m_sWindows[Handle(20)].attributes.data,
              CTraceRecordManager::m_EglFileStateLastGet.m_sWindows[Handle(20)].attributes.data);
    Egl::_eglInitialize(Handle(1), nullptr, nullptr);
    Egl::_eglSwapInterval(Handle(1), 7);
    Egl::_eglDestroySurface(Handle(1), Handle(20));
    Window(21, 320, 240);
    Context(31, nullptr);
    EXPECT_EQ(before, Write(false));
    EXPECT_NE(before, Taken());
}

// A list counts its closing EGL_NONE, and a null one counts nothing.
TEST(EglAttributeList, CountsItsEnd)
{
    using List = CEglRenderState::eglAttributeList;
    EGLint const pairs[] = {EGL_WIDTH, 4, EGL_HEIGHT, 5, EGL_NONE};
    List const full(pairs);
    ASSERT_EQ(5u, full.count);
    EXPECT_NE(pairs, full.data);
    EXPECT_EQ((std::vector<int>{0x3057, 4, 0x3056, 5, 0x3038}), std::vector<int>(full.data, full.data + 5));
    EXPECT_EQ(1u, List(pairs + 4).count);
    EXPECT_EQ(0u, List(nullptr).count);
    EXPECT_EQ(nullptr, List(nullptr).data);
}

// A value that is EGL_NONE's does not end a list: only an attribute does.
TEST(EglAttributeList, IsWalkedByPairs)
{
    EGLint const list[] = {EGL_TEXTURE_TARGET, EGL_NONE, EGL_WIDTH, 4, EGL_NONE};
    EXPECT_EQ(5u, CEglRenderState::eglAttributeList(list).count);
}

// Assignment copies, over whatever was there; an empty source leaves nothing, and itself everything.
TEST(EglAttributeList, AssignmentCopies)
{
    using List = CEglRenderState::eglAttributeList;
    EGLint const pairs[] = {EGL_WIDTH, 4, EGL_NONE};
    List const source(pairs);
    List target(pairs + 2);
    target = source;
    ASSERT_EQ(3u, target.count);
    EXPECT_NE(source.data, target.data);
    EXPECT_EQ(4, target.data[1]);
    List const& itself = target;
    target = itself;
    ASSERT_EQ(3u, target.count);
    EXPECT_EQ(4, target.data[1]);
    target = List(nullptr);
    EXPECT_EQ(0u, target.count);
    EXPECT_EQ(nullptr, target.data);
}
