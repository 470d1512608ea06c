// EGL wrappers that tell of displays and configs, and the creators, whose records hold a config's attributes.
#include "tests/wrappers/recorder.h"
#include "wrappers/egl/config_attribs.h"
#include <memory>

class EglConfigs : public Recorder
{
protected:
    static void* Handle(uintptr_t value) { return reinterpret_cast<void*>(value); }

    // A host that knows three attributes: red 8, green 6, and the conformance 4.
    static void HostKnowsThree()
    {
        Fake().On("eglGetConfigAttrib", [](Call const& call) {
            int const attribute = call.Argument<int>(2);
            int const value = attribute == EGL_RED_SIZE     ? 8
                              : attribute == EGL_GREEN_SIZE ? 6
                              : attribute == EGL_CONFORMANT ? 4
                                                            : -1;
            *call.Pointer<int>(3) = value;
            Fake().Result("eglGetConfigAttrib", value < 0 ? 0u : 1u);
        });
    }
    // What such a host's config is recorded as, behind the pointer: 7 ints.
    static Bytes Three()
    {
        return Words({7,          //
                      0x3023, 6,  // EGL_GREEN_SIZE
                      0x3024, 8,  // EGL_RED_SIZE
                      0x3042, 4,  // EGL_CONFORMANT
                      0x3038});   // EGL_NONE
    }

    // The record of a call, without the four bytes of a pointer that no test can know.
    static Bytes Without(Bytes record, size_t offset)
    {
        auto const at = record.begin() + static_cast<std::ptrdiff_t>(offset);
        record.erase(at, at + 4);
        return record;
    }

    int m_list[3] = {0x3024, 8, 0x3038};
};

// The attributes are asked for in the order of their values, without the ID and the two that are none.
TEST_F(EglConfigs, AttributesAreAskedForInOrder)
{
    Record();
    Fake().Forget();
    delete[] Egl::getConfigAttribs(Handle(2), Handle(1)).m_pAttribs;
    std::vector<int> asked;
    for (Call const& call : Fake().Calls("eglGetConfigAttrib"))
    {
        EXPECT_EQ(Handle(1), call.Argument<void*>(0));
        EXPECT_EQ(Handle(2), call.Argument<void*>(1));
        asked.push_back(call.Argument<int>(2));
    }
    EXPECT_EQ((std::vector<int>{0x3020, 0x3021, 0x3022, 0x3023, 0x3024, 0x3025, 0x3026, 0x3027,
                                0x3029, 0x302A, 0x302B, 0x302C, 0x302D, 0x302E, 0x302F, 0x3030,
                                0x3031, 0x3032, 0x3033, 0x3034, 0x3035, 0x3036, 0x3037, 0x3039,
                                0x303A, 0x303B, 0x303C, 0x303D, 0x303E, 0x303F, 0x3040, 0x3042}),
              asked);
}

// Only what the host answers with 1 stands in the list, and the slot of a refused attribute serves the next.
TEST_F(EglConfigs, RefusedAttributesLeaveNoSlot)
{
    Record();
    HostKnowsThree();
    SEglAttribListR const list = Egl::getConfigAttribs(Handle(2), Handle(1));
    std::unique_ptr<int const[]> const owned(list.m_pAttribs);
    EXPECT_EQ(7u, list.m_ui32Count);
    EXPECT_EQ((std::vector<int>{0x3023, 6, 0x3024, 8, 0x3042, 4, 0x3038}),
              std::vector<int>(owned.get(), owned.get() + 7));
}

// A host that answers everything gives 32 pairs and the end.
TEST_F(EglConfigs, AFullListHasSixtyFiveInts)
{
    Record();
    SEglAttribListR const list = Egl::getConfigAttribs(Handle(2), Handle(1));
    std::unique_ptr<int const[]> const owned(list.m_pAttribs);
    EXPECT_EQ(65u, list.m_ui32Count);
}

// Display and result; the snapshot's trailing argument takes the result's place when the host is not called.
TEST_F(EglConfigs, GetDisplayReplaysItsResult)
{
    RecordWithHostOff();
    EXPECT_EQ(Handle(7), Egl::_eglGetDisplay(5, Handle(7)));
    EXPECT_EQ(Expected(1014, U32(0x3000), U32(7), U32(5)), Written());
    Record();
    Fake().Result("eglGetDisplay", Handle(9));
    EXPECT_EQ(Handle(9), Egl::_eglGetDisplay(5, Handle(7)));
    EXPECT_EQ(Expected(1014, U32(0x3000), U32(9), U32(5)), Written());
}

// Both numbers stand in the record, also after a failure: they are not gated.
TEST_F(EglConfigs, InitializeIsNotGated)
{
    Record();
    int major = 1;
    int minor = 5;
    HostFails(EGL_BAD_DISPLAY);
    Printed([&] { Egl::_eglInitialize(Handle(3), &major, &minor); });
    EXPECT_EQ(
        Expected(1017, U32(0x3008), U32(1), U32(3), Ptr(&major), Words({1, 1}), Ptr(&minor), Words({1, 5})),
        Written());
    Egl::_eglInitialize(Handle(3), nullptr, nullptr);
    EXPECT_EQ(Expected(1017, U32(0x3000), U32(1), U32(3), U32(0), U32(0), U32(0), U32(0)), Written());
}

// As many configs as stand behind num_config, each as its low word.
TEST_F(EglConfigs, ChooseConfigRecordsWhatWasChosen)
{
    Record();
    void* configs[4] = {};
    int chosen = 0;
    Fake().On("eglChooseConfig", [](Call const& call) {
        call.Pointer<void*>(2)[0] = Handle(static_cast<uintptr_t>(0x1100000011));
        call.Pointer<void*>(2)[1] = Handle(0x22);
        *call.Pointer<int>(4) = 2;
    });
    Egl::_eglChooseConfig(Handle(3), m_list, configs, 4, &chosen);
    EXPECT_EQ(Expected(1001, U32(0x3000), U32(1), U32(3), Ptr(m_list), Words({3, 0x3024, 8, 0x3038}),
                       Ptr(configs), Words({2, 0x11, 0x22}), U32(4), Ptr(&chosen), Words({1, 2})),
              Written());
}

// It is not gated: a failed choice records what the caller's memory held, up to the room that there was.
TEST_F(EglConfigs, AFailedChoiceRecordsTheCallersMemory)
{
    Record();
    void* configs[1] = {Handle(0x33)};
    int chosen = 1;
    HostFails(EGL_BAD_ATTRIBUTE);
    Printed([&] { Egl::_eglChooseConfig(Handle(3), nullptr, configs, 1, &chosen); });
    EXPECT_EQ(Expected(1001, U32(0x3004), U32(1), U32(3), U32(0), U32(0), Ptr(configs), Words({1, 0x33}),
                       U32(1), Ptr(&chosen), Words({1, 1})),
              Written());
    chosen = 1000000;
    HostFails(EGL_BAD_ATTRIBUTE);
    Printed([&] { Egl::_eglChooseConfig(Handle(3), nullptr, configs, 1, &chosen); });
    EXPECT_EQ(Expected(1001, U32(0x3004), U32(1), U32(3), U32(0), U32(0), Ptr(configs), Words({1, 0x33}),
                       U32(1), Ptr(&chosen), Words({1, 1000000})),
              Written());
}

// Counting the configs alone passes no array; nothing is read through null pointers.
TEST_F(EglConfigs, ChoosingWithoutRoomRecordsNoConfig)
{
    Record();
    int chosen = 5;
    Egl::_eglChooseConfig(Handle(3), nullptr, nullptr, 0, &chosen);
    EXPECT_EQ(Expected(1001, U32(0x3000), U32(1), U32(3), U32(0), U32(0), U32(0), U32(0), U32(0),
                       Ptr(&chosen), Words({1, 5})),
              Written());
    Egl::_eglChooseConfig(Handle(3), nullptr, nullptr, 0, nullptr);
    EXPECT_EQ(
        Expected(1001, U32(0x3000), U32(1), U32(3), U32(0), U32(0), U32(0), U32(0), U32(0), U32(0), U32(0)),
        Written());
}

// The list of all configs is gated.
TEST_F(EglConfigs, GetConfigsIsGated)
{
    Record();
    void* configs[2] = {Handle(0x11), Handle(0x22)};
    int number = 2;
    Egl::_eglGetConfigs(Handle(3), configs, 2, &number);
    EXPECT_EQ(Expected(1010, U32(0x3000), U32(1), U32(3), Ptr(configs), Words({2, 0x11, 0x22}), U32(2),
                       Ptr(&number), Words({1, 2})),
              Written());
    HostFails(EGL_BAD_DISPLAY);
    Printed([&] { Egl::_eglGetConfigs(Handle(3), configs, 2, &number); });
    EXPECT_EQ(Expected(1010, U32(0x3008), U32(1), U32(3), Ptr(configs), U32(0), U32(2), Ptr(&number), U32(0)),
              Written());
}

// A single value is gated, its pointer is not.
TEST_F(EglConfigs, GetConfigAttribIsGated)
{
    Record();
    int value = 8;
    Egl::_eglGetConfigAttrib(Handle(3), Handle(4), 0x3024, &value);
    EXPECT_EQ(Expected(1009, U32(0x3000), U32(1), U32(3), U32(4), U32(0x3024), Ptr(&value), Words({1, 8})),
              Written());
    STraceConfig::m_getErrors = false;
    Egl::_eglGetConfigAttrib(Handle(3), Handle(4), 0x3024, &value);
    EXPECT_EQ(Expected(1009, U32(0x3000), U32(1), U32(3), U32(4), U32(0x3024), Ptr(&value), U32(0)),
              Written());
}

// The text stands in place of the result, whether contents are recorded or not.
TEST_F(EglConfigs, QueryStringRecordsItsTextInBothForms)
{
    char const* const text = "fake";
    Fake().Result("eglQueryString", text);
    Bytes const expected = Expected(1020, U32(0x3000), Ptr(text), U32(4), Chars("fake"), U32(3), U32(0x3053));
    Record();
    EXPECT_EQ(text, Egl::_eglQueryString(Handle(3), EGL_VENDOR));
    EXPECT_EQ(expected, Written());
    RecordWithoutData();
    Egl::_eglQueryString(Handle(3), EGL_VENDOR);
    EXPECT_EQ(expected, Written());
    RecordWithHostOff();
    EXPECT_EQ(nullptr, Egl::_eglQueryString(Handle(3), EGL_VENDOR));
    EXPECT_EQ(Expected(1020, U32(0x3000), U32(0), U32(0), U32(3), U32(0x3053)), Written());
}

// A null list is pointer and count 0; a list of nothing but its end counts one.
TEST_F(EglConfigs, AttributeListsOfNothing)
{
    Record();
    Fake().Result("eglCreateSyncKHR", Handle(0x77));
    Egl::_eglCreateSyncKHR(Handle(3), EGL_SYNC_FENCE_KHR, nullptr);
    EXPECT_EQ(Expected(1106, U32(0x3000), U32(0x77), U32(3), U32(0x30F9), U32(0), U32(0)), Written());
    int const none[] = {0x3038};
    Egl::_eglCreateSyncKHR(Handle(3), EGL_SYNC_FENCE_KHR, none);
    EXPECT_EQ(Expected(1106, U32(0x3000), U32(0x77), U32(3), U32(0x30F9), Ptr(none), Words({1, 0x3038})),
              Written());
}

// A context's record ends with the config's attributes as the host gives them, even where a snapshot has its
// own.
TEST_F(EglConfigs, AContextRecordsItsConfig)
{
    HostKnowsThree();
    Record();
    Fake().Result("eglCreateContext", Handle(0x55));
    EXPECT_EQ(Handle(0x55),
              Egl::_eglCreateContext(Handle(3), Handle(4), Handle(5), m_list, nullptr, nullptr));
    Bytes const written = Written();
    EXPECT_EQ(Without(Expected(1003, U32(0x3000), U32(0x55), U32(3), U32(4), U32(5), Ptr(m_list),
                               Words({3, 0x3024, 8, 0x3038}), U32(0), Three()),
                      6 + 5 * 4 + 20),
              Without(written, 6 + 5 * 4 + 20));
}

// Replayed, it gives back its fifth argument, whatever the sixth holds.
TEST_F(EglConfigs, AReplayedContextReturnsItsTrailingArgument)
{
    RecordWithHostOff();
    int saved[] = {0x3024, 8, 0x3038};
    EXPECT_EQ(Handle(0x66),
              Egl::_eglCreateContext(Handle(3), Handle(4), nullptr, nullptr, Handle(0x66), saved));
    Bytes const record = Written();
    ASSERT_LT(14u, record.size());
    EXPECT_EQ(U32(0x66), Bytes(record.begin() + 10, record.begin() + 14));
}

// Without contents the creators write the arguments of the API alone.
TEST_F(EglConfigs, CreatorsWithoutDataRecordTheApisArguments)
{
    RecordWithoutData();
    Fake().Forget();
    for (char const* creator : {"eglCreateContext", "eglCreatePbufferSurface", "eglCreatePixmapSurface",
                                "eglCreateWindowSurface", "eglCreatePbufferFromClientBuffer"})
        Fake().Result(creator, Handle(9));
    Egl::_eglCreateContext(Handle(3), Handle(4), Handle(5), m_list, nullptr, nullptr);
    EXPECT_EQ(Expected(1003, U32(0x3000), U32(9), U32(3), U32(4), U32(5), Ptr(m_list)), Written());
    Egl::_eglCreatePbufferSurface(Handle(3), Handle(4), m_list, nullptr);
    EXPECT_EQ(Expected(1004, U32(0x3000), U32(9), U32(3), U32(4), Ptr(m_list)), Written());
    Egl::_eglCreatePixmapSurface(Handle(3), Handle(4), Handle(6), m_list, nullptr);
    EXPECT_EQ(Expected(1005, U32(0x3000), U32(9), U32(3), U32(4), U32(6), Ptr(m_list)), Written());
    Egl::_eglCreateWindowSurface(Handle(3), Handle(4), Handle(6), m_list, nullptr, nullptr, 7, 8);
    EXPECT_EQ(Expected(1006, U32(0x3000), U32(9), U32(3), U32(4), U32(6), Ptr(m_list)), Written());
    Egl::_eglCreatePbufferFromClientBuffer(Handle(3), 0x31, Handle(6), Handle(4), m_list);
    EXPECT_EQ(Expected(1031, U32(0x3000), U32(9), U32(3), U32(0x31), U32(6), U32(4), Ptr(m_list)), Written());
}

// The surfaces' long records: the config once more, or a zero, ahead of its attributes.
TEST_F(EglConfigs, SurfacesRecordTheirConfig)
{
    HostKnowsThree();
    Record();
    Bytes const list = Joined(Ptr(m_list), Words({3, 0x3024, 8, 0x3038}));
    Fake().Result("eglCreatePbufferSurface", Handle(9));
    Egl::_eglCreatePbufferSurface(Handle(3), Handle(4), m_list, nullptr);
    EXPECT_EQ(Without(Expected(1004, U32(0x3000), U32(9), U32(3), U32(4), list, U32(4), U32(0), Three()), 46),
              Without(Written(), 46));
    Fake().Result("eglCreatePixmapSurface", Handle(9));
    Egl::_eglCreatePixmapSurface(Handle(3), Handle(4), Handle(6), m_list, nullptr);
    EXPECT_EQ(
        Without(Expected(1005, U32(0x3000), U32(9), U32(3), U32(4), U32(6), U32(0), list, U32(0), Three()),
                50),
        Without(Written(), 50));
    Fake().Result("eglCreatePbufferFromClientBuffer", Handle(9));
    Egl::_eglCreatePbufferFromClientBuffer(Handle(3), 0x31, Handle(6), Handle(4), m_list);
    EXPECT_EQ(
        Without(Expected(1031, U32(0x3000), U32(9), U32(3), U32(0x31), U32(6), U32(4), list, U32(0), Three()),
                50),
        Without(Written(), 50));
}

// A window's record holds the two fields, the saved attributes, the config once more and the host's
// attributes.
TEST_F(EglConfigs, AWindowRecordsSavedAndPresentAttributes)
{
    HostKnowsThree();
    RecordWithHostOff();
    int saved[] = {0x3023, 5, 0x3038};
    EXPECT_EQ(Handle(0x66), Egl::_eglCreateWindowSurface(Handle(3), Handle(4), Handle(6), m_list,
                                                         Handle(0x66), saved, 640, 480));
    size_t const unknown = 6 + 7 * 4 + 20 + 20 + 4;
    EXPECT_EQ(Without(Expected(1006, U32(0x3000), U32(0x66), U32(3), U32(4), U32(6), U32(640), U32(480),
                               Ptr(m_list), Words({3, 0x3024, 8, 0x3038}), Ptr(saved),
                               Words({3, 0x3023, 5, 0x3038}), U32(4), U32(0), Three()),
                      unknown),
              Without(Written(), unknown));
}

// The value of a config kept for the context stands behind it, in both forms; it is kept ahead of the range.
TEST_F(EglConfigs, MakeCurrentRecordsTheContextsConfig)
{
    HostKnowsThree();
    Play();
    Fake().On("eglQueryContext", [](Call const& call) {
        EXPECT_EQ(EGL_CONFIG_ID, call.Argument<int>(2));
        *call.Pointer<int>(3) = 44;
    });
    Egl::_eglMakeCurrent(Handle(3), Handle(1), Handle(2), Handle(0x55));
    RecordWithoutData();
    Egl::_eglMakeCurrent(Handle(3), Handle(1), Handle(2), Handle(0x55));
    size_t const unknown = 6 + 7 * 4;
    Bytes const expected = Without(
        Expected(1018, U32(0x3000), U32(1), U32(3), U32(1), U32(2), U32(0x55), U32(44), U32(0), Three()),
        unknown);
    EXPECT_EQ(expected, Without(Written(), unknown));
    Record();
    Egl::_eglMakeCurrent(Handle(3), Handle(1), Handle(2), Handle(0x55));
    EXPECT_EQ(expected, Without(Written(), unknown));
}

// A host that does not answer leaves 5, and its display is the current one, not the call's.
TEST_F(EglConfigs, MakeCurrentKeepsFiveWithoutAnAnswer)
{
    Play();
    Fake().Result("eglGetCurrentDisplay", Handle(0x99));
    Fake().Result("eglQueryContext", 0u);
    Egl::_eglMakeCurrent(Handle(3), Handle(1), Handle(2), Handle(0x55));
    auto const* const context = CTraceRecordManager::m_EglFileState->m_sContexts.Find(Handle(0x55));
    ASSERT_NE(nullptr, context);
    EXPECT_EQ(Handle(5), context->config);
    EXPECT_EQ(Handle(0x99), context->display);
}

// Recording adds an entry for a context that nobody knows, the null one too.
TEST_F(EglConfigs, MakeCurrentAddsAnEntryForAnyContext)
{
    Record();
    Egl::_eglMakeCurrent(Handle(3), nullptr, nullptr, nullptr);
    EXPECT_EQ(1, CTraceRecordManager::m_EglFileState->m_sContexts.Count());
    Bytes const record = Written();
    ASSERT_LT(34u, record.size());
    EXPECT_EQ(U32(0), Bytes(record.begin() + 30, record.begin() + 34));
}
