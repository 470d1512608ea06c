// What the shadow keeps of EGL, and when.
#include "tests/wrappers/shadow.h"

class TrackEgl : public Shadow
{
protected:
    static void* Handle(uintptr_t value) { return reinterpret_cast<void*>(value); }
    static CEglRenderState& State() { return *CTraceRecordManager::m_EglFileState; }
    static void Forget() { State() = CEglRenderState(); }
    static bool HasDisplay() { return State().m_sDisplays.Find(Handle(1)) != nullptr; }

    static void Window(int* configAttribs = nullptr, int width = 0, int height = 0)
    {
        EGLint const attributes[] = {EGL_RENDER_BUFFER, EGL_SINGLE_BUFFER, EGL_NONE};
        Fake().Result("eglCreateWindowSurface", Handle(20));
        Egl::_eglCreateWindowSurface(Handle(1), Handle(2), Handle(0x77), attributes, nullptr, configAttribs,
                                     width, height);
    }
    static void Context()
    {
        EGLint const attributes[] = {EGL_CONTEXT_CLIENT_VERSION, 2, EGL_NONE};
        Fake().Result("eglCreateContext", Handle(30));
        Egl::_eglCreateContext(Handle(1), Handle(2), Handle(29), attributes, nullptr, nullptr);
    }
    // Of all configs the host tells the red size alone.
    static void HostTellsRed()
    {
        Fake().On("eglGetConfigAttrib", [](Call const& call) {
            bool const isRed = call.Argument<EGLint>(2) == EGL_RED_SIZE;
            if (isRed)
                *call.Pointer<EGLint>(3) = 8;
            Fake().Result("eglGetConfigAttrib", isRed ? 1u : 0u);
        });
    }
    static std::vector<int> Ints(CEglRenderState::eglAttributeList const& list)
    {
        return std::vector<int>(list.data, list.data + list.count);
    }
};

// A display is known by the host's handle, with the argument that it was got by.
TEST_F(TrackEgl, ADisplayIsKnownByItsHandle)
{
    Fake().Result("eglGetDisplay", Handle(1));
    Egl::_eglGetDisplay(5, Handle(9));
    ASSERT_TRUE(HasDisplay());
    CEglRenderState::eglDisplayDefinition const& display = State().m_sDisplays[Handle(1)];
    EXPECT_EQ(Handle(1), display.display);
    EXPECT_EQ(5, display.nativeDisplay);
    EXPECT_EQ(1, display.swapInterval);
    EXPECT_FALSE(display.initialized);
    EXPECT_EQ(1, State().m_sDisplays.Count());
    Egl::_eglInitialize(Handle(1), nullptr, nullptr);
    EXPECT_TRUE(State().m_sDisplays[Handle(1)].initialized);
    EXPECT_EQ(5, State().m_sDisplays[Handle(1)].nativeDisplay);
}

// A context's entry holds what it was made of; its config has one of its own, and its display is known.
TEST_F(TrackEgl, AContextIsKept)
{
    HostTellsRed();
    Context();
    ASSERT_NE(nullptr, State().m_sContexts.Find(Handle(30)));
    CEglRenderState::eglContextDefinition const& context = State().m_sContexts[Handle(30)];
    EXPECT_EQ(Handle(30), context.context);
    EXPECT_EQ(Handle(1), context.display);
    EXPECT_EQ(Handle(2), context.config);
    EXPECT_EQ(Handle(29), context.shareContext);
    EXPECT_EQ((std::vector<int>{0x3098, 2, 0x3038}), Ints(context.attributes));
    EXPECT_EQ((std::vector<int>{0x3024, 8, 0x3038}), Ints(context.configAttributes));
    ASSERT_NE(nullptr, State().m_sConfigs.Find(Handle(2)));
    CEglRenderState::eglConfigDefinition const& config = State().m_sConfigs[Handle(2)];
    EXPECT_EQ(Handle(2), config.config);
    EXPECT_EQ(Handle(1), config.display);
    EXPECT_EQ((std::vector<int>{0x3024, 8, 0x3038}), Ints(config.attributes));
    EXPECT_EQ(Handle(1), State().m_sDisplays[Handle(1)].display);
}

// A window's entry as well. Its size is the host's to tell where the application calls.
TEST_F(TrackEgl, AWindowIsKeptWithTheHostsSize)
{
    HostTellsRed();
    Fake().On("eglQuerySurface", [](Call const& call) {
        EXPECT_EQ(Handle(1), call.Argument<void*>(0));
        EXPECT_EQ(Handle(20), call.Argument<void*>(1));
        *call.Pointer<EGLint>(3) = call.Argument<EGLint>(2) == 0x3057 ? 640 : 480;
    });
    Window();
    ASSERT_NE(nullptr, State().m_sWindows.Find(Handle(20)));
    CEglRenderState::eglWindowDefinition const& window = State().m_sWindows[Handle(20)];
    EXPECT_EQ(Handle(20), window.surface);
    EXPECT_EQ(Handle(1), window.display);
    EXPECT_EQ(Handle(2), window.config);
    EXPECT_EQ(Handle(0x77), window.window);
    EXPECT_EQ((std::vector<int>{0x3086, 0x3085, 0x3038}), Ints(window.attributes));
    EXPECT_EQ((std::vector<int>{0x3024, 8, 0x3038}), Ints(window.configAttributes));
    EXPECT_EQ(640, window.width);
    EXPECT_EQ(480, window.height);
    EXPECT_EQ(Handle(2), State().m_sConfigs[Handle(2)].config);
    EXPECT_EQ(Handle(1), State().m_sDisplays[Handle(1)].display);
}

// Trailing arguments go ahead of what the host would say.
TEST_F(TrackEgl, TrailingArgumentsAreTakenAsTheyAre)
{
    HostTellsRed();
    int saved[] = {EGL_GREEN_SIZE, 6, EGL_NONE};
    Window(saved, 7, 8);
    CEglRenderState::eglWindowDefinition const& window = State().m_sWindows[Handle(20)];
    EXPECT_EQ((std::vector<int>{0x3023, 6, 0x3038}), Ints(window.configAttributes));
    EXPECT_EQ(7, window.width);
    EXPECT_EQ(8, window.height);
    EXPECT_EQ(0u, HostCalls("eglQuerySurface"));
}

// Making a context current asks the host about what is current then; the entry is that of the argument.
TEST_F(TrackEgl, MakingCurrentAsksForTheConfig)
{
    Fake().Result("eglGetCurrentContext", Handle(31));
    Fake().Result("eglGetCurrentDisplay", Handle(6));
    Fake().On("eglQueryContext", [](Call const& call) {
        EXPECT_EQ(Handle(6), call.Argument<void*>(0));
        EXPECT_EQ(Handle(31), call.Argument<void*>(1));
        EXPECT_EQ(0x3028, call.Argument<EGLint>(2));
        *call.Pointer<EGLint>(3) = 44;
    });
    Egl::_eglMakeCurrent(Handle(1), Handle(20), Handle(20), Handle(30));
    EXPECT_EQ(1u, HostCalls("eglQueryContext"));
    ASSERT_NE(nullptr, State().m_sContexts.Find(Handle(30)));
    EXPECT_EQ(Handle(44), State().m_sContexts[Handle(30)].config);
    EXPECT_EQ(Handle(6), State().m_sContexts[Handle(30)].display);
}

// The display and the interval need no contents.
TEST_F(TrackEgl, DisplaysAndIntervalsPassThePlainGate)
{
    auto const isTracked = [] {
        bool const tracked = HasDisplay();
        Forget();
        return tracked;
    };
    Fake().Result("eglGetDisplay", Handle(1));
    ExpectPlainGate([] { Egl::_eglGetDisplay(5, nullptr); }, isTracked);
    ExpectPlainGate([] { Egl::_eglSwapInterval(Handle(1), 2); }, isTracked);
}

// All else does.
TEST_F(TrackEgl, ObjectsPassTheDataGate)
{
    auto const isTracked = [] {
        bool const tracked = State().m_sDisplays.Count() + State().m_sConfigs.Count() +
                                 State().m_sContexts.Count() + State().m_sWindows.Count() !=
                             0;
        Forget();
        return tracked;
    };
    ExpectDataGate([] { Egl::_eglInitialize(Handle(1), nullptr, nullptr); }, isTracked);
    ExpectDataGate([] { Context(); }, isTracked);
    ExpectDataGate([] { Window(); }, isTracked);
}

// So does a context that is made current: what the record of such a call enters is empty.
TEST_F(TrackEgl, MakingCurrentPassesTheDataGate)
{
    Fake().On("eglQueryContext", [](Call const& call) { *call.Pointer<EGLint>(3) = 44; });
    ExpectDataGate([] { Egl::_eglMakeCurrent(Handle(1), Handle(20), Handle(20), Handle(30)); },
                   [] {
                       auto const* const context = State().m_sContexts.Find(Handle(30));
                       return context && context->config == Handle(44);
                   });
}

// And the end of a surface.
TEST_F(TrackEgl, DestroyingPassesTheDataGate)
{
    State().m_sWindows[Handle(20)].surface = Handle(20);
    ExpectDataGate([] { Egl::_eglDestroySurface(Handle(1), Handle(20)); },
                   [] { return State().m_sWindows.Find(Handle(20)) == nullptr; });
}
