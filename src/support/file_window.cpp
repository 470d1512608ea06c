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

// Of what is reserved at a time. Many pages at once cost far less than a page fault for each, and these are
// few enough to pause no frame.
constexpr std::size_t kMostAhead = 256 * 1024;

// The ID last, and at once: there is no record without one.
void WriteHead(unsigned char* to, unsigned char const (&head)[CFileWindow::kHead])
{
    std::atomic_signal_fence(std::memory_order_release);
    std::memcpy(to, head, sizeof(uint32_t));
    std::atomic_signal_fence(std::memory_order_release);
    std::memcpy(to + sizeof(uint32_t), head + sizeof(uint32_t), sizeof(uint16_t));
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
    m_reserved = 0;
    if (MakeRoom(1))
        return true;
    Close();
    return false;
}

bool CFileWindow::IsInWindow(std::size_t size) const
{
    return m_pWindow && m_length >= m_start && m_length + size <= m_start + m_size;
}

bool CFileWindow::MoveToEnd()
{
    Unmap();
    uint64_t const start = m_length / PageSize() * PageSize();
    void* const window =
        mmap(nullptr, m_size, PROT_READ | PROT_WRITE, MAP_SHARED, m_file, static_cast<off_t>(start));
    if (window == MAP_FAILED)
        return false;
    m_pWindow = static_cast<unsigned char*>(window);
    m_start = start;
    return true;
}

// The blocks are the file's before anything is copied: a full disk is an error here, and no SIGBUS there.
bool CFileWindow::Reserve(uint64_t start, std::size_t size)
{
    if (!FitsFileSizeLimit(start + size))
        return false;
    int error = EINTR;
    while (error == EINTR)
        error = posix_fallocate(m_file, static_cast<off_t>(start), static_cast<off_t>(size));
    if (error != 0)
        return false;
    m_reserved = start + size;
#ifdef MADV_POPULATE_WRITE
    // Only to be quick: where it fails, each page comes with its first byte.
    int const before = errno;
    madvise(m_pWindow + (start - m_start), size, MADV_POPULATE_WRITE);
    errno = before;
#endif
    return true;
}

// The further ahead, the longer nothing has gone by `write`, which needs none of it.
bool CFileWindow::ReserveAhead(std::size_t size)
{
    bool const jumped = m_length > m_reserved;
    m_ahead = jumped ? PageSize() : std::clamp(m_ahead * 2, PageSize(), kMostAhead);
    uint64_t const start = jumped ? m_length / PageSize() * PageSize() : m_reserved;
    auto const needed = static_cast<std::size_t>(m_length + size - start);
    auto const most = static_cast<std::size_t>(m_start + m_size - start);
    std::size_t ahead = (needed + m_ahead + PageSize() - 1) / PageSize() * PageSize();
    for (ahead = std::min(ahead, most); ahead >= needed; ahead = ahead / 2 / PageSize() * PageSize())
        if (Reserve(start, ahead))
            return true;
    return Reserve(start, needed);
}

// Room in the file and in the window for so many bytes more.
bool CFileWindow::MakeRoom(std::size_t size)
{
    if (!IsInWindow(size) && (!MoveToEnd() || !IsInWindow(size)))
        return false;
    return m_length + size <= m_reserved || ReserveAhead(size);
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
        if (!MakeRoom(1))
            return false;
        auto const room = static_cast<std::size_t>(std::min(m_reserved, m_start + m_size) - m_length);
        std::size_t const fits = std::min(size, room);
        std::memcpy(m_pWindow + (m_length - m_start), bytes, fits);
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

unsigned char* CFileWindow::Claim(uint64_t size)
{
    if (!IsOpen() || size < kHead || size >= kBulk || !MakeRoom(static_cast<std::size_t>(size)))
        return nullptr;
    unsigned char* const record = m_pWindow + (m_length - m_start);
    std::memset(record, 0, kHead);  // a record that failed half way may have been here
    std::atomic_signal_fence(std::memory_order_release);
    return record;
}

void CFileWindow::Commit(unsigned char const (&head)[kHead], std::size_t size)
{
    WriteHead(m_pWindow + (m_length - m_start), head);
    m_length += size;
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
    bool const inWindow = m_pWindow && m_record >= m_start && m_record + kHead <= m_start + m_size;
    if (!inWindow || m_held < kHead)
    {
        while (pwrite(m_file, m_head, m_held, static_cast<off_t>(m_record)) < 0 && errno == EINTR)
            continue;
        return;
    }
    WriteHead(m_pWindow + (m_record - m_start), m_head);
}

void CFileWindow::Unmap()
{
    if (m_pWindow)
        munmap(m_pWindow, m_size);
    m_pWindow = nullptr;
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
