// The trace file: header, footer, names and failures.
#include "tests/wrappers/recorder.h"
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

using TraceFile = Recorder;

namespace
{

std::string Contents(std::string const& path)
{
    std::ifstream file(path, std::ios::binary);
    return std::string((std::istreambuf_iterator<char>(file)), std::istreambuf_iterator<char>());
}

bool Exists(std::string const& path) { return access(path.c_str(), F_OK) == 0; }

// Opens a file of the given name in the scratch folder, which the test removes.
class ScratchTrace
{
public:
    explicit ScratchTrace(std::string const& name) : m_path(testing::TempDir() + name) {}
    ~ScratchTrace() { std::remove(m_path.c_str()); }
    bool Open() const
    {
        bool opened = false;
        Printed([&] { opened = CTraceRecordManager::TraceOpen(m_path.c_str()); });
        return opened;
    }
    std::string const& Path() const { return m_path; }

private:
    std::string const m_path;
};

// A limit on the size of files, for as long as it stands.
class FileSizeLimit
{
public:
    explicit FileSizeLimit(rlim_t size)
    {
        getrlimit(RLIMIT_FSIZE, &m_before);
        rlimit const limit{size, m_before.rlim_max};
        setrlimit(RLIMIT_FSIZE, &limit);
    }
    ~FileSizeLimit() { setrlimit(RLIMIT_FSIZE, &m_before); }
    FileSizeLimit(FileSizeLimit const&) = delete;
    FileSizeLimit& operator=(FileSizeLimit const&) = delete;

private:
    rlimit m_before{};
};

bool WriteHeader()
{
    bool written = false;
    Printed([&] { written = CTraceRecordManager::WriteFileHeader(); });
    return written;
}

}  // namespace

// The header's 62 bytes, for a recording with contents and without pixels.
TEST_F(TraceFile, HeaderByteByByte)
{
    CTraceRecordManager::m_FileInit->m_bRecordData = true;
    EXPECT_TRUE(WriteHeader());
    Bytes const expected = {
        'N',  'E',  'B',  'T',  'r', 'a', 'c', 'e',  // magic
        0x00, 0x01, 0xFE, 0xFF,                      // marker
        14,   0,    0,    0,                         // version
        1,                                           // record data
        0,                                           // frame buffer
        1,    0,    0,    0,                         //
        31,                                          // length of the type table
        4,    0xFC, 4,    4,    4,   4,   4,   4,   4,    4,    4,    4,    4, 1,    4,    0xFF,  //
        0xFE, 0xFC, 0xFC, 1,    2,   4,   4,   4,   0xFC, 0xFC, 0xFC, 0xFC, 0, 0xFC, 0xFC,        //
        0,    0,    0,    0,                                                                      //
        0,    0,    0,    0};
    EXPECT_EQ(62u, expected.size());
    EXPECT_EQ(expected, Written());
    EXPECT_EQ(62u, CTraceRecordManager::m_uBytesWritten);
}

// The flag of the frame buffer stands behind that of the contents.
TEST_F(TraceFile, HeaderFlags)
{
    CTraceRecordManager::m_FileInit->m_bFrameBuffer = true;
    WriteHeader();
    Bytes const header = Written();
    ASSERT_EQ(62u, header.size());
    EXPECT_EQ(0, header[16]);
    EXPECT_EQ(1, header[17]);
    EXPECT_FALSE(CTraceRecordManager::IsRecordingData());
}

// The footer: two marks and the position of the snapshot.
TEST_F(TraceFile, FooterByteByByte)
{
    EXPECT_TRUE(CTraceRecordManager::WriteFileFooter(0x1122334455667788));
    EXPECT_EQ((Bytes{0x13, 0x10, 0x88, 0x77, 0x66, 0x55, 0x44, 0x33, 0x22, 0x11}), Written());
}

// The bytes are the same with each write flushed and through a mapping, whose room is cut off at the close.
TEST_F(TraceFile, AMappedFileHasTheSameBytes)
{
    std::vector<unsigned char> const texels(300000, 0x5A);
    auto const recorded = [&](int window) {
        ScratchTrace const trace("mapped_" + std::to_string(getpid()) + ".nebt");
        STraceConfig::m_fileWindow = window;
        EXPECT_TRUE(trace.Open());
        CTraceRecordManager::m_u64LastThreadId = 0;
        CTraceRecordManager::m_currentFileIndex = 0;
        WriteHeader();
        Record();
        for (int i = 0; i < 10; ++i)
        {
            Es2::_glClear(GL_COLOR_BUFFER_BIT);
            Es2::_glBufferData(GL_ARRAY_BUFFER, 60000 * i / 2, texels.data(), GL_STATIC_DRAW);
        }
        CTraceRecordManager::WriteFileFooter(7);
        Printed([] { CTraceRecordManager::TraceClose(false); });
        STraceConfig::m_fileWindow = 0;
        return Contents(trace.Path());
    };
    std::string const flushed = recorded(0);
    EXPECT_GT(flushed.size(), 1350000u);  // more than one window
    EXPECT_TRUE(flushed == recorded(1));
    EXPECT_TRUE(flushed == recorded(-1));
    EXPECT_TRUE(flushed == recorded(100000));
}

// A pipe cannot be mapped, and must not get the recorder for its own reader.
TEST_F(TraceFile, APipeIsOnlyWritten)
{
    ScratchTrace const trace("pipe_" + std::to_string(getpid()) + ".nebt");
    ASSERT_EQ(0, mkfifo(trace.Path().c_str(), 0600));
    int const reader = open(trace.Path().c_str(), O_RDONLY | O_NONBLOCK);
    STraceConfig::m_fileWindow = 1;
    EXPECT_TRUE(trace.Open());
    STraceConfig::m_fileWindow = 0;
    EXPECT_EQ(O_WRONLY, fcntl(fileno(CTraceRecordManager::m_TraceFile), F_GETFL) & O_ACCMODE);
    CTraceRecordManager::WriteFileFooter(0);
    Printed([] { CTraceRecordManager::TraceClose(false); });
    char bytes[16];
    EXPECT_EQ(10, read(reader, bytes, sizeof bytes));
    EXPECT_EQ(0, read(reader, bytes, sizeof bytes));
    close(reader);
}

// While it is open the file is longer, by zeros; a fork puts an end to that, since the child has the same
// file.
TEST_F(TraceFile, AMappedFileIsCutAtAFork)
{
    ScratchTrace const trace("mapped_" + std::to_string(getpid()) + ".nebt");
    STraceConfig::m_fileWindow = 1;
    EXPECT_TRUE(trace.Open());
    STraceConfig::m_fileWindow = 0;
    EXPECT_TRUE(WriteHeader());
    EXPECT_LT(62u, std::filesystem::file_size(trace.Path()));
    std::string const header = Contents(trace.Path()).substr(0, 62);
    CTraceRecordManager::LeaveFileWindow();
    EXPECT_EQ(header, Contents(trace.Path()));
    CTraceRecordManager::WriteFileFooter(0);
    EXPECT_EQ(72u, std::filesystem::file_size(trace.Path()));
    Printed([] { CTraceRecordManager::TraceClose(false); });
}

// Every "%pid" of a name is the process ID.
TEST_F(TraceFile, EveryPidInTheNameIsExpanded)
{
    std::string const pid = std::to_string(getpid());
    std::string const expanded = testing::TempDir() + "a_" + pid + "_" + pid + ".nebt";
    std::string const name = testing::TempDir() + "a_%pid_%pid.nebt";
    EXPECT_EQ("NEBTRACE(M) Opening trace file to record: " + expanded + "\n",
              Printed([&] { EXPECT_TRUE(CTraceRecordManager::TraceOpen(name.c_str())); }));
    EXPECT_TRUE(Exists(expanded));
    EXPECT_STREQ(expanded.c_str(), CTraceRecordManager::m_Filename.c_str());
    std::remove(expanded.c_str());
}

// A process's later recordings are numbered, always from the unnumbered name.
TEST_F(TraceFile, LaterRecordingsAreNumbered)
{
    ScratchTrace trace("numbered.nebt");
    std::string const first = testing::TempDir() + "numbered_1.nebt";
    std::string const second = testing::TempDir() + "numbered_2.nebt";
    ASSERT_TRUE(trace.Open());
    EXPECT_TRUE(WriteHeader());
    EXPECT_FALSE(Exists(first));
    EXPECT_TRUE(WriteHeader());
    EXPECT_TRUE(WriteHeader());
    EXPECT_EQ(62u, Contents(trace.Path()).size());
    EXPECT_EQ(62u, Contents(first).size());
    EXPECT_EQ(62u, Contents(second).size());
    EXPECT_STREQ(trace.Path().c_str(), CTraceRecordManager::m_Filename.c_str());
    std::remove(first.c_str());
    std::remove(second.c_str());
}

// A name without the extension serves one recording; no later one gets a file or a header.
TEST_F(TraceFile, ANameWithoutExtensionServesOneRecording)
{
    ScratchTrace trace("noextension");
    ASSERT_TRUE(trace.Open());
    EXPECT_TRUE(WriteHeader());
    EXPECT_FALSE(WriteHeader());
    EXPECT_FALSE(CTraceRecordManager::UpdateFileName());
    EXPECT_EQ(62u, Contents(trace.Path()).size());
}

// With the disk off there is no file to name and nothing to write.
TEST_F(TraceFile, WithTheDiskOffNothingIsWritten)
{
    STraceConfig::m_saveFileToDisk = false;
    EXPECT_TRUE(CTraceRecordManager::UpdateFileName());
    EXPECT_TRUE(CTraceRecordManager::UpdateFileName());
    EXPECT_EQ(0, CTraceRecordManager::m_currentFileIndex);
    EXPECT_FALSE(CTraceRecordManager::WriteData("a", 1, 1));
    EXPECT_EQ(Bytes(), Written());
}

// The same with recording off altogether.
TEST_F(TraceFile, WithRecordingOffNothingIsWritten)
{
    STraceConfig::m_recordEnable = false;
    EXPECT_FALSE(CTraceRecordManager::WriteData("a", 1, 1));
    EXPECT_EQ(Bytes(), Written());
}

// A write of size 0 writes nothing and says so.
TEST_F(TraceFile, AnEmptyWriteIsNone)
{
    EXPECT_FALSE(CTraceRecordManager::WriteData("a", 0, 1));
    EXPECT_TRUE(CTraceRecordManager::WriteData("a", 1, 1));
    EXPECT_EQ((Bytes{'a'}), Written());
}

// A failed write is logged with its size, counts nothing, and recording goes on.
TEST_F(TraceFile, AFailedWriteIsLoggedAndNotCounted)
{
    FILE* const writable = CTraceRecordManager::m_TraceFile;
    CTraceRecordManager::m_TraceFile = std::fopen("/dev/null", "rb");
    EXPECT_EQ("NEBTRACE(W) ERROR: ERROR: Writing to trace file failed. Size attempted: 3\n\n",
              Printed([] { EXPECT_FALSE(CTraceRecordManager::WriteData("abc", 3, 1)); }));
    EXPECT_EQ(0u, CTraceRecordManager::m_uBytesWritten);
    std::fclose(CTraceRecordManager::m_TraceFile);
    CTraceRecordManager::m_TraceFile = writable;
    EXPECT_TRUE(CTraceRecordManager::WriteData("abc", 3, 1));
    EXPECT_EQ(3u, CTraceRecordManager::m_uBytesWritten);
}

// A recording may grow beyond what 31 bits count.
TEST_F(TraceFile, AFileGrowsBeyondTwoGigabytes)
{
    ScratchTrace trace("large.nebt");
    ASSERT_TRUE(trace.Open());
    // Only what is written takes room on the disk.
    ASSERT_EQ(0, std::fseek(CTraceRecordManager::m_TraceFile, INT32_MAX - 3, SEEK_SET));
    EXPECT_TRUE(CTraceRecordManager::WriteData("abcdef", 6, 1));
    EXPECT_TRUE(CTraceRecordManager::WriteData("gh", 2, 1));
    EXPECT_EQ(0x7FFFFFFFu - 3 + 8, std::filesystem::file_size(trace.Path()));
}

// A full disk is noticed by the write that it refuses, however small, and not by a later one.
TEST_F(TraceFile, AFullDiskIsNoticedAtOnce)
{
    Printed([] { ASSERT_TRUE(CTraceRecordManager::TraceOpen("/dev/full")); });
    EXPECT_EQ("NEBTRACE(W) ERROR: ERROR: Writing to trace file failed. Size attempted: 1\n\n",
              Printed([] { EXPECT_FALSE(CTraceRecordManager::WriteData("a", 1, 1)); }));
    EXPECT_EQ(0u, CTraceRecordManager::m_uBytesWritten);
}

// A write beyond the process's limit on file sizes fails like any other: the signal that it would raise,
// which ends a process by default, is not the application's doing. A limit that is raised later is honoured.
TEST_F(TraceFile, AWriteBeyondTheFileSizeLimitRaisesNoSignal)
{
    ScratchTrace trace("limited.nebt");
    std::string const most(4090, 'x');  // the log is captured in a file, too, and must fit the limit
    {
        FileSizeLimit const limit(4096);
        ASSERT_TRUE(trace.Open());
        EXPECT_TRUE(CTraceRecordManager::WriteData(most.data(), 4090, 1));
        EXPECT_EQ("NEBTRACE(W) ERROR: ERROR: Writing to trace file failed. Size attempted: 7\n\n",
                  Printed([] { EXPECT_FALSE(CTraceRecordManager::WriteData("abcdefg", 7, 1)); }));
        EXPECT_TRUE(CTraceRecordManager::WriteData("123456", 6, 1));
        EXPECT_EQ(4096u, CTraceRecordManager::m_uBytesWritten);
    }
    EXPECT_TRUE(CTraceRecordManager::WriteData("abc", 3, 1));
    EXPECT_EQ(most + "123456abc", Contents(trace.Path()));
}

// A file that cannot be opened leaves the recorder without one; the calls go on and the name stays.
TEST_F(TraceFile, AFileThatCannotBeOpenedIsNone)
{
    std::string const before = CTraceRecordManager::m_Filename.c_str();
    Printed([] { EXPECT_FALSE(CTraceRecordManager::TraceOpen("/nonexistent/folder/trace.nebt")); });
    EXPECT_EQ(nullptr, CTraceRecordManager::m_TraceFile);
    EXPECT_EQ(before, CTraceRecordManager::m_Filename.c_str());
    Record();
    Es2::_glFlush();
    EXPECT_EQ(1u, HostCalls("glFlush"));
}

// Opening truncates, starts the count of bytes anew, and closes what was open.
TEST_F(TraceFile, OpeningStartsAnew)
{
    ScratchTrace trace("anew.nebt");
    std::ofstream(trace.Path()) << "old contents";
    CTraceRecordManager::WriteData("abc", 3, 1);
    ASSERT_TRUE(trace.Open());
    EXPECT_EQ(0u, CTraceRecordManager::m_uBytesWritten);
    EXPECT_EQ("", Contents(trace.Path()));
}

// The extended form sets whether contents are recorded, if the file could be opened.
TEST_F(TraceFile, TheExtendedOpenSetsContents)
{
    ScratchTrace trace("extended.nebt");
    Printed([&] {
        EXPECT_FALSE(CTraceRecordManager::TraceOpenExt("/nonexistent/folder/trace.nebt", true));
        EXPECT_FALSE(STraceConfig::m_bRecordData);
        EXPECT_TRUE(CTraceRecordManager::TraceOpenExt(trace.Path().c_str(), true));
    });
    EXPECT_TRUE(STraceConfig::m_bRecordData);
}

// Without the file structures there is no header to write.
TEST_F(TraceFile, WithoutStructuresThereIsNoHeader)
{
    CTraceRecordManager::DeleteFileStructures();
    EXPECT_EQ(nullptr, CTraceRecordManager::m_EglFileState);
    EXPECT_FALSE(CTraceRecordManager::WriteFileHeader());
    EXPECT_TRUE(CTraceRecordManager::WriteFileFooter(0));
    EXPECT_EQ(Bytes(), Written());
}

// A plain close keeps the structures, a full one ends them; both may come twice.
TEST_F(TraceFile, AFullCloseEndsTheStructures)
{
    CTraceRecordManager::TraceClose(false);
    EXPECT_EQ(nullptr, CTraceRecordManager::m_TraceFile);
    EXPECT_NE(nullptr, CTraceRecordManager::m_FileInit);
    CTraceRecordManager::TraceClose(true);
    CTraceRecordManager::TraceClose(true);
    EXPECT_EQ(nullptr, CTraceRecordManager::m_FileInit);
    EXPECT_EQ(nullptr, CTraceRecordManager::m_Es2FileState);
}
