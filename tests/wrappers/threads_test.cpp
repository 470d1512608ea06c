// Several threads record at once. Meant for a ThreadSanitizer build as well: tsan.supp names the races that
// the recorder is known to have.
#include "core/snapshot_scope.h"
#include "tests/wrappers/recorder.h"
#include <atomic>
#include <functional>
#include <map>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

namespace
{

unsigned int const kThreads = 4;
unsigned int const kCalls = 300;

struct Piece
{
    uint64_t thread;
    uint16_t id;
    Bytes payload;
};

uint64_t Number(Bytes const& bytes, size_t at, size_t size)
{
    uint64_t value = 0;
    for (size_t i = size; i > 0; --i)
        value = value << 8 | bytes.at(at + i - 1);
    return value;
}

// The calls of a file with the thread of each. A thread change that changes nothing, or a record that is not
// whole, is a failure.
std::vector<Piece> Walk(Bytes const& file, uint64_t thread)
{
    std::vector<Piece> pieces;
    size_t at = 0;
    bool justChanged = false;
    while (at + 6 <= file.size())
    {
        auto const size = static_cast<size_t>(Number(file, at, 4));
        uint16_t const id = static_cast<uint16_t>(Number(file, at + 4, 2));
        at += 6;
        if (at + size > file.size())
            break;
        if (id == 1)
        {
            EXPECT_EQ(8u, size);
            EXPECT_FALSE(justChanged) << "two thread changes in a row";
            EXPECT_NE(thread, Number(file, at, 8)) << "a change to the same thread";
            thread = Number(file, at, 8);
        }
        else
            pieces.push_back({thread, id, Raw(file.data() + at, size)});
        justChanged = id == 1;
        at += size;
    }
    EXPECT_EQ(file.size(), at);
    return pieces;
}

// Runs the body on several threads that start together.
std::vector<uint64_t> RunTogether(std::function<void(unsigned int)> const& body)
{
    std::vector<uint64_t> ids(kThreads);
    std::atomic<unsigned int> ready{0};
    std::vector<std::thread> threads;
    for (unsigned int index = 0; index < kThreads; ++index)
        threads.emplace_back([&, index] {
            ids[index] = get_id();
            ++ready;
            while (ready < kThreads)
                std::this_thread::yield();
            body(index);
        });
    for (std::thread& thread : threads)
        thread.join();
    return ids;
}

}  // namespace

using Threads = Recorder;

// Every call is there once, whole, under its own thread, and each thread's calls are in its order.
TEST_F(Threads, CallsStandUnderTheirThreadInItsOrder)
{
    Record();
    std::vector<uint64_t> const ids = RunTogether([](unsigned int index) {
        for (unsigned int call = 0; call < kCalls; ++call)
            Es2::_glScissor(static_cast<GLint>(index), static_cast<GLint>(call), 3, 4);
    });
    std::map<uint64_t, unsigned int> next;
    for (Piece const& piece : Walk(Written(), get_id()))
    {
        ASSERT_EQ(2097, piece.id);
        unsigned int const index = static_cast<unsigned int>(Number(piece.payload, 4, 4));
        ASSERT_LT(index, kThreads);
        EXPECT_EQ(ids[index], piece.thread);
        EXPECT_EQ(Joined(U32(0), U32(index), U32(next[piece.thread]++), U32(3), U32(4)), piece.payload);
    }
    for (uint64_t const id : ids)
        EXPECT_EQ(kCalls, next[id]);
}

// Bulk data of one thread does not run into another's.
TEST_F(Threads, BulkDataStaysTogether)
{
    Record();
    RunTogether([](unsigned int index) {
        Bytes const data(5000, static_cast<uint8_t>(index));
        for (unsigned int call = 0; call < kCalls / 10; ++call)
            Es2::_glBufferSubData(GL_ARRAY_BUFFER, static_cast<GLintptr>(index),
                                  static_cast<GLsizeiptr>(1000 * index + call + 1), data.data());
    });
    std::vector<Piece> const pieces = Walk(Written(), get_id());
    EXPECT_EQ(kThreads * (kCalls / 10), pieces.size());
    for (Piece const& piece : pieces)
    {
        ASSERT_EQ(2014, piece.id);
        auto const index = static_cast<size_t>(Number(piece.payload, 8, 4));
        auto const size = static_cast<size_t>(Number(piece.payload, 12, 4));
        EXPECT_EQ(size, Number(piece.payload, 20, 4));
        EXPECT_EQ(Bytes(size, static_cast<uint8_t>(index)),
                  Bytes(piece.payload.begin() + 24, piece.payload.end()));
    }
}

// Threads that come and go leave whole records behind, and a thread's buffer ends with it.
TEST_F(Threads, ShortLivedThreadsRecord)
{
    Record();
    for (unsigned int round = 0; round < 20; ++round)
        RunTogether([](unsigned int index) { Es2::_glLineWidth(static_cast<GLfloat>(index)); });
    EXPECT_EQ(20 * kThreads, Walk(Written(), get_id()).size());
}

// A process that is forked while another thread writes a snapshot has nobody to end it: its calls reach the
// host all the same, and nothing of them is recorded.
TEST_F(Threads, AChildForkedDuringASnapshotCallsTheHost)
{
    static bool const watching = (WatchForks(), true);
    ASSERT_TRUE(watching);
    Record();
    Es2::_glFlush();
    EXPECT_FALSE(Written().empty());
    CSnapshotScope const snapshot;
    pid_t const child = fork();
    if (child == 0)
    {
        size_t const calls = HostCalls("glFlush");
        Es2::_glFlush();
        _exit(HostCalls("glFlush") == calls + 1 && !STraceConfig::m_writingRenderState ? 0 : 1);
    }
    int result = -1;
    ASSERT_EQ(child, waitpid(child, &result, 0));
    EXPECT_EQ(0, result);
    EXPECT_TRUE(Written().empty());
}

// The three APIs write into the one file.
TEST_F(Threads, TheApisShareTheFile)
{
    Record();
    RunTogether([](unsigned int index) {
        for (unsigned int call = 0; call < kCalls; ++call)
        {
            if (index % 3 == 0)
                Egl::_eglWaitGL();
            else if (index % 3 == 1)
                Es1::_glFogf(1, 2.0f);
            else
                Es2::_glFlush();
        }
    });
    std::map<uint16_t, size_t> calls;
    for (Piece const& piece : Walk(Written(), get_id()))
        ++calls[piece.id];
    EXPECT_EQ((std::map<uint16_t, size_t>{{1024, 2 * kCalls}, {2046, kCalls}, {3042, kCalls}}), calls);
}
