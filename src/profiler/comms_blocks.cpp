#include "profiler/comms_blocks.h"
#include <cstring>

namespace
{

constexpr unsigned int kIdentifierShift = 24;
constexpr uint32_t kMostIdentifier = 0xFF;
constexpr unsigned int kWord = 4;
constexpr unsigned int kEventWords = 8;

bool SendWord(CDataPath& path, uint32_t word) { return path.DataSend(word) != 0; }

// Words that lie in a record one after another are the same bytes on the wire.
bool SendWords(CDataPath& path, uint32_t const* words, unsigned int count)
{
    return DataPathSendRaw(path, words, count * kWord);
}

unsigned int LengthOf(char const* text) { return text ? static_cast<unsigned int>(std::strlen(text)) : 0; }

}  // namespace

uint32_t DataPathBlockDescriptionPack(ERcIdentifier identifier, unsigned int info)
{
    return static_cast<uint32_t>(identifier) << kIdentifierShift | (info & kMostInfo);
}

ERcIdentifier DataPathBlockDescriptionUnpackID(uint32_t description)
{
    return static_cast<ERcIdentifier>(description >> kIdentifierShift);
}

unsigned int DataPathBlockDescriptionUnpackInfo(uint32_t description) { return description & kMostInfo; }

bool DataPathSendBlockDescription(CDataPath& path, ERcIdentifier identifier, unsigned int info)
{
    if (static_cast<uint32_t>(identifier) > kMostIdentifier || info > kMostInfo)
        return false;
    return SendWord(path, DataPathBlockDescriptionPack(identifier, info));
}

bool DataPathSendPayloadDescription(CDataPath& path, ERcIdentifier identifier, uint64_t size)
{
    // A size that does not fit must not wrap into one that does.
    return size <= kMostInfo &&
           DataPathSendBlockDescription(path, identifier, static_cast<unsigned int>(size));
}

bool DataPathSendRaw(CDataPath& path, void const* bytes, unsigned int length)
{
    return length == 0 || path.DataSendBytes(static_cast<char const*>(bytes), length) != 0;
}

bool DataPathSendText(CDataPath& path, char const* bytes, unsigned int length)
{
    return SendWord(path, length) && DataPathSendRaw(path, bytes, length);
}

bool DataPathSend1uint(CDataPath& path, ERcIdentifier identifier, unsigned int a)
{
    return DataPathSendBlockDescription(path, identifier, kWord) && SendWord(path, a);
}

bool DataPathSend2uint(CDataPath& path, ERcIdentifier identifier, unsigned int a, unsigned int b)
{
    return DataPathSendBlockDescription(path, identifier, 2 * kWord) && SendWord(path, a) &&
           SendWord(path, b);
}

bool DataPathSenduintarray(CDataPath& path, ERcIdentifier identifier, unsigned int n,
                           unsigned int const* values)
{
    return DataPathSendPayloadDescription(path, identifier, (uint64_t{n} + 1) * kWord) && SendWord(path, n) &&
           SendWords(path, values, n);
}

bool DataPathSend1uintNbytes(CDataPath& path, ERcIdentifier identifier, unsigned int a, char const* bytes,
                             unsigned int n)
{
    return DataPathSendPayloadDescription(path, identifier, uint64_t{n} + kWord) && SendWord(path, a) &&
           DataPathSendRaw(path, bytes, n);
}

bool DataPathSend1uint1String(CDataPath& path, ERcIdentifier identifier, unsigned int a, char const* bytes,
                              unsigned int n)
{
    return DataPathSendPayloadDescription(path, identifier, uint64_t{n} + 2 * kWord) && SendWord(path, a) &&
           DataPathSendText(path, bytes, n);
}

bool DataPathSend2uint1String(CDataPath& path, ERcIdentifier identifier, unsigned int a, unsigned int b,
                              char const* bytes, unsigned int n)
{
    return DataPathSendPayloadDescription(path, identifier, uint64_t{n} + 3 * kWord) && SendWord(path, a) &&
           SendWord(path, b) && DataPathSendText(path, bytes, n);
}

bool DataPathSendSettings(CDataPath& path, unsigned int settings)
{
    return DataPathSendBlockDescription(path, eRcSettings, settings);
}

bool DataPathSendSettingsNEBScope(CDataPath& path, bool bit0, bool bit1, bool bit2)
{
    unsigned int const flags = (bit0 ? 1u : 0u) | (bit1 ? 2u : 0u) | (bit2 ? 4u : 0u);
    return DataPathSendBlockDescription(path, eRcSettingsNEBScope, flags);
}

bool DataPathSendInitialData(CDataPath& path, SCommsInitialData const& data)
{
    uint32_t lengths[4];
    uint64_t size = sizeof data.values + sizeof lengths;
    for (unsigned int i = 0; i < 4; ++i)
    {
        lengths[i] = LengthOf(data.strings[i]);
        size += lengths[i];
    }
    if (!DataPathSendPayloadDescription(path, eRcInitialData, size) || !SendWords(path, data.values, 7) ||
        !SendWords(path, lengths, 4))
        return false;
    for (unsigned int i = 0; i < 4; ++i)
        if (!DataPathSendRaw(path, data.strings[i], lengths[i]))
            return false;
    return true;
}

bool DataPathSendEvent(CDataPath& path, SNEBScopeEvent const& event, bool extra)
{
    unsigned int const words = extra ? sizeof event.values / kWord : kEventWords;
    return DataPathSendBlockDescription(path, eRcEvent, words * kWord) &&
           SendWords(path, event.values, words);
}

bool DataPathSendMark(CDataPath& path, unsigned int time, char const* text, unsigned int length)
{
    return DataPathSend1uintNbytes(path, eRcMark, time, text, length);
}

bool DataPathSendCPUTime(CDataPath& path, unsigned int value)
{
    return DataPathSend1uint(path, eRcCPUTime, value);
}

bool DataPathSendCPUUsage(CDataPath& path, SCommsCPUUsage const& usage)
{
    return DataPathSendBlockDescription(path, eRcCPUUsage, sizeof usage.values) &&
           SendWords(path, usage.values, 3);
}

bool DataPathSendRegReadHost(CDataPath& path, SNEBScopeRegReadHost const& registers)
{
    return DataPathSendBlockDescription(path, eRcRegReadHost, sizeof registers.values) &&
           SendWords(path, registers.values, 15);
}
