// The blocks that application and performance server exchange over a CDataPath: a 32-bit description word,
// and for most a payload. All words are unsigned, in the byte order of the machine, and nothing is padded.
//
// Every writer returns whether all of its block went out. A writer that fails stops at once and leaves the
// stream cut in mid-block, but what a description word cannot hold is refused before the first byte.
#pragma once
#include "profiler/data_path.h"
#include "support/export.h"
#include <cstdint>

// Bits 31 to 24 of the description word. The library writes those "to server" and reads those "to library".
enum ERcIdentifier : uint32_t
{
    eRcSettings = 32,          // to server; the info is the settings value
    eRcSettingsNEBScope = 36,  // to server; the info is three flags
    eRcSendDescription = 64,   // to library: describe yourself
    eRcLibraryName = 80,       // to server: u32 length, the name
    eRcLibraryItems = 100,     // to server: u32 count; for each: u32 length, name, u32 type, u32 size, value
    eRcChangeItem = 112,       // to library: u32 index, the new value
    eRcCounterDescription = 132,  // to server: u32 time, u32 count; for each: u32 length, name
    eRcCounters = 136,            // to server: u32 time, the values in the order of the description
    eRcShutdown = 144,            // both ways
    eRcInitialData = 177,         // to server: SCommsInitialData
    eRcEvent = 180,               // to server: SNEBScopeEvent
    eRcMark = 184,                // to server: u32 time, text
    eRcCPUTime = 188,             // to server: u32 value
    eRcCPUUsage = 192,            // to server: SCommsCPUUsage
    eRcRegReadHost = 200,         // to server: SNEBScopeRegReadHost
};

// Bits 23 to 0 of the description word: the size of the payload in bytes, or without one the value itself.
constexpr uint32_t kMostInfo = 0xFFFFFF;

// On the wire: the values, the length of each text (0 for a null pointer), the texts without terminators.
struct SCommsInitialData
{
    uint32_t values[7];
    char const* strings[4];
};

// The first eight always go out, the others only with the flag of DataPathSendEvent.
struct SNEBScopeEvent
{
    uint32_t values[17];
};

struct SCommsCPUUsage
{
    uint32_t values[3];
};

struct SNEBScopeRegReadHost
{
    uint32_t values[15];
};

NEBTRACE_API uint32_t DataPathBlockDescriptionPack(ERcIdentifier identifier, unsigned int info);
NEBTRACE_API ERcIdentifier DataPathBlockDescriptionUnpackID(uint32_t description);
NEBTRACE_API unsigned int DataPathBlockDescriptionUnpackInfo(uint32_t description);

// Refuses what the word cannot hold.
NEBTRACE_API bool DataPathSendBlockDescription(CDataPath& path, ERcIdentifier identifier, unsigned int info);

// Blocks of any identifier, with the payload that their names tell.
NEBTRACE_API bool DataPathSend1uint(CDataPath& path, ERcIdentifier identifier, unsigned int a);
NEBTRACE_API bool DataPathSend2uint(CDataPath& path, ERcIdentifier identifier, unsigned int a,
                                    unsigned int b);
// n, and then n values.
NEBTRACE_API bool DataPathSenduintarray(CDataPath& path, ERcIdentifier identifier, unsigned int n,
                                        unsigned int const* values);
NEBTRACE_API bool DataPathSend1uintNbytes(CDataPath& path, ERcIdentifier identifier, unsigned int a,
                                          char const* bytes, unsigned int n);
// a, n, and then the n bytes.
NEBTRACE_API bool DataPathSend1uint1String(CDataPath& path, ERcIdentifier identifier, unsigned int a,
                                           char const* bytes, unsigned int n);
NEBTRACE_API bool DataPathSend2uint1String(CDataPath& path, ERcIdentifier identifier, unsigned int a,
                                           unsigned int b, char const* bytes, unsigned int n);

// Blocks of one identifier each.
NEBTRACE_API bool DataPathSendSettings(CDataPath& path, unsigned int settings);
NEBTRACE_API bool DataPathSendSettingsNEBScope(CDataPath& path, bool bit0, bool bit1, bool bit2);
NEBTRACE_API bool DataPathSendInitialData(CDataPath& path, SCommsInitialData const& data);
NEBTRACE_API bool DataPathSendEvent(CDataPath& path, SNEBScopeEvent const& event, bool extra);
NEBTRACE_API bool DataPathSendMark(CDataPath& path, unsigned int time, char const* text, unsigned int length);
NEBTRACE_API bool DataPathSendCPUTime(CDataPath& path, unsigned int value);
NEBTRACE_API bool DataPathSendCPUUsage(CDataPath& path, SCommsCPUUsage const& usage);
NEBTRACE_API bool DataPathSendRegReadHost(CDataPath& path, SNEBScopeRegReadHost const& registers);

// Parts of a block, for those who write one piece by piece. The description of a payload of `size` bytes:
bool DataPathSendPayloadDescription(CDataPath& path, ERcIdentifier identifier, uint64_t size);
// Bytes without a length in front; none at all for 0.
bool DataPathSendRaw(CDataPath& path, void const* bytes, unsigned int length);
// A length and as many bytes.
bool DataPathSendText(CDataPath& path, char const* bytes, unsigned int length);
