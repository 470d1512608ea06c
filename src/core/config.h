// STraceConfig: the recorder's settings, the decision for each call, and frame control.
#pragma once
#include "net/network_server.h"
#include "profiler/profiler.h"
#include "support/export.h"
#include "support/stopwatch.h"
#include "support/string.h"
#include <cstdint>

struct NEBTRACE_API STraceConfig
{
    // What is to be done with one call. A wrapper zero-fills it before it asks.
    struct SFunctionConfig
    {
        CProfiler* pProfiler;     // null unless profiling
        CStopwatch* pStopwatch;   // null unless profiling
        bool bCallHost;           // call the host function
        bool bGetErrors;          // read the host's error state after the call
        bool bUpdateRenderState;  // update the shadow state after a successful call
        bool bSaveCall;           // write a call record
        bool bRecordData;         // put array contents into the record, not only the pointer
        bool bSaveFrameBuffer;    // read the frame's pixels at a swap
    };

    STraceConfig();
    ~STraceConfig();
    STraceConfig(STraceConfig const&) = delete;
    STraceConfig& operator=(STraceConfig const&) = delete;

    // The one instance, made on first use together with the profiler.
    static STraceConfig& Instance()
    {
        if (!s_pInstance)
            Create();
        return *s_pInstance;
    }

    // Reads the settings from the named file in the working directory, else from /etc/nebtrace.cfg. Ends the
    // process when neither exists.
    void Read(char const* name);
    // Writes a template configuration; returns whether the file could be opened.
    bool Write(char const* name);

    // Fills `config` for one call. `args`: an int count, then the address of each argument. May write a
    // snapshot, may block (network mode), may end the process (last frame with ExitOnLastFrame).
    static void GetFunctionConfig(int id, SFunctionConfig& config, void const* const* args);
    // The API name of a function ID; "" for the unused first slot of a range, null outside all ranges.
    static char const* TranslateID(int id);

    // Whether the shadow state follows the calls.
    static bool UpdateRenderState();
    // Whether this call is recorded. Runs frame control.
    static bool GetSaveStatus();
    static bool OffLineControl();
    static bool NetworkControl();
    // Told by the swap, after the frame was counted.
    static void DoSwapBuffer();
    // Stops recording for good.
    static void PreventSaving();
    static void Wait();
    static void Close();

    // Settings, by the configuration's keys.
    CNEBTString m_eglLibraryPath;
    CNEBTString m_es1LibraryPath;
    CNEBTString m_es2LibraryPath;
    CNEBTString m_es3LibraryPath;

    static STraceConfig* s_pInstance;
    static CNEBTString m_traceOutfilePath;
    static CNEBTString m_processNameExclude;  // stored for others: nothing in this library reads it
    static CNEBTString m_processNameWrite;    // likewise
    static bool m_recordEnable;
    static bool m_bRecordData;
    static bool m_saveFrameBuffer;
    static uint32_t m_ui32StartFrame;
    static uint32_t m_ui32EndFrame;
    static bool m_bNetworkControl;
    static bool m_bNetworkWait;
    static bool m_saveFileToDisk;
    static int m_bufferSizeNetwork;
    static bool m_sendOverNetwork;
    static bool m_exitAfterLastFrame;
    static int m_debugInfo;
    static int m_i32SwapInterval;  // -1: the swap interval is left alone
    static bool m_bProfile;
    static bool m_optimizationRS;
    static bool m_optimizationRSWasSet;
    static int m_fileWindow;   // MiB of the trace file that are mapped; 0: each write is flushed
    static bool m_getErrors;   // no key: stays true
    static bool m_noCallHost;  // no key: stays false

    // Frame control.
    static uint32_t m_ui32CurrentFrame;  // frames completed
    static uint32_t m_ui32LastFrame;     // the last frame that a progress line was logged for
    static bool m_bDoNativeCall;         // false while a snapshot is being written
    static bool m_writeRenderState;      // a capture is due at the start of the recording
    static bool m_renderStateWritten;    // a capture was taken
    static bool m_writingRenderState;    // a snapshot is being written
    static bool m_fileClosed;            // the closing steps are done
    static bool m_bPreventSaving;
    static bool m_isNewFrame;  // a swap has happened since the recording was armed
    static bool m_bEGLUsed;    // which APIs a snapshot must cover
    static bool m_bES1Used;
    static bool m_bES2Used;
    static bool m_bES3Used;  // no writer: stays false

    // Network mode.
    static bool m_headerWrite;
    static CNetworkServer::SNetControl m_netControl;
    static CNetworkServer* m_networkInstance;

    // Kept in the interface; nothing uses them.
    static bool m_stepPlay;
    static bool m_stepPlayControlerEnable;

private:
    static void Create();
};
