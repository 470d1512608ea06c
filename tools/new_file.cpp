#include "new_file.h"
#include "commands.h"
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <filesystem>
#include <unistd.h>

namespace fs = std::filesystem;

NewFile::NewFile(std::string const& name) : m_name(name)
{
    std::error_code ignored;
    // The file that a link names is replaced, not the link; a device or a pipe must never be.
    if (fs::exists(m_name, ignored))
    {
        if (!fs::is_regular_file(m_name, ignored))
            throw CommandFailed(m_name + ": not a regular file");
        m_name = fs::canonical(m_name).string();
    }
    m_beside = m_name + ".part-" + std::to_string(getpid());
    int const file = open(m_beside.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
    if (file >= 0)
        m_file = fdopen(file, "wb");
    if (!m_file)
        Fail();
}

NewFile::~NewFile()
{
    if (m_file)
        std::fclose(m_file);
    if (!m_beside.empty())
        unlink(m_beside.c_str());
}

void NewFile::Write(void const* data, size_t size)
{
    errno = 0;
    if (std::fwrite(data, 1, size, m_file) != size)
        Fail();
}

void NewFile::Keep()
{
    errno = 0;
    bool const written = std::fflush(m_file) == 0 && fsync(fileno(m_file)) == 0;
    int const reason = errno;
    bool const closed = std::fclose(m_file) == 0;
    m_file = nullptr;
    errno = written ? errno : reason;
    if (!written || !closed || std::rename(m_beside.c_str(), m_name.c_str()) != 0)
        Fail();
    m_beside.clear();
}

void NewFile::Fail() const { throw CommandFailed(m_name + ": cannot be written: " + std::strerror(errno)); }
