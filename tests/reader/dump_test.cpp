// `nebtrace dump` as a user sees it.
#include "run_command.h"
#include <nlohmann/json.hpp>
#include <sstream>

using nlohmann::json;

namespace
{
class DumpTest : public CommandTest
{
protected:
    // Three frames with numbers from 100 on, on two threads, with a failing call and both GL APIs.
    static Trace Frames()
    {
        Trace trace;
        trace.Thread(7).Record(2004, Payload().Words({0, 0x8892, 3})).SwapBuffers(100);
        trace.Thread(8).Record(2043, Payload().Words({0x500, 1})).SwapBuffers(101);
        trace.Record(4007, Payload().U32(0).U8(1).U32(5)).SwapBuffers(102);
        return trace;
    }
    static std::vector<json> Lines(std::string const& text)
    {
        std::vector<json> lines;
        std::istringstream stream(text);
        for (std::string line; std::getline(stream, line);)
            lines.push_back(json::parse(line));
        return lines;
    }
};

constexpr char kSwap[] = "eglSwapBuffers(dpy = 0x10, surface = 0x30, frame = ";
constexpr char kSwapEnd[] = ", width = 0, height = 0, pixels = NULL) = EGL_TRUE\n";
}  // namespace

// Each call is a line: number, thread, API, call; frames end visibly.
TEST_F(DumpTest, EachCallIsALine)
{
    Write(Frames().Footer(0));
    Outcome const outcome = Run("dump FILE");
    EXPECT_EQ(0, outcome.code);
    EXPECT_EQ("", outcome.err);
    EXPECT_EQ(std::string("      0  7  es2  glBindBuffer(target = GL_ARRAY_BUFFER, buffer = 3)\n") +
                  "      1  7  egl  " + kSwap + "100" + kSwapEnd + "-- end of frame 0\n" +
                  "      2  8  es2  glEnable(cap = 0x1) -> error GL_INVALID_ENUM\n" + "      3  8  egl  " +
                  kSwap + "101" + kSwapEnd + "-- end of frame 1\n" +
                  "      4  8  es1  glBindVertexArrayOES(array = 5)\n" + "      5  8  egl  " + kSwap + "102" +
                  kSwapEnd + "-- end of frame 2\n",
              outcome.out);
}

// A range of frames counts from the file's first, whatever numbers the frames had.
TEST_F(DumpTest, FramesAreCountedFromTheFilesFirst)
{
    Write(Frames().Footer(0));
    EXPECT_EQ(std::string("      2  8  es2  glEnable(cap = 0x1) -> error GL_INVALID_ENUM\n") +
                  "      3  8  egl  " + kSwap + "101" + kSwapEnd + "-- end of frame 1\n",
              Run("dump --frames 1-1 FILE").out);
    EXPECT_EQ(Run("dump --frames 1-1 FILE").out, Run("dump --frames 1 FILE").out);
    EXPECT_EQ(Run("dump FILE").out, Run("dump --frames 0- FILE").out);
    EXPECT_EQ("", Run("dump --frames 3-9 FILE").out);
}

// A range of calls is by the numbers that are printed.
TEST_F(DumpTest, CallsAreChosenByNumber)
{
    Write(Frames().Footer(0));
    EXPECT_EQ("      2  8  es2  glEnable(cap = 0x1) -> error GL_INVALID_ENUM\n",
              Run("dump --calls 2 FILE").out);
    EXPECT_EQ("      4  8  es1  glBindVertexArrayOES(array = 5)\n",
              Run("dump --calls 1-4 --frames 2 FILE").out);
}

// A regular expression chooses lines, by anything in them.
TEST_F(DumpTest, GrepChoosesLines)
{
    Write(Frames().Footer(0));
    EXPECT_EQ("      4  8  es1  glBindVertexArrayOES(array = 5)\n", Run("dump --grep ' es1 ' FILE").out);
    EXPECT_EQ("      0  7  es2  glBindBuffer(target = GL_ARRAY_BUFFER, buffer = 3)\n",
              Run("dump --grep 'glBind[A-Z].*buffer = 3' FILE").out);
    EXPECT_EQ("", Run("dump --grep nothing FILE").out);
}

// Markers and the snapshot at the end are shown; the snapshot belongs to no frame.
TEST_F(DumpTest, TheSnapshotIsSetApart)
{
    Trace trace;
    trace.SwapBuffers(0);
    uint64_t const snapshot = trace.Size();
    trace.Record(4).Flush().Record(4).Footer(snapshot);
    Write(trace);
    EXPECT_EQ(std::string("      0  0  egl  ") + kSwap + "0" + kSwapEnd +
                  "-- end of frame 0\n-- snapshot of the start frame\n-- render state of es2\n"
                  "      1  0  es2  glFlush()\n-- render state of es2\n",
              Run("dump FILE").out);
    EXPECT_EQ("", Run("dump --frames 1 FILE").out);
    std::vector<json> const lines = Lines(Run("dump --json FILE").out);
    ASSERT_EQ(4u, lines.size());
    EXPECT_EQ((json{{"marker", "es2"}, {"offset", snapshot}, {"thread", 0}}), lines[1]);
    EXPECT_FALSE(lines[2].contains("frame"));
}

// JSON has one object for each call, with arguments by name.
TEST_F(DumpTest, JsonHasOneObjectALine)
{
    Write(Frames().Footer(0));
    std::vector<json> const lines = Lines(Run("dump --json FILE").out);
    ASSERT_EQ(6u, lines.size());
    EXPECT_EQ(json::parse(
                  R"({"call": 0, "offset": 76, "frame": 0, "thread": 7, "api": "es2", "name": "glBindBuffer",
        "args": {"target": "GL_ARRAY_BUFFER", "buffer": 3}})"),
              lines[0]);
    EXPECT_EQ("GL_INVALID_ENUM", lines[2]["error"]);
    EXPECT_EQ(1, lines[2]["frame"]);
    EXPECT_EQ("EGL_TRUE", lines[3]["result"]);
    EXPECT_EQ(101, lines[3]["args"]["frame"]);
    EXPECT_EQ(nullptr, lines[3]["args"]["pixels"]);
    EXPECT_EQ("es1", lines[4]["api"]);
}

// Every kind of field has its JSON form.
TEST_F(DumpTest, JsonOfEachKind)
{
    Trace trace;
    trace.Record(2013, Payload().Words({0, 0x8892, 2, 0x99, 2}).Text("ab").U32(0x88E4));
    trace.Record(2013, Payload().Words({0, 0x8892, 2, 0x99, 0x88E4}));
    trace.Record(2099, Payload().Words({0, 7, 1, 1, 1, 2, 3}).Text("a\xff\n").Words({0, 0}));
    trace.Record(2017, Payload().Words({0, 0x3F000000, 0x7FC00000, 0xFF800000, 0}));
    trace.Record(2042, Payload().Words({0, 4, 1, 0x1401, 9, 1}).U8(200).Words({9, 3, 0x50, 1}).U8(5));
    trace.Record(1106, Payload().Words({0x3000, 9, 0x10, 0x30F9, 0x99, 3, 0x3024, 0xFFFFFFFF, 0x3038}));
    trace.Record(2129, Payload().Words({0, 1, 1}).U8(1).Words({9, 1}).Fill(36, 0));
    trace.Record(2106, Payload().Words({0, 0xDE1, 0, 0x1908, 1, 1, 0, 0x1908, 0x1401, 5, 4, 1, 4}));
    trace.Record(3086, Payload().Words({0, 0x99}).Fill(64, 0));
    trace.Record(4160, Payload().U32(0).U8(2).Words({5, 0}).U64(UINT64_MAX));
    Write(trace.Footer(0));
    std::vector<json> const lines = Lines(Run("dump --json FILE").out);
    ASSERT_EQ(10u, lines.size());
    EXPECT_EQ(json::parse(R"({"pointer": "0x99", "count": 2, "values": [97, 98]})"),
              lines[0]["args"]["data"]);
    EXPECT_EQ("0x99", lines[1]["args"]["data"]);
    EXPECT_EQ("GL_STATIC_DRAW", lines[1]["args"]["usage"]);
    EXPECT_EQ(json::parse(R"({"pointer": "0x1", "count": 1, "texts": [{"length": 3, "text": "a\ufffd\n"}]})"),
              lines[2]["args"]["string"]);
    EXPECT_EQ(json::parse(R"({"red": 0.5, "green": "nan", "blue": "-inf", "alpha": 0.0})"), lines[3]["args"]);
    EXPECT_EQ(json::parse(R"({"pointer": "0x9", "size": 1, "indices": [200]})"),
              lines[4]["args"]["index_data"]);
    EXPECT_EQ(json::parse(R"([{"index": 3, "pointer": "0x50", "size": 1}])"), lines[4]["args"]["arrays"]);
    EXPECT_EQ(
        json::parse(R"({"pointer": "0x99", "count": 3, "attribs": [["EGL_RED_SIZE", -1], ["EGL_NONE"]]})"),
        lines[5]["args"]["attrib_list"]);
    EXPECT_EQ(true, lines[6]["args"]["transpose"]);
    EXPECT_EQ(json::parse("[[0.0,0.0,0.0,0.0,0.0,0.0,0.0,0.0,0.0]]"), lines[6]["args"]["value"]["values"]);
    EXPECT_EQ(json::parse(R"({"pointer": "0x5", "size": 4})"), lines[7]["args"]["pixels"]);
    EXPECT_EQ(16u, lines[8]["args"]["m"]["values"].size());
    EXPECT_EQ(UINT64_MAX, lines[9]["args"]["timeout"]);
}

// A cut trace is printed up to the cut; where and why goes to standard error.
TEST_F(DumpTest, ACutTraceIsPrintedUpToTheCut)
{
    Write(Trace().Flush().Flush().Cut(80));
    Outcome const outcome = Run("dump FILE");
    EXPECT_EQ(1, outcome.code);
    EXPECT_EQ("      0  0  es2  glFlush()\n", outcome.out);
    EXPECT_EQ("nebtrace: FILE: at offset 72: a record of 4 bytes begins, 2 are left; nebtrace repair keeps "
              "what is whole "
              "ahead of that\n",
              outcome.err);
}

// A damaged trace likewise.
TEST_F(DumpTest, ADamagedTraceIsPrintedUpToTheDamage)
{
    Write(Trace().Flush().Raw(Payload().Fill(100, 0).U8(1)));
    Outcome const outcome = Run("dump --json FILE");
    EXPECT_EQ(1, outcome.code);
    EXPECT_EQ(1u, Lines(outcome.out).size());
    EXPECT_EQ("nebtrace: FILE: at offset 72: no record has the ID 0; nebtrace repair keeps what is whole "
              "ahead of that\n",
              outcome.err);
}

// A record that no layout fits is shown raw, the rest is read, and it is said at the end.
TEST_F(DumpTest, ARecordThatFitsNoLayoutIsShownRaw)
{
    Write(Trace().Record(2046, Payload().Words({0, 1})).Flush().Footer(0));
    Outcome const outcome = Run("dump FILE");
    EXPECT_EQ(1, outcome.code);
    EXPECT_EQ("      0  0  ?  glFlush fits no layout: [8 bytes] 00 00 00 00 01 00 00 00\n"
              "      1  0  es2  glFlush()\n",
              outcome.out);
    EXPECT_EQ("nebtrace: FILE: at offset 62: a record fits no layout\n", outcome.err);
    std::vector<json> const lines = Lines(Run("dump --json FILE").out);
    ASSERT_EQ(2u, lines.size());
    EXPECT_EQ(nullptr, lines[0]["api"]);
    EXPECT_EQ("[8 bytes] 00 00 00 00 01 00 00 00", lines[0]["raw"]);
}

// A recording that was killed between two records reads to its end: a note, no failure.
TEST_F(DumpTest, AMissingFooterIsNoted)
{
    Write(Trace().Flush());
    Outcome const outcome = Run("dump FILE");
    EXPECT_EQ(0, outcome.code);
    EXPECT_EQ("      0  0  es2  glFlush()\n", outcome.out);
    EXPECT_EQ("nebtrace: FILE: no footer: the recording did not end in order\n", outcome.err);
}

// What is asked for and read is not failed for damage behind it.
TEST_F(DumpTest, DamageBehindTheRangeIsNotLookedFor)
{
    Write(Trace().Flush().Flush().Raw(Payload().Fill(100, 0)));
    Outcome const outcome = Run("dump --calls 0 FILE");
    EXPECT_EQ(0, outcome.code);
    EXPECT_EQ("      0  0  es2  glFlush()\n", outcome.out);
    EXPECT_EQ("", outcome.err);
}

// A trace can come through a pipe.
TEST_F(DumpTest, StandardInputIsRead)
{
    Write(Frames().Footer(0));
    Outcome const piped = Run("dump -", "cat FILE | @");
    EXPECT_EQ(0, piped.code);
    EXPECT_EQ(Run("dump FILE").out, piped.out);
    EXPECT_EQ(Run("dump FILE").out, Run("dump -", "@ < FILE").out);
}

// A reader that goes away is neither a failure nor worth a word, with and without the signal.
TEST_F(DumpTest, AClosedPipeEndsQuietly)
{
    Trace trace;
    for (int i = 0; i < 50000; ++i)
        trace.Flush();
    Write(trace.Footer(0));
    for (char const* const shell :
         {"{ @; echo $? >&2; } | head -n 1", "trap '' PIPE; { @; echo $? >&2; } | head -n 1"})
    {
        Outcome const outcome = Run("dump FILE", shell);
        EXPECT_EQ("      0  0  es2  glFlush()\n", outcome.out);
        EXPECT_EQ("0\n", outcome.err);
    }
}

// An output that cannot be written is a failure that is said.
TEST_F(DumpTest, AFullDiskIsSaid)
{
    Write(Frames().Footer(0));
    Outcome const outcome = Run("dump FILE", "@ > /dev/full");
    EXPECT_EQ(1, outcome.code);
    EXPECT_EQ("nebtrace: standard output: No space left on device\n", outcome.err);
}

// Bad usage is told from failure by the exit code, and is one line.
TEST_F(DumpTest, BadUsageHasExitCodeTwo)
{
    Write(Frames().Footer(0));
    for (char const* const arguments :
         {"dump", "dump --frames 3-1 FILE", "dump --frames x FILE", "dump --frames -1 FILE",
          "dump --frames '' FILE", "dump --calls 1-2-3 FILE", "dump --calls 99999999999999999999 FILE",
          "dump --grep '(' FILE", "dump --nothing FILE", "dump FILE FILE"})
    {
        Outcome const outcome = Run(arguments);
        EXPECT_EQ(2, outcome.code) << arguments;
        EXPECT_EQ("", outcome.out) << arguments;
        EXPECT_EQ("nebtrace: ", outcome.err.substr(0, 10)) << arguments;
        EXPECT_EQ(outcome.err.size() - 1, outcome.err.find('\n')) << arguments;
    }
}

// A file that is no trace fails with its name.
TEST_F(DumpTest, WhatIsNoTraceFails)
{
    Outcome const missing = Run("dump FILE");
    EXPECT_EQ(1, missing.code);
    EXPECT_EQ("nebtrace: FILE: No such file or directory\n", missing.err);
    Write(std::string("#!/bin/sh\n"));
    Outcome const script = Run("dump FILE");
    EXPECT_EQ(1, script.code);
    EXPECT_EQ("nebtrace: FILE: at offset 0: this is no trace: it does not begin with \"NEBTrace\"\n",
              script.err);
}

// Help names the options.
TEST_F(DumpTest, HelpNamesTheOptions)
{
    Outcome const outcome = Run("dump --help");
    EXPECT_EQ(0, outcome.code);
    for (char const* const option : {"--frames", "--calls", "--grep", "--json"})
        EXPECT_NE(std::string::npos, outcome.out.find(option)) << option;
}
