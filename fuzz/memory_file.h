// A file that exists in memory only, for code that opens files by name.
#pragma once
#include "fuzz/input.h"
#include <sys/mman.h>
#include <unistd.h>

namespace fuzz
{
class MemoryFile
{
public:
    MemoryFile() : m_descriptor(memfd_create("fuzz", MFD_CLOEXEC)) { Require(m_descriptor >= 0, "memory"); }
    ~MemoryFile() { close(m_descriptor); }
    MemoryFile(MemoryFile const&) = delete;
    MemoryFile& operator=(MemoryFile const&) = delete;

    void Hold(uint8_t const* data, size_t size) const
    {
        Require(ftruncate(m_descriptor, 0) == 0 &&
                    pwrite(m_descriptor, data, size, 0) == static_cast<ssize_t>(size),
                "the file takes the input");
    }
    std::string Path() const { return "/proc/self/fd/" + std::to_string(m_descriptor); }

private:
    int m_descriptor;
};
}  // namespace fuzz
