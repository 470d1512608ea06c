#include "core/trace_file_init.h"
#include "core/critical_section.h"
#include "core/trace_record_manager.h"
#include <cstdio>

namespace
{

constexpr int8_t kTypeTable[] = {4,  -4, 4,  4, 4, 4, 4, 4, 4,  4,  4,  4,  4, 1,  4, -1,
                                 -2, -4, -4, 1, 2, 4, 4, 4, -4, -4, -4, -4, 0, -4, -4};
static_assert(sizeof kTypeTable == 31, "the table's length stands in the header");
static_assert(sizeof(CTraceFileInit::SDataFooter) == 8, "the footer's value goes into the file as it is");

template <typename T>
void Write(T value)
{
    CTraceRecordManager::WriteData(&value, sizeof value, 1);
}

}  // namespace

CTraceFileInit::~CTraceFileInit() { delete[] m_pBuffer; }

bool CTraceFileInit::WriteFileHeader()
{
    if (!CTraceRecordManager::UpdateFileName())
        return false;
    WriteHeaderFields();
    std::fflush(nullptr);
    return true;
}

// In one piece, like a record: other threads may be at one that was decided on before.
void CTraceFileInit::WriteHeaderFields() const
{
    CCriticalSection const section;
    CTraceRecordManager::WriteData("NEBTrace", 8, 1);
    Write<uint32_t>(0xFFFE0100);
    Write<uint32_t>(14);  // the format's version
    Write<uint8_t>(m_bRecordData ? 1 : 0);
    Write<uint8_t>(m_bFrameBuffer ? 1 : 0);
    Write<uint32_t>(1);
    Write<uint8_t>(sizeof kTypeTable);
    for (int8_t const entry : kTypeTable)
        Write(entry);
    Write<uint32_t>(0);
    Write<uint32_t>(0);
}

bool CTraceFileInit::WriteFileFooter(SDataFooter footer)
{
    CCriticalSection const section;
    CTraceRecordManager::BeginRecord();
    Write<uint8_t>(0x13);
    Write<uint8_t>(0x10);
    Write(footer);
    CTraceRecordManager::EndRecord();
    return true;
}
