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

// Of pages that are made ready at a time: many at once cost far less than a page fault for each, and these
// are few enough to pause no frame.
constexpr std::size_t kMostReadyAhead = 256 * 1024;

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

// As large as asked for, unless little of the last window was used as such: reserving room that `write` then
// fills costs as much again as the write.
std::size_t CFileWindow::NextSize() const
{
    if (!m_pWindow || m_used >= m_size / 2)
        return m_size;
    constexpr std::size_t kLeast = 65536;
    return std::min(m_size, std::max(m_used * 2 / PageSize() * PageSize(), kLeast));
}

bool CFileWindow::MoveToEnd()
{
    uint64_t const start = m_length / PageSize() * PageSize();
    std::size_t size = NextSize();
    Unmap();
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
    m_used = 0;
    m_ready = 0;
    m_readyAhead = 0;
    return true;
}

bool CFileWindow::HasRoom(std::size_t size) const
{
    return m_pWindow && m_length >= m_start && m_length + size <= m_start + m_mapped;
}

// Only to be quick: where it fails, or is not known, each page comes with its first byte. It reaches the
// further ahead the longer nothing went by `write`, which needs no pages here.
void CFileWindow::Prefault([[maybe_unused]] std::size_t size)
{
#ifdef MADV_POPULATE_WRITE
    auto const at = static_cast<std::size_t>(m_length - m_start);
    if (at + size <= m_ready)
        return;
    std::size_t const page = at / PageSize() * PageSize();
    bool const jumped = page > m_ready;
    m_readyAhead = jumped ? 0 : std::clamp(m_readyAhead * 2, PageSize(), kMostReadyAhead);
    std::size_t const from = jumped ? page : m_ready;
    std::size_t const next = (at + size + PageSize() - 1) / PageSize() * PageSize() + m_readyAhead;
    m_ready = std::min(m_mapped, next);
    int const error = errno;
    madvise(m_pWindow + from, m_ready - from, MADV_POPULATE_WRITE);
    errno = error;
#endif
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
        if (!HasRoom(1) && !MoveToEnd())
            return false;
        auto const at = static_cast<std::size_t>(m_length - m_start);
        std::size_t const fits = std::min(size, m_mapped - at);
        Prefault(fits);
        std::memcpy(m_pWindow + at, bytes, fits);
        bytes += fits;
        size -= fits;
        m_used += fits;
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
    if (!IsOpen() || size < kHead || size >= kBulk)
        return nullptr;
    auto const room = static_cast<std::size_t>(size);
    if (!HasRoom(room) && (!MoveToEnd() || !HasRoom(room)))
        return nullptr;
    Prefault(room);
    unsigned char* const record = m_pWindow + (m_length - m_start);
    std::memset(record, 0, kHead);  // a record that failed half way may have been here
    std::atomic_signal_fence(std::memory_order_release);
    return record;
}

void CFileWindow::Commit(unsigned char const (&head)[kHead], std::size_t size)
{
    WriteHead(m_pWindow + (m_length - m_start), head);
    m_used += size;
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
    bool const inWindow = m_pWindow && m_record >= m_start && m_record + kHead <= m_start + m_mapped;
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
