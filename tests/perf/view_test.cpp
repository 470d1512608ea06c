// What the server shows on a terminal.
#include "profiler/npl.h"
#include "tests/perf/nobody.h"
#include "tests/profiler/link.h"
#include "tools/perf/view.h"

using namespace perf;

namespace
{
// An application with as many items and counters as the recorder has, on the same thread.
class View : public InSharedMemory
{
protected:
    void SetUp() override
    {
        std::vector<SLibraryItem> items(13, {"NEBTrace.Disable texture modifications", 38, 4, m_off, 1});
        items.push_back({"NEBTrace.Culling mode", 21, 3, m_culling, sizeof m_culling - 1});
        std::vector<SCommsCounter> const counters(27, {"Buffer object modifications (bytes)", 35});
        nplLibraryCreate(m_comms, items.data(), 14);
        nplCountersCreate(m_comms, counters.data(), 27);
        ASSERT_TRUE(m_herd.initialise(kPerfServerName));
        while (m_sessions.empty() || m_sessions.front().GetState() != perf::Session::State::Profiling)
        {
            Frame(0);
            if (auto* const path = m_herd.poll())
                m_sessions.emplace_back(
                    std::unique_ptr<CDataPathSharedMem>(static_cast<CDataPathSharedMem*>(path)));
            for (perf::Session& session : m_sessions)
                session.Turn(m_nobody);
        }
    }
    void TearDown() override
    {
        m_sessions.clear();
        nplShutdown(m_comms);
        m_herd.shutdown();
        InSharedMemory::TearDown();
    }
    // The first `used` counters count.
    void Frame(unsigned used)
    {
        for (unsigned i = 0; i < used; ++i)
            ++m_values[i];
        nplCountersUpdate(m_comms, m_values);
        for (perf::Session& session : m_sessions)
            session.Turn(m_nobody);
    }
    std::vector<std::string> Shown(size_t columns, size_t rows)
    {
        return Compose(m_sessions, &m_sessions.front(), "a message", {columns, rows});
    }
    static size_t LinesWith(std::vector<std::string> const& lines, char const* text)
    {
        size_t count = 0;
        for (std::string const& line : lines)
            count += line.find(text) != std::string::npos ? 1 : 0;
        return count;
    }

    char m_off[1] = {};
    char m_culling[30] = "0\nApp defined\nNone\nBack\nFront";
    unsigned m_values[27] = {};
    SSPSCommsData* m_comms = nplInitialise("App", 3);
    CDataPathHerdSharedMem2 m_herd{nullptr};
    std::list<perf::Session> m_sessions;
    Nobody m_nobody;
};
}  // namespace

// All of it has room beside each other on a large terminal.
TEST_F(View, ALargeTerminalShowsEverything)
{
    Frame(1);
    std::vector<std::string> const lines = Shown(120, 50);
    EXPECT_EQ(27u, LinesWith(lines, "Buffer object modifications (bytes)"));
    EXPECT_EQ(13u, LinesWith(lines, "Disable texture modifications"));
    EXPECT_EQ(1u, LinesWith(lines, "m  Culling mode"));
    EXPECT_EQ(1u, LinesWith(lines, "q: quit"));
    EXPECT_EQ("a message", lines.back());
}

// A terminal of the usual size has all items and the counters that count something.
TEST_F(View, TheUsualTerminalShowsWhatCounts)
{
    Frame(9);
    Frame(9);
    std::vector<std::string> const lines = Shown(80, 24);
    EXPECT_EQ(9u, LinesWith(lines, "Buffer object modi"));
    EXPECT_EQ(13u, LinesWith(lines, "Disable texture modifications"));
    EXPECT_EQ(1u, LinesWith(lines, "App defined"));
    EXPECT_EQ(1u, LinesWith(lines, "q: quit"));
}

// No size is too small, and none is exceeded.
TEST_F(View, KeepsToEverySize)
{
    Frame(27);
    Frame(27);
    for (size_t columns = 0; columns < 130; ++columns)
        for (size_t rows = 0; rows < 60; rows += 1 + rows / 10)
        {
            std::vector<std::string> const lines = Shown(columns, rows);
            EXPECT_LE(lines.size(), rows);
            for (std::string const& line : lines)
                ASSERT_LE(line.size(), columns);
        }
}
