// One application at the other end of the link.
#pragma once
#include "profiler/data_path_shared_mem.h"
#include "tools/perf/frames.h"
#include "tools/perf/items.h"
#include "tools/perf/processes.h"
#include <chrono>
#include <map>
#include <memory>

namespace perf
{
class Session;

// Who wants to know what passes.
class Listener
{
public:
    virtual ~Listener() = default;
    // Items and counters are known now.
    virtual void OnDescribed(Session& session) = 0;
    virtual void OnFrame(Session& session, Frame const& frame) = 0;
    virtual void OnMark(Session& session, std::string const& text) = 0;
    // The last word of a session.
    virtual void OnEnded(Session& session) = 0;
};

class Session
{
public:
    enum class State
    {
        Silent,     // it has taken a ticket, and may never speak: it need not profile
        Speaking,   // it looks for blocks, and has not described itself yet
        Profiling,  // described
        Ended,      // by its own word
        Gone,       // the process ended without one
        Broken      // it sends what makes no sense
    };

    explicit Session(std::unique_ptr<CDataPathSharedMem> path);

    // Takes what has come, and sends what is due. Returns whether anything came. Never waits for the
    // application.
    bool Turn(Listener& listener);
    // Told on the next turns; a later change of the same item takes the place of one that still waits. False
    // for one that cannot be told: a value must have room in a buffer.
    bool Set(Change const& change);
    // Bids farewell, so that the application looks for another server, and removes its rings if it is gone.
    void Close();

    uint32_t Ticket() const { return m_ticket; }
    // Whether it is time to look for its process: its rings may tell who one is that has not spoken.
    bool WantsToBeFound() const;
    // What came of that; an unknown process for nothing. One that is not found again and again has died
    // before it spoke, or cannot be seen from here, and is given up: if it lives, it finds the farewell when
    // it speaks, and comes again.
    void TakeFound(Process const& process);

    State GetState() const { return m_state; }
    bool IsOver() const { return m_state >= State::Ended; }
    Process const& GetProcess() const { return m_process; }
    // "1234 cube", the process ID and the name.
    std::string Title() const;
    std::string const& Fault() const { return m_reader.Fault().empty() ? m_fault : m_reader.Fault(); }
    std::vector<Item> const& Items() const { return m_items; }
    std::vector<std::string> const& CounterNames() const { return m_counterNames; }
    FrameRate const& Rate() const { return m_rate; }
    std::optional<Frame> const& LastFrame() const { return m_lastFrame; }
    uint64_t Frames() const { return m_frames.Frames(); }
    // Of the counter of that name in a frame; 0 without one.
    uint32_t CpuTimeOf(Frame const& frame) const;

private:
    using Clock = std::chrono::steady_clock;

    void Accept();
    bool Receive();
    void TakeBlocks(Listener& listener);
    bool TakeDescription(Block const& block, Listener& listener);
    bool TakeCounters(Block const& block, Listener& listener);
    void SendWhatIsDue();
    void LookAfterOther();
    void EndIfLeft();
    void HearGreeting();
    bool Break(std::string const& fault);

    std::unique_ptr<CDataPathSharedMem> m_path;
    uint32_t m_ticket;
    State m_state = State::Silent;
    bool m_accepted = false;
    bool m_asked = false;  // for the description
    bool m_named = false;  // the answer has begun
    Clock::time_point m_lastLook = Clock::now();
    Clock::time_point m_nextSearch;
    Clock::duration m_searchPeriod;
    Process m_process;
    bool m_gone = false;    // the process; what it wrote may still be read
    bool m_closed = false;  // its end of the rings; likewise
    BlockReader m_reader;
    std::string m_fault;
    std::vector<Item> m_items;
    std::vector<std::string> m_counterNames;
    std::map<uint32_t, std::string> m_changes;  // to be sent
    FrameCounter m_frames;
    FrameRate m_rate;
    std::optional<Frame> m_lastFrame;
};
}  // namespace perf
