// Header and footer of the trace file.
#pragma once
#include "support/export.h"
#include <cstdint>

class NEBTRACE_API CTraceFileInit
{
public:
    // The footer's content: the count of bytes written before the closing snapshot, or 0 without one.
    struct SDataFooter
    {
        uint64_t position;
    };

    CTraceFileInit() = default;
    ~CTraceFileInit();
    CTraceFileInit(CTraceFileInit const&) = delete;
    CTraceFileInit& operator=(CTraceFileInit const&) = delete;

    // Chooses the recording's file and writes the 62-byte header; false when no file could be chosen, and
    // nothing is written then.
    bool WriteFileHeader();
    // Writes the 10-byte footer; returns true.
    bool WriteFileFooter(SDataFooter footer);

    bool m_bRecordData = false;   // the header's record-data flag
    bool m_bFrameBuffer = false;  // the header's frame-buffer flag

private:
    void WriteHeaderFields() const;

    uint8_t* m_pBuffer = nullptr;  // never filled
};
