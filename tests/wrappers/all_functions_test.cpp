// What holds for every function of the three APIs: its wrapper, called with distinct arguments, against the
// reader's layout of its record. Neither is derived from the other.
#include "tests/wrappers/every_wrapper.h"
#include <set>

using nebtrace::DecodedCall;
using nebtrace::Form;
using nebtrace::RecordSpec;

// A function is a line in the table, a wrapper (which the table declares, so that a missing one does not
// link) and a layout. This fails when the layout was forgotten, or stands for no function.
TEST_F(EveryWrapper, EachHasALayoutAndEachLayoutAFunction)
{
    EXPECT_EQ(std::vector<std::string>(), nebtrace::LayoutFaults());
    std::set<std::string> functions;
    for (Function const& function : AllFunctions())
    {
        RecordSpec const* const spec = LayoutOf(function);
        ASSERT_NE(nullptr, spec) << function.Title();
        EXPECT_EQ(function.name, spec->name);
        EXPECT_TRUE(functions.insert(function.Title()).second) << function.Title();
    }
    EXPECT_EQ(functions.size(), nebtrace::AllRecords().size());
    EXPECT_EQ(45u + 296u + 294u, functions.size());
}

// With contents: every byte of the record is known to the layout, and every field is what was passed.
TEST_F(EveryWrapper, RecordTheirArgumentsAndContents)
{
    for (Function const& function : AllFunctions())
    {
        SCOPED_TRACE(function.Title());
        Record();
        Outcome const outcome = Run(function);
        DecodedCall call;
        ASSERT_TRUE(DecodeOnly(function, outcome.record, Form::Long, call));
        ExpectHead(function, call, NoErrorOf(function));
        ExpectResult(function, call, outcome.scripted);
        ExpectArguments(function, outcome, call);
        ExpectOrder(function, call);
        ExpectContents(function, outcome, call);
        ExpectGatedArraysFilled(function, call);
    }
}

// Without contents: every pointer argument is its bare word.
TEST_F(EveryWrapper, RecordBarePointersWithoutData)
{
    for (Function const& function : AllFunctions())
    {
        SCOPED_TRACE(function.Title());
        RecordWithoutData();
        Outcome const outcome = Run(function);
        DecodedCall call;
        ASSERT_TRUE(DecodeOnly(function, outcome.record,
                               LayoutOf(function)->oneForm ? Form::Long : Form::Short, call));
        ExpectHead(function, call, NoErrorOf(function));
        ExpectResult(function, call, outcome.scripted);
        ExpectArguments(function, outcome, call);
        ExpectOrder(function, call);
    }
}

// A host error stands in the record, and what the host did not fill is not recorded.
TEST_F(EveryWrapper, RecordAHostErrorAndEmptyOutputs)
{
    for (Function const& function : AllFunctions())
    {
        if (HasOwnResult(function))
            continue;
        SCOPED_TRACE(function.Title());
        Record();
        HostFails(ErrorOf(function));
        Outcome const outcome = Run(function);
        DecodedCall call;
        Form const form = IsOddReadnPixels(function) ? Form::Short : Form::Long;
        ASSERT_TRUE(DecodeOnly(function, outcome.record, form, call));
        ExpectHead(function, call, ErrorOf(function));
        ExpectResult(function, call, outcome.scripted);
        ExpectArguments(function, outcome, call);
        ExpectContents(function, outcome, call);
        ExpectGatedArraysEmpty(function, call);
    }
}

// An extension that the host lacks is recorded all the same, without error, with the default result and empty
// outputs, and nothing runs.
TEST_F(EveryWrapper, RecordAMissingExtension)
{
    for (Function const& function : AllFunctions())
    {
        if (!(function.kind & kExtension))
            continue;
        SCOPED_TRACE(function.Title());
        function.setEntry(nullptr);
        Record();
        HostFails(ErrorOf(function));
        Outcome const outcome = Run(function);
        DecodedCall call;
        ASSERT_TRUE(DecodeOnly(function, outcome.record, Form::Long, call));
        EXPECT_EQ(0u, HostCalls(function.name));
        ExpectHead(function, call, NoErrorOf(function));
        ExpectResult(function, call, function.defaultResult);
        ExpectReturned(function, outcome, function.defaultResult);
        ExpectArguments(function, outcome, call);
        ExpectGatedArraysEmpty(function, call);
        Fake().HostFails(0);
    }
}

// With the host call off, as in a snapshot, the record carries no error and the result that is to be
// replayed.
TEST_F(EveryWrapper, RecordWithTheHostCallOff)
{
    for (Function const& function : AllFunctions())
    {
        SCOPED_TRACE(function.Title());
        RecordWithHostOff();
        HostFails(ErrorOf(function));
        Outcome const outcome = Run(function);
        DecodedCall call;
        ASSERT_TRUE(DecodeOnly(function, outcome.record, Form::Long, call));
        EXPECT_EQ(0u, HostCalls(function.name));
        ExpectHead(function, call, NoErrorOf(function));
        ExpectResult(function, call, ResultWithoutHost(function, outcome));
        ExpectReturned(function, outcome, ResultWithoutHost(function, outcome));
        ExpectArguments(function, outcome, call);
        ExpectGatedArraysEmpty(function, call);
        Fake().HostFails(0);
    }
}

// Ahead of the recorded frames nothing is written; the host gets the call as it was made, once, and its
// answer goes back.
TEST_F(EveryWrapper, OnlyPassCallsOnAheadOfTheRecordedFrames)
{
    for (Function const& function : AllFunctions())
    {
        SCOPED_TRACE(function.Title());
        Play();
        Outcome const outcome = Run(function);
        EXPECT_EQ(Bytes(), outcome.record);
        ExpectReturned(function, outcome, outcome.scripted);
        std::vector<Call> const calls = Fake().Calls(function.name);
        if (HasOwnResult(function))
            continue;
        ASSERT_EQ(1u, calls.size());
        ExpectHostGot(function, outcome, calls.front());
    }
}

// The default result of every function that gives an EGLBoolean is 1, of every other 0: a program that runs
// under an override must not take a held call for a failed one.
TEST_F(EveryWrapper, DefaultToTrueWhereEglAnswersTruth)
{
    std::set<std::string> const truths = {"eglChooseConfig",    "eglCopyBuffers",
                                          "eglDestroyContext",  "eglDestroySurface",
                                          "eglGetConfigAttrib", "eglGetConfigs",
                                          "eglInitialize",      "eglMakeCurrent",
                                          "eglQueryContext",    "eglQuerySurface",
                                          "eglSwapBuffers",     "eglTerminate",
                                          "eglWaitGL",          "eglWaitNative",
                                          "eglBindTexImage",    "eglReleaseTexImage",
                                          "eglSurfaceAttrib",   "eglSwapInterval",
                                          "eglBindAPI",         "eglReleaseThread",
                                          "eglWaitClient",      "eglSetSwapRectangleANDROID",
                                          "eglLockSurfaceKHR",  "eglUnlockSurfaceKHR",
                                          "eglDestroyImageKHR", "eglDestroySyncKHR",
                                          "eglSignalSyncKHR",   "eglGetSyncAttribKHR"};
    EXPECT_EQ(28u, truths.size());
    for (Function const& function : AllFunctions())
        EXPECT_EQ(truths.count(function.name), function.defaultResult) << function.name;
}
