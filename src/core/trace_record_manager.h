// Owns the output of a recording: the trace file, its name, the count of bytes, and the shadow states.
#pragma once
#include "core/trace_file_init.h"
#include "state/egl_render_state.h"
#include "state/es1_context_state.h"
#include "state/es2_context_state.h"
#include "support/export.h"
#include "support/string.h"
#include <cstdint>
#include <cstdio>

class NEBTRACE_API CTraceRecordManager
{
public:
    // Reads the configuration and opens the trace file; run once, at load.
    static bool Initialize();
    // Opens `name`, with each "%pid" expanded, truncating; returns success.
    static bool TraceOpen(CNEBTString name);
    // TraceOpen, and on success stores the flag as STraceConfig::m_bRecordData.
    static bool TraceOpenExt(CNEBTString name, bool recordData);
    // Closes the file; `full` also ends the shadow states and the network server.
    static void TraceClose(bool full);
    // The one output path, for file and network; returns whether the file took the bytes.
    static bool WriteData(void const* data, unsigned int size, unsigned int count);
    // Around the writes of what must be in the file whole or not at all, however the process ends. The caller
    // is in the critical section. Without a window there is nothing to be done.
    static void BeginRecord();
    static void EndRecord();
    // In place of the writes: room for a whole record of `size` bytes, to be filled from behind its length
    // and ID on and then committed with these. Null, with nothing done, where it must be written in pieces.
    // The caller is in the critical section, and stays there in between.
    static unsigned char* ClaimRecord(uint64_t size);
    static void CommitRecord(unsigned char const (&head)[6], unsigned int size);
    // From here on each write is flushed: with a window there would be two ends of the file, one in each
    // process of a fork. The caller is in the critical section.
    static void LeaveFileWindow();
    static bool WriteFileHeader();
    static bool WriteFileFooter(unsigned long long position);
    // Chooses the file of the next recording of this process; false when that failed.
    static bool UpdateFileName();
    // The header's record-data flag.
    static bool IsRecordingData();
    static void CreateFileStructures();
    static void DeleteFileStructures();

    // Captures the state of the APIs in use.
    static void saveRenderStatePhase1();
    // Writes what phase 1 captured as calls, and the footer if asked to.
    static void saveRenderStatePhase2(bool bKeepPosition, bool bWriteFooter);

    static FILE* m_TraceFile;
    static CNEBTString m_Filename;
    static uint64_t m_uBytesWritten;    // to the current file
    static uint64_t m_u64LastThreadId;  // thread of the last record written
    static int m_iFileSize;             // kept in the interface; nothing uses it
    static CTraceFileInit* m_FileInit;
    static bool m_headerWriting;    // kept in the interface; nothing uses it
    static int m_currentFileIndex;  // 0 until the first header, then the number of the next file

    // Live shadow states, and what phase 1 captured of them.
    static CEglRenderState* m_EglFileState;
    static CEglRenderState m_EglFileStateLastGet;
    static CEs2ContextState* m_Es2FileState;
    static CEs2ContextState m_Es2FileStateLastGet;
    static CEs1ContextState* m_Es1FileState;
    static CEs1ContextState m_Es1FileStateLastGet;
};
