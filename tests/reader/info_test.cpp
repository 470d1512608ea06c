// `nebtrace info` as a user sees it.
#include "run_command.h"
#include <nlohmann/json.hpp>

using nlohmann::json;

namespace
{
class InfoTest : public CommandTest
{
protected:
    // Two frames with numbers from 40 on, two threads, one failing call, and a snapshot at the end.
    static Trace WithSnapshot()
    {
        Trace trace;
        trace.Thread(7).Flush().SwapBuffers(40).Thread(8).Flush().Record(2043, Payload().Words({0x500, 1}));
        trace.SwapBuffers(41);
        uint64_t const snapshot = trace.Size();
        return trace.Record(4).Flush().Record(4).Footer(snapshot);
    }
};
}  // namespace

// All that the trace holds, in one look.
TEST_F(InfoTest, TheTextNamesAll)
{
    Write(WithSnapshot());
    Outcome const outcome = Run("info FILE");
    EXPECT_EQ(0, outcome.code);
    EXPECT_EQ("", outcome.err);
    EXPECT_EQ("file          FILE\n"
              "size          240 bytes\n"
              "version       14\n"
              "record data   yes\n"
              "frame buffer  no\n"
              "records       10, of these 2 thread changes and 2 state markers\n"
              "calls         6, 1 with an error\n"
              "frames        2, numbers 40 to 41\n"
              "snapshot      at 208, 22 bytes\n"
              "footer        yes\n"
              "thread        7, 2 calls\n"
              "thread        8, 4 calls\n"
              "3             es2  glFlush\n"
              "2             egl  eglSwapBuffers\n"
              "1             es2  glEnable\n",
              outcome.out);
}

// The same for programs.
TEST_F(InfoTest, TheJsonNamesAll)
{
    Write(WithSnapshot());
    Outcome const outcome = Run("info --json FILE");
    EXPECT_EQ(0, outcome.code);
    EXPECT_EQ(json::parse(R"({"file": "FILE", "size": 240, "version": 14, "record_data": true,
        "frame_buffer": false, "records": 10, "calls": 6, "failed_calls": 1, "undecodable_records": 0,
        "thread_changes": 2, "state_markers": 2, "frames": 2, "first_frame": 40, "last_frame": 41,
        "unfinished_frame_calls": 0, "snapshot": {"position": 208, "size": 22}, "footer": true, "end": "footer",
        "end_offset": 230, "trailing_zeros": 0, "threads": [{"thread": 7, "calls": 2}, {"thread": 8, "calls": 4}],
        "other_thread_calls": 0, "functions": [{"api": "es2", "name": "glFlush", "calls": 3},
        {"api": "egl", "name": "eglSwapBuffers", "calls": 2}, {"api": "es2", "name": "glEnable", "calls": 1}]})"),
              json::parse(outcome.out));
}

// A trace without frames, snapshot and footer says so.
TEST_F(InfoTest, WhatIsMissingIsSaid)
{
    Write(Trace().Flush());
    json const info = json::parse(Run("info --json FILE").out);
    EXPECT_EQ(nullptr, info["first_frame"]);
    EXPECT_EQ(nullptr, info["snapshot"]);
    EXPECT_EQ(false, info["footer"]);
    EXPECT_EQ("no footer", info["end"]);
    EXPECT_EQ(1, info["unfinished_frame_calls"]);
    Outcome const text = Run("info FILE");
    EXPECT_EQ(0, text.code);
    EXPECT_NE(std::string::npos, text.out.find("frames        0, then 1 calls of an unfinished frame\n"));
    EXPECT_NE(std::string::npos, text.out.find("snapshot      none at the end\n"));
    EXPECT_NE(std::string::npos, text.out.find("footer        no\n"));
}

// One function of two APIs is two functions.
TEST_F(InfoTest, SharedFunctionsAreCountedByApi)
{
    Payload const es1 = Payload().U32(0).U8(1).U32(5);
    Payload const es2 = Payload().U32(0).U8(2).U32(5);
    Write(Trace().Record(4007, es1).Record(4007, es2).Record(4007, es2).Footer(0));
    EXPECT_EQ(json::parse(R"([{"api": "es2", "name": "glBindVertexArrayOES", "calls": 2},
                              {"api": "es1", "name": "glBindVertexArrayOES", "calls": 1}])"),
              json::parse(Run("info --json FILE").out)["functions"]);
}

// A cut trace is counted up to the cut, and fails.
TEST_F(InfoTest, ACutTraceIsCountedUpToTheCut)
{
    Write(Trace().Flush().Flush().Cut(80));
    Outcome const outcome = Run("info --json FILE");
    EXPECT_EQ(1, outcome.code);
    EXPECT_EQ("nebtrace: FILE: at offset 72: a record of 4 bytes begins, 2 are left; nebtrace repair keeps "
              "what is whole "
              "ahead of that\n",
              outcome.err);
    json const info = json::parse(outcome.out);
    EXPECT_EQ(1, info["calls"]);
    EXPECT_EQ("truncated", info["end"]);
    EXPECT_EQ(72, info["end_offset"]);
}

// A record that no layout fits is counted as its function and as undecodable.
TEST_F(InfoTest, UndecodableRecordsAreCounted)
{
    Write(Trace().Record(2046, Payload().Words({0, 1})).Footer(0));
    json const info = json::parse(Run("info --json FILE").out);
    EXPECT_EQ(1, info["undecodable_records"]);
    EXPECT_EQ(json::parse(R"([{"api": "?", "name": "glFlush", "calls": 1}])"), info["functions"]);
}

// What has no header has nothing to tell.
TEST_F(InfoTest, WhatIsNoTraceHasNoOutput)
{
    Write(std::string("NEBTrace"));
    Outcome const outcome = Run("info FILE");
    EXPECT_EQ(1, outcome.code);
    EXPECT_EQ("", outcome.out);
    EXPECT_EQ(
        "nebtrace: FILE: at offset 0: the header has 62 bytes, the file 8; nothing was recorded before it "
        "ended: record again\n",
        outcome.err);
    EXPECT_EQ(2, Run("info").code);
}

// Through a pipe the same is told.
TEST_F(InfoTest, StandardInputIsRead)
{
    Write(WithSnapshot());
    json expected = json::parse(Run("info --json FILE").out);
    json const piped = json::parse(Run("info --json -", "cat FILE | @").out);
    expected["file"] = "-";
    // Ahead of the footer a pipe cannot tell that the last calls are a snapshot; at its end it can.
    EXPECT_EQ(expected, piped);
}

// More threads than any program has do not make the output endless.
TEST_F(InfoTest, ThreadsBeyondAThousandAreOneEntry)
{
    Trace trace;
    for (uint64_t thread = 1; thread <= 1005; ++thread)
        trace.Thread(thread).Flush();
    Write(trace.Footer(0));
    json const info = json::parse(Run("info --json FILE").out);
    EXPECT_EQ(1000u, info["threads"].size());
    EXPECT_EQ(5, info["other_thread_calls"]);
}

// A file that was grown ahead of its writing, by a machine that then stopped, is no damaged one.
TEST_F(InfoTest, ZerosBehindTheRecordsAreSaid)
{
    Write(Trace().Flush().Raw(Payload().Fill(100, 0)));
    Outcome const text = Run("info FILE");
    EXPECT_EQ(0, text.code);
    EXPECT_NE(std::string::npos, text.out.find("zeros         100 bytes behind the last record\n"));
    json const info = json::parse(Run("info --json FILE").out);
    EXPECT_EQ("no footer", info["end"]);
    EXPECT_EQ(72, info["end_offset"]);
    EXPECT_EQ(100, info["trailing_zeros"]);
}
