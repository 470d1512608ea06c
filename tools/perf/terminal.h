// The terminal as the performance server uses it: a screen of its own, and keys one by one. And the signals
// that end the server or put it aside.
#pragma once
#include "tools/perf/keys.h"
#include "tools/perf/view.h"
#include <termios.h>

namespace perf
{
// Signals end the server in order, so that nothing stays in shared memory and the terminal comes back as it
// was. For as long as it lives.
class SignalWatch
{
public:
    SignalWatch();
    ~SignalWatch();
    SignalWatch(SignalWatch const&) = delete;
    SignalWatch& operator=(SignalWatch const&) = delete;

    // The signal that asks for the end; 0 for none.
    static int EndAsked();
    // Whether Ctrl-Z was pressed since it was asked last.
    static bool StopAsked();
};

class Terminal
{
public:
    // Whether standard input and output are a terminal that this process may use now.
    static bool IsThere();

    Terminal();
    ~Terminal();
    Terminal(Terminal const&) = delete;
    Terminal& operator=(Terminal const&) = delete;

    Size GetSize() const;
    void Draw(std::vector<std::string> const& lines);
    // Keys pressed since the last call that are one character.
    std::string Keys();
    // Gives the terminal back, stops this process, and takes the terminal again once it is continued.
    void Stop();

private:
    void Take();
    void GiveBack() const;

    termios m_before{};
    KeyReader m_keys;
};
}  // namespace perf
