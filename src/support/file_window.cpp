#include "support/file_window.h"
#include <algorithm>
#include <atomic>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sys/mman.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/types.h>
#include <unistd.h>

static_assert(sizeof(off_t) == 8, "a file may grow beyond what 31 bits count");

namespace
{

// From here on the page faults of a copy cost more than a system call.
constexpr std::size_t kBulk = 65536;

std::size_t PageSize()
{
    static auto const size = static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
    return size;
}

// What is written beyond the limit would raise SIGXFSZ, which ends an application that does not expect it.
bool FitsFileSizeLimit(uint64_t end)
{
    rlimit limit{};
    return getrlimit(RLIMIT_FSIZE, &limit) != 0 || limit.rlim_cur == RLIM_INFINITY || end <= limit.rlim_cur;
}

}  // namespace

bool CFileWindow::Open(int file, uint64_t length, std::size_t size)
{
    struct stat status = {};
    if (size == 0 || fstat(file, &status) != 0 || !S_ISREG(status.st_mode))
        return false;
    m_file = file;
    m_length = length;
    m_size = (size + PageSize() - 1) / PageSize() * PageSize();
    if (MoveToEnd())
        return true;
    Close();
    return false;
}

// The blocks are the file's before anything is copied: a full disk is an error here, and no SIGBUS there.
bool CFileWindow::Reserve(uint64_t start, std::size_t size) const
{
    if (!FitsFileSizeLimit(start + size))
        return false;
    int error = EINTR;
    while (error == EINTR)
        error = posix_fallocate(m_file, static_cast<off_t>(start), static_cast<off_t>(size));
    return error == 0;
}

bool CFileWindow::MoveToEnd()
{
    Unmap();
    uint64_t const start = m_length / PageSize() * PageSize();
    std::size_t size = m_size;
    while (!Reserve(start, size))
    {
        size = size / 2 / PageSize() * PageSize();
        if (size == 0)
            return false;
    }
    void* const window =
        mmap(nullptr, size, PROT_READ | PROT_WRITE, MAP_SHARED, m_file, static_cast<off_t>(start));
    if (window == MAP_FAILED)
        return false;
    m_pWindow = static_cast<unsigned char*>(window);
    m_start = start;
    m_mapped = size;
    return true;
}

bool CFileWindow::AppendByWrite(void const* data, std::size_t size)
{
    if (!FitsFileSizeLimit(m_length + size))
        return false;
    auto const* const bytes = static_cast<unsigned char const*>(data);
    for (std::size_t done = 0; done < size;)
    {
        ssize_t const written =
            pwrite(m_file, bytes + done, size - done, static_cast<off_t>(m_length + done));
        if (written > 0)
            done += static_cast<std::size_t>(written);
        else if (written == 0 || errno != EINTR)
            return false;
    }
    m_length += size;
    return true;
}

bool CFileWindow::AppendMapped(void const* data, std::size_t size)
{
    auto const* bytes = static_cast<unsigned char const*>(data);
    while (size > 0)
    {
        bool const inWindow = m_pWindow && m_length >= m_start && m_length < m_start + m_mapped;
        if (!inWindow && !MoveToEnd())
            return false;
        auto const at = static_cast<std::size_t>(m_length - m_start);
        std::size_t const fits = std::min(size, m_mapped - at);
        std::memcpy(m_pWindow + at, bytes, fits);
        bytes += fits;
        size -= fits;
        m_length += fits;
    }
    return true;
}

bool CFileWindow::AppendPiece(void const* data, std::size_t size)
{
    return size < kBulk ? AppendMapped(data, size) : AppendByWrite(data, size);
}

bool CFileWindow::Append(void const* data, std::size_t size)
{
    uint64_t const length = m_length;
    auto const* const bytes = static_cast<unsigned char const*>(data);
    std::size_t const head = m_bInRecord ? std::min(size, kHead - m_held) : 0;
    static constexpr unsigned char kZeros[kHead] = {};
    if (!AppendPiece(kZeros, head) || !AppendPiece(bytes + head, size - head))
    {
        m_length = length;
        return false;
    }
    std::copy_n(bytes, head, m_head + m_held);
    m_held += head;
    return true;
}

void CFileWindow::BeginRecord()
{
    m_bInRecord = IsOpen();
    m_record = m_length;
    m_held = 0;
}

void CFileWindow::EndRecord()
{
    if (!m_bInRecord || !IsOpen())
        return;
    m_bInRecord = false;
    bool const inWindow = m_pWindow && m_record >= m_start && m_record + kHead <= m_start + m_mapped;
    if (!inWindow || m_held < kHead)
    {
        while (pwrite(m_file, m_head, m_held, static_cast<off_t>(m_record)) < 0 && errno == EINTR)
            continue;
        return;
    }
    // The ID last, and at once: there is no record without one.
    unsigned char* const head = m_pWindow + (m_record - m_start);
    std::atomic_signal_fence(std::memory_order_release);
    std::memcpy(head, m_head, sizeof(uint32_t));
    std::atomic_signal_fence(std::memory_order_release);
    std::memcpy(head + sizeof(uint32_t), m_head + sizeof(uint32_t), sizeof(uint16_t));
}

void CFileWindow::Unmap()
{
    if (m_pWindow)
        munmap(m_pWindow, m_mapped);
    m_pWindow = nullptr;
    m_mapped = 0;
}

void CFileWindow::Close()
{
    if (!IsOpen())
        return;
    Unmap();
    // What a failed cut leaves are zeros, which every reader takes for the end.
    int cut = -1;
    do
        cut = ftruncate(m_file, static_cast<off_t>(m_length));
    while (cut != 0 && errno == EINTR);
    lseek(m_file, static_cast<off_t>(m_length), SEEK_SET);
    m_file = -1;
}
