// The tables of the host's entries: when they are made, what marks they leave, and how extensions enter them.
#include "host/hosts.h"
#include "tests/wrappers/functions.h"
#include "tests/wrappers/recorder.h"

class HostTables : public Recorder
{
protected:
    HostTables() { ForgetHosts(); }

    static bool Has(std::string const& log, std::string const& text)
    {
        return log.find(text) != std::string::npos;
    }

    // Asks the wrapper for a name, as an application does.
    static AnyFunction Ask(char const* name)
    {
        AnyFunction function = nullptr;
        Printed([&] { function = Egl::_eglGetProcAddress(name); });
        return function;
    }
    template <typename T>
    static AnyFunction Any(T* function)
    {
        return reinterpret_cast<AnyFunction>(function);
    }
    static void UseLibrary(CNEBTString STraceConfig::*path, std::string const& library)
    {
        STraceConfig::Instance().*path = library.c_str();
    }
};

// A table exists from its first use on; asking whether it does makes none.
TEST_F(HostTables, AreMadeOnFirstUse)
{
    EXPECT_FALSE(EglIsInit());
    EXPECT_FALSE(Es1IsInit());
    EXPECT_FALSE(Es2IsInit());
    Printed([] {
        SEs2Host* const table = Es2Host();
        EXPECT_EQ(table, Es2Host());
    });
    EXPECT_FALSE(EglIsInit());
    EXPECT_FALSE(Es1IsInit());
    EXPECT_TRUE(Es2IsInit());
    Printed([] { EXPECT_NE(nullptr, Es1Host()); });
    EXPECT_TRUE(Es1IsInit());
}

// Every core entry is the host's, every extension entry null.
TEST_F(HostTables, HoldCoreEntriesFromTheStart)
{
    Printed([] {
        EXPECT_EQ(Fake().Entry("egl", "eglWaitGL"), Any(EglHost()->eglWaitGL));
        EXPECT_EQ(Fake().Entry("es1", "glFlush"), Any(Es1Host()->glFlush));
        EXPECT_EQ(Fake().Entry("es2", "glFlush"), Any(Es2Host()->glFlush));
        EXPECT_EQ(Fake().Entry("es2", "glViewport"), Any(Es2Host()->glViewport));
    });
    EXPECT_EQ(nullptr, EglHost()->eglCreateImageKHR);
    EXPECT_EQ(nullptr, Es1Host()->glMapBufferOES);
    EXPECT_EQ(nullptr, Es2Host()->glMapBufferOES);
    EXPECT_EQ(nullptr, Es2Host()->glGetnUniformivEXT);
}

// The fields stand in the order of the IDs behind the loader's own: 34 and 11, 145 and 151, 142 and 152.
TEST_F(HostTables, HaveOneFieldForEachFunction)
{
    size_t const base = sizeof(SHostLib);
    EXPECT_EQ(base + 45 * sizeof(AnyFunction), sizeof(SEglHost));
    EXPECT_EQ(base + 296 * sizeof(AnyFunction), sizeof(SEs1Host));
    EXPECT_EQ(base + 294 * sizeof(AnyFunction), sizeof(SEs2Host));
}

// A thread that has fetched the table when the process exits finds its entry all the same.
TEST_F(HostTables, ADeletedTableCanStillBeRead)
{
    Printed([] {
        SEs2Host* const table = Es2Host();
        SEs2Host::s_pInstance.Reset(nullptr);
        EXPECT_EQ(Fake().Entry("es2", "glFlush"), Any(table->glFlush));
        EXPECT_NE(table, Es2Host());
        EXPECT_EQ(Fake().Entry("es2", "glFlush"), Any(table->glFlush));
    });
}

// EGL and GLES2 are marked as used by each fetch while the shadow state follows the calls.
TEST_F(HostTables, EglAndEs2AreMarkedWhileTheShadowFollows)
{
    Record();
    Printed([] {
        EglHost();
        Es2Host();
    });
    EXPECT_FALSE(STraceConfig::m_bEGLUsed);
    EXPECT_FALSE(STraceConfig::m_bES2Used);
    Play();
    EglHost();
    EXPECT_TRUE(STraceConfig::m_bEGLUsed);
    EXPECT_FALSE(STraceConfig::m_bES2Used);
    Es2Host();
    EXPECT_TRUE(STraceConfig::m_bES2Used);
}

// GLES1 is marked when its table is made, and only then.
TEST_F(HostTables, Es1IsMarkedWhenItsTableIsMade)
{
    Record();
    Printed([] { Es1Host(); });
    EXPECT_TRUE(STraceConfig::m_bES1Used);
    STraceConfig::m_bES1Used = false;
    Play();
    Es1Host();
    EXPECT_FALSE(STraceConfig::m_bES1Used);
}

// A missing GLES1 library is ignorable, and said to be so: every GLES2 application runs into it.
TEST_F(HostTables, AMissingEs1LibraryIsIgnorable)
{
    UseLibrary(&STraceConfig::m_es1LibraryPath, "/nonexistent/libGLES_CM.so");
    std::string const log = Printed([] { EXPECT_TRUE(Es1Host()->LoadFailed()); });
    EXPECT_TRUE(Has(
        log, "NEBTRACE(M) Could not load Host library OGLES1. Please check library paths in nebtrace.cfg if "
             "you are not using Extensions.Ignored..\n"));
    EXPECT_FALSE(Has(log, "Error loading library"));
    EXPECT_FALSE(STraceConfig::m_bES1Used);
    EXPECT_EQ(nullptr, Es1Host()->FunctionPtrExchange("glFlush", Any(&Es1::_glFlush)));
    EXPECT_EQ(nullptr, Es1Host()->FunctionPtrExchange("glMapBufferOES", Any(&Es1::_glFlush)));
}

// So that GLES2 look-ups go on working.
TEST_F(HostTables, AMissingEs1LibraryDoesNotDisturbEs2)
{
    UseLibrary(&STraceConfig::m_es1LibraryPath, "/nonexistent/libGLES_CM.so");
    Record();
    EXPECT_EQ(Any(&Es2::_glMapBufferOES), Ask("glMapBufferOES"));
    EXPECT_EQ(Any(&Es2::_glFlush), Ask("glFlush"));
}

// A single core entry that the host lacks closes the GLES1 library and leaves the failure standing.
TEST_F(HostTables, AnEs1LibraryWithoutOneEntryFails)
{
    UseLibrary(&STraceConfig::m_es1LibraryPath, FakeLibrary("fakeGLESv1_without_glFogf"));
    std::string const log = Printed([] { EXPECT_TRUE(Es1Host()->LoadFailed()); });
    EXPECT_TRUE(Has(log, "NEBTRACE(M) Error loading library glFogf\n"));
    EXPECT_TRUE(Has(
        log, "NEBTRACE(M) NEBTrace ES1 - ERROR: failed to load entry points from host library\nPlease check "
             "library paths in nebtrace.cfg\n\n"));
    EXPECT_TRUE(Has(log, "Could not load Host library OGLES1."));
    EXPECT_EQ(nullptr, Es1Host()->glFogf);
    EXPECT_EQ(nullptr, Es1Host()->glMapBufferOES);
}

// The same for GLES2, whose failure flag is cleared again: the line of the accessor is never logged.
TEST_F(HostTables, AnEs2LibraryWithoutOneEntryClearsItsFailure)
{
    UseLibrary(&STraceConfig::m_es2LibraryPath, FakeLibrary("fakeGLESv2_without_glViewport"));
    std::string const log = Printed([] { EXPECT_FALSE(Es2Host()->LoadFailed()); });
    EXPECT_TRUE(Has(log, "NEBTRACE(M) Error loading library glViewport\n"));
    EXPECT_TRUE(Has(
        log, "NEBTRACE(M) NEBTrace ES2 - ERROR: failed to load entry points from host library\nPlease check "
             "library paths in nebtrace.cfg\n\n"));
    EXPECT_FALSE(Has(log, "OGLES2"));
}

// And for EGL, which says that it aborts, and does not.
TEST_F(HostTables, AnEglLibraryWithoutOneEntryFails)
{
    UseLibrary(&STraceConfig::m_eglLibraryPath, FakeLibrary("fakeEGL_without_eglWaitGL"));
    std::string const log = Printed([] { EXPECT_TRUE(EglHost()->LoadFailed()); });
    EXPECT_TRUE(Has(log, "NEBTRACE(M) Error loading library eglWaitGL\n"));
    EXPECT_TRUE(Has(
        log, "NEBTRACE(M) NEBTrace EGL - ERROR: failed to load entry points from host library\nPlease check "
             "library paths in nebtrace.cfg\n\nNEBTRACE(M) \nNEBTrace - aborting\n\n"));
}

// A library that does not open makes EGL and GLES2 log every look-up.
TEST_F(HostTables, AMissingLibraryLogsEveryLookUp)
{
    UseLibrary(&STraceConfig::m_es2LibraryPath, "/nonexistent/libGLESv2.so");
    std::string const log = Printed([] { EXPECT_FALSE(Es2Host()->LoadFailed()); });
    EXPECT_TRUE(Has(log, "NEBTRACE(M) Error loading library glActiveTexture\n"));
    EXPECT_TRUE(Has(log, "NEBTRACE(M) Error loading library glViewport\n"));
}

// An extension's pointer enters the table when the application asks for it, and the application gets the
// wrapper.
TEST_F(HostTables, AnExtensionEntersWhenAskedFor)
{
    Record();
    EXPECT_EQ(Any(&Egl::_eglCreateImageKHR), Ask("eglCreateImageKHR"));
    EXPECT_EQ(Fake().Entry("egl", "eglCreateImageKHR"), Any(EglHost()->eglCreateImageKHR));
}

// A name of both GL APIs fills both tables, and the application gets the GLES2 wrapper.
TEST_F(HostTables, ANameOfBothApisFillsBothTables)
{
    Record();
    EXPECT_EQ(Any(&Es2::_glMapBufferOES), Ask("glMapBufferOES"));
    AnyFunction const host = Fake().Entry("es2", "glMapBufferOES");
    EXPECT_EQ(host, Any(Es1Host()->glMapBufferOES));
    EXPECT_EQ(host, Any(Es2Host()->glMapBufferOES));
}

// A name that only GLES1 knows gives the GLES1 wrapper.
TEST_F(HostTables, ANameOfEs1GivesItsWrapper)
{
    Record();
    EXPECT_EQ(Any(&Es1::_glAlphaFuncxOES), Ask("glAlphaFuncxOES"));
    EXPECT_EQ(Fake().Entry("es1", "glAlphaFuncxOES"), Any(Es1Host()->glAlphaFuncxOES));
}

// A core name gives the wrapper and leaves the table as it was.
TEST_F(HostTables, ACoreNameLeavesTheTable)
{
    Record();
    Printed([] { Es2Host(); });
    AnyFunction const before = Any(Es2Host()->glClear);
    Fake().Offers("glClear", Any(&Es2::_glFlush));
    EXPECT_EQ(Any(&Es2::_glClear), Ask("glClear"));
    EXPECT_EQ(before, Any(Es2Host()->glClear));
}

// A name that the host knows and nobody wraps is handed out as it is: its calls pass unseen.
TEST_F(HostTables, AnUnwrappedNamePassesThrough)
{
    Record();
    Fake().Offers("glUnheardOfEXT", Any(&Es2::_glFlush));
    EXPECT_EQ(Any(&Es2::_glFlush), Ask("glUnheardOfEXT"));
}

// Names that no exchange fills pass through likewise, and their entries stay null.
TEST_F(HostTables, UnexchangedNamesPassThrough)
{
    Record();
    for (Function const& function : AllFunctions())
    {
        if (!(function.kind & kNotExchanged))
            continue;
        // A name may be filled in the other API's table.
        bool const isEs2 = function.library == "es2";
        Printed([&] {
            AnyFunction const host = Fake().Entry(function.library, function.name);
            AnyFunction const wrapper = isEs2 ? Es2Host()->FunctionPtrExchange(function.name.c_str(), host)
                                              : Es1Host()->FunctionPtrExchange(function.name.c_str(), host);
            EXPECT_EQ(nullptr, wrapper) << function.Title();
        });
    }
    EXPECT_EQ(nullptr, Es2Host()->glFenceSyncAPPLE);
    EXPECT_EQ(nullptr, Es2Host()->glGenQueriesEXT);
    EXPECT_EQ(nullptr, Es1Host()->glFenceSyncAPPLE);
    EXPECT_EQ(Fake().Entry("es2", "glGenQueriesEXT"), Ask("glGenQueriesEXT"));
}

// 10 entries of the GLES1 table and 14 of the GLES2 table are never filled.
TEST_F(HostTables, TheUnexchangedAreTwentyFour)
{
    size_t es1 = 0;
    size_t es2 = 0;
    for (Function const& function : AllFunctions())
        if (function.kind & kNotExchanged)
            ++(function.library == "es1" ? es1 : es2);
    EXPECT_EQ(10u, es1);
    EXPECT_EQ(14u, es2);
}

// Every name that a table knows is exchanged for its own wrapper, whose entry then holds the host's pointer.
TEST_F(HostTables, EveryKnownNameIsExchangedForItsWrapper)
{
    Printed([] {
        for (Function const& function : AllFunctions())
        {
            if (function.kind & kNotExchanged)
                continue;
            AnyFunction const host = Fake().Entry(function.library, function.name);
            char const* const name = function.name.c_str();
            AnyFunction const wrapper = function.library == "egl" ? EglHost()->FunctionPtrExchange(name, host)
                                        : function.library == "es1"
                                            ? Es1Host()->FunctionPtrExchange(name, host)
                                            : Es2Host()->FunctionPtrExchange(name, host);
            // A wrapper with trailing arguments is handed out under the API's signature.
            if (function.ApiArguments() == function.arguments.size())
                EXPECT_EQ(function.wrapper, wrapper) << function.Title();
            else
                EXPECT_NE(nullptr, wrapper) << function.Title();
        }
        EXPECT_EQ(nullptr, Es2Host()->FunctionPtrExchange("glUnheardOfEXT", nullptr));
    });
}

// A look-up is not a use of either GL API, even while the shadow follows the calls.
TEST_F(HostTables, ALookUpLeavesNoMark)
{
    Play();
    Ask("glMapBufferOES");
    EXPECT_FALSE(STraceConfig::m_bES1Used);
    EXPECT_FALSE(STraceConfig::m_bES2Used);
    EXPECT_TRUE(STraceConfig::m_bEGLUsed);
}

// A name that the host does not know gives null, a line, and a record with a null result.
TEST_F(HostTables, AnUnknownNameGivesNull)
{
    Record();
    Printed([] { EglHost(); });
    char const* const name = "glNothing";
    EXPECT_EQ("NEBTRACE(M) eglGetProcAddress Extension Error: glNothing\n",
              Printed([&] { EXPECT_EQ(nullptr, Egl::_eglGetProcAddress(name)); }));
    EXPECT_EQ(Expected(1016, U32(0x3000), U32(0), Ptr(name), U32(9), Chars("glNothing")), Written());
    EXPECT_FALSE(Es1IsInit());
}
