// The configuration file.
#include "tests/wrappers/recorder.h"
#include "tests/wrappers/scratch_folder.h"
#include <dlfcn.h>
#include <unistd.h>

class Config : public Recorder
{
protected:
    // Reads a configuration of this text; returns what was logged.
    std::string Read(std::string const& text)
    {
        m_folder.Write("nebtrace.cfg", text);
        // What a reading starts from.
        STraceConfig::m_bRecordData = false;
        STraceConfig::m_ui32EndFrame = 0;
        STraceConfig::m_debugInfo = 1;
        return Printed([] { STraceConfig::Instance().Read("nebtrace.cfg"); });
    }
    STraceConfig& Settings() { return STraceConfig::Instance(); }
    ScratchFolder& Folder() { return m_folder; }

private:
    ScratchFolder m_folder;
};

// An empty file records frame 0 alone, without contents.
TEST_F(Config, AnEmptyFileRecordsFrameZero)
{
    Read("");
    EXPECT_TRUE(STraceConfig::m_recordEnable);
    EXPECT_EQ(0u, STraceConfig::m_ui32StartFrame);
    EXPECT_EQ(0u, STraceConfig::m_ui32EndFrame);
    EXPECT_FALSE(STraceConfig::m_bRecordData);
    EXPECT_TRUE(STraceConfig::m_saveFileToDisk);
    EXPECT_EQ(-1, STraceConfig::m_i32SwapInterval);
}

// Every key, in its section or another, with blanks around everything.
TEST_F(Config, EveryKeyIsRead)
{
    Read("[host]\n"
         "EglLibraryPath = /a/libEGL.so\n"
         "Es1LibraryPath=/a/libGLES_CM.so\n"
         "  Es2LibraryPath = /a/libGLESv2.so  \n"
         "[record]\n"
         "TraceFile = out_%pid.nebt\n"
         "RecordData = 1\n"
         "SaveFrameBuffer = 1\n"
         "StartFrame = 3\n"
         "EndFrame = 12\n"
         "SaveFileToDisk = 0\n"
         "ProcessNameExclude = one\n"
         "ProcessNameExclude = two\n"
         "ProcessNameWrite = three\n"
         "ExitOnLastFrame = true\n"
         "DebugInfo = 2\n"
         "SwapInterval = 0\n"
         "NetworkWait = 1\n"
         "OptimizeRS = 1\n"
         "FileWindow = 16\n");
    EXPECT_STREQ("/a/libEGL.so", Settings().m_eglLibraryPath.c_str());
    EXPECT_STREQ("/a/libGLES_CM.so", Settings().m_es1LibraryPath.c_str());
    EXPECT_STREQ("/a/libGLESv2.so", Settings().m_es2LibraryPath.c_str());
    EXPECT_STREQ("out_%pid.nebt", STraceConfig::m_traceOutfilePath.c_str());
    EXPECT_TRUE(STraceConfig::m_bRecordData);
    EXPECT_TRUE(CTraceRecordManager::IsRecordingData());
    EXPECT_TRUE(STraceConfig::m_saveFrameBuffer);
    EXPECT_EQ(3u, STraceConfig::m_ui32StartFrame);
    EXPECT_EQ(12u, STraceConfig::m_ui32EndFrame);
    EXPECT_FALSE(STraceConfig::m_saveFileToDisk);
    EXPECT_STREQ("neb.tools.NEBTraceApp;one;two", STraceConfig::m_processNameExclude.c_str());
    EXPECT_STREQ("three", STraceConfig::m_processNameWrite.c_str());
    EXPECT_TRUE(STraceConfig::m_exitAfterLastFrame);
    EXPECT_EQ(2, STraceConfig::m_debugInfo);
    EXPECT_EQ(0, STraceConfig::m_i32SwapInterval);
    EXPECT_TRUE(STraceConfig::m_bNetworkWait);
    EXPECT_TRUE(STraceConfig::m_optimizationRS);
    EXPECT_TRUE(STraceConfig::m_optimizationRSWasSet);
    EXPECT_EQ(16, STraceConfig::m_fileWindow);
}

// On purpose: a value of 0 still records contents, and only the header tells; only an absent key turns them
// off.
TEST_F(Config, ThePresenceOfRecordDataTurnsContentsOn)
{
    Read("RecordData = 0\n");
    EXPECT_TRUE(STraceConfig::m_bRecordData);
    EXPECT_FALSE(CTraceRecordManager::IsRecordingData());
}

// A truth value is false only if it starts with a zero digit.
TEST_F(Config, OnlyALeadingZeroIsFalse)
{
    Read("ExitOnLastFrame = false\nNetworkWait = 0x1\nSaveFrameBuffer = 00\n");
    EXPECT_TRUE(STraceConfig::m_exitAfterLastFrame);
    EXPECT_FALSE(STraceConfig::m_bNetworkWait);
    EXPECT_FALSE(STraceConfig::m_saveFrameBuffer);
}

// Comments, section headers and lines without "=" say nothing, keys are told apart by case, unknown ones are
// passed over without a word.
TEST_F(Config, LinesThatSayNothing)
{
    Read("# StartFrame = 1\n"
         "' StartFrame = 2\n"
         "[StartFrame = 3]\n"
         "[StartFrame = 4\n"
         "StartFrame 5\n"
         "startframe = 6\n"
         "Unknown = 7\n"
         "\n"
         "   \t\n"
         "= 8\n"
         "=\n"
         "DebugInfo =\n");
    EXPECT_EQ(0u, STraceConfig::m_ui32StartFrame);
    EXPECT_EQ(0, STraceConfig::m_debugInfo);
}

// Sections have no effect: a key may stand in any.
TEST_F(Config, SectionsHaveNoEffect)
{
    Read("[host]\nStartFrame = 4\n[nonsense]\nEndFrame = 5\n");
    EXPECT_EQ(4u, STraceConfig::m_ui32StartFrame);
    EXPECT_EQ(5u, STraceConfig::m_ui32EndFrame);
}

// The value is all that stands behind the first "=", and a number's tail is dropped.
TEST_F(Config, TheFirstEqualsSignDivides)
{
    Read("TraceFile = a=b.nebt\r\nStartFrame = 12abc\nEndFrame = none\n");
    EXPECT_STREQ("a=b.nebt", STraceConfig::m_traceOutfilePath.c_str());
    EXPECT_EQ(12u, STraceConfig::m_ui32StartFrame);
    EXPECT_EQ(0u, STraceConfig::m_ui32EndFrame);
}

// On purpose: behind a key and a value only blanks and line ends are stripped, so that a tab makes it another
// key.
TEST_F(Config, ATabBehindAKeyIsPartOfIt)
{
    Read("StartFrame\t= 4\nEndFrame =\t5\n");
    EXPECT_EQ(0u, STraceConfig::m_ui32StartFrame);
    EXPECT_EQ(5u, STraceConfig::m_ui32EndFrame);
}

// A line is read in pieces of 499 characters, so that the second piece of a long one is a line of its own.
TEST_F(Config, ALongLineCountsAsSeveral)
{
    Read("#" + std::string(498, 'x') + "StartFrame = 9\n");
    EXPECT_EQ(9u, STraceConfig::m_ui32StartFrame);
}

// The last line needs no line end.
TEST_F(Config, TheLastLineNeedsNoEnd)
{
    Read("StartFrame = 9");
    EXPECT_EQ(9u, STraceConfig::m_ui32StartFrame);
}

// A GLES3 path of more than two characters takes the place of the GLES2 path.
TEST_F(Config, AnEs3PathReplacesTheEs2PathFromThreeCharactersOn)
{
    Read("Es2LibraryPath = two.so\nEs3LibraryPath = ab\n");
    EXPECT_STREQ("two.so", Settings().m_es2LibraryPath.c_str());
    EXPECT_STREQ("ab", Settings().m_es3LibraryPath.c_str());
    Read("Es2LibraryPath = two.so\nEs3LibraryPath = abc\n");
    EXPECT_STREQ("abc", Settings().m_es2LibraryPath.c_str());
}

// The network's settings count only behind the line that turns it on.
TEST_F(Config, NetworkSettingsAheadOfNetworkHaveNoEffect)
{
    int const before = STraceConfig::m_bufferSizeNetwork;
    Read("NetworkBufferSize = 1024\nNetworkSendData = 1\n");
    EXPECT_EQ(before, STraceConfig::m_bufferSizeNetwork);
    EXPECT_FALSE(STraceConfig::m_sendOverNetwork);
}

// Network on brings the optimisation of the render state with it.
TEST_F(Config, NetworkBringsTheOptimisation)
{
    Read("Network = 1\nNetworkBufferSize = 1024\n");
    EXPECT_TRUE(STraceConfig::m_optimizationRS);
    EXPECT_EQ(1024, STraceConfig::m_bufferSizeNetwork);
    STraceConfig::m_bufferSizeNetwork = 256;
}

// A key of its own keeps the optimisation off, wherever it stands.
TEST_F(Config, OptimizeRsWinsOverNetworkWhereverItStands)
{
    Read("Network = 1\nOptimizeRS = 0\n");
    EXPECT_FALSE(STraceConfig::m_optimizationRS);
    STraceConfig::m_optimizationRSWasSet = false;
    Read("OptimizeRS = 0\nNetwork = 1\n");
    EXPECT_FALSE(STraceConfig::m_optimizationRS);
}

// Profiling excludes recording: contents and pixels go off with it, the header's flags stay as read.
TEST_F(Config, ProfilingDisablesRecording)
{
    std::string const log = Read("Profile = 1\nRecordData = 1\nSaveFrameBuffer = 1\n");
    EXPECT_FALSE(STraceConfig::m_recordEnable);
    EXPECT_FALSE(STraceConfig::m_bRecordData);
    EXPECT_FALSE(STraceConfig::m_saveFrameBuffer);
    EXPECT_TRUE(CTraceRecordManager::IsRecordingData());
    EXPECT_NE(std::string::npos, log.find("NEBTRACE(M) Profiling is enabled, disabling recording.\n"));
}

// What is read is logged, in this order.
TEST_F(Config, ReadingLogsWhatItFound)
{
    std::string const log = Read("EglLibraryPath = e\nEs1LibraryPath = 1\nEs2LibraryPath = 2\n");
    EXPECT_EQ("NEBTRACE(M) The current working directory is " + Folder().Path() +
                  "\n"
                  "NEBTRACE(M) Config file found: " +
                  Folder().Path() +
                  "/nebtrace.cfg\n\n"
                  "NEBTRACE(M) NetworkControl(I): Disabled\n"
                  "NEBTRACE(M) Config File HostEglLibPath: e\n"
                  "NEBTRACE(M) Config File HostEs1LibPath: 1\n"
                  "NEBTRACE(M) Config File HostEs2LibPath: 2\n"
                  "NEBTRACE(M) Config File HostEs3LibPath: \n",
              log);
}

// Without a configuration in the working directory or the system's folder the application ends here.
TEST_F(Config, WithoutAnyFileTheProcessEnds)
{
    ASSERT_NE(0, access("/etc/nebtrace.cfg", F_OK)) << "the machine has a configuration of its own";
    EXPECT_EXIT(STraceConfig::Instance().Read("nebtrace.cfg"), testing::ExitedWithCode(255), "");
}

// The template names the paths in use and a range of two frames.
TEST_F(Config, TheTemplateIsWritten)
{
    Settings().m_eglLibraryPath = "e.so";
    Settings().m_es1LibraryPath = "1.so";
    Settings().m_es2LibraryPath = "2.so";
    STraceConfig::m_traceOutfilePath = "t.nebt";
    EXPECT_EQ("NEBTRACE(M) Writing to File \n\n"
              "NEBTRACE(M) Writing to file complete, please check host library paths.\n\n",
              Printed([&] { EXPECT_TRUE(Settings().Write("template.cfg")); }));
    EXPECT_EQ("[host]\n"
              "EglLibraryPath = e.so\n"
              "Es1LibraryPath = 1.so\n"
              "Es2LibraryPath = 2.so\n"
              "\n"
              "[record]\n"
              "TraceFile = t.nebt\n"
              "RecordData = 0\n"
              "StartFrame = 0\n"
              "EndFrame = 1\n"
              "\n",
              Folder().Read("template.cfg"));
    EXPECT_EQ("NEBTRACE(M) Writing to File \n\n",
              Printed([&] { EXPECT_FALSE(Settings().Write("/nonexistent/folder/template.cfg")); }));
}

// Start-up opens the file that the configuration names and writes its header.
TEST_F(Config, InitializeOpensTheNamedFile)
{
    Folder().Write("nebtrace.cfg", "TraceFile = named.nebt\nRecordData = 1\n");
    std::string const log = Printed([] { EXPECT_TRUE(CTraceRecordManager::Initialize()); });
    EXPECT_NE(std::string::npos, log.find("NEBTRACE(M) Trace file Open in: named.nebt\n"));
    std::string const header = Folder().Read("named.nebt");
    ASSERT_EQ(62u, header.size());
    EXPECT_EQ(1, header[16]);
}

// A file that cannot be opened is told of; the process runs on.
TEST_F(Config, InitializeRunsOnWithoutAFile)
{
    Folder().Write("nebtrace.cfg", "TraceFile = /nonexistent/folder/named.nebt\n");
    std::string const log = Printed([] { EXPECT_TRUE(CTraceRecordManager::Initialize()); });
    EXPECT_NE(std::string::npos, log.find("NEBTRACE(M) ERROR: Failed to open record trace file.\n"));
}

// On purpose: the default libraries are mapped with global visibility before any configuration is read, and
// stay.
TEST_F(Config, TheDefaultLibrariesAreVisibleToAll)
{
    EXPECT_EQ(reinterpret_cast<void*>(Fake().Entry("egl", "eglWaitGL")), dlsym(RTLD_DEFAULT, "eglWaitGL"));
    EXPECT_EQ(reinterpret_cast<void*>(Fake().Entry("es1", "glFogf")), dlsym(RTLD_DEFAULT, "glFogf"));
    EXPECT_EQ(reinterpret_cast<void*>(Fake().Entry("es2", "glUseProgram")),
              dlsym(RTLD_DEFAULT, "glUseProgram"));
}
