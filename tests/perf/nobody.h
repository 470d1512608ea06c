// Who does not care what passes.
#pragma once
#include "tools/perf/session.h"

class Nobody : public perf::Listener
{
public:
    void OnDescribed(perf::Session&) override {}
    void OnFrame(perf::Session&, perf::Frame const&) override {}
    void OnMark(perf::Session&, std::string const&) override {}
    void OnEnded(perf::Session&) override {}
};
