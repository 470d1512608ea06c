// Runs the built `nebtrace` on a trace that a test has built.
#pragma once
#include "trace_builder.h"
#include <gtest/gtest.h>
#include <string>

struct Outcome
{
    int code = -1;
    std::string out;
    std::string err;
};

class CommandTest : public testing::Test
{
protected:
    CommandTest();
    ~CommandTest() override;

    // The trace's file; the name stands for it in what the command prints.
    void Write(std::string const& bytes) const;
    void Write(Trace const& trace) const { Write(trace.All()); }

    // Runs "nebtrace ARGUMENTS", in which FILE stands for the trace's name. `shell` goes round it: "cat FILE
    // | @".
    Outcome Run(std::string const& arguments, std::string shell = "@") const;

    // The trace's name in a text, replaced by FILE.
    std::string Named(std::string text) const;

private:
    std::string Read(std::string const& ending) const;

    std::string const m_base;
};
