// What is appended through a window is what is in the file, whatever becomes of the process.
#include "support/file_window.h"
#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

namespace
{

using Bytes = std::vector<unsigned char>;

constexpr std::size_t kBulk = 65536;  // from here on pieces go past the window

class FileWindow : public testing::Test
{
protected:
    FileWindow()
    {
        char name[] = "/tmp/nebtrace-window-XXXXXX";
        m_file = mkstemp(name);
        unlink(name);
    }
    ~FileWindow() override
    {
        m_window.Close();
        close(m_file);
    }

    Bytes Content() const
    {
        Bytes content(static_cast<std::size_t>(lseek(m_file, 0, SEEK_END)));
        EXPECT_EQ(static_cast<ssize_t>(content.size()), pread(m_file, content.data(), content.size(), 0));
        return content;
    }

    static Bytes Numbered(std::size_t size, unsigned int first)
    {
        Bytes bytes(size);
        for (std::size_t i = 0; i < size; ++i)
            bytes[i] = static_cast<unsigned char>((first + i) % 255 + 1);  // never zero
        return bytes;
    }

    bool Append(Bytes const& bytes) { return m_window.Append(bytes.data(), bytes.size()); }

    bool Open(std::size_t size = 1) { return m_window.Open(m_file, 0, size); }

    // Runs `act` in a process that is then killed.
    template <typename Act>
    static void InAKilledProcess(Act act)
    {
        pid_t const child = fork();
        if (child == 0)
        {
            act();
            raise(SIGKILL);
        }
        int status = 0;
        EXPECT_EQ(child, waitpid(child, &status, 0));
        EXPECT_TRUE(WIFSIGNALED(status) && WTERMSIG(status) == SIGKILL);
    }

    std::size_t const m_page = static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
    int m_file;
    CFileWindow m_window;
};

// Small pieces, pieces of more than a window, and bulk in between, with windows of one page and of several.
TEST_F(FileWindow, PiecesOfAllSizesFollowEachOther)
{
    for (std::size_t const window : {std::size_t{1}, 3 * m_page})
    {
        ASSERT_EQ(0, ftruncate(m_file, 0));
        ASSERT_TRUE(Open(window));
        Bytes expected;
        for (std::size_t const size :
             {std::size_t{1}, std::size_t{6}, m_page - 7, m_page, m_page + 1, 5 * m_page, kBulk - 1, kBulk,
              std::size_t{3}, 2 * kBulk + 1, std::size_t{100}})
        {
            Bytes const piece = Numbered(size, static_cast<unsigned int>(size));
            EXPECT_TRUE(Append(piece));
            expected.insert(expected.end(), piece.begin(), piece.end());
        }
        m_window.Close();
        EXPECT_EQ(expected, Content());
        EXPECT_EQ(static_cast<off_t>(expected.size()), lseek(m_file, 0, SEEK_CUR));
    }
}

TEST_F(FileWindow, WhatTheFileHeldBeforeStays)
{
    Bytes const before = Numbered(10, 1);
    Bytes const more = Numbered(20, 99);
    ASSERT_EQ(10, write(m_file, before.data(), before.size()));
    ASSERT_TRUE(m_window.Open(m_file, before.size(), m_page));
    EXPECT_TRUE(Append(more));
    m_window.Close();
    Bytes expected = before;
    expected.insert(expected.end(), more.begin(), more.end());
    EXPECT_EQ(expected, Content());
}

// Nothing but zeros stands behind what a killed process appended.
TEST_F(FileWindow, WhatAKilledProcessAppendedIsThere)
{
    Bytes const piece = Numbered(m_page + 100, 7);
    InAKilledProcess([&] { Open(4 * m_page) && Append(piece); });
    Bytes content = Content();
    ASSERT_GT(content.size(), piece.size());
    EXPECT_LE(content.size(), 4 * m_page);
    EXPECT_EQ(Bytes(content.size() - piece.size()),
              Bytes(content.begin() + static_cast<long>(piece.size()), content.end()));
    content.resize(piece.size());
    EXPECT_EQ(piece, content);
}

// A record has no head until its last piece is there, wherever it lies.
TEST_F(FileWindow, ARecordHasAHeadOnceItIsWhole)
{
    for (std::size_t const ahead : {std::size_t{0}, m_page - 10, m_page - 3})
    {
        ASSERT_EQ(0, ftruncate(m_file, 0));
        Bytes const head = Numbered(4, 1);
        Bytes const rest = Numbered(50, 5);
        auto const begin = [&] {
            Open();
            Append(Numbered(ahead, 1));
            m_window.BeginRecord();
            Append(head);
            Append(rest);
        };
        InAKilledProcess(begin);
        Bytes content = Content();
        content.resize(ahead + 54);
        Bytes expected = Numbered(ahead, 1);
        expected.resize(ahead + 6);
        expected.insert(expected.end(), rest.begin() + 2, rest.end());
        EXPECT_EQ(expected, content) << ahead;

        InAKilledProcess([&] {
            begin();
            m_window.EndRecord();
        });
        content = Content();
        content.resize(ahead + 54);
        std::copy(head.begin(), head.end(), expected.begin() + static_cast<long>(ahead));
        std::copy(rest.begin(), rest.begin() + 2, expected.begin() + static_cast<long>(ahead) + 4);
        EXPECT_EQ(expected, content) << ahead;
    }
}

// The same for one that is made in its place: at the window's start, in its midst, and where it moves along
// first.
TEST_F(FileWindow, AClaimedRecordHasAHeadOnceItIsCommitted)
{
    unsigned char const head[CFileWindow::kHead] = {1, 2, 3, 4, 5, 6};
    Bytes const rest = Numbered(50, 7);
    std::size_t const size = sizeof head + rest.size();
    for (std::size_t const ahead : {std::size_t{0}, std::size_t{1000}, 2 * m_page - size, 2 * m_page - 3})
    {
        ASSERT_EQ(0, ftruncate(m_file, 0));
        auto const begin = [&] {
            Open(2 * m_page);
            Append(Numbered(ahead, 1));
            Append(Numbered(ahead > 100 ? 100 : 0, 1));
            unsigned char* const record = m_window.Claim(size);
            std::copy(rest.begin(), rest.end(), record + sizeof head);
        };
        Bytes expected = Numbered(ahead, 1);
        Bytes const more = Numbered(ahead > 100 ? 100 : 0, 1);
        expected.insert(expected.end(), more.begin(), more.end());
        std::size_t const at = expected.size();
        expected.resize(at + sizeof head);
        expected.insert(expected.end(), rest.begin(), rest.end());
        InAKilledProcess(begin);
        Bytes content = Content();
        content.resize(expected.size());
        EXPECT_EQ(expected, content) << ahead;

        InAKilledProcess([&] {
            begin();
            m_window.Commit(head, size);
            Append(rest);
        });
        std::copy(std::begin(head), std::end(head), expected.begin() + static_cast<long>(at));
        expected.insert(expected.end(), rest.begin(), rest.end());
        content = Content();
        content.resize(expected.size());
        EXPECT_EQ(expected, content) << ahead;
    }
}

// A claim that fails changes nothing, and the pieces come in its stead.
TEST_F(FileWindow, WhatHasNoRoomIsNotClaimed)
{
    EXPECT_EQ(nullptr, m_window.Claim(100));
    ASSERT_TRUE(Open(2 * m_page));
    EXPECT_EQ(nullptr, m_window.Claim(2 * m_page + 1));
    EXPECT_EQ(nullptr, m_window.Claim(kBulk));
    EXPECT_EQ(nullptr, m_window.Claim(uint64_t{UINT32_MAX} + 7));
    EXPECT_EQ(nullptr, m_window.Claim(CFileWindow::kHead - 1));
    Bytes const piece = Numbered(2 * m_page + 1, 5);
    EXPECT_TRUE(Append(piece));
    m_window.Close();
    EXPECT_EQ(piece, Content());
}

// The head is zeros while the rest is stored, whatever a record left there that had then no room.
TEST_F(FileWindow, AClaimedHeadIsZero)
{
    ASSERT_TRUE(Open(2 * m_page));
    unsigned char* const record = m_window.Claim(20);
    ASSERT_NE(nullptr, record);
    std::fill_n(record, 20, 0xFF);
    EXPECT_EQ(record, m_window.Claim(10));
    EXPECT_EQ(Bytes(CFileWindow::kHead), Bytes(record, record + CFileWindow::kHead));
}

TEST_F(FileWindow, ARecordMayBeShorterThanAHead)
{
    ASSERT_TRUE(Open());
    m_window.BeginRecord();
    EXPECT_TRUE(Append(Numbered(3, 1)));
    m_window.EndRecord();
    EXPECT_TRUE(Append(Numbered(5, 4)));
    m_window.Close();
    EXPECT_EQ(Numbered(8, 1), Content());
}

// No room is an error of the piece that does not fit, and neither a signal nor the end of the window.
TEST_F(FileWindow, APieceThatDoesNotFitIsNotThere)
{
    rlimit limit{};
    ASSERT_EQ(0, getrlimit(RLIMIT_FSIZE, &limit));
    rlimit const two{static_cast<rlim_t>(2 * m_page), limit.rlim_max};
    ASSERT_EQ(0, setrlimit(RLIMIT_FSIZE, &two));
    ASSERT_TRUE(Open(16 * m_page));
    Bytes const most = Numbered(2 * m_page - 10, 3);
    EXPECT_TRUE(Append(most));
    EXPECT_FALSE(Append(Numbered(11, 1)));
    EXPECT_FALSE(Append(Numbered(kBulk, 1)));
    Bytes const last = Numbered(10, 77);
    EXPECT_TRUE(Append(last));
    EXPECT_FALSE(Append(Numbered(1, 1)));
    ASSERT_EQ(0, setrlimit(RLIMIT_FSIZE, &limit));
    EXPECT_TRUE(Append(Numbered(1, 1)));
    m_window.Close();
    Bytes expected = most;
    expected.insert(expected.end(), last.begin(), last.end());
    expected.push_back(2);
    EXPECT_EQ(expected, Content());
}

TEST_F(FileWindow, WhatCannotBeMappedIsNotOpen)
{
    EXPECT_FALSE(m_window.Open(m_file, 0, 0));
    EXPECT_FALSE(m_window.Open(-1, 0, m_page));
    int ends[2];
    ASSERT_EQ(0, pipe(ends));
    EXPECT_FALSE(m_window.Open(ends[1], 0, m_page));
    close(ends[0]);
    close(ends[1]);
    int const unreadable = open("/tmp", O_TMPFILE | O_WRONLY, 0600);
    if (unreadable >= 0)
    {
        EXPECT_FALSE(m_window.Open(unreadable, 0, m_page));
        EXPECT_EQ(0, lseek(unreadable, 0, SEEK_END));
        close(unreadable);
    }
    EXPECT_FALSE(m_window.IsOpen());
    m_window.Close();
    m_window.BeginRecord();
    m_window.EndRecord();
}

}  // namespace
