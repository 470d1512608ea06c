#include "tools/remote/session.h"
#include "tools/commands.h"
#include <algorithm>
#include <csignal>
#include <thread>

namespace remote
{
namespace
{
constexpr std::chrono::milliseconds kRetry{200};

volatile std::sig_atomic_t g_interrupted = 0;

extern "C" void OnInterrupt(int)
{
    g_interrupted = 1;
    std::signal(SIGINT, SIG_DFL);
}
}  // namespace

InterruptWatch::InterruptWatch()
{
    g_interrupted = 0;
    // Without SA_RESTART, so that waits end.
    struct sigaction action = {};
    action.sa_handler = OnInterrupt;
    sigaction(SIGINT, &action, nullptr);
}

InterruptWatch::~InterruptWatch() { std::signal(SIGINT, SIG_DFL); }

bool Interrupted() { return g_interrupted != 0; }

std::unique_ptr<Connection> Connect(Address const& address, bool wait)
{
    std::string error;
    for (;;)
    {
        if (std::unique_ptr<Connection> connection = Connection::Open(address, error))
            return connection;
        if (!wait || Interrupted())
            throw CommandFailed("cannot connect to " + address.Text() + ": " + error +
                                "; --wait tries again until an application of nebtrace record --network is "
                                "there");
        std::this_thread::sleep_for(kRetry);
    }
}

void Session::Take(Packet const& packet)
{
    switch (packet.kind)
    {
    case Packet::Kind::Data:
        if (m_stream)
            m_stream->Add(packet.payload);
        else
            m_dropped += packet.payload.size();
        break;
    case Packet::Kind::Status:
        m_state = static_cast<State>(packet.value);
        ++m_states;
        break;
    case Packet::Kind::Acknowledge:
        m_acknowledged = packet.value;
        m_statesBefore = m_states;
        break;
    }
}

void Session::Listen(std::chrono::milliseconds time)
{
    bool const open = m_connection->Receive(static_cast<int>(time.count()));
    for (Packet packet; m_connection->Next(packet);)
        Take(packet);
    if (!m_connection->Fault().empty())
        throw CommandFailed("the stream has lost its step: " + m_connection->Fault());
    if (!open)
        throw CommandFailed("connection lost: " + m_connection->Error());
}

void Session::FailForSilence(std::string const& what) const
{
    throw CommandFailed(what + " within " + std::to_string(m_patience.count() / 1000) +
                        " s: the application answers from within its EGL and OpenGL ES calls");
}

State Session::AwaitState()
{
    Await([&] { return StatesHeard() != 0; }, "no word from the application");
    return m_state;
}

void Session::Do(Command command)
{
    m_acknowledged = 0;
    if (!m_connection->Send(command))
        throw CommandFailed("connection lost: " + m_connection->Error());
    Await([&] { return m_acknowledged == static_cast<uint8_t>(command); },
          std::string(CommandName(command)) + " was not acknowledged");
}

// An acknowledged resume can be lost: one that a thread reads on its way into the hold is not followed. And
// an application that a client left while it was held runs, but says that it waits until it is paused and
// resumed.
void Session::Release()
{
    for (bool const pausedFirst : {false, true, false})
    {
        if (pausedFirst)
            Do(Command::Pause);
        Do(Command::Resume);
        // The first word from now on may be from before the command.
        if (!HearsStates(1) || !HearsStates(2) || !IsHeld(m_state))
            return;
    }
    throw CommandFailed(
        "the application was told to go on, and does not; nebtrace remote ADDRESS resume tries again");
}

// Whether as many words on the state come behind the last acknowledgement. A held application has one every
// second. One that is silent, or gone, goes on.
bool Session::HearsStates(uint64_t count)
{
    constexpr std::chrono::seconds kSilence{3};
    Clock::time_point const last = Clock::now() + kSilence;
    try
    {
        while (StatesHeard() < count && Clock::now() < last)
            Listen(kSlice);
    } catch (CommandFailed const&)
    {
    }
    return StatesHeard() >= count;
}

uint64_t Session::Divert(TraceStream* stream)
{
    m_stream = stream;
    uint64_t const dropped = m_dropped;
    m_dropped = 0;
    return dropped;
}
}  // namespace remote
