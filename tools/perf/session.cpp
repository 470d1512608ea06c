#include "tools/perf/session.h"
#include "profiler/comms_blocks.h"
#include "tools/perf/ring_guard.h"

namespace perf
{
namespace
{
constexpr size_t kHelloSize = 5;
// Of one turn, so that an application that never pauses leaves time for the others and for the keys.
constexpr size_t kMostInATurn = 1024 * 1024;
constexpr std::chrono::milliseconds kLookPeriod{100};
// From search to search twice as long. Behind the last one there is nobody to be found.
constexpr std::chrono::milliseconds kFirstSearch{100};
constexpr std::chrono::milliseconds kLastSearch{800};
constexpr char kDamaged[] = "the rings are damaged";
constexpr char kCpuTime[] = "CPU driver time (us)";
constexpr unsigned int kBlockHead = 8;  // of a change: the description word and the index
}  // namespace

Session::Session(std::unique_ptr<CDataPathSharedMem> path)
    : m_path(std::move(path)), m_ticket(m_path->Ticket()), m_nextSearch(Clock::now() + kFirstSearch),
      m_searchPeriod(kFirstSearch)
{
    RingGuard const guard;
    m_path->OutliveOther();
    Accept();
}

bool Session::Break(std::string const& fault)
{
    m_state = State::Broken;
    m_fault = fault;
    return false;
}

void Session::Accept()
{
    if (m_path->DataOpenServerTryAccept() == 1)
        m_accepted = true;
    else if (m_path->BytesReceived() >= kHelloSize)
        Break("it does not greet as an application does");
}

// One pass at a time, so that nothing is asked for that may never come.
bool Session::Receive()
{
    static char buffer[kRingRoom];
    size_t total = 0;
    while (total < kMostInATurn)
    {
        unsigned int count = 0;
        int const result = m_path->DataReceiveBytes(buffer, sizeof buffer, &count);
        m_reader.Feed(buffer, count);
        total += count;
        if (result == 0)
            return Break(kDamaged);
        if (count == 0)
            break;
    }
    return total != 0;
}

bool Session::Turn(Listener& listener)
{
    RingGuard const guard;
    bool came = false;
    // Asked ahead of the last receive: what it wrote before its end is then all there.
    LookAfterOther();
    if (!m_accepted)
        Accept();
    if (m_accepted && !IsOver())
    {
        came = Receive();
        TakeBlocks(listener);
    }
    if (!came)
        EndIfLeft();
    SendWhatIsDue();
    if (guard.Tripped() && !IsOver())
        Break(kDamaged);
    if (IsOver())
    {
        Close();
        listener.OnEnded(*this);
    }
    return came;
}

void Session::LookAfterOther()
{
    if (m_gone || Clock::now() - m_lastLook < kLookPeriod)
        return;
    m_lastLook = Clock::now();
    m_gone = m_process.IsGone();
    m_closed = m_path->IsUnlinked();
}

// Without a word: where it was killed, or never spoke.
void Session::EndIfLeft()
{
    if (IsOver())
        return;
    if (m_gone)
        m_state = State::Gone;
    else if (m_closed)
        m_state = State::Ended;
}

bool Session::WantsToBeFound() const
{
    return m_state == State::Silent && m_process.Id() == 0 && Clock::now() >= m_nextSearch;
}

void Session::TakeFound(Process const& process)
{
    m_process = process;
    m_searchPeriod *= 2;
    m_nextSearch = Clock::now() + m_searchPeriod;
    if (m_process.Id() == 0 && m_searchPeriod > kLastSearch)
        m_gone = true;
}

void Session::HearGreeting()
{
    if (m_state != State::Silent || !m_reader.Process())
        return;
    m_state = State::Speaking;
    // It was only looked for in vain, or this is asked again.
    m_gone = false;
    // One that has ended since is known by its rings only.
    Process const told(*m_reader.Process());
    if (told.IsKnown() || !m_process.IsKnown())
        m_process = told;
}

void Session::TakeBlocks(Listener& listener)
{
    Block block;
    while (!IsOver() && m_reader.Next(block))
    {
        HearGreeting();
        bool good = true;
        if (block.identifier == eRcShutdown)
            m_state = State::Ended;
        else if (block.identifier == eRcCounters)
            good = TakeCounters(block, listener);
        else if (block.identifier == eRcMark)
            listener.OnMark(*this, ParseMark(block.payload).value_or(""));
        else
            good = TakeDescription(block, listener);
        if (!good && !IsOver())
            Break("a block contradicts itself");
    }
    HearGreeting();
    if (!m_reader.Fault().empty())
        m_state = State::Broken;
}

// The name comes only in answer to this server's question, and the counters stand last: what comes ahead of
// it is of an application that is still making its tables.
bool Session::TakeDescription(Block const& block, Listener& listener)
{
    if (block.identifier == eRcLibraryName)
    {
        m_named = true;
        return ParseLibraryName(block.payload).has_value();
    }
    if (block.identifier == eRcLibraryItems)
    {
        auto items = ParseItems(block.payload);
        bool const whole = items.has_value();
        m_items = std::move(items).value_or(std::vector<Item>());
        return whole;
    }
    auto names = ParseCounterNames(block.payload);
    bool const whole = names.has_value();
    m_counterNames = std::move(names).value_or(std::vector<std::string>());
    m_lastFrame.reset();
    m_frames.Restart();
    if (!whole)
        return false;
    if (m_named && m_state != State::Profiling)
    {
        m_state = State::Profiling;
        listener.OnDescribed(*this);
    }
    return true;
}

bool Session::TakeCounters(Block const& block, Listener& listener)
{
    if (m_state != State::Profiling)
        return true;
    auto sample = ParseCounters(block.payload);
    if (!sample || sample->values.size() != m_counterNames.size())
        return false;
    std::optional<Frame> frame = m_frames.Add(std::move(*sample));
    if (!frame)
        return true;
    m_rate.Add(frame->duration, CpuTimeOf(*frame));
    m_lastFrame = std::move(frame);
    listener.OnFrame(*this, *m_lastFrame);
    return true;
}

uint32_t Session::CpuTimeOf(Frame const& frame) const
{
    for (size_t i = 0; i < m_counterNames.size() && i < frame.counters.size(); ++i)
        if (m_counterNames[i] == kCpuTime)
            return frame.counters[i];
    return 0;
}

bool Session::Set(Change const& change)
{
    if (change.index >= m_items.size() || change.value.size() > kRingRoom - kBlockHead)
        return false;
    m_items[change.index].value = change.value;
    m_changes[change.index] = change.value;
    return true;
}

void Session::SendWhatIsDue()
{
    if (!m_accepted || IsOver() || m_state == State::Silent)
        return;
    if (!m_asked && m_path->CanSendAtOnce(kBlockHead))
        m_asked = DataPathSendBlockDescription(*m_path, eRcSendDescription, 0);
    while (!m_changes.empty())
    {
        auto const& [index, value] = *m_changes.begin();
        auto const size = static_cast<unsigned int>(value.size());
        if (!m_path->CanSendAtOnce(kBlockHead + size))
            return;
        if (!DataPathSend1uintNbytes(*m_path, eRcChangeItem, index, value.data(), size))
        {
            Break(kDamaged);
            return;
        }
        m_changes.erase(m_changes.begin());
    }
}

// One that has not spoken finds the farewell when it does; so does one that was taken for dead, or whose
// words made no sense, if it lives.
void Session::Close()
{
    if (!m_path)
        return;
    RingGuard const guard;
    if (m_accepted && m_path->CanSendAtOnce(kBlockHead))
        DataPathSendBlockDescription(*m_path, eRcShutdown, 0);
    m_path.reset();
    if (m_state == State::Gone)
        UnlinkRings(m_ticket);
}

std::string Session::Title() const
{
    if (m_process.Id() == 0)
        return "unknown process";
    std::string const name = Printable(m_process.Name());
    return std::to_string(m_process.Id()) + (name.empty() ? "" : " " + name);
}
}  // namespace perf
