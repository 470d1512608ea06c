// The loader of the host libraries.
#include "host/host_lib.h"
#include "tests/wrappers/recorder.h"
#include "tests/wrappers/scratch_folder.h"
#include <filesystem>

using HostLib = Recorder;

namespace
{

bool Has(std::string const& log, std::string const& text) { return log.find(text) != std::string::npos; }

size_t CountOf(std::string const& log, std::string const& text)
{
    size_t count = 0;
    for (size_t at = log.find(text); at != std::string::npos; at = log.find(text, at + 1))
        ++count;
    return count;
}

}  // namespace

// A library that opens says so and nothing else.
TEST_F(HostLib, ALoadedLibraryIsAnnounced)
{
    std::string const path = FakeLibrary("fakeEGL");
    EXPECT_EQ("NEBTRACE(M) Loading Host library.... " + path + "\nNEBTRACE(M) Host Library Loaded: " + path +
                  "\n",
              Printed([&] {
                  SHostLib library(path.c_str());
                  EXPECT_FALSE(library.LoadFailed());
                  EXPECT_EQ(reinterpret_cast<void*>(Fake().Entry("egl", "eglWaitGL")),
                            library.GetFunction("eglWaitGL"));
              }));
}

// A name that the loader's search path does not find is tried in the working directory.
TEST_F(HostLib, APlainNameIsTriedInTheWorkingDirectory)
{
    ScratchFolder folder;
    std::filesystem::create_symlink(FakeLibrary("fakeEGL"), "libonlyhere.so");
    std::string const log = Printed([] {
        void* const handle = OpenLibrary("libonlyhere.so");
        ASSERT_NE(nullptr, handle);
        CloseLibrary(handle);
    });
    EXPECT_EQ(1u, CountOf(log, "NEBTRACE(W) ERROR: dlopen failed with error: "));
    EXPECT_TRUE(Has(log, " => libonlyhere.so\n"));
    EXPECT_TRUE(Has(log, "NEBTRACE(M) dlopen loaded (MOD PATH) ./libonlyhere.so\n"));
}

// A path that works without its last character loads, with the failed attempts logged.
TEST_F(HostLib, APathIsTriedWithoutItsLastCharacter)
{
    std::string const path = FakeLibrary("fakeEGL") + "1";
    std::string const log = Printed([&] {
        SHostLib library(path.c_str());
        EXPECT_FALSE(library.LoadFailed());
    });
    EXPECT_EQ(2u, CountOf(log, "dlopen failed with error: "));
    EXPECT_TRUE(Has(log, " => " + path + "\n"));
    EXPECT_TRUE(Has(log, " => ./" + path + "\n"));
    EXPECT_TRUE(Has(log, "NEBTRACE(M) Host Library Loaded: " + path + "\n"));
}

// What cannot be opened at all is logged with the full path, and the object stays an empty shell.
TEST_F(HostLib, AMissingLibraryLeavesAnEmptyShell)
{
    std::string const log = Printed([] {
        SHostLib library("/nonexistent/libnothing.so");
        EXPECT_TRUE(library.LoadFailed());
        EXPECT_EQ(nullptr, library.GetFunction("glFlush"));
        library.CloseLib();
        library.CloseLib();
    });
    EXPECT_EQ(4u, CountOf(log, "dlopen failed with error: "));
    EXPECT_TRUE(Has(
        log, "NEBTRACE(M) RECORD. Could not load Host library.... /nonexistent/libnothing.so Please check "
             "library paths in nebtrace.cfg\n"));
    EXPECT_TRUE(Has(log, "NEBTRACE(M) Error loading library glFlush\n"));
}

// A path of any length is handled.
TEST_F(HostLib, ALongPathIsNoTrouble)
{
    std::string const path = "/" + std::string(2000, 'x');
    Printed([&] { EXPECT_EQ(nullptr, OpenLibrary(path.c_str())); });
}

// The empty path, whose last character cannot be taken off, ends in one state or the other, not in a crash.
TEST_F(HostLib, AnEmptyPathIsNoTrouble)
{
    std::string const log = Printed([] { SHostLib library(""); });
    EXPECT_TRUE(Has(log, "NEBTRACE(M) Loading Host library.... \n"));
    EXPECT_NE(Has(log, "Host Library Loaded: "), Has(log, "RECORD. Could not load Host library"));
}

// An unknown name is a failure of the library, logged once for each look-up.
TEST_F(HostLib, AMissingEntryIsAFailure)
{
    std::string const log = Printed([] {
        SHostLib library(FakeLibrary("fakeEGL").c_str());
        EXPECT_EQ(nullptr, library.GetFunction("eglNothing"));
        EXPECT_TRUE(library.LoadFailed());
    });
    EXPECT_EQ(1u, CountOf(log, "NEBTRACE(M) Error loading library eglNothing\n"));
}

// With a closed library every look-up logs a line.
TEST_F(HostLib, AClosedLibraryHasNoEntries)
{
    std::string const log = Printed([] {
        SHostLib library(FakeLibrary("fakeEGL").c_str());
        library.CloseLib();
        EXPECT_EQ(nullptr, library.GetFunction("eglWaitGL"));
        EXPECT_EQ(nullptr, library.GetFunction("eglWaitGL"));
        EXPECT_TRUE(library.LoadFailed());
    });
    EXPECT_EQ(2u, CountOf(log, "Error loading library eglWaitGL"));
}

// The free functions are safe on nothing.
TEST_F(HostLib, NoHandleHasNoEntries) { EXPECT_EQ(nullptr, GetLibFunction(nullptr, "glFlush")); }
