#include "trace_fault.h"

using nebtrace::EndState;

char const* EndName(EndState end)
{
    switch (end)
    {
    case EndState::Footer:
        return "footer";
    case EndState::NoFooter:
        return "no footer";
    case EndState::Truncated:
        return "truncated";
    default:
        return "damaged";
    }
}

static std::string Advice(EndState end, uint64_t offset)
{
    if (offset >= nebtrace::kHeaderSize)
        return "; nebtrace repair keeps what is whole ahead of that";
    return end == EndState::Truncated ? "; nothing was recorded before it ended: record again" : "";
}

std::string TraceFault(std::string const& file, EndState end, uint64_t offset, std::string const& reason)
{
    return file + ": at offset " + std::to_string(offset) + ": " + reason + Advice(end, offset);
}

std::string TraceFault(std::string const& file, nebtrace::Reader const& reader)
{
    return TraceFault(file, reader.End(), reader.EndOffset(), reader.EndReason());
}
