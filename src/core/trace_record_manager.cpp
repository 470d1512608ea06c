#include "core/trace_record_manager.h"
#include "core/config.h"
#include "core/critical_section.h"
#include "core/init_order.h"
#include "support/file_window.h"
#include "support/log.h"
#include "support/relaxed.h"
#include <algorithm>
#include <fcntl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/types.h>
#include <unistd.h>

static_assert(sizeof(off_t) == 8, "a recording may grow beyond what 31 bits count");

FILE* CTraceRecordManager::m_TraceFile = nullptr;
// Built ahead of the load hook, so that the name that Initialize stores stays: a second network recording in
// one process derives its numbered file from it.
NEBTRACE_INIT_FIRST CNEBTString CTraceRecordManager::m_Filename;
uint64_t CTraceRecordManager::m_uBytesWritten = 0;
uint64_t CTraceRecordManager::m_u64LastThreadId = 0;
int CTraceRecordManager::m_iFileSize = 0;
CTraceFileInit* CTraceRecordManager::m_FileInit = nullptr;
bool CTraceRecordManager::m_headerWriting = false;
int CTraceRecordManager::m_currentFileIndex = 0;
CEglRenderState* CTraceRecordManager::m_EglFileState = nullptr;
NEBTRACE_INIT_FIRST CEglRenderState CTraceRecordManager::m_EglFileStateLastGet;
CEs2ContextState* CTraceRecordManager::m_Es2FileState = nullptr;
NEBTRACE_INIT_FIRST CEs2ContextState CTraceRecordManager::m_Es2FileStateLastGet;
CEs1ContextState* CTraceRecordManager::m_Es1FileState = nullptr;
NEBTRACE_INIT_FIRST CEs1ContextState CTraceRecordManager::m_Es1FileStateLastGet;

namespace
{

constexpr char kExtension[] = ".nebt";

// True when nothing of a recording goes to a file.
bool FileIsOff() { return !STraceConfig::m_saveFileToDisk || !STraceConfig::m_recordEnable; }

CNEBTString ExpandProcessId(CNEBTString name)
{
    static constexpr char kToken[] = "%pid";
    constexpr unsigned int kTokenLength = sizeof kToken - 1;
    CNEBTString const number = NEBTStringFromFormattedStr("%lld", static_cast<long long>(getpid()));
    for (unsigned int at = name.find(kToken); at != CNEBTString::npos; at = name.find(kToken))
        name = name.substr(0, at) + number + name.substr(at + kTokenLength);
    return name;
}

// Another thread may be writing a record that was decided on before.
uint64_t BytesWritten()
{
    CCriticalSection const section;
    return CTraceRecordManager::m_uBytesWritten;
}

// Never in the place of a standard stream that the application was started without: what is printed, by us or
// by it, would go into the trace.
FILE* OpenBehindStandardStreams(char const* name, char const* mode)
{
    FILE* const file = std::fopen(name, mode);
    if (!file || fileno(file) > STDERR_FILENO)
        return file;
    int const moved = fcntl(fileno(file), F_DUPFD, STDERR_FILENO + 1);
    std::fclose(file);
    return moved < 0 ? nullptr : fdopen(moved, mode);
}

// Open while the file is written through a mapping.
CFileWindow s_window;

std::size_t FileWindowSize()
{
    constexpr int kMost = 1024;
    constexpr std::size_t kMiB = 1 << 20;
    return static_cast<std::size_t>(std::clamp(STraceConfig::m_fileWindow, 0, kMost)) * kMiB;
}

// A pipe that is open for reading, too, has no end for whoever reads it, and no broken one for the recorder.
bool IsNoRegularFile(char const* name)
{
    struct stat status = {};
    return stat(name, &status) == 0 && !S_ISREG(status.st_mode);
}

FILE* OpenTraceFile(char const* name)
{
    FILE* file = nullptr;
    if (FileWindowSize() > 0 && !IsNoRegularFile(name))
        file = OpenBehindStandardStreams(name, "wb+");  // a mapping needs to read, too
    if (!file)
        file = OpenBehindStandardStreams(name, "wb");
    if (!file)
        return nullptr;
    // Without a buffer a write that fails does so here and now: a full disk would otherwise show when the
    // buffer is flushed, and go unsaid. Each write is flushed in any case.
    std::setvbuf(file, nullptr, _IONBF, 0);
    s_window.Open(fileno(file), 0, FileWindowSize());
    return file;
}

void CloseTraceFile(FILE*& file)
{
    s_window.Close();
    if (file)
        std::fclose(file);
    file = nullptr;
}

// Bytes that surely fit the process's limit on file sizes. Asked for anew once they are used up.
uint64_t s_u64Room = 0;

uint64_t RoomInFile(FILE* file)
{
    rlimit limit{};
    if (getrlimit(RLIMIT_FSIZE, &limit) != 0 || limit.rlim_cur == RLIM_INFINITY)
        return UINT64_MAX;
    auto const position = ftello(file);
    if (position < 0)
        return UINT64_MAX;
    uint64_t const used = static_cast<uint64_t>(position);
    return limit.rlim_cur > used ? limit.rlim_cur - used : 0;
}

// A write beyond the limit would raise SIGXFSZ, which ends an application that does not expect it, and
// without the recorder has no reason to. Such a write is not tried: it has failed.
bool FitsFileSizeLimit(FILE* file, uint64_t size)
{
    if (size > s_u64Room)
        s_u64Room = RoomInFile(file);
    if (size > s_u64Room)
        return false;
    s_u64Room -= size;
    return true;
}

bool WriteToFile(FILE* file, void const* data, unsigned int size, unsigned int count)
{
    if (s_window.IsOpen())
        return s_window.Append(data, std::size_t{size} * count);
    if (!FitsFileSizeLimit(file, uint64_t{size} * count) || std::fwrite(data, size, count, file) != count)
    {
        std::clearerr(file);
        return false;
    }
    std::fflush(file);
    return true;
}

template <typename T>
void CreateIfAbsent(T*& object)
{
    if (!object)
        object = new T;
}

template <typename T>
void DeleteAndClear(T*& object)
{
    T* const old = object;
    object = nullptr;  // first: another thread's call may be looking
    delete old;
}

}  // namespace

bool CTraceRecordManager::Initialize()
{
    STraceConfig::Instance().Read("nebtrace.cfg");
    CreateFileStructures();
    if (FileIsOff())
        return true;
    if (TraceOpen(STraceConfig::m_traceOutfilePath))
        LogMessage("Trace file Open in: %s", m_Filename.c_str());
    else
        LogMessage("ERROR: Failed to open record trace file.");
    if (!STraceConfig::m_bNetworkControl && !WriteFileHeader())
        LogMessage("ERROR: Failed to open trace file.");
    return true;
}

bool CTraceRecordManager::TraceOpen(CNEBTString name)
{
    CCriticalSection const section;
    CloseTraceFile(m_TraceFile);
    name = ExpandProcessId(name);
    LogMessage("Opening trace file to record: %s", name.c_str());
    m_TraceFile = OpenTraceFile(name.c_str());
    if (!m_TraceFile)
        return false;
    s_u64Room = 0;
    m_Filename = name;
    m_uBytesWritten = 0;
    return true;
}

bool CTraceRecordManager::TraceOpenExt(CNEBTString name, bool recordData)
{
    if (!TraceOpen(name))
        return false;
    STraceConfig::m_bRecordData = recordData;
    return true;
}

void CTraceRecordManager::TraceClose(bool full)
{
    CCriticalSection const section;
    CloseTraceFile(m_TraceFile);
    if (!full)
        return;
    DeleteFileStructures();
    STraceConfig::Close();
}

bool CTraceRecordManager::WriteData(void const* data, unsigned int size, unsigned int count)
{
    if (STraceConfig::m_sendOverNetwork)
        CNetworkServer::Instance()->SendData(static_cast<char const*>(data), static_cast<int>(size));
    if (FileIsOff())
        return false;
    if (!m_TraceFile || size == 0)
    {
        std::fflush(m_TraceFile);
        return false;
    }
    if (WriteToFile(m_TraceFile, data, size, count))
    {
        m_uBytesWritten += size;  // every caller's count is 1
        return true;
    }
    LogError("ERROR: Writing to trace file failed. Size attempted: %u\n", size * count);
    return false;
}

void CTraceRecordManager::BeginRecord() { s_window.BeginRecord(); }

unsigned char* CTraceRecordManager::ClaimRecord(uint64_t size)
{
    bool const atOnce = !STraceConfig::m_sendOverNetwork && !FileIsOff() && m_TraceFile;
    return atOnce ? s_window.Claim(size) : nullptr;
}

void CTraceRecordManager::CommitRecord(unsigned char const (&head)[6], unsigned int size)
{
    s_window.Commit(head, size);
    m_uBytesWritten += size;
}

void CTraceRecordManager::EndRecord() { s_window.EndRecord(); }

void CTraceRecordManager::LeaveFileWindow() { s_window.Close(); }

bool CTraceRecordManager::WriteFileHeader()
{
    if (m_FileInit)
        return m_FileInit->WriteFileHeader();
    STraceConfig::Instance();
    return STraceConfig::m_bNetworkControl;
}

bool CTraceRecordManager::WriteFileFooter(unsigned long long position)
{
    if (m_FileInit)
        m_FileInit->WriteFileFooter({position});
    // The file is whole: however the process ends, later on, nothing stands behind the footer.
    CCriticalSection const section;
    LeaveFileWindow();
    return true;
}

bool CTraceRecordManager::UpdateFileName()
{
    if (FileIsOff())
        return true;
    if (m_currentFileIndex == 0)
    {
        m_currentFileIndex = 1;  // the first recording uses the file that Initialize opened
        return true;
    }
    CNEBTString const unnumbered = m_Filename;
    unsigned int const extension = unnumbered.find(kExtension);
    if (extension == CNEBTString::npos)
        return false;
    CNEBTString const stem = unnumbered.substr(0, extension);
    if (!TraceOpen(NEBTStringFromFormattedStr("%s_%d.nebt", stem.c_str(), m_currentFileIndex++)))
        return false;
    m_Filename = unnumbered;
    return true;
}

bool CTraceRecordManager::IsRecordingData() { return m_FileInit && m_FileInit->m_bRecordData; }

void CTraceRecordManager::CreateFileStructures()
{
    CreateIfAbsent(m_FileInit);
    CreateIfAbsent(m_EglFileState);
    CreateIfAbsent(m_Es2FileState);
    CreateIfAbsent(m_Es1FileState);
}

void CTraceRecordManager::DeleteFileStructures()
{
    DeleteAndClear(m_FileInit);
    DeleteAndClear(m_EglFileState);
    DeleteAndClear(m_Es2FileState);
    DeleteAndClear(m_Es1FileState);
}

// When both GL APIs were used, only GLES2 is covered.
void CTraceRecordManager::saveRenderStatePhase1()
{
    if (LoadRelaxed(STraceConfig::m_bEGLUsed) && m_EglFileState)
    {
        m_EglFileState->getRenderState();
        m_EglFileStateLastGet = *m_EglFileState;
    }
    if (LoadRelaxed(STraceConfig::m_bES1Used) && !LoadRelaxed(STraceConfig::m_bES2Used) && m_Es1FileState)
    {
        m_Es1FileState->getRenderState();
        m_Es1FileStateLastGet = *m_Es1FileState;
    }
    if ((LoadRelaxed(STraceConfig::m_bES2Used) || STraceConfig::m_bES3Used) && m_Es2FileState)
    {
        if (m_EglFileState)
            m_Es2FileState->m_usClientVersion = static_cast<unsigned short>(m_EglFileState->m_iClientVersion);
        m_Es2FileState->getRenderState();
        m_Es2FileStateLastGet = *m_Es2FileState;
    }
}

void CTraceRecordManager::saveRenderStatePhase2(bool bKeepPosition, bool bWriteFooter)
{
    uint64_t const position = bKeepPosition ? BytesWritten() : 0;
    if (LoadRelaxed(STraceConfig::m_bEGLUsed))
        m_EglFileStateLastGet.writeAsCalls();
    if (LoadRelaxed(STraceConfig::m_bES1Used) && !LoadRelaxed(STraceConfig::m_bES2Used))
    {
        m_Es1FileStateLastGet.CombineTrack(m_Es1FileState);
        m_Es1FileStateLastGet.writeAsCalls();
    }
    if (LoadRelaxed(STraceConfig::m_bES2Used) || STraceConfig::m_bES3Used)
    {
        m_Es2FileStateLastGet.CombineTrack(m_Es2FileState);
        m_Es2FileStateLastGet.writeAsCalls(STraceConfig::m_optimizationRS, true);
    }
    if (bWriteFooter)
        WriteFileFooter(position);
}
