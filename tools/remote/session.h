// What passes between a client and a traced application: one command at a time, each waited for until it is
// acknowledged, and beside them the application's state and its trace.
#pragma once
#include "tools/remote/connection.h"
#include "tools/remote/trace_stream.h"
#include <chrono>
#include <memory>

namespace remote
{
using Clock = std::chrono::steady_clock;
constexpr std::chrono::milliseconds kSlice{100};  // of a wait

class Session
{
public:
    // `patience`: how long an answer may take. The application answers from within its own calls to EGL and
    // OpenGL ES, at most once a second.
    Session(std::unique_ptr<Connection> connection, std::chrono::milliseconds patience)
        : m_connection(std::move(connection)), m_patience(patience)
    {
    }

    // The calls below throw CommandFailed when the connection is lost or an answer does not come in time.

    // Takes what comes within the given time.
    void Listen(std::chrono::milliseconds time);
    // Waits for a word on the application's state behind the last acknowledgement.
    State AwaitState();
    // Waits until something is so; `what` completes "... within 10 s".
    template <typename Done>
    void Await(Done const& done, std::string const& what)
    {
        Clock::time_point const last = Clock::now() + m_patience;
        while (!done())
        {
            if (Clock::now() >= last)
                FailForSilence(what);
            Listen(kSlice);
        }
    }
    // Sends a command and waits for its acknowledgement.
    void Do(Command command);
    // Lets the application go on, and sees to it that it does.
    void Release();

    State LastState() const { return m_state; }
    bool KnowsState() const { return m_states != 0; }
    // Status packets since the last acknowledgement.
    uint64_t StatesHeard() const { return m_states - m_statesBefore; }
    uint64_t Repeated() const { return m_connection->Repeated(); }
    // Where the trace goes from now on; null drops it. Returns how many bytes were dropped so far.
    uint64_t Divert(TraceStream* stream);

private:
    void Take(Packet const& packet);
    bool HearsStates(uint64_t count);
    [[noreturn]] void FailForSilence(std::string const& what) const;

    std::unique_ptr<Connection> m_connection;
    std::chrono::milliseconds m_patience;
    State m_state = State::Running;
    uint64_t m_states = 0;  // status packets
    uint8_t m_acknowledged = 0;
    uint64_t m_statesBefore = 0;  // the last acknowledgement
    TraceStream* m_stream = nullptr;
    uint64_t m_dropped = 0;
};

// Ctrl-C ends a recording in order; a second one ends the program. For as long as it lives.
class InterruptWatch
{
public:
    InterruptWatch();
    ~InterruptWatch();
    InterruptWatch(InterruptWatch const&) = delete;
    InterruptWatch& operator=(InterruptWatch const&) = delete;
};
bool Interrupted();

// Throws CommandFailed. `wait`: again and again, until there is somebody to answer.
std::unique_ptr<Connection> Connect(Address const& address, bool wait);
}  // namespace remote
