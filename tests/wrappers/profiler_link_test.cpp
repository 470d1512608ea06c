// The profiler and a performance server, through shared memory.
#include "tests/profiler/server.h"
#include "tests/unit/fake_clock.h"
#include "tests/wrappers/profiled.h"
#include <new>
#include <sys/wait.h>
#include <unistd.h>
#include <utility>

namespace
{

// Which allocations fail.
size_t s_noTableOf = 0;
bool s_noObjects = false;
// Answers its client while the table of the items is made: between the link's first two looks for a server.
Server* s_pAnswering = nullptr;

// Leaves the process without memory for a table of so many elements.
class NoTable
{
public:
    explicit NoTable(size_t count) { s_noTableOf = count; }
    ~NoTable() { s_noTableOf = 0; }
    NoTable(NoTable const&) = delete;
    NoTable& operator=(NoTable const&) = delete;
};

}  // namespace

extern "C" void* __real_calloc(size_t count, size_t size);

// Every calloc of this program ends up here.
extern "C" void* __wrap_calloc(size_t count, size_t size)
{
    if (s_pAnswering && count == CProfiler::eItemCount)
        std::exchange(s_pAnswering, nullptr)->Accept([] {});
    return s_noTableOf != 0 && count == s_noTableOf ? nullptr : __real_calloc(count, size);
}

void* operator new(std::size_t size, std::nothrow_t const&) noexcept
{
    if (s_noObjects)
        return nullptr;
    try
    {
        return ::operator new(size);
    } catch (std::bad_alloc const&)
    {
        return nullptr;
    }
}

namespace
{

class ProfilerLink : public Profiled
{
protected:
    // 5000 seconds and 7 microseconds, in 32 bits: 0x2A05F207.
    ProfilerLink() { SetClock(5000, 7); }

    static void Call() { Es2::_glFlush(); }
    static void Swap() { Egl::_eglSwapBuffers(nullptr, nullptr); }

    void Meet()
    {
        ASSERT_TRUE(m_server.Listen());
        m_server.Accept(Call);
        while (!Profiler().m_pComms->bConnected)
            Call();
        EXPECT_EQ(14u, m_server.ReadWord());
        EXPECT_EQ(static_cast<uint32_t>(getpid()), m_server.ReadWord());
    }

    Server m_server;
};

Bytes Text(std::string const& text) { return Joined(U32(text.size()), Chars(text)); }

Bytes Switch(std::string const& name) { return Joined(Text(name), U32(4), U32(1), U8(0)); }

}  // namespace

// Without a server nothing is sent, frame by frame, and the counters go on growing.
TEST_F(ProfilerLink, WithoutAServerTheCountersGrow)
{
    ASSERT_NE(nullptr, Profiler().m_pComms);
    EXPECT_FALSE(Profiler().SendCounters());
    for (int frame = 0; frame < 3; ++frame)
    {
        Es2::_glScissor(1, 2, 3, 4);
        Swap();
    }
    EXPECT_EQ(0u, Profiler().m_pComms->bConnected);
    EXPECT_EQ(3u, Profiler().m_aCounters[13]);
    EXPECT_EQ(std::vector<std::string>(), sharedmemory::Objects());
}

// Asked to describe itself, the library tells its name, the fourteen items and the twenty-seven counters.
TEST_F(ProfilerLink, TheDescription)
{
    Meet();
    m_server.AskForDescription();
    Call();
    Block const name = m_server.ReadBlock();
    EXPECT_EQ(80u, name.identifier);
    EXPECT_EQ(Text("NEBTrace"), name.payload);
    Block const items = m_server.ReadBlock();
    EXPECT_EQ(100u, items.identifier);
    EXPECT_EQ(
        Joined(U32(14), Switch("NEBTrace.Force zero viewport"), Switch("NEBTrace.Disable blending"),
               Switch("NEBTrace.Force 2x2 textures"), Switch("NEBTrace.Force flat colour frag shader"),
               Switch("NEBTrace.Disable stencil test"), Switch("NEBTrace.Disable depth test"),
               Switch("NEBTrace.Disable scissor test"), Switch("NEBTrace.Disable draw calls"),
               Switch("NEBTrace.Disable flush and finish"), Switch("NEBTrace.Disable texture modifications"),
               Switch("NEBTrace.Disable texture filtering"), Switch("NEBTrace.Disable discard / alpha test"),
               Switch("NEBTrace.Disable frame buffer accesses"), Text("NEBTrace.Culling mode"), U32(3),
               Text("0\nApp defined\nNone\nBack\nFront")),
        items.payload);
    Block const counters = m_server.ReadBlock();
    EXPECT_EQ(132u, counters.identifier);
    EXPECT_EQ(Joined(U32(0x2A05F207), U32(27), Text("Indexed draw calls"), Text("Non-indexed draw calls"),
                     Text("Points no."), Text("Line no. (list)"), Text("Line no. (loop)"),
                     Text("Line no. (strip)"), Text("Total line no."), Text("Triangle no. (list)"),
                     Text("Triangle no. (strip)"), Text("Triangle no. (fan)"), Text("Total triangle no."),
                     Text("Texture uploads"), Text("Texture modifications"), Text("Scissor calls"),
                     Text("Viewport calls"), Text("Frame buffer accesses"), Text("Vertex shader compiles"),
                     Text("Fragment shader compiles"), Text("Program links"), Text("CPU driver time (us)"),
                     Text("Framebuffer access (bytes)"), Text("Texture uploads (bytes)"),
                     Text("Texture modifications (bytes)"), Text("Buffer object uploads (bytes)"),
                     Text("Buffer object modifications (bytes)"), Text("Uniform uploads"),
                     Text("Context binds")),
              counters.payload);
}

// A server that answers while the link opens gets the counters' names as they are made, and their first
// values.
TEST_F(ProfilerLink, OpeningSendsTheFirstCounters)
{
    CProfiler& profiler = Profiler();
    profiler.CloseComms();
    profiler.m_aCounters[13] = 5;
    ASSERT_TRUE(m_server.Listen());
    s_pAnswering = &m_server;
    ASSERT_TRUE(profiler.OpenComms());
    EXPECT_EQ(14u, m_server.ReadWord());
    EXPECT_EQ(static_cast<uint32_t>(getpid()), m_server.ReadWord());
    EXPECT_EQ(132u, m_server.ReadBlock().identifier);
    Block const frame = m_server.ReadBlock();
    EXPECT_EQ(136u, frame.identifier);
    EXPECT_EQ(Joined(U32(0x2A05F207), Bytes(27 * 4)), frame.payload);
    EXPECT_EQ(Bytes(), m_server.ReadRest());
}

// Each swap sends the counters once, with the time; other calls send nothing.
TEST_F(ProfilerLink, EachSwapSendsTheCounters)
{
    Meet();
    EXPECT_EQ(Bytes(), m_server.ReadRest());
    for (uint32_t frame = 1; frame <= 3; ++frame)
    {
        Es2::_glDrawArrays(GL_TRIANGLES, 0, 6);
        Es1::_glScissor(1, 2, 3, 4);
        SetClock(5000, static_cast<long>(7 + frame));
        EXPECT_EQ(Bytes(), m_server.ReadRest());
        Swap();
        Block const block = m_server.ReadBlock();
        EXPECT_EQ(136u, block.identifier);
        EXPECT_EQ(Joined(U32(0x2A05F207 + frame),
                         Words({0, frame, 0, 0, 0, 0, 0, 2 * frame, 0, 0, 2 * frame, 0, 0, frame,
                                0, 0,     0, 0, 0, 0, 0, 0,         0, 0, 0,         0, 0})),
                  block.payload);
        EXPECT_EQ(Bytes(), m_server.ReadRest());
    }
}

// With profiling off no call touches the link, though it is there.
TEST_F(ProfilerLink, WithoutProfilingTheLinkRests)
{
    Meet();
    STraceConfig::m_bProfile = false;
    m_server.AskForDescription();
    Call();
    Swap();
    EXPECT_EQ(Bytes(), m_server.ReadRest());
}

// The server's switch holds for the very call that takes it in.
TEST_F(ProfilerLink, AServersSwitchIsLiveAtOnce)
{
    Meet();
    ASSERT_TRUE(m_server.Change(7, "\1"));
    Fake().Forget();
    EXPECT_EQ("NEBTRACE(M) ChangeItem: NEBTrace.Disable draw calls\n",
              Printed([] { EXPECT_EQ(Changes{}, Counted([] { Es2::_glDrawArrays(GL_TRIANGLES, 0, 3); })); }));
    EXPECT_EQ(0u, HostCalls("glDrawArrays"));
    ASSERT_TRUE(m_server.Change(13, "2\nApp defined"));
    Call();
    EXPECT_EQ(2, CProfiler::m_CullingModeSelection);
}

// The end of the profiler is told to the server, and leaves nothing in shared memory but the server's own.
TEST_F(ProfilerLink, TheEndIsTold)
{
    Meet();
    CProfiler::Destroy();
    Block const end = m_server.ReadBlock();
    EXPECT_EQ(144u, end.identifier);
    EXPECT_EQ(Bytes(), end.payload);
    Swap();
    ASSERT_NE(nullptr, CProfiler::m_pInstance);
    EXPECT_NE(nullptr, CProfiler::m_pInstance->m_pComms) << "the next swap looks for a server again";
}

// A link that is open stays as it is; once closed, it opens anew, with all counters at 0.
TEST_F(ProfilerLink, OpeningAndClosing)
{
    CProfiler& profiler = Profiler();
    profiler.CloseComms();
    EXPECT_EQ(nullptr, profiler.m_pComms);
    profiler.m_aCounters[13] = 5;
    ASSERT_TRUE(profiler.OpenComms());
    SSPSCommsData const* const comms = profiler.m_pComms;
    EXPECT_EQ("NEBTrace", std::string(comms->pName, comms->nameLength));
    EXPECT_EQ(14u, comms->itemCount);
    EXPECT_EQ(27u, comms->counterCount);
    EXPECT_EQ(0u, profiler.m_aCounters[13]);
    profiler.m_aCounters[13] = 6;
    EXPECT_TRUE(profiler.OpenComms());
    EXPECT_EQ(comms, profiler.m_pComms);
    EXPECT_EQ(6u, profiler.m_aCounters[13]);
    profiler.CloseComms();
    EXPECT_EQ(nullptr, profiler.m_pComms);
}

// Without memory for the tables the failure is told, the link is closed, and the next swap tries again.
TEST_F(ProfilerLink, TablesWithoutMemory)
{
    CProfiler& profiler = Profiler();
    profiler.CloseComms();
    profiler.m_aCounters[13] = 5;
    {
        NoTable const items(14);
        EXPECT_EQ("NEBTRACE(M) NEBTrace: nplLibraryCreate() failed\n\n",
                  Printed([&] { EXPECT_FALSE(profiler.OpenComms()); }));
        EXPECT_EQ(nullptr, profiler.m_pComms);
    }
    {
        NoTable const counters(27);
        EXPECT_EQ("NEBTRACE(M) NEBTrace: nplCountersCreate() failed\n\n",
                  Printed([&] { EXPECT_FALSE(profiler.SendCounters()); }));
        EXPECT_EQ(nullptr, profiler.m_pComms);
    }
    Call();
    EXPECT_EQ(5u, profiler.m_aCounters[13]);
    EXPECT_EQ("", Printed(Swap));
    EXPECT_NE(nullptr, profiler.m_pComms);
}

// Without memory for the link itself there is none, and nothing is said.
TEST_F(ProfilerLink, ALinkWithoutMemory)
{
    Profiler().CloseComms();
    s_noObjects = true;
    bool opened = true;
    EXPECT_EQ("", Printed([&] { opened = Profiler().OpenComms(); }));
    s_noObjects = false;
    EXPECT_FALSE(opened);
    EXPECT_EQ(nullptr, Profiler().m_pComms);
}

// The link opens with the recorder's settings, whether the application is profiled or not.
TEST_F(ProfilerLink, TheSettingsOpenTheLink)
{
    CProfiler::Destroy();
    STraceConfig::m_bProfile = false;
    STraceConfig* const kept = STraceConfig::s_pInstance;
    CNEBTString const path = STraceConfig::m_traceOutfilePath;
    STraceConfig::s_pInstance = nullptr;
    STraceConfig::Instance();
    ASSERT_NE(nullptr, CProfiler::m_pInstance);
    EXPECT_NE(nullptr, CProfiler::m_pInstance->m_pComms);
    delete STraceConfig::s_pInstance;
    STraceConfig::s_pInstance = kept;
    STraceConfig::m_traceOutfilePath = path;
}

// In the child of a fork the link stays the parent's; the child looks for a server of its own at its next
// swap.
TEST_F(ProfilerLink, AForkedChildLeavesTheLink)
{
    static bool const watching = (WatchForks(), true);
    ASSERT_TRUE(watching);
    Meet();
    Es2::_glScissor(1, 2, 3, 4);
    pid_t const child = fork();
    if (child == 0)
    {
        bool const left = Profiler().m_pComms == nullptr;
        Es2::_glScissor(1, 2, 3, 4);
        bool const counts = Profiler().m_aCounters[13] == 2 && Profiler().m_pComms == nullptr;
        Swap();
        bool const ownLink = Profiler().m_pComms != nullptr && Profiler().m_pComms->bConnected == 0;
        _exit(left && counts && ownLink ? 0 : 1);
    }
    int status = -1;
    ASSERT_EQ(child, waitpid(child, &status, 0));
    EXPECT_EQ(0, status);
    EXPECT_EQ(Bytes(), m_server.ReadRest());
    EXPECT_EQ(1u, Profiler().m_pComms->bConnected);
    Swap();
    Block const frame = m_server.ReadBlock();
    EXPECT_EQ(136u, frame.identifier);
    EXPECT_EQ(U32(1), Bytes(frame.payload.begin() + 4 + 13 * 4, frame.payload.begin() + 4 + 14 * 4));
}
